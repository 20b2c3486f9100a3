#include "managers/presetmanager.h"
#include "tests/ui/frame.h"
#include "tests/ui/lcd.h"
#include "tests/ui/wire.h"
#include "ui/screens/presetdialogues.h"
#include "ui/screens/screenpreset.h"
#include "ui/screens/sharedscreens.h"

#include <QApplication>

namespace {

const QString eight = "47110001", sixteen = "47110004", none = "47110002"; // frames, by their preset buttons

struct Events
{
    QString frame, events, load, save; ///< "lost" among the events: and the next connection.
};
struct Question
{
    QString frame, events;
    QByteArray keys;
    QString asked, meanwhile, sends;
};

/// The open list, as "badge:caption"; the badge alone where the caption is the name of that button.
QString list()
{
    QStringList rows;
    for (const QString &row : Lcd::rows()) {
        const QString caption = row.section(": ", 0, 0), badge = row.section(": ", 1).trimmed();
        rows += badge.isEmpty() ? caption : caption == "Button" + badge ? badge : badge + ':' + caption;
    }
    return rows.join(' ');
}

/// "+A", "-A": the preset comes or goes; "3=A": it is assigned to the button. @param answered or else changed.
QStringList linesOf(const QString &events, bool answered)
{
    QStringList lines;
    for (const QString &event : events.split(' ', Qt::SkipEmptyParts)) {
        if (event[1] == '=')
            lines += (answered ? "pr /MEDIA/PRESET.Button" : "CHG /MEDIA/PRESET.Button")
                + QString(event).replace("=", "AssignedPreset=");
        else
            lines += (answered ? "n-" : event[0] == '+' ? "NEW" : "DEL") + (" /MEDIA/PRESET/" + event.mid(1));
    }
    return lines;
}

} // namespace

/// The two lists of presets, as the device brings them about, and what is asked and sent from them.
class PresetScreensTest : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void init();
    void cleanup() { m_lcd.reset(); }
    void listsFollowTheDevice_data();
    void listsFollowTheDevice();
    void sendsWhatItAsked_data();
    void sendsWhatItAsked();
    void asksForButtons();

private:
    void connectAs(const QString &frame, const QString &events);
    void happen(const QString &events)
    {
        m_wire.sendLines(QStringList("o- /MEDIA/PRESET") + linesOf(events, false));
        QVERIFY(m_wire.settle());
    }

    Wire m_wire;
    std::unique_ptr<Lcd> m_lcd;
    ScreenConfirmSavePreset *m_confirmSave = nullptr; ///< The LCD's.
};

void PresetScreensTest::initTestCase()
{
    connect(Dt3Manager::instance(), &Dt3Manager::connectionStateChanged, VariantManager::instance(),
        &VariantManager::connectionStateChanged);
    QVERIFY(m_wire.connectProgram());
}

void PresetScreensTest::init()
{
    PresetManager::destroyInstance(); // with what it knew
    connect(Dt3Manager::instance(), &Dt3Manager::connectionStateChanged, PresetManager::instance(),
        &PresetManager::connectionStateChanged);
    m_lcd = std::make_unique<Lcd>();
    Lcd *lcd = m_lcd.get();
    m_confirmSave = new ScreenConfirmSavePreset(lcd);
    SharedScreens shared{};
    shared.loadPreset = new ScreenLoadPreset(lcd, new ScreenConfirmLoadPreset(lcd));
    shared.savePreset = new ScreenSavePreset(lcd, m_confirmSave);
    (new ScreenPreset(lcd, shared))->showMe();
}

/// The device says what frame it is, and what presets it has: "answers | changes after them".
void PresetScreensTest::connectAs(const QString &frame, const QString &events)
{
    m_wire.takeLines();
    identify(frame, "1");
    const QStringList lines = linesOf(events.section('|', 0, 0), true);
    m_wire.answer("GET /MEDIA/PRESET.*", lines.filter("pr "));
    m_wire.answer("GET /MEDIA/PRESET", lines.filter("n- "));
    happen(events.section('|', 1));
}

