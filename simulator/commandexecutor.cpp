#include "simulator/commandexecutor.h"

#include "simulator/device.h"
#include "simulator/words.h"

using namespace std::chrono_literals;

CommandExecutor::CommandExecutor(Device &device, QObject *parent)
    : QObject(parent)
    , m_context{device, 0, 0, [this] { emit quitRequested(); }}
{
    m_poll.setInterval(10ms);
    m_limit.setSingleShot(true);
    m_limit.setTimerType(Qt::PreciseTimer);
    m_delivery.setSingleShot(true);
    connect(&m_poll, &QTimer::timeout, this, &CommandExecutor::poll);
    connect(&m_limit, &QTimer::timeout, this, &CommandExecutor::expire);
    connect(&m_delivery, &QTimer::timeout, this, &CommandExecutor::deliver);
}

QString CommandExecutor::check(const QString &line)
{
    QString error;
    parse(line, &error);
    return error;
}

Action CommandExecutor::parse(const QString &line, QString *error)
{
    Words words = splitWords(line);
    *error = words.error;
    if (!error->isEmpty() || words.list.isEmpty())
        return {};
    const Command *command = takeCommand(&words.list);
    if (!command) {
        *error = QStringLiteral("there is no command \"%1\"; \"help\" lists them").arg(words.list.first());
        const QString similar = commandHelp(words.list.first());
        if (!similar.isEmpty())
            *error = QStringLiteral("\"%1\" needs one of these:\n").arg(words.list.first()) + similar;
        return {};
    }
    Arguments arguments(m_context.device.layout(), words.list);
    Action action = command->parse(m_context, arguments);
    *error = arguments.error();
    if (!error->isEmpty())
        *error += QStringLiteral("; usage: %1 %2").arg(command->name, command->arguments).trimmed();
    return action;
}

void CommandExecutor::execute(const QString &line)
{
    Q_ASSERT(!m_busy);
    m_busy = true;
    QString error;
    m_action = parse(line, &error);
    if (!error.isEmpty()) {
        finish({ExitCode::Usage, error});
        return;
    }
    const CommandResult begun = m_action.begin ? m_action.begin() : CommandResult();
    if (!begun.ok() || m_action.limit.count() == 0) {
        finish(begun);
        return;
    }
    m_limit.start(m_action.limit);
    if (m_action.poll) {
        m_poll.start();
        poll();
    }
}

void CommandExecutor::poll()
{
    if (const std::optional<CommandResult> result = m_action.poll())
        finish(*result);
}

void CommandExecutor::expire() { finish(m_action.expire ? m_action.expire() : CommandResult()); }

void CommandExecutor::finish(const CommandResult &result)
{
    m_poll.stop();
    m_limit.stop();
    m_result = result;
    m_delivery.start(0); // from the event loop: a long script must not pile up calls
}

void CommandExecutor::deliver()
{
    m_busy = false;
    emit finished(m_result);
}

void CommandExecutor::cancel()
{
    const bool isHolding = m_limit.isActive() && !m_action.poll;
    m_poll.stop();
    m_limit.stop();
    m_delivery.stop();
    m_busy = false;
    if (isHolding && m_action.expire)
        m_action.expire();
}

void CommandExecutor::skipRequests() { m_context.requestMark = m_context.device.requests().end(); }
