#include "support/pdf_reader.h"

#include "support/host_program.h"

namespace corvane::test {

QString readerOutput(const QString &program, const QStringList &arguments)
{
    const ProgramRun run = runHostProgram(program, arguments);
    if (run.status != 0)
        return QStringLiteral("FAILED: %1 ended with %2: %3").arg(program).arg(run.status).arg(QString::fromUtf8(run.errors));
    return QString::fromUtf8(run.output);
}

QString popplerText(const QString &fileName, TextOrder order)
{
    QStringList arguments {QStringLiteral("-enc"), QStringLiteral("UTF-8"), fileName, QStringLiteral("-")};
    if (order == TextOrder::Contents)
        arguments.prepend(QStringLiteral("-raw"));
    return readerOutput(QStringLiteral("pdftotext"), arguments);
}

QString mupdfText(const QString &fileName)
{
    return readerOutput(QStringLiteral("mutool"),
        {QStringLiteral("draw"), QStringLiteral("-q"), QStringLiteral("-F"), QStringLiteral("txt"), fileName});
}

QString normalised(const QString &text)
{
    QString kept;
    for (const QChar c : text) {
        const bool isMark = c == u'\u200e' || c == u'\u200f' || (c >= u'\u202a' && c <= u'\u202e');
        if (!isMark)
            kept += c;
    }
    return kept.normalized(QString::NormalizationForm_C).simplified();
}

} // namespace corvane::test
