#pragma once

#include "simulator/action.h"
#include "simulator/arguments.h"

#include <span>

class Device;

/// What the commands of one console, script or page share.
struct CommandContext
{
    Device &device;
    qint64 requestMark = 0; ///< "expect request" looks at requests from this number on.
    qint64 messageMark = 0; ///< Likewise for "expect message".
    std::function<void()> quit;
};

/// One row of the command table.
struct Command
{
    const char *name; ///< One or two words.
    const char *arguments;
    const char *help;
    /// Understands the arguments; does nothing yet. The action borrows the context.
    Action (*parse)(CommandContext &context, Arguments &arguments);
};

/// How long an expectation may take to come true, where the command does not say.
inline constexpr std::chrono::milliseconds defaultWithin{5000};
/// How long the program may take to start.
inline constexpr std::chrono::milliseconds defaultReadyTime{30000};

std::span<const Command> commands();

/// Takes a command's name off the front of the words; null, and the words left alone, if there is none of that name.
const Command *takeCommand(QStringList *words);

/// The table in words, one command a line; with a word, only the commands that begin with it.
QString commandHelp(const QString &firstWord = {});
