#include "platform/database/driver.h"

#include "platform/database/error.h"
#include "platform/database/odbc/provider.h"
#include "platform/database/odbc/quiet_warnings.h"

#include <QtCore/QCoreApplication>
#include <QtSql/QSqlDatabase>
#include <QtSql/QSqlError>
#include <QtSql/QSqlField>
#include <QtSql/QSqlQuery>
#include <QtSql/QSqlRecord>

#include <array>
#include <atomic>

namespace corvane::odbc {

namespace {

constexpr qint64 kMsPerDay = 86'400'000;

/// The standard's numbers of SQL types, and the two of SQL Server's own.
ValueKind kindOfSqlType(int type)
{
    switch (type) {
    case 4: // integer
    case 5: // small integer
    case -5: // big integer
    case -6: // tiny integer
        return ValueKind::Integer;
    case -7: // bit
        return ValueKind::Boolean;
    case 2: // numeric
    case 3: // decimal
        return ValueKind::Decimal;
    case 6: // float
    case 7: // real
    case 8: // double
        return ValueKind::Real;
    case 9: // date, before version 3
    case 91:
        return ValueKind::Date;
    case 10: // time, before version 3
    case 92:
    case -154: // SQL Server's time
        return ValueKind::Time;
    case 11: // time stamp, before version 3
    case 93:
        return ValueKind::DateTime;
    case -2: // binary
    case -3: // variable binary
    case -4: // long variable binary
        return ValueKind::Bytes;
    default:
        return ValueKind::Text;
    }
}

struct Fault
{
    QLatin1StringView words;
    FailureCause cause;
};

/// What drivers say of a connection that fails; the first words that occur decide.
constexpr std::array kFaults{
    Fault{QLatin1StringView("certificate"), FailureCause::Certificate},
    Fault{QLatin1StringView("ssl"), FailureCause::Certificate},
    Fault{QLatin1StringView("can't open lib"), FailureCause::Provider},
    Fault{QLatin1StringView("data source name not found"), FailureCause::Provider},
    Fault{QLatin1StringView("login failed"), FailureCause::Logon},
    Fault{QLatin1StringView("authentication failed"), FailureCause::Logon},
    Fault{QLatin1StringView("cannot open database"), FailureCause::Catalogue},
    Fault{QLatin1StringView("unable to open database"), FailureCause::Catalogue},
    Fault{QLatin1StringView("unknown database"), FailureCause::Catalogue},
    Fault{QLatin1StringView("does not exist"), FailureCause::Server},
    Fault{QLatin1StringView("timeout"), FailureCause::TimeOut},
    Fault{QLatin1StringView("timed out"), FailureCause::TimeOut},
    Fault{QLatin1StringView("connect"), FailureCause::Server},
};

/// The server's own numbers say more than any words.
FailureCause causeOf(int number, const QString &words)
{
    if (number == 18456 || number == 18452)
        return FailureCause::Logon;
    if (number == 4060)
        return FailureCause::Catalogue;
    for (const Fault &fault : kFaults)
        if (words.contains(fault.words, Qt::CaseInsensitive))
            return fault.cause;
    return FailureCause::Unknown;
}

/// Drivers leave out the zero before a point.
QByteArray decimalDigits(const QVariant &value)
{
    QByteArray digits = value.toString().trimmed().toLatin1();
    if (digits.startsWith('.'))
        digits.prepend('0');
    else if (digits.startsWith("-."))
        digits.insert(1, '0');
    return digits;
}

qint64 epochDay(QDate date)
{
    return date.toJulianDay() - QDate(1970, 1, 1).toJulianDay();
}

void addValue(RowsetBuilder &builder, const QVariant &value, ValueKind kind)
{
    if (value.isNull())
        return builder.add(Value());
    switch (kind) {
    case ValueKind::Integer:
        return builder.add(Value::integer(value.toLongLong()));
    case ValueKind::Boolean:
        return builder.add(Value::boolean(value.toBool()));
    case ValueKind::Real:
        return builder.add(Value::real(value.toDouble()));
    case ValueKind::Decimal: {
        const QByteArray digits = decimalDigits(value);
        return builder.add(Value::decimal(digits.constData(), quint32(digits.size())));
    }
    case ValueKind::Date:
        return builder.add(Value::date(epochDay(value.toDate())));
    case ValueKind::DateTime: {
        const QDateTime moment = value.toDateTime();
        return builder.add(Value::dateTime(
            epochDay(moment.date()) * kMsPerDay + moment.time().msecsSinceStartOfDay()));
    }
    case ValueKind::Time:
        return builder.add(Value::time(value.toTime().msecsSinceStartOfDay()));
    case ValueKind::Bytes: {
        const QByteArray bytes = value.toByteArray();
        return builder.add(Value::bytes(bytes.constData(), quint32(bytes.size())));
    }
    default:
        builder.addText(value.toString().toUtf8());
    }
}

class OdbcDriver final : public Driver
{
public:
    explicit OdbcDriver(const ConnectionText &text);
    ~OdbcDriver() override;
    Q_DISABLE_COPY_MOVE(OdbcDriver)

