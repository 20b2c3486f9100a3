#include "ui/screens/screennetwork.h"

#include "protocol/catalogue.h"
#include "ui/propertydisplaylabel.h"
#include "ui/screens/sharedscreens.h"

#include <QHostAddress>

namespace {

enum { Ip, Subnet, Gateway, Dhcp, Security, StaticIp, StaticSubnet, StaticGateway, LinkStatus, Mac };

} // namespace

ScreenNetwork::ScreenNetwork(QWidget *parent, const SharedScreens &shared)
    : ScreenData(parent)
    , m_warning(parent, false, true)
{
    addRows({
        {"IP", &propNetworkIpAddress},
        {"Subnet", &propNetworkNetworkMask},
        {"Gateway", &propNetworkGatewayAddress},
        {"DHCP", &propNetworkDhcpEnabled, shared.choose},
        {"Security", &propSecuritySecureMode, shared.choose},
        {"Static IP", &propNetworkStaticIpAddress, shared.setIp},
        {"Static Subnet", &propNetworkStaticNetworkMask, shared.setIp},
        {"Static Gateway", &propNetworkStaticGatewayAddress, shared.setIp},
        {"Link Status", &propNetworkLinkStatus},
        {"MAC", &propNetworkMacAddress},
    });
    showSaveButton();
    showBackButton();
    m_warning.setTitle(QStringLiteral("Warning"));
}

QString ScreenNetwork::shownBy(int row) const { return lines()[row]->values().first()->text(); }

bool ScreenNetwork::isDhcpOn() const
{
    static const QStringList words{"true", "yes", "enable", "enabled", "on"};
    return words.contains(shownBy(Dhcp).toLower());
}

bool ScreenNetwork::isGatewayInSubnet() const
{
    const auto address = [this](int row) { return QHostAddress(shownBy(row)).toIPv4Address(); }; // else 0
    return ((address(StaticIp) ^ address(StaticGateway)) & address(StaticSubnet)) == 0;
}

void ScreenNetwork::savePressed()
{
    if (isDhcpOn() || isGatewayInSubnet()) {
        call(methodNetworkApplySettings, {});
        ScreenData::savePressed();
    } else {
        m_warning.setMessage(QStringLiteral("Not on the same subnet!"));
        m_warning.showMe();
    }
    call(methodSecurityApplySettings, {});
}

void ScreenNetwork::updateValue(const QString &property, const QString &value)
{
    ScreenData::updateValue(property, value);
    if (property != propNetworkDhcpEnabled.path())
        return;
    for (const int row : {StaticIp, StaticSubnet, StaticGateway})
        setLineShown(lines()[row], !isDhcpOn());
}
