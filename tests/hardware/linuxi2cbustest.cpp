#include "hardware/linuxi2cbus.h"

#include "hardware/frameidentification.h"
#include "hardware/overlayalpha.h"
#include "hardware/supportedsoc.h"
#include "machine.h"

#include <QTest>

#include <cerrno>
#include <linux/i2c-dev.h>
#include <linux/i2c.h>
#include <mutex>

class LinuxI2cBusTest : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_machine = std::make_unique<Machine>(); }
    void cleanup() { m_machine.reset(); }
    void opensAdaptersForPlainI2cOnly();
    void transfers_data();
    void transfers();
    void movesBytes();
    void errors_data();
    void errors();
    void refusedTimeoutTransfersNothing();
    void longTransfersAreRefusedWhole();
    void recoversWithNinePulses();
    void identifiesTheFrame();
    void knowsTheProcessor_data();
    void knowsTheProcessor();
    void switchesOverlayAlphaOff();

private:
    int open(LinuxI2cBus &bus)
    {
        const int result = Machine::served([&bus] { return bus.open("/dev/i2c-0"); });
        m_machine->requests.clear();
        return result;
    }

    std::unique_ptr<Machine> m_machine;
};

void LinuxI2cBusTest::opensAdaptersForPlainI2cOnly()
{
    LinuxI2cBus bus;
    m_machine->functionality = ~0UL & ~0x1UL;
    QCOMPARE(open(bus), -1);
    QVERIFY(!bus.isOpen());
    m_machine->functionality = ~0UL;
    m_machine->errors = {{I2C_FUNCS, ENOTTY}};
    QCOMPARE(open(bus), -1);
    QVERIFY(!bus.isOpen());
    m_machine->errors.clear();
    QCOMPARE(open(bus), 0);
    QVERIFY(bus.isOpen());
    LinuxI2cBus other;
    QCOMPARE(other.open("/dev/i2c-9"), -1);
}

void LinuxI2cBusTest::transfers_data()
{
    QTest::addColumn<bool>("reading");
    QTest::addColumn<uint32_t>("functionality");
    QTest::addColumn<int>("addressBytes");
    QTest::addColumn<int>("flags");
    QTest::addColumn<uint32_t>("busSpeed");
    QTest::addColumn<int>("timeoutFactor");
    QTest::addColumn<QStringList>("requests");

    constexpr uint32_t plain = I2C_FUNC_I2C;
    constexpr uint32_t noStart = I2C_FUNC_I2C | I2C_FUNC_NOSTART;
    constexpr uint32_t usual = 400000;
    QTest::newRow("read: both messages in one request")
        << true << noStart << 2 << 0 << usual << 1000 << QStringList{"timeout 1", "w57 0304, r57+3"};
    QTest::newRow("read: separate requests")
        << true << plain << 2 << 1 << usual << 1000 << QStringList{"timeout 1", "w57 0304", "r57+3"};
    QTest::newRow("read: another flag separates nothing")
        << true << plain << 1 << 2 << usual << 1000 << QStringList{"timeout 1", "w57 04, r57+3"};
    QTest::newRow("read: four address bytes")
        << true << plain << 4 << 0 << usual << 1000 << QStringList{"timeout 1", "w57 01020304, r57+3"};
    QTest::newRow("read: any other number of address bytes is four")
        << true << plain << 0 << 0 << usual << 1000 << QStringList{"timeout 1", "w57 01020304, r57+3"};
    QTest::newRow("write: one message") << false << plain << 2 << 0 << usual << 1000
                                        << QStringList{"timeout 1", "w57 0304616263"};
    QTest::newRow("write: data in a message without start")
        << false << noStart << 2 << 0 << usual << 1000 << QStringList{"timeout 1", "w57 0304, +w57 616263"};
    QTest::newRow("a slow bus gets longer")
        << false << plain << 1 << 0 << 100000U << 1000 << QStringList{"timeout 4", "w57 04616263"};
    QTest::newRow("a patient caller gets longer")
        << true << plain << 1 << 0 << 10000U << 65535 << QStringList{"timeout 2621", "w57 04, r57+3"};
    QTest::newRow("the shortest time-out is one")
        << true << plain << 1 << 0 << 1000000U << 1 << QStringList{"timeout 1", "w57 04, r57+3"};
    QTest::newRow("bus speed 0 is the usual one")
        << true << plain << 1 << 0 << 0U << 1000 << QStringList{"timeout 1", "w57 04, r57+3"};
}

