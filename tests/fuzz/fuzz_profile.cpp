#include "fuzz/promise.h"
#include "shared/placed_profile.h"

#include <QtCore/QFile>
#include <QtCore/QTemporaryDir>

using namespace corvane;
using test::promise;

namespace {

constexpr QStringView kSection = u"Columns";
constexpr QStringView kKey = u"Heading";

QByteArray contents(const QString &path)
{
    QFile file(path);
    promise(file.open(QIODevice::ReadOnly), "the file is there");
    return file.readAll();
}

/// Every line stands where it says, and both readers give the same values.
void placesFit(const QString &text)
{
    const Profile profile(text);
    const PlacedProfile placed(text);
    const QStringList lines = text.split(u'\n');
    for (const PlacedLine &line : placed.lines()) {
        promise(
            line.place.line >= 1 && line.place.line <= lines.size(), "a line is one of the text's");
        const QStringView behind
            = QStringView(lines[line.place.line - 1]).sliced(line.place.column - 1);
        if (line.kind == ProfileLineKind::Stray)
            promise(behind.startsWith(line.name), "a stray line stands at its place");
        if (line.kind != ProfileLineKind::Key)
            continue;
        promise(profile.value(line.section, line.name) == line.value,
            "both readers give the same value");
        promise(QStringView(lines[line.place.line - 1])
                    .sliced(line.valuePlace.column - 1)
                    .startsWith(line.value),
            "a value stands at its place");
        promise(line.cutAway >= 0, "no value is longer than what stands there");
    }
}

/// Only what stands on one line may go.
void restStays(const QByteArray &before, const QByteArray &after)
{
    const auto [oldEnd, newEnd] = std::ranges::mismatch(before, after);
    const qsizetype start = oldEnd - before.begin();
    const auto [oldTail, newTail] = std::ranges::mismatch(
        before.crbegin(), before.crend() - start, after.crbegin(), after.crend() - start);
    const qsizetype tail = oldTail - before.crbegin();
    promise(!before.sliced(start, before.size() - start - tail).contains('\n'),
        "every other line stays as it is");
}

/// What is told of every other key of a text.
void otherValuesStay(const QString &path, const QByteArray &before, const QByteArray &after)
{
    const PlacedProfile old(profileText(path, before));
    const Profile now(profileText(path, after));
    for (const PlacedLine &line : old.lines()) {
        if (line.kind == ProfileLineKind::Key && old.line(kSection, kKey) != &line)
            promise(
                now.value(line.section, line.name) == line.value, "other values stay as they are");
    }
}

/// A value written into a file is read back, or nothing happens at all.
void writes(const QString &path, const QByteArray &before, const QString &value)
{
    QFile file(path);
    promise(file.open(QIODevice::WriteOnly) && file.write(before) == before.size(),
        "the file can be made");
    file.close();
    try {
        WriteINI(path, kSection, kKey, value);
    } catch (const ProfileWriteError &error) {
        promise(error.message().endsWith(u'.'), "a refusal is a sentence");
        promise(contents(path) == before, "a refusal changes nothing");
        return;
    }
    const QByteArray after = contents(path);
    promise(Profile(profileText(path, after)).value(kSection, kKey) == value,
        "what is written is read back");
    restStays(before, after);
    otherValuesStay(path, before, after);
    WriteINI(path, kSection, kKey, value);
    promise(contents(path) == after, "writing the same again changes nothing");
}

} // namespace

/// A value in the first line, the file that it is written into behind it.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    static const QTemporaryDir folder;
    const test::InputParts parts(QByteArrayView(data, qsizetype(size)));
    for (const QString &name : {QStringLiteral("fuzz.rpt"), QStringLiteral("corvane.ini")}) {
        const QString path = folder.filePath(name);
        placesFit(profileText(path, parts.rest));
        writes(path, parts.rest, test::inputText(parts.line));
    }
    return 0;
}
