#pragma once

#include "platform/database/connection.h"

#include <QtCore/QString>

#include <memory>
#include <optional>

namespace corvane {

struct Reportr;

/// What a patient is searched by, in the order of the search box.
enum PatientSearchMode { ByLastName, ByFirstName, ByAccountNumber, BySocialSecurityNumber };
inline constexpr int kPatientSearchModes = 4;

/// The query for patients whose value starts with `text`: quotes are doubled, "%" and "_" keep their LIKE
/// meaning. An access type below 1 sees only the patients linked to `userId`, which stands in the query as
/// typed: the logon's key filter keeps quotes out of it. Empty for a mode that is none.
std::optional<QString> patientQuery(int mode, const QString &text, qint16 accessType, const QString &userId);

/// One row of the patient list; each text is empty for a null.
struct PatientRow {
    QString id;
    QString name; ///< "O'Neill, Ann Q."
    QString account;
    QString ssn; ///< "012-34-5678"
};

/// Reads the rows of a patient query one by one into a row that is reused.
class PatientReader
{
public:
    /// @throws DatabaseError when the rowset lacks one of the columns
    explicit PatientReader(RowsetPtr rows);

    qsizetype count() const { return m_rows->rowCount(); }
    const PatientRow &read(qsizetype row);

private:
    RowsetPtr m_rows;
    int m_id, m_lastName, m_firstName, m_middleInitial, m_account, m_ssn;
    PatientRow m_row;
    QString m_text;
};

/// A number with at least nine digits, joined by hyphens as 000-00-0000; anything else as stored.
QString socialSecurityText(const QString &stored);

/// The main database, which patients are always searched in: the open connection where that is the main
/// one, else one of its own.
class PatientDatabase
{
public:
    explicit PatientDatabase(Reportr &state)
        : m_state(state)
    {
    }

    /// @throws DatabaseError
    RowsetPtr open(const QString &query);

private:
    Reportr &m_state;
    std::unique_ptr<Connection> m_own;
};

/// Chooses the patient of that id for the reports to come, if any of the four searches would show it to
/// the user; false and nothing chosen otherwise. @throws DatabaseError
bool choosePatient(Reportr &state, const QString &id);

} // namespace corvane
