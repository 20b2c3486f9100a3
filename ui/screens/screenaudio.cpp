#include "ui/screens/screenaudio.h"

#include "protocol/catalogue.h"
#include "ui/propertydisplaylabel.h"
#include "ui/screens/sharedscreens.h"
#include "ui/styles.h"

namespace {

using Options = QMap<QString, QString>;

Options gainOptions()
{
    return {
        {"SmallIcon", Glyph::volumeDown},
        {"BigIcon", Glyph::volumeUp},
        {"MinValue", "-12"},
        {"MaxValue", "35"},
        {"StepSize", "1"},
        {"IconSizeSame", ""},
        {"MiddleCaption", "dB"},
    };
}

Options volumeOptions()
{
    return {
        {"SmallIcon", Glyph::volumeDown},
        {"BigIcon", Glyph::volumeUp},
        {"MinValue", "0"},
        {"MaxValue", "100"},
        {"StepSize", "10"},
        {"MiddleCaption", "%"},
        {"SecondaryPropName", "VolumedB"},
        {"SecondaryPropCaption", "dB"},
    };
}

Options balanceOptions()
{
    return {
        {"SmallIcon", "L"},
        {"BigIcon", "R"},
        {"MinValue", "-100"},
        {"MaxValue", "100"},
        {"StepSize", "10"},
        {"IconSizeSame", ""},
        {"AxisFontSize", "14"},
        {"GrowFromZero", ""},
        {"MiddleCaption", "%"},
    };
}

/// The label becomes that of the row it is given to.
PropertyDisplayLabel *rounded(QWidget *page, const char *unit)
{
    return new PropertyDisplayLabelNumericValue(page, true, QString::fromLatin1(unit));
}

} // namespace

ScreenInAudio::ScreenInAudio(QWidget *parent, const SharedScreens &shared)
    : ScreenData(parent)
{
    addRows({
        {"Audio source", &propPortAnalogAudioAudioMode, shared.choose},
        {"Analog Gain", &propPortAnalogAudioGain, shared.slider, gainOptions(), rounded(this, "dB")},
        {"Analog Volume", &propPortAnalogAudioVolumePercent, shared.slider, volumeOptions(), rounded(this, "%")},
        {"Analog Balance", &propPortAnalogAudioBalance, shared.slider, balanceOptions()},
    });
    addValue(lines()[2], &propPortAnalogAudioVolumedB, rounded(this, "dB"));
    showBackButton();
}

ScreenOutAudio::ScreenOutAudio(QWidget *parent, const SharedScreens &shared)
    : PortInfoScreen(parent)
    , m_portNode(propPortAll)
{
    addPortRows({
        {{"Audio Present", &propPortEmbeddedAudioSignalPresent}, Always},
        {{"Audio Type", &propPortEmbeddedAudioAudioType}, Always},
        {{"Audio Mode", &propPortEmbeddedAudioAudioModeB, shared.choose}, HdmiAndAnalogAudio},
        {{"Audio Mode", &propPortEmbeddedAudioAudioModeC, shared.choose}, DisplayPortAndAnalogAudio},
        {{"Analog Mute", &propPortAnalogAudioMute, shared.choose}, Always},
        {{"Analog Volume", &propPortAnalogAudioVolumePercent, shared.slider, volumeOptions(), rounded(this, "%")},
            Always},
        {{"Analog Balance", &propPortAnalogAudioBalance, shared.slider, balanceOptions()}, Always},
    });
    addValue(lines()[5], &propPortAnalogAudioVolumedB, rounded(this, "dB"));
    addWatchedProperty(&m_portNode);
    showBackButton();
}

void ScreenOutAudio::setPort(const QString &port)
{
    PortInfoScreen::setPort(port);
    m_portNode.setPort(port, false);
}

void ScreenOutAudio::updateValue(const QString &property, const QString &value)
{
    PortInfoScreen::updateValue(property, value);
    if (const std::optional<PortInfo> info = portInfo(m_portNode, property, value))
        setPortInfo(info->type, info->version);
}
