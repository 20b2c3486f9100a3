#include "frontpanel/frontlogic.h"
#include "hardware/panellayout.h"
#include "managers/crosspointmanager.h"
#include "managers/frontpanelstatemanager.h"
#include "managers/presetmanager.h"
#include "managers/variantmanager.h"
#include "protocol/catalogue.h"
#include "protocol/dt3manager.h"
#include "simulator/coreservice/coreservice.h"
#include "tests/frontpanel/eventdevice.h"

#include <QSignalSpy>
#include <QTest>

#include <functional>
#include <optional>

namespace {

constexpr int destination1 = 17; // buttons of the 8 x 8 front
constexpr int take = 33;
const QString loadLit = "1.34=1";
const QString saveLit = "1.35=1";

/// Buttons and managers of an 8 x 8 front, connected as the program connects them.
struct Panel : QObject
{
    Panel();
    void press(int button);

    PanelFront front;
    FrontLogic logic{front.panels()};
    CrosspointManager crosspoint;
    FrontPanelStateManager state;
};

Panel::Panel()
{
    logic.setLayout(1);
    Dt3Manager *dt3 = Dt3Manager::instance();
    VariantManager *variant = VariantManager::instance();
    PresetManager *presets = PresetManager::instance();
    connect(dt3, &Dt3Manager::connectionStateChanged, variant, &VariantManager::connectionStateChanged);
    connect(dt3, &Dt3Manager::connectionStateChanged, &crosspoint, &CrosspointManager::connectionStateChanged);
    connect(dt3, &Dt3Manager::connectionStateChanged, &state, &FrontPanelStateManager::connectionStateChanged);
    connect(dt3, &Dt3Manager::connectionStateChanged, presets, &PresetManager::connectionStateChanged);
    connect(&crosspoint, &CrosspointManager::connectionChanged, &logic, &FrontLogic::crosspointStatusChanged);
    connect(&logic, &FrontLogic::connectCrosspoint, &crosspoint, &CrosspointManager::connect);
    connect(&logic, &FrontLogic::presetLoad, presets, &PresetManager::loadPresetByButtonNum);
    connect(&logic, &FrontLogic::presetSave, presets, &PresetManager::createPresetByButtonNum);
    connect(&state, &FrontPanelStateManager::autotakeModeChanged, &logic, &FrontLogic::onAutotakeModeChange);
}

void Panel::press(int button)
{
    logic.handleButton(panelKey(1, button), true);
    logic.handleButton(panelKey(1, button), false);
}

} // namespace

/// While a preset screen is open, the source buttons load and save presets on the device.
class PresetButtonsTest : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void init();
    void loads_data();
    void loads();
    void saves_data() { loads_data(); }
    void saves();
    void loadsWhatTheButtonStandsFor_data();
    void loadsWhatTheButtonStandsFor();
    void savesAnewWhatAnotherRemoved();
    void namesOfAnyShape_data();
    void namesOfAnyShape();

private:
    using Change = std::function<void(PresetButtonsTest &)>;

    /// Until the panel has heard everything that the device has said so far.
    bool settle();
    QString routing() const { return *m_core.property("/MEDIA/XP/VIDEO.DestinationConnectionStatus"); }
    void route(const QString &entries) { m_core.callMethod("/MEDIA/XP/VIDEO:connect", entries); }
    /// A preset that feeds destination 2 from source 7, made and assigned by somebody else; the routing stays.
    void addPreset(const QString &name, int button);
    void assign(int button, const QString &name);
    /// What the panel has had done, since the test began.
    QStringList calls() const;

    const QString m_plain = "I1;I2;I3;I4;I5;I6;I7;I8";
    const QString m_preset = "I1;I7;I3;I4;I5;I6;I7;I8";
    CoreService m_core{frameDescriptors().front()};
    QStringList m_requests;
    std::optional<Panel> m_panel;
    PresetManager *m_presets = nullptr;
};

void PresetButtonsTest::initTestCase()
{
    fillCatalogue();
    connect(&m_core, &CoreService::requestReceived, this,
        [this](const QString &line) { m_requests.append(line.section('#', 1)); });
    QVERIFY(m_core.listen(6107));
    m_panel.emplace();
    m_presets = PresetManager::instance();
    Dt3Manager::instance()->connectToDevice();
    QTRY_VERIFY(m_requests.contains("GET /MEDIA/PRESET"));
}

