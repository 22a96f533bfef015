#pragma once

#include "platform/engine/report_source.h"

#include <QtCore/QString>

#include <vector>

namespace corvane {

/// An attribute as written; offsets are of the source's text, in UTF-16 units.
struct XmlAttribute
{
    QString name;
    QString value;
    qsizetype nameOffset = 0;
    qsizetype valueOffset = 0; ///< behind the quotation mark
};

/// An element with everything in it; comments and processing instructions are left out.
struct XmlElement
{
    QString name;
    qsizetype offset = 0; ///< of its "<"
    std::vector<XmlAttribute> attributes;
    std::vector<XmlElement> children;
    QString text; ///< all of its own text, without that of its children
    qsizetype textOffset = -1; ///< of the first letter that is no blank; -1: blanks only

    const XmlAttribute *attribute(QStringView attributeName) const;
};

/// The element `<Reports>`. @throws ReportError: malformed, a document type or entities, attributes
/// on the root, anything before it, more than 100 elements in each other or 20,000 in all
XmlElement readXmlTree(const ReportSource &source);

/// The names of the elements `<Report>` below the root as far as the file is well formed; none when
/// it is not even that. Nothing else is looked at.
QStringList readReportNames(const ReportSource &source);

/// Where the n-th UTF-16 unit of an attribute's value stands in the text, where "&lt;" is one unit.
qsizetype offsetInValue(const ReportSource &source, const XmlAttribute &attribute, qsizetype unit);

} // namespace corvane
