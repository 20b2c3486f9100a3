#include "simulator/hardware/eepromimage.h"

#include <algorithm>
#include <cstdio>

namespace {

constexpr size_t partNumberOffset = 244;
constexpr int partNumberDigits = 8;

} // namespace

EepromImage::EepromImage()
    : m_cells(size, 0xFF)
{
}

void EepromImage::setPartNumber(uint32_t partNumber)
{
    char text[16];
    std::snprintf(text, sizeof text, "%0*u", partNumberDigits, partNumber);
    std::copy_n(text, partNumberDigits, m_cells.begin() + partNumberOffset);
}

void EepromImage::write(std::span<const uint8_t> bytes)
{
    if (bytes.size() < 2)
        return;
    m_counter = static_cast<size_t>(bytes[0] << 8 | bytes[1]);
    for (const uint8_t byte : bytes.subspan(2)) {
        m_cells[m_counter] = byte;
        const size_t page = m_counter - m_counter % pageSize;
        m_counter = page + (m_counter + 1) % pageSize;
    }
}

void EepromImage::read(std::span<uint8_t> bytes)
{
    for (uint8_t &byte : bytes) {
        byte = m_cells[m_counter];
        m_counter = (m_counter + 1) % size;
    }
}