void PresetButtonsTest::init()
{
    QCOMPARE(m_core.callMethod("/SYS:factoryDefaults", QString()), QString()); // no presets either
    QVERIFY(settle());
    m_panel->logic.loadPresetMenuShowChange(false);
    m_panel->logic.connectionStatusChanged(false); // nothing is selected
    m_requests.clear();
    QCOMPARE(routing(), m_plain);
}

bool PresetButtonsTest::settle()
{
    struct Probe : Dt3Sink
    {
        Probe() { get("/.PartNumber"); }
        void propertyReceived(const QString &, const QString &) override { answered = true; }
        bool answered = false;
    } probe;
    return QTest::qWaitFor([&probe] { return probe.answered; });
}

void PresetButtonsTest::addPreset(const QString &name, int button)
{
    route("I7:-O2");
    m_core.addPreset(name);
    route("I2:-O2");
    assign(button, name);
}

void PresetButtonsTest::assign(int button, const QString &name)
{
    QVERIFY(m_core.setProperty(QString("/MEDIA/PRESET.Button%1AssignedPreset").arg(button), name));
}

QStringList PresetButtonsTest::calls() const { return m_requests.filter("CALL "); }

void PresetButtonsTest::loads_data()
{
    QTest::addColumn<bool>("autotake");

    QTest::newRow("with Take") << false;
    QTest::newRow("at once in autotake") << true;
}

void PresetButtonsTest::loads()
{
    QFETCH(bool, autotake);

    m_core.setProperty("/SYS/CECU/LCD.AutoTake", autotake ? "true" : "false");
    addPreset("Evening", 2);
    QVERIFY(settle());
    m_panel->logic.loadPresetMenuShowChange(true);
    QVERIFY(m_panel->front.lit().contains(loadLit));
    m_panel->press(2);
    if (!autotake) {
        QVERIFY(settle());
        QCOMPARE(routing(), m_plain);
        m_panel->press(take);
    }
    QTRY_COMPARE(routing(), m_preset);
    QCOMPARE(calls(), QStringList{"CALL /MEDIA/PRESET/Evening:load()"});
    QVERIFY(!m_panel->front.lit().contains(loadLit));

    QVERIFY(settle());
    if (!autotake)
        m_panel->press(destination1 + 1); // the screen is done with: sources are sources again
    m_panel->press(3);
    if (!autotake) {
        m_panel->press(destination1);
        m_panel->press(take);
    }
    QTRY_COMPARE(routing(), "I3;I7;I3;I4;I5;I6;I7;I8");
    QCOMPARE(calls().size(), 2);
}

void PresetButtonsTest::saves()
{
    QFETCH(bool, autotake);

    m_core.setProperty("/SYS/CECU/LCD.AutoTake", autotake ? "true" : "false");
    QSignalSpy added(m_presets, &PresetManager::onPresetAdded);
    const auto save = [this, autotake] {
        m_panel->logic.savePresetMenuShowChange(true);
        m_panel->press(3);
        if (!autotake)
            m_panel->press(take);
    };
    QVERIFY(settle());
    save();
    QTRY_VERIFY(m_presets->buttonHasExistingPreset(3));
    QCOMPARE(m_core.presetNames(), QStringList{m_presets->presetOfButton(3)});
    QCOMPARE(added, QList<QVariantList>{{m_presets->presetOfButton(3)}});
    QCOMPARE(calls(), QStringList{"CALL /MEDIA/PRESET:createButtonAssignedPreset(3,VIDEO)"});
    QVERIFY(!m_panel->front.lit().contains(saveLit));

    route("I7:-O2"); // saved over what was there
    QVERIFY(settle());
    save();
    QVERIFY(settle());
    QCOMPARE(added.count(), 1);
    route("I2:-O2");
    m_presets->loadPresetByButtonNum(3);
    QTRY_COMPARE(routing(), m_preset);
}

