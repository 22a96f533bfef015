#pragma once

#include "platform/composer/twips.h"
#include "platform/engine/xml_tree.h"

#include <QtGui/QRgb>

#include <optional>
#include <span>

namespace corvane {

/// A length as files write it: a number and in, cm, mm, pt or tw, at most 200 inches. Empty: no
/// length.
std::optional<Twips> parseLength(QStringView text);

/// A colour as files write it: "#rrggbb". Empty: no colour.
std::optional<QRgb> parseColour(QStringView text);

/// The attributes of one element as values. Everything throws ReportError where a value is not what
/// is needed; where an attribute is missing, the result is empty.
class AttributeReader
{
public:
    AttributeReader(const ReportSource &source, const XmlElement &element)
        : m_source(source)
        , m_element(element)
    {
    }

    bool has(const char *name) const { return find(name); }
    QString text(const char *name) const;
    /// Text that may not be empty or only blanks.
    QString name(const char *name) const;
    std::optional<bool> flag(const char *name) const;
    std::optional<int> count(const char *name, int least, int most) const;
    std::optional<double> number(const char *name, double least, double most) const;
    /// Not negative.
    std::optional<Twips> length(const char *name) const;
    std::optional<QRgb> colour(const char *name) const;
    /// Compiled; null where it is missing.
    ExpressionPtr expression(const char *name) const;

    /// Known to be a format. Empty where it is missing.
    QString format(const char *name) const;

    /// Index into the words; -1 where it is missing.
    int choice(const char *name, std::span<const QStringView> words) const;

    /// A fault of an attribute that is there: `width="x" of <Label>: ` and the words. @throws
    /// ReportError always
    [[noreturn]] void fail(const char *name, const QString &words) const;
    /// The same for a place in the value. @throws ReportError always
    [[noreturn]] void fail(const char *name, const ExpressionFault &fault) const;
    /// A fault of the element. @throws ReportError always
    [[noreturn]] void fail(const QString &sentence) const
    {
        m_source.fail(m_element.offset, sentence);
    }

    const ReportSource &source() const { return m_source; }
    const XmlElement &element() const { return m_element; }

private:
    [[noreturn]] void failAt(const char *name, qsizetype unit, const QString &words) const;
    const XmlAttribute *find(const char *name) const
    {
        return m_element.attribute(QString::fromLatin1(name));
    }

    const ReportSource &m_source;
    const XmlElement &m_element;
};

} // namespace corvane
