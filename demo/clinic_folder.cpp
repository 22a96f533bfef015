#include "demo/clinic_folder.h"

#include "demo/clinic.h"
#include "demo/databases.h"
#include "demo/sql_script.h"

#include "shared/code_page.h"
#include "shared/scramble.h"

#include <QtCore/QDir>
#include <QtCore/QFileInfo>
#include <QtCore/QSaveFile>

#include <memory>
#include <vector>

namespace corvane::demo {

namespace {

constexpr QLatin1StringView kReports(":/Reports");

constexpr QLatin1StringView kConfiguration(
    "; Corvane Reporter: the demo clinic.\r\n"
    "; Written by corvane-demo-clinic, which replaces this file when it runs again.\r\n"
    "; \"sqlite:Data\" is the folder Data beside this file: no database server is needed.\r\n"
    "; The two passwords are scrambled; the embedded databases do not ask for them.\r\n"
    "\r\n"
    "[SQLServer]\r\n"
    "Provider=SQLOLEDB\r\n"
    "DataSource=sqlite:Data\r\n"
    "InitialCatalog=Clinic\r\n"
    "AuthenticationMode=SQL\r\n"
    "UID=demo\r\n"
    "Password=%1\r\n"
    "\r\n"
    "; The second database: here Server is the place and DataSource the database's name.\r\n"
    "[HALVERN]\r\n"
    "Server=sqlite:Data\r\n"
    "DataSource=Halvern\r\n"
    "AuthenticationMode=SQL\r\n"
    "UID=demo\r\n"
    "PW=%1\r\n");

QByteArray configuration()
{
    QString text = kConfiguration;
    text.replace(QStringLiteral("%1"), scramblePW(u"demo"));
    QByteArray bytes;
    for (const QChar c : std::as_const(text))
        bytes += char(toWindows1252(c).value_or('?'));
    return bytes;
}

QString shown(const QString &path)
{
    return u'"' + QDir::toNativeSeparators(path) + u'"';
}

/// The new files beside the old ones. What was not committed leaves no trace.
class NewFiles
{
public:
    explicit NewFiles(const QString &folder)
        : m_folder(folder)
    {
    }

    void add(const QString &name, const QByteArray &bytes)
    {
        auto file = std::make_unique<QSaveFile>(m_folder.filePath(name));
        if (!file->open(QIODevice::WriteOnly) || file->write(bytes) != bytes.size()
            || !file->flush())
            fail(*file);
        m_files.push_back(std::move(file));
    }

    void commit()
    {
        for (const auto &file : m_files) {
            if (!file->commit())
                fail(*file);
        }
    }

private:
    [[noreturn]] static void fail(const QSaveFile &file)
    {
        throw FolderError(
            QStringLiteral("Cannot write %1: %2. Check the rights and the free space there, close "
                           "programs that have the file open, and run again.")
                .arg(shown(file.fileName()), file.errorString()));
    }

    QDir m_folder;
    std::vector<std::unique_ptr<QSaveFile>> m_files;
};

void makeFolder(const QString &path)
{
    const QFileInfo info(path);
    if (info.exists() && !info.isDir()) {
        throw FolderError(
            QStringLiteral("%1 is a file, not a folder. Name another place, or move the file away.")
                .arg(shown(path)));
    }
    if (!QDir().mkpath(path)) {
        throw FolderError(QStringLiteral(
            "Cannot make the folder %1. Check that the place exists and that you may "
            "write there.")
                              .arg(shown(path)));
    }
}

QByteArray builtInReport(const QString &name)
{
    QFile file(kReports + u'/' + name);
    if (!file.open(QIODevice::ReadOnly))
        throw FolderError(
            QStringLiteral("The report %1 is missing in this program. Install it again.")
                .arg(shown(name)));
    return file.readAll();
}

} // namespace

void writeClinicFolder(const QString &folder, int patientCount)
{
    makeFolder(folder);
    makeFolder(folder + u"/Data");
    makeFolder(folder + u"/Reports");

    NewFiles files(folder);
    files.add(QStringLiteral("corvane.ini"), configuration());
    const Clinic clinic = makeClinic(patientCount);
    files.add(QStringLiteral("Data/Clinic.db"), mainDatabase(clinic));
    files.add(QStringLiteral("Data/Halvern.db"), secondDatabase(clinic));
    for (const QString &name : QDir(kReports).entryList(QDir::Files, QDir::Name))
        files.add(u"Reports/" + name, builtInReport(name));
    files.commit();
}

void writeClinicScript(const QString &folder, int patientCount)
{
    makeFolder(folder);
    const Clinic clinic = makeClinic(patientCount);
    constexpr QByteArrayView kUtf8Mark("\xef\xbb\xbf"); // the server's client asks for it
    NewFiles files(folder);
    files.add(QStringLiteral("clinic.sql"),
        kUtf8Mark.toByteArray() + sqlScript("Clinic", mainDatabase(clinic))
            + sqlScript("Halvern", secondDatabase(clinic)));
    files.commit();
}

} // namespace corvane::demo
