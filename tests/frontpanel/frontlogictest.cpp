#include "frontpanel/frontlogic.h"

#include "eventdevice.h"

#include <QTest>

using namespace std::chrono_literals;

namespace {

/// The 8x8 front by the names of its buttons.
const QMap<QString, int> functionButtons{{"TAKE", 33}, {"LOAD", 34}, {"SAVE", 35}, {"LOCK", 39}, {"DLOCK", 40}};

int buttonNamed(const QString &name)
{
    if (functionButtons.contains(name))
        return functionButtons[name];
    return name.mid(1).toInt() + (name.startsWith('O') ? 16 : 0);
}

/// Records of panel 1 in those names; a sweep over all ports reads CLEAR.
QString named(QStringList records)
{
    for (QString &record : records) {
        const int led = record.section('.', 1).section('=', 0, 0).toInt();
        const QString name
            = functionButtons.key(led, led > 16 ? QString("O%1").arg(led - 16) : QString("I%1").arg(led));
        record = name + '=' + record.section('=', 1);
    }
    static const QString sweep = "I1=0 I2=0 I3=0 I4=0 I5=0 I6=0 I7=0 I8=0 O1=0 O2=0 O3=0 O4=0 O5=0 O6=0 O7=0 O8=0";
    return records.join(' ').replace(sweep, "CLEAR");
}

/// A front logic on the 8x8 front, with its signals noted in order.
class Fixture : public QObject
{
public:
    explicit Fixture(const FrontLogicTimes &times = {}, int layoutId = 1);

    /// Steps, divided by blanks: "I3", "O1", "TAKE" press and release a button, "TAKE+" and "TAKE-" do one of the
    /// two; "idle!" and the like are timers that fire; "xp=I4;0" and the like are news from device and screens.
    void play(const QString &script);
    void step(const QString &what);
    QString takeNotes() { return std::exchange(m_notes, {}).join(", "); }
    QStringList notes() const { return m_notes; }

    PanelFront front;
    FrontLogic logic;

private:
    template <typename... Values> void note(void (FrontLogic::*signal)(Values...), const QString &text)
    {
        connect(&logic, signal, this, [this, text](const std::decay_t<Values> &...values) {
            m_notes += text;
            (m_notes.last().replace("%", QVariant(values).toString()), ...);
        });
    }

    QStringList m_notes;
};

Fixture::Fixture(const FrontLogicTimes &times, int layoutId)
    : logic(front.panels(), times)
{
    logic.setLayout(layoutId);
    note(&FrontLogic::connectCrosspoint, "connect(%)");
    note(&FrontLogic::lockDestination, "lock(%)");
    note(&FrontLogic::unlockDestination, "unlock(%)");
    note(&FrontLogic::preselectAction, "%");
    note(&FrontLogic::controlLockStatusChanged, "want lock %");
    note(&FrontLogic::autotakeModeChanged, "want autotake %");
    note(&FrontLogic::loadPresetButtonPushed, "load button");
    note(&FrontLogic::savePresetButtonPushed, "save button");
    note(&FrontLogic::loadPresetNumberButtonPushed, "load number %");
    note(&FrontLogic::savePresetNumberButtonPushed, "save number %");
    note(&FrontLogic::presetSave, "save %");
    note(&FrontLogic::presetLoad, "load %");
    note(&FrontLogic::loadPresetLeaveMode, "leave load");
    note(&FrontLogic::savePresetLeaveMode, "leave save");
    note(&FrontLogic::loadPresetTimeout, "load timeout");
    note(&FrontLogic::savePresetTimeout, "save timeout");
}

void Fixture::play(const QString &script)
{
    for (const QString &what : script.split(' ', Qt::SkipEmptyParts))
        step(what);
}

void Fixture::step(const QString &what)
{
    const QString value = what.section('=', 1);
    const bool on = value == "on";
    static const QMap<QString, void (FrontLogic::*)()> timers{
        {"idle!", &FrontLogic::idleTimeoutHandler},
        {"takeblink!", &FrontLogic::takeBlinkTimeoutHandler},
        {"lock!", &FrontLogic::lockTimeoutHandler},
        {"autotake!", &FrontLogic::autotakeTimeoutHandler},
        {"lockblink!", &FrontLogic::lockBlinkTimeoutHandler},
    };
    static const QMap<QString, void (FrontLogic::*)(bool)> switches{
        {"autotake", &FrontLogic::onAutotakeModeChange},
        {"locked", &FrontLogic::onControlLockStatusChange},
        {"connected", &FrontLogic::connectionStatusChanged},
        {"standby", &FrontLogic::operationStateChanged},
        {"loadmenu", &FrontLogic::loadPresetMenuShowChange},
        {"savemenu", &FrontLogic::savePresetMenuShowChange},
    };
    if (timers.contains(what))
        (logic.*timers[what])();
    else if (switches.contains(what.section('=', 0, 0)))
        (logic.*switches[what.section('=', 0, 0)])(on);
    else if (what.startsWith("xp="))
        logic.crosspointStatusChanged(value);
    else if (what.startsWith("locks="))
        logic.destinationPortStatusChanged(value);
    else if (what.startsWith("upgrade="))
        logic.upgradeStateChanged(value != "off", static_cast<uint8_t>(value.toInt()));
    else if (what.endsWith('+') || what.endsWith('-'))
        logic.handleButton(703 + buttonNamed(what.chopped(1)), what.endsWith('+'));
    else
        play(what + "+ " + what + '-');
}

} // namespace

