#include "ui/screens/portinfoscreen.h"

#include "protocol/dt3manager.h"
#include "protocol/dt3property.h"

PortInfoScreen::PortInfoScreen(QWidget *parent, const QString &subject)
    : ScreenData(parent)
    , m_subject(subject)
{
}

void PortInfoScreen::setPort(const QString &port)
{
    ScreenData::setPort(port);
    if (!m_subject.isEmpty())
        setTitle(QStringLiteral("Port %1 %2").arg(port.mid(2, 3), m_subject)); // "/I12"
}

void PortInfoScreen::addPortRows(std::initializer_list<PortRow> rows)
{
    for (const PortRow &row : rows) {
        addRows({row.row});
        m_rowKinds.append(row.kinds);
    }
}

void PortInfoScreen::setPortInfo(const QString &portType, const QString &portVersion)
{
    if (!portType.isEmpty())
        m_portType = portType;
    if (!portVersion.isEmpty())
        m_portVersion = portVersion;
    showRows();
}

void PortInfoScreen::forgetValues()
{
    ScreenData::forgetValues();
    m_portType.clear();
    m_portVersion.clear();
    m_audioMode = 0;
    showRows();
}

unsigned PortInfoScreen::kindsOfPort()
{
    if (m_portType.isEmpty())
        return 0;
    const bool hdmi = m_portType.contains(QLatin1StringView("HDMI"));
    const bool audio = m_portType.contains(QLatin1StringView("AUDIO"));
    if (audio)
        m_audioMode = hdmi ? HdmiAndAnalogAudio : DisplayPortAndAnalogAudio;
    if (m_portType == QLatin1StringView("AUDIO")) // no picture to mix it with
        m_audioMode = 0;
    unsigned kinds = m_audioMode | (audio ? AnalogAudio : NoAnalogAudio);
    if (m_portVersion.isEmpty())
        return kinds;
    if (hdmi)
        kinds |= m_portVersion.contains(QLatin1StringView("V2")) ? HdmiV2 : HdmiV1;
    else if (m_portType.contains(QLatin1StringView("DP")))
        kinds |= DisplayPort;
    return kinds;
}

void PortInfoScreen::showRows()
{
    const unsigned kinds = kindsOfPort();
    for (qsizetype row = 0; row < m_rowKinds.size(); ++row) {
        if (m_rowKinds[row] != Always)
            setLineShown(lines()[row], m_rowKinds[row] & kinds);
    }
}

std::optional<PortInfo> portInfo(const Dt3Property &portNode, const QString &property, const QString &value)
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
