#pragma once

#include <QMap>
#include <QObject>
#include <QString>
#include <QStringList>

#include <functional>
#include <map>
#include <optional>
#include <span>
#include <vector>

/// One line of a property table.
struct PropertyRow
{
    const char *node;
    const char *name;
    const char *accepts; ///< See ValueRule.
    const char *value;   ///< What it is as delivered.
};

/// The device's tree. A node ("/MEDIA/XP") holds properties ("/MEDIA/XP.Name"), methods ("/MEDIA/XP:name")
/// and child nodes, properties and children in the order they were added. Node names may hold any character but
/// "/"; names of properties and methods are plain words.
class PropertyTree : public QObject
{
    Q_OBJECT
public:
    /// Does what it does and returns an empty text, or what is wrong with the arguments.
    using Method = std::function<QString(const QString &arguments)>;

    struct Property
    {
        QString name;
        QString value;
        QString initial;
        QString accepts; ///< See ValueRule.

        bool isWritable() const { return !accepts.isEmpty(); }
    };

    struct Node
    {
        QStringList children; ///< Names, not paths.
        std::vector<Property> properties;
        QMap<QString, Method> methods;
        int watchers = 0;
    };

    /// A tree with the root node "/" alone.
    explicit PropertyTree(QObject *parent = nullptr);

    static QString childPath(const QString &node, const QString &child);

    /// Adds the node and those above it that are missing.
    void addNode(const QString &path);
    void removeNode(const QString &path);
    /// @param accepts see ValueRule. The node is added where it is missing.
    void addProperty(const QString &node, const QString &name, const QString &accepts, const QString &value);
    void addProperties(std::span<const PropertyRow> rows);
    void addMethod(const QString &node, const QString &name, Method method);

    /// The node with its present values, or null. Good until a node is added or removed.
    const Node *node(const QString &path);
    /// The property "NODE.Name" with its present value, or null.
    const Property *property(const QString &path);
    /// The value of "NODE.Name"; empty where there is none.
    QString value(const QString &path);
    bool hasMethod(const QString &path) const;

    /// Gives a property a new value, whatever its rule says. False: no such property.
    bool setValue(const QString &path, const QString &value);
    /// Gives it a new value by its rule. Empty, or what was wrong.
    QString write(const QString &path, const QString &value);
    /// Invokes "NODE:method". Empty, or what was wrong.
    QString call(const QString &path, const QString &arguments);
    /// Brings every setting back to what it was as delivered.
    void restoreDefaults();

    /// Somebody wants to hear of the node's changes, or no longer does. Calls are counted.
    void watch(const QString &node);
    void unwatch(const QString &node);

signals:
    /// The node's values are about to be looked at; whoever keeps one of them fresh does so now.
    void aboutToRead(const QString &node);
    /// Emitted only where the value differs from the one before.
    void valueChanged(const QString &node, const QString &name, const QString &value);
    void nodeAdded(const QString &parent, const QString &child);
    void nodeRemoved(const QString &parent, const QString &child);
    /// The first watcher came or the last one left.
    void watchedChanged(const QString &node, bool watched);

private:
    Property *find(const QString &node, const QString &name);
    void changeWatchers(const QString &node, int by);

    std::map<QString, Node> m_nodes;
};
