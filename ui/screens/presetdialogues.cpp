#include "ui/screens/presetdialogues.h"

#include "managers/presetmanager.h"
#include "protocol/catalogue.h"
#include "ui/screens/datalinepreset.h"

ScreenConfirmLoadPreset::ScreenConfirmLoadPreset(QWidget *parent)
    : ScreenWarning(parent, true, true)
{
    setTitle(QStringLiteral("Load preset"));
    setButtonTexts(QStringLiteral("Yes"), QStringLiteral("No"));
}

void ScreenConfirmLoadPreset::openedFrom(const DataLine &row) { setPresetName(row.caption()); }

void ScreenConfirmLoadPreset::setPresetName(const QString &name)
{
    m_name = name;
    setMessage(QStringLiteral("Do you want to load preset\n\"%1\"?").arg(name));
}

void ScreenConfirmLoadPreset::savePressed()
{
    call(methodPresetLoad.arg(m_name), {});
    ScreenWarning::savePressed();
}

ScreenConfirmSavePreset::ScreenConfirmSavePreset(QWidget *parent)
    : ScreenWarning(parent, true, true)
{
    setButtonTexts(QStringLiteral("Yes"), QStringLiteral("No"));
}

void ScreenConfirmSavePreset::openedFrom(const DataLine &row)
{
    if (const auto *line = qobject_cast<const DataLinePreset *>(&row))
        setPreset(line->caption(), PresetManager::instance()->hasPreset(line->caption()), line->button());
}

void ScreenConfirmSavePreset::setPreset(const QString &name, bool exists, int button)
{
    m_name = name;
    m_exists = exists;
    m_button = button;
    const QString shown = !exists && name.isEmpty() ? QStringLiteral("Button%1").arg(button) : name;
    setMessage((exists ? QStringLiteral("Do you want to overwrite preset\n\"%1\"?")
                       : QStringLiteral("Do you want to create preset\n\"%1\"?"))
                   .arg(shown));
}

void ScreenConfirmSavePreset::savePressed()
{
    PresetManager *presets = PresetManager::instance();
    if (m_exists) {
        call(methodPresetSave.arg(m_name), {});
        presets->createPresetByName(m_name);
    } else if (m_button > 0) {
        presets->createPresetByButtonNum(m_button);
    } else {
        presets->createPresetByName(m_name);
    }
    ScreenWarning::savePressed();
}

ScreenPresetWarning::ScreenPresetWarning(QWidget *parent)
    : ScreenWarning(parent, false, true)
{
    setTitle(QStringLiteral("WARNING"));
}

void ScreenPresetWarning::setButton(int button)
{
    setMessage(QStringLiteral("There's no preset assigned for\nButton%1").arg(button));
}
