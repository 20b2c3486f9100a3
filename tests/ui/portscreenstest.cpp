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
QString values() { return Lcd::rows().filter(":").replaceInStrings(QRegularExpression("^[^:]*: ?"), "").join(", "); }

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
    for (const char *column : {"page", "inSettings", "outSettings", "audioMode"})
        QTest::addColumn<QString>(column);
    const auto row
        = [](const char *kind, const QString &page, const QString &inSettings = {}, const QString &outSettings = {},
              const QString &audioMode = {}) { QTest::newRow(kind) << page << inSettings << outSettings << audioMode; };
    const QString outHdmi = "|Signal Type: TBD|HDCP: TBD|Scrambling: TBD|TMDS Clock Rate: TBD";
    // What a list does not offer shows as it came.
    row("PortVersion=V20 PortType=HDMI", "HDMI status|HDMI settings", "HDCP: 1|Hotplug: ON|Audio source: Video",
        "Conversion: 4:4:4 to 4:2:2" + outHdmi);
    row("PortType=HDMI_AUDIO PortVersion=V12", "HDMI status|HDMI settings|Analog audio",
        "HDCP: HDCP 1.4 only|Hotplug: Forced On|Audio source: Analog input", "Conversion: 422" + outHdmi,
        "Audio Mode: HDMI Only|");
    row("PortVersion=V12 PortType=DP_AUDIO", "DisplayPort status|DisplayPort settings|Analog audio",
        "HDCP: HDCP 1.4 only|Max lane count: TBD|Max bandwidth: TBD|Power enable: TBD|Test pattern: TBD|"
        "Conversion: RGB to YUV422|Audio source: Analog input",
        "Power enable: TBD", "Audio Mode: DP Only|");
    row("PortType=AUDIO PortVersion=V20", "Analog audio");
}

void PortScreensTest::rowsFollowKind()
{
    QFETCH(QString, page);
    QFETCH(QString, inSettings);
    QFETCH(QString, outSettings);
    QFETCH(QString, audioMode);
    const QString news = "SETTINGS.HdcpVersion=1 SETTINGS.EnableHPD=ON SETTINGS.Conversion=422 "
                         "ANALOGAUDIO.AudioMode=ANALOG EMBEDDEDAUDIO.AudioMode=HDMI";
    for (const bool input : {true, false}) {
        const int number = nextPort() + (input ? 8 : 0);
        const QString node = open(input, number), port = QString("PORT %1").arg(number);
        QCOMPARE(shown(), "");
        change(node, QTest::currentDataTag());
        QCOMPARE(Lcd::title() + '|' + shown(), port + '|' + page);
        if (page.contains("status")) {
            Lcd::keys("\r");
            const bool dp = page.startsWith("DisplayPort");
            const QString connected = !input ? "HPD present: TBD|" : dp ? "" : "5V present: TBD|";
            QCOMPARE(Lcd::title() + '|' + shown(),
                port + " STATUS|Link Status|" + connected + "Signal present: TBD|Signal type: TBD|Bandwidth: TBD|"
                    + (dp ? "Lane counts: TBD|" : "") + "HDCP: TBD|Video Status|Resolution: TBD|Color depth: TBD|"
                    + "Color space: TBD|Embedded Audio Status|Audio type: TBD|Sampling f.: TBD|Advanced|"
                    + "Pixel clock: TBD|Total resolution: TBD" + (dp ? "" : "|Scrambling: TBD"));
            Lcd::keys("\033D\r");
            change(node, news);
            QCOMPARE(Lcd::title() + '|' + shown(), port + " SETTINGS|" + (input ? inSettings : outSettings));
            Lcd::keys("\033D");
        }
        if (page.contains("audio")) {
            Lcd::keys("\r");
            change(node, news);
            const QString rows
                = input ? "Audio source: Analog input|Analog Gain" : "Audio Type: TBD|" + audioMode + "Analog Mute";
            QVERIFY2(shown().contains(rows), qPrintable(shown()));
        }
    }
}

