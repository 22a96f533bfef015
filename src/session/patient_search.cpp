#include "session/patient_search.h"

#include "platform/database/error.h"
#include "shared/lists.h"
#include "shared/reportr.h"

#include <array>

namespace corvane {

namespace {

struct Mode {
    QLatin1StringView column;
    QLatin1StringView fullOrder;
    QLatin1StringView restrictedOrder;
};

constexpr std::array<Mode, kPatientSearchModes> kModes {{
    // Deliberate: the restricted orders lack the middle initial, and the statements differ in their
    // capitals; database administrators know both texts from their traces.
    {QLatin1StringView("last_name"), QLatin1StringView("last_name, first_name, middle_init"), QLatin1StringView("last_name, first_name")},
    {QLatin1StringView("first_name"), QLatin1StringView("first_name, last_name, middle_init"), QLatin1StringView("first_name, last_name")},
    {QLatin1StringView("acctnbr"), QLatin1StringView("acctnbr"), QLatin1StringView("acctnbr")},
    {QLatin1StringView("ssn"), QLatin1StringView("ssn"), QLatin1StringView("ssn")},
}};

QString fullQuery(const Mode &mode, const QString &text)
{
    return u"Select id, last_name, first_name, middle_init, acctnbr, ssn from patient_info Where " + mode.column
        + u" Like '" + text + u"%' Order by " + mode.fullOrder;
}

QString restrictedQuery(const Mode &mode, const QString &text, const QString &userId)
{
    const QString condition = u"' AND " + mode.column + u" Like '" + text;
    return u"SELECT id, last_name, first_name, middle_init, acctnbr, ssn "
           u"From patient_info, incident_hx, patientaccess "
           u"WHERE patient_info.id = incident_hx.patient_id AND patient_info.id = patientaccess.patientid AND "
           u"patientaccess.patientid = incident_hx.patient_id AND patient_info.incident_nbr = incident_hx.incident_nbr AND "
           u"patientaccess.providerid = '"
        + userId + condition
        + u"%' UNION Select id, last_name, first_name, middle_init, acctnbr, ssn from patient_info, incident_hx "
          u"Where patient_info.id = incident_hx.patient_id AND patient_info.provider_id = '"
        + userId + condition + u"%' Order by " + mode.restrictedOrder;
}

int fieldOf(const Rowset &rows, QStringView name)
{
    const int field = rows.fieldIndex(name);
    if (field < 0)
        throw DatabaseError(3265, QStringLiteral("The patient query returns no column \"%1\".").arg(name));
    return field;
}

bool isNumber(QStringView text)
{
    return !text.isEmpty() && std::ranges::all_of(text, [](QChar c) { return c >= u'0' && c <= u'9'; });
}

} // namespace

std::optional<QString> patientQuery(int mode, const QString &text, qint16 accessType, const QString &userId)
{
    if (mode < 0 || mode >= kPatientSearchModes)
        return std::nullopt;
    const QString escaped = replaceEvery(text, u"'", u"''");
    const Mode &chosen = kModes[size_t(mode)];
    return accessType >= 1 ? fullQuery(chosen, escaped) : restrictedQuery(chosen, escaped, userId);
}

QString socialSecurityText(const QString &stored)
{
    const QString trimmed = stored.trimmed();
    if (!isNumber(trimmed))
        return stored;
    const QString digits = trimmed.rightJustified(9, u'0');
    return digits.chopped(6) + u'-' + digits.sliced(digits.size() - 6, 2) + u'-' + digits.last(4);
}

PatientReader::PatientReader(RowsetPtr rows)
    : m_rows(std::move(rows))
    , m_id(fieldOf(*m_rows, u"id"))
    , m_lastName(fieldOf(*m_rows, u"last_name"))
    , m_firstName(fieldOf(*m_rows, u"first_name"))
    , m_middleInitial(fieldOf(*m_rows, u"middle_init"))
    , m_account(fieldOf(*m_rows, u"acctnbr"))
    , m_ssn(fieldOf(*m_rows, u"ssn"))
{
}

const PatientRow &PatientReader::read(qsizetype row)
{
    const ValueTextStyle style;
    const auto read = [&](QString &text, int field) {
        text.resize(0);
        appendValueText(text, m_rows->value(row, field), style);
    };
    read(m_row.id, m_id);
    read(m_row.account, m_account);
    read(m_row.name, m_lastName);
    m_row.name += QLatin1StringView(", ");
    appendValueText(m_row.name, m_rows->value(row, m_firstName), style);
    read(m_text, m_middleInitial);
    if (!m_text.isEmpty()) {
        m_row.name += u' ';
        m_row.name += m_text;
        m_row.name += u'.';
    }
    read(m_text, m_ssn);
    m_row.ssn = m_text.trimmed().isEmpty() ? QString() : socialSecurityText(m_text);
    return m_row;
}

RowsetPtr PatientDatabase::open(const QString &query)
{
    if (m_state.gConn && m_state.gConn->connectionText() == m_state.gConnectString) {
        RowsetPtr rows = m_state.gConn->openRowset(query);
        m_state.gConn->forgetResult();
        return rows;
    }
    if (!m_own)
        m_own = Connection::open(m_state.gConnectString, m_state.drivers(m_state.gConnectString));
    RowsetPtr rows = m_own->openRowset(query);
    m_own->forgetResult();
    return rows;
}

bool choosePatient(Reportr &state, const QString &id)
{
    PatientDatabase database(state);
    for (int mode = 0; mode < kPatientSearchModes; ++mode) {
        PatientReader reader(database.open(*patientQuery(mode, {}, state.gAccessType, state.gUserID)));
        for (qsizetype row = 0; row < reader.count(); ++row) {
            const PatientRow &patient = reader.read(row);
            if (patient.id == id) {
                state.gPatientID = patient.id;
                state.gPatientText = patient.name;
                return true;
            }
        }
    }
    return false;
}

} // namespace corvane
