#pragma once

#include "hardware/framedescriptor.h"

#include <QObject>
#include <QString>
#include <QStringList>

#include <chrono>
#include <memory>
#include <optional>

/// The device's core service: a tree of nodes and properties behind a line protocol on loopback TCP,
/// with the behaviour of the frame it plays. Every client is served alike.
/// Changes made through this interface are the device's own: clients that opened the node hear of them.
class CoreService : public QObject
{
    Q_OBJECT
public:
    /// @param frame borrowed; a row of the frame table.
    explicit CoreService(const FrameDescriptor &frame, QObject *parent = nullptr);
    ~CoreService() override;

    /// Accepts clients on 127.0.0.1. @param port 0 takes any free one. False: see errorString().
    bool listen(quint16 port);
    quint16 port() const;
    QString errorString() const;

    /// The raw value of "NODE.Name", or nothing where there is no such property.
    std::optional<QString> property(const QString &path) const;
    /// Gives a property a new raw value, read-only ones too. False: no such property.
    bool setProperty(const QString &path, const QString &value);

    /// Invokes "NODE:method" as a client's CALL would. Empty on success, else what was wrong.
    QString callMethod(const QString &methodPath, const QString &arguments);

    QStringList presetNames() const;
    /// Stores the present routing under this name; an existing preset of that name is overwritten. Empty on success,
    /// else what is wrong with the name.
    QString addPreset(const QString &name);
    /// False: no such preset.
    bool removePreset(const QString &name);

    /// Cuts every client off and refuses new ones until restoreLink().
    void dropLink();
    /// Accepts clients on the same port again. False: the port has been taken meanwhile.
    bool restoreLink();
    bool isLinkUp() const;
    /// What was sent has arrived at the clients, and what they sent has been read. True also without a client.
    bool isLinkQuiet() const;

    /// Runs a firmware upgrade from 0 to 100 percent over this time; one that is running starts anew.
    void startUpgrade(std::chrono::milliseconds duration);

signals:
    /// A complete line arrived from a client, without its line end.
    void requestReceived(const QString &line);
    /// A line went out to a client, without its line end.
    void lineSent(const QString &line);
    /// A property, the presets or the link are not what they were.
    void changed();

private:
    struct Private;
    std::unique_ptr<Private> d;
};
