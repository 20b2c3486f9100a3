#pragma once

#include "simulator/coreservice/crosspoint.h"
#include "simulator/coreservice/propertytree.h"

#include <map>

/// Routing presets: nodes below "/MEDIA/PRESET", and which of them each preset button stands for.
class PresetStore : public QObject
{
    Q_OBJECT
public:
    /// @param tree, crosspoint borrowed, outlive the store.
    /// @param buttons how many buttons a preset can be assigned to.
    PresetStore(PropertyTree &tree, Crosspoint &crosspoint, int buttons, QObject *parent = nullptr);

    QStringList names() const;
    /// Stores the present routing; a preset of this name is overwritten. Empty, or what is wrong with the name.
    QString store(const QString &name);
    /// Buttons that stood for it stand for nothing afterwards. False: no such preset.
    bool remove(const QString &name);
    void removeAll();

private:
    QString create(const QString &arguments);
    QString createAssigned(const QString &arguments);

    PropertyTree &m_tree;
    Crosspoint &m_crosspoint;
    int m_buttons;
    std::map<QString, QList<int>> m_routes;
};
