#include "support/suite.h"

#include <QtCore/QRegularExpression>
#include <QtTest/QtTest>

namespace corvane::test {

void Suite::init()
{
    QTest::failOnWarning(QRegularExpression(QStringLiteral(".+")));
}

} // namespace corvane::test
