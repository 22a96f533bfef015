// The reader beside Windows's own: where the two are to say the same of a file, and where not.

#include "shared/code_page.h"
#include "shared/profile.h"
#include "support/suite.h"

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QTemporaryDir>
#include <QtTest/QtTest>

#include <qt_windows.h>

using namespace corvane;

namespace {

constexpr int kBuffer = 8000;

/// Wine's functions are written anew from what is known of Windows's, and not the same everywhere.
bool isWine()
{
    return GetProcAddress(GetModuleHandleW(L"ntdll.dll"), "wine_get_version") != nullptr;
}

QByteArray ansi(const QString &text)
{
    QByteArray bytes;
    for (const QChar c : text)
        bytes += char(toWindows1252(c).value_or('?'));
    return bytes;
}

QByteArray systemPath(const QString &file)
{
    return ansi(QDir::toNativeSeparators(file));
}

/// What the system reads, its default being "(none)".
QByteArray systemValue(const QString &file, const char *section, const char *key)
{
    QByteArray buffer(kBuffer, '#');
    buffer.resize(qsizetype(GetPrivateProfileStringA(
        section, key, "(none)", buffer.data(), DWORD(buffer.size()), systemPath(file).constData())));
    return buffer == "(none)" ? QByteArray() : buffer;
}

QByteArray inMain(const QByteArray &line)
{
    return "[Main]\r\n" + line + "\r\n";
}

} // namespace

class tst_profile_functions : public test::Suite
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void bothReadAFile_data();
    void bothReadAFile();
    void namesIgnoreCaseBeyondAscii();
    void theSystemReadsWhatIsWritten_data();
    void theSystemReadsWhatIsWritten();
    void whatTheSystemWritesIsRead();

private:
    /// A name of its own for each, because the system keeps files that it has read.
    QString fresh() { return m_folder.filePath(QStringLiteral("%1.rpt").arg(++m_files)); }

    QTemporaryDir m_folder;
    int m_files = 0;
};

void tst_profile_functions::initTestCase()
{
    if (GetACP() != 1252)
        QSKIP("The system reads profiles in its own code page, which is not Windows-1252 here.");
}

