#pragma once

#include "editor/page_properties.h"

#include <optional>

namespace corvane {

/// Where a property stands that cannot be saved, and why, as a sentence.
struct PropertyFault
{
    enum Place { Header, Footer, Caption, Size };

    Place place;
    int index; ///< 0 left, 1 centre, 2 right; or the column's row from 0
    QString text;

    bool operator==(const PropertyFault &) const = default;
};

/// The first property that a definition of this encoding cannot hold.
std::optional<PropertyFault> findFault(const PageProperties &properties, ProfileEncoding encoding);

/// Why a file's properties are not to be edited: it cannot be read or is no tabular definition. A
/// sentence; empty when they may be.
QString editRefusal(const QString &file);

/// The definition file behind the properties form, from reading it to writing it back.
class EditedDefinition
{
public:
    explicit EditedDefinition(const QString &file);

    const QString &file() const { return m_file; }
    /// Reads the properties and remembers the file's bytes. @throws RunTimeFault as
    /// loadPageProperties.
    PageProperties load();

    std::optional<PropertyFault> fault(const PageProperties &properties) const;
    /// Writes all properties into the file as it was loaded, or nothing. False, and nothing
    /// written, when somebody else changed the file since then. @throws ProfileWriteError
    bool save(const PageProperties &properties);
    /// Lets the next save() replace what stopped the latest one, and nothing that comes after it.
    void overruleChange();

private:
    QString m_file;
    QByteArray m_loaded;
    QByteArray m_expected; ///< what save() may replace
    QByteArray m_seen; ///< what stopped it
};

} // namespace corvane
