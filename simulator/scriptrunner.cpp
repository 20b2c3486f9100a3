#include "simulator/scriptrunner.h"

#include "simulator/device.h"
#include "simulator/words.h"

ScriptRunner::ScriptRunner(
    Device &device, const QString &name, const QStringList &lines, std::chrono::milliseconds readyTime, QObject *parent)
    : QObject(parent)
    , m_device(device)
    , m_name(name)
    , m_lines(lines)
    , m_readyTime(readyTime)
    , m_executor(device)
{
    connect(&m_executor, &CommandExecutor::finished, this, &ScriptRunner::noteResult);
    connect(&m_executor, &CommandExecutor::quitRequested, this, [this] { m_quit = true; });
}

QString ScriptRunner::check()
{
    for (m_current = 0; m_current < m_lines.size(); ++m_current) {
        const QString error = m_executor.check(m_lines[m_current]);
        if (!error.isEmpty())
            return place() + error;
    }
    m_current = -1;
    return {};
}

void ScriptRunner::start()
{
    connect(&m_device, &Device::programEnded, this, &ScriptRunner::noteProgramEnd);
    m_executor.execute(QStringLiteral("wait-ready %1").arg(m_readyTime.count()));
}

void ScriptRunner::noteResult(const CommandResult &result)
{
    if (!result.ok()) {
        end(result.code, place() + result.text);
        return;
    }
    if (m_current < 0)
        m_executor.skipRequests();
    if (!result.text.isEmpty())
        emit progressed(result.text);
    next();
}

void ScriptRunner::next()
{
    while (!m_quit && ++m_current < m_lines.size()) {
        const QString line = m_lines[m_current].trimmed();
        if (line.isEmpty())
            continue;
        const bool isComment = line.startsWith('#');
        emit progressed(isComment ? line : QStringLiteral("> ") + line);
        if (isComment)
            continue;
        m_executor.execute(line);
        return;
    }
    end(ExitCode::Ok, {});
}

void ScriptRunner::noteProgramEnd()
{
    const ProgramEnd programEnd = *m_device.programEnd();
    if (m_ended)
        return;
    if (programEnd.how == ProgramEnd::How::Exited && expectsExit()) {
        emit progressed(programEnd.text);
        return;
    }
    end(programEnd.how == ProgramEnd::How::NotStarted ? ExitCode::Missing : ExitCode::Failed,
        place() + programEnd.text);
}

bool ScriptRunner::expectsExit() const
{
    for (qsizetype i = std::max<qsizetype>(m_current, 0); i < m_lines.size(); ++i) {
        const QStringList words = splitWords(m_lines[i]).list;
        if (words.value(0) == "restart" && i > m_current)
            return false;
        if (words.value(0) == "expect" && words.value(1) == "exit")
            return true;
    }
    return false;
}

void ScriptRunner::end(ExitCode code, const QString &text)
{
    m_ended = true;
    m_executor.cancel();
    emit finished(code, text);
}

QString ScriptRunner::place() const
{
    return m_current < 0 ? m_name + QStringLiteral(": ") : QStringLiteral("%1:%2: ").arg(m_name).arg(m_current + 1);
}
