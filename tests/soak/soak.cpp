// Keeps the real program busy for as long as one likes, and looks after it.

#include "tests/soak/panelcheck.h"
#include "tests/soak/randomoperator.h"

#include <QCommandLineParser>
#include <QDeadlineTimer>
#include <QTest>

#include <cstdio>

using namespace std::chrono_literals;

namespace {

constexpr int warmUp = 100; // losses or presses, until everything has been used once

/// The program's resident memory over a run, measured in whatever the run counts: seconds, losses, presses.
class MemoryRun
{
public:
    MemoryRun(const Device &device, const char *unit)
        : m_device(device)
        , m_unit(unit)
    {
        m_timer.start();
    }
    void note(double at) { m_notes.emplace_back(at, programMemory(m_device)); }
    double seconds() const { return double(m_timer.elapsed()) / 1000; }
    /// How many there were, values evenly spread from the first to the last, and what was gained from this one on.
    void print(int count, double from = 0) const
    {
        std::printf("%d in %.1f s\nresident:", count, seconds());
        constexpr size_t values = 8;
        for (size_t i = 0; i < values && !m_notes.empty(); ++i) {
            const auto [at, kib] = m_notes[i * (m_notes.size() - 1) / (values - 1)];
            std::printf(" %.0f KiB at %s %.4g%s", kib, m_unit, at, i + 1 < values ? "," : "");
        }
        std::printf("\nslope from %s %.4g on: %+.1f KiB per 1000\n", m_unit, from, 1000 * slope(from));
    }

private:
    /// KiB gained per unit: the straight line that lies closest to the notes. @param from those before do not count.
    double slope(double from) const
    {
        double count = 0, x = 0, y = 0, xx = 0, xy = 0;
        for (const auto &[at, kib] : m_notes) {
            if (at < from)
                continue;
            count += 1;
            x += at;
            y += kib;
            xx += at * at;
            xy += at * kib;
        }
        const double spread = count * xx - x * x;
        return spread > 0 ? (count * xy - x * y) / spread : 0;
    }

    const Device &m_device;
    const char *const m_unit;
    QElapsedTimer m_timer;
    std::vector<std::pair<double, double>> m_notes; ///< When, and KiB.
};

/// Everything at random. Empty, or what is wrong with the program at the end.
QString operate(Front &front, QRandomGenerator &random, std::chrono::milliseconds time)
{
    const QImage menu = front.picture();
    RandomOperator everybody(front, random);
    front.device().core().dropLink(); // what the program asks for anew is what changes
    MemoryRun memory(front.device(), "second");
    QDeadlineTimer nextNote(0);
    int deeds = 0;
    for (; memory.seconds() * 1000 < double(time.count()); ++deeds) {
        everybody.act();
        if (front.device().programEnd())
            return front.device().programEnd()->text;
        if (nextNote.hasExpired()) {
            memory.note(memory.seconds());
            nextNote.setRemainingTime(1000);
        }
    }
    everybody.rest();
    if (!QTest::qWaitFor([&front] { return front.device().isProgramReady(); }, 30000))
        return QStringLiteral("the program does not come to rest");
    memory.print(deeds, double(time.count()) / 2000); // over the second half
    const QString problem = menuProblem(front, menu);
    return problem.isEmpty() ? routingProblem(front, random) : problem;
}

/// The link is lost each time as soon as everything has been asked for, or a little later.
QString loseLinks(Front &front, QRandomGenerator &random, int losses)
{
    MemoryRun memory(front.device(), "loss");
    QSignalSpy requests(&front.device(), &Device::requestReceived);
    for (int loss = 1; loss <= losses; ++loss) {
        front.takeRequests();
        front.device().core().dropLink();
        if (!front.device().core().restoreLink())
            return QStringLiteral("the port has been taken");
        if (!comesTrue(requests, [&front] { return front.requests().contains("GET /MANAGEMENT/BOOTLOADER.Progress"); }))
            return QStringLiteral("no connection after loss %1").arg(loss);
        Front::pass(random.bounded(60));
        if (loss >= warmUp && loss % 10 == 0)
            memory.note(loss);
    }
    memory.print(losses);
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
    MemoryRun memory(front.device(), "press");
    for (int press = 0; press < presses; press += 3) {
        // the keys' own LEDs answer the first two, the device's routing the third
        const int source = 1 + press / 3 % 7, destination = 8; // which is never fed by the same source twice
        const FrontKey first = portKey(layout, "source", source), second = portKey(layout, "destination", destination);
        const auto isLit = [&front](FrontKey key, int led) { return front.led(key.panel, key.button) == led; };
        const auto routed = [&] {
            return core.property("/MEDIA/XP/VIDEO.DestinationConnectionStatus")->section(';', 7, 7)
                == QStringLiteral("I%1").arg(source);
        };
        front.tap(first.panel, first.button);
        bool answered = comesTrue(leds, [&] { return isLit(first, 1); });
        front.tap(second.panel, second.button);
        answered = answered && comesTrue(leds, [&] { return isLit(second, 2); });
        front.tap(1, layout.take);
        if (!answered || !comesTrue(changes, routed))
            return QStringLiteral("source, destination or take key, from press %1 on: no answer").arg(press);
        front.takeLeds();
        front.takeRequests();
        if (press >= warmUp && press % 99 == 0)
            memory.note(press);
    }
    memory.print(presses);
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