class FrontLogicTest : public QObject
{
    Q_OBJECT

private slots:
    void signalsAndLeds_data();
    void signalsAndLeds();
    void writes_data();
    void writes();
    void screensThatAnswerAtOnce_data();
    void screensThatAnswerAtOnce();
    void countsFollowTheLayout_data();
    void countsFollowTheLayout();
    void presetsAreLogged();
    void holding_data();
    void holding();
    void shortHoldIsNone();
    void selectionTimesOut();
    void pressesProlongTheSelection_data();
    void pressesProlongTheSelection();
    void blinking_data();
    void blinking();
};

void FrontLogicTest::signalsAndLeds_data()
{
    QTest::addColumn<QString>("before"); ///< Steps whose signals are not looked at.
    QTest::addColumn<QString>("script");
    QTest::addColumn<QString>("notes");
    QTest::addColumn<QString>("lit");
    const auto row = [](const char *name, const char *before, const char *script, const char *notes, const char *lit) {
        QTest::newRow(name) << before << script << notes << lit;
    };
    const char *const routed = "xp=I4;I4;0;I3;0;0;0;I8";

    row("a source connects two destinations", "I3", "O1 O2 TAKE",
        "selected destination, selected destination, connect(I3:-O1;I3:-O2;), idle", "TAKE=1");
    row("pending destinations wait in the second appearance", routed, "I3 O1", "selected source, selected destination",
        "I3=1 O1=2 O4=1");
    row("deselecting a fed destination cuts it", routed, "I3 O4 TAKE",
        "selected source, deselected destination, connect(I3xO4;), idle", "TAKE=1");
    row("a cut can be taken back", "xp=0;0;0;I3 I3", "O4 O4 TAKE",
        "deselected destination, selected destination, connect(), idle", "TAKE=1");
    row("a new route can be taken back", "xp=I4 I3", "O1 O1 TAKE",
        "selected destination, deselected destination, connect(), idle", "TAKE=1");
    row("Take without a change sends an empty list", "", "I3 TAKE", "selected source, connect(), idle", "TAKE=1");
    row("cut and connect in ascending order", "xp=0;I7 I3 O5 I7", "O2 TAKE",
        "deselected destination, connect(I7xO2;), idle", "TAKE=1");
    row("another source starts a new selection", "I3 O1", "I4 O2 TAKE",
        "selected source, selected destination, connect(I4:-O2;), idle", "TAKE=1");
    row("the source again selects every unlocked destination", "xp=0;0;I3 locks=;U;;;;;;L", "I3 I3 TAKE",
        "selected source, connect(I3:-O1;I3:-O4;I3:-O5;I3:-O6;I3:-O7;), idle", "TAKE=1");
    row("all selected show as pending", "xp=0;0;I3 locks=;U I3", "I3", "", "I3=1 O1=2 O3=1 O4=2 O5=2 O6=2 O7=2 O8=2");
    row("a locked destination only flashes", "locks=-;U I3", "O2", "", "I3=1 DLOCK=1");
    row("the flash ends, the routing stays", "locks=-;U I3 O2", "lockblink! TAKE", "connect(), idle", "TAKE=1");
    row("a change by the device keeps the selection", "I3 O1 xp=I5;I6", "TAKE", "connect(I3:-O1;I6xO2;), idle",
        "TAKE=1");

    row("a destination shows its source and lock", "xp=0;I4 locks=-;L", "O2",
        "selected destination, selected destination", "I4=1 O2=1 DLOCK=1");
    row("another destination replaces it", "xp=0;I4 locks=-;L O2", "O3", "selected destination, selected destination",
        "O3=1");
    row("Take drops a selected destination", "O2", "TAKE", "idle", "");
    row("a source after a destination", "O2", "I5", "selected source", "I5=1");
    row("a destination after a source starts no view", "I5", "O2", "selected destination", "I5=1 O2=2");
    row("idle drops a selection", "I3 O1", "idle! TAKE", "idle", "");
    row("idle fires again after Take", "I3 TAKE", "idle!", "idle", "TAKE=1");
    row("Take blink ends in the middle of the next selection", "I3 TAKE I4", "takeblink!", "", "I4=1");

    row("lock editing shows the locks", "locks=U;-;L", "DLOCK", "", "O1=1 O3=1 DLOCK=2");
    row("lock editing drops a pending route", "I3 O1 DLOCK", "O2 TAKE", "lock(O2;), idle", "TAKE=1");
    row("locks and unlocks go together", "locks=U;-;L DLOCK", "O1 O2 O5 TAKE", "lock(O2;O5;), unlock(O1;), idle",
        "TAKE=1");
    row("lock edits show as pending", "locks=U;-;L DLOCK", "O1 O2 O3 O3", "", "O2=2 O3=1 DLOCK=2");
    row("locks taken back send nothing", "locks=U DLOCK", "O1 O1 O2 O2 TAKE", "idle", "TAKE=1");
    row("entering again starts over", "DLOCK O1", "DLOCK O2 TAKE", "lock(O2;), idle", "TAKE=1");
    row("sources mean nothing in lock editing", "DLOCK", "I3 idle!", "idle", "");
    row("lock blink fires in lock editing", "locks=U I3 O1 DLOCK", "lockblink!", "", "O1=1");
    row("preset button leaves lock editing", "DLOCK O1", "SAVE", "save button, idle", "");

    row("hold Take", "", "TAKE+ autotake!", "want autotake true", "");
    row("hold Take in autotake", "autotake=on", "autotake!", "want autotake false", "O1=1 TAKE=1");
    row("hold the lock button of a locked panel", "locked=on", "LOCK+ lock!", "want lock false", "LOCK=1");
    row("holding changes nothing until the device says so", "", "autotake! I3 TAKE",
        "want autotake true, selected source, connect(), idle", "TAKE=1");

    row("autotake starts with destination 1", "xp=I4 locks=U O3", "autotake=on", "selected destination",
        "I4=1 O1=1 TAKE=1 DLOCK=1");
    row("autotake connects at once", "xp=0;I4 autotake=on O2", "I3", "connect(I3:-O2;)", "I4=1 O2=1 TAKE=1");
    row("autotake cuts at the second press", "xp=0;I4 autotake=on O2", "I4", "connect(I4xO2;)", "I4=1 O2=1 TAKE=1");
    row("autotake leaves a locked destination", "locks=-;U autotake=on O2", "I3 O1 I3",
        "selected destination, connect(I3:-O1;)", "O1=1 TAKE=1");
    row("autotake follows the device", "autotake=on O2", "xp=I1;I7 locks=-;L", "", "I7=1 O2=1 TAKE=1 DLOCK=1");
    row("autotake locks the selected destination", "autotake=on O2", "DLOCK", "lock(O2;)", "O2=1 TAKE=1");
    row("autotake unlocks the selected destination", "locks=L;U autotake=on O2", "DLOCK", "unlock(O2;)",
        "O2=1 TAKE=1 DLOCK=1");
    row("blinks, idle and Take mean nothing in autotake", "I3 TAKE autotake=on", "takeblink! lockblink! idle! TAKE", "",
        "O1=1 TAKE=1");
    row("a selection outlives autotake", "I3 O2 autotake=on O5 autotake=off", "TAKE", "connect(I3:-O2;), idle",
        "TAKE=1");
    row("Take held into autotake and released there", "TAKE+ autotake! autotake=on", "TAKE- I2", "connect(I2:-O1;)",
        "O1=1 TAKE=1");
    row("a release without its press", "", "I3- O1- TAKE- DLOCK- LOAD- I3", "selected source", "I3=1");

    row("the load screen opens", "", "LOAD loadmenu=on", "load button", "LOAD=1");
    row("the save screen replaces the load screen", "loadmenu=on", "savemenu=on", "", "SAVE=1");
    row("the load screen replaces the save screen", "savemenu=on", "loadmenu=on I3 TAKE",
        "load number 3, selected source, load 3, idle", "TAKE=1");
    row("save by source and Take", "savemenu=on", "I7 TAKE", "save number 7, selected source, save 7, idle", "TAKE=1");
    row("load by source and Take", "loadmenu=on", "I2 I7 TAKE",
        "load number 2, selected source, selected source, load number 7, load 7, idle", "TAKE=1");
    row("the same preset again is no selection of all", "loadmenu=on I7", "I7", "selected source, load number 7",
        "I7=1 LOAD=1");
    row("routes do not show while a preset is picked", "xp=I7 loadmenu=on", "I7", "load number 7, selected source",
        "I7=1 LOAD=1");
    row("a destination leaves the preset modes", "loadmenu=on", "O1 I3",
        "selected destination, selected destination, selected source", "I3=1");
    row("load pressed in load mode leaves it", "loadmenu=on", "LOAD", "leave load", "");
    row("save pressed in load mode asks for the other", "loadmenu=on", "SAVE", "save button", "LOAD=1");
    row("save pressed in save mode leaves it, the source stays", "savemenu=on I7", "SAVE TAKE",
        "leave save, connect(), idle", "TAKE=1");
    row("a preset button drops a selected source", "I3 O1", "LOAD", "load button, idle", "");
    row("a preset button drops a selected destination", "O1", "SAVE", "save button, idle", "");
    row("idle tells the load screen, which decides", "loadmenu=on I7", "idle!", "load timeout, idle", "LOAD=1");
    row("idle tells the save screen", "savemenu=on", "idle! savemenu=off", "save timeout, idle", "");
    row("a preset in a selected destination is not announced", "O1 savemenu=on", "I4 TAKE",
        "selected source, save 4, idle", "TAKE=1");
    row("autotake loads at once", "autotake=on loadmenu=on", "I5", "load 5", "O1=1 TAKE=1");
    row("autotake saves at once", "autotake=on savemenu=on", "I5 I6", "save 5, connect(I6:-O1;)", "O1=1 TAKE=1");
    row("autotake's destination leaves the preset modes", "autotake=on loadmenu=on", "O2 I5",
        "selected destination, connect(I5:-O2;)", "O2=1 TAKE=1");
    row("autotake's preset button clears the ports", "xp=I4 autotake=on", "LOAD", "load button", "TAKE=1");

    row("a lost link drops all", "locked=on I3 O1", "connected=off", "idle", "");
    row("a new link shows nothing yet", "locked=on connected=off", "connected=on", "", "");
    row("standby drops all", "locked=on autotake=on", "standby=on", "idle", "");
    row("after standby the picture returns", "locked=on xp=I2 autotake=on standby=on", "standby=off",
        "selected destination", "I2=1 O1=1 TAKE=1 LOCK=1");
    row("after standby a clean front", "I3 O1", "standby=off", "", "");
    row("an upgrade starts at position 1", "locked=on I3", "upgrade=9", "idle", "I1=2");
    row("an upgrade goes on at its position", "upgrade=9", "upgrade=10", "",
        "I1=1 I2=1 I3=1 I4=1 I5=1 I6=1 I7=1 I8=1 O1=1 O2=2");
    row("the next upgrade starts at position 1 again", "locked=on upgrade=9 upgrade=10 upgrade=off", "upgrade=5",
        "idle", "I1=2");
    row("after an upgrade the picture returns", "locked=on upgrade=9", "upgrade=off", "", "LOCK=1");

    row("missing fields keep, surplus ones are ignored", "xp=I1;I2;I3 xp=I5;0;0;0;0;0;0;0;I6;I7 xp=I4", "O1",
        "selected destination, selected destination", "I4=1 O1=1");
    row("an empty field has no source", "xp=I4;I5 xp=;I6", "O1 O2",
        "selected destination, selected destination, selected destination, selected destination", "I6=1 O2=1");
    row("what is no number has no source", "xp=I4 xp=Ix;IO;I99999999999", "O3",
        "selected destination, selected destination", "O3=1");
    row("a source is one byte", "xp=I263", "O1", "selected destination, selected destination", "I7=1 O1=1");
    row("locks go by their first letter", "locks=Unlocked;lU;;-L;L DLOCK", "", "", "O1=1 O5=1 DLOCK=2");
}

