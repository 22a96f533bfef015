#pragma once

#include <QtCore/QtGlobal>

namespace corvane::test {

/// What the program has asked of the memory since this was made, its libraries included. Links
/// allocations.cpp, which stands before malloc (glibc, "Replacing malloc"), so only programs that
/// count do.
class Allocations
{
public:
    Allocations();

    qint64 count() const;
    /// Bytes at the highest point above the start.
    qint64 peak() const;

private:
    qint64 m_countBefore;
    qint64 m_bytesBefore;
};

} // namespace corvane::test
