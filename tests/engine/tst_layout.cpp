#include "engine/layout_fixture.h"
#include "support/document_dump.h"
#include "support/suite.h"

#include <QtTest/QtTest>

using namespace corvane;
using test::LayoutFixture;
using test::numberedRows;

class tst_layout : public test::Suite
{
    Q_OBJECT

private Q_SLOTS:
    void showsSectionsInTheirOrder();
};

void tst_layout::showsSectionsInTheirOrder()
{
    LayoutFixture fixture;
    const RenderResult result = fixture.render(QStringLiteral(R"xml(
        <Groups><Group name="g" on="[g]" sort="descending"/></Groups>
        <Section kind="report-header" height="0.2in"><Label text="Report" width="1in" height="0.2in"/></Section>
        <Section kind="page-header" height="0.2in"><Label text="Top" width="1in" height="0.2in"/></Section>
        <Section kind="group-header" group="g" height="0.2in"><Expression value="'Group ' &amp; [g] &amp; ' of ' &amp; Sum([n])" width="2in" height="0.2in"/></Section>
        <Section kind="detail" height="0.2in"><Data column="n" width="1in" height="0.2in"/><Data column="g" x="1in" width="1in" height="0.2in" align="right"/></Section>
        <Section kind="group-footer" group="g" height="0.2in"><Expression value="Sum([n])" width="2in" height="0.2in"/></Section>
        <Section kind="page-footer" height="0.2in"><Expression value="PageNumber &amp; '/' &amp; PageCount" width="1in" height="0.2in"/></Section>
        <Section kind="report-footer" height="0.2in"><Expression value="Avg([n])" width="1in" height="0.2in"/></Section>)xml"),
        numberedRows(4, 2));
    qDebug().noquote() << test::dump(*result.document).join(u'\n');
    qDebug().noquote() << documentText(*result.document);
}

QTEST_MAIN(tst_layout)
#include "tst_layout.moc"
