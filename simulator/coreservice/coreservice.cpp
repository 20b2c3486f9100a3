#include "simulator/coreservice/coreservice.h"

#include "simulator/coreservice/crosspoint.h"
#include "simulator/coreservice/deviceclock.h"
#include "simulator/coreservice/firmwareupgrade.h"
#include "simulator/coreservice/frametree.h"
#include "simulator/coreservice/lineserver.h"
#include "simulator/coreservice/presetstore.h"

#include <algorithm>

namespace {

/// A frame without a layout of its own has the small panel's eight source buttons.
constexpr int smallestButtonCount = 8;

} // namespace

struct CoreService::Private
{
    explicit Private(const FrameDescriptor &frame)
        : tree(frame)
        , crosspoint(tree, frame)
        , presets(tree, crosspoint, std::max(frame.presetButtonCount(), smallestButtonCount))
        , clock(tree)
        , upgrade(tree)
        , server(tree)
    {
    }

    FrameTree tree;
    Crosspoint crosspoint;
    PresetStore presets;
    DeviceClock clock;
    FirmwareUpgrade upgrade;
    LineServer server;
};

CoreService::CoreService(const FrameDescriptor &frame, QObject *parent)
    : QObject(parent)
    , d(std::make_unique<Private>(frame))
{
    // the device would start again after it; its clients may stay here
    d->tree.addMethod("/SYS", "factoryDefaults", [this](const QString &) {
        d->presets.removeAll();
        d->crosspoint.unlockAll();
        d->tree.restoreDefaults();
        return QString();
    });
    connect(&d->server, &LineServer::requestReceived, this, &CoreService::requestReceived);
    connect(&d->server, &LineServer::lineSent, this, &CoreService::lineSent);
    connect(&d->tree, &PropertyTree::valueChanged, this, &CoreService::changed);
    connect(&d->tree, &PropertyTree::nodeAdded, this, &CoreService::changed);
    connect(&d->tree, &PropertyTree::nodeRemoved, this, &CoreService::changed);
}

CoreService::~CoreService() = default;

bool CoreService::listen(quint16 port) { return d->server.listen(port); }

quint16 CoreService::port() const { return d->server.port(); }

QString CoreService::errorString() const { return d->server.errorString(); }

std::optional<QString> CoreService::property(const QString &path) const
{
    const PropertyTree::Property *property = d->tree.property(path);
    return property ? std::optional(property->value) : std::nullopt;
}

bool CoreService::setProperty(const QString &path, const QString &value) { return d->tree.setValue(path, value); }

QString CoreService::callMethod(const QString &methodPath, const QString &arguments)
{
    return d->tree.call(methodPath, arguments);
}

QStringList CoreService::presetNames() const { return d->presets.names(); }

QString CoreService::addPreset(const QString &name) { return d->presets.store(name); }

bool CoreService::removePreset(const QString &name) { return d->presets.remove(name); }

void CoreService::dropLink()
{
    d->server.close();
    emit changed();
}

bool CoreService::restoreLink()
{
    const bool restored = d->server.isListening() || d->server.listen(d->server.port());
    emit changed();
    return restored;
}

bool CoreService::isLinkUp() const { return d->server.isListening(); }

bool CoreService::isLinkQuiet() const { return d->server.isQuiet(); }

void CoreService::startUpgrade(std::chrono::milliseconds duration) { d->upgrade.start(duration); }
