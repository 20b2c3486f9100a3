#pragma once

#include "ui/screens/portinfoscreen.h"

struct SharedScreens;

/// What an input port accepts from its source.
class ScreenInVideoSettings : public PortInfoScreen
{
    Q_OBJECT
public:
    ScreenInVideoSettings(QWidget *parent, const SharedScreens &shared);
};

/// What an output port sends to its display.
class ScreenOutVideoSettings : public PortInfoScreen
{
    Q_OBJECT
public:
    ScreenOutVideoSettings(QWidget *parent, const SharedScreens &shared);
};
