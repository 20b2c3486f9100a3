#pragma once

#include "protocol/dt3property.h"
#include "protocol/dt3sink.h"

#include <QObject>

#include <cstdint>

/// Mirrors whether a firmware upgrade is running, and how far it is.
class UpgradeStateManager : public QObject, public Dt3Sink
{
    Q_OBJECT
public:
    UpgradeStateManager();

    void propertyReceived(const QString &property, const QString &value) override { update(property, value); }
    void propertyChanged(const QString &property, const QString &value) override { update(property, value); }

signals:
    /// Either has arrived; carries the latest of both. @param progress low eight bits of the device's number.
    void upgradeStateChanged(bool upgrading, uint8_t progress);

public slots:
    void connectionStateChanged(bool connected);

private:
    void update(const QString &property, const QString &value);

    const Dt3Property m_status;
    const Dt3Property m_progress;
    bool m_upgrading = false;
    uint8_t m_progressValue = 0;
};
