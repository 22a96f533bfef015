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
    /// Whether the file's bytes differ from those that were loaded.
    bool changedOnDisk() const;
    /// Writes all properties or none. @throws ProfileWriteError
    void save(const PageProperties &properties) const;

private:
    QByteArray fingerprint() const;

    QString m_file;
    QByteArray m_loaded;
};

} // namespace corvane
