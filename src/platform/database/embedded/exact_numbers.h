#pragma once

namespace corvane::embedded {

/// SQLite keeps exact numbers as doubles, of which fifteen digits are true to the decimal. These
/// work on those fifteen, so that 1.005, stored a little below, rounds to 1.01 and 0.3 / 0.1 is 3.
double fifteenDigits(double value);
double powerOfTen(int exponent);
/// Half away from zero.
double roundedTo(double value, int decimals);
/// The digits beyond are cut off.
double cutTo(double value, int decimals);

/// Adds with the lost low bits kept apart (Neumaier), so that a hundred thousand amounts sum up to
/// the last cent.
class ExactTotal
{
public:
    void add(double value);
    double value() const { return m_sum + m_lost; }

private:
    double m_sum = 0;
    double m_lost = 0;
};

} // namespace corvane::embedded
