#include "simulator/web/ledstate.h"

#include "simulator/hardware/testbed.h"

using namespace std::chrono_literals;

namespace {

/// The program clears all LEDs before it lights some again: only the outcome is news.
constexpr auto settleTime = 10ms;
constexpr int ledCount = 40;

} // namespace

LedState::LedState(const TestBed &bed, int panels, QObject *parent)
    : QObject(parent)
    , m_bed(bed)
    , m_panels(panels)
{
    m_settled.setSingleShot(true);
    m_settled.setTimerType(Qt::PreciseTimer);
    m_settled.setInterval(settleTime);
    connect(&m_settled, &QTimer::timeout, this, &LedState::refresh);
    connect(&bed, &TestBed::ledWritten, this, [this] {
        if (!m_settled.isActive())
            m_settled.start();
    });
    refresh();
}

void LedState::refresh()
{
    for (int panel = 1; panel <= m_panels; ++panel) {
        for (int number = 1; number <= ledCount; ++number) {
            const int value = m_bed.led(panel, number);
            if (std::exchange(m_told[size_t(panel)][size_t(number)], value) != value)
                emit changed(panel, number, value);
        }
    }
}

QJsonObject LedState::message() const
{
    QJsonArray panels;
    for (int panel = 1; panel <= m_panels; ++panel) {
        QJsonArray values;
        for (int number = 1; number <= ledCount; ++number)
            values.append(m_told[size_t(panel)][size_t(number)]);
        panels.append(values);
    }
    return {{"type", "leds"}, {"panels", panels}};
}
