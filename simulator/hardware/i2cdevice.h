#pragma once

#include "simulator/hardware/eepromimage.h"
#include "simulator/hardware/ioctldevice.h"

/// An I2C adapter with the front-panel board's EEPROM at 7-bit address 0x57 and nothing else on its bus.
class I2cDevice : public IoctlDevice
{
public:
    /// @param fault errno that every transfer fails with; 0 for a bus in order.
    explicit I2cDevice(int fault)
        : m_fault(fault)
    {
    }

    EepromImage &eeprom() { return m_eeprom; }

    long ioctl(unsigned long request, ClientMemory argument) override;

private:
    long transfer(ClientMemory argument);

    EepromImage m_eeprom;
    int m_fault;
};
