#pragma once

#include "hardware/i2cbus.h"

#include <QStringList>

#include <functional>
#include <map>

/// A bus with memory behind every device address. It writes down each transfer as
/// "R ae 0080+128" or "W ae 0000+8": direction, device, register address, length; "P ae" is a write of nothing.
class RecordingBus : public I2cBus
{
public:
    QStringList transfers;
    std::map<uint32_t, uint8_t> memory; ///< By device address << 16 | register address.
    uint8_t addressBytes = 0;           ///< Of the last transfer.
    /// Asked for the result of each transfer; a failed one moves no bytes.
    std::function<StorageResult(const QString &transfer)> answer = [](const QString &) { return 0; };

    void lock() override { }
    void unlock() override { }
    StorageResult recoverBus() override { return failed; }

    StorageResult read(uint8_t dev, uint32_t reg, void *buf, uint32_t len, const I2cTransferOptions &options) override
    {
        const StorageResult result = record('R', dev, reg, len, options);
        for (uint32_t i = 0; result == 0 && i < len; ++i)
            static_cast<uint8_t *>(buf)[i] = memory[address(dev, reg + i)];
        return result;
    }

    StorageResult write(
        uint8_t dev, uint32_t reg, const void *data, uint32_t len, const I2cTransferOptions &options) override
    {
        const StorageResult result = record('W', dev, reg, len, options);
        for (uint32_t i = 0; result == 0 && i < len; ++i)
            memory[address(dev, reg + i)] = static_cast<const uint8_t *>(data)[i];
        return result;
    }

private:
    static uint32_t address(uint8_t dev, uint32_t reg) { return uint32_t{dev} << 16 | reg; }

    StorageResult record(char direction, uint8_t dev, uint32_t reg, uint32_t len, const I2cTransferOptions &options)
    {
        addressBytes = options.addressBytes;
        transfers += len == 0 && direction == 'W' && reg == 0
            ? QString::asprintf("P %02x", dev)
            : QString::asprintf("%c %02x %04x+%u", direction, dev, reg, len);
        return answer(transfers.back());
    }
};
