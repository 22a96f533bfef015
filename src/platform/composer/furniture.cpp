#include "platform/composer/document.h"

namespace corvane {

namespace {

constexpr qint32 kHeaderBaseline = 720;

enum class Place { Left, Centre, Right };

void appendPart(Page &page, const Document &document, QString text, quint16 styleIndex, Place place, qint32 y)
{
    if (text.isEmpty())
        return;
    const TextStyle &style = document.styles[styleIndex];
    const FontFace &face = *document.faces[style.face];
    const double width = double(face.plainWidth(text).value_or(0)) * style.size.count() / face.unitsPerEm();
    const double left = document.leftMargin.count();
    const double right = document.paperWidth.count() - document.rightMargin.count();
    const double x = place == Place::Left ? left : place == Place::Right ? right - width : (left + right - width) / 2;
    page.runs.push_back({.x = qint32(x), .y = y, .textStart = quint32(page.text.size()),
        .textLength = quint32(text.size()), .style = styleIndex});
    page.text += text;
}

void appendFurniture(Page &page, const Document &document, const Furniture &furniture, int number, qint32 y)
{
    const auto numbered = [number](QString text) {
        return text.replace(QStringLiteral("%d"), QString::number(number));
    };
    appendPart(page, document, numbered(furniture.left), furniture.quietStyle, Place::Left, y);
    appendPart(page, document, numbered(furniture.centre), furniture.style, Place::Centre, y);
    appendPart(page, document, numbered(furniture.right), furniture.quietStyle, Place::Right, y);
}

} // namespace

Page pageFurniture(const Document &document, int pageIndex)
{
    Page page;
    appendFurniture(page, document, document.header, pageIndex + 1, kHeaderBaseline);
    appendFurniture(page, document, document.footer, pageIndex + 1, document.paperHeight.count() - kHeaderBaseline);
    return page;
}

} // namespace corvane
