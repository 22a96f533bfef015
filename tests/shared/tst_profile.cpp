#include "shared/placed_profile.h"
#include "shared/profile.h"
#include "support/suite.h"

#include <QtCore/QFile>
#include <QtCore/QTemporaryDir>
#include <QtTest/QtTest>

#include <array>
#include <thread>

using namespace corvane;

namespace {

void write(const QString &file, const QByteArray &bytes)
{
    QFile target(file);
    QVERIFY(target.open(QIODevice::WriteOnly));
    target.write(bytes);
}

QByteArray read(const QString &file)
{
    QFile source(file);
    return source.open(QIODevice::ReadOnly) ? source.readAll() : QByteArray("(unreadable)");
}

} // namespace

class tst_profile : public test::Suite
{
    Q_OBJECT

private Q_SLOTS:
    void readsAValue_data();
    void readsAValue();
    void saysWhatEveryLineIs();
    void cutsLongValues();
    void readsEncodings_data();
    void readsEncodings();
    void seesEveryChangeOnDisk();
    void writesOneValue_data();
    void writesOneValue();
    void writesSeveralValuesAtOnce();
    void refusesWhatCannotBeWritten();
    void noWritersChangeIsLost();

private:
    QString path(const char *name) const { return m_folder.filePath(QString::fromLatin1(name)); }

    QTemporaryDir m_folder;
};

void tst_profile::readsAValue_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("value"); // of [Main] Key

    const auto row = [](const char *name, const char *bytes, const char *value) {
        QTest::newRow(name) << QByteArray(bytes) << QString::fromLatin1(value);
    };
    row("plain", "[Main]\r\nKey=abc\r\n", "abc");
    row("line feeds alone, no last one", "[Main]\nKey=abc", "abc");
    row("returns before a return are none of the value", "[Main]\r\r\nKey=abc\r\r\n", "abc");
    row("names ignore case and blanks", " [ maIN ] \n  KEY  =abc", "abc");
    row("a value keeps its blanks", "[Main]\nKey=  a b \r\n", "  a b ");
    row("blanks alone are a value", "[Main]\nKey=   \n", "   ");
    row("double quotes go", "[Main]\nKey=\" a \"\n", " a ");
    row("single quotes go", "[Main]\nKey='a'\n", "a");
    row("one pair only", "[Main]\nKey=\"'a'\"\n", "'a'");
    row("a quote by itself stays", "[Main]\nKey=\"\n", "\"");
    row("unmatched quotes stay", "[Main]\nKey=\"a'\n", "\"a'");
    row("a comment is no key", "[Main]\n;Key=no\nKey=yes\n", "yes");
    row("a semicolon inside a value stays", "[Main]\nKey=a;b\n", "a;b");
    row("an equals sign inside a value stays", "[Main]\nKey=a=b\n", "a=b");
    row("the first key counts", "[Main]\nKey=1\nkey=2\n", "1");
    row("the first section counts", "[Main]\nOther=1\n[main]\nKey=2\n", "");
    row("another section's key does not", "[Else]\nKey=1\n[Main]\nOther=2\n", "");
    row("a key before any section does not", "Key=1\n[Main]\n", "");
    row("a line without equals sign is nothing", "[Main]\nKey\nKey=1\n", "1");
    QTest::newRow("a NUL ends the text") << QByteArray("[Main]\nA=1\n\0[Main]\nKey=2\n", 22) << QString();
    QTest::newRow("a NUL ends a value") << QByteArray("[Main]\nKey=12\0" "34\n", 16) << QStringLiteral("12");
}

