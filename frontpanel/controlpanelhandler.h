#pragma once

#include "frontpanel/inputdevice.h"

#include <QObject>

/// One button panel: posts its buttons as key events to the widget with the focus, and switches its LEDs.
/// Without a focus widget the events are dropped. A panel that cannot be opened stays dark and silent.
class ControlPanelHandler : public QObject
{
    Q_OBJECT

public:
    /// @param keyOffset is added to every key code of this panel: 0, 40 or 80.
    ControlPanelHandler(const QString &devicePath, int keyOffset);

    /// Writes one LED record. The panel is not asked whether it has that LED, nor what it shows.
    /// @param ledCode the LED has the number of its button, 1 to 40.
    /// @param value 0 off, 1 lit, 2 a pending change.
    void setLed(int ledCode, int value);

public slots:
    void processEvent();

private:
    InputDevice m_device;
    const int m_keyOffset;
};
