#pragma once

#include "ui/screendata.h"

struct SharedScreens;

/// What the device itself is set to.
class ScreenSystemSettings : public ScreenData
{
    Q_OBJECT
public:
    ScreenSystemSettings(QWidget *parent, const SharedScreens &shared);

private slots:
    /// A frame with one power supply has no redundancy to look at.
    void variantIdentified();
};

/// The serial port.
class ScreenRs232 : public ScreenData
{
    Q_OBJECT
public:
    ScreenRs232(QWidget *parent, const SharedScreens &shared);
};

/// The device's clock.
class ScreenTimeAndDate : public ScreenData
{
    Q_OBJECT
public:
    ScreenTimeAndDate(QWidget *parent, const SharedScreens &shared);
};

/// Which of the two power supplies run.
class ScreenPowerSupplyState : public ScreenData
{
    Q_OBJECT
public:
    explicit ScreenPowerSupplyState(QWidget *parent);
};
