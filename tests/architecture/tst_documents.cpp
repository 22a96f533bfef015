// The project's pages: every link leads somewhere, and every test they name as a proof is there.

#include "help/help_topics.h"
#include "support/source_files.h"
#include "support/suite.h"

#include <QtCore/QDirIterator>
#include <QtCore/QRegularExpression>
#include <QtCore/QTemporaryDir>
#include <QtTest/QtTest>

#include <algorithm>

using namespace corvane;
using test::kSource;
using test::textOf;

namespace {

/// Fenced blocks are examples: they have neither headings nor links.
QStringList linesOf(const QString &markdown)
{
    QStringList lines;
    bool isFenced = false;
    for (const QString &line : markdown.split(u'\n')) {
        const bool isFence = line.startsWith(u"```");
        isFenced = isFenced != isFence;
        lines += isFenced || isFence ? QString() : line;
    }
    return lines;
}

bool hasAnchor(const QString &page, const QString &anchor)
{
    static const QRegularExpression heading(QStringLiteral("^#+ (.*)$"));
    const QStringList lines = linesOf(textOf(page));
    return std::ranges::any_of(lines, [&anchor](const QString &line) {
        const QRegularExpressionMatch match = heading.match(line);
        return match.hasMatch() && headingAnchor(match.captured(1)) == anchor;
    });
}

bool leadsSomewhere(const QString &page, const QUrl &link)
{
    if (!link.scheme().isEmpty())
        return true;
    const QString target
        = link.path().isEmpty() ? page : QFileInfo(page).dir().absoluteFilePath(link.path());
    return QFileInfo::exists(target) && (!link.hasFragment() || hasAnchor(target, link.fragment()));
}

/// "page:line: link" for each link of a page that leads nowhere.
QStringList deadLinks(const QString &page)
{
    static const QRegularExpression link(QStringLiteral("\\]\\(([^)\\s]+)\\)"));
    QStringList dead;
    int number = 0;
    for (const QString &line : linesOf(textOf(page))) {
        ++number;
        for (const auto &match : link.globalMatch(line)) {
            if (!leadsSomewhere(page, QUrl(match.captured(1))))
                dead += QStringLiteral("%1:%2: %3")
                            .arg(QFileInfo(page).fileName())
                            .arg(number)
                            .arg(match.captured(1));
        }
    }
    return dead;
}

QStringList pages()
{
    QStringList found;
    for (const QFileInfo &page : kSource.entryInfoList({QStringLiteral("*.md")}, QDir::Files))
        found += page.filePath();
    for (const char *folder : {"bench", "demo", "docs", "tests"}) {
        QDirIterator walk(kSource.filePath(QLatin1String(folder)), {QStringLiteral("*.md")},
            QDir::Files, QDirIterator::Subdirectories);
        while (walk.hasNext())
            found += walk.next();
    }
    return found;
}

/// The names of the test programs, and of their cases as "program::case".
QSet<QString> testNames()
{
    static const QRegularExpression testCase(
        QStringLiteral("^void (tst_\\w+::\\w+)\\("), QRegularExpression::MultilineOption);
    QSet<QString> names;
    QDirIterator walk(kSource.filePath(QStringLiteral("tests")), {QStringLiteral("tst_*.cpp")},
        QDir::Files, QDirIterator::Subdirectories);
    while (walk.hasNext()) {
        const QFileInfo source(walk.next());
        names += source.completeBaseName();
        for (const auto &match : testCase.globalMatch(textOf(source.filePath())))
            names += match.captured(1);
    }
    return names;
}

} // namespace

class tst_documents : public test::Suite
{
    Q_OBJECT

private Q_SLOTS:
    void everyLinkLeadsSomewhere();
    void deadLinksAreFound();
    void everyTestNamedIsThere();
};

void tst_documents::everyLinkLeadsSomewhere()
{
    QStringList dead;
    for (const QString &page : pages())
        dead += deadLinks(page);
    QCOMPARE(dead.join(u'\n'), QString());
}

void tst_documents::deadLinksAreFound()
{
    const QTemporaryDir folder;
    QFile page(folder.filePath(QStringLiteral("page.md")));
    QVERIFY(page.open(QIODevice::WriteOnly));
    page.write("# One `word`, two\n[a](#one-word-two) [b](page.md) [c](http://localhost/x)\n"
               "```\n# Fenced\n[d](away)\n```\n[e](away.md) [f](page.md#two)\n[g](#fenced)\n");
    page.close();
    QCOMPARE(deadLinks(page.fileName()),
        (QStringList{QStringLiteral("page.md:7: away.md"), QStringLiteral("page.md:7: page.md#two"),
            QStringLiteral("page.md:8: #fenced")}));
}

void tst_documents::everyTestNamedIsThere()
{
    static const QRegularExpression name(QStringLiteral("\\btst_\\w+(?:::\\w+)?"));
    const QSet<QString> names = testNames();
    QStringList missing;
    for (const QString &page : pages()) {
        for (const auto &match : name.globalMatch(linesOf(textOf(page)).join(u'\n'))) {
            // A name that ends in a low line stands for a family, "tst_tds_*".
            if (!match.captured().endsWith(u'_') && !names.contains(match.captured()))
                missing += QString(QFileInfo(page).fileName() + u": " + match.captured());
        }
    }
    QCOMPARE(missing.join(u'\n'), QString());
}

QTEST_GUILESS_MAIN(tst_documents)
#include "tst_documents.moc"
