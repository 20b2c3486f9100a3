#pragma once

#include "benchmarks/lcdbenchmark-common.h"
#include "ui/screen.h"

#include <QApplication>
#include <QFile>
#include <QPaintEvent>
#include <QWidget>

#include <cstdio>
#include <cstring>

// One frame of the LCD: what it costs, what it repaints, and whether it is to be seen.

inline constexpr QRect lcd = Screen::wholeLcd;
inline constexpr size_t lcdBytes = size_t(lcd.width()) * size_t(lcd.height()) * 4;

inline int pixels(const QRegion &region)
{
    int count = 0;
    for (const QRect &rect : region)
        count += rect.width() * rect.height();
    return count;
}

/// What all widgets repaint, while it filters the application's events.
struct Repaints : QObject
{
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() == QEvent::Paint) {
            const auto *widget = static_cast<QWidget *>(watched);
            const QRegion &region = static_cast<QPaintEvent *>(event)->region();
            painted += pixels(region);
            onLcd += region.translated(widget->mapTo(widget->window(), QPoint()));
        }
        return false;
    }

    int painted = 0;
    QRegion onLcd;
};

/// The present contents of the LCD.
inline QByteArray picture()
{
    static QFile device(QStringLiteral("/dev/fb0"));
    static const uchar *const memory
        = device.open(QIODevice::ReadWrite) ? device.map(0, qint64(lcdBytes)) : static_cast<uchar *>(nullptr);
    if (!memory)
        qFatal("No LCD: lcdbenchmark starts this program in its test bed");
    return {reinterpret_cast<const char *>(memory), qsizetype(lcdBytes)};
}

/// Counting disturbs the times: each has frames of its own.
enum class Pass { Time, Count };

/// In the numbers of its pass.
struct Frame
{
    double microseconds = 0;
    int painted = 0;
    QRegion onLcd;
    bool seen = false; ///< The LCD has changed.
};

/// What the last change brings: layout, painting, and the flush to the LCD, which are all posted events. Timers, and so
/// the animations, stand still.
inline void finishFrame()
{
    for (int round = 0; round < 3; ++round) // one that is posted meanwhile may be left for the next
        QCoreApplication::sendPostedEvents();
}

/// Does something, and measures it with what it brings.
template <typename Action> Frame makeFrame(Pass pass, Action action)
{
    if (pass == Pass::Time) {
        const double start = cpuTime();
        action();
        finishFrame();
        return {cpuTime() - start, 0, {}, false};
    }
    const QByteArray before = picture();
    Repaints repaints;
    qApp->installEventFilter(&repaints);
    action();
    finishFrame();
    return {0, repaints.painted, repaints.onLcd, picture() != before};
}

/// The frames of one kind.
struct Figure
{
    std::vector<double> times, painted, bounds;
    size_t seen = 0;

    void add(Pass pass, const Frame &frame)
    {
        if (pass == Pass::Time) {
            times.push_back(frame.microseconds);
            return;
        }
        const QRect around = frame.onLcd.boundingRect() & lcd;
        painted.push_back(frame.painted);
        bounds.push_back(around.width() * around.height());
        seen += frame.seen;
    }

    /// @param floor in microseconds. @param aim in floors; 0 for none.
    void print(const char *name, double floor, int aim = 0) const
    {
        if (2 * seen <= painted.size()) // a black margin may move over black
            qFatal("%s: most of its frames have not reached the LCD", name);
        std::printf("%-44s %9.1f %9.1f %8.0f %8.0f", name, median(times), median(times) / floor, median(painted),
            median(bounds));
        if (aim > 0)
            std::printf("   %d floors", aim);
        std::printf("\n");
    }
};
