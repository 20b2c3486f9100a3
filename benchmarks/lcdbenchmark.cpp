// What the LCD menu costs: the figures of lcdbenchmark-menu, and how long the front-panel program takes to its first
// pictures beside a bare Qt Widgets program, all on Qt's linuxfb platform in the test bed.

#include "benchmarks/lcdbenchmark-common.h"
#include "simulator/coreservice/coreservice.h"
#include "simulator/hardware/programrunner.h"
#include "simulator/hardware/testbed.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QElapsedTimer>
#include <QThread>

#include <chrono>
#include <cstdio>
#include <optional>

namespace {

constexpr int starts = 10;
constexpr QRect wholeLcd(0, 0, TestBed::lcdWidth, TestBed::lcdHeight);
/// Where pages have their title: the picture before there are pages is black there.
constexpr QRect titleBand(0, 0, TestBed::lcdWidth, 40);

constexpr const char *description = R"(What the LCD menu of front-panel costs, on Qt's linuxfb platform in the test bed.

A list page of 48 rows, with all pages of the panel built, as CPU time of the process (medians), as a multiple
of one memcpy of the LCD's 320 x 240 x 4 bytes (the floor), and in pixels: "painted" is the sum of the repaint
regions of all widgets, "bounds" the area of the rectangle around them on the LCD. A frame is the change, and the
layout, painting and flush it brings. An opening goes from showMe() to the complete page in its place, without the
300 ms of the slide; no service is connected: requests are made, but not sent.

The start-up, from the start of the process, in wall and CPU time (medians of 10): up to the first LCD pixel that
is not black, for front-panel the picture before there are pages; and up to the first such pixel in the band of
the titles (y < 40), which is the main menu's or boot notice's: all pages are built then, and the first 60 to 80 ms
of the slide are over. It stands beside a Qt Widgets program with one label.

Idle: front-panel on its main menu, its two games not on the LCD, beside that program with two timers of 20 ms, over
the same 20 s; and what it did to the LCD and asked the device for meanwhile.

Nothing is asserted. Other load on the machine disturbs it, the wall times most.)";

bool isLit(const QImage &picture, const QRect &place)
{
    for (int y = place.top(); y <= place.bottom(); ++y) {
        for (int x = place.left(); x <= place.right(); ++x) {
            if ((picture.pixel(x, y) & RGB_MASK) != 0)
                return true;
        }
    }
    return false;
}

/// From the start of a process, in microseconds.
struct Moment
{
    double wall, cpu;
};

