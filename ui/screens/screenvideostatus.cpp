#include "ui/screens/screenvideostatus.h"

#include "protocol/catalogue.h"
#include "protocol/dt3manager.h"
#include "ui/propertydisplaylabel.h"

#include <algorithm>
#include <iterator>

namespace {

enum Value {
    Connected,
    SignalPresent,
    SignalType,
    Bandwidth,
    LaneCounts,
    Hdcp,
    Resolution,
    ColorDepth,
    ColorSpace,
    AudioType,
    SamplingFrequency,
    PixelClock,
    TotalResolution,
    Scrambling,
    valueCount
};

constexpr struct
{
    const char *heading; ///< Above the row; null for none.
    const char *caption;
} rows[] = {
    {"Link Status", "HPD present"}, // of an output
    {nullptr, "Signal present"},
    {nullptr, "Signal type"},
    {nullptr, "Bandwidth"},
    {nullptr, "Lane counts"},
    {nullptr, "HDCP"},
    {"Video Status", "Resolution"},
    {nullptr, "Color depth"},
    {nullptr, "Color space"},
    {"Embedded Audio Status", "Audio type"},
    {nullptr, "Sampling f."},
    {"Advanced", "Pixel clock"},
    {nullptr, "Total resolution"},
    {nullptr, "Scrambling"},
};
static_assert(std::size(rows) == valueCount);

/// The properties that the rows are made of.
constexpr const char *properties[] = {"Connected", "SignalPresent", "SignalType", "ActiveHdcpVersion",
    "Hdcp2StreamType", "ActiveResolution", "TotalResolution", "PixelClock", "ColorDepth", "ColorSpace", "AudioType",
    "SamplingFreq", "Scrambling", "DpLinkRate", "DpLaneCount"};

const QString yes = QStringLiteral("true");
const QString none = QStringLiteral("-");

QString colorSpaceText(const QString &raw)
{
    static const QMap<QString, QString> texts{
        {"YUV_444", "YCbCr 4:4:4"},
        {"YUV_422", "YCbCr 4:2:2"},
        {"YUV_420", "YCbCr 4:2:0"},
    };
    return texts.value(raw, raw);
}

QString linkText(const QString &raw) { return raw == none ? QStringLiteral("Link lost") : raw; }

} // namespace

ScreenVideoStatus::ScreenVideoStatus(QWidget *parent, bool input)
    : PortInfoScreen(parent, QStringLiteral("Status"))
    , m_input(input)
    , m_statusNode(propPortStatusAll)
    , m_audioNode(propPortEmbeddedAudioAll)
{
    addWatchedProperty(&m_statusNode);
    addWatchedProperty(&m_audioNode);
    for (const auto &row : rows) {
        if (row.heading)
            addHeaderLine(QString::fromLatin1(row.heading));
        m_rows.append(addLine(QString::fromLatin1(row.caption)));
        m_rows.last()->addValueWidget(new PropertyDisplayLabel(this)); // the row's
    }
    if (input)
        m_rows[Connected]->setCaption(QStringLiteral("5V present"));
    showBackButton();
}

void ScreenVideoStatus::setPort(const QString &port)
{
    PortInfoScreen::setPort(port);
    m_statusNode.setPort(port, false);
    m_audioNode.setPort(port, false);
}

void ScreenVideoStatus::forgetValues()
{
    m_raw.clear();
    for (DataLine *row : std::as_const(m_rows))
        row->setValueText(QStringLiteral("TBD"));
    PortInfoScreen::forgetValues();
}

void ScreenVideoStatus::showRows()
{
    setLineShown(m_rows[LaneCounts], isDisplayPort());
    setLineShown(m_rows[Scrambling], !isDisplayPort());
    setLineShown(m_rows[Connected], !(isDisplayPort() && m_input));
}

void ScreenVideoStatus::updateValue(const QString &property, const QString &value)
{
    const QString node = Dt3Manager::nodeOf(property);
    const bool isStatus = node == Dt3Manager::nodeOf(m_statusNode.path());
    if (!isStatus && node != Dt3Manager::nodeOf(m_audioNode.path()))
        return; // a late answer of the port before
    const QString name = property.section('.', -1);
    if (!isStatus && (name == QLatin1StringView("Connected") || name == QLatin1StringView("SignalPresent")))
        return; // those of the sound
    if (std::find(std::begin(properties), std::end(properties), name) == std::end(properties))
        return;
    m_raw[name] = value;
    showValues();
}

void ScreenVideoStatus::showValues()
{
    const auto presence
        = [](bool present) { return present ? QStringLiteral("present") : QStringLiteral("not present"); };
    m_rows[Connected]->setValueText(presence(raw("Connected") == yes));
    const bool present = raw("SignalPresent") == yes;
    m_rows[SignalPresent]->setValueText(presence(present));
    if (present) {
        showSignal();
        return;
    }
    for (int row = SignalPresent + 1; row < valueCount; ++row)
        m_rows[row]->setValueText(none);
}

void ScreenVideoStatus::showSignal()
{
    const auto show = [this](Value row, const QString &text) { m_rows[row]->setValueText(text); };
    show(SignalType, raw("SignalType"));
    show(Bandwidth, bandwidth());
    if (isDisplayPort())
        show(LaneCounts, linkText(raw("DpLaneCount")));
    if (const QString text = hdcp(); !text.isEmpty())
        show(Hdcp, text);
    show(Resolution, raw("ActiveResolution"));
    const bool packed = raw("ColorSpace") == QLatin1StringView("YUV_422"); // carries 12 bits whatever it says
    show(ColorDepth, (packed ? QStringLiteral("12") : raw("ColorDepth")) + " bpc");
    show(ColorSpace, colorSpaceText(raw("ColorSpace")));
    const bool silent = raw("AudioType").isEmpty();
    show(AudioType, silent ? QStringLiteral("No audio") : raw("AudioType"));
    show(SamplingFrequency, silent ? none : raw("SamplingFreq") + " kHz");
    show(TotalResolution, raw("TotalResolution"));
    show(PixelClock, raw("PixelClock") + " MHz");
    show(Scrambling, raw("Scrambling") == yes ? QStringLiteral("enabled") : QStringLiteral("disabled"));
}

/// Three colours of so many bits a pixel, sent as ten bits for every eight.
QString ScreenVideoStatus::bandwidth() const
{
    if (isDisplayPort())
        return linkText(raw("DpLinkRate"));
    const auto depth = static_cast<float>(raw("ColorDepth").toInt());
    const float rate = depth * 3.0F * 5.0F * 0.25F * raw("PixelClock").toFloat() / 1000.0F;
    return QString::number(static_cast<double>(rate), 'f', 2) + " GBps";
}

QString ScreenVideoStatus::hdcp() const
{
    const QString version = raw("ActiveHdcpVersion");
    if (version == QLatin1StringView("0"))
        return QStringLiteral("no HDCP");
    if (version == QLatin1StringView("1"))
        return QStringLiteral("HDCP 1.4");
    if (version == QLatin1StringView("2"))
        return raw("Hdcp2StreamType") == QLatin1StringView("1") ? QStringLiteral("HDCP 2.3 Type1")
                                                                : QStringLiteral("HDCP 2.3 Type0");
    return {};
}
