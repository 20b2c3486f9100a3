#include "frontpanel/presetmodes.h"

#include "frontpanel/frontlayout.h"

bool PresetModes::handleButton(FrontEvent event)
{
    if (m_layout->isLoadPresetPressed(event)) {
        if (!m_load) {
            emit loadPresetButtonPushed();
            return true;
        }
        leave();
        emit loadPresetLeaveMode();
        leave(); // the screen may have set a mode again while it closed
    } else if (m_layout->isSavePresetPressed(event)) {
        if (!m_save) {
            emit savePresetButtonPushed();
            return true;
        }
        leave();
        emit savePresetLeaveMode();
        leave();
    }
    return false;
}

void PresetModes::setModes(bool load, bool save)
{
    m_load = load;
    m_save = save;
    m_layout->setLoadPresetLed(load);
    m_layout->setSavePresetLed(save);
}

void PresetModes::leave() { setModes(false, false); }
void PresetModes::showLoadMenu(bool isShown) { setModes(isShown, false); }
void PresetModes::showSaveMenu(bool isShown) { setModes(false, isShown); }

void PresetModes::pick(int number)
{
    if (m_load)
        emit loadPresetNumberButtonPushed(number);
    if (m_save)
        emit savePresetNumberButtonPushed(number);
}

void PresetModes::commit(int number)
{
    if (m_save) {
        qDebug("Save preset %d", number);
        emit presetSave(number);
    } else {
        qDebug("Load preset %d", number);
        emit presetLoad(number);
    }
    leave();
}

void PresetModes::timeOut()
{
    if (m_load)
        emit loadPresetTimeout();
    if (m_save)
        emit savePresetTimeout();
}
