#include "session/logon.h"

#include "platform/database/error.h"
#include "shared/lists.h"
#include "shared/numbers.h"
#include "shared/reportr.h"
#include "shared/run_time_fault.h"
#include "shared/scramble.h"

#include <algorithm>

namespace corvane {

namespace {

constexpr qsizetype kReporterDigit = 7; // the 8th character
constexpr int kLeastAccess = 2;

void refuse(MessageBoxes &boxes, const QString &text)
{
    boxes.message(text, MessageFlags::Exclamation, QStringLiteral("Corvane"));
}

QString fieldText(const Rowset &rows, QStringView name)
{
    const int field = rows.fieldIndex(name);
    if (field < 0)
        throw DatabaseError(3265, QStringLiteral("The passwords table has no column \"%1\".").arg(name));
    return valueText(rows.value(0, field), {});
}

/// The rows of the user, or nothing; a text that the boxes would not let in matches nobody.
RowsetPtr findUser(Reportr &state, const QString &userId, const QString &password)
{
    if (userId.isEmpty() || password.isEmpty() || !passesKeyFilter(userId) || !passesKeyFilter(password))
        return nullptr;
    RowsetPtr rows = state.gConn->openRowset(logonQuery(userId, password));
    state.gConn->forgetResult();
    return rows->rowCount() > 0 ? rows : nullptr;
}

bool checkLogon(Reportr &state, MessageBoxes &boxes, const QString &userId, const QString &password)
{
    const RowsetPtr rows = findUser(state, userId, password);
    if (!rows) {
        refuse(boxes, QStringLiteral("Invalid UID or Password. Try again."));
        return false;
    }
    if (reporterAccess(fieldText(*rows, u"pswd_screen_access")) < kLeastAccess) {
        refuse(boxes, QStringLiteral("You do not have access rights to the Reporter. Try another logon or Exit."));
        return false;
    }
    state.gAccessType = toInt16(leadingNumber(fieldText(*rows, u"pswd_type_of_access")));
    state.gUserID = userId;
    state.loggedOn = true;
    return true;
}

} // namespace

bool passesKeyFilter(QStringView text)
{
    return std::ranges::all_of(text, [](QChar c) { return passesKeyFilter(c.unicode()); });
}

QString GetDBSettings(Reportr &state)
{
    QString notice;
    try {
        const RowsetPtr rows = state.gConn->openRowset(QStringLiteral("Select * from settings"));
        const int field = rows->fieldIndex(u"Notice");
        if (rows->rowCount() > 0 && field >= 0)
            notice = valueText(rows->value(0, field), {});
        state.gConn->forgetResult();
    } catch (const DatabaseError &) {
        notice.clear(); // a database without the table keeps the built-in notice
    }
    return notice.isEmpty() ? QString(kBuiltInNotice) : notice;
}

QString logonQuery(const QString &userId, const QString &password)
{
    return u"Select * from passwords Where pswd_user_id = '" + userId + u"' AND pswd_password = '"
        + replaceEvery(scramblePW(password), u"'", u"''") + u"'";
}

int reporterAccess(QStringView screenAccess)
{
    if (screenAccess.size() <= kReporterDigit)
        return 0;
    const char16_t digit = screenAccess[kReporterDigit].unicode();
    return digit >= u'0' && digit <= u'9' ? digit - u'0' : 0;
}

bool logOn(Reportr &state, MessageBoxes &boxes, const QString &userId, const QString &password)
{
    const auto show = [&](int number, const QString &description, FailureCause cause = {}) {
        boxes.message(QStringLiteral("Error checking password! %1, %2").arg(number).arg(description),
            MessageFlags::OkOnly, {});
        if (const QString advice = state.advice(cause, state.gConnectString); !advice.isEmpty())
            boxes.message(advice, MessageFlags::Information, QStringLiteral("Corvane"));
        return false;
    };
    try {
        return checkLogon(state, boxes, userId, password);
    } catch (const DatabaseError &error) {
        return show(error.number(), error.description(), error.cause());
    } catch (const RunTimeFault &fault) {
        return show(fault.number(), fault.description());
    }
}

} // namespace corvane
