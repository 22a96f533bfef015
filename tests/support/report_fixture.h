#pragma once

#include "platform/composer/page_composer.h"

namespace corvane::test {

/// A report as the program composes it, for what works on finished documents.
class ReportFixture
{
public:
    ReportFixture() { m_composer.startDocument({}); }

    ReportFixture &paragraph(const QString &text)
    {
        m_composer.writeParagraph(text);
        return *this;
    }

    /// A row of three columns, the cells separated by bars; the heading only as a running one.
    ReportFixture &row(const QString &cells, const QString &heading = {})
    {
        m_composer.addTable(u"2400|2400|2400;", heading, QString(cells + u';'), 0, 0,
            heading.isEmpty() ? TableFlow::Starts : TableFlow::Continues);
        return *this;
    }

    ReportFixture &heading(const QString &cells)
    {
        m_composer.addTable(u"2400|2400|2400;", QString(cells + u';'), {}, 0, 0, TableFlow::Starts);
        return *this;
    }

    ReportFixture &group(const QString &title)
    {
        m_composer.addOutlineEntry(title);
        return *this;
    }

    ReportFixture &newPage()
    {
        m_composer.newPage();
        return *this;
    }

    /// Mutable: links, bookmarks and depths are put in by hand.
    std::shared_ptr<Document> finish()
    {
        return std::make_shared<Document>(*m_composer.endDocument());
    }

private:
    PageComposer m_composer;
};

} // namespace corvane::test
