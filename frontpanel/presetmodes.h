#pragma once

#include "frontpanel/frontevent.h"

#include <QObject>

class FrontLayout;

/// The two modes in which source buttons pick preset numbers, and their LEDs. At most one is on.
/// A mode goes on when the LCD shows its screen; the buttons only ask for the screen. It goes off when the screen
/// goes, when its button is pressed again, and when the operator turns to something else.
class PresetModes : public QObject
{
    Q_OBJECT
public:
    /// @param layout borrowed.
    void setLayout(FrontLayout *layout) { m_layout = layout; }

    bool isOn() const { return m_load || m_save; }

    /// True when the button asks for a preset screen; pressed in its own mode it leaves that mode.
    bool handleButton(FrontEvent event);
    void leave();
    /// A source button has picked this number; nothing outside the modes.
    void pick(int number);
    /// Loads or saves the preset and leaves the mode. Only while one is on.
    void commit(int number);
    /// The front has gone idle. The mode stays: it follows its screen.
    void timeOut();
    void showLoadMenu(bool isShown);
    void showSaveMenu(bool isShown);

signals:
    // As those of FrontLogic, which passes them on.
    void loadPresetButtonPushed();
    void savePresetButtonPushed();
    void loadPresetNumberButtonPushed(int presetNum);
    void savePresetNumberButtonPushed(int presetNum);
    void presetSave(int presetNum);
    void presetLoad(int presetNum);
    void loadPresetLeaveMode();
    void savePresetLeaveMode();
    void loadPresetTimeout();
    void savePresetTimeout();

private:
    void setModes(bool load, bool save);

    FrontLayout *m_layout = nullptr;
    bool m_load = false;
    bool m_save = false;
};
