#include "managers/presetmanager.h"
#include "managers/variantmanager.h"
#include "protocol/catalogue.h"
#include "tests/ui/lcd.h"
#include "tests/ui/wire.h"
#include "ui/screens/presetdialogues.h"
#include "ui/screens/screenpreset.h"
#include "ui/screens/sharedscreens.h"

#include <QApplication>
#include <QGridLayout>
#include <QSignalSpy>
#include <QTest>

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

/// The rows of a list, as "badge:caption"; the badge alone where the caption is the name of that button.
QString rows(const QWidget *page)
{
    QStringList rows;
    const auto *grid = page->findChild<QGridLayout *>();
    const auto text = [](const QLayoutItem *item) { return static_cast<QLabel *>(item->widget())->text(); };
    for (int row = 0; row < grid->rowCount() && grid->itemAtPosition(row, 1); ++row) {
        const QString caption = text(grid->itemAtPosition(row, 1));
        const QString badge = text(grid->itemAtPosition(row, 2)->layout()->itemAt(0));
        rows += badge.isEmpty() ? caption : caption == "Button" + badge ? badge : badge + ':' + caption;
    }
    return rows.join(' ');
}

/// The texts of the screen that has the keyboard, without its icons.
QString topTexts()
{
    QStringList texts;
    for (const QLabel *label : QApplication::focusWidget()->findChildren<QLabel *>()) {
        if (label->isVisible() && label->text() < QString(QChar(0xE000)))
            texts += label->text();
    }
    return texts.join('|');
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
    /// The device says these lines. Returns when they have been handled.
    void happen(const QStringList &lines)
    {
        const QSignalSpy removed(PresetManager::instance(), &PresetManager::onPresetRemoved);
        m_wire.sendLines(lines + QStringList("DEL /MEDIA/PRESET/nothing"));
        QTRY_VERIFY(removed.contains(QVariantList{"nothing"}));
    }
    QString calls() const { return m_wire.requests().filter("CALL ").join(' '); }

    Wire m_wire;
    std::unique_ptr<Lcd> m_lcd;
    ScreenLoadPreset *m_load = nullptr;
    ScreenSavePreset *m_save = nullptr;
    ScreenConfirmSavePreset *m_confirmSave = nullptr;
};

void PresetScreensTest::initTestCase()
{
    fillCatalogue();
    Dt3Manager *dt3 = Dt3Manager::instance();
    connect(
        dt3, &Dt3Manager::connectionStateChanged, VariantManager::instance(), &VariantManager::connectionStateChanged);
    dt3->connectToDevice();
    QTRY_VERIFY(m_wire.hasClient());
}

void PresetScreensTest::init()
{
    m_wire.takeLines();
    PresetManager::destroyInstance(); // with what it knew
    connect(Dt3Manager::instance(), &Dt3Manager::connectionStateChanged, PresetManager::instance(),
        &PresetManager::connectionStateChanged);
    m_lcd = std::make_unique<Lcd>();
    Lcd *lcd = m_lcd.get();
    m_confirmSave = new ScreenConfirmSavePreset(lcd);
    m_load = new ScreenLoadPreset(lcd, new ScreenConfirmLoadPreset(lcd));
    m_save = new ScreenSavePreset(lcd, m_confirmSave);
    SharedScreens shared{};
    shared.loadPreset = m_load;
    shared.savePreset = m_save;
    (new ScreenPreset(lcd, shared))->showMe();
    for (const bool connected : {false, true})
        VariantManager::instance()->connectionStateChanged(connected);
}

/// The device says what frame it is, and what presets it has: "answers | changes after them".
void PresetScreensTest::connectAs(const QString &frame, const QString &events)
{
    const auto block = [this](const QString &request, const QStringList &lines) {
        const qsizetype asked = m_wire.requests().lastIndexOf(request);
        return QStringList('{' + m_wire.lines().at(asked).first(4)) + lines + QStringList("}");
    };
    QTRY_VERIFY(m_wire.requests().contains("GET /.PartNumber"));
    QStringList lines{"pr /.PartNumber=" + frame};
    for (int slot = 2; slot <= 22; ++slot)
        lines += QString("pr /MANAGEMENT/UID.AddonHwVersion%1=V1_").arg(slot);
    m_wire.sendLines(block("GET /.PartNumber", lines));
    QTRY_VERIFY(m_wire.requests().contains("GET /MEDIA/PRESET"));
    lines = linesOf(events.section('|', 0, 0), true);
    happen(block("GET /MEDIA/PRESET.*", lines.filter("pr ")) + QStringList("o- /MEDIA/PRESET")
        + block("GET /MEDIA/PRESET", lines.filter("n- ")) + linesOf(events.section('|', 1), false));
    m_wire.takeLines();
}

