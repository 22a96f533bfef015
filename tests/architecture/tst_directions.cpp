#include "include_rules.h"
#include "support/suite.h"

#include <QtTest/QtTest>

using namespace corvane::test;

namespace {

const QString kTables = QStringLiteral(
    "| folder | may include |\n"
    "|---|---|\n"
    "| `platform/store` | nothing |\n"
    "| `rules`, `render` | `platform/store` |\n"
    "| `shell` | `rules`, `render` and `platform/store` |\n"
    "| `demo` | `rules` |\n"
    "\n"
    "| headers | only in |\n"
    "|---|---|\n"
    "| `QtWidgets/` | `shell` |\n"
    "| `sqlite3.h` | `platform/store`, `demo` |\n"
    "\n"
    "| folder | holds |\n"
    "| `late` | a table that is not this one |\n");

void writeFile(const QDir &root, const QString &name, const QString &text)
{
    const QString path = root.filePath(name);
    QVERIFY(QDir().mkpath(QFileInfo(path).path()));
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(text.toUtf8());
}

} // namespace

class tst_directions : public Suite
{
    Q_OBJECT

private Q_SLOTS:
    void sourcesFollowTheTables();
    void wrongIncludesAreFound_data();
    void wrongIncludesAreFound();
    void circlesAreFound();
};

void tst_directions::sourcesFollowTheTables()
{
    const QDir root(QStringLiteral(CORVANE_SOURCE_DIR));
    QFile architecture(root.filePath(QStringLiteral("ARCHITECTURE.md")));
    QVERIFY(architecture.open(QIODevice::ReadOnly));
    const IncludeRules rules = readIncludeRules(QString::fromUtf8(architecture.readAll()));
    QVERIFY2(rules.libraries.contains(QStringLiteral("QtWidgets/")), "the table of libraries was not found");
    QCOMPARE(circles(rules).join(u'\n'), QString());
    QCOMPARE(includeFaults(rules, root.path()).join(u'\n'), QString());
}

void tst_directions::wrongIncludesAreFound_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("fault");

    const auto row = [](const char *name, const char *file, const char *text, const char *fault = "") {
        QTest::newRow(name) << QString::fromLatin1(file) << QString::fromLatin1(text) << QString::fromLatin1(fault);
    };
    row("downwards is allowed", "src/shell/a.cpp", "#include \"rules/r.h\"\n#include <QtWidgets/QWidget>\n");
    row("the own folder is allowed", "src/rules/a.cpp", "#include \"rules/r.h\"\n#include \"beside.h\"\n");
    row("libraries that no row names are free", "src/rules/a.cpp", "#include <vector>\n#include <QtCore/QString>\n");
    row("upwards", "src/rules/a.cpp", "// first line\n#include \"shell/form.h\"\n",
        "src/rules/a.cpp:2: \"rules\" may not include \"shell/form.h\"");
    row("sideways", "src/render/a.cpp", "#include \"rules/r.h\"\n",
        "src/render/a.cpp:1: \"render\" may not include \"rules/r.h\"");
    row("upwards in angle brackets", "src/rules/a.cpp", "#include <shell/form.h>\n",
        "src/rules/a.cpp:1: \"rules\" may not include \"shell/form.h\"");
    row("with blanks around the word", "src/rules/a.cpp", "  #  include \"shell/form.h\"\n",
        "src/rules/a.cpp:1: \"rules\" may not include \"shell/form.h\"");
    row("by way of the folder above", "src/rules/a.cpp", "#include \"../shell/form.h\"\n",
        "src/rules/a.cpp:1: \"rules\" may not include \"../shell/form.h\"");
    row("a subfolder is a folder of its own", "src/platform/store/inner/a.cpp", "",
        "src/platform/store/inner/a.cpp:1: the folder \"platform/store/inner\" has no row in the table");
    row("rows end with their table", "src/late/a.cpp", "",
        "src/late/a.cpp:1: the folder \"late\" has no row in the table");
    row("beside src", "demo/a.cpp", "#include \"rules/r.h\"\n#include <sqlite3.h>\n#include \"shell/form.h\"\n",
        "demo/a.cpp:3: \"demo\" may not include \"shell/form.h\"");
    row("widgets below the forms", "src/render/a.cpp", "#include <QtWidgets/QLabel>\n",
        "src/render/a.cpp:1: <QtWidgets/QLabel> may not be included in \"render\"");
    row("widgets without their module", "src/render/a.cpp", "#include <QLabel>\n",
        "src/render/a.cpp:1: <QLabel> is written without its module");
    row("a library out of its folder", "src/shell/a.cpp", "#include \"sqlite3.h\"\n",
        "src/shell/a.cpp:1: <sqlite3.h> may not be included in \"shell\"");
    row("a header without its first line", "src/rules/r.h", "\n#pragma once\n",
        "src/rules/r.h:1: a header starts with #pragma once");
}

void tst_directions::wrongIncludesAreFound()
{
    QFETCH(QString, file);
    QFETCH(QString, text);
    const QTemporaryDir tree;
    writeFile(QDir(tree.path()), file, text);
    QTEST(includeFaults(readIncludeRules(kTables), tree.path()).join(u'\n'), "fault");
}

void tst_directions::circlesAreFound()
{
    QCOMPARE(circles(readIncludeRules(kTables)), QStringList());
    QString closed = kTables;
    closed.replace(QStringLiteral("| nothing |"), QStringLiteral("| `shell` |"));
    QVERIFY(circles(readIncludeRules(closed)).contains(QStringLiteral("\"rules\" reaches itself")));
    QVERIFY(!circles(readIncludeRules(closed)).contains(QStringLiteral("\"demo\" reaches itself")));
}

QTEST_MAIN(tst_directions)
#include "tst_directions.moc"
