#include "support/document_dump.h"

#include <array>
#include <cmath>

namespace corvane::test {

namespace {

QString colour(QRgb value)
{
    return QString::number(value, 16);
}

/// Glyphs with their offsets to the hundredth of a twip.
QString shapedText(const Document &document, const ShapedGlyphs &shaped)
{
    QString text = QStringLiteral(" shaped ") + document.faces[shaped.face]->family();
    for (size_t i = 0; i < shaped.glyphs.size(); ++i)
        text += QStringLiteral(" %1@%2,%3").arg(shaped.glyphs[i]).arg(std::lround(shaped.xOffsets[i] * 100)).arg(std::lround(shaped.yOffsets[i] * 100));
    return text;
}

void appendOperations(QStringList &lines, const Document &document, const Page &page)
{
    for (const FilledRect &rect : page.rects)
        lines += QStringLiteral("fill %1 %2 %3x%4 %5").arg(rect.x).arg(rect.y).arg(rect.width).arg(rect.height).arg(colour(rect.colour));
    for (const PlacedPicture &picture : page.pictures)
        lines += QStringLiteral("picture %1 %2 %3x%4 %5").arg(picture.x).arg(picture.y).arg(picture.width).arg(picture.height).arg(picture.picture);
    for (const TextRun &run : page.runs) {
        const TextStyle &style = document.styleOf(page, run);
        const FontFace &face = *document.faces[style.face];
        QString line = QStringLiteral("text %1 %2 %3 %4 %5 %6: %7").arg(run.x).arg(run.y).arg(face.family(), face.styleName())
                           .arg(style.size.count()).arg(colour(style.colour), page.runText(run));
        if (run.shaped > 0)
            line += shapedText(document, page.shaped[run.shaped - 1]);
        lines += line;
    }
}

} // namespace

QStringList operations(const Document &document, int page)
{
    QStringList lines;
    appendOperations(lines, document, document.pages[size_t(page)]);
    appendOperations(lines, document, pageFurniture(document, page));
    return lines;
}

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
