#include "tests/ui/frame.h"
#include "tests/ui/lcd.h"
#include "tests/ui/wire.h"
#include "ui/screendata.h"
#include "ui/screens/screeninoutports.h"
#include "ui/screens/sharedscreens.h"
#include "ui/screenwarning.h"

#include <QApplication>

namespace {

ScreenData *page() { return static_cast<ScreenData *>(QApplication::focusWidget()); }
QString shown() { return Lcd::rows().join('|'); }

/// The active signs of each row of the open list, a letter each.
QString signs()
{
    static const QMap<QString, QChar> names{{"\uF084", 'k'}, {"\uF001", 'n'}, {"\uF012", 's'}, {"\uF1E6", 'p'},
        {"\uF070", 'e'}, {"\U0001F507", 'm'}, {"\uF023", 'l'}};
    QString rows;
    for (const DataLine *row : page()->findChildren<DataLine *>()) {
        rows += rows.isEmpty() ? "" : " ";
        for (int i = 0; i < row->valueLayout()->count(); ++i) {
            const auto *sign = qobject_cast<StyledLabel *>(row->valueLayout()->itemAt(i)->widget());
            if (sign && sign->property("active").toBool() && !sign->text().isEmpty())
                rows += names.value(sign->text(), '?');
        }
    }
    return rows;
}

} // namespace

/// The pages of the ports, opened by the knob.
class PortScreensTest : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void cleanupTestCase() { m_lcd.reset(); }
    void signsFollowStatus();
    void rowsFollowKind_data();
    void rowsFollowKind();
    void audioOutputLearnsItsKind();
    void statusShowsValues_data();
    void statusShowsValues();
    void nextPortStartsAfresh();

private:
    QString open(bool input, int port);
    int nextPort() { return m_port = m_port % 8 + 1; } ///< Another one than last time, with video.
    void change(const QString &node, const QString &news);

    Wire m_wire;
    SharedScreens m_shared{};
    std::unique_ptr<Lcd> m_lcd;
    Screen *m_root = nullptr; ///< The LCD's, as the lists are.
    ScreenInOutPorts *m_inputs = nullptr, *m_outputs = nullptr;
    int m_port = 0;
};

void PortScreensTest::initTestCase()
{
    QVERIFY(m_wire.connectProgram());
    m_lcd = std::make_unique<Lcd>();
    m_root = new ScreenWarning(m_lcd.get(), false, false);
    m_root->showMe();
    m_inputs = new ScreenInOutPorts(m_lcd.get(), true, m_shared);
    m_outputs = new ScreenInOutPorts(m_lcd.get(), false, m_shared);
    for (int link = 0; link < 2; ++link) // the lists are built once
        identify("47110027", "12");      // 16 inputs, 8 video outputs and 4 for audio only
}

/// @return the node of the port.
QString PortScreensTest::open(bool input, int port)
{
    ScreenInOutPorts *list = input ? m_inputs : m_outputs;
    list->openedFrom(DataLine(m_root)); // as the menu does
    m_root->showMe();
    list->showMe();
    Lcd::keys(QByteArray(port - 1, 'D') + '\r');
    return QString("/MEDIA/PORTS/VIDEO/%1%2").arg(input ? 'I' : 'O').arg(port);
}

/// Until the pages have it. @param news of the node and of those below: "PortType=DP STATUS.ColorDepth=8".
void PortScreensTest::change(const QString &node, const QString &news)
{
    for (const QString &property : news.split(' '))
        m_wire.change(node + (property.section('=', 0, 0).contains('.') ? "/" : ".") + property.section('=', 0, 0),
            property.section('=', 1));
    QVERIFY(m_wire.settle());
}