void tst_profile_functions::bothReadAFile_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("ours"); // of [Main] Key
    QTest::addColumn<QByteArray>("windows");
    QTest::addColumn<QByteArray>("wine");

    const auto same = [](const char *name, const QByteArray &bytes, const QByteArray &value) {
        QTest::newRow(name) << bytes << fromWindows1252(value) << value << value;
    };
    same("a value", "[Main]\r\nKey=abc\r\n", "abc");
    same("line feeds alone, no last one", "[Main]\nKey=abc", "abc");
    same("returns before a return", "[Main]\r\r\nKey=abc\r\r\n", "abc");
    same("a return behind a line feed", "[Main]\n\rKey=abc\n\r", "abc");
    same("names in another case, in blanks", " [maIN] \r\n  KEY  =abc", "abc");
    same("blanks within the brackets", "[ Main ]\r\nKey=abc", "abc");
    same("blanks within a value", inMain("Key=a  b"), "a  b");
    same("a no-break space is a letter", inMain("Key=\xa0" "a\xa0"), "\xa0" "a\xa0");
    same("an empty value", inMain("Key="), "");
    same("a missing key", inMain("Other=1"), "");
    same("a missing section", "[Else]\r\nKey=1\r\n[Main]\r\nOther=2\r\n", "");
    same("a key before any section", "Key=1\r\n[Main]\r\n", "");
    same("an empty file", "", "");
    same("double quotes", inMain("Key=\" a \""), " a ");
    same("single quotes", inMain("Key='a'"), "a");
    same("quotes within quotes", inMain("Key=\"'a'\""), "'a'");
    same("empty quotes", inMain("Key=\"\""), "");
    same("a quote by itself", inMain("Key=\""), "\"");
    same("quotes of two kinds", inMain("Key=\"a'"), "\"a'");
    same("quotes around a part", inMain("Key=\"a\" b"), "\"a\" b");
    same("a comment", "[Main]\r\n;Key=no\r\n  ;Key=no\r\nKey=yes\r\n", "yes");
    same("a number sign is no comment", "[Main]\r\n#Key=no\r\nKey=yes\r\n", "yes");
    same("a section in a comment", ";[Main]\r\nKey=1\r\n", "");
    same("a semicolon in a value", inMain("Key=a ; b;c"), "a ; b;c");
    same("an equals sign in a value", inMain("Key=a=b"), "a=b");
    same("a key twice", "[Main]\r\nKey=1\r\nkey=2\r\n", "1");
    same("a section twice", "[Main]\r\nOther=1\r\n[main]\r\nKey=2\r\n", "");
    same("words behind a section's bracket", "[Main] words\r\nKey=1\r\n", "1");
    same("a key without a name", "[Main]\r\n=1\r\nKey=2\r\n", "2");
    same("a NUL in a value", QByteArray("[Main]\nKey=12\0" "34\n", 17), "12");
    same("control characters", "[Main]\r\nA=1\r\n\x1a\r\nKey=a\x01" "b\r\n", "a\x01" "b");
    same("letters of Windows-1252", inMain("Key=Zo\xeb \x80\x95"), "Zo\xeb \x80\x95");
    for (const int length : {7998, 7999, 8000, 9000}) {
        const QByteArray value(length, 'x');
        same(qPrintable(QStringLiteral("%1 characters").arg(length)), inMain("Key=" + value), value.first(std::min(length, 7999)));
        same(qPrintable(QStringLiteral("%1 characters in quotes").arg(length)), inMain("Key=\"" + value + '"'),
            value.first(std::min(length, 7999)));
    }

    // Blanks are part of a value: a definition may say that a column's caption is two of them.
    const auto kept = [](const char *name, const char *line, const char *ours, const char *theirs) {
        QTest::newRow(name) << inMain(line) << QString::fromLatin1(ours) << QByteArray(theirs) << QByteArray(theirs);
    };
    kept("deliberate: blanks around a value stay", "Key=  a b ", "  a b ", "a b");
    kept("deliberate: blanks alone are a value", "Key=   ", "   ", "");
    kept("deliberate: a tab stays", "Key=\ta", "\ta", "a");
    kept("deliberate: quotes within blanks stay", "Key= \"a\" ", " \"a\" ", "a");
    // A definition that says it is UTF-8, or can be nothing else, is read as that on every system.
    QTest::newRow("deliberate: UTF-8 without its mark") << inMain("Key=\xc5\x99") << QString(QChar(0x159))
                                                        << QByteArray("\xc5\x99") << QByteArray("\xc5\x99");
    QTest::newRow("deliberate: UTF-8 with its mark")
        << QByteArray("\xef\xbb\xbf" + inMain("Key=\xc3\xa9")) << QStringLiteral("\u00e9") << QByteArray() << QByteArray("\xe9");
    // Whoever looks at a file in an editor sees nothing behind a NUL, and no line end in a lone return.
    QTest::newRow("deliberate: a NUL ends the text")
        << QByteArray("[Main]\nA=1\n\0[Main]\nKey=2\n", 24) << QString() << QByteArray("2") << QByteArray("2");
    kept("deliberate: a lone return ends no line", "Key=a\rb", "a\rb", "a");
    // Else a word that somebody forgot to finish would hide the key below it.
    QTest::newRow("deliberate: a line without equals sign is no key") << inMain("Key\r\nKey=1") << QStringLiteral("1")
                                                                      << QByteArray() << QByteArray();

    const auto wineDiffers = [](const char *name, const QByteArray &bytes, const char *value, const char *wine) {
        QTest::newRow(name) << bytes << QString::fromLatin1(value) << QByteArray(value) << QByteArray(wine);
    };
    // Wine wants the bracket, and takes the last one of the line; Windows takes the first, or the line's end.
    wineDiffers("Wine differs: a section without its second bracket", "[Main\r\nKey=1\r\n", "1", "");
    wineDiffers("Wine differs: a second bracket behind a section", "[Main]x]\r\nKey=1\r\n", "1", "");
}