/// When a program, started in a bed of its own, lights its first pixel in the place, and after that in the next.
std::vector<Moment> startUp(const QString &program, const std::vector<QRect> &places)
{
    TestBed bed(frameDescriptors().front());
    if (!bed.errorString().isEmpty())
        qFatal("%s", qPrintable(bed.errorString()));
    ProgramRunner runner;
    const QProcessEnvironment environment = bed.programEnvironment();
    QElapsedTimer timer;
    timer.start();
    runner.start(program, environment);
    clockid_t clock{};
    if (clock_getcpuclockid(pid_t(runner.processId()), &clock) != 0)
        qFatal("%s does not start", qPrintable(program));
    std::vector<Moment> moments;
    while (moments.size() < places.size()) {
        if (timer.hasExpired(30'000) || !runner.isRunning())
            qFatal("%s shows no picture", qPrintable(program));
        if (isLit(bed.lcd(), places[moments.size()]))
            moments.push_back({double(timer.nsecsElapsed()) / 1e3, cpuTime(clock)});
        QCoreApplication::processEvents();
        QThread::usleep(300);
    }
    return moments;
}

Moment medianMoment(const std::vector<Moment> &moments)
{
    std::vector<double> walls, cpus;
    for (const Moment &moment : moments) {
        walls.push_back(moment.wall);
        cpus.push_back(moment.cpu);
    }
    return {median(walls), median(cpus)};
}

void print(const char *name, const std::vector<Moment> &moments, const std::vector<Moment> &floors, const char *aim)
{
    const Moment moment = medianMoment(moments);
    const Moment floor = medianMoment(floors);
    std::printf("%-44s %9.1f %9.2f %9.1f %9.2f   %s\n", name, moment.wall / 1000, moment.wall / floor.wall,
        moment.cpu / 1000, moment.cpu / floor.cpu, aim);
}

void measureStartUps()
{
    std::vector<Moment> bare, picture, pages;
    for (int start = 0; start < starts; ++start) {
        bare.push_back(startUp(QStringLiteral(LCD_LABEL), {wholeLcd}).front());
        const std::vector<Moment> panel = startUp(QStringLiteral(FRONT_PANEL), {wholeLcd, titleBand});
        picture.push_back(panel.front());
        pages.push_back(panel.back());
    }
    std::printf("\n%-44s %9s %9s %9s %9s   %s\n", "", "wall ms", "times", "CPU ms", "times", "aim");
    print("start-up of a bare program with a label", bare, bare, "");
    print("start-up of front-panel, first pixel", picture, bare, "2 times");
    print("... first pixel of a page, all are built", pages, bare, "2 times");
}

void waitFor(std::chrono::milliseconds time)
{
    QElapsedTimer timer;
    timer.start();
    while (!timer.hasExpired(time.count())) {
        QCoreApplication::processEvents();
        QThread::msleep(5);
    }
}

clockid_t clockOf(const ProgramRunner &runner)
{
    clockid_t clock{};
    if (clock_getcpuclockid(pid_t(runner.processId()), &clock) != 0)
        qFatal("the program does not run");
    return clock;
}

void measureIdle()
{
    constexpr std::chrono::seconds settling(5), measured(20);
    const FrameDescriptor &frame = frameDescriptors().front();
    CoreService core(frame);
    if (!core.listen(6107))
        qFatal("port 6107: %s; tests/support/own-network gives a network of its own", qPrintable(core.errorString()));
    int requests = 0;
    QObject::connect(&core, &CoreService::requestReceived, &core, [&requests] { ++requests; });
    TestBed panelBed(frame), bareBed(frame);
    ProgramRunner panel, bare;
    panel.start(QStringLiteral(FRONT_PANEL), panelBed.programEnvironment());
    bare.start(QStringLiteral(LCD_LABEL), bareBed.programEnvironment(), {}, {QStringLiteral("timers")});
    waitFor(settling);
    const QImage before = panelBed.lcd();
    requests = 0;
    const double panelStart = cpuTime(clockOf(panel)), bareStart = cpuTime(clockOf(bare));
    waitFor(measured);
    const double seconds = double(measured.count());
    const double panelCpu = (cpuTime(clockOf(panel)) - panelStart) / seconds;
    const double bareCpu = (cpuTime(clockOf(bare)) - bareStart) / seconds;
    std::printf("\n%-44s %9s %9s\n", "", "CPU us/s", "times");
    std::printf("%-44s %9.0f %9.2f\n", "idle: a bare program with two timers of 20 ms", bareCpu, 1.0);
    std::printf("%-44s %9.0f %9.2f   1.1 times; LCD %s, %d requests\n", "idle: front-panel on the main menu", panelCpu,
        panelCpu / bareCpu, panelBed.lcd() == before ? "unchanged" : "CHANGED", requests);
}

/// Prints what the program prints. @return its exit code.
int measureMenu()
{
    TestBed bed(frameDescriptors().front());
    if (!bed.errorString().isEmpty())
        qFatal("%s", qPrintable(bed.errorString()));
    ProgramRunner runner;
    std::optional<int> exitCode;
    QObject::connect(&runner, &ProgramRunner::messageLogged, &bed,
        [](const QString &line) { std::printf("%s\n", qPrintable(line)); });
    QObject::connect(&runner, &ProgramRunner::startFailed, &bed,
        [](const QString &reason) { qFatal("lcdbenchmark-menu does not start: %s", qPrintable(reason)); });
    QObject::connect(
        &runner, &ProgramRunner::ended, &bed, [&exitCode](int code, bool crashed) { exitCode = crashed ? 1 : code; });
    runner.start(QStringLiteral(LCD_MENU), bed.programEnvironment());
    while (!exitCode)
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    return *exitCode;
}

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    QCommandLineParser parser;
    parser.setApplicationDescription(QLatin1StringView(description));
    parser.addHelpOption();
    parser.process(application);

    if (const int failed = measureMenu(); failed != 0)
        return failed;
    std::fflush(stdout);
    measureStartUps();
    measureIdle();
}
