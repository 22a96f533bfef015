#pragma once

#include <QtWidgets/QWidget>

namespace corvane {

/// Gives a control the name that the program and its tests know it by, and the one that screen readers say.
inline void nameControl(QWidget *control, const QString &objectName, const QString &spoken)
{
    control->setObjectName(objectName);
    control->setAccessibleName(spoken);
}

} // namespace corvane
