#pragma once

#include "simulator/commandexecutor.h"
#include "simulator/device.h"

#include <QFile>
#include <QLocalSocket>

/// One record as the program reads it from a panel's device file.
struct PanelRecord
{
    uint32_t seconds, microseconds;
    uint16_t type, code;
    int32_t value;
};
static_assert(sizeof(PanelRecord) == 16);

/// A device on a free port without a program, an 8 x 8 frame, and an executor for it. The test takes the program's
/// place: it opens the device files of the bed itself.
class ConsoleRig
{
public:
    ConsoleRig();

    /// Executes one line and waits for its result.
    CommandResult run(const QString &line);
    /// The result of a line begun with executor.execute().
    CommandResult result();

    /// Opens a device file of the bed, as "/dev/input/event2"; ends the test if it cannot be opened.
    std::unique_ptr<QFile> open(const QString &deviceFile);
    /// Waits for the next key record from panel 1.
    PanelRecord nextKey();
    /// Writes an LED record to panel 1.
    void writeLed(int number, int value);

    Device device;
    CommandExecutor executor;

private:
    QString root() const;

    QLocalSocket m_opening;
    std::unique_ptr<QFile> m_panel;
    std::optional<CommandResult> m_result;
};
