#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

/// A 24xx EEPROM chip of 64 KiB with two address bytes, as its bus sees it: transfers, and the address counter that
/// stays where the last one left it.
class EepromImage
{
public:
    static constexpr size_t size = 65536;
    static constexpr size_t pageSize = 128;

    /// Fresh from the factory: all 0xFF.
    EepromImage();

    /// Stores the frame's part number in the identification record: eight decimal digits, zero-padded.
    void setPartNumber(uint32_t partNumber);

    /// One write transfer. Its first two bytes set the counter, high byte first; the others are stored from there
    /// on, wrapping round within the page. A transfer without two bytes is acknowledged and does nothing.
    void write(std::span<const uint8_t> bytes);
    /// One read transfer, from the counter on; the chip's last byte is followed by its first.
    void read(std::span<uint8_t> bytes);

private:
    std::vector<uint8_t> m_cells;
    size_t m_counter = 0;
};
