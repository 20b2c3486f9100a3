#pragma once

#include <QObject>
#include <QSocketNotifier>

/// Turns the signals that ask a process to end (SIGTERM, SIGHUP, SIGINT) into a Qt signal. One at a time.
class SignalWatcher : public QObject
{
    Q_OBJECT
public:
    /// @param keyboardIsOthers Ctrl-C is meant for somebody else at this terminal: SIGINT does nothing.
    explicit SignalWatcher(bool keyboardIsOthers, QObject *parent = nullptr);
    ~SignalWatcher() override;

    /// A signal has come, whether the event loop has got to it yet or not.
    static bool hasCome();

signals:
    void endRequested();

private:
    void read();

    QSocketNotifier m_notifier;
};