/// The page of a port that has nothing else is opened from the list.
void PortScreensTest::audioOutputLearnsItsKind()
{
    const QString rows = "Audio Present: TBD|Audio Type: TBD|%1Analog Mute: TBD|Analog Volume: 50 % -12 dB|"
                         "Analog Balance: %2";
    const QString node = open(false, 9);
    change(node, "EMBEDDEDAUDIO.AudioMode=HDMI ANALOGAUDIO.VolumePercent=49.5 ANALOGAUDIO.VolumedB=-12.4");
    QCOMPARE(shown(), rows.arg("", "TBD"));
    change(node, "ANALOGAUDIO.Balance=5 PortType=AUDIO");
    QCOMPARE(shown(), rows.arg("", "5"));
    change(node, "PortType=DP_AUDIO");
    QCOMPARE(shown(), rows.arg("Audio Mode: DP Only|", "5"));
}

void PortScreensTest::statusShowsValues_data()
{
    QTest::addColumn<QString>("type");
    QTest::addColumn<QString>("expected");
    // The name is what comes of a signal that is there: "S." of the status, "A." of the embedded audio.
    const auto row = [](const char *name, const char *expected, const char *type = "HDMI") {
        QTest::newRow(name) << type << expected;
    };
    row("S.Connected=true S.SignalType=DVI S.Hdcp2StreamType=1 S.ActiveHdcpVersion=2 S.ActiveResolution=1080p "
        "S.ColorSpace=RGB S.ColorDepth=10 S.PixelClock=148.50 S.TotalResolution=2200x1125 S.Scrambling=true "
        "A.AudioType=LPCM A.SamplingFreq=48.0",
        "present, present, DVI, 5.57 GBps, HDCP 2.3 Type1, 1080p, 10 bpc, RGB, LPCM, 48.0 kHz, 148.50 MHz, 2200x1125, "
        "enabled");
    row("S.ActiveHdcpVersion=0 S.ColorSpace=YUV_422 S.ColorDepth=8 S.PixelClock=594 S.Scrambling=false "
        "A.Connected=true A.SignalPresent=false A.AudioType= A.SamplingFreq=48.0",
        "not present, present, , 17.82 GBps, no HDCP, , 12 bpc, YCbCr 4:2:2, No audio, -, 594 MHz, , disabled");
    row("S.ActiveHdcpVersion=1 S.ActiveHdcpVersion=3 S.ColorSpace=YUV_444 S.ColorDepth=12 S.PixelClock=297",
        "not present, present, , 13.36 GBps, HDCP 1.4, , 12 bpc, YCbCr 4:4:4, No audio, -, 297 MHz, , disabled");
    row("S.ActiveHdcpVersion=2 S.Hdcp2StreamType=0 S.ColorSpace=YUV_420 S.ColorDepth=8 S.DpLinkRate=HBR2 "
        "S.DpLaneCount=4",
        "present, , HBR2, 4, HDCP 2.3 Type0, , 8 bpc, YCbCr 4:2:0, No audio, -,  MHz, ", "DP");
    row("S.DpLinkRate=- S.DpLaneCount=-", "present, , Link lost, Link lost, TBD, ,  bpc, , No audio, -,  MHz, ",
        "DP_AUDIO");
    row("S.Connected=true S.ColorDepth=8 S.PixelClock=594 S.SignalPresent=false",
        "present, not present, -, -, -, -, -, -, -, -, -, -, -");
}

void PortScreensTest::statusShowsValues()
{
    QFETCH(QString, type);
    QFETCH(QString, expected);
    const QString node = open(true, nextPort());
    change(node, "PortType=" + type);
    Lcd::keys("\r");
    const QString news = QString("S.SignalPresent=true ") + QTest::currentDataTag();
    change(node, QString(news).replace("S.", "STATUS.").replace("A.", "EMBEDDEDAUDIO."));
    QCOMPARE(values(), expected);
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
    late("/STATUS.SignalPresent", "true");
    late("/EMBEDDEDAUDIO.AudioType", "LPCM");
    QCOMPARE(values(), QStringList(13, "TBD").join(", "));
    change(node, "STATUS.SignalPresent=true");
    QCOMPARE(values(), "not present, present, , 0.00 GBps, TBD, ,  bpc, , No audio, -,  MHz, , disabled");
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
