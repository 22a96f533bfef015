#include "demo/clinic_folder.h"

#include <QtCore/QCommandLineParser>
#include <QtCore/QCoreApplication>
#include <QtCore/QTextStream>

#include <cstdio>
#include <new>
#include <optional>

using namespace corvane;

namespace {

constexpr int kDone = 0;
constexpr int kFailed = 1;
constexpr int kUsage = 2;

constexpr int kDefaultPatients = 5'000;
constexpr int kMostPatients = 50'000; // 600,000 appointments; put together in memory

struct Order
{
    QString folder;
    int patients = kDefaultPatients;
    bool asScript = false;
};

void say(FILE *stream, const QString &text)
{
    QTextStream(stream) << text << Qt::endl;
}

void describe(QCommandLineParser &parser)
{
    parser.setApplicationDescription(QStringLiteral(
        "Writes a made-up clinic into a folder: corvane.ini, the databases in Data, the reports in "
        "Reports."));
    parser.addOption(
        {{QStringLiteral("h"), QStringLiteral("help")}, QStringLiteral("Shows this help.")});
    parser.addOption({QStringLiteral("patients"),
        QStringLiteral("Number of patients, 1 to %1; default %2. Each has twelve appointments.")
            .arg(kMostPatients)
            .arg(kDefaultPatients),
        QStringLiteral("N")});
    parser.addOption({QStringLiteral("sql"),
        QStringLiteral("Writes clinic.sql alone: the databases as statements for SQL Server.")});
    parser.addPositionalArgument(QStringLiteral("DIR"),
        QStringLiteral("The folder, made when missing."), QStringLiteral("DIR"));
}

/// The order, or the sentence that says what is wrong with the arguments.
std::optional<Order> read(const QCommandLineParser &parser, QString &fault)
{
    const QStringList places = parser.positionalArguments();
    if (places.size() != 1 || places.first().isEmpty()) {
        fault = QStringLiteral("Name one folder to write the clinic into.");
        return std::nullopt;
    }
    Order order{places.first()};
    order.asScript = parser.isSet(QStringLiteral("sql"));
    if (!parser.isSet(QStringLiteral("patients")))
        return order;
    bool isNumber = false;
    order.patients = parser.value(QStringLiteral("patients")).toInt(&isNumber);
    if (isNumber && order.patients >= 1 && order.patients <= kMostPatients)
        return order;
    fault = QStringLiteral("--patients takes a whole number from 1 to %1.").arg(kMostPatients);
    return std::nullopt;
}

int write(const Order &order)
{
    try {
        const auto writeOrder = order.asScript ? demo::writeClinicScript : demo::writeClinicFolder;
        writeOrder(order.folder, order.patients);
    } catch (const demo::FolderError &error) {
        say(stderr, u"corvane-demo-clinic: " + error.sentence());
        return kFailed;
    } catch (const std::bad_alloc &) {
        say(stderr,
            QStringLiteral(
                "corvane-demo-clinic: The memory does not suffice. Ask for fewer patients."));
        return kFailed;
    } catch (const std::exception &error) {
        say(stderr,
            QStringLiteral(
                "corvane-demo-clinic: The clinic could not be put together: %1. Nothing was "
                "written; please report this.")
                .arg(QString::fromUtf8(error.what())));
        return kFailed;
    }
    return kDone;
}

} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("corvane-demo-clinic"));
    QCommandLineParser parser;
    describe(parser);
    const bool parsed = parser.parse(QCoreApplication::arguments());
    if (parsed && parser.isSet(QStringLiteral("help"))) {
        say(stdout, parser.helpText());
        return kDone;
    }
    QString fault = parsed ? QString() : parser.errorText() + u'.';
    const std::optional<Order> order = parsed ? read(parser, fault) : std::nullopt;
    if (!order) {
        say(stderr, u"corvane-demo-clinic: " + fault + u"\n\n" + parser.helpText());
        return kUsage;
    }
    return write(*order);
}
