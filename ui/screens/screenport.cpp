#include "ui/screens/screenport.h"

#include "protocol/catalogue.h"
#include "ui/screens/screenaudio.h"
#include "ui/screens/screenvideosettings.h"
#include "ui/screens/screenvideostatus.h"
#include "ui/screens/sharedscreens.h"

namespace {

enum { Status, Settings };

} // namespace

ScreenPort::ScreenPort(QWidget *parent, bool input, PortInfoScreen *settings, ScreenData *audio)
    : ScreenData(parent)
    , m_portNode(propPortAll)
    , m_informed{new ScreenVideoStatus(parent, input), settings} // the parent's
{
    addRows({
        {"xxx status", m_informed.first()}, // until the type is known
        {"xxx settings", settings},
        {"Analog audio", audio},
    });
    showBackButton();
    addWatchedProperty(&m_portNode);
}

void ScreenPort::setPort(const QString &port)
{
    ScreenData::setPort(port);
    m_portNode.setPort(port, false);
    // The pages below learn of the port together with this one: what they are told next is about it.
    for (PortInfoScreen *page : std::as_const(m_informed))
        page->setPort(port);
    m_shown.clear();
    for (DataLine *line : lines())
        hideLine(line);
}

void ScreenPort::updateValue(const QString &property, const QString &value)
{
    const std::optional<PortInfo> info = portInfo(m_portNode, property, value);
    if (!info)
        return;
    for (PortInfoScreen *page : std::as_const(m_informed))
        page->setPortInfo(info->type, info->version);
    if (!info->type.isEmpty())
        setType(info->type);
}

void ScreenPort::setType(const QString &type)
{
    const bool dp = type.contains(QLatin1StringView("DP"));
    const bool video = dp || type.contains(QLatin1StringView("HDMI"));
    const QList<bool> shown{video, video, type.contains(QLatin1StringView("AUDIO"))};
    lines()[Status]->setCaption(dp ? QStringLiteral("DisplayPort status") : QStringLiteral("HDMI status"));
    lines()[Settings]->setCaption(dp ? QStringLiteral("DisplayPort settings") : QStringLiteral("HDMI settings"));
    if (shown == m_shown)
        return; // the highlight stays where the operator turned it
    m_shown = shown;
    for (qsizetype row = 0; row < shown.size(); ++row)
        setLineShown(lines()[row], shown[row]);
    navigator().reset();
}

ScreenInputPort::ScreenInputPort(QWidget *parent, const SharedScreens &shared)
    : ScreenPort(parent, true, new ScreenInVideoSettings(parent, shared), new ScreenInAudio(parent, shared))
{
}

ScreenOutputPort::ScreenOutputPort(QWidget *parent, const SharedScreens &shared, PortInfoScreen *audio)
    : ScreenPort(parent, false, new ScreenOutVideoSettings(parent, shared), audio)
{
    keepInformed(audio);
}
