#include "platform/database/embedded/exact_numbers.h"

#include "platform/database/embedded/function_values.h"

#include <array>
#include <charconv>
#include <cmath>
#include <iterator>

namespace corvane::embedded {

namespace {

/// Both numbers of a division; empty, with the result set, when there is nothing to divide.
std::optional<std::pair<double, double>> operands(const FunctionCall &call)
{
    if (call.isNull(0) || call.isNull(1)) {
        call.setNull();
        return std::nullopt;
    }
    const auto left = call.number(0);
    const auto right = call.number(1);
    if (left && right && *right != 0)
        return std::pair(*left, *right);
    if (left && right)
        call.fail(ServerError::kDivideByZero, "Divide by zero error encountered.");
    else
        call.failConversion(left ? 1 : 0, "numeric");
    return std::nullopt;
}

/// The third argument is how many digits behind the point the server keeps.
void quotient(const FunctionCall &call)
{
    if (const auto numbers = operands(call))
        call.setReal(cutTo(numbers->first / numbers->second, int(call.integer(2))));
}

/// Whole numbers stay whole, unless the third argument says that one of them is a real.
void divide(const FunctionCall &call)
{
    const auto numbers = operands(call);
    if (!numbers)
        return;
    const bool whole = call.isInteger(0) && call.isInteger(1) && call.integer(2) == 0;
    if (whole && call.integer(1) != -1) // the least number has no opposite
        return call.setInteger(call.integer(0) / call.integer(1));
    const double result = numbers->first / numbers->second;
    if (whole && std::abs(result) < 9.2e18)
        return call.setInteger(-call.integer(0));
    call.setReal(result);
}

void remainder(const FunctionCall &call)
{
    const auto numbers = operands(call);
    if (!numbers)
        return;
    if (call.isInteger(0) && call.isInteger(1))
        return call.setInteger(call.integer(1) == -1 ? 0 : call.integer(0) % call.integer(1));
    const auto &[left, right] = *numbers;
    call.setReal(fifteenDigits(left - right * cutTo(left / right, 0)));
}

constexpr Function kFunctions[] = {
    {"corvane_divide", 3, divide},
    {"corvane_quotient", 3, quotient},
    {"corvane_remainder", 2, remainder},
};

/// SUM and AVG of numbers with a point. SQLite hands out the memory zeroed, which is their start.
struct Total
{
    ExactTotal sum;
    qint64 count;
};

Total *totalOf(sqlite3_context *context)
{
    return static_cast<Total *>(sqlite3_aggregate_context(context, sizeof(Total)));
}

template <int Sign> void addToTotal(sqlite3_context *context, int, sqlite3_value **values)
{
    Total *total = totalOf(context);
    if (!total || sqlite3_value_type(values[0]) == SQLITE_NULL)
        return;
    total->sum.add(Sign * sqlite3_value_double(values[0]));
    total->count += Sign;
}

template <bool Average> void giveTotal(sqlite3_context *context)
{
    const Total *total = totalOf(context);
    if (!total || total->count == 0)
        return sqlite3_result_null(context);
    sqlite3_result_double(
        context, Average ? total->sum.value() / double(total->count) : total->sum.value());
}

template <bool Average> void registerTotal(sqlite3 *database, const char *name)
{
    sqlite3_create_window_function(database, name, 1, kFunctionFlags | SQLITE_DETERMINISTIC,
        nullptr, addToTotal<1>, giveTotal<Average>, giveTotal<Average>, addToTotal<-1>, nullptr);
}

} // namespace

double fifteenDigits(double value)
{
    char digits[40];
    const auto end
        = std::to_chars(digits, std::end(digits), value, std::chars_format::scientific, 14);
    double rounded = value;
    std::from_chars(digits, end.ptr, rounded);
    return rounded;
}

double powerOfTen(int exponent)
{
    // Exact as far as doubles are, whatever the system's library makes of it.
    static constexpr auto kExact = [] {
        std::array<double, 23> powers{1};
        for (size_t i = 1; i < powers.size(); ++i)
            powers[i] = powers[i - 1] * 10;
        return powers;
    }();
    if (exponent < 0)
        return 1 / powerOfTen(-exponent);
    return size_t(exponent) < kExact.size() ? kExact[size_t(exponent)] : std::pow(10.0, exponent);
}

namespace {

/// By a division in place of the product with a fraction, which is none of the numbers that doubles have.
double shifted(double value, int decimals)
{
    return decimals < 0 ? value / powerOfTen(-decimals) : value * powerOfTen(decimals);
}

} // namespace

double roundedTo(double value, int decimals)
{
    return shifted(std::round(fifteenDigits(shifted(value, decimals))), -decimals);
}

double cutTo(double value, int decimals)
{
    // What misses a whole number by no more than the sixteenth digit is one.
    constexpr double kNoise = 5e-15;
    const double scaled = shifted(value, decimals);
    const double nearest = std::nearbyint(scaled);
    const bool whole = std::abs(scaled - nearest) <= std::abs(scaled) * kNoise;
    return shifted(whole ? nearest : std::trunc(scaled), -decimals);
}

void ExactTotal::add(double value)
{
    const double sum = m_sum + value;
    m_lost += std::abs(m_sum) >= std::abs(value) ? (m_sum - sum) + value : (value - sum) + m_sum;
    m_sum = sum;
}

std::span<const Function> exactFunctions()
{
    return kFunctions;
}

void registerTotals(sqlite3 *database)
{
    registerTotal<false>(database, "corvane_sum");
    registerTotal<true>(database, "corvane_avg");
}

} // namespace corvane::embedded
