#pragma once

#include <QByteArray>
#include <QObject>
#include <QProcess>
#include <QStringList>

#include <chrono>

/// Runs the front-panel program as a child process in a bed's environment and relays its messages.
class ProgramRunner : public QObject
{
    Q_OBJECT
public:
    /// @param patience how long stop() waits for the program to end by itself.
    explicit ProgramRunner(QObject *parent = nullptr, std::chrono::milliseconds patience = std::chrono::seconds(10));
    /// Ends the program if it runs.
    ~ProgramRunner() override;

    /// @param program path of the executable; its folder becomes the working directory.
    /// @param wrapper command and arguments put in front ("gdb", "--args"); empty for none. A wrapped program
    ///        keeps this process's standard streams.
    /// @param arguments of the program itself.
    /// A program that runs already is stopped first.
    void start(const QString &program, const QProcessEnvironment &environment, const QStringList &wrapper = {},
        const QStringList &arguments = {});
    /// Asks the program to end, and kills it when its patience ends. Returns when it is gone; its last messages are
    /// relayed meanwhile, no other event is.
    /// @return false when it crashed on its way out, or ended with another code than 0.
    bool stop();
    bool isRunning() const;
    /// 0 when it does not run. That of the wrapper, if there is one.
    qint64 processId() const;
    /// Whether it runs and waits for something, instead of computing.
    bool isIdle() const;

signals:
    /// One line of the program's standard output or standard error.
    void messageLogged(const QString &line);
    /// The program could not be started at all.
    void startFailed(const QString &reason);
    /// It ended, crashed or not, without stop() having been called.
    /// @param exitCode the number of the signal that ended it when it crashed.
    void ended(int exitCode, bool crashed);

private:
    void relay(QByteArray *rest, const QByteArray &bytes);
    void reportError(QProcess::ProcessError error);
    void reportEnd(int exitCode, QProcess::ExitStatus status);

    QProcess m_process;
    std::chrono::milliseconds m_patience;
    QByteArray m_outputRest; ///< An unfinished line.
    QByteArray m_errorRest;
    bool m_stopping = false;
};