void PresetButtonsTest::loadsWhatTheButtonStandsFor_data()
{
    QTest::addColumn<Change>("change"); // by somebody else, between the source and Take
    QTest::addColumn<bool>("heard");    // before Take
    QTest::addColumn<QString>("loaded");
    QTest::addColumn<QString>("result");

    const Change removed = [](PresetButtonsTest &test) { test.m_core.removePreset("A"); };
    const Change renamed = [](PresetButtonsTest &test) {
        test.addPreset("A", 2); // over itself
        test.addPreset("B", 2);
        test.m_core.removePreset("A");
    };
    const Change moved = [](PresetButtonsTest &test) {
        test.assign(2, QString());
        test.assign(4, "A");
    };
    QTest::newRow("removed") << removed << true << "" << m_plain;
    QTest::newRow("just being removed") << removed << false << "A" << m_plain;
    QTest::newRow("renamed") << renamed << true << "B" << m_preset;
    QTest::newRow("just being renamed") << renamed << false << "A" << m_plain;
    QTest::newRow("given to another button") << moved << true << "" << m_plain;
    QTest::newRow("just being given to another button") << moved << false << "A" << m_preset;
}

void PresetButtonsTest::loadsWhatTheButtonStandsFor()
{
    QFETCH(Change, change);
    QFETCH(bool, heard);
    QFETCH(QString, loaded);
    QFETCH(QString, result);

    addPreset("A", 2);
    QVERIFY(settle());
    m_panel->logic.loadPresetMenuShowChange(true);
    m_panel->press(2);
    change(*this);
    QVERIFY(!heard || settle());
    m_panel->press(take);
    QVERIFY(settle()); // whatever was answered, the link holds
    QCOMPARE(calls(), QStringList{"CALL /MEDIA/PRESET/" + loaded + ":load()"});
    QCOMPARE(routing(), result);
    QCOMPARE(m_presets->buttonHasExistingPreset(2), *m_core.property("/MEDIA/PRESET.Button2AssignedPreset") != "");
}

void PresetButtonsTest::savesAnewWhatAnotherRemoved()
{
    QSignalSpy removed(m_presets, &PresetManager::onPresetRemoved);
    addPreset("A", 2);
    QVERIFY(settle());
    QVERIFY(m_presets->buttonHasExistingPreset(2));
    m_panel->logic.savePresetMenuShowChange(true);
    m_panel->press(2);
    m_core.removePreset("A");
    m_panel->press(take);
    QTRY_COMPARE(m_core.presetNames().size(), 1);
    QVERIFY(settle());
    QCOMPARE(removed, QList<QVariantList>{{"A"}});
    QCOMPARE(m_presets->presetOfButton(2), m_core.presetNames().first());
    QVERIFY(m_presets->buttonHasExistingPreset(2));
}

void PresetButtonsTest::namesOfAnyShape_data()
{
    QTest::addColumn<QString>("name");

    for (const char *name : {"two  words", " blanks around ", "v1.2.final", "A.Button1AssignedPreset=B",
             "\"Main\" 'Hall'", "Café", "50 %1", "#1 {a\\b} (c)", "a,VIDEO", "x:load(y)", "I3:-O1;", "}"})
        QTest::newRow(name) << QString::fromUtf8(name);
    QTest::newRow("200 characters") << QString(200, u'é');
}

void PresetButtonsTest::namesOfAnyShape()
{
    QFETCH(QString, name);

    QSignalSpy added(m_presets, &PresetManager::onPresetAdded);
    route("I7:-O2");
    m_presets->createPresetByName(name);
    QTRY_COMPARE(m_core.presetNames(), QStringList{name});
    route("I2:-O2");
    assign(8, name);
    QVERIFY(settle());
    QCOMPARE(added, QList<QVariantList>{{name}});
    QCOMPARE(m_presets->presetOfButton(8), name);
    QCOMPARE(m_presets->presetOfButton(1), QString());
    QVERIFY(m_presets->buttonHasExistingPreset(8));

    m_panel->logic.loadPresetMenuShowChange(true);
    m_panel->press(8);
    m_panel->press(take);
    QTRY_COMPARE(routing(), m_preset);
    m_core.removePreset(name);
    assign(8, name); // of a preset that is not there
    QVERIFY(settle());
    QCOMPARE(m_presets->presetOfButton(8), name);
    QVERIFY(!m_presets->buttonHasExistingPreset(8));
}

QTEST_MAIN(PresetButtonsTest)
#include "presetbuttonstest.moc"
