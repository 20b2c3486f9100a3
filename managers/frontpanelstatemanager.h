#pragma once

#include "protocol/dt3property.h"
#include "protocol/dt3sink.h"

#include <QObject>

/// Mirrors the panel's control lock and the autotake mode, both kept by the device, and changes them there.
class FrontPanelStateManager : public QObject, public Dt3Sink
{
    Q_OBJECT
public:
    FrontPanelStateManager();

    void propertyReceived(const QString &property, const QString &value) override { update(property, value); }
    void propertyChanged(const QString &property, const QString &value) override { update(property, value); }

signals:
    void controlLockStateChanged(bool locked);
    void autotakeModeChanged(bool autotake);

public slots:
    void connectionStateChanged(bool connected);
    // Requests: the state changes when the device reports it.
    void setControlLock(bool locked);
    void setAutotakeMode(bool autotake);

private:
    void update(const QString &property, const QString &value);

    const Dt3Property m_controlLock;
    const Dt3Property m_autotake;
};
