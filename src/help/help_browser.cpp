#include "help/help_browser.h"

#include "help/help_topics.h"

#include <QtGui/QTextBlock>
#include <QtGui/QTextTable>

namespace corvane {

namespace {

constexpr qreal kPageMargin = 18;
constexpr qreal kListIndent = 26;
constexpr qreal kCellPadding = 5;
constexpr int kLineHeight = 125; ///< of the font's own, in per cent

void makeAnchor(QTextCursor &cursor, const QTextBlock &block)
{
    QTextCharFormat format;
    format.setAnchor(true);
    format.setAnchorNames({headingAnchor(block.text())});
    cursor.setPosition(block.position());
    cursor.setPosition(block.position() + block.length() - 1, QTextCursor::KeepAnchor);
    cursor.mergeCharFormat(format);
}

QTextBlockFormat headingFormat(const QTextBlock &block)
{
    QTextBlockFormat format;
    format.setTopMargin(block.blockNumber() == 0 ? 4 : 20);
    format.setBottomMargin(8);
    return format;
}

bool isCode(const QTextBlock &block)
{
    return block.isValid() && block.blockFormat().hasProperty(QTextFormat::BlockCodeLanguage);
}

QTextBlockFormat codeFormat(const QTextBlock &block, const QPalette &palette)
{
    QTextBlockFormat format;
    format.setBackground(palette.alternateBase());
    format.setLeftMargin(12);
    format.setTopMargin(isCode(block.previous()) ? 0 : 6);
    format.setBottomMargin(isCode(block.next()) ? 0 : 10);
    return format;
}

QTextBlockFormat proseFormat(bool isCell)
{
    QTextBlockFormat format;
    if (isCell) {
        format.setTopMargin(0);
        format.setBottomMargin(0);
    } else {
        format.setLineHeight(kLineHeight, QTextBlockFormat::ProportionalHeight);
    }
    return format;
}

} // namespace

HelpBrowser::HelpBrowser(QWidget *parent)
    : QTextBrowser(parent)
{
    connect(this, &QTextBrowser::sourceChanged, this, &HelpBrowser::dress);
}

/// What Markdown leaves out; again for each page, on the way back and forward too.
void HelpBrowser::dress(const QUrl &url)
{
    setExtraSelections({});
    dressBlocks();
    dressTables();
    document()->setDocumentMargin(kPageMargin);
    document()->setIndentWidth(kListIndent);
    if (url.hasFragment())
        scrollToAnchor(url.fragment());
}

void HelpBrowser::markWords(const QString &query)
{
    QList<ExtraSelection> marks;
    for (const QString &word : query.simplified().split(u' ', Qt::SkipEmptyParts)) {
        for (QTextCursor at = document()->find(word); !at.isNull();
             at = document()->find(word, at)) {
            ExtraSelection mark;
            mark.cursor = at;
            mark.format.setBackground(palette().highlight());
            mark.format.setForeground(palette().highlightedText());
            marks.append(mark);
        }
    }
    setExtraSelections(marks);
    if (marks.isEmpty())
        return;
    QTextCursor first = marks.front().cursor;
    first.clearSelection();
    setTextCursor(first);
    ensureCursorVisible();
}

void HelpBrowser::dressBlocks()
{
    QTextCursor cursor(document());
    cursor.beginEditBlock();
    for (QTextBlock block = document()->begin(); block.isValid(); block = block.next()) {
        const bool isHeading = block.blockFormat().headingLevel() > 0;
        cursor.setPosition(block.position());
        cursor.mergeBlockFormat(isHeading ? headingFormat(block)
                : isCode(block)           ? codeFormat(block, palette())
                                          : proseFormat(cursor.currentTable() != nullptr));
        if (isHeading)
            makeAnchor(cursor, block);
    }
    cursor.endEditBlock();
}

void HelpBrowser::dressTables()
{
    for (QTextFrame *frame : document()->rootFrame()->childFrames()) {
        auto *table = qobject_cast<QTextTable *>(frame);
        if (!table)
            continue;
        QTextTableFormat format = table->format();
        format.setBorderCollapse(true);
        format.setBorder(1);
        format.setBorderStyle(QTextFrameFormat::BorderStyle_Solid);
        format.setBorderBrush(palette().mid());
        format.setCellPadding(kCellPadding);
        format.setCellSpacing(0);
        format.setTopMargin(6);
        format.setBottomMargin(12);
        table->setFormat(format);
    }
}

} // namespace corvane
