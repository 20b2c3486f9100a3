#include "hardware/eeprom24xx.h"

#include <algorithm>
#include <array>

namespace {

struct Model
{
    int kilobits;
    uint32_t size;
    uint8_t pageSize;
    uint8_t addressBytes;
};

// clang-format off
constexpr Model models[] = {
    {   1,    128,   8, 1},
    {   2,    256,   8, 1},
    {   4,    512,  16, 1},
    {   8,   1024,  16, 1},
    {  32,   4096,  32, 2},
    { 128,  16384,  64, 2},
    { 256,  32768,  64, 2},
    { 512,  65536, 128, 2},
    {1025, 131072, 128, 2},
};
// clang-format on

// pages divide 64 KiB, so a transfer that ends with its page crosses no block either
static_assert(
    std::all_of(std::begin(models), std::end(models), [](const Model &m) { return 65536 % m.pageSize == 0; }));

constexpr int pollLimit = 256;

} // namespace

Eeprom24xx::Eeprom24xx(I2cBus *bus, uint8_t deviceAddress, int model, uint32_t busSpeed)
    : m_bus(bus)
    , m_deviceAddress(deviceAddress)
    , m_model(model)
{
    if (busSpeed != 0)
        m_options.busSpeed = busSpeed;
    m_options.addressBytes = 2;
    for (const Model &known : models) {
        if (known.kilobits != model)
            continue;
        m_pageSize = known.pageSize;
        m_size = known.size;
        m_options.addressBytes = known.addressBytes;
    }
}

StorageResult Eeprom24xx::read(uint32_t offset, void *buf, uint32_t len)
{
    if (leaves(offset, len))
        return storageOutOfRange;
    auto *to = static_cast<uint8_t *>(buf);
    while (len > 0) {
        const uint32_t chunk = std::min(untilPageEnd(offset), len);
        if (const StorageResult result
            = m_bus->read(transferAddress(offset), registerAddress(offset), to, chunk, m_options))
            return pushed(result, busFailed);
        offset += chunk;
        to += chunk;
        len -= chunk;
    }
    return 0;
}

StorageResult Eeprom24xx::write(uint32_t offset, const void *data, uint32_t len)
{
    if (leaves(offset, len))
        return storageOutOfRange;
    const auto *from = static_cast<const uint8_t *>(data);
    while (len > 0) {
        const uint32_t chunk = std::min(untilPageEnd(offset), len);
        if (const StorageResult result = writePage(offset, from, chunk))
            return result;
        offset += chunk;
        from += chunk;
        len -= chunk;
    }
    return 0;
}

StorageResult Eeprom24xx::fill(uint32_t offset, uint8_t value, uint32_t len)
{
    if (leaves(offset, len))
        return storageOutOfRange;
    std::array<uint8_t, 16> bytes;
    bytes.fill(value);
    while (len > 0) {
        const uint32_t chunk = std::min({untilPageEnd(offset), len, static_cast<uint32_t>(bytes.size())});
        if (const StorageResult result = writePage(offset, bytes.data(), chunk))
            return result;
        offset += chunk;
        len -= chunk;
    }
    return 0;
}

bool Eeprom24xx::leaves(uint32_t offset, uint32_t len) const
{
    return m_size == 0 || leavesStorage(offset, len, m_size); // of an unknown model not even nothing can be read
}

/// The bits of the offset that the register address has no room for travel in the device address.
uint8_t Eeprom24xx::transferAddress(uint32_t offset) const
{
    if (m_model <= 8)
        return static_cast<uint8_t>((m_deviceAddress & 0xF0) | (offset >> 7 & 6));
    if (m_model == 1025)
        return static_cast<uint8_t>((m_deviceAddress & ~8) | (offset >> 13 & 8));
    return m_deviceAddress;
}

uint8_t Eeprom24xx::pollAddress() const
{
    if (m_model <= 8)
        return m_deviceAddress & 0xF0;
    if (m_model == 1025)
        return static_cast<uint8_t>(m_deviceAddress & ~3);
    return m_deviceAddress;
}

uint32_t Eeprom24xx::registerAddress(uint32_t offset) const
{
    return offset & (m_options.addressBytes == 1 ? 0xFFU : 0xFFFFU);
}

StorageResult Eeprom24xx::writePage(uint32_t offset, const void *data, uint32_t len)
{
    if (const StorageResult result
        = m_bus->write(transferAddress(offset), registerAddress(offset), data, len, m_options))
        return pushed(result, busFailed);
    return waitUntilStored();
}

/// While it stores a page, the EEPROM acknowledges nothing.
StorageResult Eeprom24xx::waitUntilStored()
{
    StorageResult result = 0;
    for (int poll = 0; poll < pollLimit; ++poll) {
        result = m_bus->write(pollAddress(), 0, nullptr, 0, m_options);
        if (result == 0)
            return 0;
    }
    return pushed(result, busFailed);
}
