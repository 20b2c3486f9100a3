#include "panelfront.h"

#include "simulator/hardware/inputrecord.h"

#include <QKeyEvent>
#include <QTest>

#include <linux/input-event-codes.h>
#include <poll.h>
#include <unistd.h>

QByteArray record(int type, int code, int value, std::chrono::microseconds time)
{
    return encodeRecord({uint16_t(type), uint16_t(code), value}, time, RecordFormat::Compact);
}

QStringList PanelFront::takeWrites()
{
    constexpr int endMark = 0xffff; // comes back after everything that was written before it
    QStringList writes;
    for (size_t p = 0; p < 3; ++p) {
        panels()[p]->setLed(endMark, 0);
        while (true) {
            QByteArray bytes(compactRecordSize, 0);
            pollfd device{m_devices[p].fd(), POLLIN, 0};
            const bool whole = ::poll(&device, 1, 5000) == 1 && ::read(device.fd, bytes.data(), 16) == 16;
            const auto [type, led, value] = decodeCompactRecord(bytes.constData());
            if (!whole || bytes != record(EV_LED, led, value))
                return {"no LED record"};
            if (led == endMark)
                break;
            const int place = 100 * static_cast<int>(p) + led;
            writes += QString("%1.%2=%3").arg(p + 1).arg(led).arg(value);
            m_lit.remove(place);
            if (led != 0 && value != 0)
                m_lit[place] = writes.last();
        }
    }
    return writes;
}

QStringList PanelFront::lit()
{
    takeWrites();
    return m_lit.values();
}

bool KeyRecorder::focus()
{
    window()->show();
    setFocus();
    return QTest::qWaitForWindowActive(window()) && hasFocus();
}

void KeyRecorder::note(QKeyEvent *event, char what)
{
    const int key = event->key();
    keys += (key > 700 && key < 830 ? QString::number(key) : QKeySequence(key).toString()) + what;
    event->ignore();
}