void tst_profile_functions::bothReadAFile()
{
    QFETCH(QByteArray, bytes);
    const QString name = fresh();
    QFile file(name);
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size());
    file.close();
    QTEST(ReadINI(name, u"Main", u"Key"), "ours");
    if (isWine())
        QTEST(systemValue(name, "Main", "Key"), "wine");
    else
        QTEST(systemValue(name, "Main", "Key"), "windows");
}

/// Wine does so with ASCII's letters only.
void tst_profile_functions::namesIgnoreCaseBeyondAscii()
{
    const QString name = fresh();
    QFile file(name);
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write("[M\xe4in]\r\nK\xd6y=1\r\n") > 0);
    file.close();
    QCOMPARE(ReadINI(name, u"m\u00c4in", u"k\u00f6Y"), QStringLiteral("1"));
    QCOMPARE(systemValue(name, "m\xc4in", "k\xf6Y"), QByteArray(isWine() ? "" : "1"));
}

void tst_profile_functions::theSystemReadsWhatIsWritten_data()
{
    QTest::addColumn<QByteArray>("before");
    QTest::addColumn<QString>("value");
    const auto row = [](const char *name, const char *before, const QString &value) {
        QTest::newRow(name) << QByteArray(before) << value;
    };
    row("a new file", "", QStringLiteral("x"));
    row("a new section", "[Else]\r\nA=1", QStringLiteral("x"));
    row("a new key", "[Main]\r\nA=1\r\n\r\n[Else]\r\nB=2\r\n", QStringLiteral("x"));
    row("another value", "[main]\r\n key = old \r\nKey=2\r\n", QStringLiteral("new"));
    row("line feeds alone", "[Main]\nKey=1\n", QStringLiteral("a=b;c"));
    row("quotes of its own", "[Main]\r\nKey=1\r\n", QStringLiteral("'a'"));
    row("blanks in quotes of its own", "[Main]\r\nKey=1\r\n", QStringLiteral("\" a \""));
    row("a quote at one end", "[Main]\r\nKey=1\r\n", QStringLiteral("a \"b\""));
    row("letters of Windows-1252", "[Main]\r\nKey=\xe9\r\n", QString::fromUtf8("Zo\u00eb \u20ac"));
    row("the longest", "[Main]\r\nKey=1\r\n", QString(Profile::kLongestValue, u'x'));
    row("none", "[Main]\r\nKey=1\r\n", QString());
}

void tst_profile_functions::theSystemReadsWhatIsWritten()
{
    QFETCH(QByteArray, before);
    QFETCH(QString, value);
    const QString name = fresh();
    if (!before.isEmpty()) {
        QFile file(name);
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write(before) == before.size());
    }
    WriteINI(name, u"Main", u"Key", value);
    QCOMPARE(systemValue(name, "Main", "Key"), ansi(value));
    QCOMPARE(systemValue(name, "Main", "A"), before.contains("[Main]\r\nA=1") ? QByteArray("1") : QByteArray());
}

void tst_profile_functions::whatTheSystemWritesIsRead()
{
    const QString name = fresh();
    const QByteArray path = systemPath(name);
    const auto systemWrites = [&](const char *key, const char *value) {
        return WritePrivateProfileStringA("Main", key, value, path.constData()) != 0;
    };
    QVERIFY(systemWrites("Key", "abc") && systemWrites("Quoted", "\" a \"") && systemWrites("Umlaut", "Zo\xeb"));
    QCOMPARE(ReadINI(name, u"main", u"KEY"), QStringLiteral("abc"));
    QCOMPARE(ReadINI(name, u"main", u"Quoted"), QStringLiteral(" a "));
    QCOMPARE(ReadINI(name, u"main", u"Umlaut"), QStringLiteral("Zo\u00eb"));
    WriteINI(name, u"Main", u"Key", QStringLiteral("ours"));
    QVERIFY(systemWrites("Next", "theirs"));
    QCOMPARE(ReadINI(name, u"Main", u"Key"), QStringLiteral("ours"));
    QCOMPARE(ReadINI(name, u"Main", u"Next"), QStringLiteral("theirs"));
}

QTEST_GUILESS_MAIN(tst_profile_functions)
#include "tst_profile_functions.moc"
