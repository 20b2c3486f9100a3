#include "tests/ui/lcd.h"
#include "tests/ui/wire.h"
#include "ui/dataline.h"
#include "ui/itemwheel.h"
#include "ui/screenchoose.h"
#include "ui/screenenterstandby.h"
#include "ui/screenresettofactorydefaults.h"
#include "ui/screensetdatetime.h"
#include "ui/screensetip.h"
#include "ui/screenslider.h"
#include "ui/screenwheel.h"

namespace {

/// What the wheels of an editor show.
QString wheels(const QWidget &editor)
{
    QStringList texts;
    for (const ItemWheel *wheel : editor.findChildren<ItemWheel *>())
        texts += wheel->text();
    return texts.join(' ');
}

/// The visible options of a list; "*" is set, "<" is hovered.
QString options(const QWidget &editor)
{
    QString texts;
    for (const ItemLabel *label : editor.findChildren<ItemLabel *>()) {
        if (!label->isVisible() || label->maximumWidth() == 13 || !label->property("set").isValid())
            continue;
        texts += (label->property("set").toBool() ? "*" : " ") + label->text()
            + (label->property("state") == "hovered" ? "<" : "");
    }
    return texts.trimmed();
}

} // namespace

/// Each editor as a row opens it: what it shows, and what goes over the wire.
class EditorsTest : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase() { QVERIFY(m_wire.connectProgram()); }
    void init();
    void cleanup() { m_lcd.reset(); }
    void chooseMarksWhatIsSet();
    void wheelWritesWhenChosen();
    void sliderFollowsItsRow();
    void ipIsWrittenOnSave();
    void timeAndDateKeepTheOtherHalf();
    void questionsAsk();

private:
    template <typename Editor> Editor &open(Dt3Property *property, const QMap<QString, QString> &options = {})
    {
        auto *editor = m_lcd->findChild<Editor *>();
        if (!editor)
            editor = new Editor(m_lcd.get());
        DataLine row(m_root);
        row.setProperty(property);
        row.setOptions(options);
        m_path = property ? property->path() : QString();
        editor->openedFrom(row);
        editor->showMe();
        return *editor;
    }
    /// Once the editor has asked this for its value.
    void answer(const QStringList &requests, const QString &value)
    {
        QTRY_COMPARE(m_wire.requests(), requests);
        m_wire.answer(m_path, value);
        m_wire.takeLines();
    }
    /// These keys are the last of the editor.
    void leave(const char *keys)
    {
        Lcd::keys(keys);
        QVERIFY(m_root->hasFocus());
    }

    Wire m_wire;
    std::unique_ptr<Lcd> m_lcd;
    Screen *m_root = nullptr;
    QString m_path; ///< Of what the editor edits.
};

void EditorsTest::init()
{
    m_lcd = std::make_unique<Lcd>();
    m_root = new ScreenWarning(m_lcd.get(), false, false);
    m_root->showMe();
    m_wire.sent();
}

void EditorsTest::chooseMarksWhatIsSet()
{
    Dt3Property five;
    five.setPath("/TEST/NODE.Five");
    for (const char *value : {"a", "b", "c", "d", "e"})
        five.addValue(value);
    const auto &editor = open<ScreenChoose>(&five);
    answer({"OPEN /TEST/NODE", "GET /TEST/NODE.Five"}, "c");
    QTRY_COMPARE(options(editor), "a< b*c d e");
    m_wire.change("/TEST/NODE.Five", "e");
    QTRY_COMPARE(options(editor), "a< b c d*e");
    Lcd::keys("D\r");
    QCOMPARE(m_wire.sent(), QStringList{"SET /TEST/NODE.Five=b"});
    QCOMPARE(options(editor), "a b< c d*e"); // the mark moves when the device says so
    m_wire.sendLines({"CHG /TEST/NODE.Five=none", "CHG /TEST/NODE.Other=b"});
    QTRY_COMPARE(options(editor), "a b< c d e");
    Lcd::keys("\x1b");
    QCOMPARE(m_wire.sent(), QStringList{"CLOSE /TEST/NODE"});

    open<ScreenChoose>(&propBuzzerEnabled); // fewer options, and raw values behind them
    answer({"OPEN /SYS/CECU/BUZZER", "GET /SYS/CECU/BUZZER.Enabled"}, "false");
    QTRY_COMPARE(options(editor), "On<*Off");
    Lcd::keys("DDA\r");
    QCOMPARE(m_wire.sent(), QStringList{"SET /SYS/CECU/BUZZER.Enabled=false"});
    leave("DD\r"); // Back
}

void EditorsTest::wheelWritesWhenChosen()
{
    const auto &editor = open<ScreenWheel>(&propSerialBaudrate);
    const QStringList captions = propSerialBaudrate.captions();
    QCOMPARE(wheels(editor), captions[0]);
    answer({"GET " + m_path}, captions[1]); // no subscription
    QTRY_COMPARE(wheels(editor), captions[1]);
    Lcd::keys("\rD\x1b\rD\r");
    QCOMPARE(m_wire.sent(), QStringList{"SET " + m_path + '=' + captions[2]});
    leave("D\r");
}