void LinuxI2cBusTest::transfers()
{
    QFETCH(bool, reading);
    QFETCH(uint32_t, functionality);
    QFETCH(int, addressBytes);
    QFETCH(int, flags);
    QFETCH(uint32_t, busSpeed);
    QFETCH(int, timeoutFactor);
    m_machine->functionality = functionality;
    LinuxI2cBus bus;
    QCOMPARE(open(bus), 0);
    const I2cTransferOptions options{static_cast<uint16_t>(flags), static_cast<uint16_t>(timeoutFactor), busSpeed,
        static_cast<uint8_t>(addressBytes)};
    char bytes[]{'a', 'b', 'c'};
    QCOMPARE(Machine::served([&] {
        return reading ? bus.read(0xAE, 0x01020304, bytes, 3, options) : bus.write(0xAE, 0x01020304, bytes, 3, options);
    }),
        0U);
    QTEST(m_machine->requests, "requests");
}

void LinuxI2cBusTest::movesBytes()
{
    const I2cTransferOptions options{0, 1000, 400000, 2};
    for (const unsigned long functionality : {0x1UL, 0x11UL}) {
        m_machine->functionality = functionality;
        LinuxI2cBus bus;
        QCOMPARE(open(bus), 0);
        QCOMPARE(Machine::served([&] { return bus.write(0xAE, 0x1234, "hello", 5, options); }), 0U);
        QCOMPARE(m_machine->eeprom.mid(0x1233, 7), "\xffhello\xff");
        QByteArray read(5, 0);
        QCOMPARE(Machine::served([&] {
            const std::lock_guard guard(static_cast<I2cBus &>(bus)); // the transfer locks it again
            return bus.read(0xAE, 0x1234, read.data(), 5, options);
        }),
            0U);
        QCOMPARE(read, "hello");
        QCOMPARE(Machine::served([&] { return bus.write(0xAE, 0, nullptr, 0, options); }), 0U);
        m_machine->eeprom.fill('\xff');
    }
}

void LinuxI2cBusTest::errors_data()
{
    QTest::addColumn<int>("error");
    QTest::addColumn<uint32_t>("result");

    QTest::newRow("not acknowledged") << EIO << I2cBus::notAcknowledged;
    QTest::newRow("timed out") << ETIMEDOUT << I2cBus::timedOut;
    QTest::newRow("no such address") << ENXIO << I2cBus::failed;
}

void LinuxI2cBusTest::errors()
{
    QFETCH(int, error);
    LinuxI2cBus bus;
    QCOMPARE(open(bus), 0);
    m_machine->errors = {{I2C_RDWR, error}};
    char byte = 0;
    const I2cTransferOptions separate{I2cTransferOptions::separateMessages, 1000, 400000, 1};
    QTEST(Machine::served([&] { return bus.write(0xAE, 0, &byte, 1, {}); }), "result");
    QTEST(Machine::served([&] { return bus.read(0xAE, 0, &byte, 1, {}); }), "result");
    QTEST(Machine::served([&] { return bus.read(0xAE, 0, &byte, 1, separate); }), "result");
    QCOMPARE(m_machine->requests.size(), 6); // no second message after a first that failed
}

void LinuxI2cBusTest::refusedTimeoutTransfersNothing()
{
    LinuxI2cBus bus;
    QCOMPARE(open(bus), 0);
    m_machine->errors = {{I2C_TIMEOUT, EIO}};
    char byte = 0;
    QCOMPARE(Machine::served([&] { return bus.read(0xAE, 0, &byte, 1, {}); }), I2cBus::failed);
    QCOMPARE(Machine::served([&] { return bus.write(0xAE, 0, &byte, 1, {}); }), I2cBus::failed);
    QCOMPARE(m_machine->requests, QStringList(2, "timeout 1"));
}

void LinuxI2cBusTest::longTransfersAreRefusedWhole()
{
    LinuxI2cBus bus;
    QCOMPARE(open(bus), 0);
    QByteArray bytes(65537, 0); // as 16 bits: 1
    QCOMPARE(bus.read(0xAE, 0, bytes.data(), 65537, {}), I2cBus::failed);
    QCOMPARE(bus.write(0xAE, 0, bytes.data(), 65537, {}), I2cBus::failed);
    QCOMPARE(bus.write(0xAE, 0, bytes.data(), 65535, {}), I2cBus::failed); // no room for the address
    QCOMPARE(m_machine->requests, QStringList{});
}

