#include "platform/database/connection.h"
#include "platform/database/error.h"
#include "support/demo_folder.h"
#include "support/suite.h"
#include "support/tds/embedded_answers.h"
#include "support/tds/server.h"

#include <QtTest/QtTest>

using namespace corvane;
using namespace corvane::test;

class tst_tds_answers : public test::Suite
{
    Q_OBJECT

private Q_SLOTS:
    void first()
    {
        DemoFolder demo(20);
        tds::ServerSettings settings;
        settings.open = tds::embeddedAnswers(demo.path());
        tds::Server server(settings);
        try {
            const auto connection = Connection::open(QString(u"Provider=SQLOLEDB;Data Source=" + server.address()
                    + u";Initial Catalog=Clinic;User Id=demo;Password=demo; "), {});
            const auto rowset = connection->openRowset(QStringLiteral("SELECT * FROM Clinic.dbo.providers"));
            qInfo() << rowset->rowCount() << rowset->fieldNames();
        } catch (const DatabaseError &error) {
            qInfo() << error.number() << error.description();
        }
        qInfo() << server.refused() << server.statements();
    }
};

QTEST_GUILESS_MAIN(tst_tds_answers)
#include "tst_tds_answers.moc"
