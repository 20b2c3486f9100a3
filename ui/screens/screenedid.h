#pragma once

#include "protocol/dt3property.h"
#include "ui/screendata.h"

#include <array>

struct SharedScreens;

/// The EDID memories of the device: to look at, to switch onto inputs, to save.
class ScreenEdid : public ScreenData
{
    Q_OBJECT
public:
    ScreenEdid(QWidget *parent, const SharedScreens &shared);
};

/// The four banks of EDIDs.
class ScreenEdidView : public ScreenData
{
    Q_OBJECT
public:
    ScreenEdidView(QWidget *parent, const SharedScreens &shared);

private:
    std::array<Dt3Property, 4> m_banks;
};
