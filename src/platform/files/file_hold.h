#pragma once

#include <QtCore/QString>

namespace corvane {

enum class HoldResult { Held, HeldByAnother, Unknown };

/// Takes an open file for this program alone, as far as programs ask. The system lets go when the
/// file is closed or the program ends, however it ends. Unknown: the file system cannot tell.
HoldResult holdOpenFile(int descriptor);

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
    HoldResult attempt(const QByteArray &encodedName);
    void letGo();

    int m_descriptor = -1;
    bool m_isHeld = true;
};

} // namespace corvane
