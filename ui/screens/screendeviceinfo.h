#pragma once

#include "ui/screendata.h"

struct SharedScreens;

/// What this device is.
class ScreenDeviceInfo : public ScreenData
{
    Q_OBJECT
public:
    ScreenDeviceInfo(QWidget *parent, const SharedScreens &shared);
};

/// The hardware versions of the motherboard, the control unit, its panel, and every input and output board. Has its
/// rows when the frame has been identified.
class ScreenHardwareInfo : public ScreenData
{
    Q_OBJECT
public:
    explicit ScreenHardwareInfo(QWidget *parent);

private slots:
    void variantIdentified();

private:
    void addBoards(const char *caption, int count, int direction);
};

/// The firmware of each component that the device has.
class ScreenFirmwareInfo : public ScreenData
{
    Q_OBJECT
public:
    explicit ScreenFirmwareInfo(QWidget *parent);

    void setPort(const QString &port) override;
};
