#pragma once

#include "platform/composer/document.h"

namespace corvane::test {

/// Puts documents together by hand. One face (Liberation Sans, then bold) and two styles: 0 is 10 points
/// in black, 1 the same in bold.
class DocumentBuilder
{
public:
    DocumentBuilder()
    {
        FontLibrary library;
        m_document.faces = {library.face(QStringLiteral("Arial"), false), library.face(QStringLiteral("Arial"), true)};
        m_document.styles = {{.face = 0, .size = Twips(200)}, {.face = 1, .size = Twips(200)}};
    }

    Document &document() { return m_document; }

    DocumentBuilder &addPage()
    {
        m_document.pages.emplace_back();
        return *this;
    }

    /// A rectangle on the last page, in twips.
    DocumentBuilder &addRect(qint32 x, qint32 y, qint32 width, qint32 height, QRgb colour)
    {
        m_document.pages.back().rects.push_back({x, y, width, height, colour});
        return *this;
    }

    /// A paragraph of one run on the last page; y is the baseline, in twips.
    DocumentBuilder &addText(qint32 x, qint32 y, const QString &text, quint16 style = 0)
    {
        Page &page = m_document.pages.back();
        page.blocks.push_back({.firstRun = quint32(page.runs.size()), .top = y - 200, .bottom = y + 50});
        page.runs.push_back({.x = x, .y = y, .textStart = quint32(page.text.size()),
            .textLength = quint32(text.size()), .style = style});
        page.text += text;
        return *this;
    }

    DocumentPtr finish()
    {
        m_document.isWhole = true;
        return std::make_shared<const Document>(std::move(m_document));
    }

private:
    Document m_document;
};

/// Pages of 46 lines with a rule and a number each, like a short report; all pages are the same size.
inline DocumentPtr pagesOfText(int count)
{
    DocumentBuilder builder;
    for (int page = 0; page < count; ++page) {
        builder.addPage();
        builder.addRect(1440, 1500, 9360, 15, 0xff000000);
        for (int line = 0; line < 46; ++line)
            builder.addText(1440, 1800 + line * 280, QStringLiteral("Page %1, line %2").arg(page + 1).arg(line + 1));
    }
    return builder.finish();
}

} // namespace corvane::test
