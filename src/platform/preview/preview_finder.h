#pragma once

#include "platform/preview/document_search.h"

#include <QtCore/QObject>
#include <QtCore/QTimer>

namespace corvane {

/// The search as the preview shows it: one hit is the current one, and long documents are searched
/// between the events of the window.
class PreviewFinder : public QObject
{
    Q_OBJECT

public:
    explicit PreviewFinder(QObject *parent);

    /// A search that goes on starts again in the new document, without moving the reader.
    void setDocument(const DocumentPtr &document);
    /// Looks for a text and makes the first hit from a page on the current one. Empty: ends the
    /// search.
    void find(const QString &text, CaseRule rule, int fromPage);
    /// Someone is about to search: what a first search takes longer is done meanwhile, between the
    /// events of the window.
    void prepare(CaseRule rule);
    void findNext();
    void findPrevious();

    bool isActive() const { return m_search.isActive(); }
    bool isFinished() const { return m_search.isFinished(); }
    qint64 hitCount() const { return m_search.hitCount(); }
    std::vector<TextStretch> hitsOn(int page) const { return m_search.hitsOn(page); }
    const std::optional<SearchHit> &currentHit() const { return m_current; }

Q_SIGNALS:
    /// Hits were found or forgotten, or another one is the current one.
    void changed();
    /// The current hit is to be brought into view.
    void hitReached(const corvane::SearchHit &hit);

private:
    enum class Reach { Show, Stay };

    void start(int fromPage);
    void workOn();
    void prepareOn();
    void step(std::optional<SearchHit> (DocumentSearch::*neighbour)(const SearchHit &));

    DocumentSearch m_search;
    QTimer m_work;
    QTimer m_preparation;
    QString m_text;
    CaseRule m_rule = CaseRule::Ignore;
    Reach m_reach = Reach::Stay; ///< what the first hit does
    std::optional<SearchHit> m_current;
};

} // namespace corvane
