#pragma once

#include "platform/dates/date_text.h"
#include "definitions/parameter_dialogs.h"
#include "shared/report_host.h"

#include <QtCore/QStringList>

#include <array>
#include <functional>

namespace corvane::test {

/// A run's surroundings that remember what the run did to them.
class RecordingHost : public ReportHost, public ParameterDialogs
{
public:
    MessageAnswer message(const QString &text, int flags, const QString &title) override
    {
        messages += QStringLiteral("%1|%2|%3").arg(title).arg(flags).arg(text);
        return MessageAnswer::Ok;
    }
    void enableButton(int index, bool enabled) override { buttons[size_t(index)] = enabled; }
    void enableMenu(ReportMenu menu, bool enabled) override { menus[size_t(menu)] = enabled; }
    void showHourglass(bool on) override { hourglass = on; }
    void showProgress(int percent) override
    {
        progress = percent;
        if (onProgress)
            onProgress(percent);
    }
    bool stopRequested() override { return stop; }
    DateEntry dateFrom() const override { return from; }
    DateEntry dateTo() const override { return to; }
    void setDates(QDate first, QDate last) override
    {
        from = {dateText(first, DateOrder::MonthDayYear), first};
        to = {dateText(last, DateOrder::MonthDayYear), last};
        bDatesChanged = true;
    }
    void resetDates() override { setDates(today, today); }
    QDateTime now() const override { return QDateTime(today, QTime(8, 5)); }
    void askDateRange(ReportHost &) override
    {
        ++rangeAsked;
        if (answerRange)
            answerRange();
    }

    void askPatient() override
    {
        ++patientAsked;
        if (answerPatient)
            answerPatient();
    }

    std::optional<DateAnswers> askDates(const QString &request) override
    {
        asked += QString(u"dates " + request);
        return answerDates;
    }
    std::optional<SelectionAnswers> askSelection(const QString &request) override
    {
        asked += QString(u"selection " + request);
        return answerSelection ? answerSelection(request) : std::nullopt;
    }
    std::optional<ParameterAnswers> askParameters(const ParametersClause &clause) override
    {
        for (const QueryParameter &parameter : clause.parameters)
            asked += QString(u"parameter " + parameter.name);
        return answerParameters;
    }

    /// Which of the seven buttons are on, as in "0 2 5".
    QString buttonsOn() const
    {
        QStringList on;
        for (size_t i = 0; i < buttons.size(); ++i) {
            if (buttons[i])
                on += QString::number(i);
        }
        return on.join(u' ');
    }
    bool menu(ReportMenu item) const { return menus[size_t(item)]; }

    QDate today {2026, 11, 2};
    DateEntry from {QStringLiteral("11/02/2026"), today};
    DateEntry to {QStringLiteral("11/02/2026"), today};
    QStringList messages;
    std::array<bool, kToolButtonCount> buttons {};
    std::array<bool, 3> menus {};
    bool hourglass = false;
    bool stop = false;
    int progress = -1;
    int rangeAsked = 0;
    int patientAsked = 0;
    QStringList asked; ///< what the later dialogs were asked with
    std::optional<DateAnswers> answerDates;
    std::function<std::optional<SelectionAnswers>(const QString &)> answerSelection;
    std::optional<ParameterAnswers> answerParameters;
    std::function<void(int)> onProgress;
    std::function<void()> answerRange;
    std::function<void()> answerPatient;
};

} // namespace corvane::test
