#pragma once

#include <QtCore/QLockFile>

namespace corvane {

/// One window per user and program folder. The lock names its process, so that a crash leaves none behind.
class SingleInstance
{
public:
    explicit SingleInstance(const QString &programFolder);

    bool isFirst() const { return m_isFirst; }

private:
    QLockFile m_lock;
    bool m_isFirst;
};

} // namespace corvane
