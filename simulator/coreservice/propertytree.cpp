#include "simulator/coreservice/propertytree.h"

#include "simulator/coreservice/valuerule.h"

#include <algorithm>
#include <utility>

namespace {

struct Split
{
    QString node, name;
};

/// Node names may hold dots and colons, names of properties and methods do not: the last one divides.
Split splitAtLast(QChar divider, const QString &path)
{
    const qsizetype at = path.lastIndexOf(divider);
    return at < 0 ? Split{path, {}} : Split{path.left(at), path.mid(at + 1)};
}

Split splitNode(const QString &path)
{
    const Split split = splitAtLast('/', path);
    return split.node.isEmpty() ? Split{"/", split.name} : split;
}

} // namespace

PropertyTree::PropertyTree(QObject *parent)
    : QObject(parent)
{
    m_nodes["/"] = {};
}

QString PropertyTree::childPath(const QString &node, const QString &child)
{
    return node == "/" ? node + child : node + '/' + child;
}

void PropertyTree::addNode(const QString &path)
{
    if (m_nodes.contains(path))
        return;
    const Split split = splitNode(path);
    addNode(split.node);
    m_nodes[path] = {};
    m_nodes[split.node].children.append(split.name);
    emit nodeAdded(split.node, split.name);
}

void PropertyTree::removeNode(const QString &path)
{
    if (m_nodes.erase(path) == 0)
        return;
    const Split split = splitNode(path);
    m_nodes[split.node].children.removeOne(split.name);
    emit nodeRemoved(split.node, split.name);
}

void PropertyTree::addProperty(const QString &node, const QString &name, const QString &accepts, const QString &value)
{
    addNode(node);
    m_nodes[node].properties.push_back({name, value, value, accepts});
}

void PropertyTree::addProperties(std::span<const PropertyRow> rows)
{
    for (const PropertyRow &row : rows)
        addProperty(row.node, row.name, row.accepts, row.value);
}

void PropertyTree::addMethod(const QString &node, const QString &name, Method method)
{
    addNode(node);
    m_nodes[node].methods[name] = std::move(method);
}

const PropertyTree::Node *PropertyTree::node(const QString &path)
{
    emit aboutToRead(path);
    const auto found = m_nodes.find(path);
    return found == m_nodes.end() ? nullptr : &found->second;
}

const PropertyTree::Property *PropertyTree::property(const QString &path)
{
    const Split split = splitAtLast('.', path);
    emit aboutToRead(split.node);
    return find(split.node, split.name);
}

QString PropertyTree::value(const QString &path)
{
    const Property *found = property(path);
    return found ? found->value : QString();
}

bool PropertyTree::hasMethod(const QString &path) const
{
    const Split split = splitAtLast(':', path);
    const auto node = m_nodes.find(split.node);
    return node != m_nodes.end() && node->second.methods.contains(split.name);
}

bool PropertyTree::setValue(const QString &path, const QString &value)
{
    const Split split = splitAtLast('.', path);
    Property *property = find(split.node, split.name);
    if (!property)
        return false;
    if (std::exchange(property->value, value) != value)
        emit valueChanged(split.node, split.name, value);
    return true;
}

QString PropertyTree::write(const QString &path, const QString &value)
{
    const Split split = splitAtLast('.', path);
    const Property *property = find(split.node, split.name);
    if (!property)
        return m_nodes.contains(split.node) ? "no such property" : "no such node";
    if (!property->isWritable())
        return "read-only";
    const std::optional<QString> accepted = ValueRule::accepted(property->accepts, value);
    if (!accepted)
        return "value not accepted: " + value;
    setValue(path, *accepted);
    return {};
}

QString PropertyTree::call(const QString &path, const QString &arguments)
{
    const Split split = splitAtLast(':', path);
    const auto node = m_nodes.find(split.node);
    if (node == m_nodes.end())
        return "no such node";
    const Method method = node->second.methods.value(split.name); // a copy: a method may remove its own node
    return method ? method(arguments) : "no such method";
}

void PropertyTree::restoreDefaults()
{
    for (const auto &[path, node] : m_nodes)
        for (const Property &property : node.properties)
            if (!property.accepts.isNull())
                setValue(path + '.' + property.name, property.initial);
}

void PropertyTree::watch(const QString &node) { changeWatchers(node, 1); }

void PropertyTree::unwatch(const QString &node) { changeWatchers(node, -1); }

PropertyTree::Property *PropertyTree::find(const QString &node, const QString &name)
{
    const auto found = m_nodes.find(node);
    if (found == m_nodes.end())
        return nullptr;
    std::vector<Property> &properties = found->second.properties;
    const auto property = std::ranges::find(properties, name, &Property::name);
    return property == properties.end() ? nullptr : &*property;
}

void PropertyTree::changeWatchers(const QString &node, int by)
{
    const auto found = m_nodes.find(node);
    if (found == m_nodes.end())
        return;
    const bool before = found->second.watchers > 0;
    found->second.watchers += by;
    if (const bool after = found->second.watchers > 0; after != before)
        emit watchedChanged(node, after);
}
