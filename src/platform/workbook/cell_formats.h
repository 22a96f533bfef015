#pragma once

#include <QtCore/QString>

#include <vector>

namespace corvane {

struct ValueTextStyle;

/// A date or time pattern as values use it ("MM/dd/yyyy", "h:mm AP") as number format code
/// ("mm/dd/yyyy", "h:mm AM/PM"). Years have four digits; letters that mean nothing are quoted; a
/// time zone is left out.
QString numberFormat(QStringView pattern);

enum class CellFont : quint8 { Plain, Bold };

/// The pooled cell formats of a workbook: each look exists once, however many columns use it.
/// [MS-XLS] Format, XF.
class CellFormats
{
public:
    struct Look
    {
        QString code; ///< number format
        CellFont font = CellFont::Plain;
        bool hasQuotePrefix = false; ///< the cell stays a text when somebody edits it

        bool operator==(const Look &) const = default;
    };
    struct CustomFormat
    {
        quint16 id;
        QString code;
    };
    struct Xf
    {
        quint16 format;
        CellFont font;
        bool hasQuotePrefix;
    };

    /// The XF index of a look, which is added when it is new.
    /// At most 4,000 exist; a workbook of 256 columns needs some dozens.
    quint16 add(const Look &look);

    const std::vector<CustomFormat> &customFormats() const { return m_customFormats; }
    /// In the order of their indices, from kFirstXf.
    const std::vector<Xf> &xfs() const { return m_xfs; }

    /// The fifteen style XFs and the default cell XF come before ours.
    static constexpr quint16 kDefaultXf = 15;
    static constexpr quint16 kFirstXf = 16;

private:
    quint16 formatId(const QString &code);

    std::vector<Look> m_looks;
    std::vector<Xf> m_xfs;
    std::vector<CustomFormat> m_customFormats;
};

} // namespace corvane
