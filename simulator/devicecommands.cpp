#include "simulator/commandparsers.h"
#include "simulator/device.h"

#include <QRegularExpression>

namespace {

/// A command that is done when this has been done; empty text stands for success.
Action atOnce(const std::function<QString()> &perform)
{
    Action action;
    action.begin = [perform] {
        const QString error = perform();
        return error.isEmpty() ? CommandResult() : CommandResult{ExitCode::Failed, error};
    };
    return action;
}

} // namespace

Action parseSet(CommandContext &context, Arguments &arguments)
{
    CoreService &core = context.device.core();
    const QString assignment = arguments.text("PATH=VALUE");
    const qsizetype equals = assignment.indexOf('=');
    if (equals < 1)
        arguments.fail(QStringLiteral("\"%1\" is not PATH=VALUE").arg(assignment));
    return atOnce([&core, path = assignment.left(equals), value = assignment.mid(equals + 1)] {
        return core.setProperty(path, value) ? QString() : QStringLiteral("the device has no property %1").arg(path);
    });
}

Action parseGet(CommandContext &context, Arguments &arguments)
{
    CoreService &core = context.device.core();
    Action action;
    action.begin = [&core, path = arguments.word("PATH")] {
        const std::optional<QString> value = core.property(path);
        if (!value)
            return CommandResult{ExitCode::Failed, QStringLiteral("the device has no property %1").arg(path)};
        return CommandResult{ExitCode::Ok, path + '=' + *value};
    };
    return action;
}

Action parseCall(CommandContext &context, Arguments &arguments)
{
    static const QRegularExpression form(QStringLiteral("\\A(/[^(]*:[^(]+)\\((.*)\\)\\z"));
    CoreService &core = context.device.core();
    const QString text = arguments.text("PATH:METHOD(ARGUMENTS)");
    const QRegularExpressionMatch match = form.match(text);
    if (!match.hasMatch())
        arguments.fail(QStringLiteral("\"%1\" is not PATH:METHOD(ARGUMENTS)").arg(text));
    return atOnce([&core, path = match.captured(1), list = match.captured(2)] { return core.callMethod(path, list); });
}

Action parseLinkDrop(CommandContext &context, Arguments &)
{
    CoreService &core = context.device.core();
    return atOnce([&core] {
        core.dropLink();
        return QString();
    });
}

Action parseLinkRestore(CommandContext &context, Arguments &)
{
    CoreService &core = context.device.core();
    return atOnce([&core] {
        if (core.restoreLink())
            return QString();
        return QStringLiteral("port %1 cannot be taken again: %2; \"ss -ltnp\" shows who has it")
            .arg(core.port())
            .arg(core.errorString());
    });
}

Action parseUpgrade(CommandContext &context, Arguments &arguments)
{
    CoreService &core = context.device.core();
    const double seconds = arguments.decimal("SECONDS", 0.1, 3600);
    return atOnce([&core, duration = std::chrono::milliseconds(qRound64(seconds * 1000))] {
        core.startUpgrade(duration);
        return QString();
    });
}

Action parsePresetAdd(CommandContext &context, Arguments &arguments)
{
    CoreService &core = context.device.core();
    return atOnce([&core, name = arguments.text("NAME")] { return core.addPreset(name); });
}

Action parsePresetRemove(CommandContext &context, Arguments &arguments)
{
    CoreService &core = context.device.core();
    return atOnce([&core, name = arguments.text("NAME")] {
        if (core.removePreset(name))
            return QString();
        return QStringLiteral("there is no preset \"%1\", only: %2").arg(name, core.presetNames().join(", "));
    });
}
