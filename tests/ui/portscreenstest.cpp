#include "managers/variantmanager.h"
#include "protocol/catalogue.h"
#include "tests/ui/lcd.h"
#include "tests/ui/wire.h"
#include "ui/propertydisplaylabel.h"
#include "ui/screendata.h"
#include "ui/screens/screeninoutports.h"
#include "ui/screens/sharedscreens.h"
#include "ui/screenwarning.h"

#include <QApplication>
#include <QTest>

namespace {

ScreenData *page() { return static_cast<ScreenData *>(QApplication::focusWidget()); }
QString title() { return page()->findChild<StyledLabel *>()->text(); }

/// The rows of the open page, from top to bottom: "5V present: present|Signal present: TBD".
QString shown()
{
    QStringList rows;
    for (const DataLine *row : page()->findChildren<DataLine *>()) {
        QString text = row->captionLabel()->text() + (row->values().isEmpty() ? "" : ":");
        for (const PropertyDisplayLabel *value : row->values())
            text += ' ' + value->text();
        if (row->captionLabel()->isVisible())
            rows += text.trimmed();
    }
    return rows.join('|');
}

/// The active signs of each row of the open list.
QStringList signs()
{
    static const QMap<QString, QString> names{{"\uF084", "key "}, {"\uF001", "music "}, {"\uF012", "signal "},
        {"\uF1E6", "plug "}, {"\uF070", "eye "}, {"\U0001F507", "speaker "}, {"\uF023", "lock "}};
    QStringList rows;
    for (const DataLine *row : page()->findChildren<DataLine *>()) {
        QString active;
        for (int i = 0; i < row->valueLayout()->count(); ++i) {
            const auto *sign = qobject_cast<StyledLabel *>(row->valueLayout()->itemAt(i)->widget());
            if (sign && sign->property("active").toBool())
                active += names.value(sign->text(), sign->text());
        }
        rows += active.trimmed();
    }
    return rows;
}

/// A frame with 16 inputs, 8 video outputs and 4 for audio only.
void identify()
{
    auto *variant = VariantManager::instance();
    variant->connectionStateChanged(false);
    variant->propertyReceived("/.PartNumber", "47110027");
    for (int slot = 2; slot <= 22; ++slot)
        variant->propertyReceived(QString("/MANAGEMENT/UID.AddonHwVersion%1").arg(slot), "V12_");
}

} // namespace

/// The pages of the ports, opened by the knob.
class PortScreensTest : public QObject, public Dt3Sink
{
    Q_OBJECT
public:
    void propertyChanged(const QString &, const QString &value) override { m_handled = value.toInt(); }

private slots:
    void initTestCase();
    void cleanupTestCase() { m_lcd.reset(); }
    void signsFollowStatus();
    void rowsFollowKind_data();
    void rowsFollowKind();
    void audioOutputLearnsItsKind();
    void statusShowsValues();
    void nextPortStartsAfresh();

private:
    QString open(bool input, int port);
    int nextPort() { return m_port = m_port % 8 + 1; } ///< Another one than last time, with video.
    bool change(const QString &node, const QString &news);

    Wire m_wire;
    SharedScreens m_shared{};
    std::unique_ptr<Lcd> m_lcd;
    Screen *m_root = nullptr; ///< The LCD's, as the lists are.
    ScreenInOutPorts *m_inputs = nullptr, *m_outputs = nullptr;
    int m_port = 0, m_sent = 0, m_handled = 0;
};

void PortScreensTest::initTestCase()
{
    fillCatalogue();
    m_lcd = std::make_unique<Lcd>();
    m_root = new ScreenWarning(m_lcd.get(), false, false);
    m_root->showMe();
    m_inputs = new ScreenInOutPorts(m_lcd.get(), true, m_shared);
    m_outputs = new ScreenInOutPorts(m_lcd.get(), false, m_shared);
    for (int link = 0; link < 2; ++link) // the lists are built once
        identify();
    Dt3Manager::instance()->connectToDevice();
    QTRY_VERIFY(m_wire.hasClient());
    Dt3Sink::open("/TEST");
    m_wire.sendLines({"o- /TEST"});
}

/// @return the node of the port.
QString PortScreensTest::open(bool input, int port)
{
    ScreenInOutPorts *list = input ? m_inputs : m_outputs;
    list->openedFrom(DataLine(m_root)); // as the menu does
    m_root->showMe();
    list->showMe();
    Lcd::keys((QByteArray(port - 1, 'D') + '\r').constData());
    return QString("/MEDIA/PORTS/VIDEO/%1%2").arg(input ? 'I' : 'O').arg(port);
}

