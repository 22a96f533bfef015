#include "platform/database/connection_text.h"

#include <QtCore/QList>

#include <algorithm>
#include <array>

namespace corvane {

namespace {

enum class Keyword { Provider, DataSource, Catalogue, UserId, Password, Trusted, Encrypt, TrustCertificate, Certificate };

struct Synonym {
    QLatin1StringView word;
    Keyword keyword;
};

constexpr std::array kSynonyms {
    Synonym {QLatin1StringView("provider"), Keyword::Provider},
    Synonym {QLatin1StringView("data source"), Keyword::DataSource},
    Synonym {QLatin1StringView("server"), Keyword::DataSource},
    Synonym {QLatin1StringView("address"), Keyword::DataSource},
    Synonym {QLatin1StringView("initial catalog"), Keyword::Catalogue},
    Synonym {QLatin1StringView("database"), Keyword::Catalogue},
    Synonym {QLatin1StringView("user id"), Keyword::UserId},
    Synonym {QLatin1StringView("uid"), Keyword::UserId},
    Synonym {QLatin1StringView("password"), Keyword::Password},
    Synonym {QLatin1StringView("pwd"), Keyword::Password},
    Synonym {QLatin1StringView("integrated security"), Keyword::Trusted},
    Synonym {QLatin1StringView("trusted_connection"), Keyword::Trusted},
    Synonym {QLatin1StringView("encrypt"), Keyword::Encrypt},
    Synonym {QLatin1StringView("use encryption for data"), Keyword::Encrypt},
    Synonym {QLatin1StringView("trustservercertificate"), Keyword::TrustCertificate},
    Synonym {QLatin1StringView("trust server certificate"), Keyword::TrustCertificate},
    Synonym {QLatin1StringView("servercertificate"), Keyword::Certificate},
    Synonym {QLatin1StringView("server certificate"), Keyword::Certificate},
};

bool isYes(QStringView value)
{
    constexpr std::array kYes {
        QLatin1StringView("sspi"), QLatin1StringView("true"), QLatin1StringView("yes")};
    return std::ranges::any_of(
        kYes, [&](auto word) { return value.compare(word, Qt::CaseInsensitive) == 0; });
}

/// "Mandatory" and "Optional" are the vendor's newer words. What is not known asks for encryption.
Encryption encryptionOf(QStringView value)
{
    constexpr std::array kOff {
        QLatin1StringView("no"), QLatin1StringView("false"), QLatin1StringView("optional")};
    if (std::ranges::any_of(kOff, [&](auto word) { return value.compare(word, Qt::CaseInsensitive) == 0; }))
        return Encryption::Off;
    return value.compare(u"strict", Qt::CaseInsensitive) == 0 ? Encryption::Strict : Encryption::On;
}

void setFlag(ConnectionText &text, Keyword keyword, QStringView value)
{
    if (keyword == Keyword::Trusted)
        text.integratedSecurity = isYes(value);
    else if (keyword == Keyword::Encrypt)
        text.encryption = encryptionOf(value);
    else
        text.trustServerCertificate = isYes(value);
}

QString *target(ConnectionText &text, Keyword keyword)
{
    switch (keyword) {
    case Keyword::Provider:
        return &text.provider;
    case Keyword::DataSource:
        return &text.dataSource;
    case Keyword::Catalogue:
        return &text.catalogue;
    case Keyword::UserId:
        return &text.userId;
    case Keyword::Password:
        return &text.password;
    case Keyword::Certificate:
        return &text.serverCertificate;
    case Keyword::Trusted:
    case Keyword::Encrypt:
    case Keyword::TrustCertificate:
        break;
    }
    return nullptr;
}

} // namespace

ConnectionText parseConnectionText(QStringView text)
{
    ConnectionText result;
    quint32 seen = 0;
    for (const QStringView piece : text.split(u';')) {
        const qsizetype equals = piece.indexOf(u'=');
        if (equals < 0)
            continue;
        const QStringView word = piece.first(equals).trimmed();
        const auto known = std::ranges::find_if(kSynonyms,
            [&](const Synonym &s) { return word.compare(s.word, Qt::CaseInsensitive) == 0; });
        if (known == kSynonyms.end())
            continue;
        const quint32 bit = 1u << quint32(known->keyword);
        if (seen & bit)
            continue;
        seen |= bit;
        const QStringView value = piece.sliced(equals + 1);
        if (QString *field = target(result, known->keyword))
            *field = value.toString();
        else
            setFlag(result, known->keyword, value.trimmed());
    }
    return result;
}

} // namespace corvane
