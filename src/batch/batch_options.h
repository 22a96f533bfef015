#pragma once

#include <QtCore/QDate>
#include <QtCore/QString>
#include <QtCore/QStringList>

#include <optional>
#include <variant>

namespace corvane {

enum class BatchCommand { Run, Doctor };

/// What `corvane-batch` was asked for.
struct BatchOptions {
    BatchCommand command = BatchCommand::Run;
    QString report;
    QString folder; ///< the program folder
    QString user;
    bool passwordFromInput = false;
    bool recSrcTrue = false;
    QString patient; ///< id; empty: none named
    std::optional<QDate> from;
    std::optional<QDate> to;
    std::optional<QDate> date1; ///< answers to a date token
    std::optional<QDate> date2;
    QStringList select; ///< hidden values chosen from a selection's list
    bool selectAll = false;
    QString pdfFile;
    QString textFile;
    bool timings = false;
};

struct UsageFault {
    QString words;
    bool helpAsked = false;
};

/// @param dateOrder how dates other than yyyy-mm-dd are read.
std::variant<BatchOptions, UsageFault> parseBatchOptions(const QStringList &arguments, int dateOrder);

QString batchUsage();

} // namespace corvane
