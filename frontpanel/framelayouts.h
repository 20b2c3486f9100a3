#pragma once

#include "frontpanel/basiclayout.h"

// The six fronts, named after the frames they belong to. What sits where is a row of the layout table each.

class Frame8Layout : public BasicLayout
{
public:
    explicit Frame8Layout(ControlPanelHandler *panel1)
        : BasicLayout(panelLayout(1), {panel1})
    {
    }
};

class Frame16Layout : public BasicLayout
{
public:
    explicit Frame16Layout(ControlPanelHandler *panel1)
        : BasicLayout(panelLayout(2), {panel1})
    {
    }
};

class Frame16Plus4AudioLayout : public BasicLayout
{
public:
    Frame16Plus4AudioLayout(ControlPanelHandler *panel1, ControlPanelHandler *panel2)
        : BasicLayout(panelLayout(3), {panel1, panel2})
    {
    }
};

class Frame24Layout : public BasicLayout
{
public:
    Frame24Layout(ControlPanelHandler *panel1, ControlPanelHandler *panel2, ControlPanelHandler *panel3)
        : BasicLayout(panelLayout(4), {panel1, panel2, panel3})
    {
    }
};

class Frame32Plus8AudioLayout : public BasicLayout
{
public:
    Frame32Plus8AudioLayout(ControlPanelHandler *panel1, ControlPanelHandler *panel2, ControlPanelHandler *panel3)
        : BasicLayout(panelLayout(5), {panel1, panel2, panel3})
    {
    }
};

class Frame48Layout : public BasicLayout
{
public:
    Frame48Layout(ControlPanelHandler *panel1, ControlPanelHandler *panel2, ControlPanelHandler *panel3)
        : BasicLayout(panelLayout(6), {panel1, panel2, panel3})
    {
    }
};
