#include "simulator/device.h"

#include <QRegularExpression>

using namespace std::chrono_literals;

namespace {

// The program asks in bursts: each answer brings the next questions. So many rounds of our event loop in which it has
// none, nothing to compute and nothing on the way either, and it is through. Rounds and not time: while we get no
// processor, its questions wait unread; and where it gets none, it computes for long.
constexpr int quietRounds = 10;
constexpr std::chrono::milliseconds quietRound = 20ms;
constexpr int lastMessages = 10;

QString advice(const QString &what, const QStringList &messages, const QString &nextStep)
{
    QString text = QStringLiteral("front-panel ") + what;
    if (!messages.isEmpty())
        text += QStringLiteral("; its last messages:\n    ") + messages.join("\n    ");
    return text + '\n' + nextStep;
}

} // namespace

Device::Device(const Setup &setup, QObject *parent)
    : QObject(parent)
    , m_setup(setup)
    , m_core(*setup.frame)
    , m_bed(*setup.frame, setup.faults)
{
    connect(&m_core, &CoreService::requestReceived, this, &Device::logRequest);
    connect(&m_core, &CoreService::changed, this, [this] {
        if (!m_core.isLinkUp())
            expectRequests();
    });
    m_quietRound.setInterval(quietRound);
    connect(&m_quietRound, &QTimer::timeout, this, [this] {
        if (!m_runner.isIdle() || !m_core.isLinkQuiet())
            m_quietRounds = 0;
        else if (++m_quietRounds == quietRounds)
            m_quietRound.stop();
    });
    connect(&m_runner, &ProgramRunner::messageLogged, this, &Device::logMessage);
    connect(&m_runner, &ProgramRunner::startFailed, this, &Device::noteStartFailure);
    connect(&m_runner, &ProgramRunner::ended, this, &Device::noteEnd);
}

QString Device::powerOn()
{
    if (!m_bed.errorString().isEmpty())
        return m_bed.errorString();
    if (m_core.listen(m_setup.port))
        return {};
    return QStringLiteral("Port %1 on 127.0.0.1 cannot be used: %2.\n"
                          "Most likely another panel-simulator, or a real core service, has it. "
                          "\"ss -ltnp 'sport = :%1'\" shows which process; end that one first.")
        .arg(m_setup.port)
        .arg(m_core.errorString());
}

void Device::startProgram()
{
    m_end.reset();
    expectRequests();
    m_runner.start(m_setup.program, m_bed.programEnvironment(), m_setup.wrapper);
    if (!m_end) // which it is at once where there is no such program
        emit programStarted();
}

bool Device::isProgramReady() const { return !m_end && m_quietRounds == quietRounds; }

void Device::logRequest(const QString &line)
{
    static const QRegularExpression signature(QStringLiteral("\\A[0-9]+#"));
    const QString request = QString(line).remove(signature);
    m_requests.append(request);
    m_quietRounds = 0;
    m_quietRound.start();
    emit requestReceived(request);
}

void Device::expectRequests()
{
    m_quietRounds = 0;
    m_quietRound.stop();
}

void Device::logMessage(const QString &line)
{
    m_messages.append(line);
    emit messageLogged(line);
}

void Device::noteStartFailure(const QString &reason)
{
    const QString nextStep = m_setup.wrapper.isEmpty()
        ? QStringLiteral("Build it: cmake --build --preset release")
        : QStringLiteral("Is %1 installed? Without --wrap the program runs on its own.").arg(m_setup.wrapper.first());
    m_end = ProgramEnd{
        ProgramEnd::How::NotStarted, 0, advice(QStringLiteral("cannot be started: ") + reason, {}, nextStep)};
    emit programEnded(*m_end);
}

void Device::noteEnd(int exitCode, bool crashed)
{
    const QStringList messages = m_messages.last(lastMessages);
    if (crashed)
        m_end = ProgramEnd{ProgramEnd::How::Crashed, exitCode,
            advice(QStringLiteral("crashed"), messages,
                QStringLiteral("panel-simulator --wrap gdb runs it in the debugger."))};
    else
        m_end = ProgramEnd{ProgramEnd::How::Exited, exitCode,
            advice(QStringLiteral("ended with exit code %1").arg(exitCode), exitCode == 0 ? QStringList() : messages,
                QStringLiteral("\"restart\" starts it again."))};
    emit programEnded(*m_end);
}