    RowsetPtr query(const QString &sql) override;

private:
    DatabaseError failure(const QSqlError &error) const;
    RowsetPtr rows(QSqlQuery &query) const;

    QString m_name;
    QString m_password;
    QSqlDatabase m_database;
};

OdbcDriver::OdbcDriver(const ConnectionText &text)
    : m_password(text.password)
{
    Q_ASSERT_X(QCoreApplication::instance(), "openOdbc",
        "an application object must exist before a connection is opened");
    const QString driver = driverFor(text.provider, installedOdbcDrivers());
    if (!QSqlDatabase::isDriverAvailable(QStringLiteral("QODBC")))
        throw DatabaseError(kConnectionError,
            QStringLiteral("The ODBC plugin of the Qt libraries is not installed."),
            FailureCause::Provider);
    static std::atomic<int> opened = 0;
    m_name = QStringLiteral("corvane-odbc-%1").arg(++opened);
    m_database = QSqlDatabase::addDatabase(QStringLiteral("QODBC"), m_name);
    m_database.setDatabaseName(serverKeywords(driver, text));
    m_database.setConnectOptions(QStringLiteral("SQL_ATTR_LOGIN_TIMEOUT=15"));
    m_database.setNumericalPrecisionPolicy(QSql::HighPrecision);
    const QuietWarnings quiet; // what it would print is in the error that is thrown
    if (m_database.open(keywordValue(text.userId), keywordValue(text.password)))
        return;
    const DatabaseError error = failure(m_database.lastError());
    m_database = {};
    QSqlDatabase::removeDatabase(m_name);
    throw DatabaseError(
        error.number(), error.description(), causeOf(error.number(), error.description()));
}

OdbcDriver::~OdbcDriver()
{
    m_database.close();
    m_database = {};
    QSqlDatabase::removeDatabase(m_name);
}

DatabaseError OdbcDriver::failure(const QSqlError &error) const
{
    bool numbered = false;
    const int number = error.nativeErrorCode().section(u';', 0, 0).toInt(&numbered);
    const QString words
        = error.databaseText().isEmpty() ? error.driverText() : error.databaseText();
    return {numbered && number != 0 ? number : kConnectionError,
        withoutPassword(words.trimmed(), m_password)};
}

RowsetPtr OdbcDriver::query(const QString &sql)
{
    if (sql.trimmed().isEmpty())
        throw DatabaseError(kConnectionError, QStringLiteral("The query holds no statement."));
    const QuietWarnings warnings;
    QSqlQuery query(m_database);
    query.setForwardOnly(true);
    if (!query.exec(sql))
        throw failure(query.lastError());
    // A procedure may count the rows of its first statements before it returns any.
    bool more = true;
    while (!query.isSelect() && more)
        more = query.nextResult();
    if (query.lastError().isValid())
        throw failure(query.lastError());
    RowsetPtr result = query.isSelect() ? rows(query) : RowsetBuilder({}).finish();
    // A value that could not be read is null to Qt and only warned of: here it is a failure.
    if (!warnings.first().isEmpty())
        throw DatabaseError(kConnectionError, withoutPassword(warnings.first(), m_password));
    return result;
}

RowsetPtr OdbcDriver::rows(QSqlQuery &query) const
{
    const QSqlRecord record = query.record();
    QStringList names;
    std::vector<ValueKind> kinds;
    for (int i = 0; i < record.count(); ++i) {
        names += record.fieldName(i);
        kinds.push_back(kindOfSqlType(record.field(i).typeID()));
    }
    RowsetBuilder builder(std::move(names));
    while (query.next())
        for (int i = 0; i < int(kinds.size()); ++i)
            addValue(builder, query.value(i), kinds[size_t(i)]);
    if (query.lastError().isValid())
        throw failure(query.lastError());
    return builder.finish();
}

} // namespace

} // namespace corvane::odbc

namespace corvane {

std::unique_ptr<Driver> openOdbc(const ConnectionText &text, const DriverSettings &)
{
    return std::make_unique<odbc::OdbcDriver>(text);
}

} // namespace corvane
