#pragma once

class Screen;

/// The screens that several pages open, or that the buttons of the front open too. Each row that opens one tells it
/// first what it is to show or edit. All borrowed from the Pool.
struct SharedScreens
{
    Screen *choose, *slider, *setDate, *setIp, *setTime, *wheel;
    Screen *edidViewer, *edidSwitcher, *edidSaver;
    Screen *resetToFactoryDefaults, *enterStandby;
    Screen *loadPreset, *savePreset;
    Screen *game, *game2;
};
