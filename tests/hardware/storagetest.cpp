#include "hardware/eeprom24xx.h"
#include "hardware/identificationrecord.h"
#include "hardware/rangeoffsetrandomaccessstorage.h"
#include "hardware/writethroughcachedstorage.h"
#include "recordingbus.h"

#include <QTest>

namespace {

/// The stack of the identification, on a range that does not start at 0.
struct Stack
{
    RecordingBus bus;
    Eeprom24xx eeprom{&bus, 0xAE, 512, 0};
    RangeOffsetRandomAccessStorage range{&eeprom, 0x100, 1024};
    WriteThroughCachedStorage cache{&range};

    uint8_t &byte(uint32_t offset) { return bus.memory[0xAE0000 | (0x100 + offset)]; }
    int cachedByte(uint32_t offset)
    {
        uint8_t result = 0;
        return cache.read(offset, &result, 1) == 0 ? result : -1;
    }
};

} // namespace

class StorageTest : public QObject
{
    Q_OBJECT

private slots:
    void rangeStartsAtItsBase();
    void rangeDoesNotWrap();
    void cacheAnswersFromMemory();
    void cacheDoesNotAnswerFromAFailedLoad();
    void cacheForgetsAfterAFailedReload();
    void cacheFollowsSuccessfulWritesOnly();
    void cacheChecksRangeFirst();
    void partNumber_data();
    void partNumber();
    void unreadablePartNumberIsNone();
};

void StorageTest::rangeStartsAtItsBase()
{
    Stack stack;
    QCOMPARE(stack.range.size(), 1024U);
    QCOMPARE(stack.range.write(4, "ab", 2), 0U);
    QCOMPARE(stack.range.fill(6, 'c', 1), 0U);
    QCOMPARE(stack.byte(4), uint8_t('a'));
    char bytes[3]{};
    QCOMPARE(stack.range.read(4, bytes, 3), 0U);
    QCOMPARE(QByteArray(bytes, 3), "abc");
    QCOMPARE(stack.range.read(2000, bytes, 3), 0U); // its length bounds nothing
    QCOMPARE(stack.range.read(65536 - 0x100, bytes, 1), storageOutOfRange);
}

void StorageTest::rangeDoesNotWrap()
{
    Stack stack;
    char byte = 0;
    QCOMPARE(stack.range.read(0xFFFFFF10, &byte, 1), storageOutOfRange); // 0x10, were it to wrap
    QCOMPARE(stack.range.write(0xFFFFFF10, &byte, 1), storageOutOfRange);
    QCOMPARE(stack.range.fill(0xFFFFFF10, 0, 1), storageOutOfRange);
    QCOMPARE(stack.bus.transfers, QStringList{});
}

void StorageTest::cacheAnswersFromMemory()
{
    Stack stack;
    stack.byte(1023) = 7;
    QCOMPARE(stack.bus.transfers, QStringList{});
    QCOMPARE(stack.cache.load(), 0U);
    QCOMPARE(stack.bus.transfers.size(), 8);
    stack.byte(1023) = 8;
    QCOMPARE(stack.cachedByte(1023), 7);
    QCOMPARE(stack.bus.transfers.size(), 8);
    QCOMPARE(stack.cache.load(), 0U);
    QCOMPARE(stack.cachedByte(1023), 8);
}

void StorageTest::cacheDoesNotAnswerFromAFailedLoad()
{
    Stack stack;
    stack.byte(0) = 7;
    stack.bus.answer = [](const QString &) { return I2cBus::timedOut; };
    QCOMPARE(stack.cache.load(), 0x22U);
    uint8_t byte = 9;
    QCOMPARE(stack.cache.read(0, &byte, 1), 0x22U);
    QCOMPARE(stack.cache.write(0, &byte, 1), 0x22U);
    QCOMPARE(stack.cache.fill(0, 5, 1), 0x22U);
    QCOMPARE(byte, uint8_t(9));
    QCOMPARE(stack.bus.transfers, QStringList(4, "R ae 0100+128")); // asked anew each time, never written
    stack.bus.answer = [](const QString &) { return 0; };
    QCOMPARE(stack.cachedByte(0), 7);
}

