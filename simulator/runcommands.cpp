#include "simulator/commandparsers.h"
#include "simulator/device.h"

namespace {

std::optional<CommandResult> pollReady(const Device &device)
{
    if (const std::optional<ProgramEnd> &end = device.programEnd())
        return CommandResult{end->how == ProgramEnd::How::NotStarted ? ExitCode::Missing : ExitCode::Failed, end->text};
    if (device.isProgramReady())
        return CommandResult();
    return std::nullopt;
}

CommandResult notReady(const Device &device, std::chrono::milliseconds limit)
{
    const QStringList messages = device.messages().last(10);
    const QString seen = messages.isEmpty() ? QStringLiteral("it has logged nothing")
                                            : QStringLiteral("its last messages:\n    ") + messages.join("\n    ");
    return {ExitCode::TimedOut,
        QStringLiteral(
            "front-panel was not ready within %1 ms (ready: connected, first requests sent and answered); %2\n"
            "panel-simulator without --script shows it starting; --wrap strace or --wrap gdb shows where it stands.")
            .arg(limit.count())
            .arg(seen)};
}

Action waitReady(Device &device, std::chrono::milliseconds limit)
{
    Action action;
    action.poll = [&device] { return pollReady(device); };
    action.limit = limit;
    action.expire = [&device, limit] { return notReady(device, limit); };
    return action;
}

} // namespace

Action parseWait(CommandContext &, Arguments &arguments)
{
    Action action;
    action.limit = arguments.time("MS");
    return action;
}

Action parseWaitReady(CommandContext &context, Arguments &arguments)
{
    const auto limit = arguments.time("MS", defaultReadyTime);
    return context.device.hasProgram() ? waitReady(context.device, limit) : Action();
}

Action parseRestart(CommandContext &context, Arguments &)
{
    Action action = waitReady(context.device, defaultReadyTime);
    action.begin = [&context] {
        Device &device = context.device;
        if (!device.hasProgram())
            return CommandResult{ExitCode::Failed, QStringLiteral("there is no program to restart")};
        device.stopProgram();
        context.requestMark = device.requests().end();
        context.messageMark = device.messages().end();
        device.startProgram();
        return CommandResult();
    };
    action.poll = [&device = context.device]() -> std::optional<CommandResult> {
        if (!device.core().isLinkUp() && !device.programEnd())
            return CommandResult(); // it cannot become ready before "link restore"
        return pollReady(device);
    };
    return action;
}

Action parseHelp(CommandContext &, Arguments &arguments)
{
    const QString help = commandHelp(arguments.word("COMMAND", {}));
    if (help.isEmpty())
        arguments.fail(QStringLiteral("there is no such command"));
    Action action;
    action.begin = [help] { return CommandResult{ExitCode::Ok, help}; };
    return action;
}

Action parseQuit(CommandContext &context, Arguments &)
{
    Action action;
    action.begin = [&context] {
        context.quit();
        return CommandResult();
    };
    return action;
}
