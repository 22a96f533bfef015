#include "support/suite.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QRegularExpression>
#include <QtTest/QtTest>

namespace corvane::test {

void Suite::init()
{
    // What the offscreen platform says about windows that it cannot decorate is not ours.
    // A system's own file or font dialog takes no answers from a test.
    QCoreApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
    QTest::failOnWarning(QRegularExpression(QStringLiteral("^(?!This plugin does not support ).+")));
}

} // namespace corvane::test
