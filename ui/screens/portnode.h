#pragma once

#include "protocol/dt3manager.h"
#include "protocol/dt3property.h"

#include <optional>

/// News of what kind of port it is; one of the two is empty.
struct PortInfo
{
    QString type, version;
};

/// What a value says about the kind of port, or nothing. @param portNode the ".*" of the port that is on the page; late
/// answers of another one say nothing.
inline std::optional<PortInfo> portInfo(const Dt3Property &portNode, const QString &property, const QString &value)
{
    if (Dt3Manager::nodeOf(property) != Dt3Manager::nodeOf(portNode.path()))
        return std::nullopt;
    const QString name = property.section('.', -1);
    if (name.contains(QLatin1StringView("PortType")))
        return PortInfo{value, {}};
    if (name.contains(QLatin1StringView("PortVersion")))
        return PortInfo{{}, value};
    return std::nullopt;
}