void LinuxI2cBusTest::recoversWithNinePulses()
{
    for (const unsigned long tooFew : {0x1UL, 0x5UL, 0x11UL}) {
        m_machine->functionality = tooFew;
        LinuxI2cBus bus;
        QCOMPARE(open(bus), 0);
        QCOMPARE(bus.recoverBus(), I2cBus::failed);
        QCOMPARE(m_machine->requests, QStringList{});
    }
    m_machine->functionality = 0x15;
    LinuxI2cBus bus;
    QCOMPARE(open(bus), 0);
    QCOMPARE(Machine::served([&] { return bus.recoverBus(); }), 0U);
    QCOMPARE(m_machine->requests, QStringList(9, "+w00 ."));
    m_machine->errors = {{I2C_RDWR, ETIMEDOUT}};
    QCOMPARE(Machine::served([&] { return bus.recoverBus(); }), I2cBus::failed);
}

void LinuxI2cBusTest::identifiesTheFrame()
{
    FrameIdentification &identification = FrameIdentification::instance();
    const auto openIdentification = [&] { return Machine::served([&] { return identification.open(); }); };
    const auto variantCode = [&] { return Machine::served([&] { return identification.variantCode(); }); };
    m_machine->eeprom.replace(244, 9, "471100171");
    QCOMPARE(variantCode(), 0);
    m_machine->functionality = 0;
    QCOMPARE(openIdentification(), -1);
    QCOMPARE(variantCode(), 0);

    m_machine->functionality = I2C_FUNC_I2C;
    m_machine->errors = {{I2C_RDWR, EIO}};
    QCOMPARE(openIdentification(), 0);
    QCOMPARE(variantCode(), 0);
    m_machine->errors.clear();
    m_machine->requests.clear();
    QCOMPARE(variantCode(), 47110017);
    QCOMPARE(m_machine->requests.count("timeout 1"), 8);
    QCOMPARE(m_machine->requests.value(1), "w57 0000, r57+128");
    QCOMPARE(m_machine->requests.value(15), "w57 0380, r57+128");
    QCOMPARE(variantCode(), 47110017);
    QCOMPARE(m_machine->requests.size(), 16); // from memory

    identification.close();
    QCOMPARE(variantCode(), 0);
    m_machine->eeprom.replace(244, 8, "58220001");
    QCOMPARE(openIdentification(), 0);
    QCOMPARE(variantCode(), 58220001);
    m_machine->functionality = 0;
    QCOMPARE(openIdentification(), -1); // and the frame read before is forgotten
    QCOMPARE(variantCode(), 0);
}

void LinuxI2cBusTest::knowsTheProcessor_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<bool>("supported");

    QTest::newRow("no file") << QByteArray() << false;
    QTest::newRow("an empty file") << QByteArray("") << false;
    QTest::newRow("i.MX6") << QByteArray("i.MX6DL\n") << true;
    QTest::newRow("on another line, without its end") << QByteArray("soc\nFreescale i.MX6Q") << true;
    QTest::newRow("another processor") << QByteArray("i.MX53\nI.MX6\n") << false;
}

void LinuxI2cBusTest::knowsTheProcessor()
{
    QFETCH(QByteArray, text);
    if (!text.isNull())
        m_machine->setSocId(text);
    QTEST(isSupportedSoc(), "supported");
}

void LinuxI2cBusTest::switchesOverlayAlphaOff()
{
    static QStringList messages;
    const auto logged = [] {
        messages.clear();
        const QtMessageHandler before
            = qInstallMessageHandler([](QtMsgType type, const QMessageLogContext &, const QString &text) {
                  messages += QString::number(type) + ' ' + text;
              });
        Machine::served([] {
            disableOverlayAlpha();
            return true;
        });
        qInstallMessageHandler(before);
        return messages;
    };
    QCOMPARE(logged(), QStringList{});
    QCOMPARE(m_machine->requests, QStringList{"alpha 0 0"});
    m_machine->errors = {{0x40084621, EINVAL}};
    QCOMPARE(logged(), QStringList{"1 Failed to set framebuffer alpha"}); // QtWarningMsg
    m_machine->unplug("/dev/fb1");
    QCOMPARE(logged(), QStringList{"1 Failed to open framebuffer"});
    QCOMPARE(m_machine->requests.size(), 2);
}

QTEST_GUILESS_MAIN(LinuxI2cBusTest)
#include "linuxi2cbustest.moc"
