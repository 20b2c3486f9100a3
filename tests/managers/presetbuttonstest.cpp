#include "hardware/framedescriptor.h"
#include "managers/presetmanager.h"
#include "managers/variantmanager.h"
#include "protocol/catalogue.h"
#include "protocol/dt3manager.h"
#include "simulator/coreservice/coreservice.h"

#include <QSignalSpy>
#include <QTest>

#include <functional>

/// Presets of buttons on a device that others use, too.
class PresetButtonsTest : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase()
    {
        fillCatalogue();
        connect(&m_core, &CoreService::requestReceived, this,
            [this](const QString &line) { m_requests.append(line.section('#', 1)); });
        QVERIFY(m_core.listen(6107));
        m_presets = PresetManager::instance();
        Dt3Manager *dt3 = Dt3Manager::instance();
        connect(dt3, &Dt3Manager::connectionStateChanged, VariantManager::instance(),
            &VariantManager::connectionStateChanged);
        connect(dt3, &Dt3Manager::connectionStateChanged, m_presets, &PresetManager::connectionStateChanged);
        dt3->connectToDevice();
        QTRY_VERIFY(m_requests.contains("GET /MEDIA/PRESET"));
    }

    void init()
    {
        QCOMPARE(m_core.callMethod("/SYS:factoryDefaults", QString()), QString()); // no presets either
        QVERIFY(settle());
        m_requests.clear();
    }

    void savesAndLoads()
    {
        QSignalSpy added(m_presets, &PresetManager::onPresetAdded);
        m_presets->createPresetByButtonNum(3);
        QTRY_VERIFY(m_presets->buttonHasExistingPreset(3));
        const QString name = m_presets->presetOfButton(3);
        QCOMPARE(m_core.presetNames(), QStringList{name});
        route("I7:-O2");
        m_presets->createPresetByButtonNum(3); // over what was there
        QVERIFY(settle());
        QCOMPARE(added, QList<QVariantList>{{name}});
        route("I2:-O2");
        m_presets->loadPresetByButtonNum(3);
        QTRY_COMPARE(source(), "I7");
        m_core.removePreset(name);
        m_presets->createPresetByButtonNum(3); // before the panel has heard of it
        QTRY_COMPARE(added.count(), 2);
        QVERIFY(settle());
        QVERIFY(m_presets->buttonHasExistingPreset(3));
    }

    void loadsWhatTheButtonStandsFor()
    {
        const std::tuple<std::function<void()>, QString, QString, QString> cases[] = {
            // what somebody else changes, what is loaded when the panel has heard of it (until then A), source 2
            // then and unheard
            {[this] { m_core.removePreset("A"); }, "", "I2", "I2"},
            {[this] { addPreset("B", 2), m_core.removePreset("A"); }, "B", "I7", "I2"},
            {[this] { assign(2, ""), assign(4, "A"); }, "", "I2", "I7"},
        };
        for (const auto &[change, loaded, after, unheard] : cases) {
            for (const bool heard : {true, false}) {
                init();
                addPreset("A", 2);
                QVERIFY(settle());
                m_requests.clear();
                change();
                QVERIFY(!heard || settle());
                m_presets->loadPresetByButtonNum(2);
                QVERIFY(settle()); // whatever was answered, the link holds
                QCOMPARE(m_requests.filter("CALL ").join(' '),
                    QString("CALL /MEDIA/PRESET/%1:load()").arg(heard ? loaded : "A"));
                QCOMPARE(source(), heard ? after : unheard);
            }
        }
    }

    void namesOfAnyShape()
    {
        for (const QString &name : {QString("v1.2 \"Hall\""), QString("A.Button1AssignedPreset=B"),
                 QString::fromUtf8("Café 50 %1"), QString("#1 {a\\b} (c)"), QString("a,VIDEO"), QString(200, 'x')}) {
            route("I7:-O2");
            m_presets->createPresetByName(name);
            QTRY_COMPARE(m_core.presetNames(), QStringList{name});
            route("I2:-O2");
            assign(8, name);
            QVERIFY(settle());
            QCOMPARE(m_presets->presetOfButton(8), name);
            QVERIFY(m_presets->buttonHasExistingPreset(8) && m_presets->presetOfButton(1).isEmpty());
            m_presets->loadPresetByButtonNum(8);
            QTRY_COMPARE(source(), "I7");
            m_core.removePreset(name);
        }
    }

    void buttonsThatTheFrameDoesNotHave()
    {
        QSignalSpy assigned(m_presets, &PresetManager::onPresetAssignedButtonChange);
        for (const char *property :
            {"Button9AssignedPreset", "Button0AssignedPreset", "Button99999999999AssignedPreset", "X"})
            m_presets->propertyChanged(QString("/MEDIA/PRESET.") + property, "x");
        QCOMPARE(assigned.count() + m_presets->buttonOfPreset("x"), 0);
        for (const int button : {0, -1, 9}) {
            QCOMPARE(m_presets->presetOfButton(button), QString());
            m_presets->loadPresetByButtonNum(button);
            m_presets->createPresetByButtonNum(button);
        }
        QVERIFY(settle());
        QCOMPARE(m_requests, QStringList{"GET /.PartNumber"});
    }

    void morePresetsThanTheMenuTakes()
    {
        QSignalSpy added(m_presets, &PresetManager::onPresetAdded);
        const auto number = [](qsizetype n) { return QString::number(n); };
        m_presets->nodeAdded("/MEDIA/PRESET", QString(256, 'x'));
        m_presets->propertyChanged("/MEDIA/PRESET.Button1AssignedPreset", QString(256, 'x'));
        for (qsizetype n = 1; n <= PresetManager::mostPresets + 2; ++n)
            m_presets->nodeAdded("/MEDIA/PRESET", number(n));
        m_presets->nodeAdded("/MEDIA/PRESET", "1"); // known
        QCOMPARE(added.count(), PresetManager::mostPresets + 1);
        QVERIFY(!m_presets->hasPreset(number(PresetManager::mostPresets + 1)));
        QCOMPARE(m_presets->presetOfButton(1), QString());
        m_presets->nodeRemoved("/MEDIA/PRESET", "1"); // there is room again
        m_presets->nodeAdded("/MEDIA/PRESET", "late");
        QVERIFY(m_presets->hasPreset("late"));
        for (qsizetype n = 1; n <= PresetManager::mostPresets; ++n)
            m_presets->nodeRemoved("/MEDIA/PRESET", number(n));
        m_presets->nodeRemoved("/MEDIA/PRESET", "late");
    }

    void presetsAreListedAnewAfterALoss()
    {
        QSignalSpy added(m_presets, &PresetManager::onPresetAdded), removed(m_presets, &PresetManager::onPresetRemoved);
        addPreset("A", 1);
        m_core.addPreset("B");
        QVERIFY(settle());
        m_requests.clear();
        m_core.dropLink();
        QTRY_COMPARE(removed.count(), 2);
        QVERIFY(!m_presets->buttonHasExistingPreset(1));
        QCOMPARE(m_presets->buttonOfPreset("A"), 1);
        QVERIFY(m_core.restoreLink());
        QTRY_COMPARE(added.count(), 4);
        QCOMPARE(m_requests.filter("PRESET"), (QStringList{"GET /MEDIA/PRESET.*", "GET /MEDIA/PRESET"}));
        m_core.removePreset("B"); // subscribed again
        QTRY_COMPARE(removed.count(), 3);
    }

