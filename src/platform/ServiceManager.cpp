#include "platform/ServiceManager.h"

#include <systemd/sd-daemon.h>

namespace {

constexpr int keepEnvironment = 0;

void tell(const char *state)
{
    // A manager that has gone is no reason to stop.
    (void)sd_notify(keepEnvironment, state);
}

} // namespace

ServiceManager::ServiceManager(QObject *parent) : QObject(parent)
{
    m_watchdog.callOnTimeout([] { tell("WATCHDOG=1"); });
}

void ServiceManager::ready()
{
    tell("READY=1");
    uint64_t microseconds = 0;
    if (sd_watchdog_enabled(keepEnvironment, &microseconds) > 0)
        m_watchdog.start(std::chrono::milliseconds(microseconds / 2000));
}

void ServiceManager::stopping()
{
    tell("STOPPING=1");
}
