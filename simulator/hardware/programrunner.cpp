#include "simulator/hardware/programrunner.h"

#include <QFile>
#include <QFileInfo>

#include <csignal>

ProgramRunner::ProgramRunner(QObject *parent, std::chrono::milliseconds patience)
    : QObject(parent)
    , m_patience(patience)
{
    connect(&m_process, &QProcess::readyReadStandardOutput, this,
        [this] { relay(&m_outputRest, m_process.readAllStandardOutput()); });
    connect(&m_process, &QProcess::readyReadStandardError, this,
        [this] { relay(&m_errorRest, m_process.readAllStandardError()); });
    connect(&m_process, &QProcess::errorOccurred, this, &ProgramRunner::reportError);
    connect(&m_process, &QProcess::finished, this, &ProgramRunner::reportEnd);
}

ProgramRunner::~ProgramRunner()
{
    blockSignals(true); // nobody expects news from an object that is going
    stop();
}

void ProgramRunner::start(const QString &program, const QProcessEnvironment &environment, const QStringList &wrapper,
    const QStringList &arguments)
{
    stop();
    const bool wrapped = !wrapper.isEmpty();
    const QFileInfo file(program);
    const QStringList command = QStringList(wrapper) << file.absoluteFilePath() << arguments;
    m_process.setProcessEnvironment(environment);
    m_process.setWorkingDirectory(file.absolutePath());
    m_process.setProcessChannelMode(wrapped ? QProcess::ForwardedChannels : QProcess::SeparateChannels);
    m_process.setInputChannelMode(wrapped ? QProcess::ForwardedInputChannel : QProcess::ManagedInputChannel);
    m_process.start(command.first(), command.mid(1));
}

bool ProgramRunner::stop()
{
    if (!isRunning())
        return true;
    // Blocking here is safe: the bed answers the program's requests on its own thread, the program does not wait
    // for room when it writes an LED, and waitForFinished() empties its pipes. So nothing the program does on its
    // way out needs our event loop, and no slot but those of its messages is entered from here.
    m_stopping = true;
    m_process.terminate();
    if (!m_process.waitForFinished(int(m_patience.count()))) {
        m_process.kill();
        m_process.waitForFinished(-1);
    }
    m_stopping = false;
    if (m_process.exitStatus() == QProcess::NormalExit)
        return m_process.exitCode() == 0;
    return m_process.exitCode() == SIGTERM || m_process.exitCode() == SIGKILL; // our own
}

bool ProgramRunner::isRunning() const { return m_process.state() != QProcess::NotRunning; }

qint64 ProgramRunner::processId() const { return m_process.processId(); }

bool ProgramRunner::isIdle() const
{
    QFile status(QStringLiteral("/proc/%1/stat").arg(processId()));
    if (!status.open(QIODevice::ReadOnly))
        return false;
    const QByteArray fields = status.readAll(); // "PID (NAME) S ...", where the name may hold anything
    return fields.sliced(fields.lastIndexOf(')') + 1).startsWith(" S");
}

void ProgramRunner::relay(QByteArray *rest, const QByteArray &bytes)
{
    rest->append(bytes);
    for (qsizetype end = rest->indexOf('\n'); end >= 0; end = rest->indexOf('\n')) {
        const QString line = QString::fromUtf8(rest->first(end));
        rest->remove(0, end + 1);
        emit messageLogged(line);
    }
}

void ProgramRunner::reportError(QProcess::ProcessError error)
{
    if (error == QProcess::FailedToStart)
        emit startFailed(m_process.errorString());
}

void ProgramRunner::reportEnd(int exitCode, QProcess::ExitStatus status)
{
    for (QByteArray *rest : {&m_outputRest, &m_errorRest}) {
        if (!rest->isEmpty())
            relay(rest, "\n");
    }
    if (!m_stopping)
        emit ended(exitCode, status == QProcess::CrashExit);
}
