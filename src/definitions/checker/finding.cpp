#include "definitions/checker/definition_check.h"

#include <algorithm>

namespace corvane {

namespace {

struct KindRow
{
    FindingKind kind;
    Severity severity;
    QLatin1StringView anchor;
};

using enum FindingKind;
using enum Severity;

/// In the order of FindingKind.
constexpr KindRow kKinds[]{
    {UnreadableFile, Error, QLatin1StringView("file-that-cannot-be-read")},
    {EmptyFile, Error, QLatin1StringView("empty-file")},
    {NotText, Error, QLatin1StringView("no-plain-text")},
    {LargeFile, Warning, QLatin1StringView("very-large-file")},
    {DesignedReport, Error, QLatin1StringView("designed-report")},
    {NotTabular, Error, QLatin1StringView("no-pagecolumns")},
    {TooManyFindings, Warning, QLatin1StringView("too-many-findings")},
    {UnknownSection, Warning, QLatin1StringView("unknown-section")},
    {UnknownKey, Warning, QLatin1StringView("unknown-key")},
    {RepeatedSection, Warning, QLatin1StringView("repeated-section")},
    {RepeatedKey, Warning, QLatin1StringView("repeated-key")},
    {StrayLine, Warning, QLatin1StringView("stray-line")},
    {BlanksAround, Warning, QLatin1StringView("blanks-around-a-value-or-key")},
    {ValueCut, Error, QLatin1StringView("value-that-is-cut")},
    {MisspeltValue, Warning, QLatin1StringView("misspelt-value")},
    {MissingKey, Error, QLatin1StringView("missing-key")},
    {NoNumber, Error, QLatin1StringView("no-number")},
    {NumberWithMore, Warning, QLatin1StringView("number-with-more-around-it")},
    {NumberTooSmall, Error, QLatin1StringView("number-that-is-too-small")},
    {NumberTooLarge, Error, QLatin1StringView("number-that-is-too-large")},
    {GroupFieldZero, Warning, QLatin1StringView("field-0-for-groups-or-notes")},
    {TotalSwitch, Warning, QLatin1StringView("total-that-is-not-switched-on")},
    {TotalWithoutGroup, Warning, QLatin1StringView("total-without-groups")},
    {GrandTotalAlone, Warning, QLatin1StringView("grandtotal-without-subtotal")},
    {FontSize, Error, QLatin1StringView("font-size-out-of-range")},
    {FooterLeftText, Warning, QLatin1StringView("left-footer-text")},
    {FieldWord, Warning, QLatin1StringView("text-around-a-field-word")},
    {BarInText, Warning, QLatin1StringView("bar-in-a-page-text")},
    {ListLengths, Error, QLatin1StringView("lists-of-unequal-length")},
    {EndMark, Warning, QLatin1StringView("end-mark")},
    {ColumnWidth, Error, QLatin1StringView("column-width")},
    {PageWidth, Warning, QLatin1StringView("columns-wider-than-the-page")},
    {FormatKey, Warning, QLatin1StringView("key-of-columnformat")},
    {FormatWord, Warning, QLatin1StringView("word-of-columnformat")},
    {FormatUnused, Warning, QLatin1StringView("format-of-a-field-that-is-not-printed")},
    {UnreplacedToken, Error, QLatin1StringView("token-that-nothing-replaces")},
    {UnusedAnswer, Warning, QLatin1StringView("answer-that-the-query-does-not-use")},
    {OpenQuote, Error, QLatin1StringView("quoted-text-that-does-not-end")},
    {NoSecondDatabase, Error, QLatin1StringView("no-second-database")},
    {OtherDatabase, Warning, QLatin1StringView("database-that-does-not-fit")},
    {QueryRefused, Error, QLatin1StringView("query-that-the-database-refuses")},
    {NoSuchField, Error, QLatin1StringView("field-that-the-result-does-not-have")},
};

const KindRow &rowOf(FindingKind kind)
{
    static_assert(std::size(kKinds) == kFindingKinds);
    static_assert(std::ranges::all_of(
        kKinds, [](const KindRow &row) { return &row == &kKinds[size_t(row.kind)]; }));
    return kKinds[size_t(kind)];
}

} // namespace

Severity severityOf(FindingKind kind)
{
    return rowOf(kind).severity;
}

QLatin1StringView anchorOf(FindingKind kind)
{
    return rowOf(kind).anchor;
}

QString findingLine(const QString &file, const Finding &finding)
{
    QString words = QString(finding.text + u' ' + finding.mend).simplified();
    // A file's escape sequences are not for the terminal.
    for (QChar &c : words) {
        if (c.category() == QChar::Other_Control)
            c = QChar::ReplacementCharacter;
    }
    const auto severity = severityOf(finding.kind) == Error ? QLatin1StringView("error")
                                                            : QLatin1StringView("warning");
    return QStringLiteral("%1:%2:%3: %4: %5")
        .arg(file, QString::number(finding.place.line), QString::number(finding.place.column),
            severity, words);
}

bool hasErrors(const std::vector<Finding> &findings)
{
    return std::ranges::any_of(
        findings, [](const Finding &finding) { return severityOf(finding.kind) == Error; });
}

} // namespace corvane
