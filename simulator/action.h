#pragma once

#include "simulator/exitcode.h"

#include <QMetaType>
#include <QString>

#include <chrono>
#include <functional>
#include <optional>

/// What came of one command line.
struct CommandResult
{
    ExitCode code = ExitCode::Ok;
    QString text; ///< What was found or went wrong, possibly several lines; empty where there is nothing to tell.

    bool ok() const { return code == ExitCode::Ok; }
};
Q_DECLARE_METATYPE(CommandResult)

/// A command line that has been understood: what it does at once, and what it waits for then.
/// Each function may be empty.
struct Action
{
    /// Done first. A failure ends the command.
    std::function<CommandResult()> begin;
    /// Asked at once and then every few milliseconds until it has a result.
    std::function<std::optional<CommandResult>()> poll;
    /// The result when this time passes first; zero for a command that does not wait.
    std::chrono::milliseconds limit{0};
    std::function<CommandResult()> expire;
};
