#include "support/host_program.h"

#include <QtCore/QDeadlineTimer>
#include <QtCore/QDir>
#include <QtCore/QProcess>
#include <QtCore/QTemporaryDir>
#include <QtCore/QThread>

namespace corvane::test {

namespace {

constexpr int kPatience = 120'000;

#ifdef Q_OS_WIN

bool isDrivePath(QStringView text)
{
    return text.size() > 2 && text[0].isLetter() && text[1] == u':' && (text[2] == u'/' || text[2] == u'\\');
}

QByteArray quoted(const QString &word)
{
    return "'" + word.toUtf8().replace("'", "'\\''") + "'";
}

QByteArray contents(const QString &fileName)
{
    QFile file(fileName);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

#endif

} // namespace

QString printedText(const QByteArray &bytes)
{
    return QString::fromUtf8(bytes).replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
}

#ifdef Q_OS_WIN

QString hostPath(const QString &fileName)
{
    if (!isDrivePath(fileName))
        return fileName;
    const QString rest = QDir::fromNativeSeparators(fileName).sliced(2);
    const QChar drive = fileName[0].toLower();
    return drive == u'z' ? rest : QString(qEnvironmentVariable("WINEPREFIX") + u"/dosdevices/" + drive + u':' + rest);
}

/// Wine starts a program of the machine, but can neither wait for it nor read from it: a script keeps what it prints and
/// how it ends in files.
ProgramRun runHostProgram(const QString &program, const QStringList &arguments)
{
    const QTemporaryDir folder;
    const auto kept = [&](const char *name) { return folder.filePath(QString::fromLatin1(name)); };
    QByteArray line = quoted(program);
    for (const QString &argument : arguments)
        line += ' ' + quoted(hostPath(argument));
    QFile script(kept("script"));
    if (!script.open(QIODevice::WriteOnly))
        return {-1, {}, "the script cannot be written"};
    script.write("cd " + quoted(hostPath(folder.path())) + "\n" + line
        + " > output 2> errors < /dev/null\necho $? > ending\nmv ending status\n");
    script.close();
    if (!QProcess::startDetached(QStringLiteral("Z:\\bin\\sh"), {hostPath(script.fileName())}))
        return {-1, {}, "Wine cannot start it"};
    for (const QDeadlineTimer deadline(kPatience); !QFile::exists(kept("status"));) {
        if (deadline.hasExpired())
            return {-1, {}, "it does not end"};
        QThread::msleep(10);
    }
    return {contents(kept("status")).trimmed().toInt(), contents(kept("output")), contents(kept("errors"))};
}

#else

QString hostPath(const QString &fileName)
{
    return fileName;
}

ProgramRun runHostProgram(const QString &program, const QStringList &arguments)
{
    QProcess process;
    process.start(program, arguments);
    if (!process.waitForFinished(kPatience) || process.exitStatus() != QProcess::NormalExit)
        return {-1, {}, process.errorString().toUtf8()};
    return {process.exitCode(), process.readAllStandardOutput(), process.readAllStandardError()};
}

#endif

} // namespace corvane::test
