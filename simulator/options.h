#pragma once

#include "simulator/exitcode.h"
#include "simulator/hardware/testbed.h"

#include <QString>
#include <QStringList>

#include <optional>
#include <variant>

/// What the command line asks panel-simulator to run.
struct Options
{
    const FrameDescriptor *frame = nullptr;
    HardwareFaults faults;
    bool withProgram = true;
    QStringList wrapper; ///< Command in front of the program.
    bool hasScript = false;
    QString script; ///< File name; "-" for standard input, or a resource.
    bool withPage = true;
    std::optional<quint16> httpPort; ///< Where the page must be served; 0 stands for any free port.
    bool openPage = true;            ///< In the desktop's browser, where there is one.
};

/// What the command line asks panel-simulator to print instead, and what to return then.
struct Notice
{
    ExitCode code = ExitCode::Ok;
    QString text;
};

/// @param arguments the program's name first. Needs a QCoreApplication.
std::variant<Options, Notice> parseOptions(const QStringList &arguments);

/// The frame with this row number or part number, or null.
const FrameDescriptor *frameNamed(const QString &name);

/// All frame models, one a line below a heading.
QString frameList();
