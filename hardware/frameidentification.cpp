#include "hardware/frameidentification.h"

#include "hardware/eeprom24xx.h"
#include "hardware/identificationrecord.h"
#include "hardware/linuxi2cbus.h"
#include "hardware/rangeoffsetrandomaccessstorage.h"
#include "hardware/writethroughcachedstorage.h"

namespace {

constexpr const char *busPath = "/dev/i2c-0";
constexpr uint32_t busSpeed = 400000;
constexpr uint8_t eepromAddress = 0xAE;
constexpr int eepromModel = 512;
constexpr uint32_t recordBase = 0;
constexpr uint32_t recordLength = 1024;

} // namespace

FrameIdentification &FrameIdentification::instance()
{
    static FrameIdentification self;
    return self;
}

FrameIdentification::FrameIdentification() = default;

FrameIdentification::~FrameIdentification() = default;

int FrameIdentification::open()
{
    close();
    auto bus = std::make_unique<LinuxI2cBus>();
    if (bus->open(busPath) < 0)
        return -1;
    m_bus = std::move(bus);
    m_eeprom = std::make_unique<Eeprom24xx>(m_bus.get(), eepromAddress, eepromModel, busSpeed);
    m_range = std::make_unique<RangeOffsetRandomAccessStorage>(m_eeprom.get(), recordBase, recordLength);
    m_cache = std::make_unique<WriteThroughCachedStorage>(m_range.get());
    m_record = std::make_unique<IdentificationRecord>(m_cache.get());
    m_cache->load(); // a failure shows when the record is read
    return 0;
}

int FrameIdentification::variantCode() { return m_record ? m_record->partNumber() : 0; }

void FrameIdentification::close()
{
    m_record.reset();
    m_cache.reset();
    m_range.reset();
    m_eeprom.reset();
    m_bus.reset();
}