void FrontLogicTest::signalsAndLeds()
{
    QFETCH(QString, before);
    QFETCH(QString, script);
    Fixture fixture;
    fixture.play(before);
    fixture.takeNotes();
    fixture.play(script);
    QTEST(fixture.takeNotes(), "notes");
    QTEST(named(fixture.front.lit()), "lit");
}

void FrontLogicTest::writes_data()
{
    QTest::addColumn<QString>("before");
    QTest::addColumn<QString>("script");
    QTest::addColumn<QString>("expected");
    const auto row = [](const char *name, const char *before, const char *script, const char *expected) {
        QTest::newRow(name) << before << script << expected;
    };
    row("a source and its destinations", "xp=I3", "I3", "I3=1 O1=1 O2=0 O3=0 O4=0 O5=0 O6=0 O7=0 O8=0");
    row("another source", "loadmenu=on I3", "I4", "CLEAR I4=1");
    row("a destination without source", "", "O5", "LOAD=0 SAVE=0 O5=1 I0=1 DLOCK=0");
    row("Take", "I3", "TAKE", "TAKE=1 CLEAR DLOCK=0");
    row("Take of a preset", "loadmenu=on I3", "TAKE", "LOAD=0 SAVE=0 TAKE=1 CLEAR DLOCK=0");
    row("leaving a preset mode", "savemenu=on", "SAVE", "LOAD=0 SAVE=0 LOAD=0 SAVE=0");
    row("lock editing", "locks=;U", "DLOCK", "CLEAR DLOCK=2 O2=1");
    row("idle twice is written twice", "", "idle! idle!", "CLEAR DLOCK=0 CLEAR DLOCK=0");
    row("the same lock again is written again", "locked=on", "locked=on", "LOCK=1");
    row("routing news outside autotake", "I3", "xp=I3;I4 locks=U", "");
    row("routing news in autotake", "autotake=on", "xp=I3", "I1=0 I2=0 I3=1 I4=0 I5=0 I6=0 I7=0 I8=0");
    row("autotake on", "xp=I3", "autotake=on", "CLEAR TAKE=1 O1=1 I3=1 DLOCK=0");
    row("autotake off", "autotake=on", "autotake=off", "CLEAR TAKE=0 DLOCK=0");
    row("standby", "", "standby=on", "LOCK=0 TAKE=0 CLEAR DLOCK=0");
    row("end of standby", "locked=on", "standby=off", "LOCK=1 CLEAR TAKE=0 DLOCK=0");
    row("a source in autotake waits for the device", "autotake=on", "I3", "");
}

