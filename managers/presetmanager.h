#pragma once

#include "protocol/dt3sink.h"

#include <QObject>
#include <QSet>
#include <QVector>

/// Mirrors the presets of the device and which source button has which assigned; loads and creates them.
/// Works from the moment the frame has been identified, for the frame tells how many buttons there are.
class PresetManager : public QObject, public Dt3Sink
{
    Q_OBJECT
public:
    /// More, and names of more than 255 characters, are ignored with a warning: each takes memory and a row on two
    /// pages.
    static constexpr qsizetype mostPresets = 100;

    /// The one of this process. Made on first use; goes with destroyInstance(), or else with the application object.
    static PresetManager *instance();
    static void destroyInstance();

    /// The first button, from 1, that this preset is assigned to; 0 for none.
    int buttonOfPreset(const QString &name) const;
    /// The name assigned to the button, from 1; empty for none, and for a button that the frame does not have.
    QString presetOfButton(int button) const;
    /// There is a preset of this name on the device.
    bool hasPreset(const QString &name) const { return m_presets.contains(name); }
    /// The button's preset is there on the device.
    bool buttonHasExistingPreset(int button) const;

    void nodeReceived(const QString &node) override;
    void nodeAdded(const QString &parent, const QString &child) override;
    void nodeRemoved(const QString &parent, const QString &child) override;
    void propertyReceived(const QString &property, const QString &value) override { assign(property, value); }
    void propertyChanged(const QString &property, const QString &value) override { assign(property, value); }

signals:
    /// Also for one that was known.
    void onPresetAdded(const QString &presetName);
    void onPresetRemoved(const QString &presetName);
    /// Also when it has not changed. @param presetName empty: none is assigned any more.
    void onPresetAssignedButtonChange(int buttonNum, const QString &presetName);

public slots:
    void connectionStateChanged(bool connected);
    // Buttons that the frame does not have are ignored; names are sent as they are.
    void loadPresetByButtonNum(int buttonNum);
    void createPresetByButtonNum(int buttonNum);
    void loadPresetByName(const QString &name);
    void createPresetByName(const QString &name);
    void variantIdentified();

private:
    PresetManager();
    void assign(const QString &property, const QString &value);
    void add(const QString &name);
    bool hasButton(int button) const { return button >= 1 && button <= m_assignedPresets.size(); }

    QVector<QString> m_assignedPresets; ///< By button - 1, as many as the frame has; none until it is identified.
    QSet<QString> m_presets;            ///< Those that exist on the device.
    bool m_hasIgnored = false;          ///< There are others, and it has been said.
};
