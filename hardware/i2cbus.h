#pragma once

#include "hardware/storageresult.h"

#include <cstdint>

/// How a device wants to be spoken to.
struct I2cTransferOptions
{
    /// Flag: a read sends its register address as a transfer of its own, with a stop in between.
    static constexpr uint16_t separateMessages = 1;

    uint16_t flags = 0;
    uint16_t timeoutFactor = 1000; ///< How long to wait, in units that shrink with the bus speed.
    uint32_t busSpeed = 400000;    ///< Hz; 0 stands for 400000.
    uint8_t addressBytes = 1;      ///< Length of the register address: 1, 2, or anything else for 4.
};

/// An I2C bus whose devices have registers. Device addresses are in 8-bit form, R/W bit clear: 0xA0, not 0x50.
/// Lengths count bytes and may be 0. Transfers return 0 or one of the codes below.
class I2cBus
{
public:
    static constexpr StorageResult notAcknowledged = 1;
    static constexpr StorageResult timedOut = 2;
    static constexpr StorageResult failed = 3; ///< Any other reason, or the adapter cannot do it.

    I2cBus() = default;
    I2cBus(const I2cBus &) = delete;
    I2cBus &operator=(const I2cBus &) = delete;
    virtual ~I2cBus() = default;

    /// Keeps others off the bus over several transfers; may be nested.
    virtual void lock() = 0;
    virtual void unlock() = 0;

    /// Clocks out a device that holds the data line.
    virtual StorageResult recoverBus() = 0;
    virtual StorageResult read(
        uint8_t devAddr, uint32_t regAddr, void *buf, uint32_t len, const I2cTransferOptions &options)
        = 0;
    virtual StorageResult write(
        uint8_t devAddr, uint32_t regAddr, const void *data, uint32_t len, const I2cTransferOptions &options)
        = 0;
};
