#include "ui/screens/screenpreset.h"

#include "hardware/framedescriptor.h"
#include "managers/presetmanager.h"
#include "managers/variantmanager.h"
#include "ui/screens/datalinepreset.h"
#include "ui/screens/sharedscreens.h"

#include <QKeyEvent>
#include <QMap>

#include <algorithm>

namespace {

constexpr int freeNames = 8; // of a frame without preset buttons

QString buttonName(int button) { return QStringLiteral("Button%1").arg(button); }
QString freeName(int number) { return QStringLiteral("Preset%1").arg(number); }

bool isFreeName(const QString &name)
{
    for (int number = 1; number <= freeNames; ++number) {
        if (name == freeName(number))
            return true;
    }
    return false;
}

/// That presets can be assigned to; 0 for a frame without a front of its own.
int presetButtonCount() { return VariantManager::instance()->frameDescriptor()->presetButtonCount(); }

} // namespace

ScreenPreset::ScreenPreset(QWidget *parent, const SharedScreens &shared)
    : ScreenData(parent)
{
    addRows({
        {"Load Preset", shared.loadPreset},
        {"Save Preset", shared.savePreset},
    });
    showBackButton();
}

ScreenPresetCommon::ScreenPresetCommon(QWidget *parent, Screen *confirmation)
    : ScreenData(parent)
    , m_confirmation(confirmation)
{
    PresetManager *presets = PresetManager::instance();
    connect(presets, &PresetManager::onPresetAdded, this, &ScreenPresetCommon::onPresetAdded);
    connect(presets, &PresetManager::onPresetRemoved, this, &ScreenPresetCommon::onPresetRemoved);
    connect(
        presets, &PresetManager::onPresetAssignedButtonChange, this, &ScreenPresetCommon::onPresetAssignedButtonChange);
    connect(
        VariantManager::instance(), &VariantManager::variantIdentified, this, &ScreenPresetCommon::variantIdentified);
    showBackButton();
    beginPendingEntry();
}

void ScreenPresetCommon::setActive(bool active)
{
    ScreenData::setActive(active);
    if (active)
        emit onShowChange(true);
}

void ScreenPresetCommon::backPressed()
{
    ScreenData::backPressed();
    emit onShowChange(false);
}

void ScreenPresetCommon::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Escape)
        backPressed(); // the buttons are to know of it
    else
        ScreenData::keyPressEvent(event);
}

QList<DataLinePreset *> ScreenPresetCommon::presetLines() const
{
    QList<DataLinePreset *> presets;
    for (DataLine *line : lines())
        presets.append(static_cast<DataLinePreset *>(line)); // the page adds no others
    return presets;
}

DataLinePreset *ScreenPresetCommon::lineOfPreset(const QString &name) const
{
    const QList<DataLinePreset *> presets = presetLines();
    const auto line = std::find_if(presets.begin(), presets.end(),
        [&name](const DataLinePreset *candidate) { return candidate->caption() == name; });
    return line == presets.end() ? nullptr : *line;
}

DataLinePreset *ScreenPresetCommon::lineOfButton(int button) const
{
    const QList<DataLinePreset *> presets = presetLines();
    const auto line = std::find_if(presets.begin(), presets.end(),
        [button](const DataLinePreset *candidate) { return candidate->button() == button; });
    return line == presets.end() ? nullptr : *line;
}

void ScreenPresetCommon::addPresetLine(const QString &caption, int button)
{
    auto *line = new DataLinePreset(this); // the page's
    insertLine(line, caption, m_confirmation, 1);
    line->setup();
    line->setButton(button);
}

void ScreenPresetCommon::onPresetAdded(const QString &presetName)
{
    if (lineOfPreset(presetName))
        return;
    const int button = PresetManager::instance()->buttonOfPreset(presetName);
    DataLinePreset *line = button > 0 ? lineOfButton(button) : nullptr;
    if (line) {
        line->setCaption(presetName);
        return;
    }
    addPresetLine(presetName, button);
    resort();
}

