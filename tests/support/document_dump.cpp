#include "support/document_dump.h"

#include <array>

namespace corvane::test {

QStringList dump(const Document &document)
{
    static constexpr std::array kKinds {"Paragraph", "HeadingRow", "Row", "Caption", "Furniture"};
    QStringList lines;
    int number = 0;
    for (const Page &page : document.pages) {
        ++number;
        for (size_t i = 0; i < page.blocks.size(); ++i) {
            const Block &block = page.blocks[i];
            QString line = QStringLiteral("%1 y%2 %3").arg(number).arg(block.top).arg(QLatin1StringView(kKinds[size_t(block.kind)]));
            if (block.continuesPreviousPage)
                line += u'+';
            line += u' ';
            for (const TextRun &run : page.blockRuns(i))
                line += QStringLiteral("[%1 %2:%3]").arg(run.x).arg(run.y).arg(page.runText(run));
            lines += line;
        }
    }
    return lines;
}

QStringList blockTexts(const Document &document, int page)
{
    QString text;
    appendPageText(text, document.pages[size_t(page)]);
    QStringList lines = text.split(u'\n');
    lines.removeLast();
    lines.replaceInStrings(QStringLiteral("\t"), QStringLiteral("|"));
    return lines;
}

QString letters(const Document &document)
{
    QString text = documentText(document);
    text.removeIf([](QChar c) { return c.isSpace(); });
    return text;
}

} // namespace corvane::test
