#include "frontpanel/frontlogic.h"

#include "panelfront.h"

#include <QTest>

using namespace std::chrono_literals;

namespace {

const QMap<QString, int> functionButtons{{"TAKE", 33}, {"LOAD", 34}, {"SAVE", 35}, {"LOCK", 39}, {"DLOCK", 40}};

/// Records of the 8x8 front by the names of its buttons.
QString named(QStringList records)
{
    for (QString &record : records) {
        const int led = record.section('.', 1).section('=', 0, 0).toInt();
        const QString port = led > 16 ? QString("O%1").arg(led - 16) : QString("I%1").arg(led);
        record = functionButtons.key(led, port) + '=' + record.section('=', 1);
    }
    return records.join(' ');
}

/// A front logic with its signals noted in order: "src", "dst", "-dst" as selections, capitals as wishes of buttons.
class Fixture : public QObject
{
public:
    explicit Fixture(int layoutId = 1);
    /// Steps, divided by blanks: "I3", "O1", "TAKE" press and release a button of the 8x8 front, "TAKE+" and "TAKE-"
    /// do one of the two; "idle!" is a timer that fires; "xp=I4;0" is news from device or screens. "?" notes what is
    /// lit, and the value if it is not 1; "??" the LED records since the last look.
    void play(const QString &script);

    PanelFront front;
    FrontLogic logic{front.panels(), {90ms, 30ms, 90ms}};
    QStringList notes;

private:
    template <typename... Values> void note(void (FrontLogic::*signal)(Values...), const QString &text)
    {
        connect(&logic, signal, this, [this, text](const std::decay_t<Values> &...values) {
            notes += text;
            (notes.last().replace("%", QVariant(values).toString()), ...);
        });
    }
};

Fixture::Fixture(int layoutId)
{
    logic.setLayout(layoutId);
    note(&FrontLogic::connectCrosspoint, "connect(%)");
    note(&FrontLogic::lockDestination, "lock(%)");
    note(&FrontLogic::unlockDestination, "unlock(%)");
    note(&FrontLogic::controlLockStatusChanged, "LOCK:%");
    note(&FrontLogic::autotakeModeChanged, "AUTOTAKE:%");
    note(&FrontLogic::loadPresetButtonPushed, "LOAD");
    note(&FrontLogic::savePresetButtonPushed, "SAVE");
    note(&FrontLogic::loadPresetNumberButtonPushed, "LOAD%");
    note(&FrontLogic::savePresetNumberButtonPushed, "SAVE%");
    note(&FrontLogic::presetSave, "save(%)");
    note(&FrontLogic::presetLoad, "load(%)");
    note(&FrontLogic::loadPresetLeaveMode, "LOAD-left");
    note(&FrontLogic::savePresetLeaveMode, "SAVE-left");
    note(&FrontLogic::loadPresetTimeout, "LOAD-timeout");
    note(&FrontLogic::savePresetTimeout, "SAVE-timeout");
    connect(&logic, &FrontLogic::preselectAction, this, [this](QString action) {
        notes += action.replace("selected source", "src").replace("selected destination", "dst").replace("de", "-");
    });
    connect(&logic, &FrontLogic::controlLockStatusChanged, this, [this] { play("?"); });
    // The screen for loading, of all moments, says that it is shown while it closes.
    connect(&logic, &FrontLogic::loadPresetLeaveMode, this, [this] { logic.loadPresetMenuShowChange(true); });
}

void Fixture::play(const QString &script)
{
    static const QMap<QString, void (FrontLogic::*)(bool)> switches{{"autotake", &FrontLogic::onAutotakeModeChange},
        {"locked", &FrontLogic::onControlLockStatusChange}, {"connected", &FrontLogic::connectionStatusChanged},
        {"standby", &FrontLogic::operationStateChanged}, {"loading", &FrontLogic::loadPresetMenuShowChange},
        {"saving", &FrontLogic::savePresetMenuShowChange}};
    for (const QString &step : script.split(' ', Qt::SkipEmptyParts)) {
        const QString name = step.section('=', 0, 0);
        const QString value = step.section('=', 1);
        const QString button = step.chopped(1);
        const int port = button.mid(1).toInt() + (button.startsWith('O') ? 16 : 0);
        if (step == "?")
            notes += '[' + named(front.lit()).remove("=1") + ']';
        else if (step == "??")
            notes += '{' + named(front.takeWrites()) + '}';
        else if (step.endsWith('!'))
            QVERIFY(QMetaObject::invokeMethod(&logic, qPrintable(step.chopped(1) + "TimeoutHandler")));
        else if (switches.contains(name))
            (logic.*switches[name])(value == "on");
        else if (name == "xp")
            logic.crosspointStatusChanged(value);
        else if (name == "locks")
            logic.destinationPortStatusChanged(value);
        else if (name == "upgrade")
            logic.upgradeStateChanged(value != "off", static_cast<uint8_t>(value.toInt()));
        else if (step.endsWith('+') || step.endsWith('-'))
            logic.handleButton(703 + functionButtons.value(button, port), step.endsWith('+'));
        else
            play(step + "+ " + step + '-');
    }
}

} // namespace

