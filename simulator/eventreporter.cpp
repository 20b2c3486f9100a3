#include "simulator/eventreporter.h"

#include "simulator/device.h"
#include "simulator/frontkey.h"
#include "simulator/printer.h"

using namespace std::chrono_literals;

EventReporter::EventReporter(Device &device, Printer &printer, QObject *parent)
    : QObject(parent)
    , m_device(device)
    , m_printer(printer)
{
    m_settled.setSingleShot(true);
    m_settled.setInterval(30ms);
    connect(&device, &Device::messageLogged, this,
        [this](const QString &line) { m_printer.print(QStringLiteral("front-panel: ") + line); });
    connect(&device, &Device::requestReceived, this, &EventReporter::reportRequest);
    connect(&device.bed(), &TestBed::ledWritten, this, &EventReporter::noteLed);
    connect(&device.bed(), &TestBed::globalAlphaSet, this, [this](int enable, int alpha) {
        m_printer.print(QStringLiteral("overlay: global alpha %1, %2").arg(enable ? "on" : "off").arg(alpha));
    });
    connect(&m_settled, &QTimer::timeout, this, &EventReporter::flush);
}

void EventReporter::reportRequest(const QString &request)
{
    // GET, OPEN and CLOSE come by the dozen and change nothing.
    if (request.startsWith("SET ") || request.startsWith("CALL "))
        m_printer.print(QStringLiteral("request: ") + request);
}

void EventReporter::noteLed()
{
    // The program clears all LEDs before it lights some again; only the outcome is news.
    if (!m_settled.isActive())
        m_settled.start();
}

void EventReporter::flush()
{
    QStringList changes;
    for (int panel = 1; panel <= 3; ++panel) {
        for (int number = 1; number <= 40; ++number) {
            const int value = m_device.bed().led(panel, number);
            int &shown = m_shown[static_cast<size_t>(panel)][static_cast<size_t>(number)];
            if (std::exchange(shown, value) != value)
                changes += QStringLiteral("%1 = %2").arg(keyName(m_device.layout(), {panel, number})).arg(value);
        }
    }
    if (!changes.isEmpty())
        m_printer.print(QStringLiteral("LEDs: ") + changes.join(", "));
}
