#pragma once

#include "platform/composer/line_breaker.h"
#include "platform/engine/expression/value_format.h"
#include "platform/engine/report_layout.h"

namespace corvane {

/// A field's look with its face, measures and value format found once.
struct TextLook
{
    FieldLook look;
    FontFacePtr face;
    Twips size;
    Twips ascent;
    Twips lineHeight;
    double unitsPerTwip = 1; ///< font units
    quint16 style = 0; ///< index into Document::styles
    ValueFormat format;

    bool hasFrame() const
    {
        return look.background || look.border.left.count() > 0 || look.border.top.count() > 0
            || look.border.right.count() > 0 || look.border.bottom.count() > 0;
    }
};

/// Makes text looks for one document and knows its fonts.
class TextLooks
{
public:
    explicit TextLooks(Document &document)
        : m_document(document)
    {
    }

    /// @throws ReportError for a format that is none
    TextLook make(const FieldLook &look, const FilePlace &place);
    FontLibrary &fonts() { return m_fonts; }

private:
    Document &m_document;
    FontLibrary m_fonts;
};

} // namespace corvane
