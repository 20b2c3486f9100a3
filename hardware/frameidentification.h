#pragma once

#include <memory>

class Eeprom24xx;
class IdentificationRecord;
class LinuxI2cBus;
class RangeOffsetRandomAccessStorage;
class WriteThroughCachedStorage;

/// Tells the frame model from the front-panel board's EEPROM ("/dev/i2c-0", address 0xAE, its first 1024 bytes).
class FrameIdentification
{
public:
    /// The one of this process.
    static FrameIdentification &instance();

    FrameIdentification(const FrameIdentification &) = delete;
    FrameIdentification &operator=(const FrameIdentification &) = delete;

    /// Opens the bus and tries to read the EEPROM, afresh if it is open already. 0, even if the EEPROM could
    /// not be read: variantCode() tries again. -1 if the bus cannot be opened; then nothing is held.
    int open();

    /// The part number of the frame; 0 if it is not open, cannot be read or is no number.
    int variantCode();

    /// Releases the bus and forgets what was read; open() may be called again.
    void close();

private:
    FrameIdentification();
    ~FrameIdentification();

    // each stands on the one before it: destroyed from the last to the first
    std::unique_ptr<LinuxI2cBus> m_bus;
    std::unique_ptr<Eeprom24xx> m_eeprom;
    std::unique_ptr<RangeOffsetRandomAccessStorage> m_range;
    std::unique_ptr<WriteThroughCachedStorage> m_cache;
    std::unique_ptr<IdentificationRecord> m_record;
};
