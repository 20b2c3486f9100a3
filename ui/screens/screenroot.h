#pragma once

#include "ui/screendata.h"

struct SharedScreens;

/// The top of the menu.
class ScreenRoot : public ScreenData
{
    Q_OBJECT
public:
    ScreenRoot(QWidget *parent, const SharedScreens &shared);
};
