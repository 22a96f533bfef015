// The query text: tokens and database names that nothing replaces, quotes that do not end.

#include "definitions/checker/check_pass.h"

#include <QtCore/QRegularExpression>

namespace corvane {

namespace {

using enum FindingKind;

constexpr QStringView kPieces[]{u"RecordSource1", u"RecordSource2"};

struct Token
{
    QStringView token;
    QStringView key; ///< the key of [Data Source] that makes a report replace it
};

constexpr Token kTokens[]{
    {u"{DATE1}", u"GetDates"}, {u"{DATE2}", u"GetDates"}, {u"<PID>", u"GetPatient"}};

bool asks(const CheckPass &pass, QStringView key)
{
    return pass.value(u"Data Source", key) == u"True";
}

bool isDesignedToken(QStringView found)
{
    return found.startsWith(u"{*") || found.startsWith(u"{DATE*", Qt::CaseInsensitive)
        || found == u"**INS";
}

/// The token that was meant: same letters, whatever the case and the blanks.
const Token *meantToken(QStringView found)
{
    const QString plain = found.toString().remove(u' ');
    for (const Token &token : kTokens) {
        if (token.token.compare(plain, Qt::CaseInsensitive) == 0)
            return &token;
    }
    return nullptr;
}

void checkToken(CheckPass &pass, QStringView found, TextPlace place)
{
    const QString stays = QStringLiteral("Nothing replaces %1").arg(shortened(found));
    const Token *meant = meantToken(found);
    if (isDesignedToken(found))
        pass.add(UnreplacedToken, place, stays + u": it is a token of designed reports.",
            QStringLiteral("A tabular report has {DATE1}, {DATE2} and <PID>."));
    else if (!meant)
        pass.add(UnreplacedToken, place, stays + u'.',
            QStringLiteral("The date tokens are {DATE1} and {DATE2}."));
    else if (found != meant->token)
        pass.add(UnreplacedToken, place, stays + u" in this spelling.",
            QStringLiteral("Write %1.").arg(meant->token));
    else if (!asks(pass, meant->key))
        pass.add(UnreplacedToken, place,
            QStringLiteral("%1 while %2 is not True.").arg(stays, meant->key),
            QStringLiteral("Write %1=True.").arg(meant->key));
}

void checkTokens(CheckPass &pass, QStringView piece, const QString &sql)
{
    static const QRegularExpression tokens(
        QStringLiteral("\\{\\s*DATE[^{}|]*[}|]|\\{\\*/?(SQL|PID)|\\*\\*INS|<\\s*PID\\s*>"),
        QRegularExpression::CaseInsensitiveOption);
    for (auto found = tokens.globalMatch(sql); found.hasNext();) {
        const auto match = found.next();
        checkToken(
            pass, match.capturedView(), pass.place(u"Data Source", piece, match.capturedStart()));
    }
}

void checkPlaceholders(CheckPass &pass, QStringView piece, const QString &sql)
{
    static const QRegularExpression names(
        QStringLiteral("\\b(?:(CorvaneDB)|HalvernDB)(?![A-Za-z0-9_])\\]?(\\.dbo)?"),
        QRegularExpression::CaseInsensitiveOption);
    for (auto found = names.globalMatch(sql); found.hasNext();) {
        const auto match = found.next();
        const QStringView text = match.capturedView();
        const QStringView right = match.hasCaptured(1) ? u"CorvaneDB" : u"HalvernDB";
        const TextPlace place = pass.place(u"Data Source", piece, match.capturedStart());
        if (!text.startsWith(right) || !text.endsWith(u".dbo"))
            pass.add(UnreplacedToken, place,
                QStringLiteral("No database's name is put in for %1.").arg(text),
                QStringLiteral("Write %1.dbo. before the table, in exactly this spelling.")
                    .arg(right));
        else if (right == u"HalvernDB" && pass.second && pass.second->name.isEmpty())
            pass.add(NoSecondDatabase, place,
                QStringLiteral("No database's name is put in for HalvernDB, because corvane.ini "
                               "names no second database."),
                QStringLiteral("Write its name in DataSource of [HALVERN] in corvane.ini."));
    }
}

void checkDatabase(CheckPass &pass, const QString &query)
{
    const bool second = pass.value(u"Data Source", u"Database") == u"A";
    const bool namesMain = query.contains(u"CorvaneDB");
    const bool namesSecond = query.contains(u"HalvernDB");
    const TextPlace place = pass.place(u"Data Source", u"Database");
    if (second && pass.second && !pass.second->isConfigured)
        pass.add(NoSecondDatabase, place,
            QStringLiteral("Database is A, but there is no second database: the report stays "
                           "empty, without a message."),
            QStringLiteral("Look at [HALVERN] of corvane.ini, or leave Database out."));
    else if (second && namesMain && !namesSecond)
        pass.add(OtherDatabase, place,
            QStringLiteral("Database is A, the second database, but the query names tables of "
                           "CorvaneDB alone."),
            QStringLiteral("Leave Database out."));
    else if (!second && namesSecond && !namesMain)
        pass.add(OtherDatabase, place,
            QStringLiteral(
                "The query names tables of HalvernDB alone, but runs on the main database."),
            QStringLiteral("Write Database=A."));
}

void checkAnswers(CheckPass &pass, const QString &query)
{
    if (asks(pass, u"GetDates") && !query.contains(u"{DATE1}") && !query.contains(u"{DATE2}"))
        pass.add(UnusedAnswer, pass.place(u"Data Source", u"GetDates"),
            QStringLiteral(
                "A range of dates is asked for, but the query holds neither {DATE1} nor {DATE2}."),
            QStringLiteral("Put them into the query, or write GetDates=False."));
    if (asks(pass, u"GetPatient") && !query.contains(u"<PID>"))
        pass.add(UnusedAnswer, pass.place(u"Data Source", u"GetPatient"),
            QStringLiteral("A patient is asked for, but the query does not hold <PID>."),
            QStringLiteral("Put it into the query, or write GetPatient=False."));
}

/// Reads SQL piece by piece and keeps what is open: a quoted text, a bracketed name or a comment.
class QuoteScanner
{
public:
    /// The offset of the quote that opens a text which this piece does not end; -1 when there is
    /// none.
    qsizetype read(QStringView sql)
    {
        qsizetype start = m_closing == u'\'' || m_closing == u'"' ? 0 : -1;
        for (qsizetype at = 0; at < sql.size(); ++at) {
            const QStringView rest = sql.sliced(at);
            if (!m_closing.isNull()) {
                at += endsComment(rest) ? 1 : 0;
                if (isClosing(rest))
                    m_closing = QChar();
            } else if (rest.startsWith(u"--")) {
                return -1;
            } else {
                start = at;
                m_closing = closingOf(rest);
            }
        }
        return m_closing == u'\'' || m_closing == u'"' ? start : -1;
    }

private:
    static QChar closingOf(QStringView rest)
    {
        if (rest.startsWith(u"/*"))
            return u'*';
        const QChar c = rest.front();
        return c == u'[' ? u']' : c == u'\'' || c == u'"' ? c : QChar();
    }
    bool endsComment(QStringView rest) const { return m_closing == u'*' && rest.startsWith(u"*/"); }
    bool isClosing(QStringView rest) const
    {
        return m_closing == u'*' ? rest.startsWith(u"*/") : rest.front() == m_closing;
    }

