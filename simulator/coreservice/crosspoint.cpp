#include "simulator/coreservice/crosspoint.h"

#include "simulator/coreservice/valuerule.h"

#include <QRegularExpression>

#include <algorithm>

namespace {

const QString node = "/MEDIA/XP/VIDEO";
const QString connectionStatus = node + ".DestinationConnectionStatus";
const QString destinationStatus = node + ".DestinationPortStatus";
const QString sourceStatus = node + ".SourcePortStatus";

/// What a port's status byte is made of, two bits each, from the low end.
struct StatusBit
{
    const char *name;
    const char *no; ///< Any other value is a yes.
};

constexpr StatusBit statusBits[] = {
    {"Connected", "false"},
    {"SignalPresent", "false"},
    {"ActiveHdcpVersion", "0"},
    {"EmbeddedAudioPresent", "false"},
};

QString statusLetter(bool locked, bool muted) { return locked ? (muted ? "U" : "L") : (muted ? "M" : "T"); }

} // namespace

Crosspoint::Crosspoint(PropertyTree &tree, const FrameDescriptor &frame, QObject *parent)
    : QObject(parent)
    , m_tree(tree)
    , m_frame(frame)
{
    QStringList sources, destinations, connections;
    for (int source = 1; source <= m_frame.inputPortCount(); ++source)
        sources.append(portStatus(false, source));
    for (int destination = 1; destination <= m_frame.outputPortCount(); ++destination) {
        destinations.append(portStatus(true, destination));
        connections.append(destination <= m_frame.inputPortCount() ? "I" + QString::number(destination) : "0");
    }
    m_tree.addProperty(node, "SourcePortStatus", ValueRule::fixed, sources.join(';'));
    m_tree.addProperty(node, "DestinationPortStatus", ValueRule::fixed, destinations.join(';'));
    m_tree.addProperty(node, "DestinationConnectionStatus", ValueRule::byMethod, connections.join(';'));
    m_tree.addMethod(node, "connect", [this](const QString &entries) { return connectPorts(entries); });
    m_tree.addMethod(node, "lockDestination", [this](const QString &entries) { return setLocked(entries, true); });
    m_tree.addMethod(node, "unlockDestination", [this](const QString &entries) { return setLocked(entries, false); });
    connect(&m_tree, &PropertyTree::valueChanged, this, &Crosspoint::refreshPortStatus);
}

QList<int> Crosspoint::routes() const
{
    QList<int> routes;
    const QStringList fields = m_tree.value(connectionStatus).split(';');
    for (const QString &field : fields)
        routes.append(field.mid(1).toInt());
    routes.resize(m_frame.outputPortCount());
    return routes;
}

void Crosspoint::setRoutes(const QList<int> &routes)
{
    QList<int> present = this->routes();
    for (int i = 0; i < std::min(routes.size(), present.size()); ++i)
        if (!isLocked(i + 1) && routes[i] <= m_frame.inputPortCount())
            present[i] = routes[i];
    storeRoutes(present);
}

void Crosspoint::unlockAll()
{
    for (int destination = 1; destination <= m_frame.outputPortCount(); ++destination)
        setLocked("O" + QString::number(destination), false);
}

/// @param entries "I3:-O5" connects, "I7xO2" cuts; ";" between them. Those that can be done are done.
QString Crosspoint::connectPorts(const QString &entries)
{
    QList<int> routes = this->routes();
    QStringList refused;
    const QStringList all = entries.split(';', Qt::SkipEmptyParts);
    for (const QString &entry : all)
        if (const QString reason = refusal(entry, routes); !reason.isEmpty())
            refused.append(entry + ' ' + reason);
    storeRoutes(routes);
    return refused.isEmpty() ? QString() : "refused: " + refused.join("; ");
}

/// Does one entry of a connect. Empty, or why not.
QString Crosspoint::refusal(const QString &entry, QList<int> &routes) const
{
    static const QRegularExpression form("^I(\\d+)(:-|x)O(\\d+)$");
    const QRegularExpressionMatch match = form.match(entry);
    if (!match.hasMatch())
        return "not understood";
    const int source = match.captured(1).toInt();
    const int destination = match.captured(3).toInt();
    if (source < 1 || source > m_frame.inputPortCount())
        return "no such source";
    if (destination < 1 || destination > m_frame.outputPortCount())
        return "no such destination";
    if (isLocked(destination))
        return "destination locked";
    const bool cut = match.captured(2) == "x";
    if (cut && routes[destination - 1] != source)
        return "not connected";
    routes[destination - 1] = cut ? 0 : source;
    return {};
}

/// @param destinations "O3;O5;". Those that exist are locked or unlocked.
QString Crosspoint::setLocked(const QString &destinations, bool locked)
{
    static const QRegularExpression form("^O(\\d+)$");
    QStringList fields = m_tree.value(destinationStatus).split(';');
    QStringList refused;
    const QStringList all = destinations.split(';', Qt::SkipEmptyParts);
    for (const QString &entry : all) {
        const int index = form.match(entry).captured(1).toInt() - 1;
        if (index < 0 || index >= fields.size()) {
            refused.append(entry + " no such destination");
            continue;
        }
        const bool muted = fields[index].startsWith('M') || fields[index].startsWith('U');
        fields[index].replace(0, 1, statusLetter(locked, muted));
    }
    m_tree.setValue(destinationStatus, fields.join(';'));
    return refused.isEmpty() ? QString() : "refused: " + refused.join("; ");
}

bool Crosspoint::isLocked(int destination) const
{
    const QString field = m_tree.value(destinationStatus).section(';', destination - 1, destination - 1);
    return field.startsWith('L') || field.startsWith('U');
}

void Crosspoint::storeRoutes(const QList<int> &routes)
{
    QStringList fields;
    for (const int source : routes)
        fields.append(source ? "I" + QString::number(source) : "0");
    m_tree.setValue(connectionStatus, fields.join(';'));
}

/// Something below a port has changed: its status field may have to follow.
void Crosspoint::refreshPortStatus(const QString &changedNode)
{
    static const QRegularExpression portNode("^/MEDIA/PORTS/VIDEO/([IO])(\\d+)/");
    const QRegularExpressionMatch match = portNode.match(changedNode);
    if (!match.hasMatch())
        return;
    const bool output = match.captured(1) == "O";
    const int port = match.captured(2).toInt();
    const QString &list = output ? destinationStatus : sourceStatus;
    QStringList fields = m_tree.value(list).split(';');
    if (port > fields.size())
        return;
    fields[port - 1] = portStatus(output, port);
    m_tree.setValue(list, fields.join(';'));
}

QString Crosspoint::portStatus(bool output, int port) const
{
    const QString path = "/MEDIA/PORTS/VIDEO/" + QString(output ? "O" : "I") + QString::number(port);
    int byte = 0;
    int shift = 0;
    for (const StatusBit &bit : statusBits) {
        const bool isSet = m_tree.value(path + "/STATUS." + bit.name) != bit.no;
        byte |= (isSet ? 3 : 2) << shift;
        shift += 2;
    }
    const bool muted = output && m_frame.portKind(port - 1, true) == 2 // nothing to mute but the audio
        && m_tree.value(path + "/ANALOGAUDIO.Mute") == "true";
    return statusLetter(output && isLocked(port), muted) + QString::number(byte, 16).toUpper();
}
