#pragma once

#include <QtWidgets/QTextBrowser>

namespace corvane {

/// Shows a page of the help: its headings can be linked to, and found words are marked.
class HelpBrowser : public QTextBrowser
{
    Q_OBJECT

public:
    explicit HelpBrowser(QWidget *parent = nullptr);

    /// Marks every place of these words, until the next page.
    void markWords(const QString &query);

private:
    void dress(const QUrl &url);
    void dressBlocks();
    void dressTables();
};

} // namespace corvane
