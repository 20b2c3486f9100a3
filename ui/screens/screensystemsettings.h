#pragma once

#include "ui/screendata.h"

struct Editors;

/// What the device itself is set to.
class ScreenSystemSettings : public ScreenData
{
    Q_OBJECT
public:
    ScreenSystemSettings(QWidget *parent, const Editors &editors);
};

/// The network as it is, and its static addresses.
class ScreenNetwork : public ScreenData
{
    Q_OBJECT
public:
    ScreenNetwork(QWidget *parent, const Editors &editors);
};

/// The serial port.
class ScreenRs232 : public ScreenData
{
    Q_OBJECT
public:
    ScreenRs232(QWidget *parent, const Editors &editors);
};

/// The device's clock.
class ScreenTimeAndDate : public ScreenData
{
    Q_OBJECT
public:
    ScreenTimeAndDate(QWidget *parent, const Editors &editors);
};
