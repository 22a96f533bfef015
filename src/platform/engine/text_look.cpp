#include "platform/engine/text_look.h"

#include "platform/engine/report_control.h"

namespace corvane {

TextLook TextLooks::make(const FieldLook &look, const FilePlace &place)
{
    auto format = ValueFormat::compile(look.format);
    if (const auto *fault = std::get_if<ExpressionFault>(&format)) {
        throw ReportError(
            QStringLiteral("The format \"%1\" cannot be used: %2 (line %3, character %4).")
                .arg(look.format, fault->words)
                .arg(place.line)
                .arg(fault->offset + 1));
    }
    TextLook made{look, m_fonts.face(look.font, look.bold, look.italic),
        Twips::fromPoints(look.points), {}, {}, 1, 0, std::get<ValueFormat>(std::move(format))};
    made.unitsPerTwip = double(made.face->unitsPerEm()) / made.size.count();
    made.ascent = Twips::rounded(made.face->ascent() / made.unitsPerTwip);
    made.lineHeight
        = Twips::rounded((made.face->ascent() + made.face->descent()) / made.unitsPerTwip);
    made.style = styleIndex(m_document, {faceIndex(m_document, made.face), made.size, look.colour});
    return made;
}

} // namespace corvane
