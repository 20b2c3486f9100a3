#include "hardware/frameidentification.h"
#include "hardware/linuxi2cbus.h"
#include "hardware/overlayalpha.h"
#include "hardware/supportedsoc.h"
#include "simulator/hardware/devicefiles.h"
#include "simulator/hardware/eepromimage.h"
#include "simulator/hardware/ioctldevice.h"

#include <QMap>
#include <QTest>

#include <cerrno>
#include <future>
#include <linux/i2c-dev.h>
#include <linux/i2c.h>
#include <mutex>
#include <sys/stat.h>

namespace {

/// An adapter with an EEPROM that writes down what it is asked: "timeout 1", and for a transfer its messages, as in
/// "w57 0080, r57+128". A message without start begins with '+', one with a stop of its own ends with '.'.
struct Adapter : IoctlDevice
{
    unsigned long functionality = I2C_FUNC_I2C;
    QMap<unsigned long, int> errors; ///< By request: the errno it fails with.
    EepromImage eeprom;
    QStringList requests;

    long ioctl(unsigned long request, ClientMemory argument) override
    {
        if (request == I2C_FUNCS)
            *argument.target<unsigned long>() = functionality;
        else if (request == I2C_TIMEOUT)
            requests += QString("timeout %1").arg(*reinterpret_cast<unsigned long *>(argument.bytes().data()));
        else if (request == I2C_RDWR)
            requests += transfer(argument.follow(0, sizeof(i2c_rdwr_ioctl_data)));
        return -errors.value(request, 0);
    }

    QString transfer(ClientMemory header)
    {
        const uint32_t count = reinterpret_cast<i2c_rdwr_ioctl_data *>(header.bytes().data())->nmsgs;
        const ClientMemory list = header.follow(offsetof(i2c_rdwr_ioctl_data, msgs), count * sizeof(i2c_msg));
        const auto *messages = reinterpret_cast<const i2c_msg *>(list.bytes().data());
        QStringList texts;
        for (size_t i = 0; i < count; ++i) {
            const auto &[address, flags, length, buffer] = messages[i];
            const auto bytes = list.follow(i * sizeof(i2c_msg) + offsetof(i2c_msg, buf), length).bytes();
            const QByteArray contents(reinterpret_cast<const char *>(bytes.data()), length);
            const bool reads = flags & I2C_M_RD;
            reads ? eeprom.read(bytes) : eeprom.write(bytes);
            texts += (flags & I2C_M_NOSTART ? "+" : "") + QString(reads ? 'r' : 'w') + QString::number(address, 16)
                + (reads ? '+' + QByteArray::number(length) : ' ' + contents.toHex()) + (flags & I2C_M_STOP ? "." : "");
        }
        return texts.join(", ");
    }
};

} // namespace

class DevicesTest : public QObject
{
    Q_OBJECT
private slots:
    void init()
    {
        m_adapter = std::make_unique<Adapter>();
        m_files = std::make_unique<DeviceFiles>();
        m_files->addFile("/dev/i2c-0");
        m_files->attach("/dev/i2c-0", m_adapter.get());
    }
    void cleanup() { m_files.reset(); }

    void opensAdaptersForPlainI2cOnly()
    {
        LinuxI2cBus bus;
        m_adapter->functionality = ~0UL - I2C_FUNC_I2C;
        QCOMPARE(bus.open("/dev/i2c-0"), -1);
        QVERIFY(!bus.isOpen());
        m_adapter->functionality = ~0UL;
        m_adapter->errors = {{I2C_FUNCS, ENOTTY}};
        QCOMPARE(bus.open("/dev/i2c-0"), -1);
    }

    void transfers()
    {
        constexpr unsigned long plain = I2C_FUNC_I2C, noStart = I2C_FUNC_I2C | I2C_FUNC_NOSTART;
        // the options: flags, time-out factor, bus speed, address bytes
        const std::tuple<const char *, unsigned long, char, I2cTransferOptions, QString> cases[] = {
            {"read in one request", noStart, 'r', {0, 1000, 400000, 2}, "timeout 1; w57 0304, r57+3"},
            {"read in two requests", plain, 'r', {1, 1000, 400000, 2}, "timeout 1; w57 0304; r57+3"},
            {"other address lengths are 4", plain, 'r', {0, 1000, 400000, 0}, "timeout 1; w57 01020304, r57+3"},
            {"write in one message", plain, 'w', {0, 1000, 400000, 2}, "timeout 1; w57 0304616263"},
            {"write without second start", noStart, 'w', {0, 1000, 400000, 2}, "timeout 1; w57 0304, +w57 616263"},
            {"a patient caller on a slow bus", plain, 'r', {0, 65535, 10000, 1}, "timeout 2621; w57 04, r57+3"},
            {"the shortest time-out is one", plain, 'r', {0, 1, 1000000, 1}, "timeout 1; w57 04, r57+3"},
            {"bus speed 0 is the usual one", plain, 'r', {0, 4000, 0, 1}, "timeout 4; w57 04, r57+3"},
        };
        for (const auto &[name, functionality, operation, options, requests] : cases) {
            m_adapter->functionality = functionality;
            m_adapter->requests.clear();
            m_adapter->eeprom = {};
            LinuxI2cBus bus;
            QCOMPARE(bus.open("/dev/i2c-0"), 0);
            const std::lock_guard guard(static_cast<I2cBus &>(bus)); // the transfer locks it again
            char bytes[]{'a', 'b', 'c'};
            const StorageResult result = operation == 'r' ? bus.read(0xAE, 0x01020304, bytes, 3, options)
                                                          : bus.write(0xAE, 0x01020304, bytes, 3, options);
            QVERIFY2(result == 0, name);
            QVERIFY2(QByteArray(bytes, 3) == (operation == 'r' ? "\xff\xff\xff" : "abc"), name);
            const QString sent = m_adapter->requests.join("; ");
            QVERIFY2(sent == requests, qPrintable(name + (": " + sent)));
        }
    }