void FrontLogicTest::writes()
{
    QFETCH(QString, before);
    QFETCH(QString, script);
    Fixture fixture;
    fixture.play(before);
    fixture.front.takeWrites();
    fixture.play(script);
    QTEST(named(fixture.front.takeWrites()), "expected");
}

void FrontLogicTest::screensThatAnswerAtOnce_data()
{
    QTest::addColumn<QString>("script");
    QTest::addColumn<QString>("notes");
    QTest::addColumn<QString>("lit");
    QTest::newRow("opened from idle") << "LOAD I7 TAKE"
                                      << "load button, load number 7, selected source, load 7, idle"
                                      << "TAKE=1";
    QTest::newRow("opened over a selection, it hears of the idling at once")
        << "I3 LOAD"
        << "selected source, load button, load timeout, idle"
        << "LOAD=1";
    QTest::newRow("a screen that turns its mode on while it leaves")
        << "LOAD LOAD I3 TAKE"
        << "load button, leave load, selected source, connect(), idle"
        << "TAKE=1";
    QTest::newRow("one screen after the other") << "LOAD SAVE I5"
                                                << "load button, save button, save number 5, selected source"
                                                << "I5=1 SAVE=1";
}

void FrontLogicTest::screensThatAnswerAtOnce()
{
    QFETCH(QString, script);
    Fixture fixture;
    connect(&fixture.logic, &FrontLogic::loadPresetButtonPushed, this,
        [&] { fixture.logic.loadPresetMenuShowChange(true); });
    connect(&fixture.logic, &FrontLogic::savePresetButtonPushed, this,
        [&] { fixture.logic.savePresetMenuShowChange(true); });
    connect(
        &fixture.logic, &FrontLogic::loadPresetLeaveMode, this, [&] { fixture.logic.loadPresetMenuShowChange(true); });
    fixture.play(script);
    QTEST(fixture.takeNotes(), "notes");
    QTEST(named(fixture.front.lit()), "lit");
}