void tst_profile::readsAValue()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QString, value);
    const QString file = path("any.rpt");
    write(file, bytes);
    QCOMPARE(ReadINI(file, u"Main", u"Key"), value);
    QCOMPARE(ReadINI(file, u"MAIN", u" key "), value);
    QCOMPARE(ReadINI(file, u"Main", u"Absent"), QString());
    QCOMPARE(ReadINI(path("absent.rpt"), u"Main", u"Key"), QString());
    // The reading with places sees the same, and the value stands where it says.
    const QString text = profileText(file, bytes);
    const PlacedProfile placed(text);
    const PlacedLine *line = placed.line(u"main", u"KEY");
    QCOMPARE(placed.value(u"Main", u"Key"), value);
    QCOMPARE(line ? line->value : QString(), value);
    if (line)
        QVERIFY(text.split(u'\n')[line->valuePlace.line - 1].sliced(line->valuePlace.column - 1).startsWith(value));
}

void tst_profile::saysWhatEveryLineIs()
{
    const PlacedProfile placed(u"A=0\n\n;c\n[One]\r\nA=1\n a =2\nstray\n[Two\nB=\"x\"\n [one] \nC=3");
    using enum ProfileLineKind;
    QStringList lines;
    for (const PlacedLine &line : placed.lines())
        lines += QStringLiteral("%1 %2:%3 [%4] %5=%6 %7")
                     .arg(int(line.kind)).arg(line.place.line).arg(line.place.column).arg(line.section, line.name, line.value)
                     .arg(line.valuePlace.column);
    const auto expected = [](ProfileLineKind kind, const char *rest) { return QString(QString::number(int(kind)) + u' ' + QLatin1StringView(rest)); };
    QCOMPARE(lines, QStringList({expected(Stray, "1:1 [] A=0= 1"), expected(Section, "4:1 [One] = 1"), expected(Key, "5:1 [One] A=1 3"),
        expected(RepeatedKey, "6:2 [One] a=2 5"), expected(Stray, "7:1 [One] stray= 1"), expected(Section, "8:1 [Two] = 1"),
        expected(Key, "9:1 [Two] B=x 4"), expected(RepeatedSection, "10:2 [one] = 1"), expected(OverlookedKey, "11:1 [one] C=3 3")}));
}

void tst_profile::cutsLongValues()
{
    const QString file = path("long.rpt");
    write(file, "[S]\nK=" + QByteArray(9000, 'x') + "\nL=" + QByteArray(7999, 'y'));
    QCOMPARE(ReadINI(file, u"S", u"K").size(), 7999);
    QCOMPARE(ReadINI(file, u"S", u"L").size(), 7999);
}

void tst_profile::readsEncodings_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("value");

    const QString name = QString::fromUtf8("Dvo\u0159\u00e1k");
    QTest::newRow("UTF-8 that says so by its letters")
        << QStringLiteral("a.rpt") << QByteArray("[S]\nK=Dvo\xc5\x99\xc3\xa1k") << name;
    QTest::newRow("UTF-8 with its mark")
        << QStringLiteral("a.rpt") << QByteArray("\xef\xbb\xbf[S]\nK=Dvo\xc5\x99\xc3\xa1k") << name;
    QTest::newRow("Windows-1252") << QStringLiteral("a.rpt") << QByteArray("[S]\nK=Zo\xeb \x80\x95")
                                  << QString::fromUtf8("Zo\u00eb \u20ac\u2022");
    QTest::newRow("corvane.ini is never UTF-8") << QStringLiteral("CORVANE.ini") << QByteArray("[S]\nK=\xc3\xa1")
                                                << QString::fromUtf8("\u00c3\u00a1");
}

void tst_profile::readsEncodings()
{
    QFETCH(QString, name);
    QFETCH(QByteArray, bytes);
    QFETCH(QString, value);
    const QString file = m_folder.filePath(name);
    write(file, bytes);
    QCOMPARE(ReadINI(file, u"S", u"K"), value);
}

