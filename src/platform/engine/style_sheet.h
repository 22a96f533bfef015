#pragma once

#include "platform/engine/attribute_reader.h"
#include "platform/engine/report_layout.h"

#include <QtCore/QHash>

namespace corvane {

/// The named styles of a layout, and how they and a field's own attributes make its look.
class StyleSheet
{
public:
    /// @param styles the element `<Styles>`, null: none; must live as long as this
    /// @throws ReportError: doubled names, an unknown basis, a circle, wrong values
    StyleSheet(const ReportSource &source, const XmlElement *styles);

    /// Lays the style that an element's attribute "style", if it is there, names over a look.
    /// @throws ReportError
    void applyStyle(const XmlElement &user, FieldLook &look) const;
    /// The same for the element's own attributes that say how a field looks. @throws ReportError
    void applyOwn(const XmlElement &user, FieldLook &look) const;

private:
    void apply(const XmlElement &style, FieldLook &look) const;
    void checkCircle(const XmlElement &style) const;
    const XmlElement &find(const XmlElement &user, const char *attribute) const;

    const ReportSource &m_source;
    QHash<QString, const XmlElement *> m_styles;
};

} // namespace corvane