void FrontLogicTest::countsFollowTheLayout_data()
{
    QTest::addColumn<int>("id");
    QTest::addColumn<int>("sources");
    QTest::addColumn<int>("destinations");
    QTest::newRow("unidentified") << 0 << 8 << 8;
    QTest::newRow("8") << 1 << 8 << 8;
    QTest::newRow("16") << 2 << 16 << 16;
    QTest::newRow("16+4") << 3 << 16 << 20;
    QTest::newRow("24") << 4 << 24 << 24;
    QTest::newRow("32+8") << 5 << 32 << 40;
    QTest::newRow("48") << 6 << 48 << 48;
    QTest::newRow("unknown") << 7 << 8 << 8;
}

void FrontLogicTest::countsFollowTheLayout()
{
    QFETCH(int, id);
    QFETCH(int, sources);
    QFETCH(int, destinations);
    Fixture fixture({}, id);
    fixture.logic.crosspointStatusChanged(QStringList(60, "I9").join(';'));
    fixture.play("I1 I1"); // button 1 of panel 1 is source 1 everywhere: to all destinations
    fixture.takeNotes();
    fixture.logic.handleButton(id == 3 ? 739 : 736, true);
    QString all;
    for (int d = 1; d <= destinations; ++d)
        all += QString("I1:-O%1;").arg(d);
    QCOMPARE(fixture.takeNotes(), "connect(" + all + "), idle");

    fixture.logic.onAutotakeModeChange(true);
    fixture.front.takeWrites();
    fixture.logic.crosspointStatusChanged("");
    QCOMPARE(fixture.front.takeWrites().size(), sources);
}

