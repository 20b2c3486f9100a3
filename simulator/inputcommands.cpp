#include "simulator/commandparsers.h"
#include "simulator/device.h"

using namespace std::chrono_literals;

namespace {

constexpr auto tapTime = 50ms;

Action setButton(TestBed &bed, FrontKey key, bool pressed)
{
    Action action;
    action.begin = [&bed, key, pressed] {
        bed.setButton(key.panel, key.button, pressed);
        return CommandResult();
    };
    return action;
}

/// Down, and up again after this time.
Action hold(std::chrono::milliseconds time, const std::function<void(bool pressed)> &set)
{
    Action action;
    action.begin = [set] {
        set(true);
        return CommandResult();
    };
    action.limit = time;
    action.expire = [set] {
        set(false);
        return CommandResult();
    };
    return action;
}

Action holdKeyboardKey(CommandContext &context, Arguments &arguments, int code)
{
    TestBed &bed = context.device.bed();
    return hold(arguments.time("MS", tapTime), [&bed, code](bool pressed) { bed.setKeyboardKey(code, pressed); });
}

} // namespace

Action parsePress(CommandContext &context, Arguments &arguments)
{
    return setButton(context.device.bed(), arguments.key(), true);
}

Action parseRelease(CommandContext &context, Arguments &arguments)
{
    return setButton(context.device.bed(), arguments.key(), false);
}

Action parseTap(CommandContext &context, Arguments &arguments)
{
    TestBed &bed = context.device.bed();
    const FrontKey key = arguments.key();
    return hold(
        arguments.time("MS", tapTime), [&bed, key](bool pressed) { bed.setButton(key.panel, key.button, pressed); });
}

Action parseTurn(CommandContext &context, Arguments &arguments)
{
    TestBed &bed = context.device.bed();
    const int detents = arguments.number("N", -1000, 1000);
    const auto spacing = arguments.takeWord("fast") ? TestBed::fastDetent : TestBed::slowDetent;
    if (spacing == TestBed::slowDetent)
        arguments.takeWord("slow");
    Action action;
    action.begin = [&bed, detents, spacing] {
        bed.turnKnob(detents, spacing);
        return CommandResult();
    };
    return action;
}

Action parsePush(CommandContext &context, Arguments &arguments)
{
    return holdKeyboardKey(context, arguments, TestBed::pushKey);
}

Action parseEscape(CommandContext &context, Arguments &arguments)
{
    return holdKeyboardKey(context, arguments, TestBed::escapeKey);
}
