#pragma once

#include "simulator/hardware/ioctldevice.h"

#include <QObject>

/// The processor's overlay framebuffer, of which the program uses the global alpha only.
class OverlayPlane : public QObject, public IoctlDevice
{
    Q_OBJECT
public:
    long ioctl(unsigned long request, ClientMemory argument) override;

signals:
    /// Emitted on the bed's thread.
    void globalAlphaSet(int enable, int alpha);
};