void FrontLogicTest::presetsAreLogged()
{
    Fixture fixture;
    QTest::ignoreMessage(QtDebugMsg, "Save preset 7");
    fixture.play("savemenu=on I7 TAKE");
    QTest::ignoreMessage(QtDebugMsg, "Load preset 3");
    fixture.play("autotake=on loadmenu=on I3");
}

void FrontLogicTest::holding_data()
{
    QTest::addColumn<QString>("before");
    QTest::addColumn<QString>("press");
    QTest::addColumn<QString>("wanted");
    QTest::newRow("Take") << ""
                          << "TAKE+"
                          << "want autotake true";
    QTest::newRow("Take in autotake") << "autotake=on"
                                      << "TAKE+"
                                      << "want autotake false";
    QTest::newRow("panel lock") << ""
                                << "LOCK+"
                                << "want lock true";
    QTest::newRow("panel lock in autotake") << "autotake=on locked=on"
                                            << "LOCK+"
                                            << "want lock false";
}

void FrontLogicTest::holding()
{
    QFETCH(QString, before);
    QFETCH(QString, press);
    QFETCH(QString, wanted);
    Fixture fixture({3000ms, 100ms, 60ms});
    fixture.play(before);
    fixture.takeNotes();
    QElapsedTimer held;
    held.start();
    fixture.play(press);
    QTRY_COMPARE(fixture.notes(), QStringList(wanted));
    QVERIFY(held.elapsed() >= 59);
}

