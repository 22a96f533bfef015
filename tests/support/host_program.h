#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QStringList>

namespace corvane::test {

/// How a program ended and what it printed; status -1: it did not start or did not end, and `errors` says so.
struct ProgramRun
{
    int status = -1;
    QByteArray output;
    QByteArray errors;
};

/// Runs one of the system's own programs that tests ask for a second opinion (pdftotext, qpdf, xmllint, …). Under
/// Wine that is a program of the machine below: absolute names of files among the arguments are given as it knows them.
ProgramRun runHostProgram(const QString &program, const QStringList &arguments);

/// What a program printed, its line ends "\n" on every system.
QString printedText(const QByteArray &bytes);

/// A file's name as such a program knows it.
QString hostPath(const QString &fileName);

} // namespace corvane::test
