#include "support/workbook_reader.h"

#include "support/host_program.h"
#include "support/pdf_reader.h"

#include <QtCore/QDateTime>
#include <QtCore/QFileInfo>
#include <QtCore/QRegularExpression>
#include <QtCore/QTemporaryDir>
#include <QtCore/QUrl>
#include <QtCore/QXmlStreamReader>

namespace corvane::test {

namespace {

const QString kFailed = QStringLiteral("FAILED: ");
const QString kMidnight = QStringLiteral("T00:00:00.000");

QString digits(const QString &number)
{
    return QString::number(number.toDouble(), 'g', 15);
}

QString date(QString text)
{
    if (text.contains(u'T'))
        text = QDateTime::fromString(text.left(23), Qt::ISODateWithMs).toString(Qt::ISODateWithMs);
    return text.endsWith(kMidnight) ? text.chopped(kMidnight.size()) : text;
}

/// "PT13H30M00.5S" as "13:30:00.500".
QString clock(const QString &duration)
{
    static const QRegularExpression pattern(
        QStringLiteral("^PT(\\d+)H(\\d+)M(\\d+)(?:[.,](\\d+))?S$"));
    const auto match = pattern.match(duration);
    return QStringLiteral("%1:%2:%3.%4")
        .arg(match.captured(1), match.captured(2), match.captured(3),
            match.captured(4).left(3).leftJustified(3, u'0'));
}

/// A flat OpenDocument spreadsheet, cell by cell.
class FlatReader
{
public:
    explicit FlatReader(const QByteArray &xml)
        : m_xml(xml)
    {
    }

    ReadWorkbook read()
    {
        while (!m_xml.atEnd()) {
            if (m_xml.readNext() == QXmlStreamReader::StartElement)
                element(m_xml.name());
        }
        return m_book;
    }

private:
    QString attribute(QStringView name) const
    {
        for (const QXmlStreamAttribute &candidate : m_xml.attributes()) {
            if (candidate.qualifiedName() == name)
                return candidate.value().toString();
        }
        return {};
    }

    void element(QStringView name)
    {
        if (name == u"table") {
            m_book.sheets += attribute(u"table:name");
            m_nextRow = 0;
        } else if (name == u"table-row") {
            m_column = 0;
            m_row = m_nextRow;
            m_nextRow += std::max(1, attribute(u"table:number-rows-repeated").toInt());
        } else if (name == u"table-cell") {
            cell();
        } else if (name == u"database-range"
            && attribute(u"table:display-filter-buttons") == u"true") {
            m_book.facts += QString(u"filter " + attribute(u"table:target-range-address"));
        } else if (name == u"title" || name == u"initial-creator" || name == u"creation-date") {
            const QString property = name.toString();
            m_book.facts += QString(property + u' ' + m_xml.readElementText());
        }
    }

    void cell()
    {
        const QString type = attribute(u"office:value-type");
        const int repeated = std::max(1, attribute(u"table:number-columns-repeated").toInt());
        const QString formula = attribute(u"table:formula");
        ReadCell cell{QStringLiteral("text"), {}};
        if (formula == u"of:=TRUE()"
            || formula == u"of:=FALSE()") // how this reader keeps a stored Boolean
            cell = {QStringLiteral("boolean"),
                formula == u"of:=TRUE()" ? QStringLiteral("1") : QStringLiteral("0")};
        else if (!formula.isEmpty())
            cell = {QStringLiteral("formula"), formula};
        else if (type == u"float")
            cell = {QStringLiteral("number"), digits(attribute(u"office:value"))};
        else if (type == u"date")
            cell = {type, date(attribute(u"office:date-value"))};
        else if (type == u"time")
            cell = {type, clock(attribute(u"office:time-value"))};
        const QString text = paragraphs();
        if (type == u"string")
            cell.value = text;
        if (!type.isEmpty()) {
            for (int i = 0; i < repeated; ++i)
                m_book.cells.insert(QStringLiteral("%1!%2,%3")
                                        .arg(m_book.sheets.last())
                                        .arg(m_row)
                                        .arg(m_column + i),
                    cell);
        }
        m_column += repeated;
    }

