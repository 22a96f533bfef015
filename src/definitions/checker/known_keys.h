#pragma once

#include <QtCore/QString>
#include <QtCore/QStringList>

#include <span>

namespace corvane {

/// A key that a tabular report reads; the keys of [ColumnFormat] are numbers instead.
struct KnownKey
{
    QStringView section;
    QStringView key;
};

std::span<const KnownKey> knownKeys();
const QStringList &knownSections();
QStringList keysOfSection(QStringView section);
/// The sections that have a key of that name, whatever its case.
QStringList sectionsOfKey(QStringView key);

} // namespace corvane
