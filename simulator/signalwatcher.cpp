#include "simulator/signalwatcher.h"

#include <cerrno>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <unistd.h>
#include <utility>

namespace {

constexpr int endSignals[] = {SIGTERM, SIGHUP, SIGINT};

int wakeUpPipe[2] = {-1, -1};
volatile std::sig_atomic_t signalHasCome = 0;

extern "C" void noteSignal(int)
{
    const int savedErrno = errno;
    signalHasCome = 1;
    const char byte = 0;
    if (write(wakeUpPipe[1], &byte, 1) < 0) { } // the pipe is full of such bytes: one is enough
    errno = savedErrno;
}

// Not SIG_IGN: the program would inherit that.
extern "C" void leaveToOthers(int) { }

int openPipe()
{
    if (pipe2(wakeUpPipe, O_CLOEXEC | O_NONBLOCK) < 0)
        qFatal("Cannot make a pipe for signals: %s", std::strerror(errno));
    return wakeUpPipe[0];
}

void handle(int number, void (*handler)(int))
{
    struct sigaction action = {};
    action.sa_handler = handler;
    action.sa_flags = SA_RESTART;
    sigaction(number, &action, nullptr);
}

} // namespace

SignalWatcher::SignalWatcher(bool keyboardIsOthers, QObject *parent)
    : QObject(parent)
    , m_notifier(openPipe(), QSocketNotifier::Read)
{
    signalHasCome = 0;
    connect(&m_notifier, &QSocketNotifier::activated, this, &SignalWatcher::read);
    struct sigaction atStart = {};
    sigaction(SIGHUP, nullptr, &atStart);
    for (const int number : endSignals) {
        if (number == SIGHUP && atStart.sa_handler == SIG_IGN)
            continue; // started by nohup
        handle(number, number == SIGINT && keyboardIsOthers ? leaveToOthers : noteSignal);
    }
}

SignalWatcher::~SignalWatcher()
{
    for (const int number : endSignals)
        handle(number, SIG_DFL);
    m_notifier.setEnabled(false);
    for (int &end : wakeUpPipe)
        close(std::exchange(end, -1));
}

bool SignalWatcher::hasCome() { return signalHasCome != 0; }

void SignalWatcher::read()
{
    char bytes[16];
    if (::read(wakeUpPipe[0], bytes, sizeof bytes) > 0)
        emit endRequested();
}
