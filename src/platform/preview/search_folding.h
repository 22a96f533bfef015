#pragma once

#include <QtCore/QString>

#include <array>
#include <span>
#include <string>
#include <vector>

namespace corvane {

enum class CaseRule { Ignore, Match };

/// From a folded letter on, the letters come from those at and behind an offset of the text, one
/// from each, up to the next step.
struct OriginStep
{
    quint32 folded = 0;
    quint32 origin = 0;
};

/// The offset in the text of a folded letter, or of the end. Without steps they are the same.
quint32 originOf(std::span<const OriginStep> steps, quint32 folded);

/// Text as search compares it: without accents, ligatures and typographic signs taken apart, every
/// run of blanks one blank, and unless the case is to match, case-folded. Decompositions are those
/// of the Unicode Character Database, compatibility mappings included.
class SearchFolding
{
public:
    /// No folded text has it: a soft hyphen is left out.
    static constexpr char16_t kSeparator = 0xad;

    SearchFolding();

    struct Folded
    {
        std::u16string text;
        std::vector<OriginStep> steps;
    };
    Folded fold(QStringView text, CaseRule rule) const;

    /// Appends a text to others that are folded already, with its steps, which count from its own
    /// beginning. False, and nothing appended: a folded letter has no place in a byte.
    bool append(QStringView text, CaseRule rule, std::string &out, std::vector<OriginStep> &steps);
    bool append(
        QStringView text, CaseRule rule, std::u16string &out, std::vector<OriginStep> &steps);

private:
    static constexpr char16_t kOtherLength = 0xffff; ///< no character, by the standard
    template <typename Text> class Writer;

    template <typename Put>
    qsizetype foldAt(QStringView text, qsizetype at, CaseRule rule, Put put) const;
    template <typename Text>
    bool appendTo(QStringView text, CaseRule rule, Text &out, std::vector<OriginStep> &steps);
    void learn(int row);

    std::array<bool, 256> m_known{}; ///< rows of 256 letters
    /// By rule, what a letter folds to; kOtherLength: to none, to several, or its row is not known.
    std::array<std::vector<char16_t>, 2> m_letters;
};

} // namespace corvane
