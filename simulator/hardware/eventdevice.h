#pragma once

#include "simulator/hardware/inputrecord.h"
#include "simulator/hardware/ioctldevice.h"
#include "simulator/hardware/pseudoterminal.h"

#include <QObject>
#include <QSocketNotifier>

/// An input device of the front: its records go to the program that has it open, LED records come back.
/// As with the machine's own devices, what happens while nobody has it open is lost.
class EventDevice : public QObject, public IoctlDevice
{
    Q_OBJECT
public:
    explicit EventDevice(RecordFormat format);

    /// Where the device file has to lead; empty if there is no device for want of a pseudo-terminal.
    QString path() const { return m_terminal.farPath(); }

    /// One event: its record and the synchronisation record that closes it.
    /// @param time since the epoch.
    void report(const EventRecord &record, std::chrono::microseconds time);
    /// Bytes as they are. They wait while the program does not read; when too many wait already, they are lost.
    void deliver(const QByteArray &bytes);

    long ioctl(unsigned long request, ClientMemory argument) override;
    void opened() override;

signals:
    /// The program wrote an LED record.
    void ledWritten(int code, int value);
    /// Emitted on the bed's thread.
    void openedByProgram();

private:
    void receive();
    void send();
    void closedByProgram();

    RecordFormat m_format;
    PseudoTerminal m_terminal;
    QSocketNotifier m_readable;
    QSocketNotifier m_writable;
    QByteArray m_received; ///< Less than a record after receive().
    QByteArray m_waiting;  ///< What the terminal has no room for.
};
