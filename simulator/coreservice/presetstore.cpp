#include "simulator/coreservice/presetstore.h"

#include "simulator/coreservice/valuerule.h"

#include <algorithm>

namespace {

const QString node = "/MEDIA/PRESET";
constexpr qsizetype maxNameLength = 255;
const QString layer = ",VIDEO"; // the only one there is to store

QString buttonPath(int button) { return node + QString(".Button%1AssignedPreset").arg(button); }

QString nameError(const QString &name)
{
    if (name.isEmpty())
        return "no name";
    if (name.size() > maxNameLength)
        return "name too long";
    const bool unfit
        = std::ranges::any_of(name, [](QChar c) { return c == '/' || c.category() == QChar::Other_Control; });
    return unfit ? "name not accepted: " + name : QString();
}

} // namespace

PresetStore::PresetStore(PropertyTree &tree, Crosspoint &crosspoint, int buttons, QObject *parent)
    : QObject(parent)
    , m_tree(tree)
    , m_crosspoint(crosspoint)
    , m_buttons(buttons)
{
    for (int button = 1; button <= m_buttons; ++button)
        m_tree.addProperty(node, QString("Button%1AssignedPreset").arg(button), ValueRule::anyText, "");
    m_tree.addMethod(node, "create", [this](const QString &arguments) { return create(arguments); });
    m_tree.addMethod(
        node, "createButtonAssignedPreset", [this](const QString &arguments) { return createAssigned(arguments); });
}

QStringList PresetStore::names() const { return m_tree.node(node)->children; }

QString PresetStore::store(const QString &name)
{
    if (QString error = nameError(name); !error.isEmpty())
        return error;
    const QString path = PropertyTree::childPath(node, name);
    const bool isNew = m_routes.insert_or_assign(name, m_crosspoint.routes()).second;
    if (!isNew)
        return {};
    m_tree.addMethod(path, "load", [this, name](const QString &) {
        m_crosspoint.setRoutes(m_routes[name]);
        return QString();
    });
    m_tree.addMethod(path, "save", [this, name](const QString &) { return store(name); });
    m_tree.addMethod(path, "delete", [this, name](const QString &) {
        remove(name);
        return QString();
    });
    return {};
}

bool PresetStore::remove(const QString &name)
{
    if (m_routes.erase(name) == 0)
        return false;
    m_tree.removeNode(PropertyTree::childPath(node, name));
    for (int button = 1; button <= m_buttons; ++button)
        if (m_tree.value(buttonPath(button)) == name)
            m_tree.setValue(buttonPath(button), "");
    return true;
}

void PresetStore::removeAll()
{
    const QStringList all = names();
    for (const QString &name : all)
        remove(name);
}

/// @param arguments "NAME,VIDEO".
QString PresetStore::create(const QString &arguments)
{
    if (!arguments.endsWith(layer))
        return "expected NAME,VIDEO";
    return store(arguments.chopped(layer.size()));
}

/// @param arguments "BUTTON,VIDEO". Overwrites the preset the button stands for, or makes it one of its own.
QString PresetStore::createAssigned(const QString &arguments)
{
    const int button = arguments.endsWith(layer) ? arguments.chopped(layer.size()).toInt() : 0;
    if (button < 1 || button > m_buttons)
        return QString("expected 1 to %1,VIDEO").arg(m_buttons);
    QString name = m_tree.value(buttonPath(button));
    if (!m_routes.contains(name))
        name = "Button" + QString::number(button);
    store(name);
    m_tree.setValue(buttonPath(button), name);
    return {};
}