void tst_profile::seesEveryChangeOnDisk()
{
    const QString file = path("changing.rpt");
    for (int i = 0; i < 20; ++i) { // same size each time: only the stamp tells
        write(file, "[S]\nK=" + QByteArray::number(10 + i));
        QCOMPARE(ReadINI(file, u"S", u"K"), QString::number(10 + i));
    }
    ProfileFile kept(file);
    QVERIFY(!kept.refresh());
    write(file, "[S]\nK=new");
    QCOMPARE(kept.value(u"S", u"K"), QStringLiteral("29"));
    QVERIFY(kept.refresh());
    QCOMPARE(kept.value(u"S", u"K"), QStringLiteral("new"));
    const QString other = path("other.rpt");
    write(other, "[S]\nK=put in place");
    QVERIFY(QFile::remove(file) && QFile::rename(other, file));
    QVERIFY(kept.refresh());
    QCOMPARE(kept.value(u"S", u"K"), QStringLiteral("put in place"));
    QFile::remove(file); // as when the network folder is gone
    QVERIFY(!kept.refresh());
    QCOMPARE(kept.value(u"S", u"K"), QStringLiteral("put in place"));
    QVERIFY(!kept.refresh());
    write(file, "[S]\nK=back");
    QVERIFY(kept.refresh());
    QCOMPARE(kept.value(u"S", u"K"), QStringLiteral("back"));
}

void tst_profile::writesOneValue_data()
{
    QTest::addColumn<QByteArray>("before");
    QTest::addColumn<QString>("value"); // of [Main] Key
    QTest::addColumn<QByteArray>("after");

    const auto row = [](const char *name, const char *before, const char *value, const char *after) {
        QTest::newRow(name) << QByteArray(before) << QString::fromUtf8(value) << QByteArray(after);
    };
    row("replaced, everything else to the byte", "; c\r\n[Main] \r\n key = old \r\nB=\xe9\r\n", "new",
        "; c\r\n[Main] \r\n key =new\r\nB=\xe9\r\n");
    row("line ends stay as they are, doubled returns too", "[Main]\r\r\nKey=old\r\r\n", "new", "[Main]\r\r\nKey=new\r\r\n");
    row("a new key goes behind the section's last", "[Main]\nA=1\n\n[Next]\nB=2\n", "x", "[Main]\nA=1\nKey=x\n\n[Next]\nB=2\n");
    row("a new section goes to the end", "[A]\nB=1", "x", "[A]\nB=1\n[Main]\nKey=x\n");
    row("a new file", "", "x", "[Main]\r\nKey=x\r\n");
    row("the first of two sections", "[Main]\nA=1\n[main]\nKey=2\n", "x", "[Main]\nA=1\nKey=x\n[main]\nKey=2\n");
    row("blanks stay a value", "[Main]\nKey=1\n", "  ", "[Main]\nKey=  \n");
    row("the file's own encoding", "[Main]\nA=\xc3\xa9\nKey=1\n", "\u0159", "[Main]\nA=\xc3\xa9\nKey=\xc5\x99\n");
    row("Windows-1252 where the file is", "[Main]\nA=\xe9\nKey=1\n", "\u20ac", "[Main]\nA=\xe9\nKey=\x80\n");
    row("quotes of its own survive", "[Main]\nKey=1\n", "'a'", "[Main]\nKey=\"'a'\"\n");
}

void tst_profile::writesOneValue()
{
    QFETCH(QByteArray, before);
    QFETCH(QString, value);
    QFETCH(QByteArray, after);
    const QString file = path("written.rpt");
    QFile::remove(file);
    if (!before.isEmpty())
        write(file, before);
    WriteINI(file, u"Main", u"Key", value);
    QCOMPARE(read(file), after);
    QCOMPARE(ReadINI(file, u"Main", u"Key"), value);
    WriteINI(file, u"Main", u"Key", value);
    QCOMPARE(read(file), after);
}

