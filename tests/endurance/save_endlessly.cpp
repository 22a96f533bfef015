// Saves two versions of one file in turn, with the program's own saving code, until it is killed or
// a save fails, which ends it with the program's own words for that and status 1.
//
// corvane-save-endlessly definition|pdf|workbook TARGET FIRST SECOND
// FIRST and SECOND receive the two versions; for a definition FIRST is there already, and the
// properties form's saving makes the other of it. "ready N" on standard output: the references
// stand, and a save takes N microseconds.

#include "editor/edited_definition.h"
#include "platform/database/rowset.h"
#include "platform/pdf/pdf_writer.h"
#include "platform/workbook/workbook_writer.h"
#include "support/document_builder.h"

#include <QtCore/QElapsedTimer>
#include <QtGui/QGuiApplication>

#include <array>
#include <cstdio>
#include <functional>

using namespace corvane;

namespace {

constexpr int kMeasured = 4;

enum class Version { First, Second };

/// Writes one version under a name.
using Save = std::function<void(const QString &name, Version version)>;

QString words(Version version)
{
    return version == Version::First ? QStringLiteral("The first version")
                                     : QStringLiteral("The second, which is longer");
}

void saveDefinition(const QString &name, Version version)
{
    EditedDefinition definition(name);
    PageProperties properties = definition.load();
    properties.header[1] = words(version);
    properties.isLandscape = version == Version::Second;
    if (!definition.save(properties))
        qFatal("somebody else changed %s", qPrintable(name));
}

Document pages(Version version)
{
    constexpr int kPages = 40;
    constexpr int kLines = 50;
    test::DocumentBuilder builder;
    for (int page = 0; page < kPages; ++page) {
        if (page > 0)
            builder.newPage();
        for (int line = 0; line < kLines; ++line)
            builder.paragraph(
                QStringLiteral("%1, page %2, line %3").arg(words(version)).arg(page).arg(line));
    }
    return builder.finish();
}

RowsetPtr rows(Version version)
{
    constexpr int kRows = 6000;
    RowsetBuilder builder(
        {QStringLiteral("name"), QStringLiteral("number"), QStringLiteral("other")});
    for (int row = 0; row < kRows; ++row) {
        builder.addText(QStringLiteral("%1 %2").arg(words(version)).arg(row).toUtf8());
        builder.add(Value::integer(row));
        builder.add(Value::integer(version == Version::First ? row : -row));
    }
    return builder.finish();
}

Save saverOf(const QString &kind)
{
    if (kind == u"definition")
        return saveDefinition;
    if (kind == u"pdf") {
        return [first = pages(Version::First), second = pages(Version::Second)](const QString &name,
                   Version version) { writePdf(version == Version::First ? first : second, name); };
    }
    if (kind == u"workbook") {
        return [first = rows(Version::First), second = rows(Version::Second)](
                   const QString &name, Version version) {
            writeWorkbook(version == Version::First ? *first : *second, name);
        };
    }
    qFatal("no kind of file: %s", qPrintable(kind));
}

void copyOf(const QString &name, const QString &to)
{
    QFile::remove(to);
    if (!QFile::copy(name, to))
        qFatal("%s cannot be copied to %s", qPrintable(name), qPrintable(to));
}

/// What `arguments` say, for ever.
void saveInTurn(const QStringList &arguments)
{
    const Save save = saverOf(arguments[1]);
    const QString &target = arguments[2];
    if (arguments[1] == u"definition")
        copyOf(arguments[3], target);
    const std::array references{
        std::pair(Version::First, arguments[3]), std::pair(Version::Second, arguments[4])};
    for (const auto &[version, reference] : references) {
        save(target, version);
        copyOf(target, reference);
    }
    QElapsedTimer timer;
    timer.start();
    for (int i = 0;; ++i) {
        save(target, i % 2 == 0 ? Version::First : Version::Second);
        if (i + 1 == kMeasured) {
            std::printf(
                "ready %lld\n", static_cast<long long>(timer.nsecsElapsed() / 1000 / kMeasured));
            std::fflush(stdout);
        }
    }
}

} // namespace

int main(int argc, char **argv)
{
    const QGuiApplication application(argc, argv);
    const QStringList arguments = QGuiApplication::arguments();
    if (arguments.size() != 5)
        qFatal("usage: corvane-save-endlessly definition|pdf|workbook TARGET FIRST SECOND");
    try {
        saveInTurn(arguments);
    } catch (const std::exception &failure) {
        std::fprintf(stderr, "%s\n", failure.what());
    }
    return 1;
}
