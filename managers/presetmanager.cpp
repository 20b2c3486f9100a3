#include "managers/presetmanager.h"

#include "hardware/framedescriptor.h"
#include "managers/variantmanager.h"
#include "protocol/catalogue.h"

#include <QCoreApplication>
#include <QRegularExpression>

#include <utility>

namespace {

PresetManager *self = nullptr;

constexpr qsizetype longestName = 255; // characters

/// What stands from the first to the last digit of a path, as a number; 0 if it is none.
int numberIn(const QString &path)
{
    static const QRegularExpression digit(QStringLiteral("[0-9]"));
    const qsizetype first = path.indexOf(digit);
    return first < 0 ? 0 : QStringView(path).sliced(first, path.lastIndexOf(digit) - first + 1).toInt();
}

} // namespace

PresetManager *PresetManager::instance()
{
    if (!self) {
        self = new PresetManager; // owned by destroyInstance()
        qAddPostRoutine(destroyInstance);
    }
    return self;
}

void PresetManager::destroyInstance()
{
    delete self;
    self = nullptr;
}

PresetManager::PresetManager()
{
    connect(VariantManager::instance(), &VariantManager::variantIdentified, this, &PresetManager::variantIdentified);
}

int PresetManager::buttonOfPreset(const QString &name) const
{
    return static_cast<int>(m_assignedPresets.indexOf(name)) + 1;
}

QString PresetManager::presetOfButton(int button) const
{
    return hasButton(button) ? m_assignedPresets[button - 1] : QString();
}

bool PresetManager::buttonHasExistingPreset(int button) const
{
    const QString name = presetOfButton(button);
    return !name.isEmpty() && m_presets.contains(name);
}

void PresetManager::variantIdentified()
{
    m_assignedPresets.resize(VariantManager::instance()->frameDescriptor()->presetButtonCount());
    get(presetNodePath + QStringLiteral(".*"));
    open(presetNodePath);
    get(presetNodePath);
}

void PresetManager::connectionStateChanged(bool connected)
{
    if (connected)
        return; // the frame is identified first
    close(presetNodePath);
    const QSet<QString> gone = m_presets;
    for (const QString &name : gone)
        emit onPresetRemoved(name);
    m_presets.clear();
    m_hasIgnored = false;
}

void PresetManager::loadPresetByButtonNum(int buttonNum)
{
    if (hasButton(buttonNum))
        loadPresetByName(m_assignedPresets[buttonNum - 1]);
}

void PresetManager::createPresetByButtonNum(int buttonNum)
{
    if (hasButton(buttonNum))
        call(methodPresetCreateButtonAssigned, QStringLiteral("%1,VIDEO").arg(buttonNum));
}

void PresetManager::loadPresetByName(const QString &name) { call(methodPresetLoad.arg(name), QString()); }

void PresetManager::createPresetByName(const QString &name)
{
    call(methodPresetCreate, name + QStringLiteral(",VIDEO"));
}

void PresetManager::nodeReceived(const QString &node)
{
    const QString name = node.section(u'/', -1);
    add(name.isEmpty() ? QStringLiteral("/") : name);
}

void PresetManager::nodeAdded(const QString &, const QString &child) { add(child); }

void PresetManager::nodeRemoved(const QString &, const QString &child)
{
    m_presets.remove(child);
    emit onPresetRemoved(child);
}

void PresetManager::add(const QString &name)
{
    const bool isTooMany = m_presets.size() >= mostPresets && !m_presets.contains(name);
    if (isTooMany || name.size() > longestName) {
        if (!std::exchange(m_hasIgnored, true))
            qWarning("More than %d presets, and names of more than %d characters, are ignored.", int(mostPresets),
                int(longestName));
        return;
    }
    m_presets.insert(name);
    emit onPresetAdded(name);
}

void PresetManager::assign(const QString &property, const QString &value)
{
    const int button = numberIn(property);
    if (!hasButton(button))
        return;
    m_assignedPresets[button - 1] = value.size() > longestName ? QString() : value;
    emit onPresetAssignedButtonChange(button, m_assignedPresets[button - 1]);
}
