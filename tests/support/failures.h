#pragma once

#include "platform/database/error.h"

#include <functional>
#include <optional>

namespace corvane::test {

/// The database failure that the action ends with, if it does.
inline std::optional<DatabaseError> databaseFailure(const std::function<void()> &action)
{
    try {
        action();
    } catch (const DatabaseError &error) {
        return error;
    }
    return {};
}

} // namespace corvane::test