private:
    /// Until the panel has heard everything that the device has said so far.
    bool settle()
    {
        struct Probe : Dt3Sink
        {
            Probe() { get("/.PartNumber"); }
            void propertyReceived(const QString &, const QString &) override { answered = true; }
            bool answered = false;
        } probe;
        return QTest::qWaitFor([&probe] { return probe.answered; });
    }

    /// By somebody else.
    void addPreset(const QString &name, int button)
    {
        route("I7:-O2");
        m_core.addPreset(name);
        route("I2:-O2");
        assign(button, name);
    }

    /// What feeds destination 2: 2 by itself, 7 in every preset.
    QString source() const
    {
        return m_core.property("/MEDIA/XP/VIDEO.DestinationConnectionStatus")->section(';', 1, 1);
    }
    void route(const QString &entries) { m_core.callMethod("/MEDIA/XP/VIDEO:connect", entries); }
    void assign(int button, const QString &name)
    {
        QVERIFY(m_core.setProperty(QString("/MEDIA/PRESET.Button%1AssignedPreset").arg(button), name));
    }

    CoreService m_core{frameDescriptors().front()};
    QStringList m_requests;
    PresetManager *m_presets = nullptr;
};

QTEST_GUILESS_MAIN(PresetButtonsTest)
#include "presetbuttonstest.moc"
