#include "frontpanel/controlpanelhandler.h"

#include <QApplication>
#include <QKeyEvent>
#include <QWidget>

#include <fcntl.h>
#include <linux/input-event-codes.h>

namespace {

constexpr InputDevice::Kind panelKind{O_RDWR, "control panel", "control panel"}; // written to for the LEDs

} // namespace

ControlPanelHandler::ControlPanelHandler(const QString &devicePath, int keyOffset)
    : m_device(devicePath, panelKind, this)
    , m_keyOffset(keyOffset)
{
    if (const QSocketNotifier *notifier = m_device.notifier())
        connect(notifier, &QSocketNotifier::activated, this, &ControlPanelHandler::processEvent);
}

void ControlPanelHandler::setLed(int ledCode, int value)
{
    m_device.write({0, 0, EV_LED, static_cast<uint16_t>(ledCode), value});
}

void ControlPanelHandler::processEvent()
{
    for (const InputRecord &record : m_device.read()) {
        QWidget *focus = QApplication::focusWidget();
        if (record.type != EV_KEY || !focus)
            continue;
        const auto type = record.value != 0 ? QEvent::KeyPress : QEvent::KeyRelease;
        const int key = record.code + m_keyOffset;
        QCoreApplication::postEvent(focus, new QKeyEvent(type, key, Qt::NoModifier)); // the event queue owns it
    }
}