/// Until the pages have it. @param news of the node and of those below: "PortType=DP STATUS.ColorDepth=8".
bool PortScreensTest::change(const QString &node, const QString &news)
{
    QStringList lines;
    for (const QString &property : news.split(' ', Qt::SkipEmptyParts)) {
        const QString path = node + (property.section('=', 0, 0).contains('.') ? "/" : ".") + property;
        lines += {"o- " + Dt3Manager::nodeOf(path), "CHG " + path};
    }
    lines.removeDuplicates();
    m_wire.sendLines(lines + QStringList{QString("CHG /TEST.Sent=%1").arg(++m_sent)});
    return QTest::qWaitFor([this] { return m_handled == m_sent; });
}

void PortScreensTest::signsFollowStatus()
{
    const QString all = "key music signal plug eye lock";
    const std::pair<QString, QString> ports[] = {{"UFF", all}, {"M2A", "eye"}, {"U5A", "eye lock"}, {"T03", "plug"},
        {"T0C", "signal"}, {"T30", "key"}, {"TC0", "music"}, {"L-", "lock"}, {"M-FF", "eye"}, {"T", ""},
        {"U", "eye lock"}, {"Mf3", "key music plug eye"}, {"mff", "key music signal plug"}, {"Lxy", "lock"},
        {"LFF03", "plug lock"}, {"T-", ""}};
    QStringList status, expected;
    for (const auto &[part, active] : ports) {
        status += part;
        expected += active;
    }
    m_inputs->showMe();
    QVERIFY(change("/MEDIA/XP/VIDEO", "SourcePortStatus=" + status.join(';')));
    QCOMPARE(signs(), expected);
    QVERIFY(change("/MEDIA/XP/VIDEO", "SourcePortStatus=;M-;;L-; DestinationPortStatus=UFF;UFF;UFF"));
    QCOMPARE(signs(), (QStringList{"eye", "lock"}) + expected.mid(2));
    QVERIFY(change("/MEDIA/XP/VIDEO", "SourcePortStatus=" + QString("U-;").repeated(40)));
    QCOMPARE(signs(), QStringList(16, "eye lock"));
    m_outputs->showMe();
    QVERIFY(
        change("/MEDIA/XP/VIDEO", "DestinationPortStatus=" + QString("UFF;").repeated(16) + " SourcePortStatus=L-"));
    QCOMPARE(signs(), QStringList(8, all) + QStringList(4, "music speaker lock"));
}

void PortScreensTest::rowsFollowKind_data()
{
    for (const char *column : {"kind", "page", "settings", "audio"})
        QTest::addColumn<QString>(column);
    QTest::addColumn<bool>("input");
    const QString hdmi = "HDMI status|HDMI settings", dp = "DisplayPort status|DisplayPort settings";
    const QString audio = "|Analog audio", analog = "Audio source: Analog input", embedded = "Audio source: Video";
    // What a list does not offer shows as it came.
    const QString inV1 = "HDCP: HDCP 1.4 only|Hotplug: Forced On|", inV2 = "HDCP: 1|Hotplug: ON|";
    const QString inDp = "HDCP: HDCP 1.4 only|Max lane count: TBD|Max bandwidth: TBD|Power enable: TBD|"
                         "Test pattern: TBD|Conversion: RGB to YUV422|";
    const QString outHdmi = "|Signal Type: TBD|HDCP: TBD|Scrambling: TBD|TMDS Clock Rate: TBD";
    const QString outV1 = "Conversion: 422" + outHdmi, outV2 = "Conversion: 4:4:4 to 4:2:2" + outHdmi;
    const QString outDp = "Power enable: TBD";
    const struct
    {
        const char *type;
        QString page, input[2], output[2], mode; // by version
    } kinds[] = {
        {"HDMI", hdmi, {inV1 + embedded, inV2 + embedded}, {outV1, outV2}, {}},
        {"HDMI_AUDIO", hdmi + audio, {inV1 + analog, inV2 + analog}, {outV1, outV2}, "Audio Mode: HDMI Only|"},
        {"DP", dp, {inDp + embedded, inDp + embedded}, {outDp, outDp}, {}},
        {"DP_AUDIO", dp + audio, {inDp + analog, inDp + analog}, {outDp, outDp}, "Audio Mode: DP Only|"},
        {"AUDIO", "Analog audio", {}, {}, {}},
    };
    for (const auto &[type, page, input, output, mode] : kinds) {
        for (const char *version : {"V12", "V20"}) {
            const bool isV2 = version[1] == '2';
            for (const char *order : {"PortType=%1 PortVersion=%2", "PortVersion=%2 PortType=%1"}) {
                const QString kind = QString(order).arg(type, version);
                QTest::addRow("in %s", qPrintable(kind))
                    << kind << page << input[isV2] << analog + "|Analog Gain" << true;
                QTest::addRow("out %s", qPrintable(kind))
                    << kind << page << output[isV2] << "Audio Type: TBD|" + mode + "Analog Mute" << false;
            }
        }
    }
}

