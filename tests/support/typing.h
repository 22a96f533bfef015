#pragma once

#include <QtTest/QtTest>
#include <QtWidgets/QWidget>

namespace corvane::test {

/// Replaces what a field holds by typing, key by key.
inline void typeInto(QWidget *field, const QString &text)
{
    field->setFocus();
    QTest::keyClick(field, Qt::Key_A, Qt::ControlModifier);
    QTest::keyClick(field, Qt::Key_Delete);
    QTest::keyClicks(field, text);
}

} // namespace corvane::test