void EditorsTest::sliderFollowsItsRow()
{
    Dt3Property volume;
    volume.setPath("/TEST/NODE.Volume");
    auto &editor = open<ScreenSlider>(&volume,
        {{"SmallIcon", "s"}, {"BigIcon", "b"}, {"MinValue", "-95"}, {"MaxValue", "0"}, {"StepSize", "5"},
            {"MiddleCaption", "dB"}, {"SecondaryPropName", "Percent"}, {"SecondaryPropCaption", "%"}});
    const auto texts = [&editor] {
        QString shown;
        for (const QLabel *label : editor.findChildren<QLabel *>())
            shown += label->isVisible() ? label->text() + '|' : QString();
        return shown;
    };
    m_wire.answer("/TEST/NODE.Volume", "-12.5");
    m_wire.answer("/TEST/NODE.Percent", "nan");
    QTRY_VERIFY2(texts().contains("|s|-13 dB|nan %|b|-95|-86|-76|-67|-57|-48|-38|-29|-19|-10|0|"), qPrintable(texts()));
    leave("A\r");
    open<ScreenSlider>(&volume, {{"MinValue", "7"}, {"MaxValue", "7"}}); // without any length
    QVERIFY2(texts().contains("|s||b|7|7|"), qPrintable(texts()));
    leave("DA\r");
    open<ScreenSlider>(&propLcdBrightness, {{"MinValue", "0"}, {"MaxValue", "10"}, {"StepSize", "1"}}); // has a method
    m_wire.change("/SYS/CECU/LCD.Brightness", "5");
    QTRY_VERIFY2(texts().contains("|s|5 |b|0|1|"), qPrintable(texts()));
    leave("Q\x1b");
    editor.connectionLost(); // it held both nodes until now
    QCOMPARE(m_wire.sent().join(", "),
        "GET /TEST/NODE.Volume, GET /TEST/NODE.Percent, OPEN /TEST/NODE, SET /TEST/NODE.Volume=-17, "
        "GET /TEST/NODE.Volume, OPEN /TEST/NODE, GET /SYS/CECU/LCD.Brightness, OPEN /SYS/CECU/LCD, "
        "CALL /SYS/CECU/LCD:changeBrightness(-1), CLOSE /TEST/NODE, CLOSE /SYS/CECU/LCD");
}

void EditorsTest::ipIsWrittenOnSave()
{
    auto &editor = open<ScreenSetIp>(&propNetworkStaticIpAddress);
    answer({"GET " + m_path}, "192.168.0.1");
    QTRY_COMPARE(wheels(editor), "192 168 0 1");
    for (const char *odd : {"1.2.3", "1.2.3.4.5"})
        editor.propertyReceived(m_path, odd);
    editor.propertyReceived("/ANOTHER.Address", "1.2.3.4");
    QCOMPARE(wheels(editor), "192 168 0 1");
    leave("\rE\rD\rD\x1b"
          "DDD\r"); // 202, 168 again; then Save
    QCOMPARE(m_wire.sent(), QStringList{"SET " + m_path + "=202.168.0.1"});
}

void EditorsTest::timeAndDateKeepTheOtherHalf()
{
    auto &time = open<ScreenSetTime>(&propDatetimeCurrentTime);
    const QStringList subscribes{"GET " + m_path, "OPEN /MANAGEMENT/DATETIME"};
    answer(subscribes, "2026-11-24T12:34:56");
    QTRY_COMPARE(wheels(time), "12 34 56");
    leave("DDD\r"); // saved before the clock ticked
    const QString saved = "CALL /MANAGEMENT/DATETIME:setTime(%1), CLOSE /MANAGEMENT/DATETIME";
    QCOMPARE(m_wire.sent().join(", "), saved.arg("T12:34:56"));

    open<ScreenSetTime>(&propDatetimeCurrentTime);
    answer(subscribes, "2026-11-25T00:00:01");
    QTRY_COMPARE(wheels(time), "00 00 01");
    time.propertyReceived(m_path, "12:34:56"); // no date-time
    Lcd::keys("\rD\r");
    time.propertyChanged(m_path, "2026-11-25T00:00:02"); // the edit survives it
    leave("DDD\r");
    QCOMPARE(m_wire.sent().join(", "), saved.arg("2026-11-25T01:00:01"));

    const auto &date = open<ScreenSetDate>(&propDatetimeCurrentTime);
    answer(subscribes, "2026-11-30T00:00:03");
    m_wire.change(m_path, "2026-11-30T00:00:04");
    QTRY_COMPARE(wheels(date), "2026 11 30");
    leave("DD\rD\rD\r");
    QCOMPARE(m_wire.sent().join(", "), saved.arg("2026-11-31T00:00:04")); // the device judges it
}

void EditorsTest::questionsAsk()
{
    auto &standby = open<ScreenEnterStandby>(nullptr);
    Lcd::keys("\r"); // Yes
    QCOMPARE(m_wire.sent(), (QStringList{"OPEN /MANAGEMENT/POWER", "CALL /MANAGEMENT/POWER:standby()"}));
    QVERIFY(standby.hasFocus()); // until the device does it
    m_wire.change("/MANAGEMENT/POWER.Operation", "STANDBY");
    QTRY_VERIFY(m_root->hasFocus());
    open<ScreenEnterStandby>(nullptr);
    leave("D\r"); // No
    standby.connectionLost();
    QCOMPARE(m_wire.sent(), QStringList{"CLOSE /MANAGEMENT/POWER"});

    for (const char *answer : {"D\r", "\r"}) {
        open<ScreenResetToFactoryDefaults>(nullptr);
        leave(answer);
    }
    QCOMPARE(m_wire.sent(), QStringList{"CALL /SYS:factoryDefaults()"});
}

QTEST_MAIN(EditorsTest)
#include "editorstest.moc"
