#pragma once

#include "protocol/dt3property.h"
#include "protocol/dt3sink.h"

#include <QObject>

/// Mirrors whether the device is in standby, and wakes it up.
class OperationStateManager : public QObject, public Dt3Sink
{
    Q_OBJECT
public:
    OperationStateManager();

    void propertyReceived(const QString &property, const QString &value) override { update(property, value); }
    void propertyChanged(const QString &property, const QString &value) override { update(property, value); }

signals:
    void operationStateChanged(bool standby);

public slots:
    void connectionStateChanged(bool connected);
    void wakeUp();

private:
    void update(const QString &property, const QString &value);

    const Dt3Property m_operation;
};
