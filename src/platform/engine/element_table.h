#pragma once

#include "platform/engine/xml_tree.h"

#include <QtCore/QStringList>

namespace corvane {

/// What may stand in an element of a designed report.
struct ElementRule
{
    QStringList attributes;
    QStringList required; ///< of the attributes
    QStringList children; ///< in the order in which they must stand
    bool isOrdered = false;
    QStringList single; ///< children that may stand there only once
    bool hasText = false;
};

/// The rule of an element; null: there is no such element.
const ElementRule *elementRule(const QString &name);

/// The names of all elements, sorted.
QStringList elementNames();

/// Holds an element and all in it against the rules: unknown or missing names, order, stray text.
/// @throws ReportError
void checkStructure(const ReportSource &source, const XmlElement &element);

} // namespace corvane