class FrontLogicTest : public QObject
{
    Q_OBJECT
private slots:
    void rules_data();
    void rules();
    void layouts_data();
    void layouts();
};

void FrontLogicTest::rules_data()
{
    QTest::addColumn<QString>("script"); ///< What comes before "|" is not looked at.
    QTest::addColumn<QString>("notes");
    const auto row = [](const char *name, QString script, QString notes) { QTest::newRow(name) << script << notes; };
    row("connect", "xp=I4;I4;0;I3 | I3 O1 ? O2 TAKE ?", "src dst [I3 O1=2 O4] dst connect(I3:-O1;I3:-O2;) idle [TAKE]");
    row("ascending", "xp=0;I7 I7 | O5 O2 ? TAKE", "dst -dst [I7 O5=2] connect(I7xO2;I7:-O5;) idle");
    row("taken back", "xp=I3;I4 I3 | O1 O1 O2 O2 ? TAKE", "-dst dst dst -dst [I3 O1] connect() idle");
    row("another source starts anew", "I3 O1 ?? | I4 ? O2 TAKE", "src [I4] dst connect(I4:-O2;) idle");
    row("the source again selects all unlocked", "xp=0;0;I3 locks=;U;;;;;;L I3 | I3 ? TAKE",
        "[I3 O1=2 O3 O4=2 O5=2 O6=2 O7=2] connect(I3:-O1;I3:-O4;I3:-O5;I3:-O6;I3:-O7;) idle");
    row("locked flashes only", "locks=-;U I3 | O2 ? lockBlink! ? TAKE", "[I3 DLOCK] [I3] connect() idle");
    row("news keep the selection", "I3 O1 ?? | xp=I5;I6 ?? TAKE", "{} connect(I3:-O1;I6xO2;) idle");
    row("destination view", "xp=0;I4 locks=-;L | O2 ? O3 ? TAKE ?", "dst dst [I4 O2 DLOCK] dst dst [O3] idle []");
    row("destination without source", "| O5 ??", "dst dst {LOAD=0 SAVE=0 O5=1 I0=1 DLOCK=0}");
    row("source after destination", "O2 | I5 O2 ?", "src dst [I5 O2=2]");
    row("idle drops a selection", "I3 O1 | idle! ? TAKE ?", "idle [] []");
    row("Take's blink ends in the next selection", "I3 TAKE | I4 takeBlink! ?", "src [I4]");

    row("lock edits are shown", "locks=U;-;L I3 | DLOCK ? O1 O2 O3 O3 ?", "[O1 O3 DLOCK=2] [O2=2 O3 DLOCK=2]");
    row("locks and unlocks, no route", "locks=U;-;L I3 O1 DLOCK | O1 O2 O5 TAKE", "lock(O2;O5;) unlock(O1;) idle");
    row("locks taken back", "locks=U DLOCK | O1 O1 O2 O2 TAKE ?", "idle [TAKE]");
    row("lock editing starts over", "DLOCK O1 | DLOCK O2 TAKE", "lock(O2;) idle");
    row("sources in lock editing", "locks=U I3 O1 DLOCK | lockBlink! I3 ? idle! ?", "[O1] idle []");
    row("a preset button ends lock editing", "DLOCK O1 | SAVE ?", "SAVE idle []");

    row("the device confirms holds", "| autotake! lock! I3 TAKE", "AUTOTAKE:true LOCK:true [] src connect() idle");
    row("holds switch off, too", "autotake=on locked=on | autotake! lock!", "AUTOTAKE:false LOCK:false [O1 TAKE LOCK]");
    row("releases without a press", "?? | I3- O1- TAKE- DLOCK- LOAD- ??", "{}");

    row("autotake from destination 1", "xp=I4 locks=U O3 | autotake=on ? autotake=off ?", "dst [I4 O1 TAKE DLOCK] []");
    row("autotake connects and cuts", "xp=0;I4 autotake=on O2 ?? | I3 I4 ??", "connect(I3:-O2;) connect(I4xO2;) {}");
    row("autotake leaves locked ones", "locks=-;U autotake=on O2 | I3 O1 I3", "dst connect(I3:-O1;)");
    row("autotake follows the device", "autotake=on O2 | xp=I1;I7 locks=-;L ?", "[I7 O2 TAKE DLOCK]");
    row("autotake locks", "autotake=on O2 | DLOCK locks=;U DLOCK ?", "lock(O2;) unlock(O2;) [O2 TAKE DLOCK]");
    row("autotake needs no timers", "I3 TAKE autotake=on ?? | takeBlink! lockBlink! idle! TAKE ??", "{}");
    row("a selection outlives autotake", "I3 O2 autotake=on O5 autotake=off | TAKE", "connect(I3:-O2;) idle");

    row("screens take turns", "| LOAD loading=on ? SAVE saving=on ? loading=on ?", "LOAD [LOAD] SAVE [SAVE] [LOAD]");
    row("load, routes out of sight", "xp=I7 loading=on | I2 I7 I7 ? TAKE ?",
        "LOAD2 src src LOAD7 src LOAD7 [I7 LOAD] load(7) idle [TAKE]");
    row("a destination ends presets", "loading=on | O1 I3 ?", "dst dst src [I3]");
    row("a preset button ends its mode only", "loading=on | LOAD ? saving=on I7 SAVE TAKE ?",
        "LOAD-left [] SAVE7 src SAVE-left connect() idle [TAKE]");
    row("a preset button drops the rest", "I3 O1 | LOAD ? O1 SAVE ?", "LOAD idle [] dst dst SAVE idle []");
    row("idle tells screens", "loading=on I7 | idle! ? saving=on idle!", "LOAD-timeout idle [LOAD] SAVE-timeout idle");
    row("save from a destination view", "O1 saving=on | I4 TAKE", "src save(4) idle");
    row("autotake presets", "autotake=on loading=on | I5 saving=on I5 I6", "load(5) save(5) connect(I6:-O1;)");
    row("autotake leaves presets", "autotake=on loading=on | O2 I5 ?", "dst connect(I5:-O2;) [O2 TAKE]");
    row("autotake's preset button clears", "xp=I4 autotake=on | LOAD ?", "LOAD [TAKE]");

    row("a lost link drops all", "locked=on I3 O1 | connected=off ? connected=on ?", "idle [] []");
    row("standby", "locked=on xp=I2 autotake=on | standby=on ? standby=off ?", "idle [] dst [I2 O1 TAKE LOCK]");
    row("upgrades start at 1", "locked=on I3 | upgrade=9 ? upgrade=3 ? upgrade=off ? upgrade=5 ?",
        "idle [I1=2] [I1 I2 I3=2] [LOCK] idle [I1=2]");
    row("no sources", "xp=;I7;I7;I7;I7;0;0;0;I7 xp=I263;;Ix;I99999999999 | I7 ?", "src [I7 O1 O5]");
    row("locks by first letter", "locks=-;U;;-;L locks=Unlocked;lU | DLOCK ?", "[O1 O5 DLOCK=2]");

    // A hold takes as long as the idle time here, so they end in the order in which they began; a blink is shorter.
    row("Take held", "| LOCK TAKE+", "AUTOTAKE:true");
    row("panel lock held", "| TAKE LOCK+", "LOCK:true []");
    row("idle and blink after Take", "| I3 LOCK+ TAKE ?", "src connect() idle [TAKE] idle LOCK:true []");
    row("a destination prolongs", "| I3 LOCK+ O1", "src dst LOCK:true [I3 O1=2] idle");
    row("a locked one, too, and blinks", "locks=U | I3 LOCK+ O1 ?", "src [I3 DLOCK] LOCK:true [I3] idle");
    row("the source again prolongs", "locks=;U;U;U;U;U;U;U I3 | LOCK+ I3", "LOCK:true [I3 O1=2] idle");
    row("another destination prolongs", "O1 | LOCK+ O2", "dst dst LOCK:true [O2] idle");
    row("a lock edit prolongs", "| DLOCK LOCK+ O1", "LOCK:true [O1=2 DLOCK=2] idle");
    row("lock editing again prolongs", "| DLOCK LOCK+ DLOCK", "LOCK:true [DLOCK=2] idle");
    row("a preset button prolongs", "LOAD | LOCK+ SAVE", "SAVE LOCK:true [] idle");
}

