#include "hardware/eeprom24xx.h"

#include "recordingbus.h"

#include <QTest>

#include <utility>
#include <vector>

class Eeprom24xxTest : public QObject
{
    Q_OBJECT

private slots:
    void causesAreStacked();
    void models_data();
    void models();
    void transfers_data();
    void transfers();
    void outOfRangeTransfersNothing_data();
    void outOfRangeTransfersNothing();
    void waitsForAcknowledge_data();
    void waitsForAcknowledge();
    void stopsAtTheFirstFailure();
};

void Eeprom24xxTest::causesAreStacked()
{
    QCOMPARE(pushed(0, 2), 0x2U);
    QCOMPARE(pushed(pushed(0, 1), 2), 0x12U);
    QCOMPARE(pushed(3, 14), 0x3EU);
    QCOMPARE(pushed(3, 16), 0x3FU); // not 0x30, nor 0x40
    QCOMPARE(pushed(3, 0), 3U);
    StorageResult result = 1;
    for (uint32_t code = 2; code <= 8; ++code)
        result = pushed(result, code);
    QCOMPARE(result, 0x12345678U);
    QCOMPARE(pushed(result, 9), 0x23456789U);
    QCOMPARE(pushed(0x10000000, 0), 0x10000000U);
}

void Eeprom24xxTest::models_data()
{
    QTest::addColumn<int>("model");
    QTest::addColumn<uint32_t>("size");
    QTest::addColumn<uint32_t>("pageSize");
    QTest::addColumn<int>("addressBytes");

    const auto row = [](int model, uint32_t size, uint32_t pageSize, int addressBytes) {
        QTest::addRow("model %d", model) << model << size << pageSize << addressBytes;
    };
    row(1, 128, 8, 1);
    row(2, 256, 8, 1);
    row(4, 512, 16, 1);
    row(8, 1024, 16, 1);
    row(32, 4096, 32, 2);
    row(128, 16384, 64, 2);
    row(256, 32768, 64, 2);
    row(512, 65536, 128, 2);
    row(1025, 131072, 128, 2);
}

void Eeprom24xxTest::models()
{
    QFETCH(int, model);
    QFETCH(uint32_t, size);
    QFETCH(uint32_t, pageSize);
    RecordingBus bus;
    Eeprom24xx eeprom(&bus, 0xA0, model, 0);
    QCOMPARE(eeprom.size(), size);
    std::vector<uint8_t> bytes(size);
    QCOMPARE(eeprom.read(0, bytes.data(), size), 0U);
    QCOMPARE(bus.transfers.size(), static_cast<int>(size / pageSize));
    QCOMPARE(bus.transfers[1], QString::asprintf("R a0 %04x+%u", pageSize, pageSize));
    QTEST(int(bus.addressBytes), "addressBytes");
}

void Eeprom24xxTest::transfers_data()
{
    QTest::addColumn<int>("model");
    QTest::addColumn<int>("device");
    QTest::addColumn<uint32_t>("offset");
    QTest::addColumn<uint32_t>("len");
    QTest::addColumn<char>("operation");
    QTest::addColumn<QStringList>("transfers");

    QTest::newRow("chunks end with the page")
        << 512 << 0xAE << 100U << 200U << 'R' << QStringList{"R ae 0064+28", "R ae 0080+128", "R ae 0100+44"};
    QTest::newRow("the last byte") << 512 << 0xAE << 65535U << 1U << 'R' << QStringList{"R ae ffff+1"};
    QTest::newRow("nothing at the end") << 512 << 0xAE << 65536U << 0U << 'R' << QStringList{};
    QTest::newRow("the second block of a 1025 has an address of its own")
        << 1025 << 0xA0 << 65530U << 12U << 'R' << QStringList{"R a0 fffa+6", "R a8 0000+6"};
    QTest::newRow("the first block of a 1025 clears bit 3 and no other")
        << 1025 << 0xAE << 0U << 4U << 'R' << QStringList{"R a6 0000+4"};
    QTest::newRow("a small model counts blocks of 256 in the device address")
        << 8 << 0xA0 << 508U << 8U << 'R' << QStringList{"R a2 00fc+4", "R a4 0000+4"};
    QTest::newRow("the last block of an 8") << 8 << 0xA0 << 1020U << 4U << 'R' << QStringList{"R a6 00fc+4"};
    QTest::newRow("a small model gives up its low address bits")
        << 1 << 0xAE << 0U << 4U << 'R' << QStringList{"R a0 0000+4"};
    QTest::newRow("each page written is waited for")
        << 512 << 0xAE << 120U << 16U << 'W' << QStringList{"W ae 0078+8", "P ae", "W ae 0080+8", "P ae"};
    QTest::newRow("a fill goes by sixteen, and ends with the page")
        << 512 << 0xAE << 120U << 34U << 'F'
        << QStringList{"W ae 0078+8", "P ae", "W ae 0080+16", "P ae", "W ae 0090+10", "P ae"};
    QTest::newRow("a small model is polled at its first block")
        << 8 << 0xAE << 0x300U << 4U << 'W' << QStringList{"W a6 0000+4", "P a0"};
    QTest::newRow("a 1025 is polled without its low bits")
        << 1025 << 0xAE << 0x10000U << 4U << 'F' << QStringList{"W ae 0000+4", "P ac"};
}

