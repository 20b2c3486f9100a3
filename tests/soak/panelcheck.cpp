#include "tests/soak/panelcheck.h"

#include <QTest>

namespace {

const QString crosspoint = "/MEDIA/XP/VIDEO";

PortKey keyOf(const std::array<PortRun, 3> &runs, int port)
{
    for (const PortRun &run : runs) {
        if (port >= run.firstNumber && port < run.firstNumber + run.count)
            return {run.panel, run.firstButton + port - run.firstNumber};
    }
    return {};
}

QString field(Front &front, const char *list, int port)
{
    return front.device().core().property(crosspoint + '.' + list)->section(';', port - 1, port - 1);
}

int sourceOf(Front &front, int destination)
{
    return field(front, "DestinationConnectionStatus", destination).mid(1).toInt();
}

int destinationCount(const Device &device)
{
    return std::min(device.layout().destinationCount, device.frame().outputPortCount());
}

/// The LEDs of the ports show this source and this destination alone. @param source, destination 0 for none.
bool isShown(Front &front, int source, int destination)
{
    const auto shows
        = [&front](PortKey key, bool lit) { return !key.panel || front.led(key.panel, key.button) == lit; };
    const PanelLayout &layout = front.device().layout();
    bool shown = true;
    for (int port = 1; port <= layout.sourceCount; ++port)
        shown = shown && shows(sourceKey(layout, port), port == source);
    for (int port = 1; port <= layout.destinationCount; ++port)
        shown = shown && shows(destinationKey(layout, port), port == destination);
    return shown;
}

/// "panel.led=value" each, the dark ones left out.
QString litLeds(const Front &front)
{
    QStringList lit;
    for (int panel = 1; panel <= 3; ++panel) {
        for (int number = 1; number <= 40; ++number) {
            if (const int value = front.led(panel, number))
                lit.append(QStringLiteral("%1.%2=%3").arg(panel).arg(number).arg(value));
        }
    }
    return lit.join(' ');
}

void tap(Front &front, PortKey key) { front.tap(key.panel, key.button); }

/// Lines arrive in order: once the program has followed the panel lock, it has heard all there was before.
bool hasHeardAll(Front &front)
{
    const auto follows = [&front](const char *locked, int led) {
        front.device().core().setProperty("/SYS/CECU/LCD.ControlLock", locked);
        return QTest::qWaitFor([&] { return front.led(1, PanelLayout::controlLock) == led; });
    };
    return follows("true", 1) && follows("false", 0);
}

} // namespace

bool comesTrue(QSignalSpy &spy, const std::function<bool()> &condition)
{
    bool inTime = true;
    while (inTime && !condition())
        inTime = spy.wait(20000);
    spy.clear();
    return inTime;
}

PortKey sourceKey(const PanelLayout &layout, int source) { return keyOf(layout.sources, source); }

PortKey destinationKey(const PanelLayout &layout, int destination) { return keyOf(layout.destinations, destination); }

QString menuProblem(Front &front, const QImage &menu)
{
    TestBed &bed = front.device().bed();
    const auto escape = [&bed] {
        bed.setKeyboardKey(TestBed::escapeKey, true);
        bed.setKeyboardKey(TestBed::escapeKey, false);
        bed.turnKnob(-30, TestBed::slowDetent); // to the first row
    };
    for (int level = 0; front.picture() != menu; ++level) {
        if (level == 24) {
            front.picture().save(QStringLiteral("soak.png"));
            return QStringLiteral("Escapes do not lead to the menu; what is on the LCD is in soak.png");
        }
        escape();
    }
    bed.turnKnob(1, TestBed::slowDetent);
    if (!QTest::qWaitFor([&] { return bed.lcd() != menu; }))
        return QStringLiteral("the menu does not follow the knob");
    front.picture();
    bed.turnKnob(-1, TestBed::slowDetent);
    if (!QTest::qWaitFor([&] { return bed.lcd() == menu; }))
        return QStringLiteral("the menu does not follow the knob back");
    return {};
}

QString routingProblem(Front &front, QRandomGenerator &random)
{
    if (!QTest::qWaitFor([&front] { return isShown(front, 0, 0); }, 10000))
        return QStringLiteral("the LEDs do not come to rest");
    CoreService &core = front.device().core();
    const PanelLayout &layout = front.device().layout();
    const int destinations = destinationCount(front.device());
    for (int destination = 1; destination <= destinations; ++destination) {
        const int source = 1 + random.bounded(layout.sourceCount);
        core.callMethod(crosspoint + ":connect", QStringLiteral("I%1:-O%2").arg(source).arg(destination));
        if (random.bounded(3) == 0)
            core.callMethod(crosspoint + ":lockDestination", QStringLiteral("O%1").arg(destination));
    }
    if (!hasHeardAll(front))
        return QStringLiteral("the panel does not follow its lock");
    for (int destination = 1; destination <= destinations; ++destination) {
        const int source = sourceOf(front, destination);
        const bool locked = field(front, "DestinationPortStatus", destination).startsWith('L');
        const auto agrees = [&] {
            return isShown(front, source, destination) && front.led(1, PanelLayout::destinationLock) == locked;
        };
        tap(front, destinationKey(layout, destination));
        if (!QTest::qWaitFor(agrees))
            return QStringLiteral("destination %1 has source %2%3, and the LEDs show %4")
                .arg(destination)
                .arg(source)
                .arg(locked ? " and is locked" : "", litLeds(front));
    }
    const int destination = 1 + random.bounded(destinations);
    core.callMethod(crosspoint + ":unlockDestination", QStringLiteral("O%1").arg(destination));
    const int source = sourceOf(front, destination) % layout.sourceCount + 1;
    if (!hasHeardAll(front))
        return QStringLiteral("the panel does not follow its lock at the end");
    const PortKey first = sourceKey(layout, source), second = destinationKey(layout, destination);
    const auto press = [&front](PortKey key, int led) { // one by one: each panel is a device of its own
        tap(front, key);
        return QTest::qWaitFor([&front, key, led] { return front.led(key.panel, key.button) == led; });
    };
    if (!press(first, 1) || !press(second, 2))
        return QStringLiteral("source %1 and destination %2 are not to be selected; the LEDs show %3")
            .arg(source)
            .arg(destination)
            .arg(litLeds(front));
    front.tap(1, layout.take);
    if (!QTest::qWaitFor([&] { return sourceOf(front, destination) == source; }))
        return QStringLiteral("the keys do not route source %1 to destination %2").arg(source).arg(destination);
    return {};
}