    void errors()
    {
        LinuxI2cBus bus;
        QCOMPARE(bus.open("/dev/i2c-0"), 0);
        QByteArray bytes(65537, 0); // as 16 bits: 1
        QCOMPARE(bus.read(0xAE, 0, bytes.data(), 65537, {}), I2cBus::failed);
        QCOMPARE(bus.write(0xAE, 0, bytes.data(), 65535, {}), I2cBus::failed); // no room for the address
        const std::tuple<unsigned long, int, StorageResult> cases[]
            = {{I2C_TIMEOUT, EIO, I2cBus::failed}, {I2C_RDWR, EIO, I2cBus::notAcknowledged},
                {I2C_RDWR, ETIMEDOUT, I2cBus::timedOut}, {I2C_RDWR, ENXIO, I2cBus::failed}};
        for (const auto &[request, error, result] : cases) {
            m_adapter->errors = {{request, error}};
            QCOMPARE(bus.write(0xAE, 0, bytes.data(), 1, {}), result);
            QCOMPARE(bus.read(0xAE, 0, bytes.data(), 1, {I2cTransferOptions::separateMessages}), result);
        }
        // nothing follows a request that failed
        const QString transfers = ", timeout 1, w57 0000, timeout 1, w57 00";
        QCOMPARE(m_adapter->requests.join(", "), "timeout 1, timeout 1" + transfers + transfers + transfers);
    }

    void recoversWithNinePulses()
    {
        for (const unsigned long functionality : {0x1UL, 0x5UL, 0x11UL, 0x15UL}) {
            m_adapter->functionality = functionality;
            LinuxI2cBus bus;
            QCOMPARE(bus.open("/dev/i2c-0"), 0);
            QCOMPARE(bus.recoverBus(), functionality == 0x15 ? 0U : I2cBus::failed);
        }
        QCOMPARE(m_adapter->requests, QStringList(9, "+w0 ."));
    }

    void identifiesTheFrame()
    {
        FrameIdentification &identification = FrameIdentification::instance();
        m_adapter->eeprom.setPartNumber(47110017);
        m_adapter->errors = {{I2C_RDWR, EIO}};
        QCOMPARE(identification.open(), 0);
        QCOMPARE(identification.variantCode(), 0);
        m_adapter->errors.clear();
        m_adapter->requests.clear();
        QCOMPARE(identification.variantCode(), 47110017); // tried again
        QCOMPARE(identification.variantCode(), 47110017); // from memory
        QCOMPARE(m_adapter->requests.size(), 16);
        m_adapter->functionality = 0;
        QCOMPARE(identification.open(), -1); // and the frame read before is forgotten
        QCOMPARE(identification.variantCode(), 0);
    }

    void asksTheProcessorAndItsOverlay()
    {
        m_files->addFile("/sys/bus/soc/devices/soc0/soc_id", "soc\nFreescale i.MX6Q"); // without a line end
        QVERIFY(isSupportedSoc());
        m_files->addFile("/dev/fb1"); // a file that knows no request
        QTest::ignoreMessage(QtWarningMsg, "Failed to set framebuffer alpha");
        disableOverlayAlpha();
    }

    void filesGatherPieces()
    {
        const QByteArray pipe = (m_files->root() + "/pipe").toUtf8();
        QCOMPARE(::mkfifo(pipe, 0600), 0);
        DeviceFile file;
        QCOMPARE(file.open(pipe), 0);
        QCOMPARE(file.open("/no/such"), 0);                     // it stays with the one it has
        QByteArray sent(300000, 'x'), received(sent.size(), 0); // several times what a pipe holds
        auto written = std::async([&] { return file.writeAll(sent, static_cast<size_t>(sent.size())); });
        QCOMPARE(file.readAll(received.data(), static_cast<size_t>(received.size())), sent.size());
        QCOMPARE(written.get(), sent.size());
        QCOMPARE(received, sent);
        QCOMPARE(file.setNonBlocking(), 0);
        QCOMPARE(file.readAll(received.data(), 1), -1);
        DeviceFile empty;
        QCOMPARE(empty.open("/dev/null"), 0);
        QCOMPARE(empty.readAll(received.data(), 1), -1); // the file ends before
    }

private:
    std::unique_ptr<Adapter> m_adapter;
    std::unique_ptr<DeviceFiles> m_files; // after the adapter that it uses
};

QTEST_GUILESS_MAIN(DevicesTest)
#include "devicestest.moc"
