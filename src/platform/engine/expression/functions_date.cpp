#include "platform/engine/expression/functions.h"

namespace corvane {

std::span<const Function> dateFunctions()
{
    return {};
}

std::span<const Function> conversionFunctions()
{
    return {};
}

} // namespace corvane
