#include "batch/batch_options.h"

#include "platform/dates/date_text.h"

#include <QtCore/QCommandLineParser>
#include <QtCore/QFileInfo>

namespace corvane {

namespace {

const QString kRun = QStringLiteral("run");
const QString kDoctor = QStringLiteral("doctor");
const QString kRecSrcTrue = QStringLiteral("RecSrcTrue");

void addOptions(QCommandLineParser &parser)
{
    const auto add = [&](const char16_t *name, const char16_t *value) {
        QCommandLineOption option(QString::fromUtf16(name));
        if (value)
            option.setValueName(QString::fromUtf16(value));
        parser.addOption(option);
    };
    add(u"folder", u"DIR");
    add(u"user", u"ID");
    add(u"password-stdin", nullptr);
    add(u"patient", u"ID");
    add(u"from", u"DATE");
    add(u"to", u"DATE");
    add(u"date1", u"DATE");
    add(u"date2", u"DATE");
    add(u"select", u"VALUE");
    add(u"select-all", nullptr);
    add(u"param", u"NAME=VALUE");
    add(u"pdf", u"FILE");
    add(u"tagged", nullptr);
    add(u"xls", u"FILE");
    add(u"text", u"FILE");
    add(u"print", u"QUEUE");
    add(u"timings", nullptr);
    add(u"help", nullptr);
}

/// Fills the option from the command line; a sentence when it is no date.
QString readDate(const QCommandLineParser &parser, const QString &name, int dateOrder, std::optional<QDate> &date)
{
    if (!parser.isSet(name))
        return {};
    const QString text = parser.value(name);
    date = readDate(text, dateOrderOf(dateOrder));
    return date ? QString() : QStringLiteral("--%1 \"%2\" is no date; write it as yyyy-mm-dd.").arg(name, text);
}

/// A sentence when two outputs would overwrite each other.
QString sameFileFault(const BatchOptions &options)
{
    QHash<QString, QString> optionOf;
    for (const auto &[option, file] : {std::pair(QStringLiteral("--pdf"), options.pdfFile),
             {QStringLiteral("--xls"), options.xlsFile}, {QStringLiteral("--text"), options.textFile}}) {
        if (file.isEmpty())
            continue;
        QString &first = optionOf[QFileInfo(file).absoluteFilePath()];
        if (!first.isEmpty())
            return QStringLiteral("%1 and %2 name the same file.").arg(first, option);
        first = option;
    }
    return {};
}

} // namespace

std::variant<BatchOptions, UsageFault> parseBatchOptions(const QStringList &arguments, int dateOrder)
{
    QCommandLineParser parser;
    addOptions(parser);
    if (!parser.parse(arguments))
        return UsageFault {parser.errorText() + u'.'};
    if (parser.isSet(QStringLiteral("help")))
        return UsageFault {{}, true};
    QStringList words = parser.positionalArguments();
    BatchOptions options;
    options.recSrcTrue = words.removeAll(kRecSrcTrue) > 0;
    options.folder = parser.value(QStringLiteral("folder"));
    if (words.value(0) == kDoctor) {
        options.command = BatchCommand::Doctor;
        const bool folderAlone = parser.optionNames() == (parser.isSet(QStringLiteral("folder")) ? QStringList(QStringLiteral("folder")) : QStringList());
        if (words.size() != 1 || !folderAlone)
            return UsageFault {QStringLiteral("\"doctor\" takes --folder DIR and nothing else.")};
        return options;
    }
    if (words.value(0) != kRun)
        return UsageFault {words.isEmpty() ? QStringLiteral("The command is missing.")
                                           : QStringLiteral("\"%1\" is no command of this version.").arg(words[0])};
    if (words.size() != 2)
        return UsageFault {QStringLiteral("Name one report to run.")};
    options.report = words[1];
    options.user = parser.value(QStringLiteral("user"));
    options.patient = parser.value(QStringLiteral("patient"));
    options.passwordFromInput = parser.isSet(QStringLiteral("password-stdin"));
    options.pdfFile = parser.value(QStringLiteral("pdf"));
    options.tagged = parser.isSet(QStringLiteral("tagged"));
    options.xlsFile = parser.value(QStringLiteral("xls"));
    options.textFile = parser.value(QStringLiteral("text"));
    options.printQueue = parser.value(QStringLiteral("print"));
    options.timings = parser.isSet(QStringLiteral("timings"));
    if (options.user.isEmpty())
        return UsageFault {QStringLiteral("--user ID is missing.")};
    if (options.tagged && options.pdfFile.isEmpty())
        return UsageFault {QStringLiteral("--tagged needs --pdf FILE.")};
    if (const QString fault = sameFileFault(options); !fault.isEmpty())
        return UsageFault {fault};
    options.select = parser.values(QStringLiteral("select"));
    options.selectAll = parser.isSet(QStringLiteral("select-all"));
    if (options.selectAll && !options.select.isEmpty())
        return UsageFault {QStringLiteral("--select and --select-all exclude each other.")};
    for (const QString &param : parser.values(QStringLiteral("param"))) {
        const qsizetype equals = param.indexOf(u'=');
        if (equals < 1)
            return UsageFault {QStringLiteral("--param \"%1\" must be written NAME=VALUE.").arg(param)};
        options.params.emplace_back(param.first(equals).trimmed(), param.sliced(equals + 1));
    }
    for (const auto &[name, date] : {std::pair(QStringLiteral("from"), &options.from), {QStringLiteral("to"), &options.to},
             {QStringLiteral("date1"), &options.date1}, {QStringLiteral("date2"), &options.date2}}) {
        if (const QString fault = readDate(parser, name, dateOrder, *date); !fault.isEmpty())
            return UsageFault {fault};
    }
    return options;
}

QString batchUsage()
{
    return QStringLiteral(
        "corvane-batch run REPORT [--folder DIR] --user ID [--password-stdin] [RecSrcTrue]\n"
        "    [--from DATE] [--to DATE] [--patient ID]\n"
        "    [--date1 DATE] [--date2 DATE] [--select VALUE]... | --select-all\n"
        "    [--param NAME=VALUE]...\n"
        "    [--pdf FILE [--tagged]] [--xls FILE] [--text FILE] [--print QUEUE] [--timings]\n"
        "corvane-batch check REPORT... [--folder DIR] [--user ID [--password-stdin]]\n"
        "corvane-batch doctor [--folder DIR]\n"
        "\n"
        "REPORT     a name from the list of reports, or a path to a report file\n"
        "--folder   the program folder, which holds corvane.ini; default: the program's own\n"
        "--user     the user to log on; the password comes from standard input with\n"
        "           --password-stdin, else from the variable CORVANE_PASSWORD\n"
        "RecSrcTrue  a designed report's PARAMETERS clause is asked for (--param)\n"
        "--from --to  the date range, yyyy-mm-dd or the system's short form; default: today\n"
        "--patient  the patient's id, for a report that asks for one\n"
        "--date1 --date2 --select --select-all  answers to a report's own date and\n"
        "           selection questions; default of the dates: the report's own\n"
        "--param    the value of a report's own parameter; default: the report's own\n"
        "--pdf --xls --text  the files to write: PDF, Excel workbook, plain text\n"
        "--tagged   the PDF has tags for screen readers however long it is\n"
        "--print    the printer to print on\n"
        "--timings  one line with the stages' times on standard error\n"
        "\n"
        "check      says what is wrong with report definitions; check --help tells more\n"
        "doctor     tries the connections of corvane.ini step by step and prints each\n"
        "\n"
        "Exit status: 0 done, 1 the report failed, 2 usage or a missing answer,\n"
        "3 logon, rights or patient refused, 4 no corvane.ini or no connection.\n");
}

} // namespace corvane
