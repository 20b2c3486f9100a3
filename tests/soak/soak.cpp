// Keeps the real program busy for as long as one likes, and looks after it.

#include "tests/soak/panelcheck.h"
#include "tests/soak/programmemory.h"
#include "tests/soak/randomoperator.h"

#include <QCommandLineParser>
#include <QDeadlineTimer>
#include <QTest>

#include <cstdio>

using namespace std::chrono_literals;

namespace {

constexpr int warmUp = 100; // losses or presses, until everything has been used once

/// Everything at random. Empty, or what is wrong with the program at the end.
QString operate(Front &front, QRandomGenerator &random, std::chrono::milliseconds time)
{
    const QImage menu = front.picture();
    RandomOperator everybody(front, random);
    front.device().core().dropLink(); // what the program asks for anew is what changes
    MemoryRun memory(front.device());
    QElapsedTimer timer;
    QDeadlineTimer nextNote(0);
    int deeds = 0;
    for (timer.start(); timer.elapsed() < time.count(); ++deeds) {
        everybody.act();
        if (front.device().programEnd())
            return front.device().programEnd()->text;
        if (nextNote.hasExpired()) {
            memory.note(double(timer.elapsed()) / 60000);
            nextNote.setRemainingTime(1000);
        }
    }
    everybody.rest();
    if (!QTest::qWaitFor([&front] { return front.device().isProgramReady(); }, 30000))
        return QStringLiteral("the program does not come to rest");
    std::printf("%d deeds in %.1f minutes\n", deeds, double(timer.elapsed()) / 60000);
    memory.print("minute");
    std::printf("slope over the second half: %+.1f KiB a minute\n", memory.slope(double(time.count()) / 120000));
    const QString problem = menuProblem(front, menu);
    return problem.isEmpty() ? routingProblem(front, random) : problem;
}

void report(MemoryRun &memory, const char *unit, int count, double seconds)
{
    std::printf("%d in %.1f s\n", count, seconds);
    memory.print(unit);
    std::printf("slope: %+.1f KiB per 1000\n", 1000 * memory.slope());
}

/// The link is lost each time as soon as everything has been asked for, or a little later.
QString loseLinks(Front &front, QRandomGenerator &random, int losses)
{
    MemoryRun memory(front.device());
    QElapsedTimer timer;
    timer.start();
    QSignalSpy requests(&front.device(), &Device::requestReceived);
    for (int loss = 1; loss <= losses; ++loss) {
        front.takeRequests();
        front.device().core().dropLink();
        if (!front.device().core().restoreLink())
            return QStringLiteral("the port has been taken");
        if (!comesTrue(requests, [&front] { return front.requests().contains("GET /MANAGEMENT/BOOTLOADER.Progress"); }))
            return QStringLiteral("no connection after loss %1").arg(loss);
        const QDeadlineTimer deadline(random.bounded(60));
        (void)QTest::qWaitFor([&deadline] { return deadline.hasExpired(); });
        if (loss >= warmUp && loss % 10 == 0)
            memory.note(loss);
    }
    report(memory, "loss", losses, double(timer.elapsed()) / 1000);
    return QTest::qWaitFor([&front] { return front.device().isProgramReady(); }, 30000)
        ? routingProblem(front, random)
        : QStringLiteral("the program does not come to rest");
}

/// Source, destination and take in turn, each as soon as the one before is answered.
QString pressKeys(Front &front, QRandomGenerator &random, int presses)
{
    const PanelLayout &layout = front.device().layout();
    CoreService &core = front.device().core();
    QSignalSpy leds(&front.device().bed(), &TestBed::ledWritten);
    QSignalSpy changes(&core, &CoreService::changed);
    MemoryRun memory(front.device());
    QElapsedTimer timer;
    timer.start();
    for (int press = 0; press < presses; press += 3) {
        // the keys' own LEDs answer the first two, the device's routing the third
        const int source = 1 + press / 3 % 7, destination = 8; // which is never fed by the same source twice
        const PortKey first = sourceKey(layout, source), second = destinationKey(layout, destination);
        front.tap(first.panel, first.button);
        if (!comesTrue(leds, [&] { return front.led(first.panel, first.button) == 1; }))
            return QStringLiteral("source key, press %1: no answer").arg(press);
        front.tap(second.panel, second.button);
        if (!comesTrue(leds, [&] { return front.led(second.panel, second.button) == 2; }))
            return QStringLiteral("destination key, press %1: no answer").arg(press + 1);
        front.tap(1, layout.take);
        const auto routed = [&] {
            return core.property("/MEDIA/XP/VIDEO.DestinationConnectionStatus")->section(';', 7, 7)
                == QStringLiteral("I%1").arg(source);
        };
        if (!comesTrue(changes, routed))
            return QStringLiteral("take key, press %1: no answer").arg(press + 2);
        front.takeLeds();
        front.takeRequests();
        if (press >= warmUp && press % 99 == 0)
            memory.note(press);
    }
    report(memory, "press", presses, double(timer.elapsed()) / 1000);
    return routingProblem(front, random);
}

/// A frame with a front of its own: the others have nothing to press.
int anyRow(QRandomGenerator &random)
{
    int row = 0;
    do
        row = random.bounded(int(frameDescriptors().size()));
    while (frameDescriptors()[size_t(row)].layoutId() == 0);
    return row + 1;
}

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    QCommandLineParser parser;
    const QCommandLineOption minutes("minutes", "Random keys, changes and losses for so long.", "N", "1");
    const QCommandLineOption seed(
        "seed", "What the random numbers start from.", "S", QString::number(QRandomGenerator::global()->generate()));
    const QCommandLineOption losses("losses", "Nothing but so many losses of the link.", "N");
    const QCommandLineOption presses("presses", "Nothing but so many key presses.", "N");
    const QCommandLineOption speed("speed",
        "The program's clock runs N times as fast (takes the package libfaketime): it connects anew each 1/N s.", "N");
    parser.addHelpOption();
    parser.addOptions({minutes, seed, losses, presses, speed});
    parser.process(application);

    std::setvbuf(stdout, nullptr, _IOLBF, 0);
    QRandomGenerator random(parser.value(seed).toUInt());
    const int row = anyRow(random);
    std::printf("seed %s, frame %d\n", qPrintable(parser.value(seed)), row);
    if (parser.isSet(speed)) { // what we start inherits it
        qputenv("LD_PRELOAD", "/usr/$LIB/faketime/libfaketime.so.1");
        qputenv("FAKETIME", "+0 x" + parser.value(speed).toUtf8());
    }
    Front front(row); // one that does not end well ends this process too
    QString problem;
    if (!front.start())
        problem = QStringLiteral("the program does not start");
    else if (!front.messages().filter("cannot be preloaded").isEmpty())
        problem = QStringLiteral("nothing makes its clock faster: apt-get install libfaketime");
    else if (parser.isSet(losses))
        problem = loseLinks(front, random, parser.value(losses).toInt());
    else if (parser.isSet(presses))
        problem = pressKeys(front, random, parser.value(presses).toInt());
    else
        problem = operate(front, random, std::chrono::milliseconds(qint64(parser.value(minutes).toDouble() * 60000)));
    std::printf("%s\n", problem.isEmpty() ? "good" : qPrintable(problem));
    return problem.isEmpty() ? 0 : 1;
}
