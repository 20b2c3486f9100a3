#pragma once

#include "hardware/devicefile.h"
#include "hardware/i2cbus.h"
#include "hardware/recursivemutex.h"

#include <span>

struct i2c_msg;

/// An I2C adapter of the kernel, spoken to through its device node ("/dev/i2c-0").
/// Each transfer holds the mutex from its first to its last request. The kernel takes at most
/// 65535 bytes in a message; longer transfers fail.
class LinuxI2cBus : public DeviceFile, public I2cBus
{
public:
    using DeviceFile::read;
    using DeviceFile::write;

    /// Opens the node and asks what the adapter can do. 0, or -1 (and closed) if it is no adapter for plain I2C.
    int open(const char *path) override;

    void lock() override;
    void unlock() override;

    /// Nine clock pulses with a stop: enough for a device that was cut off in the middle of a byte.
    StorageResult recoverBus() override;
    StorageResult read(
        uint8_t devAddr, uint32_t regAddr, void *buf, uint32_t len, const I2cTransferOptions &options) override;
    StorageResult write(
        uint8_t devAddr, uint32_t regAddr, const void *data, uint32_t len, const I2cTransferOptions &options) override;

private:
    StorageResult setTimeout(const I2cTransferOptions &options);
    StorageResult transfer(std::span<i2c_msg> messages);
    bool can(uint32_t capabilities) const { return (m_functionality & capabilities) == capabilities; }

    RecursiveMutex m_mutex;
    uint32_t m_functionality = 0; ///< The adapter's I2C_FUNCS bits.
};
