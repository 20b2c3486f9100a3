#pragma once

#include "hardware/i2cbus.h"
#include "hardware/randomaccessstorageinterface.h"

/// A 24xx serial EEPROM on an I2C bus, addressed by byte. The bus is borrowed and outlives the object.
/// An access that would leave the EEPROM fails with storageOutOfRange before anything is transferred;
/// a failed transfer ends the operation and is reported as busFailed over the bus's code.
class Eeprom24xx : public RandomAccessStorageInterface
{
public:
    static constexpr StorageResult busFailed = 2;

    /// @param deviceAddress in 8-bit form, R/W bit clear: 0xA0, not 0x50.
    /// @param model capacity in kilobits: 1, 2, 4, 8, 32, 128, 256, 512 or 1025. Any other has size 0.
    /// @param busSpeed in Hz; 0 stands for 400000.
    Eeprom24xx(I2cBus *bus, uint8_t deviceAddress, int model, uint32_t busSpeed);

    uint32_t size() const override { return m_size; }
    /// In transfers that end at page boundaries.
    StorageResult read(uint32_t offset, void *buf, uint32_t len) override;
    /// Page by page, waiting after each until the EEPROM has stored it.
    StorageResult write(uint32_t offset, const void *data, uint32_t len) override;
    /// As write(), at most 16 bytes at a time.
    StorageResult fill(uint32_t offset, uint8_t value, uint32_t len) override;

private:
    bool leaves(uint32_t offset, uint32_t len) const;
    uint32_t untilPageEnd(uint32_t offset) const { return m_pageSize - offset % m_pageSize; }
    uint8_t transferAddress(uint32_t offset) const;
    uint8_t pollAddress() const;
    uint32_t registerAddress(uint32_t offset) const;
    StorageResult writePage(uint32_t offset, const void *data, uint32_t len);
    StorageResult waitUntilStored();

    I2cBus *m_bus;
    uint8_t m_deviceAddress;
    uint8_t m_pageSize = 0;
    uint32_t m_size = 0;
    int m_model;
    I2cTransferOptions m_options;
};
