#pragma once

#include <QtCore/QString>

#include <vector>

namespace corvane {

/// Counts the values of one sort that a reader has to be told of, with their pages.
class ValueTally
{
public:
    /// `page` from 0. The first words given are the ones that are told.
    void add(int page, const QString &words = {});

    /// "2 values were cut, pages 3 and 9." Empty when none was counted. `one` and `many` follow the
    /// number.
    QString note(const QString &one, const QString &many) const;

private:
    int m_count = 0;
    std::vector<int> m_pages; ///< each once
    QString m_words;
};

} // namespace corvane
