#pragma once

#ifdef _WIN32
#include <windows.h>
#endif
#include <sql.h>
#include <sqlext.h>
#include <sqlucode.h>

#include <utility>

#include <QtCore/QString>

namespace corvane::odbc {

/// One handle of the driver manager, freed on destruction; null when it could not be had.
template <SQLSMALLINT Type> class Handle
{
public:
    Handle() = default;
    explicit Handle(SQLHANDLE parent)
    {
        if (!SQL_SUCCEEDED(SQLAllocHandle(Type, parent, &m_handle)))
            m_handle = nullptr;
    }
    ~Handle()
    {
        if (m_handle != nullptr)
            SQLFreeHandle(Type, m_handle);
    }
    Handle(Handle &&other) noexcept
        : m_handle(std::exchange(other.m_handle, nullptr))
    {
    }
    Handle &operator=(Handle &&) = delete;
    Handle(const Handle &) = delete;
    Handle &operator=(const Handle &) = delete;

    static constexpr SQLSMALLINT kType = Type;
    SQLHANDLE get() const { return m_handle; }
    explicit operator bool() const { return m_handle != nullptr; }

private:
    SQLHANDLE m_handle = nullptr;
};

using Environment = Handle<SQL_HANDLE_ENV>;
using Session = Handle<SQL_HANDLE_DBC>;
using Statement = Handle<SQL_HANDLE_STMT>;

/// Declares version 3 of the interface, without which nothing else works. Null when that fails.
inline Environment openEnvironment()
{
    Environment environment(nullptr);
    if (environment)
        SQLSetEnvAttr(environment.get(), SQL_ATTR_ODBC_VERSION,
            reinterpret_cast<SQLPOINTER>(SQL_OV_ODBC3), 0);
    return environment;
}

/// The functions take their texts as writable, and leave them as they are.
inline SQLWCHAR *wide(const QString &text)
{
    static_assert(sizeof(SQLWCHAR) == sizeof(char16_t));
    return const_cast<SQLWCHAR *>(reinterpret_cast<const SQLWCHAR *>(text.utf16()));
}

/// A number goes to the functions in the place of a pointer.
inline SQLPOINTER attribute(SQLULEN number)
{
    return reinterpret_cast<SQLPOINTER>(number); // NOLINT(performance-no-int-to-ptr)
}

} // namespace corvane::odbc
