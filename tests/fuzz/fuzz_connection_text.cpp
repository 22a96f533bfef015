#include "fuzz/promise.h"
#include "platform/database/connection_text.h"
#include "platform/database/odbc/keywords.h"

#include <QtCore/QList>

using namespace corvane;
using test::promise;

namespace {

QString written(const ConnectionText &text)
{
    constexpr QStringView kEncryption[]{u"", u"Encrypt=no;", u"Encrypt=yes;", u"Encrypt=strict;"};
    return u"Provider=" + text.provider + u";Data Source=" + text.dataSource + u";Initial Catalog="
        + text.catalogue + u";User Id=" + text.userId + u";Password=" + text.password
        + (text.integratedSecurity ? u";Integrated Security=SSPI;" : u";")
        + kEncryption[int(text.encryption)]
        + (text.trustServerCertificate ? u"TrustServerCertificate=yes;" : u"")
        + u"ServerCertificate=" + text.serverCertificate;
}

/// The pieces of a driver manager's text: a value in braces ends at a brace that is not doubled.
QList<std::pair<QString, QString>> keywordsOf(const QString &text)
{
    QList<std::pair<QString, QString>> keywords;
    for (qsizetype at = 0; at < text.size(); ++at) {
        const qsizetype equals = text.indexOf(u'=', at);
        promise(equals > at, "a keyword has a name and a value");
        const QString name = text.sliced(at, equals - at);
        QString value;
        at = equals + 1;
        if (at < text.size() && text[at] == u'{') {
            for (++at; at < text.size(); ++at) {
                const bool isBrace = text[at] == u'}';
                at += isBrace ? 1 : 0; // behind it stands its double, or what ends the value
                if (isBrace && (at >= text.size() || text[at] != u'}'))
                    break;
                value += text[at];
            }
        } else {
            for (; at < text.size() && text[at] != u';'; ++at)
                value += text[at];
        }
        keywords.append({name, value});
    }
    return keywords;
}

void handOver(const ConnectionText &text, const QString &driver)
{
    const auto keywords = keywordsOf(odbc::logonKeywords(driver, text));
    const auto is = [&](QStringView name, const QString &value) {
        qsizetype count = 0;
        for (const auto &[keyword, given] : keywords) {
            if (keyword != name)
                continue;
            ++count;
            promise(given == value, "the driver gets a value as it stands");
        }
        promise(count == (value.isEmpty() ? 0 : 1), "the driver gets a value once");
    };
    is(u"Database", text.catalogue);
    is(u"UID", text.userId);
    is(u"PWD", text.password);
    is(u"Driver", driver);
}

void hidePassword(const QString &words, const QString &password)
{
    if (password.size() < 3 || password.contains(u'*'))
        return;
    promise(!odbc::withoutPassword(words, password).contains(password),
        "no message holds the password");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QString input = test::inputText(QByteArrayView(data, qsizetype(size)));
    const ConnectionText text = parseConnectionText(input);
    promise(
        parseConnectionText(written(text)) == text, "a connection text written down is read back");
    const ConnectionText longer = parseConnectionText(QString(input + u";PWD=later"));
    promise(longer.password == text.password
            || (text.password.isEmpty() && longer.password == u"later"),
        "the first piece of a meaning wins");
    for (const QString &driver : {QStringLiteral("ODBC Driver 18 for SQL Server"),
             QStringLiteral("PostgreSQL Unicode"), QStringLiteral("SQLite3")})
        handOver(text, driver);
    hidePassword(input, text.password);
    return 0;
}
