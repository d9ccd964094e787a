#include "platform/Clock.h"

#include <chrono>
#include <ctime>

QDateTime Clock::now() const
{
    return QDateTime::currentDateTime();
}

qint64 Clock::monotonic() const
{
    const auto sinceStart = std::chrono::steady_clock::now().time_since_epoch();
    return std::chrono::duration_cast<std::chrono::milliseconds>(sinceStart).count();
}

qint64 Clock::asleep() const
{
    timespec withSleep{};
    timespec without{};
    ::clock_gettime(CLOCK_BOOTTIME, &withSleep);
    ::clock_gettime(CLOCK_MONOTONIC, &without);
    return (withSleep.tv_sec - without.tv_sec) * 1000 + (withSleep.tv_nsec - without.tv_nsec) / 1'000'000;
}
