#pragma once

#include "shared/placed_profile.h"

#include <QtCore/QString>

#include <optional>
#include <vector>

namespace corvane {

struct Reportr;

/// An error makes the report fail or show something wrong; a warning marks what has no effect, or
/// another one than it seems to have.
enum class Severity { Error, Warning };

enum class FindingKind {
    UnreadableFile,
    EmptyFile,
    NotText,
    LargeFile,
    DesignedReport,
    NotTabular,
    TooManyFindings,
    UnknownSection,
    UnknownKey,
    RepeatedSection,
    RepeatedKey,
    StrayLine,
    BlanksAround,
    ValueCut,
    MisspeltValue,
    MissingKey,
    NoNumber,
    NumberWithMore,
    NumberTooSmall,
    NumberTooLarge,
    GroupFieldZero,
    TotalSwitch,
    TotalWithoutGroup,
    GrandTotalAlone,
    FontSize,
    FooterLeftText,
    FieldWord,
    BarInText,
    ListLengths,
    EndMark,
    ColumnWidth,
    PageWidth,
    FormatKey,
    FormatWord,
    FormatUnused,
    UnreplacedToken,
    UnusedAnswer,
    OpenQuote,
    NoSecondDatabase,
    OtherDatabase,
    QueryRefused,
    NoSuchField,
};
inline constexpr int kFindingKinds = int(FindingKind::NoSuchField) + 1;

/// One thing that is wrong with a definition.
struct Finding
{
    FindingKind kind = FindingKind::UnreadableFile;
    TextPlace place;
    QString text; ///< a sentence: what is wrong
    QString mend; ///< a sentence: what would be right

    bool operator==(const Finding &) const = default;
};

Severity severityOf(FindingKind kind);
/// The heading in docs/definition-files.md that explains the kind, as a link's fragment.
QLatin1StringView anchorOf(FindingKind kind);
/// "file:line:column: severity: text mend", on one line.
QString findingLine(const QString &file, const Finding &finding);
bool hasErrors(const std::vector<Finding> &findings);

/// The second database as corvane.ini has it.
struct SecondDatabase
{
    QString name; ///< what stands for HalvernDB; empty: the placeholder stays
    bool isConfigured = false; ///< reports with Database=A can run
};

/// What is wrong with a report definition, in the order of its lines; the query is not run. A
/// second database that is not given is taken for one that fits. Never fails.
std::vector<Finding> checkDefinition(
    const QString &path, const std::optional<SecondDatabase> &second = {});

/// The same for somebody logged on, and the query tried on a connection of its own: {DATE1} and
/// {DATE2} become `date`, <PID> becomes 0, which is nobody. Field numbers are held against the
/// result.
std::vector<Finding> checkDefinition(
    const QString &path, const Reportr &state, const QString &date);

} // namespace corvane