void Eeprom24xxTest::transfers()
{
    QFETCH(int, model);
    QFETCH(int, device);
    QFETCH(uint32_t, offset);
    QFETCH(uint32_t, len);
    QFETCH(char, operation);
    RecordingBus bus;
    Eeprom24xx eeprom(&bus, static_cast<uint8_t>(device), model, 0);
    std::vector<uint8_t> written(len, 0x5A);
    for (uint32_t i = 0; operation != 'F' && i < len; ++i)
        written[i] = static_cast<uint8_t>(i * 7 + 1);
    QCOMPARE(operation == 'F' ? eeprom.fill(offset, 0x5A, len) : eeprom.write(offset, written.data(), len), 0U);
    const QStringList writes = std::exchange(bus.transfers, {});
    std::vector<uint8_t> read(len);
    QCOMPARE(eeprom.read(offset, read.data(), len), 0U);
    QTEST(operation == 'R' ? bus.transfers : writes, "transfers");
    QCOMPARE(read, written);
}

void Eeprom24xxTest::outOfRangeTransfersNothing_data()
{
    QTest::addColumn<int>("model");
    QTest::addColumn<uint32_t>("offset");
    QTest::addColumn<uint32_t>("len");

    QTest::newRow("the first chunk would fit") << 512 << 65530U << 10U;
    QTest::newRow("all but one byte would fit") << 512 << 0U << 65537U;
    QTest::newRow("behind the end") << 512 << 65537U << 0U;
    QTest::newRow("the sum is beyond 32 bits, from a high offset") << 512 << 0xFFFFFFF0U << 0x20U;
    QTest::newRow("the sum is beyond 32 bits, from a long length") << 512 << 16U << 0xFFFFFFF8U;
    QTest::newRow("an unknown model has no bytes") << 64 << 0U << 1U;
    QTest::newRow("of an unknown model not even nothing") << 64 << 0U << 0U;
}

void Eeprom24xxTest::outOfRangeTransfersNothing()
{
    QFETCH(int, model);
    QFETCH(uint32_t, offset);
    QFETCH(uint32_t, len);
    RecordingBus bus;
    Eeprom24xx eeprom(&bus, 0xAE, model, 0);
    std::vector<uint8_t> bytes(0x10001);
    QCOMPARE(eeprom.read(offset, bytes.data(), len), storageOutOfRange);
    QCOMPARE(eeprom.write(offset, bytes.data(), len), storageOutOfRange);
    QCOMPARE(eeprom.fill(offset, 0, len), storageOutOfRange);
    QCOMPARE(bus.transfers, QStringList{});
}

void Eeprom24xxTest::waitsForAcknowledge_data()
{
    QTest::addColumn<int>("refusals");
    QTest::addColumn<int>("polls");
    QTest::addColumn<uint32_t>("result");

    QTest::newRow("a busy EEPROM is polled until it answers") << 3 << 4 << 0U;
    QTest::newRow("the last poll counts") << 255 << 256 << 0U;
    QTest::newRow("one that never answers is given up") << 100000 << 256 << 0x12U;
}

void Eeprom24xxTest::waitsForAcknowledge()
{
    QFETCH(int, refusals);
    RecordingBus bus;
    bus.answer = [&refusals](const QString &transfer) {
        return transfer.startsWith('P') && refusals-- > 0 ? I2cBus::notAcknowledged : 0;
    };
    Eeprom24xx eeprom(&bus, 0xAE, 512, 0);
    const std::vector<uint8_t> data(128);
    QTEST(eeprom.write(0, data.data(), 128), "result");
    QTEST(int(bus.transfers.count("P ae")), "polls");
    QCOMPARE(bus.transfers.first(), "W ae 0000+128");
}

void Eeprom24xxTest::stopsAtTheFirstFailure()
{
    RecordingBus bus;
    bus.answer = [](const QString &transfer) { return transfer.contains(" 0080+") ? I2cBus::timedOut : 0; };
    Eeprom24xx eeprom(&bus, 0xAE, 512, 0);
    std::vector<uint8_t> bytes(384);
    QCOMPARE(eeprom.read(0, bytes.data(), 384), 0x22U);
    QCOMPARE(eeprom.write(0, bytes.data(), 384), 0x22U);
    QCOMPARE(eeprom.fill(0x78, 0, 24), 0x22U);
    QCOMPARE(bus.transfers,
        (QStringList{"R ae 0000+128", "R ae 0080+128", "W ae 0000+128", "P ae", "W ae 0080+128", "W ae 0078+8", "P ae",
            "W ae 0080+16"}));
}

QTEST_GUILESS_MAIN(Eeprom24xxTest)
#include "eeprom24xxtest.moc"
