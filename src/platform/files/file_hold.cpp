#include "platform/files/file_hold.h"

#include <QtCore/QThread>

namespace corvane {

namespace {

constexpr int kAttempts = 100;
constexpr unsigned long kPauseMs = 20;

} // namespace

FileHold::FileHold(const QString &fileName)
{
    for (int i = 0; i < kAttempts; ++i) {
        m_isHeld = attempt(fileName) != HoldResult::HeldByAnother;
        if (m_isHeld)
            return;
        letGo();
        QThread::msleep(kPauseMs);
    }
}

FileHold::~FileHold()
{
    letGo();
}

} // namespace corvane
