#pragma once

#include "platform/composer/document.h"
#include "platform/database/connection.h"
#include "platform/engine/report_layout.h"

#include <QtCore/QStringList>

#include <functional>
#include <map>
#include <stdexcept>

namespace corvane {

/// A designed report that cannot be read or laid out; the words say what, where (file, line, column) and
/// what would be right.
class ReportError : public std::runtime_error
{
public:
    explicit ReportError(const QString &description)
        : std::runtime_error(description.toStdString())
        , m_description(description)
        , m_sentence(description)
    {
    }
    /// A sentence about a place in a file, which the description names before it.
    ReportError(const QString &where, FilePlace place, const QString &sentence)
        : ReportError(QString(where + sentence))
    {
        m_place = place;
        m_sentence = sentence;
    }
    const QString &description() const { return m_description; }

    /// Line 0 when the error has no place in a file.
    FilePlace place() const { return m_place; }
    /// The description without the file and the place.
    const QString &sentence() const { return m_sentence; }

private:
    QString m_description;
    QString m_sentence;
    FilePlace m_place;
};

/// Where a layout's rows come from.
struct DataSource {
    QString connectionString;
    QString recordSource;
};

/// What a layout is filled with beside its rows.
struct RenderSettings {
    DocumentInfo info;
    QString database; ///< name of the database, for expressions
    std::map<QString, Datum> parameters; ///< by lower-case name
    ValueTextStyle style;
    Connection *connection = nullptr; ///< used where it is open on the data source's text; else one is opened
    DriverSettings drivers;
    /// Called for each row that is sorted, totalled or laid out, sub-reports' rows included, and for each page;
    /// false: the run is to stop. May be empty.
    std::function<bool(int percent)> progress;
};

/// What a finished run tells beside the document.
struct RenderResult {
    DocumentPtr document; ///< whole, unless it was stopped
    RowsetPtr rows;       ///< of the main layout, in the data source's order; null when stopped before it
    bool isStopped = false;
    qint64 queryMs = 0;   ///< of the main layout's record source
};

/// One report: a loaded layout with its data source.
class ReportControl
{
public:
    /// The names of the layouts in a file, in its order. @throws ReportError
    static QStringList layoutNames(const QString &fileName);

    /// @throws ReportError; the control is empty afterwards
    void load(const QString &fileName, const QString &layoutName);
    void clear();
    bool isLoaded() const { return m_layout.has_value(); }

    ReportLayout &layout() { return *m_layout; }
    const ReportLayout &layout() const { return *m_layout; }
    const QString &fileName() const { return m_fileName; }
    DataSource &dataSource() { return m_dataSource; }
    const DataSource &dataSource() const { return m_dataSource; }

    /// Runs the record source and lays everything out. @throws ReportError, DatabaseError
    RenderResult render(const RenderSettings &settings);

private:
    std::optional<ReportLayout> m_layout;
    DataSource m_dataSource;
    QString m_fileName;
};

} // namespace corvane
