#include "hardware/eeprom24xx.h"
#include "hardware/identificationrecord.h"
#include "hardware/rangeoffsetrandomaccessstorage.h"
#include "hardware/writethroughcachedstorage.h"

#include <QTest>

#include <map>
#include <numeric>
#include <vector>

namespace {

/// A bus with memory behind every device address. It writes down each transfer as "R ae 0080+128" or "W a0 00+8":
/// direction, device, register address with all its bytes, length; "P ae" is a write of nothing.
struct RecordingBus : I2cBus
{
    QStringList transfers;
    std::map<uint32_t, uint8_t> memory; ///< By device address << 16 | register address.
    /// Transfers with this text in them move no bytes and end with this result, so many times.
    std::tuple<QString, StorageResult, int> fault{"none", 0, 0};

    void lock() override { }
    void unlock() override { }
    StorageResult recoverBus() override { return failed; }

    StorageResult read(uint8_t dev, uint32_t reg, void *buf, uint32_t len, const I2cTransferOptions &options) override
    {
        const StorageResult result = record('R', dev, reg, len, options);
        for (uint32_t i = 0; result == 0 && i < len; ++i)
            static_cast<uint8_t *>(buf)[i] = memory[dev * 0x10000U + reg + i];
        return result;
    }

    StorageResult write(
        uint8_t dev, uint32_t reg, const void *data, uint32_t len, const I2cTransferOptions &options) override
    {
        const StorageResult result = record(len == 0 ? 'P' : 'W', dev, reg, len, options);
        for (uint32_t i = 0; result == 0 && i < len; ++i)
            memory[dev * 0x10000U + reg + i] = static_cast<const uint8_t *>(data)[i];
        return result;
    }

    StorageResult record(char direction, uint8_t dev, uint32_t reg, uint32_t len, const I2cTransferOptions &options)
    {
        transfers += direction == 'P'
            ? QString::asprintf("P %02x", dev)
            : QString::asprintf("%c %02x %0*x+%u", direction, dev, 2 * options.addressBytes, reg, len);
        auto &[text, result, times] = fault;
        return transfers.last().contains(text) && times-- > 0 ? result : 0;
    }
};

/// The stack of the identification, on a range that does not start at 0.
struct Stack
{
    RecordingBus bus;
    Eeprom24xx eeprom{&bus, 0xAE, 512, 0};
    RangeOffsetRandomAccessStorage range{&eeprom, 0x100, 1024};
    WriteThroughCachedStorage cache{&range};

    uint8_t &byte(uint32_t offset) { return bus.memory[0xAE0100 + offset]; }
    int cachedByte(uint32_t at, uint8_t byte = 0) { return cache.read(at, &byte, 1) == 0 ? byte : -1; }
};

} // namespace

class StorageTest : public QObject
{
    Q_OBJECT
private slots:
    void causesAreStacked()
    {
        QCOMPARE(pushed(3, 14), 0x3EU);
        QCOMPARE(pushed(3, 16), 0x3FU); // not 0x30, nor 0x40
        QCOMPARE(pushed(3, 0), 3U);
        QCOMPARE(pushed(0x12345678, 9), 0x23456789U);
    }

    void transfers()
    {
        const std::tuple<const char *, int, char, uint32_t, uint32_t, QString> cases[] = {
            {"chunks end with the page", 512, 'R', 100, 200, "R ae 0064+28, R ae 0080+128, R ae 0100+44"},
            {"nothing at the end", 512, 'R', 65536, 0, ""},
            {"the last pages of a 1", 1, 'R', 104, 24, "R a0 68+8, R a0 70+8, R a0 78+8"},
            {"each block of an 8 has an address", 8, 'R', 508, 20, "R a2 fc+4, R a4 00+16"},
            {"each block of a 1025 has an address", 1025, 'R', 65530, 12, "R a6 fffa+6, R ae 0000+6"},
            {"each page written is waited for", 512, 'W', 120, 16, "W ae 0078+8, P ae, W ae 0080+8, P ae"},
            {"a fill goes by sixteen", 512, 'F', 126, 20, "W ae 007e+2, P ae, W ae 0080+16, P ae, W ae 0090+2, P ae"},
            {"an 8 is polled at its first block", 8, 'W', 0x300, 4, "W a6 00+4, P a0"},
            {"a 1025 is polled without its low bits", 1025, 'F', 0x10000, 4, "W ae 0000+4, P ac"},
        };
        for (const auto &[name, model, operation, offset, len, transfers] : cases) {
            RecordingBus bus;
            Eeprom24xx eeprom(&bus, 0xAE, model, 0);
            std::vector<uint8_t> written(len, 0x5A), read(len);
            if (operation != 'F')
                std::iota(written.begin(), written.end(), uint8_t(1));
            QCOMPARE(operation == 'F' ? eeprom.fill(offset, 0x5A, len) : eeprom.write(offset, written.data(), len), 0U);
            const QStringList writes = std::exchange(bus.transfers, {});
            QCOMPARE(eeprom.read(offset, read.data(), len), 0U);
            const QString made = (operation == 'R' ? bus.transfers : writes).join(", ");
            QVERIFY2(made == transfers, qPrintable(name + (": " + made)));
            QVERIFY2(read == written, name);
        }
    }

