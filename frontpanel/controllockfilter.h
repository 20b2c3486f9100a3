#pragma once

#include <QObject>

#include <cstdint>

class FrontLogic;

/// The application's event filter for keys. Drops all of them while the device is disconnected, upgrading or in
/// standby, and all but the panel-lock button while the panel is locked; else hands panel buttons to the front
/// logic and lets the other keys pass. Starts as disconnected.
class ControlLockFilter : public QObject
{
    Q_OBJECT

public:
    /// @param frontLogic is borrowed.
    explicit ControlLockFilter(FrontLogic *frontLogic);

    bool eventFilter(QObject *watched, QEvent *event) override;

signals:
    /// A key was pressed or released on the locked panel.
    void lockedWarningAction();
    /// Return was pressed in standby.
    void wakeUpAction();

public slots:
    void lockedStatusChanged(bool locked);
    void connectionStatusChanged(bool connected);
    void operationStatusChanged(bool standby);
    void upgradeStateChanged(bool upgrading, uint8_t progress);

private:
    bool swallows(int key, bool pressed);

    bool m_locked = false;
    bool m_connected = false;
    bool m_standby = false;
    bool m_upgrading = false;
    FrontLogic *const m_frontLogic;
};
