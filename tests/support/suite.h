#pragma once

#include <QtCore/QObject>

namespace corvane::test {

/// Base of every test class: a warning that the case did not announce with QTest::ignoreMessage fails it.
class Suite : public QObject
{
    Q_OBJECT

protected Q_SLOTS:
    void init();
};

} // namespace corvane::test