void PresetScreensTest::listsFollowTheDevice_data()
{
    QTest::addColumn<Events>("is");
    const auto row = [](const char *name, const Events &is) { QTest::newRow(name) << is; };
    row("one with, one without", {sixteen, "3=A +A +B", "3:A B", "1 2 3:A 4 5 6 7 8 9 10 11 12 13 14 15 16 B"});
    row("by buttons, then as they came", {eight, "5=A 2=B +Z +A +B +Y", "2:B 5:A Z Y", "1 2:B 3 4 5:A 6 7 8 Z Y"});
    row("assigned last", {eight, "+B +A | +C 3=A 1=C", "1:C 3:A B", "1:C 2 3:A 4 5 6 7 8 B"});
    row("assigned before it is there", {eight, "| 3=A", "", "1 2 3:A 4 5 6 7 8"});
    row("made by its button", {eight, "| +Button3 3=Button3", "3", "1 2 3 4 5 6 7 8"});
    row("twice", {eight, "+A 3=B +B | +A +B 3=B", "3:B A", "1 2 3:B 4 5 6 7 8 A"});
    row("removed", {eight, "+A +B +C | -B", "A C", "1 2 3 4 5 6 7 8 A C"});
    row("removed with its button", {eight, "3=A +A +B | -A", "B", "1 2 3 4 5 6 7 8 B"});
    row("removed, then freed", {eight, "3=A +A +B | -A 3=", "B", "1 2 3 4 5 6 7 8 B"});
    row("freed", {eight, "3=A +A +B | 3=", "A B", "1 2 3:A 4 5 6 7 8 B"});
    row("removed, and back", {eight, "3=A +A +B | -A +A", "3:A B", "1 2 3:A 4 5 6 7 8 B"});
    row("button taken over", {eight, "3=A +A +B | 3=B", "3:B A", "1 2 3:B 4 5 6 7 8 A"});
    row("button taken over by one to come", {eight, "3=A +A | 3=B", "3:B A", "1 2 3:B 4 5 6 7 8 A"});
    row("removed, then taken over", {eight, "3=A +A +B | -A 3=B", "3:B", "1 2 3:B 4 5 6 7 8"});
    row("to another button", {eight, "3=A +A | 5=A 3=", "5:A", "1 2 3 4 5:A 6 7 8"});
    row("to another button, freed first", {eight, "3=A +A | 3= 5=A", "5:A", "1 2 3 4 5:A 6 7 8"});
    row("buttons swapped", {eight, "3=A 5=B +A +B | 3=B 5=A", "3:B 5:A", "1 2 3:B 4 5:A 6 7 8"});
    row("changed over a loss", {eight, "3=A +A +B lost 3= 4=B +B +A", "4:B A", "1 2 3 4:B 5 6 7 8 A"});
    const QString free = "Preset1 Preset2 Preset3 Preset4 Preset5 Preset6 Preset7 Preset8";
    row("a free name taken", {none, "+B +Preset2", "B Preset2", free + " B"});
    row("a free name freed", {none, "+Preset2 +B | -Preset2 -B", "", free});
}

void PresetScreensTest::listsFollowTheDevice()
{
    QFETCH(const Events, is);
    QCOMPARE(Screen::pendingEntries(), 2);
    connectAs(is.frame, is.events.section(" lost", 0, 0));
    QCOMPARE(Screen::pendingEntries(), 0);
    if (is.events.contains("lost")) {
        m_wire.dropClient();
        QTRY_VERIFY(m_wire.requests().contains("GET /.PartNumber"));
        connectAs(is.frame, is.events.section(" lost", 1));
    }
    Lcd::keys("\r");
    QCOMPARE(list(), is.load);
    Lcd::keys("\033D\r");
    QCOMPARE(list(), is.save);
}

void PresetScreensTest::sendsWhatItAsked_data()
{
    QTest::addColumn<Question>("is");
    const auto row = [](const char *name, const Question &is) { QTest::newRow(name) << is; };
    const QString loadB = "CALL /MEDIA/PRESET/B:load()", create = "CALL /MEDIA/PRESET:create",
                  overA = "CALL /MEDIA/PRESET/A:save() " + create + "(A,VIDEO)",
                  ofButton = create + "ButtonAssignedPreset(%1,VIDEO)";
    row("load", {eight, "3=%1 +%1", "\r\r", "load %1", "", "CALL /MEDIA/PRESET/%1:load()"});
    row("load, row moved up", {eight, "+A +B", "\rD\r", "load B", "-A", loadB});
    row("load, row gone", {eight, "+A +B", "\rD\r", "load B", "-B", loadB});
    row("overwrite", {eight, "3=A +A", "D\rDD\r", "overwrite A", "", overA});
    row("overwrite, without a button", {eight, "+A", "D\rDDDDDDDD\r", "overwrite A", "", overA});
    row("overwrite, gone", {eight, "3=A +A", "D\rDD\r", "overwrite A", "-A", overA});
    row("for a button, taken", {eight, "", "D\rDDDD\r", "create Button5", "5=A +A", ofButton.arg(5)});
    row("as assigned", {eight, "3=A", "D\rDD\r", "create A", "", ofButton.arg(3)});
    row("by name", {none, "+B", "D\rD\r", "create Preset2", "", create + "(Preset2,VIDEO)"});
}

void PresetScreensTest::sendsWhatItAsked()
{
    QFETCH(const Question, is);
    connectAs(is.frame, is.events);
    const QString name = is.asked.section(' ', 1),
                  question = "Do you want to " + is.asked.section(' ', 0, 0) + " preset\n\"" + name + "\"?",
                  title = is.keys.startsWith('D') ? "SAVE PRESET" : "LOAD PRESET";
    Lcd::keys(is.keys);
    Lcd::keys("D\r"); // No
    QCOMPARE(Lcd::title(), title);
    m_wire.sent();
    Lcd::keys("\r");
    happen(is.meanwhile);
    QCOMPARE(Lcd::texts(), name.toUpper() + "|Yes|No|" + question);
    Lcd::keys("\r");
    QCOMPARE(Lcd::title(), title);
    QCOMPARE(m_wire.sent().join(' '), is.sends);
}

void PresetScreensTest::asksForButtons()
{
    connectAs(eight, "3=A");
    ScreenPresetWarning warning(m_lcd.get());
    warning.setButton(4);
    warning.showMe();
    QCOMPARE(Lcd::texts(), "WARNING|Back|There's no preset assigned for\nButton4");
    m_confirmSave->setPreset("", false, 4);
    m_confirmSave->showMe();
    QCOMPARE(Lcd::texts(), "|Yes|No|Do you want to create preset\n\"Button4\"?");
}

QTEST_MAIN(PresetScreensTest)
#include "presetscreenstest.moc"
