#include "simulator/web/commandrunner.h"

CommandRunner::CommandRunner(Device &device, QObject *parent)
    : QObject(parent)
    , m_executor(device)
{
    connect(&m_executor, &CommandExecutor::finished, this, &CommandRunner::note);
    connect(&m_executor, &CommandExecutor::quitRequested, this, &CommandRunner::quitRequested);
}

CommandRunner::~CommandRunner()
{
    m_executor.cancel();
    for (Group &group : m_groups) {
        group.results.append({group.lines.value(0), {ExitCode::Failed, QStringLiteral("the device has gone")}});
        if (group.asker)
            group.done(group.results);
    }
}

bool CommandRunner::add(const QStringList &lines, QObject *asker, Done done)
{
    if (m_groups.size() >= mostWaiting)
        return false;
    m_groups.push_back({lines, asker, std::move(done), {}});
    connect(asker, &QObject::destroyed, this, &CommandRunner::forgetOrphans, Qt::UniqueConnection);
    if (m_groups.size() == 1)
        next();
    return true;
}

void CommandRunner::forgetOrphans()
{
    const bool isFirstOne = !m_groups.empty() && !m_groups.front().asker;
    std::erase_if(m_groups, [](const Group &group) { return !group.asker; });
    if (!isFirstOne)
        return;
    m_executor.cancel();
    next();
}

void CommandRunner::next()
{
    if (m_groups.empty())
        return;
    if (m_groups.front().lines.isEmpty()) {
        finishGroup();
        return;
    }
    const QString line = m_groups.front().lines.first();
    emit lineBegun(line);
    m_executor.execute(line);
}

void CommandRunner::note(const CommandResult &result)
{
    Group &group = m_groups.front();
    group.results.append({group.lines.takeFirst(), result});
    if (!result.ok() || group.lines.isEmpty())
        finishGroup();
    else
        next();
}

void CommandRunner::finishGroup()
{
    const Group group = std::move(m_groups.front());
    m_groups.pop_front();
    if (group.asker)
        group.done(group.results);
    next();
}
