#include "fuzz/expression_promises.h"
#include "support/suite.h"

#include <QtCore/QDir>
#include <QtTest/QtTest>

using namespace corvane;

/// What fuzzing found worth keeping, run again.
class tst_expression_corpus : public test::Suite
{
    Q_OBJECT

private Q_SLOTS:
    void keepsItsPromises();
};

void tst_expression_corpus::keepsItsPromises()
{
    const QDir corpus(QStringLiteral(CORVANE_SOURCE_DIR "/tests/fuzz/expression"));
    const QStringList names = corpus.entryList(QDir::Files);
    QVERIFY(names.size() > 100);
    for (const QString &name : names) {
        QFile file(corpus.filePath(name));
        QVERIFY(file.open(QIODevice::ReadOnly));
        const QString broken = test::brokenPromise(file.readAll());
        QVERIFY2(broken.isEmpty(), qPrintable(QString(name + u": " + broken)));
    }
}

QTEST_GUILESS_MAIN(tst_expression_corpus)
#include "tst_expression_corpus.moc"