void PortScreensTest::rowsFollowKind()
{
    QFETCH(QString, kind);
    QFETCH(QString, page);
    QFETCH(QString, settings);
    QFETCH(QString, audio);
    QFETCH(bool, input);
    const int number = nextPort() + (input ? 8 : 0);
    const QString node = open(input, number), port = QString("PORT %1").arg(number);
    QCOMPARE(shown(), "");
    QVERIFY(change(node, kind));
    QCOMPARE(title() + '|' + shown(), port + '|' + page);
    const QString values = "SETTINGS.HdcpVersion=1 SETTINGS.EnableHPD=ON SETTINGS.Conversion=422 "
                           "ANALOGAUDIO.AudioMode=ANALOG EMBEDDEDAUDIO.AudioMode=HDMI";
    if (!settings.isEmpty()) {
        Lcd::keys("\r");
        const bool dp = page.startsWith("DisplayPort");
        const QString connected = !input ? "HPD present: TBD|" : dp ? "" : "5V present: TBD|";
        QCOMPARE(title() + '|' + shown(),
            port + " STATUS|Link Status|" + connected + "Signal present: TBD|Signal type: TBD|Bandwidth: TBD|"
                + (dp ? "Lane counts: TBD|" : "") + "HDCP: TBD|Video Status|Resolution: TBD|Color depth: TBD|"
                + "Color space: TBD|Embedded Audio Status|Audio type: TBD|Sampling f.: TBD|Advanced|Pixel clock: TBD|"
                + "Total resolution: TBD" + (dp ? "" : "|Scrambling: TBD"));
        Lcd::keys("\033D\r");
        QVERIFY(change(node, values));
        QCOMPARE(title() + '|' + shown(), port + " SETTINGS|" + settings);
        Lcd::keys("\033D");
    }
    if (page.contains("audio")) {
        Lcd::keys("\r");
        QVERIFY(change(node, values));
        QVERIFY2(shown().contains(audio), qPrintable(shown()));
    }
}

void PortScreensTest::audioOutputLearnsItsKind()
{
    const QString rows = "Audio Present: TBD|Audio Type: TBD|%1Analog Mute: TBD|Analog Volume: 50 % -12 dB|"
                         "Analog Balance: %2";
    int port = 8;
    for (const char *kind : {"DP_AUDIO Audio Mode: DP Only|", "AUDIO ", "HDMI_AUDIO Audio Mode: HDMI Only|"}) {
        const QString node = open(false, ++port), type = QString(kind).section(' ', 0, 0);
        QVERIFY(change(node, "EMBEDDEDAUDIO.AudioMode=HDMI ANALOGAUDIO.VolumePercent=49.5 ANALOGAUDIO.VolumedB=-12.4"));
        QCOMPARE(shown(), rows.arg("", "TBD"));
        QVERIFY(change(node, "ANALOGAUDIO.Balance=5 PortType=" + type));
        QCOMPARE(shown(), rows.arg(QString(kind).section(' ', 1), "5"));
    }
}

