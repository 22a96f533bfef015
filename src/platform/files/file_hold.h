#pragma once

#include <QtCore/QString>

namespace corvane {

enum class HoldResult { Held, HeldByAnother, Unknown };

/// Takes an open file for this program alone, as far as programs ask. The system lets go when the
/// file is closed or the program ends, however it ends. Unknown: the file system cannot tell.
HoldResult holdOpenFile(int descriptor);
#ifdef Q_OS_WIN
/// The same for one of the system's own handles.
HoldResult holdHandle(void *handle);
#endif

/// Keeps other programs that ask from replacing a file, for as long as this lives. What others left
/// running for too long is not waited for.
class FileHold
{
public:
    explicit FileHold(const QString &fileName);
    ~FileHold();
    Q_DISABLE_COPY_MOVE(FileHold)

    /// False: another program has the file. True also where nothing can be held: no file, no such
    /// locks.
    bool isHeld() const { return m_isHeld; }

private:
    static constexpr qintptr kNone = -1;

    HoldResult attempt(const QString &fileName);
    void letGo();

    qintptr m_file = kNone; ///< the system's descriptor or handle
    bool m_isHeld = true;
};

} // namespace corvane