void FrontLogicTest::rules()
{
    QFETCH(QString, script);
    QFETCH(QString, notes);
    Fixture fixture;
    fixture.play(script.section('|', 0, 0));
    fixture.notes.clear();
    fixture.play(script.section('|', 1));
    QTRY_COMPARE_WITH_TIMEOUT(fixture.notes.join(' '), notes, 2000);
}

void FrontLogicTest::layouts_data()
{
    QTest::addColumn<int>("id");
    QTest::addColumn<QString>("ports"); ///< How many sources and destinations, and the sum of their keys.
    QTest::newRow("8") << 1 << "8 8 11448";
    QTest::newRow("16") << 2 << "16 16 23024";
    QTest::newRow("16+4") << 3 << "16 20 26614";
    QTest::newRow("24") << 4 << "24 24 36264";
    QTest::newRow("32+8") << 5 << "32 40 53628";
    QTest::newRow("48") << 6 << "48 48 72912";
}

/// Ports sit in ascending order, sources first, and what a button means its LED shows.
void FrontLogicTest::layouts()
{
    QFETCH(int, id);
    Fixture fixture(id);
    fixture.play("autotake=on");
    const auto press = [&fixture](int key) {
        fixture.front.takeWrites();
        fixture.notes.clear();
        fixture.logic.handleButton(key, true);
        return fixture.notes.join(' ');
    };
    const int load = id == 3 ? 740 : 737;
    const QHash<int, QString> functions{{load, "LOAD"}, {load + 1, "SAVE"}, {743, "lock"}};
    const QString connected("connect(I%1:-O%2;)");
    int source = 0, destination = 0, sum = 0;
    QStringList leds;
    for (int key = 704; key <= 823; ++key) {
        const QString notes = press(key);
        if (notes.startsWith("connect")) {
            QCOMPARE(notes, connected.arg(++source).arg(1));
            fixture.play(QString("xp=I%1").arg(source));
        } else if (notes == "dst") {
            QCOMPARE(press(704), connected.arg(1).arg(++destination));
        } else {
            QCOMPARE(notes.section('(', 0, 0), functions.value(key));
            continue;
        }
        sum += key;
        leds += QString("%1.%2=1").arg((key - 704) / 40 + 1).arg((key - 704) % 40 + 1);
        QVERIFY(fixture.front.lit().contains(leds.last()));
    }
    QTEST(QString("%1 %2 %3").arg(source).arg(destination).arg(sum), "ports");

    fixture.play("upgrade=1 upgrade=255");
    QCOMPARE(fixture.front.lit(), leds);
    fixture.play(QString("xp=I%1 autotake=on").arg(source + 1));      // one too many is lit where it would come next
    QCOMPARE(fixture.front.lit().size(), id == 1 || id == 4 ? 3 : 2); // elsewhere a port's, Take's, or nowhere
}

QTEST_MAIN(FrontLogicTest)
#include "frontlogictest.moc"
