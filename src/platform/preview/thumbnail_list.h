#pragma once

#include "platform/composer/document.h"

#include <QtWidgets/QListView>

namespace corvane {

class ThumbnailModel;

/// All pages of a document, small, with their numbers. Draws a page when it first comes into view
/// and keeps the pictures of the last ones.
class ThumbnailList : public QListView
{
    Q_OBJECT

public:
    explicit ThumbnailList(QWidget *parent = nullptr);

    void setDocument(const DocumentPtr &document);
    /// Marks a page without asking to go there. -1: none.
    void showPage(int page);
    /// How many pictures are kept; shows that what nobody sees is not drawn.
    int drawnPages() const;

Q_SIGNALS:
    /// The user chose a page, by mouse or key.
    void pageChosen(int page);

protected:
    void currentChanged(const QModelIndex &current, const QModelIndex &previous) override;

private:
    ThumbnailModel *m_model;
    bool m_showing = false; ///< the current page is set by the program's own hand
};

} // namespace corvane
