#include "definitions/selection_token_list.h"
#include "platform/database/error.h"
#include "shared/run_time_fault.h"
#include "support/canned_driver.h"
#include "support/suite.h"

#include <QtTest/QtTest>

using namespace corvane;

namespace {

QString request(const QString &body)
{
    return u"select * from Visits where Payer in {*SQL01*}" + body + u"{*/SQL*} or Old = **INSSQL01**;";
}

QString withMode(int mode, int quote)
{
    return request(QStringLiteral("Name|PayerNo|Payers|| Choose |%1|%2|").arg(mode).arg(quote));
}

} // namespace

class tst_selection_token : public test::Suite
{
    Q_OBJECT

private Q_SLOTS:
    void buildsTheListQuery_data();
    void buildsTheListQuery();
    void readsTheToken();
    void refusesBadTokens_data();
    void refusesBadTokens();
    void writesTheSelection_data();
    void writesTheSelection();
    void replacesTheFirstTokenAndEveryMarker();
    void appliesAnswersToTheTextAtHand();
    void refusesAllOfAnIncompleteList_data();
    void refusesAllOfAnIncompleteList();
    void fillsFromARowset();
    void saysWhichTokensListFails();
};

void tst_selection_token::buildsTheListQuery_data()
{
    QTest::addColumn<QString>("body");
    QTest::addColumn<QString>("query");
    const auto row = [](const char *name, const char *body, const char *query) {
        QTest::newRow(name) << QString::fromLatin1(body) << QString::fromLatin1(query);
    };
    row("plain", "Name|PayerNo|Payers||Choose|1|0|", "Select Name, PayerNo from Payers order by Name");
    row("condition", "Name|PayerNo|Payers|Kind = 'A'|Choose|1|0|",
        "Select Name, PayerNo from Payers where Kind = 'A' order by Name");
    row("blank condition", "Name|PayerNo|Payers|   |Choose|1|0|", "Select Name, PayerNo from Payers order by Name");
    row("condition kept as it is", "Name|No|Payers| a = 1 |Choose|1|0|",
        "Select Name, No from Payers where  a = 1  order by Name");
    row("join", "p.Name|p.No|Payers p join Kinds k on k.No = p.Kind|k.Old = 0|Choose|0|1|",
        "Select p.Name, p.No from Payers p join Kinds k on k.No = p.Kind where k.Old = 0 order by p.Name");
    row("whole query", "||  select a, b from T order by 2 |ignored|Choose|1|0|", "select a, b from T order by 2");
    row("one column empty", "|No|Payers||Choose|1|0|", "Select , No from Payers order by");
    row("more fields", "Name|No|Payers||Choose|1|0|x|y|", "Select Name, No from Payers order by Name");
}

void tst_selection_token::buildsTheListQuery()
{
    QFETCH(QString, body);
    QFETCH(QString, query);
    QCOMPARE(selectionListQuery(SelectionToken::parseRequest(request(body))), query);
}

void tst_selection_token::readsTheToken()
{
    // The four characters behind "{*SQL" are counted, not read.
    const QString text = QStringLiteral("in {*SQL?! xName|No|Payers||  Choose payers  | 2 |1|{*/SQL*}");
    const SelectionToken token = SelectionToken::parseRequest(text);
    QCOMPARE(token.start, 4);
    QCOMPARE(token.end, qint32(text.size() - 7));
    QCOMPARE(token.name, QStringLiteral("SQL?!"));
    QCOMPARE(token.marker(), QStringLiteral("**INSSQL?!**"));
    QCOMPARE(token.fields.first(), QStringLiteral("Name"));
    QCOMPARE(token.instruction(), QStringLiteral("Choose payers"));
    QCOMPARE(token.mode, SelectionMode::SeveralJoined);
    QVERIFY(token.quoted);
    QCOMPARE(SelectionToken::parseRequest(withMode(-1, 0)).mode, SelectionMode::Several);
    QCOMPARE(SelectionToken::parseRequest(withMode(0, 7)).mode, SelectionMode::One);
}

