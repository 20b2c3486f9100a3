#include "simulator/commandparsers.h"
#include "simulator/device.h"

namespace {

/// What was seen instead of a line that did not come.
QString seenInstead(const LineLog &log, qint64 mark)
{
    constexpr int shown = 5;
    const QStringList lines = log.last(shown, mark);
    if (lines.isEmpty())
        return QStringLiteral("there was none since the last one expected");
    return QStringLiteral("the last ones:\n    ") + lines.join("\n    ");
}

/// Waits for a line with this text at or behind the mark, and moves the mark behind it.
Action expectLine(const LineLog &log, qint64 &mark, Arguments &arguments, const QString &kind)
{
    const auto limit = arguments.within(defaultWithin);
    const QString text = arguments.text("TEXT");
    Action action;
    action.poll = [&log, &mark, text]() -> std::optional<CommandResult> {
        const std::optional<qint64> number = log.find(text, mark);
        if (!number)
            return std::nullopt;
        mark = *number + 1;
        return CommandResult();
    };
    action.limit = limit;
    action.expire = [&log, &mark, text, kind, limit] {
        return CommandResult{ExitCode::Failed,
            QStringLiteral("no %1 with \"%2\" within %3 ms; %4")
                .arg(kind, text)
                .arg(limit.count())
                .arg(seenInstead(log, mark))};
    };
    return action;
}

} // namespace

Action parseExpectLed(CommandContext &context, Arguments &arguments)
{
    Device &device = context.device;
    const auto limit = arguments.within(defaultWithin);
    const FrontKey key = arguments.key();
    const int value = arguments.number("VALUE", 0, 255);
    Action action;
    action.poll = [&device, key, value]() -> std::optional<CommandResult> {
        if (device.bed().led(key.panel, key.button) == value)
            return CommandResult();
        return std::nullopt;
    };
    action.limit = limit;
    action.expire = [&device, key, value, limit] {
        return CommandResult{ExitCode::Failed,
            QStringLiteral("LED %1 is %2, expected %3 within %4 ms")
                .arg(keyName(device.layout(), key))
                .arg(device.bed().led(key.panel, key.button))
                .arg(value)
                .arg(limit.count())};
    };
    return action;
}

Action parseExpectRequest(CommandContext &context, Arguments &arguments)
{
    return expectLine(context.device.requests(), context.requestMark, arguments, QStringLiteral("request"));
}

Action parseExpectMessage(CommandContext &context, Arguments &arguments)
{
    return expectLine(context.device.messages(), context.messageMark, arguments, QStringLiteral("message"));
}

Action parseExpectProperty(CommandContext &context, Arguments &arguments)
{
    CoreService &core = context.device.core();
    const auto limit = arguments.within(defaultWithin);
    const QString expectation = arguments.text("PATH=VALUE");
    const qsizetype equals = expectation.indexOf('=');
    if (equals < 1)
        arguments.fail(QStringLiteral("\"%1\" is not PATH=VALUE").arg(expectation));
    const QString path = expectation.left(equals);
    const QString value = expectation.mid(equals + 1);
    Action action;
    action.poll = [&core, path, value]() -> std::optional<CommandResult> {
        if (core.property(path) == value)
            return CommandResult();
        return std::nullopt;
    };
    action.limit = limit;
    action.expire = [&core, path, value, limit] {
        const std::optional<QString> seen = core.property(path);
        return CommandResult{ExitCode::Failed,
            seen ? QStringLiteral("%1 is \"%2\", expected \"%3\" within %4 ms")
                       .arg(path, *seen, value)
                       .arg(limit.count())
                 : QStringLiteral("the device has no property %1").arg(path)};
    };
    return action;
}

Action parseExpectExit(CommandContext &context, Arguments &arguments)
{
    Device &device = context.device;
    const auto limit = arguments.within(defaultWithin);
    const int code = arguments.number("CODE", 0, 255);
    Action action;
    action.begin = [&device] {
        return device.hasProgram()
            ? CommandResult()
            : CommandResult{ExitCode::Failed, QStringLiteral("there is no program that could end")};
    };
    action.poll = [&device, code]() -> std::optional<CommandResult> {
        const std::optional<ProgramEnd> &end = device.programEnd();
        if (!end)
            return std::nullopt;
        if (end->how == ProgramEnd::How::Exited && end->exitCode == code)
            return CommandResult();
        return CommandResult{
            ExitCode::Failed, QStringLiteral("expected exit code %1, but %2").arg(code).arg(end->text)};
    };
    action.limit = limit;
    action.expire = [code, limit] {
        return CommandResult{ExitCode::Failed,
            QStringLiteral("front-panel still runs, expected exit code %1 within %2 ms").arg(code).arg(limit.count())};
    };
    return action;
}
