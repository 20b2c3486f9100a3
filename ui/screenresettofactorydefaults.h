#pragma once

#include "protocol/dt3sink.h"
#include "ui/screenwarning.h"

/// Asks whether the device is to forget its settings.
class ScreenResetToFactoryDefaults : public ScreenWarning, public Dt3Sink
{
    Q_OBJECT
public:
    explicit ScreenResetToFactoryDefaults(QWidget *parent);

protected slots:
    void savePressed() override;
};
