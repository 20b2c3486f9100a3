#include "fuzz/harness.h"
#include "hardware/eeprom24xx.h"
#include "hardware/framedescriptor.h"
#include "hardware/identificationrecord.h"
#include "hardware/rangeoffsetrandomaccessstorage.h"
#include "hardware/writethroughcachedstorage.h"

#include <QByteArray>
#include <QList>

#include <algorithm>
#include <set>
#include <vector>

// The identification record and the storages that it is read through.
// An input's first line is "MODEL BASE LENGTH FAULTS": the EEPROM, the range of it that is seen, and for each
// transfer on the bus a digit, the code that it fails with. Lines follow: "r OFFSET LENGTH" reads, "w OFFSET TEXT"
// writes, "f OFFSET TEXT" writes the first byte of the text as often as it has bytes. At the end the frame is
// identified.

namespace {

constexpr struct Chip
{
    int model;
    uint32_t size, page;
} chips[] = {{0, 1, 1}, {1, 128, 8}, {2, 256, 8}, {4, 512, 16}, {8, 1024, 16}, {32, 4096, 32}, {128, 16384, 64},
    {256, 32768, 64}, {512, 65536, 128}, {1025, 131072, 128}}; // the first for what is no model

/// An EEPROM's side of the bus: reads turn round at the end of the memory, writes at that of the page.
struct EepromBus : I2cBus
{
    void lock() override { }
    void unlock() override { }
    StorageResult recoverBus() override { return 0; }
    StorageResult read(uint8_t device, uint32_t at, void *buf, uint32_t len, const I2cTransferOptions &options) override
    {
        const StorageResult fault = nextFault();
        for (uint32_t i = 0; i < len && !fault; ++i)
            static_cast<uint8_t *>(buf)[i] = bytes[(place(device, at, options) + i) % bytes.size()];
        return fault;
    }
    StorageResult write(
        uint8_t device, uint32_t at, const void *data, uint32_t len, const I2cTransferOptions &options) override
    {
        const StorageResult fault = nextFault();
        const uint32_t begin = place(device, at, options);
        for (uint32_t i = 0; i < len && !fault; ++i)
            bytes[begin / page * page + (begin + i) % page] = static_cast<const uint8_t *>(data)[i];
        return fault;
    }
    StorageResult nextFault()
    {
        const uint8_t fault = faults.isEmpty() ? 0 : uint8_t(faults.front()) & 3U;
        faults.remove(0, 1);
        return fault;
    }
    /// What the register address has no room for is in the device address.
    uint32_t place(uint8_t device, uint32_t at, const I2cTransferOptions &options) const
    {
        const uint32_t high = options.addressBytes == 1 ? (device & 6U) << 7 : (device & 8U) << 13;
        return (at | high) % uint32_t(bytes.size());
    }

    std::vector<uint8_t> bytes;
    uint32_t page = 1;
    QByteArray faults;
};

/// Into no byte more than there are, for the sanitizer to see.
StorageResult readInto(RandomAccessStorageInterface &storage, uint32_t offset, uint32_t length, QByteArray &bytes)
{
    bytes = QByteArray(std::min(length, storage.size()), '\0');
    return storage.read(offset, bytes.data(), length);
}

} // namespace

int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QList<QByteArray> lines = inputOf(data, size).toByteArray().split('\n');
    const QList<QByteArray> first = lines[0].split(' ');
    const auto *known = std::ranges::find(chips, first[0].toInt(), &Chip::model);
    const Chip chip = known == std::end(chips) ? chips[0] : *known;
    const uint32_t base = first.value(1).toUInt();
    const uint32_t length = std::min(first.value(2).toUInt(), 2 * chip.size);

    EepromBus bus;
    bus.bytes.assign(chip.size, 0xFF);
    bus.page = chip.page;
    bus.faults = first.value(3);
    Eeprom24xx eeprom(&bus, 0xA0, chip.model, 0);
    RangeOffsetRandomAccessStorage range(&eeprom, base, length);
    WriteThroughCachedStorage cache(&range);
    std::set<uint32_t> spoilt; // where a write has failed: it may be stored or not

    const auto read = [&](uint32_t offset, uint32_t count) {
        QByteArray bytes;
        const bool done = readInto(cache, offset, count, bytes) == 0;
        for (uint32_t i = 0; done && i < count; ++i)
            require(uint8_t(bytes[i]) == bus.bytes.at(base + offset + i) || spoilt.contains(offset + i),
                "what is read is in the EEPROM");
        return done;
    };
    for (const QByteArray &line : lines.mid(1)) {
        const qsizetype end = line.indexOf(' ', 2);
        if (end < 0 || end + 1 == line.size())
            continue;
        const uint32_t offset = line.mid(2, end - 2).toUInt();
        QByteArray text = line.mid(end + 1);
        const auto count = uint32_t(text.size());
        if (line[0] == 'r') {
            read(offset, text.toUInt());
            continue;
        }
        if (line[0] == 'f')
            text.fill(text[0]);
        if (line[0] == 'f' ? cache.fill(offset, uint8_t(text[0]), count) : cache.write(offset, text.data(), count)) {
            for (uint32_t i = 0; i < count; ++i)
                spoilt.insert(offset + i);
            continue;
        }
        for (uint32_t i = 0; i < count; ++i)
            require(bus.bytes.at(base + offset + i) == uint8_t(text[i]), "what was written is in the EEPROM");
        require(read(offset, count), "what was written can be read");
    }
    for (size_t i = 0; i < bus.bytes.size(); ++i)
        require(bus.bytes[i] == 0xFF || i - base < length, "nothing is written outside the range");

    QByteArray text;
    const bool readable = readInto(cache, 244, 8, text) == 0; // from then on it is at hand
    const FrameDescriptor *frame = findFrameDescriptor(uint32_t(IdentificationRecord(&cache).partNumber()));
    if (readable) {
        require(!frame || text == QByteArray::number(frame->partNumber), "a frame has its eight digits");
        require(frame || !findFrameDescriptor(text.toUInt()), "eight digits have their frame");
    }
    return 0;
}
