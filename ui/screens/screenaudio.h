#pragma once

#include "protocol/dt3property.h"
#include "ui/screens/portinfoscreen.h"

struct SharedScreens;

/// The analog audio of an input port.
class ScreenInAudio : public ScreenData
{
    Q_OBJECT
public:
    ScreenInAudio(QWidget *parent, const SharedScreens &shared);
};

/// The audio of an output port; all that there is of an audio-only one. Learns the kind of port by itself.
class ScreenOutAudio : public PortInfoScreen
{
    Q_OBJECT
public:
    ScreenOutAudio(QWidget *parent, const SharedScreens &shared);

    void setPort(const QString &port) override;

protected:
    void updateValue(const QString &property, const QString &value) override;

private:
    Dt3Property m_portNode;
};