    void leavingTheStorageTransfersNothing()
    {
        Stack stack;
        Eeprom24xx unknown(&stack.bus, 0xAE, 64, 0);
        const std::tuple<RandomAccessStorageInterface *, uint32_t, uint32_t> cases[] = {
            {&stack.eeprom, 65530, 10},        // the first chunk would fit
            {&stack.eeprom, 65537, 0},         // behind the end
            {&stack.eeprom, 0xFFFFFFF0, 0x20}, // the sum is beyond 32 bits, from a high offset
            {&stack.eeprom, 16, 0xFFFFFFF8},   // ... and from a long length
            {&unknown, 0, 0},                  // of an unknown model not even nothing
            {&stack.range, 0xFFFFFF10, 1},     // the range would start anew at 0x10
            {&stack.cache, 2, 0xFFFFFFFF},
        };
        char bytes[10]{};
        for (const auto &[storage, offset, len] : cases) {
            QCOMPARE(storage->read(offset, bytes, len), storageOutOfRange);
            QCOMPARE(storage->write(offset, bytes, len), storageOutOfRange);
            QCOMPARE(storage->fill(offset, 0, len), storageOutOfRange);
        }
        QCOMPARE(stack.bus.transfers, QStringList());
        QCOMPARE(stack.range.read(1024, bytes, 10), 0U); // its length bounds nothing
    }

    void waitsForAcknowledge()
    {
        // refused until the fourth poll, until the last that counts, for ever
        for (const auto &[refusals, polls, result] : {std::tuple(3, 4, 0U), {255, 256, 0U}, {100000, 256, 0x12U}}) {
            Stack stack;
            stack.bus.fault = {"P", I2cBus::notAcknowledged, refusals};
            QCOMPARE(stack.eeprom.write(0, "abc", 3), result);
            QCOMPARE(stack.bus.transfers.count("P ae"), polls);
        }
    }

    void stopsAtTheFirstFailure()
    {
        Stack stack;
        stack.bus.fault = {" 0080+", I2cBus::timedOut, 99};
        std::vector<uint8_t> bytes(384);
        QCOMPARE(stack.eeprom.read(0, bytes.data(), 384), 0x22U);
        QCOMPARE(stack.eeprom.write(0, bytes.data(), 384), 0x22U);
        QCOMPARE(stack.eeprom.fill(0x78, 0, 24), 0x22U);
        QCOMPARE(stack.bus.transfers.join(", "),
            "R ae 0000+128, R ae 0080+128, W ae 0000+128, P ae, W ae 0080+128, W ae 0078+8, P ae, W ae 0080+16");
    }

    void cacheHoldsWhatIsStored()
    {
        Stack stack;
        stack.byte(0) = 7;
        QCOMPARE(stack.cachedByte(0), 7);
        QCOMPARE(stack.cache.write(10, "ab", 2), 0U);
        QCOMPARE(stack.cache.fill(12, 'c', 2), 0U);
        QCOMPARE(stack.byte(11) + stack.byte(13), 'b' + 'c');
        QCOMPARE(stack.bus.transfers.filter("R").size(), 8); // loaded once
        stack.bus.fault = {"W", I2cBus::notAcknowledged, 99};
        QCOMPARE(stack.cache.write(10, "xy", 2), 0x12U);
        QCOMPARE(stack.cache.fill(12, 'z', 2), 0x12U);
        QCOMPARE(stack.cachedByte(11), 'b');
        QCOMPARE(stack.cachedByte(12), 'c');
        stack.bus.fault = {"0200", I2cBus::failed, 99};
        QCOMPARE(stack.cache.load(), 0x32U); // half-way: all is forgotten
        QCOMPARE(stack.cachedByte(0), -1);
        QCOMPARE(stack.cache.write(0, "a", 1), 0x32U);
        QCOMPARE(stack.cache.fill(0, 'b', 1), 0x32U);
        stack.bus.fault = {"none", 0, 0};
        QCOMPARE(stack.cachedByte(0), 7); // never written
    }

    void partNumber()
    {
        const std::pair<QByteArray, int> cases[] = {
            {"471100175", 47110017}, // the ninth byte is another field
            {"999999999", 99999999}, {" \t\n 471 ", 471}, {"+47     ", 47}, {"-4711001", -4711001}, {"47x11001", 47},
            {"x4711001", 0}, {"+ 471100", 0}, {"00000471", 471}, {QByteArray("471\0001001", 8), 471},
            {QByteArray(8, '\xff'), 0}, // an empty EEPROM
        };
        for (const auto &[bytes, number] : cases) {
            Stack stack;
            for (int i = 0; i < bytes.size(); ++i)
                stack.byte(244 + static_cast<uint32_t>(i)) = static_cast<uint8_t>(bytes[i]);
            const IdentificationRecord record(&stack.cache);
            stack.bus.fault = {"R", I2cBus::failed, 99};
            QCOMPARE(record.partNumber(), 0);
            stack.bus.fault = {"none", 0, 0};
            QVERIFY2(record.partNumber() == number, bytes);
        }
    }
};

QTEST_GUILESS_MAIN(StorageTest)
#include "storagetest.moc"
