#pragma once

#include "platform/engine/expression/expression.h"

#include <QtCore/QByteArray>
#include <QtCore/QString>

#include <vector>

namespace corvane {

/// The text of a designed report file; turns places in it into messages.
class ReportSource
{
public:
    /// @throws ReportError: cannot be read, over 16 MiB, no UTF-8, neither kind of report
    static ReportSource read(const QString &fileName);
    /// The same for bytes that were read already; pictures are looked for beside the file name.
    static ReportSource fromBytes(const QString &fileName, const QByteArray &bytes);

    const QString &text() const { return m_text; }
    /// Where the file stands; pictures are looked for there.
    QString folder() const;

    /// Of an offset in UTF-16 units.
    FilePlace placeOf(qsizetype offset) const;
    /// A sentence after file, line and column. @throws ReportError always
    [[noreturn]] void fail(qsizetype offset, const QString &sentence) const;
    /// The same where no place helps. @throws ReportError always
    [[noreturn]] void fail(const QString &sentence) const;

private:
    ReportSource(const QString &fileName, QString text);

    QString m_fileName;
    QString m_text;
    std::vector<qsizetype> m_lineStarts;
};

} // namespace corvane
