#include "include_rules.h"

#include <QtCore/QDir>
#include <QtCore/QDirIterator>
#include <QtCore/QFile>
#include <QtCore/QRegularExpression>

namespace corvane::test {

namespace {

QStringList names(const QString &cell)
{
    static const QRegularExpression quoted(QStringLiteral("`([^`]+)`"));
    QStringList found;
    for (auto match = quoted.globalMatch(cell); match.hasNext();)
        found += match.next().captured(1);
    return found;
}

/// The rows below a table's heading row, as first and second cell.
QList<std::pair<QStringList, QStringList>> tableRows(const QString &markdown, const QString &heading)
{
    QList<std::pair<QStringList, QStringList>> rows;
    bool inside = false;
    for (const QString &line : markdown.split(u'\n')) {
        if (!inside) {
            inside = line.trimmed() == heading;
            continue;
        }
        const QStringList cells = line.split(u'|');
        if (cells.size() < 3)
            break;
        if (const QStringList first = names(cells[1]); !first.isEmpty())
            rows.push_back({first, names(cells[2])});
    }
    return rows;
}

class Checker
{
public:
    Checker(const IncludeRules &rules, const QString &root)
        : m_rules(rules)
        , m_root(root)
    {
    }

    QStringList run()
    {
        for (const QString &top : {QStringLiteral("src"), QStringLiteral("demo"), QStringLiteral("bench")}) {
            QStringList files;
            QDirIterator walk(m_root.filePath(top), {QStringLiteral("*.h"), QStringLiteral("*.cpp")}, QDir::Files,
                QDirIterator::Subdirectories);
            while (walk.hasNext())
                files += m_root.relativeFilePath(walk.next());
            files.sort();
            for (const QString &file : files)
                check(file);
        }
        return m_faults;
    }

private:
    void check(const QString &file)
    {
        m_file = file;
        m_line = 1;
        m_folder = file.section(u'/', 0, -2);
        if (m_folder.startsWith(u"src/"))
            m_folder.remove(0, 4);
        if (!m_rules.folders.contains(m_folder))
            return fault(QStringLiteral("the folder \"%1\" has no row in the table").arg(m_folder));
        QFile source(m_root.filePath(file));
        if (!source.open(QIODevice::ReadOnly))
            return fault(source.errorString());
        const QStringList lines = QString::fromUtf8(source.readAll()).split(u'\n');
        if (file.endsWith(u".h") && lines.front().trimmed() != u"#pragma once")
            fault(QStringLiteral("a header starts with #pragma once"));
        static const QRegularExpression include(QStringLiteral("^\\s*#\\s*include\\s*([<\"])([^>\"]+)"));
        for (const QString &line : lines) {
            if (const auto match = include.match(line); match.hasMatch())
                checkInclude(match.captured(2), match.captured(1) == u"<");
            ++m_line;
        }
    }

    void checkInclude(const QString &path, bool isSystem)
    {
        for (auto library = m_rules.libraries.cbegin(); library != m_rules.libraries.cend(); ++library) {
            if (path.startsWith(library.key()) && !library.value().contains(m_folder))
                fault(QStringLiteral("<%1> may not be included in \"%2\"").arg(path, m_folder));
        }
        // Without its module a Qt header would slip past the table.
        if (isSystem && path.startsWith(u'Q') && !path.contains(u'/'))
            fault(QStringLiteral("<%1> is written without its module").arg(path));
        const QString folder = path.section(u'/', 0, -2);
        const bool isOurs = !folder.isEmpty() && (!isSystem || m_rules.folders.contains(folder));
        if (isOurs && folder != m_folder && !m_rules.folders[m_folder].contains(folder))
            fault(QStringLiteral("\"%1\" may not include \"%2\"").arg(m_folder, path));
    }

    void fault(const QString &why) { m_faults += QStringLiteral("%1:%2: %3").arg(m_file).arg(m_line).arg(why); }

    const IncludeRules &m_rules;
    QDir m_root;
    QString m_file;
    QString m_folder;
    int m_line = 0;
    QStringList m_faults;
};

/// Everything below a folder, however far.
QSet<QString> reached(const IncludeRules &rules, const QString &from)
{
    QSet<QString> all;
    QStringList open(from);
    while (!open.isEmpty()) {
        for (const QString &next : rules.folders.value(open.takeLast())) {
            if (all.contains(next))
                continue;
            all += next;
            open += next;
        }
    }
    return all;
}

} // namespace

IncludeRules readIncludeRules(const QString &markdown)
{
    IncludeRules rules;
    for (const auto &[folders, allowed] : tableRows(markdown, QStringLiteral("| folder | may include |"))) {
        for (const QString &folder : folders)
            rules.folders[folder].unite(QSet<QString>(allowed.begin(), allowed.end()));
    }
    for (const auto &[starts, folders] : tableRows(markdown, QStringLiteral("| headers | only in |"))) {
        for (const QString &start : starts)
            rules.libraries[start].unite(QSet<QString>(folders.begin(), folders.end()));
    }
    return rules;
}

QStringList includeFaults(const IncludeRules &rules, const QString &root)
{
    return Checker(rules, root).run();
}

QStringList circles(const IncludeRules &rules)
{
    QStringList faults;
    for (const QString &folder : rules.folders.keys()) {
        if (reached(rules, folder).contains(folder))
            faults += QStringLiteral("\"%1\" reaches itself").arg(folder);
    }
    return faults;
}

} // namespace corvane::test