void ScreenPresetCommon::onPresetRemoved(const QString &presetName)
{
    if (DataLinePreset *line = lineOfPreset(presetName))
        removeLine(line);
}

void ScreenPresetCommon::onPresetAssignedButtonChange(int buttonNum, const QString &presetName)
{
    if (DataLinePreset *holder = lineOfButton(buttonNum)) {
        if (holder->caption() != presetName && PresetManager::instance()->buttonOfPreset(holder->caption()) == 0)
            reassign(holder, buttonNum, presetName);
    } else if (DataLinePreset *line = lineOfPreset(presetName)) {
        line->setButton(buttonNum);
        resort();
    }
}

/// The button's row goes over to the preset of this name. @param name empty for none.
void ScreenPresetCommon::reassign(DataLinePreset *line, int button, const QString &name)
{
    DataLinePreset *ofName = lineOfPreset(name);
    if (PresetManager::instance()->hasPreset(line->caption())) {
        line->setButton(0); // it stays as one without a button
        if (ofName)
            ofName->setButton(button);
        else if (!name.isEmpty())
            addPresetLine(name, button);
    } else if (!ofName && !name.isEmpty()) {
        line->setCaption(name);
    } else {
        removeLine(line);
        if (ofName)
            ofName->setButton(button);
    }
    resort();
}

void ScreenPresetCommon::resort()
{
    QMap<int, QString> ofButtons;
    QStringList others;
    const QList<DataLinePreset *> presets = presetLines();
    for (const DataLinePreset *line : presets) {
        if (line->button() > 0)
            ofButtons[line->button()] = line->caption();
        else
            others.append(line->caption());
    }
    auto line = presets.begin();
    for (auto entry = ofButtons.cbegin(); entry != ofButtons.cend(); ++entry, ++line) {
        (*line)->setCaption(entry.value());
        (*line)->setButton(entry.key());
    }
    for (const QString &caption : std::as_const(others)) {
        (*line)->setCaption(caption);
        (*line++)->setButton(0);
    }
}

ScreenLoadPreset::ScreenLoadPreset(QWidget *parent, Screen *confirmation)
    : ScreenPresetCommon(parent, confirmation)
{
    setTitle(QStringLiteral("Load Preset"));
}

void ScreenLoadPreset::variantIdentified() { endPendingEntry(); }

ScreenSavePreset::ScreenSavePreset(QWidget *parent, Screen *confirmation)
    : ScreenPresetCommon(parent, confirmation)
{
    setTitle(QStringLiteral("Save Preset"));
}

void ScreenSavePreset::variantIdentified()
{
    addFreeButtons();
    for (int number = 1; number <= freeNames && presetButtonCount() == 0; ++number) {
        if (!lineOfPreset(freeName(number)))
            addPresetLine(freeName(number), 0);
    }
    endPendingEntry();
}

void ScreenSavePreset::addFreeButtons()
{
    for (int button = 1; button <= presetButtonCount(); ++button) {
        if (!lineOfButton(button) && !PresetManager::instance()->buttonHasExistingPreset(button))
            addPresetLine(buttonName(button), button);
    }
    resort();
}

void ScreenSavePreset::onPresetRemoved(const QString &presetName)
{
    DataLinePreset *line = lineOfPreset(presetName);
    if (!line)
        return;
    if (line->button() > 0)
        line->setCaption(buttonName(line->button())); // a free place again
    else if (presetButtonCount() > 0 || !isFreeName(presetName))
        ScreenPresetCommon::onPresetRemoved(presetName);
}

void ScreenSavePreset::onPresetAssignedButtonChange(int buttonNum, const QString &presetName)
{
    if (!presetName.isEmpty())
        ScreenPresetCommon::onPresetAssignedButtonChange(buttonNum, presetName);
    addFreeButtons(); // the preset may have left another button
}
