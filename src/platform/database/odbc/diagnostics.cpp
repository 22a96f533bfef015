#include "platform/database/odbc/diagnostics.h"

#include "platform/database/odbc/keywords.h"

#include <QtCore/QRegularExpression>

#include <algorithm>
#include <array>

namespace corvane::odbc {

namespace {

constexpr SQLSMALLINT kMostRecords = 100; // a driver that repeats one for ever ends here
constexpr int kStatementTerminated = 3621; // the server adds it to the failure itself
constexpr int kLoginFailed = 18456;

struct NumberedCause
{
    int number;
    FailureCause cause;
};

/// Numbers of SQL Server's messages.
constexpr std::array kNumbers{
    NumberedCause{kLoginFailed, FailureCause::Logon},
    NumberedCause{18452, FailureCause::Logon},
    NumberedCause{18487, FailureCause::Logon},
    NumberedCause{18488, FailureCause::Logon},
    NumberedCause{4060, FailureCause::Catalogue},
    NumberedCause{4064, FailureCause::Catalogue},
};

struct WordedCause
{
    QLatin1StringView words;
    FailureCause cause;
};

/// What a state says, by its beginning.
constexpr std::array kStates{
    WordedCause{QLatin1StringView("HYT0"), FailureCause::TimeOut},
    WordedCause{QLatin1StringView("57014"), FailureCause::TimeOut},
    WordedCause{QLatin1StringView("28"), FailureCause::Logon},
    WordedCause{QLatin1StringView("3D"), FailureCause::Catalogue},
    WordedCause{QLatin1StringView("IM002"), FailureCause::Provider},
    WordedCause{QLatin1StringView("IM003"), FailureCause::Provider},
};

/// What drivers say, the closest first: the first words that occur decide.
constexpr std::array kWords{
    WordedCause{QLatin1StringView("can't open lib"), FailureCause::Provider},
    WordedCause{QLatin1StringView("data source name not found"), FailureCause::Provider},
    WordedCause{QLatin1StringView("password authentication failed"), FailureCause::Logon},
    WordedCause{QLatin1StringView("no password supplied"), FailureCause::Logon},
    WordedCause{QLatin1StringView("pg_hba.conf"), FailureCause::Logon},
    WordedCause{QLatin1StringView("login failed"), FailureCause::Logon},
    WordedCause{QLatin1StringView("role \""), FailureCause::Logon},
    WordedCause{QLatin1StringView("certificate"), FailureCause::Certificate},
    WordedCause{QLatin1StringView("ssl"), FailureCause::Certificate},
    WordedCause{QLatin1StringView("tls"), FailureCause::Certificate},
    WordedCause{QLatin1StringView("could not translate host name"), FailureCause::Server},
    WordedCause{QLatin1StringView("server name not found"), FailureCause::Server},
    WordedCause{QLatin1StringView("unknown host"), FailureCause::Server},
    WordedCause{QLatin1StringView("cannot open database"), FailureCause::Catalogue},
    WordedCause{QLatin1StringView("unable to open database"), FailureCause::Catalogue},
    WordedCause{QLatin1StringView("unknown database"), FailureCause::Catalogue},
    WordedCause{QLatin1StringView("database \""), FailureCause::Catalogue},
    WordedCause{QLatin1StringView("timeout"), FailureCause::TimeOut},
    WordedCause{QLatin1StringView("timed out"), FailureCause::TimeOut},
    WordedCause{QLatin1StringView("connection refused"), FailureCause::Port},
    WordedCause{QLatin1StringView("no route to host"), FailureCause::Server},
    WordedCause{QLatin1StringView("unreachable"), FailureCause::Server},
    WordedCause{QLatin1StringView("server is unavailable"), FailureCause::Server},
    WordedCause{QLatin1StringView("connect"), FailureCause::Server},
};

/// What drivers say of a connection that breaks in use.
constexpr std::array kLostWords{
    QLatin1StringView("closed the connection"),
    QLatin1StringView("terminating connection"),
    QLatin1StringView("connection to the server"),
    QLatin1StringView("connection reset"),
    QLatin1StringView("unexpected eof"),
    QLatin1StringView("could not receive data"),
    QLatin1StringView("could not send data"),
};

/// States of a server that is being shut down.
constexpr std::array kLostStates{QLatin1StringView("08"), QLatin1StringView("57P0")};

bool isLost(const Diagnostic &record, Phase phase)
{
    const auto begins = [&](auto state) { return record.state.startsWith(state); };
    if (phase == Phase::Running && std::ranges::any_of(kLostStates, begins))
        return true;
    // FreeTDS calls a lost connection a remark, 01000.
    const bool isGeneral = record.state.startsWith(u"HY") || record.state.startsWith(u"08")
        || record.state == u"01000";
    return isGeneral && std::ranges::any_of(kLostWords, [&](auto words) {
        return record.words.contains(words, Qt::CaseInsensitive);
    });
}

bool isRemark(const Diagnostic &record)
{
    return record.state.startsWith(u"01") || record.state.startsWith(u"00");
}

/// A database that cannot be opened ends the logon too, and drivers may tell the end first.
bool namesTheDatabase(const std::vector<Diagnostic> &records)
{
    return std::ranges::any_of(records, [](const Diagnostic &record) {
        const auto known = std::ranges::find(kNumbers, record.number, &NumberedCause::number);
        return known != kNumbers.end() && known->cause == FailureCause::Catalogue;
    });
}

/// "[unixODBC][FreeTDS][SQL Server]Login failed" names the way that the words came.
QString ownWords(QString text)
{
    static const QRegularExpression way(QStringLiteral("^(\\[[^\\]]*\\]\\s*)+"));
    static const QRegularExpression call(QStringLiteral("[;\\s]*Error while executing the query$"));
    text.remove(way).remove(call);
    return text.simplified();
}

} // namespace

std::vector<Diagnostic> diagnostics(SQLSMALLINT type, SQLHANDLE handle)
{
    std::vector<Diagnostic> records;
    SQLWCHAR state[6];
    SQLWCHAR words[2048];
    SQLINTEGER number = 0;
    SQLSMALLINT length = 0;
    for (SQLSMALLINT i = 1; i <= kMostRecords; ++i) {
        if (!SQL_SUCCEEDED(SQLGetDiagRecW(
                type, handle, i, state, &number, words, SQLSMALLINT(std::size(words)), &length)))
            break;
        const int kept = std::clamp<int>(length, 0, int(std::size(words)) - 1);
        records.push_back({QString::fromUtf16(reinterpret_cast<char16_t *>(state), 5), number,
            ownWords(QString::fromUtf16(reinterpret_cast<char16_t *>(words), kept))});
    }
    return records;
}

bool holdsFailure(const std::vector<Diagnostic> &records)
{
    return !std::ranges::all_of(records, isRemark);
}

DatabaseError failureOf(
    const std::vector<Diagnostic> &records, const QString &password, Phase phase)
{
    const bool loginIsTheEnd = namesTheDatabase(records);
    const auto matters = [loginIsTheEnd](const Diagnostic &record) {
        return !isRemark(record) && record.number != kStatementTerminated
            && !(loginIsTheEnd && record.number == kLoginFailed) && !record.words.isEmpty();
    };
    auto chosen = std::ranges::find_if(records, matters);
    if (chosen == records.end())
        chosen = records.begin();
    if (chosen == records.end())
        return {kConnectionError, QStringLiteral("The database driver failed and gave no reason.")};
    // A driver may sum up first what a later record says closer, and call a failure a remark.
    FailureCause cause = causeOf(*chosen, phase);
    for (auto record = chosen; record != records.end() && cause == FailureCause::Unknown; ++record)
        if (matters(*record))
            cause = causeOf(*record, phase);
    return {chosen->number != 0 ? chosen->number : kConnectionError,
        withoutPassword(chosen->words, password), cause, chosen->state};
}

FailureCause causeOf(const Diagnostic &record, Phase phase)
{
    const auto numbered = std::ranges::find(kNumbers, record.number, &NumberedCause::number);
    if (numbered != kNumbers.end())
        return numbered->cause;
    for (const WordedCause &known : kStates)
        if (record.state.startsWith(known.words))
            return known.cause;
    if (isLost(record, phase))
        return FailureCause::Lost;
    if (phase == Phase::Running)
        return FailureCause::Unknown;
    for (const WordedCause &known : kWords)
        if (record.words.contains(known.words, Qt::CaseInsensitive))
            return known.cause;
    return FailureCause::Unknown;
}

} // namespace corvane::odbc