void tst_selection_token::refusesBadTokens_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("number");
    QTest::addColumn<QString>("words");
    const auto row = [](const char *name, const QString &text, int number, const char *words) {
        QTest::newRow(name) << text << number << QString::fromLatin1(words);
    };
    const QString token = QStringLiteral("x in {*SQL01*}a|b|T||i|1|0|{*/SQL*}");
    const auto body = [](const char *fields) { return QStringLiteral("x in {*SQL01*}%1{*/SQL*} ").arg(QLatin1StringView(fields)); };
    row("no token", QStringLiteral("select 1"), 9,
        "Subscript out of range: the query text holds no selection token \"{*SQL\"");
    row("empty", QString(), 9, "Subscript out of range: the query text holds no selection token \"{*SQL\"");
    row("lower case", token.toLower(), 9,
        "Subscript out of range: selection token \"{*sql01*}\" at character 6: its tags must be written \"{*SQL\" and \"{*/SQL*}\"");
    row("no closing tag", token.chopped(8), 5,
        "Invalid procedure call or argument: selection token \"{*SQL01\" at character 6: no closing \"{*/SQL*}\" follows");
    row("cut in the closing tag", token.chopped(1), 5,
        "Invalid procedure call or argument: selection token \"{*SQL01\" at character 6: no closing \"{*/SQL*}\" follows");
    row("cut in the opening tag", token.left(10), 5,
        "Invalid procedure call or argument: selection token \"{*SQL\" at character 6: no closing \"{*/SQL*}\" follows");
    row("closing tag in lower case", QString(token.chopped(8) + u"{*/sql*}"), 5,
        "Invalid procedure call or argument: selection token \"{*SQL01\" at character 6: its closing tag must be written \"{*/SQL*}\"");
    row("closed before it opens", QString(u"{*/SQL*} " + token), 5,
        "Invalid procedure call or argument: selection token \"{*SQL01\" at character 15: the first closing \"{*/SQL*}\" stands before it, at character 1");
    row("no body", body(""), 9, "Subscript out of range: selection token \"{*SQL01\" at character 6: it has 1 of 7 fields");
    row("fields missing", body("a|b|T|"), 9,
        "Subscript out of range: selection token \"{*SQL01\" at character 6: it has 4 of 7 fields");
    row("six fields", body("a|b|T||i|"), 13,
        "Type mismatch: selection token \"{*SQL01\" at character 6: the mode (field 6) \"{*/SQL*} \" is no number; the last field must end with \"|\"");
    row("no last bar", body("a|b|T||i|1|0"), 13,
        "Type mismatch: selection token \"{*SQL01\" at character 6: the quote (field 7) \"0{*/SQL*} \" is no number; the last field must end with \"|\"");
    row("digits and letters are no number", body("a|b|T||i|2abc|0|"), 13,
        "Type mismatch: selection token \"{*SQL01\" at character 6: the mode (field 6) \"2abc\" is no number");
    row("empty mode", body("a|b|T||i||0|"), 13,
        "Type mismatch: selection token \"{*SQL01\" at character 6: the mode (field 6) \"\" is no number");
    row("empty quote", body("a|b|T||i|1||"), 13,
        "Type mismatch: selection token \"{*SQL01\" at character 6: the quote (field 7) \"\" is no number");
}

void tst_selection_token::refusesBadTokens()
{
    QFETCH(QString, text);
    QFETCH(int, number);
    QFETCH(QString, words);
    try {
        SelectionToken::parseRequest(text);
        QFAIL("taken");
    } catch (const RunTimeFault &fault) {
        QCOMPARE(fault.description(), words);
        QCOMPARE(fault.number(), number);
    }
}

void tst_selection_token::writesTheSelection_data()
{
    QTest::addColumn<int>("mode");
    QTest::addColumn<int>("quote");
    QTest::addColumn<QStringList>("values");
    QTest::addColumn<bool>("all");
    QTest::addColumn<QString>("inToken");
    QTest::addColumn<QString>("atMarkers");
    const auto row = [](const char *name, int mode, int quote, const QStringList &values, const char *inToken, const char *atMarkers = nullptr) {
        QTest::newRow(name) << mode << quote << values << false << QString::fromUtf8(inToken)
                            << QString::fromUtf8(atMarkers ? atMarkers : inToken);
    };
    const QString apostrophe = QStringLiteral("O'Neal");
    const QStringList two {QStringLiteral("a"), QStringLiteral("b")};
    const QStringList three {QStringLiteral("1"), QStringLiteral("22"), QStringLiteral("3")};
    row("one, bare: quotes stay single", 0, 0, {apostrophe}, "O'Neal");
    row("one, quoted", 0, 1, {apostrophe}, "'O''Neal'");
    row("one, nothing selected", 0, 1, {}, "");
    row("several, bare", 1, 0, three, "( 1, 22, 3 ) ");
    row("several, bare, apostrophe", 1, 0, {apostrophe}, "( O''Neal ) ");
    row("several, quoted", 1, 1, two, "( 'a', 'b' ) ");
    row("several, quoted, apostrophe and letters", 5, 9, {apostrophe, QStringLiteral("Zoë 😀")}, "( 'O''Neal', 'Zoë 😀' ) ");
    row("several, an empty value", 1, 1, {QString()}, "( '' ) ");
    row("several, nothing marked", 1, 1, {}, "(NULL ) ");
    row("joined, quoted", 2, 1, two, "( 'a'+'|'+ 'b' ) ", "( 'a', 'b' ) ");
    row("joined, bare", 2, 0, three, "( 1+'|'+ 22+'|'+ 3 ) ", "( 1, 22, 3 ) ");
    row("joined, a comma in a value", 2, 1, {QStringLiteral("a,b")}, "( 'a+'|'+b' ) ", "( 'a,b' ) ");
    row("joined, nothing marked", 2, 1, {}, "(NULL ) ");
    QTest::newRow("joined, all") << 2 << 1 << two << true << QStringLiteral("('') ") << QStringLiteral("('') ");
    QTest::newRow("several, all") << 1 << 1 << two << true << QStringLiteral("( 'a', 'b' ) ") << QStringLiteral("( 'a', 'b' ) ");
}

