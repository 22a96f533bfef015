#pragma once

#include "definitions/checker/definition_check.h"

namespace corvane {

/// How many findings are told of one definition.
inline constexpr size_t kMostFindings = 200;

/// One definition on its way through the checks, and what they found.
struct CheckPass
{
    const PlacedProfile &profile;
    std::optional<SecondDatabase> second;
    std::vector<Finding> findings;

    void add(FindingKind kind, TextPlace place, const QString &text, const QString &mend)
    {
        findings.push_back({kind, place, text, mend});
    }
    QString value(QStringView section, QStringView key) const
    {
        return profile.value(section, key);
    }
    /// Whether so much is wrong that looking at further lines tells nobody more.
    bool isFull() const { return findings.size() > kMostFindings * 5; }
    /// Where a key's value stands; for a missing one its section's place.
    TextPlace place(QStringView section, QStringView key, qsizetype offset = 0) const
    {
        const PlacedLine *line = profile.line(section, key);
        return line ? line->at(offset) : profile.sectionPlace(section);
    }
};

/// A text of the file's for a message, which is to stay readable.
QString shortened(QStringView text);
/// "LText of [Footer]".
QString keyName(QStringView section, QStringView key);
QString quotedValue(QStringView value);

void checkLines(CheckPass &pass);
void checkWords(CheckPass &pass);
void checkNumbers(CheckPass &pass);
void checkTotals(CheckPass &pass);
void checkPageTexts(CheckPass &pass);
void checkLists(CheckPass &pass);
void checkColumnFormats(CheckPass &pass);
void checkQuery(CheckPass &pass);

/// A whole number of the definition as the report reads it; empty when it stops with an overflow.
std::optional<qint16> wholeNumber(QStringView text);
/// Tells what is wrong with a number at this place; true when nothing is.
bool checkWhole(CheckPass &pass, const QString &what, QStringView text, TextPlace place, int least);

/// Runs the query as a report would and holds the field numbers against its result.
void tryQuery(CheckPass &pass, const Reportr &state, const QString &date);

/// What a designed report's own reader says about it.
std::vector<Finding> checkDesignedReport(const QString &path);

} // namespace corvane
