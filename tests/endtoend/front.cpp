#include "tests/endtoend/front.h"

#include <QDeadlineTimer>
#include <QTest>

Front::Front(int row, const HardwareFaults &faults)
    : m_device(Device::Setup{&frameDescriptors()[size_t(row - 1)], faults, QStringLiteral(FRONT_PANEL), {}})
{
    connect(&m_device.bed(), &TestBed::ledWritten, this, [this](int panel, int number, int value) {
        m_leds.append(QStringLiteral("%1.%2=%3").arg(panel).arg(number).arg(value));
    });
    connect(&m_device, &Device::requestReceived, this, [this](const QString &line) { m_requests.append(line); });
    connect(&m_device, &Device::messageLogged, this, [this](const QString &line) { m_messages.append(line); });
}

Front::~Front()
{
    if (!m_device.stopProgram())
        qFatal("the program did not end well:\n%s", qPrintable(m_messages.join('\n')));
}

bool Front::start()
{
    const QString problem = m_device.powerOn();
    if (!problem.isEmpty()) {
        qWarning("%s", qPrintable(problem));
        return false;
    }
    m_device.startProgram();
    const bool ready = QTest::qWaitFor([this] { return m_device.isProgramReady(); }, 30000);
    takeLeds();
    takeRequests();
    return ready;
}

void Front::tap(int panel, int button)
{
    hold(panel, button, true);
    hold(panel, button, false);
}

void Front::tapKey(int code)
{
    m_device.bed().setKeyboardKey(code, true);
    m_device.bed().setKeyboardKey(code, false);
}

void Front::pass(int milliseconds)
{
    const QDeadlineTimer deadline(milliseconds);
    (void)QTest::qWaitFor([&deadline] { return deadline.hasExpired(); }, milliseconds + 5000);
}

QString Front::litLeds() const
{
    QStringList lit;
    for (int panel = 1; panel <= 3; ++panel) {
        for (int number = 1; number <= 40; ++number) {
            if (const int value = led(panel, number))
                lit.append(QStringLiteral("%1.%2=%3").arg(panel).arg(number).arg(value));
        }
    }
    return lit.join(' ');
}

QImage Front::picture() const
{
    QImage last;
    QElapsedTimer still;
    const auto rests = [&] {
        const QImage now = m_device.bed().lcd();
        if (now != last || !m_device.isProgramIdle()) { // it may not have had the time to change it
            last = now;
            still.start();
        }
        return still.hasExpired(400);
    };
    if (!QTest::qWaitFor(rests, 20000))
        qWarning("the LCD never rests");
    return last;
}
