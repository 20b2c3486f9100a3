#pragma once

class ScreenChoose;
class ScreenEnterStandby;
class ScreenResetToFactoryDefaults;
class ScreenSetDate;
class ScreenSetIp;
class ScreenSetTime;
class ScreenSlider;
class ScreenWheel;

/// The editors and dialogues that the whole menu shares. Each row that opens one binds it first. All borrowed from
/// the Pool.
struct Editors
{
    ScreenChoose *choose;
    ScreenSlider *slider;
    ScreenSetDate *setDate;
    ScreenSetIp *setIp;
    ScreenSetTime *setTime;
    ScreenWheel *wheel;
    ScreenResetToFactoryDefaults *resetToFactoryDefaults;
    ScreenEnterStandby *enterStandby;
};
