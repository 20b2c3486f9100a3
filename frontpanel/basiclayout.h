#pragma once

#include "frontpanel/frontlayout.h"
#include "hardware/panellayout.h"

#include <array>

class ControlPanelHandler;

/// The front that a row of the layout table describes.
/// An LED number below or above the ports is not refused: it continues the first or the last run of buttons,
/// unless the row says that the LEDs end at the last port. So input 0 is LED 0 of panel 1.
class BasicLayout : public FrontLayout
{
public:
    void setTakeLed(int value) override;
    void setControlLockLed(int value) override;
    void setDestinationLockLed(int value) override;
    void setLoadPresetLed(int value) override;
    void setSavePresetLed(int value) override;
    void setInputLed(int input, int value) override;
    void setOutputLed(int output, int value) override;
    void showProgress(int position) override;
    void clearInputLeds() override;
    void clearPortLeds() override;

    bool isControlLockPressed(FrontEvent event) const override;
    bool isControlLockReleased(FrontEvent event) const override;
    bool isTakePressed(FrontEvent event) const override;
    bool isTakeReleased(FrontEvent event) const override;
    bool isDestinationLockPressed(FrontEvent event) const override;
    bool isLoadPresetPressed(FrontEvent event) const override;
    bool isSavePresetPressed(FrontEvent event) const override;
    bool isInputButton(FrontEvent event) const override;
    bool isOutputButton(FrontEvent event) const override;
    int inputNumber(FrontEvent event) const override;
    int outputNumber(FrontEvent event) const override;

protected:
    using Panels = std::array<ControlPanelHandler *, 3>;
    using Runs = std::array<PortRun, 3>;

    /// @param table lives as long as the program. @param panels are borrowed; null where the table has no button.
    BasicLayout(const PanelLayout &table, const Panels &panels);

private:
    void setPortLed(const Runs &runs, int number, int value);
    void clearLeds(const Runs &runs);

    const PanelLayout &m_table;
    const Panels m_panels;
};
