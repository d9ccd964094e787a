#include "platform/Clock.h"

#include <chrono>

QDateTime Clock::now() const
{
    return QDateTime::currentDateTime();
}

qint64 Clock::monotonic() const
{
    const auto sinceStart = std::chrono::steady_clock::now().time_since_epoch();
    return std::chrono::duration_cast<std::chrono::milliseconds>(sinceStart).count();
}