void StorageTest::cacheForgetsAfterAFailedReload()
{
    Stack stack;
    QCOMPARE(stack.cache.load(), 0U);
    stack.byte(0) = 7;
    stack.byte(1000) = 8;
    stack.bus.answer = [](const QString &transfer) { return transfer.contains("0200") ? I2cBus::failed : 0; };
    QCOMPARE(stack.cache.load(), 0x32U);
    QCOMPARE(stack.cachedByte(0), -1);
    stack.bus.answer = [](const QString &) { return 0; };
    QCOMPARE(stack.cachedByte(0), 7);
    QCOMPARE(stack.cachedByte(1000), 8);
}

void StorageTest::cacheFollowsSuccessfulWritesOnly()
{
    Stack stack;
    QCOMPARE(stack.cache.write(10, "ab", 2), 0U);
    QCOMPARE(stack.cache.fill(12, 'c', 2), 0U);
    QCOMPARE(stack.byte(11), uint8_t('b'));
    QCOMPARE(stack.byte(13), uint8_t('c'));
    stack.bus.answer = [](const QString &transfer) { return transfer.startsWith('R') ? 0 : I2cBus::notAcknowledged; };
    QCOMPARE(stack.cache.write(10, "xy", 2), 0x12U);
    QCOMPARE(stack.cache.fill(12, 'z', 2), 0x12U);
    char bytes[5]{};
    QCOMPARE(stack.cache.read(10, bytes, 5), 0U);
    QCOMPARE(QByteArray(bytes, 5), QByteArray("abcc\0", 5));
}

void StorageTest::cacheChecksRangeFirst()
{
    Stack stack;
    char bytes[2]{};
    for (const auto &[offset, len] : {std::pair(1023U, 2U), std::pair(1025U, 0U), std::pair(2U, 0xFFFFFFFFU)}) {
        QCOMPARE(stack.cache.read(offset, bytes, len), storageOutOfRange);
        QCOMPARE(stack.cache.write(offset, bytes, len), storageOutOfRange);
        QCOMPARE(stack.cache.fill(offset, 0, len), storageOutOfRange);
    }
    QCOMPARE(stack.bus.transfers, QStringList{});
}

void StorageTest::partNumber_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<int>("number");

    QTest::newRow("eight digits, and the ninth byte is another field") << QByteArray("471100175") << 47110017;
    QTest::newRow("the largest") << QByteArray("999999999") << 99999999;
    QTest::newRow("zeros") << QByteArray("00000000") << 0;
    QTest::newRow("blanks and tabs before it") << QByteArray(" \t\n 471 ") << 471;
    QTest::newRow("a plus") << QByteArray("+47     ") << 47;
    QTest::newRow("a minus") << QByteArray("-4711001") << -4711001;
    QTest::newRow("letters after it") << QByteArray("47x11001") << 47;
    QTest::newRow("letters before it") << QByteArray("x4711001") << 0;
    QTest::newRow("a sign alone") << QByteArray("+ 471100") << 0;
    QTest::newRow("ends at a zero byte") << QByteArray("471\0"
                                                       "1001",
        8) << 471;
    QTest::newRow("an empty EEPROM") << QByteArray(8, '\xff') << 0;
    QTest::newRow("zero bytes") << QByteArray(8, '\0') << 0;
}

void StorageTest::partNumber()
{
    QFETCH(QByteArray, bytes);
    Stack stack;
    for (int i = 0; i < bytes.size(); ++i)
        stack.byte(244 + static_cast<uint32_t>(i)) = static_cast<uint8_t>(bytes[i]);
    const IdentificationRecord record(&stack.cache);
    QTEST(record.partNumber(), "number");
}

void StorageTest::unreadablePartNumberIsNone()
{
    Stack stack;
    stack.byte(244) = '7';
    stack.bus.answer = [](const QString &) { return I2cBus::failed; };
    const IdentificationRecord record(&stack.cache);
    QCOMPARE(record.partNumber(), 0);
    stack.bus.answer = [](const QString &) { return 0; };
    QCOMPARE(record.partNumber(), 7);
}

QTEST_GUILESS_MAIN(StorageTest)
#include "storagetest.moc"
