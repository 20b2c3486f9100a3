#pragma once

#include <QSocketNotifier>

#include <array>
#include <cstdint>
#include <optional>
#include <span>

/// What an event device reads and writes. The panel's driver speaks the 32-bit layout on every machine,
/// so this is not the machine's own struct input_event.
struct InputRecord
{
    int32_t seconds;
    int32_t microseconds;
    uint16_t type; ///< EV_SYN, EV_KEY, EV_REL, EV_LED
    uint16_t code;
    int32_t value;
};
static_assert(sizeof(InputRecord) == 16);

/// An event device file with its read notifier: opened once, never again.
/// A device that cannot be opened stays silent: no notifier, and what is written goes nowhere.
class InputDevice
{
public:
    /// How one kind of device is opened, and what the log calls it.
    struct Kind
    {
        int accessMode; ///< O_RDONLY or O_RDWR
        const char *openedAs;
        const char *name;
    };

    /// Opens the device and logs how that went. The notifier is a child of owner, who holds this object.
    InputDevice(const QString &path, const Kind &kind, QObject *owner);
    ~InputDevice();
    InputDevice(const InputDevice &) = delete;
    InputDevice &operator=(const InputDevice &) = delete;

    /// Null if the device could not be opened; disabled for a second whenever the device is found gone.
    QSocketNotifier *notifier() { return m_notifier ? &*m_notifier : nullptr; }

    /// At most 64 waiting records, valid until the next call. None, with a warning, after an error and for a chunk
    /// that is not whole records, which is dropped. A device that stays gone is warned of once.
    std::span<const InputRecord> read();

    /// A record that cannot be written is lost, with a warning for the first of several.
    void write(const InputRecord &record);

private:
    void lookAgainLater();

    const Kind m_kind;
    int m_fd;
    std::array<InputRecord, 64> m_records;
    bool m_gone = false;   ///< The last read found it at its end or failing.
    bool m_losing = false; ///< The last write failed.
    std::optional<QSocketNotifier> m_notifier;
};
