#pragma once

#include "protocol/dt3sink.h"
#include "ui/screenwarning.h"

/// Asks whether the device is to go to standby. It leaves when the device's operation state changes, by whomever.
///
/// Once opened, it holds the node of that state until the link is lost.
class ScreenEnterStandby : public ScreenWarning, public Dt3Sink
{
    Q_OBJECT
public:
    explicit ScreenEnterStandby(QWidget *parent);

    void setActive(bool active) override;
    void propertyChanged(const QString &property, const QString &value) override;

    /// Lets go of the node, which no new connection knows of.
    void connectionLost();

protected slots:
    void savePressed() override;

private:
    bool m_open = false;
};
