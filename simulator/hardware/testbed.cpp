#include "simulator/hardware/testbed.h"

#include "simulator/hardware/devicefiles.h"
#include "simulator/hardware/eventdevice.h"
#include "simulator/hardware/framebuffer.h"
#include "simulator/hardware/i2cdevice.h"
#include "simulator/hardware/overlayplane.h"
#include "simulator/hardware/programenvironment.h"

#include <array>
#include <cerrno>
#include <cstdlib>
#include <linux/input.h>

namespace {

constexpr int panelCount = 3;
constexpr int ledCount = 40;

EventRecord keyRecord(int code, bool pressed) { return {EV_KEY, static_cast<uint16_t>(code), pressed ? 1 : 0}; }

int errnoOf(HardwareFaults::I2c fault)
{
    switch (fault) {
    case HardwareFaults::I2c::Nack: return EIO;
    case HardwareFaults::I2c::Timeout: return ETIMEDOUT;
    case HardwareFaults::I2c::None:
    case HardwareFaults::I2c::Missing: break;
    }
    return 0;
}

} // namespace

struct TestBed::Private
{
    Private(TestBed *bed, const FrameDescriptor &frame, const HardwareFaults &faults);

    void addEventDevice(const QString &path, EventDevice *device, bool missing);
    void addI2c(const FrameDescriptor &frame, const HardwareFaults &faults);
    void addScreens();

    EventDevice &panel(int number) { return panels.at(size_t(number - 1)); }

    I2cDevice i2c;
    Framebuffer framebuffer{lcdWidth, lcdHeight};
    OverlayPlane overlay;
    EventDevice encoder{RecordFormat::Compact};
    EventDevice keyboard{RecordFormat::Native};
    std::array<EventDevice, panelCount> panels{
        EventDevice(RecordFormat::Compact), EventDevice(RecordFormat::Compact), EventDevice(RecordFormat::Compact)};
    std::array<std::array<int, ledCount + 1>, panelCount> leds{};
    std::chrono::microseconds clock; ///< Moves with the encoder's detents alone, so that their spacing is exact.
    DeviceFiles files;               ///< Last: its end ends the calls of the devices above.
};

TestBed::Private::Private(TestBed *bed, const FrameDescriptor &frame, const HardwareFaults &faults)
    : i2c(errnoOf(faults.i2c))
    , clock(std::chrono::duration_cast<std::chrono::microseconds>(std::chrono::system_clock::now().time_since_epoch()))
{
    addEventDevice(QStringLiteral("/dev/input/event0"), &encoder, faults.encoderMissing);
    addEventDevice(QStringLiteral("/dev/input/event1"), &keyboard, false);
    for (int panel = 1; panel <= panelCount; ++panel) {
        EventDevice *device = &panels[size_t(panel - 1)];
        addEventDevice(QStringLiteral("/dev/input/event%1").arg(panel + 1), device, faults.panelMissing[panel - 1]);
        QObject::connect(device, &EventDevice::ledWritten, bed, [this, bed, panel](int number, int value) {
            if (number >= 1 && number <= ledCount)
                leds[size_t(panel - 1)][size_t(number)] = value;
            emit bed->ledWritten(panel, number, value);
        });
    }
    addI2c(frame, faults);
    addScreens();
    files.addFolder(QLatin1String(runtimeFolder));
    QObject::connect(&overlay, &OverlayPlane::globalAlphaSet, bed, &TestBed::globalAlphaSet, Qt::QueuedConnection);
    files.addFile(QStringLiteral("/sys/bus/soc/devices/soc0/soc_id"), faults.otherProcessor ? "i.MX8MQ\n" : "i.MX6Q\n");
}

void TestBed::Private::addEventDevice(const QString &path, EventDevice *device, bool missing)
{
    if (missing)
        return files.withhold(path);
    if (device->path().isEmpty())
        return files.fail(QStringLiteral("The system has no pseudo-terminal for %1").arg(path));
    files.addLink(path, device->path());
    files.attach(path, device);
}

void TestBed::Private::addI2c(const FrameDescriptor &frame, const HardwareFaults &faults)
{
    const QString path = QStringLiteral("/dev/i2c-0");
    if (faults.i2c == HardwareFaults::I2c::Missing)
        return files.withhold(path);
    if (!faults.eepromBlank)
        i2c.eeprom().setPartNumber(frame.partNumber);
    files.addFile(path);
    files.attach(path, &i2c);
}

void TestBed::Private::addScreens()
{
    const QString lcd = QStringLiteral("/dev/fb0");
    if (!framebuffer.map(files.addFile(lcd, QByteArray(framebuffer.size(), '\0'))))
        files.fail(QStringLiteral("Cannot map %1: %2").arg(lcd, framebuffer.errorString()));
    files.attach(lcd, &framebuffer);
    const QString overlayPath = QStringLiteral("/dev/fb1");
    files.addFile(overlayPath);
    files.attach(overlayPath, &overlay);
}

TestBed::TestBed(const FrameDescriptor &frame, const HardwareFaults &faults, QObject *parent)
    : QObject(parent)
    , d(std::make_unique<Private>(this, frame, faults))
{
}

TestBed::~TestBed() = default;

QString TestBed::errorString() const { return d->files.errorString(); }

QProcessEnvironment TestBed::programEnvironment() const { return makeProgramEnvironment(d->files); }

void TestBed::setButton(int panel, int button, bool pressed)
{
    d->panel(panel).report(keyRecord(BTN_TRIGGER_HAPPY1 + button - 1, pressed), d->clock);
    emit buttonSet(panel, button, pressed);
}

void TestBed::turnKnob(int detents, std::chrono::milliseconds spacing)
{
    for (int i = 0; i < std::abs(detents); ++i) {
        d->clock += spacing;
        d->encoder.report({EV_REL, REL_X, detents > 0 ? 1 : -1}, d->clock);
    }
    emit knobTurned(detents, spacing);
}

void TestBed::setKeyboardKey(int code, bool pressed)
{
    d->keyboard.report(keyRecord(code, pressed), d->clock);
    emit keyboardKeySet(code, pressed);
}

void TestBed::deliverRaw(int panel, const QByteArray &bytes)
{
    (panel == 0 ? d->encoder : d->panel(panel)).deliver(bytes);
}

int TestBed::led(int panel, int number) const { return d->leds.at(size_t(panel - 1)).at(size_t(number)); }

QImage TestBed::lcd() const { return d->framebuffer.picture(); }
