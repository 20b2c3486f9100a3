#pragma once

#include <QSocketNotifier>

#include <memory>

/// SIGTERM and SIGINT end the event loop in order, with status 0, as a service manager's stop and a developer's
/// Ctrl-C mean it. Made before there are other threads: one that has not blocked the signals would die of them.
class EndRequests
{
public:
    EndRequests();
    ~EndRequests();
    Q_DISABLE_COPY_MOVE(EndRequests)

    /// Heeds them from here on, also those that have come before. Needs the application object.
    void watch();

private:
    int m_descriptor;
    std::unique_ptr<QSocketNotifier> m_notifier;
};
