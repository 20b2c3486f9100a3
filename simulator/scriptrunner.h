#pragma once

#include "simulator/commandexecutor.h"

#include <QStringList>

/// Plays a script against a device: waits until the program is ready, then executes line after line. The first failure
/// ends the script; so does the program's end, unless it ended in order and an "expect exit" comes before the next
/// "restart".
class ScriptRunner : public QObject
{
    Q_OBJECT
public:
    /// @param device borrowed; switched on, its program started. @param name shown in messages.
    /// @param readyTime how long the program may take to get ready.
    ScriptRunner(Device &device, const QString &name, const QStringList &lines,
        std::chrono::milliseconds readyTime = defaultReadyTime, QObject *parent = nullptr);

    /// The first line that cannot be executed, and why; empty for a sound script.
    QString check();
    void start();

signals:
    /// What is going on: the script's comments, its commands behind "> ", and what they have to tell.
    void progressed(const QString &text);
    /// @param text what failed in which line; empty on success.
    void finished(ExitCode code, const QString &text);

private:
    void next();
    void noteResult(const CommandResult &result);
    void noteProgramEnd();
    bool expectsExit() const;
    void end(ExitCode code, const QString &text);
    QString place() const;

    Device &m_device;
    QString m_name;
    QStringList m_lines;
    std::chrono::milliseconds m_readyTime;
    CommandExecutor m_executor;
    qsizetype m_current = -1; // index of the line being executed; -1: waiting for the program
    bool m_quit = false;
    bool m_ended = false;
};
