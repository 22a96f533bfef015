#include "tds/tds_clinic.h"

#include "session/logon.h"
#include "session/startup.h"
#include "support/document_dump.h"
#include "support/tds/embedded_answers.h"

namespace corvane::test {

namespace {

tds::ServerSettings withClinic(tds::ServerSettings settings, const QString &folder)
{
    settings.open = tds::embeddedAnswers(folder);
    return settings;
}

} // namespace

TdsClinic::TdsClinic(int patients, tds::ServerSettings settings)
    : m_folder(patients)
    , m_server(withClinic(std::move(settings), m_folder.path()))
{
    const QByteArray address = m_server.address().toLatin1();
    changeConfiguration("DataSource=sqlite:Data", "DataSource=" + address);
    changeConfiguration("Server=sqlite:Data", "Server=" + address);
}

QString TdsClinic::connectionText() const
{
    return u"Provider=SQLOLEDB;Data Source=" + m_server.address()
        + u";Initial Catalog=Clinic;User Id=demo;Password=demo; ";
}

void TdsClinic::changeConfiguration(const QByteArray &line, const QByteArray &other) const
{
    const QString name = QStringLiteral("corvane.ini");
    QByteArray text = m_folder.read(name);
    const QByteArray whole = "\r\n" + line + "\r\n";
    if (!text.contains(whole))
        qFatal("corvane.ini has no line %s", line.constData());
    m_folder.write(name, text.replace(whole, QByteArray("\r\n" + other + "\r\n")));
}

Program::Program(const QString &folder)
{
    state.programFolder = folder;
    connectDatabases(state, host);
}

bool Program::logOn(const QString &password)
{
    return corvane::logOn(state, host, QStringLiteral("nora"), password);
}

QString Program::text() const
{
    return run.document() ? documentText(*run.document()) : QString();
}

} // namespace corvane::test
