#include "tests/soak/panelcheck.h"

#include <QFile>
#include <QTest>

namespace {

const QString crosspoint = "/MEDIA/XP/VIDEO";

QString field(Front &front, const char *list, int port)
{
    return front.device().core().property(crosspoint + '.' + list)->section(';', port - 1, port - 1);
}

int sourceOf(Front &front, int destination)
{
    return field(front, "DestinationConnectionStatus", destination).mid(1).toInt();
}

/// The LEDs of the ports show this source and this destination alone. @param source, destination 0 for none.
bool isShown(Front &front, int source, int destination)
{
    const PanelLayout &layout = front.device().layout();
    bool shown = true;
    const auto show = [&](const QString &kind, int count, int only) {
        for (int port = 1; port <= count; ++port) {
            const FrontKey key = portKey(layout, kind, port);
            shown = shown && (!key.panel || front.led(key.panel, key.button) == (port == only));
        }
    };
    show("source", layout.sourceCount, source);
    show("destination", layout.destinationCount, destination);
    return shown;
}

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

double programMemory(const Device &device)
{
    QFile status(QStringLiteral("/proc/%1/status").arg(device.programProcessId()));
    if (!status.open(QIODevice::ReadOnly))
        return 0;
    return QString::fromLatin1(status.readAll()).section("VmRSS:", 1).section("kB", 0, 0).toDouble();
}

bool comesTrue(QSignalSpy &spy, const std::function<bool()> &condition)
{
    bool inTime = true;
    while (inTime && !condition())
        inTime = spy.wait(20000);
    spy.clear();
    return inTime;
}

FrontKey portKey(const PanelLayout &layout, const QString &kind, int port)
{
    FrontKey key;
    QStringList words{kind, QString::number(port)};
    (void)takeKey(layout, &words, &key);
    return key;
}

QString menuProblem(Front &front, const QImage &menu)
{
    for (int level = 0; front.picture() != menu; ++level) {
        if (level == 24) {
            front.picture().save(QStringLiteral("soak.png"));
            return QStringLiteral("Escapes do not lead to the menu; what is on the LCD is in soak.png");
        }
        front.tapKey(TestBed::escapeKey);
        front.turn(-30); // to the first row
    }
    const TestBed &bed = front.device().bed();
    front.turn(1);
    if (!QTest::qWaitFor([&] { return bed.lcd() != menu; }))
        return QStringLiteral("the menu does not follow the knob");
    front.picture();
    front.turn(-1);
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
    const int destinations = std::min(layout.destinationCount, front.device().frame().outputPortCount());
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
        const FrontKey key = portKey(layout, "destination", destination);
        front.tap(key.panel, key.button);
        if (!QTest::qWaitFor(agrees))
            return QStringLiteral("destination %1 has source %2%3, and the LEDs show %4")
                .arg(destination)
                .arg(source)
                .arg(locked ? " and is locked" : "", front.litLeds());
    }
    const int destination = 1 + random.bounded(destinations);
    core.callMethod(crosspoint + ":unlockDestination", QStringLiteral("O%1").arg(destination));
    const int source = sourceOf(front, destination) % layout.sourceCount + 1;
    if (!hasHeardAll(front))
        return QStringLiteral("the panel does not follow its lock at the end");
    const auto press = [&front](FrontKey key, int led) { // one by one: each panel is a device of its own
        front.tap(key.panel, key.button);
        return QTest::qWaitFor([&front, key, led] { return front.led(key.panel, key.button) == led; });
    };
    if (!press(portKey(layout, "source", source), 1) || !press(portKey(layout, "destination", destination), 2))
        return QStringLiteral("source %1 and destination %2 are not to be selected; the LEDs show %3")
            .arg(source)
            .arg(destination)
            .arg(front.litLeds());
    front.tap(1, layout.take);
    if (!QTest::qWaitFor([&] { return sourceOf(front, destination) == source; }))
        return QStringLiteral("the keys do not route source %1 to destination %2").arg(source).arg(destination);
    return {};
}
