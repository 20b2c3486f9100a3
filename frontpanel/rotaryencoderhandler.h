#pragma once

#include "frontpanel/inputdevice.h"

#include <QObject>

/// The rotary encoder: posts every detent as press and release of one key to the widget with the focus.
/// Clockwise is Qt::Key_D, anticlockwise Qt::Key_A; a detent less than 50 ms after the one before it, in the
/// same direction, is Qt::Key_E or Qt::Key_Q. Without a focus widget the keys are dropped.
class RotaryEncoderHandler : public QObject
{
    Q_OBJECT

public:
    explicit RotaryEncoderHandler(const QString &devicePath);

public slots:
    void processEvent();

private:
    void closeDetent(const InputRecord &sync);
    bool soonAfterLastSync(const InputRecord &sync);

    InputDevice m_device;
    int m_direction = 0;
    int m_previousDirection = 0; ///< Of the last detent reported as a slow step.
    int m_lastSyncSeconds = 0;
    int m_lastSyncMicroseconds = 0;
};
