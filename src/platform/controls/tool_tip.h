#pragma once

class QString;

namespace corvane {

/// A text as a tooltip that shows it letter for letter, whatever looks like markup in it; long
/// lines wrap. Escaping alone would not do: tooltips take what holds no tag as plain text, "&amp;"
/// included.
QString plainToolTip(const QString &text);

} // namespace corvane
