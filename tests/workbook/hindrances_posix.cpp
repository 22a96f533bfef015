#include "workbook/hindrances.h"

#include "support/hindrances.h"

#include <QtCore/QFile>

#include <memory>

namespace corvane::test {

namespace {

/// Root may write anywhere, so the attempt is made as a user who may not.
std::function<void()> withoutRights(
    const QString &folder, QFile::Permissions ofFolder, QFile::Permissions ofFile)
{
    QFile::setPermissions(folder, ofFolder);
    QFile::setPermissions(folder + u'/' + kUsual, ofFile);
    return [folder, somebody = std::make_shared<Unprivileged>()]() mutable {
        somebody.reset();
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

Hindrance noRoomBeyond(qint64 bytes)
{
    return [bytes](const QString &) {
        return [disk = std::make_shared<FullDisk>(bytes)]() mutable { disk.reset(); };
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