    QChar m_closing;
};

void checkQuotes(CheckPass &pass)
{
    QuoteScanner scanner;
    const QString first = pass.value(u"Data Source", u"RecordSource1");
    const QString second = pass.value(u"Data Source", u"RecordSource2");
    const qsizetype openInFirst = scanner.read(first);
    if (openInFirst >= 0) {
        pass.add(OpenQuote, pass.place(u"Data Source", u"RecordSource1", openInFirst),
            second.isEmpty()
                ? QStringLiteral("The quoted text that starts here does not end.")
                : QStringLiteral("The quoted text that starts here does not end in RecordSource1; "
                                 "a blank gets into it before RecordSource2."),
            second.isEmpty() ? QStringLiteral("Put a ' at its end.")
                             : QStringLiteral("Split the query between two words."));
        return;
    }
    if (const qsizetype open = scanner.read(second); open >= 0)
        pass.add(OpenQuote, pass.place(u"Data Source", u"RecordSource2", open),
            QStringLiteral("The quoted text that starts here does not end."),
            QStringLiteral("Put a ' at its end."));
}

} // namespace

void checkQuery(CheckPass &pass)
{
    QString query;
    for (const QStringView piece : kPieces) {
        const QString sql = pass.value(u"Data Source", piece);
        checkTokens(pass, piece, sql);
        checkPlaceholders(pass, piece, sql);
        query += sql + u' ';
    }
    if (pass.value(u"Data Source", kPieces[0]).isEmpty()) {
        pass.add(MissingKey, pass.place(u"Data Source", kPieces[0]),
            QStringLiteral("RecordSource1 of [Data Source] is missing, so there is no query."),
            QStringLiteral("Write the query there, on one line."));
    }
    checkQuotes(pass);
    checkDatabase(pass, query);
    checkAnswers(pass, query);
}

} // namespace corvane