void tst_profile::writesSeveralValuesAtOnce()
{
    const QString file = path("several.rpt");
    write(file, "[A]\nOne=1\n[B]\nTwo=2\n");
    const auto entry = [](const char *section, const char *key, const char *value) {
        return ProfileEntry {QString::fromLatin1(section), QString::fromLatin1(key), QString::fromLatin1(value)};
    };
    const std::array<ProfileEntry, 4> entries {entry("A", "One", "x"), entry("B", "New", "y"), entry("B", "Last", ""), entry("C", "K", "z")};
    WriteINI(file, entries);
    QCOMPARE(read(file), QByteArray("[A]\nOne=x\n[B]\nTwo=2\nNew=y\nLast=\n[C]\nK=z\n"));
}

void tst_profile::refusesWhatCannotBeWritten()
{
    const QString file = path("refused.rpt");
    const QByteArray before = "[Main]\nKey=\xe9\n";
    write(file, before);
    const QStringList impossible {QString::fromUtf8("\u0159"), QStringLiteral("two\nlines")};
    for (const QString &value : impossible) {
        QVERIFY_EXCEPTION_THROWN(WriteINI(file, u"Main", u"Key", value), ProfileWriteError);
        QCOMPARE(read(file), before);
    }
    const std::array<ProfileEntry, 2> goodAndBad {{{QStringLiteral("Main"), QStringLiteral("Key"), QStringLiteral("good")},
        {QStringLiteral("Main"), QStringLiteral("Other"), QString(8000, u'x')}}};
    QVERIFY_EXCEPTION_THROWN(WriteINI(file, goodAndBad), ProfileWriteError);
    QCOMPARE(read(file), before);
    write(file, "[Main]\nKey=1\n");
    const QString lookalike = QString::fromUtf8("\u00c3\u00a9"); // its two bytes are one letter of UTF-8
    QVERIFY_EXCEPTION_THROWN(WriteINI(file, u"Main", u"Key", lookalike), ProfileWriteError);
    QVERIFY_EXCEPTION_THROWN(WriteINI(path("no/such/folder.rpt"), u"A", u"B", QStringLiteral("c")), ProfileWriteError);
    // Nothing to write, and yet nobody has changed the file: its folder is gone.
    QVERIFY_EXCEPTION_THROWN(WriteINI(path("no/such/folder.rpt"), {}, {"[A]\n", "[A]\n"}), ProfileWriteError);
}

/// Each writer counts on from what it has read, so a change that is lost is missing from the sum.
void tst_profile::noWritersChangeIsLost()
{
    constexpr int kWriters = 4;
    constexpr int kTimes = 25;
    const QString file = path("counted.rpt");
    write(file, "[Main]\nCount=0\n");
    const auto count = [&] {
        for (int done = 0; done < kTimes;) {
            const QByteArray bytes = read(file);
            const Profile profile(QString::fromLatin1(bytes));
            const ProfileEntry entry {QStringLiteral("Main"), QStringLiteral("Count"),
                QString::number(profile.value(u"Main", u"Count").toInt() + 1)};
            done += WriteINI(file, {&entry, 1}, {bytes, bytes}) ? 1 : 0;
        }
    };
    {
        std::vector<std::jthread> writers;
        writers.reserve(kWriters);
        for (int i = 0; i < kWriters; ++i)
            writers.emplace_back(count);
    }
    QCOMPARE(read(file), "[Main]\nCount=" + QByteArray::number(kWriters * kTimes) + '\n');
    const ProfileEntry entry {QStringLiteral("Main"), QStringLiteral("Mine"), QStringLiteral("1")};
    QVERIFY(!WriteINI(file, {&entry, 1}, {"[Main]\n", "[Main]\n"})); // somebody else's is not replaced
    QVERIFY(!read(file).contains("Mine"));
    QVERIFY(WriteINI(file, {&entry, 1}, {"[Main]\n", read(file)})); // unless that is meant
    QCOMPARE(read(file), QByteArray("[Main]\nMine=1\n"));
}

QTEST_MAIN(tst_profile)
#include "tst_profile.moc"
