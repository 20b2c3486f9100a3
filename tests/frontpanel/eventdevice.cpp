#include "eventdevice.h"

#include <QKeyEvent>
#include <QTest>

#include <cstring>
#include <linux/input-event-codes.h>
#include <poll.h>
#include <pty.h>
#include <unistd.h>

namespace {

template <typename Number> void append(QByteArray &bytes, int number)
{
    const auto value = static_cast<Number>(number);
    bytes.append(reinterpret_cast<const char *>(&value), sizeof value);
}

template <typename Number> int numberAt(const QByteArray &bytes, int offset)
{
    Number value;
    std::memcpy(&value, bytes.constData() + offset, sizeof value);
    return static_cast<int>(value);
}

} // namespace

QByteArray eventRecord(int seconds, int microseconds, int type, int code, int value)
{
    QByteArray bytes;
    append<int32_t>(bytes, seconds);
    append<int32_t>(bytes, microseconds);
    append<uint16_t>(bytes, type);
    append<uint16_t>(bytes, code);
    append<int32_t>(bytes, value);
    return bytes;
}

EventDevice::EventDevice()
{
    char path[64] = "";
    if (::openpty(&m_far, &m_near, path, nullptr, nullptr) != 0)
        qFatal("No pseudo-terminal: %s", std::strerror(errno));
    termios mode{};
    ::tcgetattr(m_near, &mode);
    ::cfmakeraw(&mode);
    ::tcsetattr(m_near, TCSANOW, &mode);
    m_path = path;
}

EventDevice::~EventDevice()
{
    ::close(m_near);
    vanish();
}

void EventDevice::vanish()
{
    if (m_far >= 0)
        ::close(m_far);
    m_far = -1;
}

bool EventDevice::send(const QByteArray &bytes)
{
    return ::write(m_far, bytes.constData(), static_cast<size_t>(bytes.size())) == bytes.size();
}

QByteArray EventDevice::receive(qsizetype size)
{
    QByteArray bytes;
    pollfd waiting{m_far, POLLIN, 0};
    while (bytes.size() < size && ::poll(&waiting, 1, 5000) == 1) {
        char chunk[1024];
        const auto missing = static_cast<size_t>(size - bytes.size());
        const ssize_t got = ::read(m_far, chunk, std::min(missing, sizeof chunk));
        if (got < 1)
            break;
        bytes.append(chunk, got);
    }
    return bytes;
}

PanelFront::PanelFront()
{
    for (size_t p = 0; p < 3; ++p)
        m_panels[p] = std::make_unique<ControlPanelHandler>(m_devices[p].path(), 40 * static_cast<int>(p));
}

std::array<ControlPanelHandler *, 3> PanelFront::panels() const
{
    return {m_panels[0].get(), m_panels[1].get(), m_panels[2].get()};
}

QStringList PanelFront::takeWrites()
{
    constexpr int endMark = 0xffff; // comes back after everything that was written before it
    QStringList writes;
    for (size_t p = 0; p < 3; ++p) {
        m_panels[p]->setLed(endMark, 0);
        while (true) {
            const QByteArray record = m_devices[p].receive(16);
            if (record.size() != 16 || numberAt<uint16_t>(record, 8) != EV_LED)
                return {"no LED record"};
            const int led = numberAt<uint16_t>(record, 10);
            const int value = numberAt<int32_t>(record, 12);
            if (led == endMark)
                break;
            const int panel = static_cast<int>(p) + 1;
            writes += QString("%1.%2=%3").arg(panel).arg(led).arg(value);
            m_lit[{panel, led}] = value;
        }
    }
    return writes;
}

QStringList PanelFront::lit()
{
    takeWrites();
    QStringList lit;
    for (auto led = m_lit.cbegin(); led != m_lit.cend(); ++led) {
        if (led.value() != 0 && led.key().second != 0)
            lit += QString("%1.%2=%3").arg(led.key().first).arg(led.key().second).arg(led.value());
    }
    return lit;
}

bool KeyRecorder::focus()
{
    setFocusPolicy(Qt::StrongFocus);
    window()->show();
    setFocus();
    return QTest::qWaitForWindowActive(window()) && hasFocus();
}

void KeyRecorder::note(QKeyEvent *event, char what)
{
    const int key = event->key();
    m_keys += (key < 128 ? QString(QChar(key)) : QString::number(key)) + what;
}
