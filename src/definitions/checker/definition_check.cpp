#include "definitions/checker/definition_check.h"

#include "definitions/checker/check_pass.h"
#include "definitions/report_kind.h"
#include "shared/report_host.h"
#include "shared/reportr.h"

#include <QtCore/QFile>
#include <QtCore/QFileInfo>

#include <algorithm>

namespace corvane {

namespace {

constexpr qint64 kLargeFile = qint64(1024) * 1024;

QString megabytes(qint64 bytes)
{
    return QStringLiteral("%1 MB").arg(double(bytes) / double(kLargeFile), 0, 'f', 1);
}

/// The place right behind a text.
TextPlace placeBehind(QStringView text)
{
    const qsizetype lineStart = text.lastIndexOf(u'\n') + 1;
    return {int(text.count(u'\n')) + 1, int(text.size() - lineStart) + 1};
}

void checkBytes(std::vector<Finding> &findings, const QByteArray &bytes, QStringView text)
{
    if (bytes.size() > kLargeFile)
        findings.push_back({FindingKind::LargeFile, {},
            QStringLiteral("The file has %1; a definition has some kilobytes.")
                .arg(megabytes(bytes.size())),
            QStringLiteral("Look whether it is the right file.")});
    if (bytes.startsWith("\xff\xfe") || bytes.startsWith("\xfe\xff"))
        findings.push_back({FindingKind::NotText, {},
            QStringLiteral("The file is saved as UTF-16, which is not read."),
            QStringLiteral("Save it as UTF-8 or in the system's code page (ANSI).")});
    else if (bytes.contains('\0'))
        findings.push_back({FindingKind::NotText, placeBehind(text),
            QStringLiteral("The file holds a NUL character here; nothing behind it is read."),
            QStringLiteral("Remove it, or look whether it is the right file.")});
}

bool hasSection(const CheckPass &pass, QStringView name)
{
    return std::ranges::any_of(pass.profile.lines(), [&](const PlacedLine &line) {
        return line.kind == ProfileLineKind::Section
            && line.section.compare(name, Qt::CaseInsensitive) == 0;
    });
}

/// Whether a definition is there to be checked at all; a foreign file has one finding, not dozens.
bool isDefinition(CheckPass &pass)
{
    const bool isText = std::ranges::none_of(
        pass.findings, [](const Finding &finding) { return finding.kind == FindingKind::NotText; });
    if (isText && pass.profile.lines().empty()) {
        pass.add(FindingKind::EmptyFile, {}, QStringLiteral("The file is empty, comments aside."),
            QStringLiteral("Start from a definition that works."));
        return false;
    }
    const bool isForeign = !hasSection(pass, u"Columns") && !hasSection(pass, u"Data Source");
    const bool marked = !pass.value(u"Columns", u"PageColumns").trimmed().isEmpty();
    if (!marked && (isText || !isForeign))
        pass.add(FindingKind::NotTabular, pass.place(u"Columns", u"PageColumns"),
            QStringLiteral("PageColumns of [Columns] is missing, so the file is not taken for a "
                           "tabular report."),
            QStringLiteral("Write PageColumns=1."));
    return !isForeign;
}

void checkAll(CheckPass &pass)
{
    if (!isDefinition(pass))
        return;
    checkLines(pass);
    checkWords(pass);
    checkNumbers(pass);
    checkTotals(pass);
    checkPageTexts(pass);
    checkLists(pass);
    checkColumnFormats(pass);
    checkQuery(pass);
}

std::vector<Finding> inOrder(std::vector<Finding> findings)
{
    std::ranges::stable_sort(findings, {}, &Finding::place);
    if (findings.size() > kMostFindings) {
        // Errors decide how a check ends, so they are the last to be left out.
        std::ranges::stable_sort(
            findings, {}, [](const Finding &finding) { return severityOf(finding.kind); });
        findings.resize(kMostFindings);
        std::ranges::stable_sort(findings, {}, &Finding::place);
        findings.push_back({FindingKind::TooManyFindings, findings.back().place,
            QStringLiteral("There are more findings, which are not listed."),
            QStringLiteral("Mend these first.")});
    }
    return findings;
}

template <typename Trial>
std::vector<Finding> check(
    const QString &path, const std::optional<SecondDatabase> &second, Trial trial)
{
    QFile file(path);
    if (const QString reason = unreadableReason(path); !reason.isEmpty() || !file.open(QIODevice::ReadOnly))
        return {{FindingKind::UnreadableFile, {}, reason,
            QStringLiteral("Look at its name and at your rights to it.")}};
    if (getReportType(path) == ReportKind::DesignedReport)
        return checkDesignedReport(path);
    const QByteArray bytes = file.readAll();
    const QString text = profileText(path, bytes);
    const PlacedProfile profile(text);
    CheckPass pass{profile, second, {}};
    checkBytes(pass.findings, bytes, text);
    checkAll(pass);
    trial(pass);
    return inOrder(std::move(pass.findings));
}

} // namespace

std::vector<Finding> checkDefinition(
    const QString &path, const std::optional<SecondDatabase> &second)
{
    return check(path, second, [](CheckPass &) {});
}

std::vector<Finding> checkDefinition(const QString &path, const Reportr &state, const QString &date)
{
    const SecondDatabase second{state.gHvnDBName, !state.gHvnConnectString.isEmpty()};
    return check(path, second, [&](CheckPass &pass) { tryQuery(pass, state, date); });
}

} // namespace corvane
