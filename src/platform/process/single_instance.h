#pragma once

#include <QtCore/QtGlobal>
#ifdef Q_OS_WIN
#include <QtCore/QString>
#else
#include <QtCore/QLockFile>
#endif

namespace corvane {

/// One window per session and program folder. A program that crashed is in nobody's way.
class SingleInstance
{
public:
    explicit SingleInstance(const QString &programFolder);
    ~SingleInstance();
    Q_DISABLE_COPY_MOVE(SingleInstance)

    bool isFirst() const { return m_isFirst; }

private:
#ifdef Q_OS_WIN
    void *m_mutex; ///< the system ends it with the last program that has it open
#else
    QLockFile m_lock;
#endif
    bool m_isFirst;
};

} // namespace corvane
