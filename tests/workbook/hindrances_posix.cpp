#include "workbook/hindrances.h"

#include <QtCore/QFile>

#include <csignal>

#include <sys/resource.h>
#include <unistd.h>

namespace corvane::test {

namespace {

constexpr uid_t kNobody = 65534;

/// Root may write anywhere, so the attempt is made as a user who may not.
std::function<void()> withoutRights(
    const QString &folder, QFile::Permissions ofFolder, QFile::Permissions ofFile)
{
    QFile::setPermissions(folder, ofFolder);
    QFile::setPermissions(folder + u'/' + kUsual, ofFile);
    const bool isRoot = geteuid() == 0;
    const bool became = isRoot && setresuid(kNobody, kNobody, 0) == 0;
    return [folder, became] {
        if (became && setresuid(0, 0, 0) != 0)
            qFatal("cannot become root again");
        QFile::setPermissions(folder, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    };
}

constexpr QFile::Permissions kRead = QFile::ReadOwner | QFile::ReadGroup | QFile::ReadOther;
constexpr QFile::Permissions kEnter = kRead | QFile::ExeOwner | QFile::ExeGroup | QFile::ExeOther;

std::function<void()> noRightToTheFolder(const QString &folder)
{
    return withoutRights(folder, kEnter, kRead | QFile::WriteGroup | QFile::WriteOther);
}

std::function<void()> targetIsReadOnly(const QString &folder)
{
    return withoutRights(
        folder, kEnter | QFile::WriteOwner | QFile::WriteGroup | QFile::WriteOther, kRead);
}

/// A file may not grow beyond `bytes`: to the writer the same as a disk that fills up.
Hindrance noRoomBeyond(qint64 bytes)
{
    return [bytes](const QString &) {
        const auto handler = std::signal(SIGXFSZ, SIG_IGN);
        rlimit before{};
        getrlimit(RLIMIT_FSIZE, &before);
        const rlimit tight{rlim_t(bytes), before.rlim_max};
        setrlimit(RLIMIT_FSIZE, &tight);
        return [before, handler] {
            setrlimit(RLIMIT_FSIZE, &before);
            std::signal(SIGXFSZ, handler);
        };
    };
}

} // namespace

std::vector<HindranceRow> systemHindrances(qint64 whole)
{
    return {
        {"no right to the folder", noRightToTheFolder, "You may not write in the folder"},
        {"the target is read-only", targetIsReadOnly, "You may not change this file."},
        {"no room for anything", noRoomBeyond(0), "File too large. "},
        {"no room after the first block", noRoomBeyond(300'000), "File too large. "},
        {"no room for the container's directory", noRoomBeyond(whole - 1000), "File too large. "},
    };
}

} // namespace corvane::test
