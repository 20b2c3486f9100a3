#pragma once

/// One input of the front logic: a button of a panel, or one of the logic's own timers.
struct FrontEvent
{
    enum Source { Button = 0, Timer = 1 };

    int source; ///< Button or Timer.
    int code;   ///< Button: key number 704 to 823. Timer: which of the front logic's timers.
    int value;  ///< Button: 1 pressed, 0 released. Timer: unused.
};
