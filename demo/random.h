#pragma once

#include <QtCore/QtGlobal>

#include <iterator>

namespace corvane::demo {

/// SplitMix64 (https://prng.di.unimi.it/splitmix64.c). The standard library's distributions may
/// differ from one machine to the next; these numbers do not.
class Random
{
public:
    explicit constexpr Random(quint64 seed)
        : m_state(seed)
    {
    }

    /// 0 to `limit` - 1; `limit` is positive.
    constexpr int below(int limit) { return int(((next() >> 32) * quint64(limit)) >> 32); }
    /// `first` to `last`, both included.
    constexpr int between(int first, int last) { return first + below(last - first + 1); }
    constexpr bool chance(int percent) { return below(100) < percent; }

    template <typename List> constexpr const auto &pick(const List &list)
    {
        return list[size_t(below(int(std::size(list))))];
    }

private:
    constexpr quint64 next()
    {
        quint64 z = (m_state += 0x9e3779b97f4a7c15u);
        z = (z ^ (z >> 30)) * 0xbf58476d1ce4e5b9u;
        z = (z ^ (z >> 27)) * 0x94d049bb133111ebu;
        return z ^ (z >> 31);
    }

    quint64 m_state;
};

} // namespace corvane::demo