void PresetScreensTest::listsFollowTheDevice_data()
{
    QTest::addColumn<Events>("is");
    const auto row = [](const char *name, const Events &is) { QTest::newRow(name) << is; };
    row("nothing", {eight, "", "", "1 2 3 4 5 6 7 8"});
    row("one with, one without", {sixteen, "3=A +A +B", "3:A B", "1 2 3:A 4 5 6 7 8 9 10 11 12 13 14 15 16 B"});
    row("by buttons, then as they came", {eight, "5=A 2=B +Z +A +B +Y", "2:B 5:A Z Y", "1 2:B 3 4 5:A 6 7 8 Z Y"});
    row("assigned last", {eight, "+B +A | +C 3=A 1=C", "1:C 3:A B", "1:C 2 3:A 4 5 6 7 8 B"});
    row("assigned before it is there", {eight, "| 3=A", "", "1 2 3:A 4 5 6 7 8"});
    row("and then it comes", {eight, "| 3=A +A +B", "3:A B", "1 2 3:A 4 5 6 7 8 B"});
    row("made by its button", {eight, "| +Button3 3=Button3", "3", "1 2 3 4 5 6 7 8"});
    row("made by its button, assigned first", {eight, "| 3=Button3 +Button3", "3", "1 2 3 4 5 6 7 8"});
    row("twice", {eight, "+A 3=B +B | +A +B 3=B", "3:B A", "1 2 3:B 4 5 6 7 8 A"});
    row("removed", {eight, "+A +B +C | -B", "A C", "1 2 3 4 5 6 7 8 A C"});
    row("removed with its button", {eight, "3=A +A +B | -A", "B", "1 2 3 4 5 6 7 8 B"});
    row("removed, then freed", {eight, "3=A +A +B | -A 3=", "B", "1 2 3 4 5 6 7 8 B"});
    row("freed", {eight, "3=A +A +B | 3=", "A B", "1 2 3:A 4 5 6 7 8 B"});
    row("freed, then removed", {eight, "3=A +A +B | 3= -A", "B", "1 2 3 4 5 6 7 8 B"});
    row("removed, and back", {eight, "3=A +A +B | -A +A", "3:A B", "1 2 3:A 4 5 6 7 8 B"});
    row("never there", {eight, "+A | -B", "A", "1 2 3 4 5 6 7 8 A"});
    row("button taken over", {eight, "3=A +A +B | 3=B", "3:B A", "1 2 3:B 4 5 6 7 8 A"});
    row("button taken over by one to come", {eight, "3=A +A | 3=B", "3:B A", "1 2 3:B 4 5 6 7 8 A"});
    row("and then it comes, too", {eight, "3=A +A | 3=B +B", "3:B A", "1 2 3:B 4 5 6 7 8 A"});
    row("taken over, then removed", {eight, "3=A +A +B | 3=B -A", "3:B", "1 2 3:B 4 5 6 7 8"});
    row("removed, then taken over", {eight, "3=A +A +B | -A 3=B", "3:B", "1 2 3:B 4 5 6 7 8"});
    row("to another button", {eight, "3=A +A | 5=A 3=", "5:A", "1 2 3 4 5:A 6 7 8"});
    row("to another button, freed first", {eight, "3=A +A | 3= 5=A", "5:A", "1 2 3 4 5:A 6 7 8"});
    row("buttons swapped", {eight, "3=A 5=B +A +B | 3=B 5=A", "3:B 5:A", "1 2 3:B 4 5:A 6 7 8"});
    row("no such button", {eight, "9=A +A | 9=A", "A", "1 2 3 4 5 6 7 8 A"});
    row("lost", {eight, "3=A +A +B lost", "", "1 2 3 4 5 6 7 8"});
    row("lost, and back", {eight, "3=A +A +B lost 3=A +B +A", "3:A B", "1 2 3:A 4 5 6 7 8 B"});
    row("changed over a loss", {eight, "3=A +A +B lost 3= 4=B +B +A", "4:B A", "1 2 3 4:B 5 6 7 8 A"});
    const QString free = "Preset1 Preset2 Preset3 Preset4 Preset5 Preset6 Preset7 Preset8";
    row("without buttons", {none, "", "", free});
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
        connectAs(is.frame, is.events.section(" lost", 1));
    }
    QCOMPARE(rows(m_load), is.load);
    QCOMPARE(rows(m_save), is.save);
}

