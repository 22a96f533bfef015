#include "platform/process/console.h"

#include <QtCore/QStringDecoder>

#include <cstdlib>
#include <cstring>
#include <string>

#ifdef Q_OS_WIN
#include <io.h>
#include <qt_windows.h>
#endif

namespace corvane {

namespace {

constexpr char kPasswordVariable[] = "CORVANE_PASSWORD";

#ifdef Q_OS_WIN

/// False where the stream is no console.
bool showOnConsole(std::FILE *stream, const QString &text)
{
    const auto handle = reinterpret_cast<HANDLE>(_get_osfhandle(_fileno(stream)));
    DWORD mode = 0;
    if (!GetConsoleMode(handle, &mode))
        return false;
    std::fflush(stream);
    DWORD written = 0;
    return WriteConsoleW(handle, text.utf16(), DWORD(text.size()), &written, nullptr) != 0;
}

void wipeVariable()
{
    if (wchar_t *value = _wgetenv(L"CORVANE_PASSWORD"))
        std::wmemset(value, 0, std::wcslen(value));
}

#else

bool showOnConsole(std::FILE *, const QString &)
{
    return false; // which takes the user's encoding
}

void wipeVariable() { }

#endif

QByteArray encoded(const QString &text)
{
#ifdef Q_OS_WIN
    return text.toUtf8();
#else
    return text.toLocal8Bit();
#endif
}

QString decoded(QByteArrayView bytes)
{
    QStringDecoder utf8(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    const QString text = utf8(bytes);
    return utf8.hasError() ? QString::fromLocal8Bit(bytes) : text;
}

} // namespace

void writeConsole(std::FILE *stream, const QString &text)
{
    if (showOnConsole(stream, text))
        return;
    const QByteArray bytes = encoded(text);
    std::fwrite(bytes.constData(), 1, size_t(bytes.size()), stream);
}

void printError(const QString &text)
{
    writeConsole(stderr, text.simplified() + u'\n');
}

QString takePasswordVariable()
{
    const QString password = qEnvironmentVariable(kPasswordVariable);
    wipeVariable();
    if (char *value = std::getenv(kPasswordVariable))
        std::memset(value, 0, std::strlen(value));
    qunsetenv(kPasswordVariable);
    return password;
}

QString readPasswordLine()
{
    std::string line;
    for (int c = std::getchar(); c != EOF && c != '\n'; c = std::getchar())
        line += char(c);
    if (line.ends_with('\r'))
        line.pop_back();
    return decoded(line);
}

} // namespace corvane
