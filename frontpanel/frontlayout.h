#pragma once

#include "frontpanel/frontevent.h"

/// Where the buttons and LEDs of a front are: tells what an event means, and lights what a meaning asks for.
/// Inputs (sources) and outputs (destinations) are numbered separately, each from 1. LED values are passed on
/// to the panel: 0 off, 1 lit, 2 a pending change. Events of timers are no buttons.
class FrontLayout
{
public:
    virtual ~FrontLayout() = default;

    virtual void setTakeLed(int value) = 0;
    virtual void setControlLockLed(int value) = 0;
    virtual void setDestinationLockLed(int value) = 0;
    virtual void setLoadPresetLed(int value) = 0;
    virtual void setSavePresetLed(int value) = 0;
    virtual void setInputLed(int input, int value) = 0;
    virtual void setOutputLed(int output, int value) = 0;
    /// A bar over all port LEDs, inputs first: lit before the position (counted from 1), 2 at it, dark after it.
    virtual void showProgress(int position) = 0;
    virtual void clearInputLeds() = 0;
    virtual void clearPortLeds() = 0;

    virtual bool isControlLockPressed(FrontEvent event) const = 0;
    virtual bool isControlLockReleased(FrontEvent event) const = 0;
    virtual bool isTakePressed(FrontEvent event) const = 0;
    virtual bool isTakeReleased(FrontEvent event) const = 0;
    virtual bool isDestinationLockPressed(FrontEvent event) const = 0;
    virtual bool isLoadPresetPressed(FrontEvent event) const = 0;
    virtual bool isSavePresetPressed(FrontEvent event) const = 0;
    /// An input's button was pressed, not released; likewise for outputs.
    virtual bool isInputButton(FrontEvent event) const = 0;
    virtual bool isOutputButton(FrontEvent event) const = 0;
    /// For an event that isInputButton().
    virtual int inputNumber(FrontEvent event) const = 0;
    /// For an event that isOutputButton().
    virtual int outputNumber(FrontEvent event) const = 0;
};
