#include "ui/screens/portinfoscreen.h"

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

QString portTitle(const QString &port, const QString &subject)
{
    return QStringLiteral("Port %1 %2").arg(port.mid(2, 3), subject);
}
