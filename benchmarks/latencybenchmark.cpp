// From a key record written to the panel's device to the record that lights its own LED read back from it, in the test
// bed: the front-panel program beside a bare epoll loop that only echoes, and once more while the core service floods
// it.

#include "simulator/device.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QTimer>

#include <algorithm>
#include <cstdio>
#include <vector>

namespace {

constexpr int presses = 200;
constexpr int takeButton = 33;

struct Latencies
{
    double median, p99; // microseconds
};

/// Presses a source button again and again; each press lights its LED.
Latencies measure(TestBed &bed)
{
    std::vector<double> times;
    QEventLoop loop;
    int button = 0;
    QObject::connect(&bed, &TestBed::ledWritten, &loop, [&](int panel, int number, int value) {
        if (panel == 1 && number == button && value == 1)
            loop.exit(0);
    });
    QTimer guard;
    QObject::connect(&guard, &QTimer::timeout, &loop, [&loop] { loop.exit(1); });
    for (int press = 0; press < presses; ++press) {
        button = 1 + press % 8;
        QElapsedTimer timer;
        guard.start(std::chrono::seconds(10));
        timer.start();
        bed.setButton(1, button, true);
        if (loop.exec() != 0)
            qFatal("No LED record within 10 s");
        times.push_back(double(timer.nsecsElapsed()) / 1000);
        bed.setButton(1, button, false);
        // Take ends the selection; a press at rest lights its LED with the first record, as the floor does.
        bed.setButton(1, takeButton, true);
        bed.setButton(1, takeButton, false);
        QTimer::singleShot(std::chrono::milliseconds(120), &loop, [&loop] { loop.exit(2); });
        while (loop.exec() != 2) { }
    }
    std::sort(times.begin(), times.end());
    return {times[times.size() / 2], times[times.size() * 99 / 100]};
}

void print(const char *what, const Latencies &latencies, const Latencies &floor)
{
    std::printf("%-28s median %7.0f us   99th percentile %7.0f us   %.2f floors\n", what, latencies.median,
        latencies.p99, latencies.median / floor.median);
}

void waitFor(const std::function<bool()> &condition)
{
    for (QElapsedTimer timer =
             [] {
                 QElapsedTimer t;
                 t.start();
                 return t;
             }();
         !condition();) {
        if (timer.hasExpired(30000))
            qFatal("The program is not ready within 30 s");
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 50);
    }
}

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    const FrameDescriptor &frame = frameDescriptors().front();

    Latencies floor{};
    {
        TestBed bed(frame);
        ProgramRunner runner;
        bool ready = false;
        QObject::connect(&runner, &ProgramRunner::messageLogged, &bed, [&ready] { ready = true; });
        runner.start(QStringLiteral(LED_ECHO), bed.programEnvironment());
        waitFor([&ready] { return ready; });
        floor = measure(bed);
    }
    print("epoll echo (the floor)", floor, floor);

    Device device(Device::Setup{&frame, {}, QStringLiteral(FRONT_PANEL), {}});
    if (const QString problem = device.powerOn(); !problem.isEmpty())
        qFatal("%s", qPrintable(problem));
    device.startProgram();
    waitFor([&device] { return device.isProgramReady(); });
    print("front-panel", measure(device.bed()), floor);

    int change = 0; // 20 lines a millisecond, to a node that the program holds open
    QTimer flood;
    QObject::connect(&flood, &QTimer::timeout, &device, [&] {
        for (int line = 0; line < 20; ++line)
            device.core().setProperty(QStringLiteral("/SYS/CECU/LCD.Message"), QString::number(++change));
    });
    flood.start(1);
    print("front-panel, flooded", measure(device.bed()), floor);
    std::printf("%d changes sent meanwhile\n", change);
}
