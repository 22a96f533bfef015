#include "check.h"

#include "budget.h"
#include "measured.h"

#include <QtCore/QFile>

#include <cstdio>

namespace corvane::bench {

namespace {

enum class Verdict { Within, Told, Missed, LeftOut, Lacking };

Verdict verdictOn(const Budget &budget, std::optional<double> measured, Extent extent)
{
    if (budget.isFull && extent == Extent::Quick)
        return Verdict::LeftOut;
    if (!measured)
        return Verdict::Lacking;
    if (!budget.most)
        return Verdict::Told;
    return *measured <= *budget.most ? Verdict::Within : Verdict::Missed;
}

QString wordFor(Verdict verdict)
{
    switch (verdict) {
    case Verdict::Within:
        return QStringLiteral("within");
    case Verdict::Told:
        return QStringLiteral("no budget");
    case Verdict::Missed:
        return QStringLiteral("MISSED");
    case Verdict::LeftOut:
        return QStringLiteral("left out");
    case Verdict::Lacking:
        break;
    }
    return QStringLiteral("NOT MEASURED");
}

} // namespace

bool checkBudgets(Extent extent, TableForm form)
{
    QFile file(QStringLiteral(":/budget.json"));
    const std::vector<Budget> budgets
        = readBudgets(file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray());
    const bool isMarkdown = form == TableForm::Markdown;
    std::printf(isMarkdown ? "\n| work | budget | measured |\n|---|---|---|\n"
                           : "\n%-80s %-45s %8s  verdict\n",
        "work", "budget", "measured");
    bool isGood = true;
    for (const Budget &budget : budgets) {
        const std::optional<double> measured = recorded(budget.name.toStdString());
        const Verdict verdict = verdictOn(budget, measured, extent);
        const QString figure = measured ? Budget::figure(*measured) : QStringLiteral("-");
        const QString word = wordFor(verdict);
        const QString row = isMarkdown
            ? QStringLiteral("| %1 | %2 | %3 |")
                  .arg(budget.work, budget.text(),
                      verdict == Verdict::Missed ? QString(figure + u", missed") : figure)
            : QString(budget.work.leftJustified(80) + u' ' + budget.text().leftJustified(45) + u' '
                + figure.rightJustified(8) + u"  " + word);
        std::printf("%s\n", row.toUtf8().constData());
        if (verdict == Verdict::Missed || verdict == Verdict::Lacking) {
            isGood = false;
            std::fprintf(stderr, "%s: %s, %s, budget %s\n", word.toUtf8().constData(),
                budget.work.toUtf8().constData(), figure.toUtf8().constData(),
                budget.text().toUtf8().constData());
        }
    }
    return isGood;
}

} // namespace corvane::bench