    /// The cell's text up to its end.
    QString paragraphs()
    {
        QStringList all;
        for (int depth = 1; depth > 0 && !m_xml.atEnd();) {
            switch (m_xml.readNext()) {
            case QXmlStreamReader::StartElement:
                ++depth;
                if (m_xml.name() == u"p")
                    all += QString();
                else if (m_xml.name() == u"s")
                    all.last() += QString(std::max(1, attribute(u"text:c").toInt()), u' ');
                else if (m_xml.name() == u"tab")
                    all.last() += u'\t';
                break;
            case QXmlStreamReader::EndElement:
                --depth;
                break;
            case QXmlStreamReader::Characters:
                if (!all.isEmpty() && depth > 1)
                    all.last() += m_xml.text();
                break;
            default:
                break;
            }
        }
        return all.join(u'\n');
    }

    QXmlStreamReader m_xml;
    ReadWorkbook m_book;
    int m_row = 0;
    int m_nextRow = 0;
    int m_column = 0;
};

ReadCell xlrdCell(const QString &type, const QString &value)
{
    if (type == u"number")
        return {type, digits(value)};
    if (type == u"date")
        return {type, date(value)};
    static const QRegularExpression escape(QStringLiteral("\\\\(.)"));
    QString text;
    qsizetype from = 0;
    for (auto match = escape.globalMatch(value); match.hasNext();) {
        const auto found = match.next();
        const QString letter = found.captured(1);
        text += QStringView(value).sliced(from, found.capturedStart() - from);
        text += letter == u"n" ? QStringLiteral("\n")
            : letter == u"t"   ? QStringLiteral("\t")
                               : letter;
        from = found.capturedEnd();
    }
    return {type, text + value.sliced(from)};
}

void addXlrdLine(ReadWorkbook &book, const QStringList &parts)
{
    if (parts[0] == u"cell") {
        const QString key = QStringLiteral("%1!%2,%3").arg(parts[1], parts[2], parts[3]);
        book.cells.insert(key, xlrdCell(parts[4], parts[5]));
        book.formats.insert(key, parts[7] == u"bold" ? QString(parts[6] + u" bold") : parts[6]);
        return;
    }
    if (parts[0] == u"sheet")
        book.sheets += parts[1];
    book.facts += parts.join(u' ');
}

/// The system's own Python has the library's package; another one in the path need not.
const QString kPython = QStringLiteral("/usr/bin/python3");

QString script()
{
    return QStringLiteral(CORVANE_SOURCE_DIR "/tests/support/read_workbook.py");
}

} // namespace

QList<ReadWorkbook> readWithOfficeSuite(
    const QStringList &files, const QString &scratchFolder, QString &fault)
{
    const QString profile
        = QUrl::fromLocalFile(hostPath(scratchFolder) + QStringLiteral("/profile")).toString();
    const QString output = readerOutput(QStringLiteral("soffice"),
        QStringList{QString(u"-env:UserInstallation=" + profile), QStringLiteral("--headless"),
            QStringLiteral("--convert-to"), QStringLiteral("fods"), QStringLiteral("--outdir"),
            scratchFolder}
            + files);
    if (output.startsWith(kFailed))
        fault = output;
    QList<ReadWorkbook> books;
    for (const QString &name : files) {
        QFile file(
            scratchFolder + u'/' + QFileInfo(name).completeBaseName() + QStringLiteral(".fods"));
        if (!file.open(QIODevice::ReadOnly)) {
            fault += QString(name + u": " + file.errorString() + u'\n' + output);
            return {};
        }
        books += FlatReader(file.readAll()).read();
    }
    return books;
}

QList<ReadWorkbook> readWithXlrd(const QStringList &files, QString &fault)
{
    const QString output
        = readerOutput(kPython, QStringList{script(), QStringLiteral("cells")} + files);
    if (output.startsWith(kFailed)) {
        fault = output;
        return {};
    }
    QList<ReadWorkbook> books;
    for (const QString &line : output.split(u'\n', Qt::SkipEmptyParts)) {
        const QStringList parts = line.split(u'\t');
        if (parts[0] == u"file")
            books.emplaceBack();
        else
            addXlrdLine(books.last(), parts);
    }
    return books;
}

QByteArray containerStream(const QString &file, const QString &name, QString &fault)
{
    const QTemporaryDir folder;
    QFile copy(folder.filePath(QStringLiteral("stream")));
    const QString output
        = readerOutput(kPython, {script(), QStringLiteral("stream"), name, file, copy.fileName()});
    if (output.startsWith(kFailed) || !copy.open(QIODevice::ReadOnly))
        fault = output;
    return copy.readAll();
}

} // namespace corvane::test