void FrontLogicTest::shortHoldIsNone()
{
    Fixture fixture({3000ms, 100ms, 60ms});
    fixture.play("TAKE LOCK LOCK+");
    QTRY_COMPARE(fixture.notes(), QStringList("want lock true"));
    fixture.play("LOCK- LOCK TAKE+");
    QTRY_COMPARE(fixture.notes().size(), 2);
    QCOMPARE(fixture.takeNotes(), "want lock true, want autotake true");
}

void FrontLogicTest::selectionTimesOut()
{
    Fixture fixture({60ms, 5000ms, 200ms});
    fixture.play("LOCK+ I3 O1");
    QTRY_COMPARE(fixture.notes().size(), 4); // idle once, and the hold that ends long after it
    QCOMPARE(fixture.takeNotes(), "selected source, selected destination, idle, want lock true");
    QCOMPARE(named(fixture.front.lit()), "");
    fixture.play("I3 TAKE");
    QTRY_COMPARE(fixture.notes().size(), 4); // Take does not stop the time that runs
    QCOMPARE(fixture.takeNotes(), "selected source, connect(), idle, idle");
}

void FrontLogicTest::pressesProlongTheSelection_data()
{
    QTest::addColumn<QString>("before");
    QTest::addColumn<QString>("press");
    QTest::newRow("a destination for the source") << "I3"
                                                  << "O1";
    QTest::newRow("a locked destination for the source") << "locks=U I3"
                                                         << "O1";
    QTest::newRow("another source") << "I3"
                                    << "I4";
    QTest::newRow("the source again") << "I3"
                                      << "I3";
    QTest::newRow("another destination") << "O1"
                                         << "O2";
    QTest::newRow("a destination to lock") << "DLOCK"
                                           << "O1";
    QTest::newRow("lock editing again") << "DLOCK"
                                        << "DLOCK";
    QTest::newRow("a preset button in idle") << "LOAD"
                                             << "SAVE";
}

void FrontLogicTest::pressesProlongTheSelection()
{
    QFETCH(QString, before);
    QFETCH(QString, press);
    // Two holds of the lock button are the clock: the second ends after the first idle time would have.
    Fixture fixture({250ms, 5000ms, 150ms});
    int holds = 0;
    QStringList heardInTwoHolds;
    connect(&fixture.logic, &FrontLogic::controlLockStatusChanged, this, [&] {
        if (++holds == 1)
            fixture.play("LOCK+ " + press);
        else
            heardInTwoHolds = fixture.notes();
    });
    fixture.play("LOCK+ " + before);
    QTRY_COMPARE(holds, 2);
    QVERIFY(!heardInTwoHolds.contains("idle"));
    QTRY_VERIFY(fixture.notes().contains("idle"));
}

void FrontLogicTest::blinking_data()
{
    QTest::addColumn<QString>("script");
    QTest::addColumn<QString>("litAtFirst");
    QTest::addColumn<QString>("litAfterwards");
    QTest::newRow("Take") << "I3 TAKE"
                          << "TAKE=1"
                          << "";
    QTest::newRow("Take of locks") << "DLOCK TAKE"
                                   << "TAKE=1"
                                   << "";
    QTest::newRow("a locked destination") << "locks=U I3 O1"
                                          << "I3=1 DLOCK=1"
                                          << "I3=1";
}

void FrontLogicTest::blinking()
{
    QFETCH(QString, script);
    Fixture fixture({5000ms, 60ms, 5000ms});
    fixture.play(script);
    QTEST(named(fixture.front.lit()), "litAtFirst");
    QFETCH(QString, litAfterwards);
    QTRY_COMPARE(named(fixture.front.lit()), litAfterwards);
}

QTEST_MAIN(FrontLogicTest)
#include "frontlogictest.moc"
