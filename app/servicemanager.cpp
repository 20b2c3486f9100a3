#include "app/servicemanager.h"

#include <chrono>
#include <systemd/sd-daemon.h>

ServiceManager::ServiceManager()
{
    sd_notify(0, "READY=1");
    uint64_t interval = 0; // within which it wants to hear from us; microseconds
    if (sd_watchdog_enabled(0, &interval) <= 0)
        return;
    QObject::connect(&m_watchdog, &QTimer::timeout, &m_watchdog, [] { sd_notify(0, "WATCHDOG=1"); });
    m_watchdog.start(std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::microseconds(interval)) / 2);
}
