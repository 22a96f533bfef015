#include "demo/notes.h"

#include <array>
#include <string_view>

namespace corvane::demo {

namespace {

using namespace std::string_view_literals;

constexpr std::array kSentences{"Tolerated treatment well."sv,
    "Reports less stiffness in the morning."sv, "Pain 4/10 at rest; 7/10 after stairs."sv,
    "Range of motion improved by ten degrees since the last visit."sv,
    "Home exercises reviewed; two of five not done."sv, "Sleep is better, appetite unchanged."sv,
    "Grip left | right: 24 kg | 31 kg."sv, "Gait steady with a cane on level ground."sv,
    "Discussed the patient's goals for the coming month."sv,
    "Will bring the brace to the next session."sv, "Blood pressure 128/82 before, 122/78 after."sv,
    "Practised naming and short sentences."sv, "Spouse attended and asked about safe transfers."sv,
    "Mood stable; no thoughts of self-harm."sv, "Continue the present plan twice a week."sv,
    "Swelling down; skin intact."sv,
    "Needs a letter for the employer (light duty until the 15th)."sv,
    "Walked 240 m in six minutes, 30 m more than last month."sv};

constexpr std::array kOtherScripts{"Family speaks 日本語 at home; interpreter booked."sv,
    "Interpreter for العربية requested."sv, "Handout given in 简体中文 and in English."sv,
    "Prefers to be called Оксана."sv, "Prayer book in עברית left in the room."sv};

constexpr std::array kReasons{"Car trouble."sv, "No show, no call."sv,
    "Sick child; will call back."sv, "Asked for a later hour | left a message."sv, "Snow."sv,
    "Insurance card expired; waits for the new one."sv};

/// Different sentences, in the list's order from a random one on; `count` is below the list's
/// length.
std::string paragraph(Random &random, int count)
{
    size_t at = size_t(random.below(int(kSentences.size())));
    std::string text(kSentences[at]);
    for (int i = 1; i < count; ++i) {
        const int step = count < 5 ? random.between(1, 4) : 1;
        at = (at + size_t(step)) % kSentences.size();
        text.append(" ").append(kSentences[at]);
    }
    return text;
}

} // namespace

std::optional<std::string> sessionNote(Random &random)
{
    const int roll = random.below(100);
    if (roll < 38)
        return std::nullopt;
    if (roll < 40)
        return std::string();
    if (roll < 42)
        return paragraph(random, 1).append(" ").append(random.pick(kOtherScripts));
    if (roll < 48)
        return paragraph(random, random.between(9, 16));
    return paragraph(random, random.between(1, 3));
}

std::optional<std::string> absenceNote(Random &random)
{
    if (!random.chance(45))
        return std::nullopt;
    return std::string(random.pick(kReasons));
}

} // namespace corvane::demo
