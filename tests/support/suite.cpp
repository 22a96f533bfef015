#include "support/suite.h"

#include <QtCore/QRegularExpression>
#include <QtTest/QtTest>

namespace corvane::test {

void Suite::init()
{
    // What the offscreen platform says about windows that it cannot decorate is not ours.
    QTest::failOnWarning(QRegularExpression(QStringLiteral("^(?!This plugin does not support ).+")));
}

} // namespace corvane::test
