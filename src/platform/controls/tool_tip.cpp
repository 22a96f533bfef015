#include "platform/controls/tool_tip.h"

#include <QtCore/QStringList>
#include <QtGui/QTextDocument>

#include <algorithm>

namespace corvane {

namespace {

constexpr int kLongLine = 60; ///< letters

} // namespace

QString plainToolTip(const QString &text)
{
    if (text.isEmpty())
        return {};
    const bool isLong = std::ranges::any_of(
        text.split(u'\n'), [](const QString &line) { return line.size() > kLongLine; });
    return Qt::convertFromPlainText(text, isLong ? Qt::WhiteSpaceNormal : Qt::WhiteSpacePre);
}

} // namespace corvane
