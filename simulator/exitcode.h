#pragma once

/// What panel-simulator returns to its caller, and how --help words it.
enum class ExitCode {
    Ok = 0,
    Failed = 1,
    Usage = 2,
    TimedOut = 3,
    Missing = 4,
};

struct ExitCodeText
{
    ExitCode code;
    const char *text;
};

inline constexpr ExitCodeText exitCodeTexts[] = {
    {ExitCode::Ok, "all went well; a console ended by quit, Ctrl-C or SIGTERM"},
    {ExitCode::Failed,
        "the program crashed or ended unasked, an expectation did not come true, or a script was interrupted"},
    {ExitCode::Usage, "an option, a file or a line of the script is wrong; nothing was run after it"},
    {ExitCode::TimedOut, "the program was not ready in time, or its LCD never came to rest"},
    {ExitCode::Missing, "something it needs is not there: the program, a package, port 6107"},
};
