#include "frontpanel/rotaryencoderhandler.h"

#include <QApplication>
#include <QKeyEvent>
#include <QWidget>

#include <fcntl.h>
#include <linux/input-event-codes.h>

namespace {

constexpr InputDevice::Kind encoderKind{O_RDONLY, "rotary encoder device", "rotary events"};
constexpr int64_t fastDetentMicroseconds = 50'000;

void postKey(int key)
{
    QWidget *focus = QApplication::focusWidget();
    if (!focus)
        return;
    for (const auto type : {QEvent::KeyPress, QEvent::KeyRelease})
        QCoreApplication::postEvent(focus, new QKeyEvent(type, key, Qt::NoModifier)); // the event queue owns it
}

} // namespace

RotaryEncoderHandler::RotaryEncoderHandler(const QString &devicePath)
    : m_device(devicePath, encoderKind, this)
{
    if (const QSocketNotifier *notifier = m_device.notifier())
        connect(notifier, &QSocketNotifier::activated, this, &RotaryEncoderHandler::processEvent);
}

void RotaryEncoderHandler::processEvent()
{
    for (const InputRecord &record : m_device.read()) {
        if (record.type == EV_REL && record.code == REL_X)
            m_direction = record.value;
        else if (record.type == EV_SYN)
            closeDetent(record);
    }
}

void RotaryEncoderHandler::closeDetent(const InputRecord &sync)
{
    const bool soon = soonAfterLastSync(sync);
    if (soon && m_direction == m_previousDirection) {
        postKey(m_direction == 1 ? Qt::Key_E : Qt::Key_Q);
        return;
    }
    postKey(m_direction == 1 ? Qt::Key_D : Qt::Key_A);
    m_previousDirection = m_direction;
}

/// Also true when the clock was set back. Remembers the time for the next call.
bool RotaryEncoderHandler::soonAfterLastSync(const InputRecord &sync)
{
    int64_t seconds = int64_t{sync.seconds} - m_lastSyncSeconds;
    int64_t microseconds = int64_t{sync.microseconds} - m_lastSyncMicroseconds;
    if (microseconds < 0) {
        microseconds += 1'000'000;
        --seconds;
    }
    m_lastSyncSeconds = sync.seconds;
    m_lastSyncMicroseconds = sync.microseconds;
    return seconds < 0 || (seconds == 0 && microseconds < fastDetentMicroseconds);
}
