#pragma once

#include "hardware/framedescriptor.h"

#include <QImage>
#include <QObject>
#include <QProcessEnvironment>

#include <chrono>
#include <memory>

/// Faults of the hardware that a bed can start with.
struct HardwareFaults
{
    enum class I2c { None, Missing, Nack, Timeout };
    I2c i2c = I2c::None;
    bool eepromBlank = false;    ///< All 0xFF, as a chip that was never programmed.
    bool otherProcessor = false; ///< soc_id names another processor.
    bool encoderMissing = false;
    bool panelMissing[3] = {}; ///< Panels 1 to 3.
};

/// The hardware around the front-panel program: a bed of device files that a process started with
/// programEnvironment() sees in place of the machine's own. This process sees the machine's, needs no special start,
/// and can have several beds. The program's ioctl requests are answered on a thread of the bed's own; key records
/// and LEDs need the Qt event loop to turn. As on the machine, keys are lost while no program has the device open.
class TestBed : public QObject
{
    Q_OBJECT
public:
    static constexpr int lcdWidth = 320;
    static constexpr int lcdHeight = 240;
    static constexpr int pushKey = 28; ///< The knob is the keyboard's Return; see setKeyboardKey().
    static constexpr int escapeKey = 1;
    static constexpr std::chrono::milliseconds slowDetent{120};
    static constexpr std::chrono::milliseconds fastDetent{20}; ///< Under 50 ms counts as a spin.

    /// @param frame borrowed; whose part number the EEPROM carries.
    explicit TestBed(const FrameDescriptor &frame, const HardwareFaults &faults = {}, QObject *parent = nullptr);
    /// Removes the bed and its files. A program that still runs in it ends at its next access to a device.
    ~TestBed() override;

    /// What kept the bed from being made and what to do about it; empty when it stands.
    QString errorString() const;

    /// Environment of a program that is to live in this bed, made from this process's own: preload library, devices,
    /// Qt's linuxfb platform and keyboard plugin. The program is taken to be built with the sanitizers of this process.
    QProcessEnvironment programEnvironment() const;

    /// Button 1 to 40 of panel 1 to 3 goes down or up.
    void setButton(int panel, int button, bool pressed);
    /// Turns the encoder by whole detents, clockwise when positive. @param spacing time from one detent to the next,
    /// and from the last one of an earlier call to the first, as their records state it. The records carry the bed's
    /// clock: it starts at the time of day and advances by this only.
    void turnKnob(int detents, std::chrono::milliseconds spacing);
    /// A key of the front's own keyboard device goes down or up. @param code as linux/input-event-codes.h: KEY_ENTER
    /// 28, KEY_ESC 1.
    void setKeyboardKey(int code, bool pressed);
    /// Raw bytes as the panel's (1 to 3) or, with 0, the encoder's device would deliver them.
    void deliverRaw(int panel, const QByteArray &bytes);

    /// Last value written to LED 1 to 40 of panel 1 to 3; 0 before the first write.
    int led(int panel, int number) const;

    /// A copy of the LCD's present contents, 320 x 240, opaque.
    QImage lcd() const;

signals:
    /// Somebody moved a button, a key or the knob, whether a program has the device open or not.
    void buttonSet(int panel, int button, bool pressed);
    void keyboardKeySet(int code, bool pressed);
    void knobTurned(int detents, std::chrono::milliseconds spacing);
    /// The program wrote one LED record, whether it changes the LED or not. LED code 0 is reported too.
    void ledWritten(int panel, int number, int value);
    /// The program set the overlay's global alpha.
    void globalAlphaSet(int enable, int alpha);

private:
    struct Private;
    std::unique_ptr<Private> d;
};