void PortScreensTest::signsFollowStatus()
{
    m_inputs->showMe();
    const QString status = "SourcePortStatus=UFF;M2A;U5A;T03;T0C;T30;TC0;L-;M-FF;T;U;Mf3;mff;Lxy;LFF03;T-";
    change("/MEDIA/XP/VIDEO", status);
    QCOMPARE(signs(), "knspel e el p s k n l e  el knpe knsp l pl ");
    change("/MEDIA/XP/VIDEO", "SourcePortStatus=;M-;;L- DestinationPortStatus=UFF;UFF;UFF");
    QCOMPARE(signs(), "e l el p s k n l e  el knpe knsp l pl ");
    m_outputs->showMe();
    change("/MEDIA/XP/VIDEO", "DestinationPortStatus=" + QString("UFF;").repeated(40) + " SourcePortStatus=L-");
    QCOMPARE(signs(), QString("knspel ").repeated(8) + "nml nml nml nml");
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
        const char *kind;
        QString page, input, output, mode;
    } kinds[] = {
        {"PortType=HDMI PortVersion=V12", hdmi, inV1 + embedded, outV1, {}},
        {"PortVersion=V20 PortType=HDMI", hdmi, inV2 + embedded, outV2, {}},
        {"PortVersion=V12 PortType=HDMI_AUDIO", hdmi + audio, inV1 + analog, outV1, "Audio Mode: HDMI Only|"},
        {"PortType=HDMI_AUDIO PortVersion=V20", hdmi + audio, inV2 + analog, outV2, "Audio Mode: HDMI Only|"},
        {"PortType=DP PortVersion=V20", dp, inDp + embedded, outDp, {}},
        {"PortVersion=V12 PortType=DP_AUDIO", dp + audio, inDp + analog, outDp, "Audio Mode: DP Only|"},
        {"PortType=AUDIO PortVersion=V20", "Analog audio", {}, {}, {}},
    };
    for (const auto &[kind, page, input, output, mode] : kinds) {
        QTest::addRow("in %s", kind) << kind << page << input << analog + "|Analog Gain" << true;
        QTest::addRow("out %s", kind) << kind << page << output << "Audio Type: TBD|" + mode + "Analog Mute" << false;
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
    change(node, kind);
    QCOMPARE(Lcd::title() + '|' + shown(), port + '|' + page);
    const QString values = "SETTINGS.HdcpVersion=1 SETTINGS.EnableHPD=ON SETTINGS.Conversion=422 "
                           "ANALOGAUDIO.AudioMode=ANALOG EMBEDDEDAUDIO.AudioMode=HDMI";
    if (!settings.isEmpty()) {
        Lcd::keys("\r");
        const bool dp = page.startsWith("DisplayPort");
        const QString connected = !input ? "HPD present: TBD|" : dp ? "" : "5V present: TBD|";
        QCOMPARE(Lcd::title() + '|' + shown(),
            port + " STATUS|Link Status|" + connected + "Signal present: TBD|Signal type: TBD|Bandwidth: TBD|"
                + (dp ? "Lane counts: TBD|" : "") + "HDCP: TBD|Video Status|Resolution: TBD|Color depth: TBD|"
                + "Color space: TBD|Embedded Audio Status|Audio type: TBD|Sampling f.: TBD|Advanced|Pixel clock: TBD|"
                + "Total resolution: TBD" + (dp ? "" : "|Scrambling: TBD"));
        Lcd::keys("\033D\r");
        change(node, values);
        QCOMPARE(Lcd::title() + '|' + shown(), port + " SETTINGS|" + settings);
        Lcd::keys("\033D");
    }
    if (page.contains("audio")) {
        Lcd::keys("\r");
        change(node, values);
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
        change(node, "EMBEDDEDAUDIO.AudioMode=HDMI ANALOGAUDIO.VolumePercent=49.5 ANALOGAUDIO.VolumedB=-12.4");
        QCOMPARE(shown(), rows.arg("", "TBD"));
        change(node, "ANALOGAUDIO.Balance=5 PortType=" + type);
        QCOMPARE(shown(), rows.arg(QString(kind).section(' ', 1), "5"));
    }
}

