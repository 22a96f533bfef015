#include "platform/engine/report_control.h"

#include "platform/engine/layout_reader.h"

namespace corvane {

QStringList ReportControl::layoutNames(const QString &fileName)
{
    const ReportSource source = ReportSource::read(fileName);
    const QStringList names = readReportNames(source);
    if (names.isEmpty()) {
        const XmlElement root = readXmlTree(source); // says why, when it is malformed
        source.fail(root.offset, QStringLiteral("The file holds no <Report> with a \"name\"."));
    }
    return names;
}

void ReportControl::load(const QString &fileName, const QString &layoutName)
{
    clear();
    const ReportSource source = ReportSource::read(fileName);
    m_layout = readLayout(source, readXmlTree(source), layoutName);
    m_fileName = fileName;
    m_dataSource.recordSource = m_layout->recordSource;
}

void ReportControl::clear()
{
    m_layout.reset();
    m_dataSource = {};
    m_fileName.clear();
}

} // namespace corvane
