#pragma once

#include <QtCore/QString>

namespace corvane {

/// What a message box shows beside its text; one of each group may be added together.
namespace MessageFlags {
constexpr int OkOnly = 0;
constexpr int YesNoCancel = 3;
constexpr int YesNo = 4;
constexpr int ButtonMask = 15;
constexpr int Critical = 16;
constexpr int Exclamation = 48;
constexpr int Information = 64;
constexpr int SystemModal = 4096;

/// Whether the user has more than one answer.
constexpr bool ask(int flags)
{
    return (flags & ButtonMask) != OkOnly;
}
} // namespace MessageFlags

enum class MessageAnswer { Ok, Yes, No, Cancel };

/// Whatever can put a message before the user: a window, a console, a script in a test.
class MessageBoxes
{
public:
    virtual ~MessageBoxes() = default;

    /// Plain text, never markup. An empty title is the program's own name.
    virtual MessageAnswer message(const QString &text, int flags, const QString &title) = 0;
};

} // namespace corvane