void PresetScreensTest::sendsWhatItAsked_data()
{
    QTest::addColumn<Question>("is");
    const auto row = [](const char *name, const Question &is) { QTest::newRow(name) << is; };
    const QString loadB = "CALL /MEDIA/PRESET/B:load()", create = "CALL /MEDIA/PRESET:create",
                  overA = "CALL /MEDIA/PRESET/A:save() " + create + "(A,VIDEO)";
    row("load", {eight, "3=%1 +%1", "\r\r", "load %1", "", "CALL /MEDIA/PRESET/%1:load()"});
    row("load, without a button", {eight, "3=A +A +B", "\rD\r", "load B", "", loadB});
    row("load, row moved up", {eight, "+A +B", "\rD\r", "load B", "-A", loadB});
    row("load, to another row", {eight, "+A +B", "\rD\r", "load B", "1=B", loadB});
    row("load, row gone", {eight, "+A +B", "\rD\r", "load B", "-B", loadB});
    row("load, all gone", {eight, "+A +B", "\rD\r", "load B", "-A -B", loadB});
    row("overwrite", {eight, "3=A +A", "D\rDD\r", "overwrite A", "", overA});
    row("overwrite, without a button", {eight, "+A", "D\rDDDDDDDD\r", "overwrite A", "", overA});
    row("overwrite, to another row", {eight, "3=A +A +B", "D\rDD\r", "overwrite A", "3=B", overA});
    row("overwrite, gone", {eight, "3=A +A", "D\rDD\r", "overwrite A", "-A", overA});
    row("for a button", {eight, "3=A +A", "D\rDDDD\r", "create Button5", "", create + "ButtonAssignedPreset(5,VIDEO)"});
    row("for a button, taken",
        {eight, "", "D\rDDDD\r", "create Button5", "5=A +A", create + "ButtonAssignedPreset(5,VIDEO)"});
    row("as assigned", {eight, "3=A", "D\rDD\r", "create A", "", create + "ButtonAssignedPreset(3,VIDEO)"});
    row("by name", {none, "+B", "D\rD\r", "create Preset2", "", create + "(Preset2,VIDEO)"});
    row("by name, over one", {none, "+A", "D\rDDDDDDDD\r", "overwrite A", "", overA});
}

void PresetScreensTest::sendsWhatItAsked()
{
    QFETCH(const Question, is);
    connectAs(is.frame, is.events);
    const QString name = is.asked.section(' ', 1),
                  question = "Do you want to " + is.asked.section(' ', 0, 0) + " preset\n\"";
    Lcd::keys(is.keys);
    Lcd::keys("D\r"); // No
    QCOMPARE(QApplication::focusWidget(), is.keys.startsWith('D') ? static_cast<QWidget *>(m_save) : m_load);
    Lcd::keys("\r");
    happen(linesOf(is.meanwhile, false));
    QCOMPARE(topTexts(), name.toUpper() + "|Yes|No|" + question + name + "\"?");
    Lcd::keys("\r");
    QTRY_COMPARE(calls(), is.sends);
    QCOMPARE(QApplication::focusWidget(), is.keys.startsWith('D') ? static_cast<QWidget *>(m_save) : m_load);
}

void PresetScreensTest::asksForButtons()
{
    connectAs(eight, "3=A");
    ScreenPresetWarning warning(m_lcd.get());
    warning.setButton(4);
    warning.showMe();
    QCOMPARE(topTexts(), "WARNING|Back|There's no preset assigned for\nButton4");
    m_confirmSave->setPreset("", false, 4);
    m_confirmSave->showMe();
    QCOMPARE(topTexts(), "|Yes|No|Do you want to create preset\n\"Button4\"?");
    Lcd::keys("\r");
    QTRY_COMPARE(calls(), "CALL /MEDIA/PRESET:createButtonAssignedPreset(4,VIDEO)");
}

QTEST_MAIN(PresetScreensTest)
#include "presetscreenstest.moc"