void tst_selection_token::writesTheSelection()
{
    QFETCH(int, mode);
    QFETCH(int, quote);
    QFETCH(QStringList, values);
    QFETCH(bool, all);
    QFETCH(QString, inToken);
    QFETCH(QString, atMarkers);
    const QString marker = QStringLiteral("**INSSQL01**");
    const SelectionResult result = applySelection(withMode(mode, quote), {marker, values, all});
    QCOMPARE(result.sql, QString(u"select * from Visits where Payer in " + inToken + u" or Old = " + atMarkers + u";"));
    QCOMPARE(result.table, (SelectionTable {{}, {marker, atMarkers, QString()}}));
}

void tst_selection_token::replacesTheFirstTokenAndEveryMarker()
{
    const SelectionAnswers answers {QStringLiteral("**INSSQL01**"), {QStringLiteral("7")}};
    const QString token = QStringLiteral("{*SQL01*}a|b|T||i|0|0|{*/SQL*}");
    const QString other = QStringLiteral("{*SQL02*}a|b|T||i|0|0|{*/SQL*}");
    QCOMPARE(applySelection(token, answers).sql, QStringLiteral("7"));
    QCOMPARE(applySelection(QString(u"**INSSQL01** **INSSQL02** " + token + u"**INSSQL01**" + other), answers).sql,
        QString(u"7 **INSSQL02** 77" + other));
}

void tst_selection_token::appliesAnswersToTheTextAtHand()
{
    const SelectionAnswers answers {QStringLiteral("**INSSQL01**"), {QStringLiteral("7")}};
    QCOMPARE(applySelection(QStringLiteral("x={*SQL01*}other|b|U||i|1|0|{*/SQL*}"), answers).sql, QStringLiteral("x=( 7 ) "));
    QVERIFY_EXCEPTION_THROWN(applySelection(QStringLiteral("x={*SQL02*}a|b|T||i|1|0|{*/SQL*}"), answers), RunTimeFault);
    QVERIFY_EXCEPTION_THROWN(applySelection(QStringLiteral("x=( 7 ) "), answers), RunTimeFault);
}

void tst_selection_token::refusesAllOfAnIncompleteList_data()
{
    QTest::addColumn<int>("mode");
    QTest::addColumn<bool>("all");
    QTest::addColumn<QString>("incomplete");
    QTest::addColumn<bool>("refused");
    const QString lost = QStringLiteral("connection lost.");
    QTest::newRow("joined") << 2 << true << lost << true;
    QTest::newRow("not all") << 2 << false << lost << false;
    QTest::newRow("several") << 1 << true << lost << false;
    QTest::newRow("whole list") << 2 << true << QString() << false;
}

void tst_selection_token::refusesAllOfAnIncompleteList()
{
    QFETCH(int, mode);
    QFETCH(bool, all);
    QFETCH(QString, incomplete);
    QFETCH(bool, refused);
    const SelectionAnswers answers {QStringLiteral("**INSSQL01**"), {QStringLiteral("7")}, all};
    const QString refusal = selectionRefusal(SelectionToken::parseRequest(withMode(mode, 0)), answers, incomplete);
    QCOMPARE(refusal.contains(u"connection lost."), refused);
    QCOMPARE(refusal.isEmpty(), !refused);
}

void tst_selection_token::fillsFromARowset()
{
    const auto filled = [](const QStringList &fields, const QList<QStringList> &rows) {
        test::CannedDriver driver(fields, rows);
        QStringList lines;
        const QString fault = fillSelection(*driver.query({}), {},
            [&](QStringView display, QStringView value) { lines += display + u'=' + value; },
            [&](int percent) { lines += QString::number(percent) + u'%'; });
        if (!fault.isEmpty())
            lines += QStringLiteral("incomplete");
        return lines.join(u' ');
    };
    const QString name = QStringLiteral("Name");
    const QString no = QStringLiteral("No");
    QCOMPARE(filled({name, no}, {{QStringLiteral("b"), QStringLiteral("12")}, {QStringLiteral("(null)"), QStringLiteral("(null)")},
                                    {QStringLiteral("a"), QStringLiteral("x")}}),
        QStringLiteral("b=12 33% = 66% a=x 100%"));
    QCOMPARE(filled({name, no}, {}), QString());
    QCOMPARE(filled({name}, {{QStringLiteral("b")}, {QStringLiteral("a")}}), QStringLiteral("b= incomplete"));
}

void tst_selection_token::saysWhichTokensListFails()
{
    Connection connection({}, std::make_unique<test::CannedDriver>(QStringList(), QList<QStringList>()));
    try {
        openSelectionList(connection, SelectionToken::parseRequest(request(QStringLiteral("a|b|fail||i|1|0|"))));
        QFAIL("opened");
    } catch (const DatabaseError &error) {
        QCOMPARE(error.number(), 1);
        QCOMPARE(error.description(),
            QStringLiteral("The list of the selection token \"{*SQL01\" at character 37 cannot be read: no such table: fail"));
    }
}

QTEST_APPLESS_MAIN(tst_selection_token)
#include "tst_selection_token.moc"
