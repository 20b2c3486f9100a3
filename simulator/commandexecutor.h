#pragma once

#include "simulator/commands.h"

#include <QObject>
#include <QTimer>

class Device;

/// Executes command lines, one at a time and without blocking, wherever they come from. Each executor has its own
/// place in the streams of requests and messages that "expect request" and "expect message" look at.
class CommandExecutor : public QObject
{
    Q_OBJECT
public:
    /// @param device borrowed; outlives the executor.
    explicit CommandExecutor(Device &device, QObject *parent = nullptr);

    /// What is wrong with a line; empty for one that can be executed. Does nothing else.
    QString check(const QString &line);
    /// Begins a line; finished() follows, never from within this call. Blank lines and comments succeed.
    /// Not while isBusy().
    void execute(const QString &line);
    bool isBusy() const { return m_busy; }
    /// Stops waiting; finished() does not come. A key that the line holds down for a time comes up.
    void cancel();

    /// Requests that have come so far are nothing to expect any more.
    void skipRequests();

signals:
    void finished(const CommandResult &result);
    /// A line asked for the end of the simulator; finished() follows.
    void quitRequested();

private:
    /// The action of a line, or what is wrong with it.
    Action parse(const QString &line, QString *error);
    void poll();
    void expire();
    void finish(const CommandResult &result);
    void deliver();

    CommandContext m_context;
    Action m_action;
    CommandResult m_result;
    bool m_busy = false;
    QTimer m_poll;
    QTimer m_limit;
    QTimer m_delivery;
};
