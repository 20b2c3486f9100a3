#include "app/endrequests.h"

#include <QCoreApplication>

#include <cerrno>
#include <csignal>
#include <cstring>
#include <sys/signalfd.h>
#include <unistd.h>

namespace {

sigset_t endSignals()
{
    sigset_t set;
    sigemptyset(&set);
    sigaddset(&set, SIGTERM);
    sigaddset(&set, SIGINT);
    return set;
}

} // namespace

EndRequests::EndRequests()
{
    const sigset_t set = endSignals();
    m_descriptor = signalfd(-1, &set, SFD_CLOEXEC | SFD_NONBLOCK);
    if (m_descriptor < 0) // the signals keep their usual meaning
        qWarning("Cannot watch for SIGTERM: %s", std::strerror(errno));
    else
        pthread_sigmask(SIG_BLOCK, &set, nullptr);
}

EndRequests::~EndRequests()
{
    m_notifier.reset();
    if (m_descriptor >= 0)
        close(m_descriptor);
}

void EndRequests::watch()
{
    if (m_descriptor < 0)
        return;
    m_notifier = std::make_unique<QSocketNotifier>(m_descriptor, QSocketNotifier::Read);
    // Never read: a request that comes before the event loop runs is still there when it does.
    QObject::connect(
        m_notifier.get(), &QSocketNotifier::activated, m_notifier.get(), [] { QCoreApplication::exit(0); });
}
