#include "platform/files/temporary_name.h"

#include <QtCore/QCryptographicHash>
#include <QtCore/QDir>
#include <QtCore/QRandomGenerator>
#include <QtCore/QtEndian>

namespace corvane {

namespace {

const QString kPrefix = QStringLiteral(".corvane-saving-");
const QString kVarying = QStringLiteral("XXXXXX");
const QString kSuffix = QStringLiteral(".tmp");

QString nameOf(const QString &folder, const QString &varying)
{
    return QDir(folder).filePath(QString(kPrefix + varying + kSuffix));
}

/// A number's last digits, in letters.
QString lettersOf(quint64 number)
{
    static constexpr QStringView kLetters = u"abcdefghijklmnopqrstuvwxyz0123456789";
    QString letters;
    for (; letters.size() < kVarying.size(); number /= quint64(kLetters.size()))
        letters += kLetters[qsizetype(number % quint64(kLetters.size()))];
    return letters;
}

} // namespace

QString temporaryTemplate(const QString &folder)
{
    return nameOf(folder, kVarying);
}

QString temporaryPattern()
{
    return kPrefix + QString(kVarying.size(), u'?') + kSuffix;
}

QString randomTemporaryName(const QString &folder)
{
    return nameOf(folder, lettersOf(QRandomGenerator::global()->generate64()));
}

QString temporaryNameFor(const QString &folder, const QString &key)
{
    const QByteArray hash = QCryptographicHash::hash(key.toUtf8(), QCryptographicHash::Sha256);
    return nameOf(folder, lettersOf(qFromBigEndian<quint64>(hash.constData())));
}

} // namespace corvane
