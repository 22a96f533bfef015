#include "fuzz/promise.h"
#include "platform/database/embedded/dialect.h"
#include "platform/database/embedded/embedded_driver.h"
#include "platform/database/embedded/moment.h"
#include "platform/database/embedded/tokens.h"
#include "platform/database/error.h"

#include <QtCore/QSet>
#include <QtCore/QTemporaryDir>

#include <sqlite3.h>

using namespace corvane;
using test::promise;

namespace {

QDateTime now()
{
    return QDateTime(QDate(2026, 11, 22), QTime(14, 3, 5, 250), Qt::UTC);
}

/// Tables of one row, so that no join takes long.
std::unique_ptr<Driver> clinic()
{
    static const QTemporaryDir folder;
    sqlite3 *database = nullptr;
    sqlite3_open(folder.filePath(QStringLiteral("Clinic.db")).toUtf8().constData(), &database);
    const int code = sqlite3_exec(database,
        "CREATE TABLE p(id int, name varchar(30) COLLATE NOCASE, ssn char(9), balance "
        "decimal(10,2), born date,"
        " active bit, cost money, weight float);"
        "INSERT INTO p VALUES(1,'O''Neil','123456789',12.5,'1980-02-29',1,-3.25,71.5);"
        "CREATE TABLE a(id int, pid int, at datetime, t time, day_text varchar(10));"
        "INSERT INTO a VALUES(10,1,'2026-10-31 08:30:00','08:30:00','10/31/2026');",
        nullptr, nullptr, nullptr);
    promise(code == SQLITE_OK, "the tables can be made");
    sqlite3_close(database);
    ConnectionText text;
    text.dataSource = QStringLiteral("sqlite:.");
    text.catalogue = QStringLiteral("Clinic");
    return embedded::open(text, {folder.path()}, now);
}

/// What texts hold, but those that may be read as a date or a number.
QSet<QString> contents(
    const std::vector<embedded::Token> &tokens, std::initializer_list<embedded::Token::Kind> kinds)
{
    QSet<QString> found;
    for (const embedded::Token &token : tokens) {
        if (std::ranges::find(kinds, token.kind) == kinds.end())
            continue;
        const QString text = embedded::unquoted(token);
        bool isNumber = false;
        text.toDouble(&isNumber);
        if (!isNumber && !embedded::writtenMoment(text.toUtf8(), embedded::DateOrder::MonthDayYear))
            found.insert(text);
    }
    return found;
}

void keepsTexts(const QString &sql, const QByteArray &translated)
{
    using enum embedded::Token::Kind;
    const QString result = QString::fromUtf8(translated);
    const auto tokens = embedded::tokenize(result);
    promise(std::ranges::none_of(
                tokens, [](const auto &token) { return token.isSymbol(QLatin1StringView(";")); }),
        "one statement stays one");
    // Patterns are written anew; a text behind a column is its name.
    if (!sql.contains(u"like", Qt::CaseInsensitive))
        promise(contents(tokens, {Text, Name}).contains(contents(embedded::tokenize(sql), {Text})),
            "quoted texts keep their letters");
}

/// A statement runs, or the refusal says why.
void run(Driver &driver, const QString &sql)
{
    try {
        embedded::DialectSettings settings{
            0, now(), [](auto &&...) { return embedded::SqlType(); }};
        keepsTexts(sql, embedded::translate(sql, settings).sql);
        driver.query(sql);
    } catch (const DatabaseError &error) {
        promise(!error.description().isEmpty(), "a refusal has words");
    }
}

void quotes(Driver &driver, const QString &text)
{
    if (text.contains(u'\0'))
        return;
    const RowsetPtr rows = driver.query(u"SELECT " + embedded::quotedText(text) + u" -- '");
    promise(rows->rowCount() == 1 && rows->value(0, 0).data() == text.toUtf8(),
        "a quoted text is itself");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    static const std::unique_ptr<Driver> driver = clinic();
    const QByteArrayView input(data, qsizetype(size));
    const QString text = QString::fromUtf8(input);
    run(*driver, text);
    quotes(*driver, text);
    return 0;
}