void PortScreensTest::statusShowsValues_data()
{
    QTest::addColumn<QString>("type");
    QTest::addColumn<QString>("expected");
    // The name is what comes of a signal that is there.
    const auto row = [](const char *name, const char *expected, const char *type = "HDMI") {
        QTest::newRow(name) << type << expected;
    };
    row("STATUS.SignalType=DVI", "5V present: not present|Signal present: present|Signal type: DVI|");
    row("STATUS.Connected=true STATUS.ColorDepth=8 STATUS.PixelClock=594 STATUS.SignalPresent=false",
        "5V present: present|Signal present: not present|Signal type: -|Bandwidth: -|HDCP: -|Video Status|"
        "Resolution: -|Color depth: -|Color space: -|Embedded Audio Status|Audio type: -|Sampling f.: -|Advanced|"
        "Pixel clock: -|Total resolution: -|Scrambling: -|");
    row("STATUS.ColorDepth=8 STATUS.PixelClock=594", "Bandwidth: 17.82 GBps|");
    row("STATUS.ColorDepth=12 STATUS.PixelClock=297", "Bandwidth: 13.36 GBps|"); // in single precision
    row("STATUS.DpLinkRate=HBR2 STATUS.DpLaneCount=4", "Bandwidth: HBR2|Lane counts: 4|", "DP");
    row("STATUS.DpLinkRate=- STATUS.DpLaneCount=-", "Bandwidth: Link lost|Lane counts: Link lost|", "DP_AUDIO");
    row("STATUS.ActiveHdcpVersion=0", "HDCP: no HDCP|");
    row("STATUS.Hdcp2StreamType=1 STATUS.ActiveHdcpVersion=2 STATUS.Hdcp2StreamType=0", "HDCP: HDCP 2.3 Type0|");
    row("STATUS.ActiveHdcpVersion=2 STATUS.Hdcp2StreamType=1", "HDCP: HDCP 2.3 Type1|");
    row("STATUS.ActiveHdcpVersion=1 STATUS.ActiveHdcpVersion=3", "HDCP: HDCP 1.4|");
    row("STATUS.ActiveResolution=1080p STATUS.ColorDepth=10 STATUS.ColorSpace=RGB",
        "Resolution: 1080p|Color depth: 10 bpc|Color space: RGB|");
    row("STATUS.ColorDepth=8 STATUS.ColorSpace=YUV_444", "Color depth: 8 bpc|Color space: YCbCr 4:4:4|");
    row("STATUS.ColorDepth=8 STATUS.ColorSpace=YUV_422", "Color depth: 12 bpc|Color space: YCbCr 4:2:2|");
    row("STATUS.ColorDepth=8 STATUS.ColorSpace=YUV_420", "Color depth: 8 bpc|Color space: YCbCr 4:2:0|");
    row("STATUS.PixelClock=148.50 STATUS.TotalResolution=2200x1125 STATUS.Scrambling=true",
        "Pixel clock: 148.50 MHz|Total resolution: 2200x1125|Scrambling: enabled|");
    row("STATUS.Scrambling=false", "Scrambling: disabled|");
    row("EMBEDDEDAUDIO.SamplingFreq=48.0 EMBEDDEDAUDIO.AudioType=LPCM", "Audio type: LPCM|Sampling f.: 48.0 kHz|");
    row("EMBEDDEDAUDIO.SamplingFreq=48.0 EMBEDDEDAUDIO.AudioType=", "Audio type: No audio|Sampling f.: -|");
    row("EMBEDDEDAUDIO.Connected=true EMBEDDEDAUDIO.SignalPresent=false EMBEDDEDAUDIO.AudioType=x",
        "5V present: not present|Signal present: present|");
}

void PortScreensTest::statusShowsValues()
{
    QFETCH(QString, type);
    QFETCH(QString, expected);
    const QString node = open(true, nextPort());
    change(node, "PortType=" + type);
    Lcd::keys("\r");
    change(node, QString("STATUS.SignalPresent=true ") + QTest::currentDataTag());
    QVERIFY2((shown() + '|').contains(expected), qPrintable(shown()));
}

void PortScreensTest::nextPortStartsAfresh()
{
    const QString earlier = open(true, nextPort());
    change(earlier, "PortType=HDMI_AUDIO PortVersion=V20");
    Lcd::keys("\r");
    change(earlier,
        "STATUS.Connected=true STATUS.SignalPresent=true STATUS.ActiveHdcpVersion=1 "
        "EMBEDDEDAUDIO.AudioType=LPCM");
    Lcd::keys("\033D\r");
    change(earlier, "SETTINGS.HdcpVersion=0");
    QVERIFY(shown().contains("HDCP: Disable"));

    const QString node = open(true, nextPort());
    const auto late
        = [&earlier](const char *property, const char *value) { page()->propertyReceived(earlier + property, value); };
    late(".PortType", "HDMI_AUDIO");
    late(".PortVersion", "V20");
    QCOMPARE(shown(), "");
    change(node, "PortType=HDMI");
    late(".PortType", "DP_AUDIO");
    QCOMPARE(shown(), "HDMI status|HDMI settings");
    Lcd::keys("\r");
    const QString unknown = shown();
    QVERIFY2(!unknown.contains(QRegularExpression(": (?!TBD)")), qPrintable(unknown));
    late("/STATUS.SignalPresent", "true");
    late("/EMBEDDEDAUDIO.AudioType", "LPCM");
    QCOMPARE(shown(), unknown);
    change(node, "STATUS.SignalPresent=true");
    for (const char *row : {"5V present: not present|", "|HDCP: TBD|", "|Audio type: No audio|"})
        QVERIFY2(shown().contains(row), qPrintable(shown()));
    Lcd::keys("\033D\r");
    QCOMPARE(shown(), "Audio source: TBD"); // of a version that is not known yet
    Lcd::keys("\033");
    change(node, "PortVersion=V12");
    Lcd::keys("\r");
    late("/SETTINGS.HdcpVersion", "3");
    QCOMPARE(shown(), "HDCP: TBD|Hotplug: TBD|Audio source: TBD");
}

QTEST_MAIN(PortScreensTest)
#include "portscreenstest.moc"
