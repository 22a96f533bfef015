#include "fixed_context.h"
#include "platform/engine/expression/aggregate_names.h"
#include "platform/engine/expression/functions.h"
#include "support/suite.h"

#include <QtCore/QRegularExpression>
#include <QtTest/QtTest>

using namespace corvane;

namespace {

QString pageText()
{
    QFile file(QStringLiteral(CORVANE_SOURCE_DIR "/docs/expressions.md"));
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

QStringList cells(const QString &line)
{
    QStringList cells = line.split(QStringLiteral(" | "));
    cells.first().remove(0, 2);
    cells.last().chop(2);
    return cells;
}

} // namespace

/// What the page for report authors says, held against what expressions do.
class tst_expression_page : public test::Suite
{
    Q_OBJECT

private Q_SLOTS:
    void examplesHold_data();
    void examplesHold();
    void everyFunctionIsThere();
};

void tst_expression_page::examplesHold_data()
{
    QTest::addColumn<QString>("expression");
    QTest::addColumn<QString>("result");
    qsizetype example = -1;
    for (const QString &line : pageText().split(u'\n')) {
        if (!line.startsWith(u"| "))
            continue;
        const QStringList row = cells(line);
        if (row.last() == u"result")
            example = row.indexOf(QStringLiteral("example"));
        else if (row.contains(QStringLiteral("column"))
            || row.contains(QStringLiteral("aggregate")))
            example = -1;
        else if (example >= 0)
            QTest::newRow(qPrintable(row[example]))
                << row[example].sliced(1).chopped(1) << row.last();
    }
}

void tst_expression_page::examplesHold()
{
    QFETCH(QString, expression);
    QTEST(test::evaluated(expression), "result");
}

void tst_expression_page::everyFunctionIsThere()
{
    const QString page = pageText();
    for (const QString &name : functionNames() + aggregateNames())
        QVERIFY2(page.contains(QRegularExpression(u'`' + name + u"[(`]")), qPrintable(name));
}

QTEST_GUILESS_MAIN(tst_expression_page)
#include "tst_expression_page.moc"