void PortScreensTest::statusShowsValues()
{
    const struct
    {
        const char *status, *expected, *audio = "", *type = "HDMI";
    } cases[] = {
        {"SignalType=DVI", "5V present: not present|Signal present: present|Signal type: DVI|"},
        {"Connected=true ColorDepth=8 PixelClock=594 SignalPresent=false",
            "5V present: present|Signal present: not present|Signal type: -|Bandwidth: -|HDCP: -|Video Status|"
            "Resolution: -|Color depth: -|Color space: -|Embedded Audio Status|Audio type: -|Sampling f.: -|Advanced|"
            "Pixel clock: -|Total resolution: -|Scrambling: -|"},
        {"ColorDepth=8 PixelClock=594", "Bandwidth: 17.82 GBps|"},
        {"ColorDepth=12 PixelClock=297", "Bandwidth: 13.36 GBps|"}, // in single precision
        {"ColorDepth=8 PixelClock=-", "Bandwidth: 0.00 GBps|"},
        {"DpLinkRate=HBR2 DpLaneCount=4", "Bandwidth: HBR2|Lane counts: 4|", "", "DP"},
        {"DpLinkRate=- DpLaneCount=-", "Bandwidth: Link lost|Lane counts: Link lost|", "", "DP_AUDIO"},
        {"ActiveHdcpVersion=0", "HDCP: no HDCP|"},
        {"ActiveHdcpVersion=1 Hdcp2StreamType=1", "HDCP: HDCP 1.4|"},
        {"ActiveHdcpVersion=2", "HDCP: HDCP 2.3 Type0|"},
        {"ActiveHdcpVersion=2 Hdcp2StreamType=1", "HDCP: HDCP 2.3 Type1|"},
        {"Hdcp2StreamType=1 ActiveHdcpVersion=2 Hdcp2StreamType=0", "HDCP: HDCP 2.3 Type0|"},
        {"ActiveHdcpVersion=1 ActiveHdcpVersion=3", "HDCP: HDCP 1.4|"},
        {"ActiveResolution=1080p ColorDepth=10 ColorSpace=RGB",
            "Resolution: 1080p|Color depth: 10 bpc|Color space: RGB|"},
        {"ColorDepth=8 ColorSpace=YUV_444", "Color depth: 8 bpc|Color space: YCbCr 4:4:4|"},
        {"ColorDepth=8 ColorSpace=YUV_422", "Color depth: 12 bpc|Color space: YCbCr 4:2:2|"},
        {"ColorDepth=8 ColorSpace=YUV_420", "Color depth: 8 bpc|Color space: YCbCr 4:2:0|"},
        {"ColorSpace=XYZ", "Color space: XYZ|"},
        {"PixelClock=148.50 TotalResolution=2200x1125 Scrambling=true",
            "Pixel clock: 148.50 MHz|Total resolution: 2200x1125|Scrambling: enabled|"},
        {"Scrambling=false", "Scrambling: disabled|"},
        {"", "Audio type: LPCM|Sampling f.: 48.0 kHz|", "SamplingFreq=48.0 AudioType=LPCM"},
        {"", "Audio type: No audio|Sampling f.: -|", "SamplingFreq=48.0 AudioType="},
        {"", "5V present: not present|Signal present: present|", "Connected=true SignalPresent=false AudioType=x"},
    };
    for (const auto &[status, expected, audio, type] : cases) {
        const QString node = open(true, nextPort());
        QVERIFY(change(node, QString("PortType=") + type));
        Lcd::keys("\r");
        QVERIFY(change(node + "/STATUS", QString("SignalPresent=true ") + status));
        QVERIFY(change(node + "/EMBEDDEDAUDIO", audio));
        QVERIFY2((shown() + '|').contains(expected), qPrintable(QString(status) + audio + " shows " + shown()));
    }
}

void PortScreensTest::nextPortStartsAfresh()
{
    const QString earlier = open(true, nextPort());
    QVERIFY(change(earlier, "PortType=HDMI_AUDIO PortVersion=V20"));
    Lcd::keys("\r");
    QVERIFY(change(earlier,
        "STATUS.Connected=true STATUS.SignalPresent=true STATUS.ActiveResolution=1080p "
        "STATUS.ActiveHdcpVersion=1 EMBEDDEDAUDIO.AudioType=LPCM"));
    QVERIFY(shown().contains("Audio type: LPCM"));
    Lcd::keys("\033D\r");
    QVERIFY(change(earlier + "/SETTINGS", "HdcpVersion=0"));
    QVERIFY(shown().contains("HDCP: Disable"));

    const QString node = open(true, nextPort());
    const auto late
        = [&earlier](const char *property, const char *value) { page()->propertyReceived(earlier + property, value); };
    late(".PortType", "HDMI_AUDIO");
    late(".PortVersion", "V20");
    QCOMPARE(shown(), "");
    QVERIFY(change(node, "PortType=HDMI"));
    late(".PortType", "DP_AUDIO");
    QCOMPARE(shown(), "HDMI status|HDMI settings");
    Lcd::keys("\r");
    const QString unknown = shown();
    QVERIFY2(!unknown.contains(QRegularExpression(": (?!TBD)")), qPrintable(unknown));
    late("/STATUS.SignalPresent", "true");
    late("/EMBEDDEDAUDIO.AudioType", "LPCM");
    QCOMPARE(shown(), unknown);
    QVERIFY(change(node + "/STATUS", "SignalPresent=true"));
    for (const char *row : {"5V present: not present|", "|Resolution:|", "|HDCP: TBD|", "|Audio type: No audio|"})
        QVERIFY2(shown().contains(row), qPrintable(shown()));
    Lcd::keys("\033D\r");
    QCOMPARE(shown(), "Audio source: TBD"); // of a version that is not known yet
    Lcd::keys("\033");
    QVERIFY(change(node, "PortVersion=V12"));
    Lcd::keys("\r");
    late("/SETTINGS.HdcpVersion", "3");
    QCOMPARE(shown(), "HDCP: TBD|Hotplug: TBD|Audio source: TBD");
}

QTEST_MAIN(PortScreensTest)
#include "portscreenstest.moc"
