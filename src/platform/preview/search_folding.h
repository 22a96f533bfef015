#pragma once

#include <QtCore/QString>

#include <array>
#include <vector>

namespace corvane {

enum class CaseRule { Ignore, Match };

/// Text as search compares it: without accents, ligatures and typographic signs taken apart, every
/// run of blanks one blank, and unless the case is to match, case-folded. Decompositions are those
/// of the Unicode Character Database, compatibility mappings included.
class SearchFolding
{
public:
    SearchFolding();

    /// Whether each letter of a text folds to one letter under either rule, so that offsets stay
    /// what they are.
    bool keepsLength(QStringView text);
    /// The fold of a letter of a text that keeps its length and was asked about.
    char16_t letter(char16_t c, CaseRule rule) const { return m_letters[size_t(rule)][c]; }

    struct Folded
    {
        std::u16string text;
        std::vector<quint32>
            origins; ///< offset in the text of each folded letter, and of the text's end
    };
    Folded fold(QStringView text, CaseRule rule) const;

private:
    static constexpr char16_t kOtherLength = 0xffff; ///< no character, by the standard

    bool keepLength(QStringView text);
    void learn(int row);

    std::array<bool, 256> m_known{}; ///< rows of 256 letters
    std::array<std::vector<char16_t>, 2> m_letters; ///< by rule
};

} // namespace corvane
