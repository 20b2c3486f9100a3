#pragma once

#include <QString>

class Dt3Property;

/// Second base of every object that talks to the device: the requests it sends through Dt3Manager::instance(),
/// and what comes back. A sink that goes away is forgotten by the manager; it needs to close nothing.
///
/// For each node: open() it once, get() the properties (answers arrive in propertyReceived(), later changes in
/// propertyChanged()), close() it when its data is no longer shown or the link is lost.
class Dt3Sink
{
public:
    /// A child of the node that this sink sent a GET for. @param node its full path.
    virtual void nodeReceived(const QString &node);
    /// The answer to a GET of this sink. @param property node, ".", name. @param value unescaped.
    virtual void propertyReceived(const QString &property, const QString &value);
    /// A property of a node that this sink holds open has changed.
    virtual void propertyChanged(const QString &property, const QString &value);
    /// A child came to, or went from, a node that this sink holds open.
    virtual void nodeAdded(const QString &parent, const QString &child);
    virtual void nodeRemoved(const QString &parent, const QString &child);

protected:
    Dt3Sink() = default;
    ~Dt3Sink();
    Q_DISABLE_COPY_MOVE(Dt3Sink)

    // Requests, as those of Dt3Manager with this sink as receiver of the answers.
    void get(const QString &path);
    void set(const QString &propertyPath, const QString &value);
    void call(const QString &methodPath, const QString &arguments);
    /// Failures are logged.
    void open(const QString &nodePath);
    void close(const QString &nodePath);

    /// Writes a property from its caption: by its method, else to its write path, else to its path.
    void setValue(const Dt3Property &property, const QString &caption);
};
