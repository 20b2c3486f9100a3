#include "hardware/framedescriptor.h"
#include "managers/presetmanager.h"
#include "managers/variantmanager.h"
#include "protocol/catalogue.h"
#include "protocol/dt3manager.h"
#include "tests/support/scriptedservice.h"

#include <QSignalSpy>
#include <QTest>

/// The frame is found again from the device, and presets follow from it.
class IdentificationTest : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void init() { reconnect(); }
    void identifies_data();
    void identifies();
    void unknownPartNumberIsGivenUp();
    void answersComeInAnyOrderAndTwice();
    void versionsOfAnyShape_data();
    void versionsOfAnyShape();
    void identifiesAgainAfterALoss();
    void presetsAreIdleUntilIdentified();
    void presetsOfButtons();
    void presetsComeAndGo();
    void presetsAreListedOnceAfterALoss();

private:
    QStringList requests() const;
    /// Answers a request that has come in with these lines; false if none of that text has.
    bool answer(const QString &request, const QStringList &lines);
    /// The device says what frame it is and what versions its slots have: "V<slot>_" unless told otherwise.
    bool identify(const QString &partNumber, const std::function<QString(int slot)> &version = {});
    void reconnect();
    bool settle();

    ScriptedService m_service{6107};
    VariantManager *m_variant = nullptr;
    PresetManager *m_presets = nullptr;
};

void IdentificationTest::initTestCase()
{
    fillCatalogue();
    m_variant = VariantManager::instance();
    m_presets = PresetManager::instance();
    QSignalSpy connection(Dt3Manager::instance(), &Dt3Manager::connectionStateChanged);
    Dt3Manager::instance()->connectToDevice();
    QVERIFY(connection.wait());
    QTRY_VERIFY(m_service.hasClient());
}

/// What a loss of the link and its return mean to both; the part number has been asked for.
void IdentificationTest::reconnect()
{
    m_variant->connectionStateChanged(false);
    m_presets->connectionStateChanged(false);
    QVERIFY(settle());
    m_service.takeLines();
    m_variant->connectionStateChanged(true);
    m_presets->connectionStateChanged(true);
    QTRY_COMPARE(requests(), QStringList{"GET /.PartNumber"});
}

/// Until everything that the service has sent has been handled.
bool IdentificationTest::settle()
{
    struct Probe : Dt3Sink
    {
        explicit Probe(const QString &property) { get(property); }
        void propertyReceived(const QString &, const QString &) override { answered = true; }
        bool answered = false;
    };
    static int count = 0;
    const QString property = QString("/PROBE.Name%1").arg(++count);
    Probe probe(property);
    return answer("GET " + property, {"pr " + property + "=x"}) && QTest::qWaitFor([&] { return probe.answered; });
}

QStringList IdentificationTest::requests() const
{
    QStringList requests = m_service.lines();
    for (QString &line : requests)
        line.remove(0, line.indexOf('#') + 1);
    return requests;
}

bool IdentificationTest::answer(const QString &request, const QStringList &lines)
{
    const auto came = [&] { return requests().contains(request); };
    if (!QTest::qWaitFor(came))
        return false;
    const QString signature = m_service.lines().at(requests().lastIndexOf(request)).first(4);
    m_service.sendLines(QStringList{'{' + signature} + lines + QStringList{"}"});
    return true;
}

bool IdentificationTest::identify(const QString &partNumber, const std::function<QString(int)> &version)
{
    if (!answer("GET /.PartNumber", {"pr /.PartNumber=" + partNumber}))
        return false;
    for (int slot = 2; slot <= 22; ++slot) {
        const QString path = QString("/MANAGEMENT/UID.AddonHwVersion%1").arg(slot);
        const QString value = version ? version(slot) : QString("V%1_rest").arg(slot);
        if (!answer("GET " + path, {"pr " + path + '=' + value}))
            return false;
    }
    return settle();
}

void IdentificationTest::identifies_data()
{
    QTest::addColumn<QString>("partNumber");
    QTest::addColumn<QList<int>>("inputs"); // card versions; slot n has version n
    QTest::addColumn<QList<int>>("outputs");

    QTest::newRow("8 x 8 takes one group of slots") << "47110001" << QList{2, 3} << QList{4, 5};
    QTest::newRow("16 x 20 takes three") << "47110020" << QList{2, 3, 6, 7} << QList{4, 5, 8, 9, 12};
    QTest::newRow("48 x 48 goes by what the cards can do")
        << "47110017" << QList{2, 2, 2, 2, 3, 3, 3, 3, 3, 3, 3, 3} << QList{10, 10, 10, 10, 8, 8, 8, 8, 8, 8, 8, 8};
}

void IdentificationTest::identifies()
{
    QFETCH(QString, partNumber);
    QFETCH(QList<int>, inputs);
    QFETCH(QList<int>, outputs);

    QSignalSpy identified(m_variant, &VariantManager::variantIdentified);
    QVERIFY(identify(partNumber));
    QTRY_COMPARE(identified.count(), 1);
    QCOMPARE(m_variant->frameDescriptor()->partNumber, partNumber.toUInt());
    QStringList asked = requests().filter("AddonHwVersion");
    QCOMPARE(asked.size(), 21);
    QCOMPARE(asked.front(), "GET /MANAGEMENT/UID.AddonHwVersion2");
    QCOMPARE(asked.back(), "GET /MANAGEMENT/UID.AddonHwVersion22");
    for (int card = 0; card < inputs.size(); ++card)
        QCOMPARE(m_variant->cardVersion(1, card), inputs[card]);
    for (int card = 0; card < outputs.size(); ++card)
        QCOMPARE(m_variant->cardVersion(2, card), outputs[card]);
    QCOMPARE(m_variant->cardVersion(1, int(inputs.size())), 0); // beyond the list, of an earlier frame too
    QCOMPARE(m_variant->cardVersion(2, -1), 0);
}

void IdentificationTest::unknownPartNumberIsGivenUp()
{
    QSignalSpy identified(m_variant, &VariantManager::variantIdentified);
    QTest::ignoreMessage(QtWarningMsg, "Some weird variant was detected. Giving up.");
    QVERIFY(identify("12345678"));
    reconnect();
    QCOMPARE(m_variant->frameDescriptor(), nullptr);
    QTest::ignoreMessage(QtWarningMsg, "Some weird variant was detected. Giving up.");
    QVERIFY(identify("no number"));
    reconnect();
    QVERIFY(identify("58220003"));
    QTRY_COMPARE(identified.count(), 1); // the first of the three that is known
}

void IdentificationTest::answersComeInAnyOrderAndTwice()
{
    QSignalSpy identified(m_variant, &VariantManager::variantIdentified);
    QVERIFY(answer("GET /.PartNumber", {"pr /.PartNumber=47110001", "pr /.PartNumber=47110004"}));
    const QString path = "/MANAGEMENT/UID.AddonHwVersion";
    QStringList versions;
    for (int slot = 30; slot >= 0; --slot) // also of slots that no card sits in
        versions.append(QString("pr %1%2=V%3_").arg(path).arg(slot).arg(slot + 10));
    QVERIFY(answer("GET " + path + "2", versions.mid(0, 20) + versions.mid(0, 5)));
    QVERIFY(answer("GET " + path + "9", versions.mid(20) + versions));
    QTRY_COMPARE(identified.count(), 1);
    QCOMPARE(m_variant->frameDescriptor()->partNumber, 47110004U);
    QCOMPARE(m_variant->cardVersion(1, 0), 12);
}

void IdentificationTest::versionsOfAnyShape_data()
{
    QTest::addColumn<QString>("value");
    QTest::addColumn<int>("version");

    QTest::newRow("two digits") << "V19_2023" << 19;
    QTest::newRow("one digit") << "V7_" << 7;
    QTest::newRow("no underscore") << "V19" << 0;
    QTest::newRow("other case") << "v19_" << 0;
    QTest::newRow("not at the beginning") << " V19_" << 0;
    QTest::newRow("nothing") << "" << 0;
    QTest::newRow("more than a number holds") << "V99999999999_" << 0;
    QTest::newRow("three digits keep what the card word holds") << "V123_" << 123;
}

void IdentificationTest::versionsOfAnyShape()
{
    QFETCH(QString, value);
    QFETCH(int, version);

    QSignalSpy identified(m_variant, &VariantManager::variantIdentified);
    QVERIFY(identify("47110001", [&](int slot) { return slot == 3 ? value : QStringLiteral("V1_"); }));
    QTRY_COMPARE(identified.count(), 1);
    QCOMPARE(m_variant->cardVersion(1, 1), version);
}

void IdentificationTest::identifiesAgainAfterALoss()
{
    QSignalSpy identified(m_variant, &VariantManager::variantIdentified);
    QVERIFY(identify("47110001"));
    QTRY_COMPARE(identified.count(), 1);
    reconnect();
    QCOMPARE(m_variant->frameDescriptor()->partNumber, 47110001U); // still readable
    QVERIFY(identify("47110020", [](int) { return QStringLiteral("V5_"); }));
    QTRY_COMPARE(identified.count(), 2);
    QCOMPARE(m_variant->cardVersion(1, 3), 5);
    QCOMPARE(m_variant->cardVersion(1, 4), 0);
}

void IdentificationTest::presetsAreIdleUntilIdentified()
{
    PresetManager::destroyInstance(); // one that has not seen a frame yet
    m_presets = PresetManager::instance();
    m_presets->loadPresetByButtonNum(1);
    m_presets->createPresetByButtonNum(1);
    QCOMPARE(m_presets->presetOfButton(1), QString());
    m_presets->loadPresetByName("by name");
    QTRY_COMPARE(requests().mid(1), QStringList{"CALL /MEDIA/PRESET/by name:load()"});
}

void IdentificationTest::presetsOfButtons()
{
    QSignalSpy assigned(m_presets, &PresetManager::onPresetAssignedButtonChange);
    QVERIFY(identify("47110008"));
    const QString cafe = QString::fromUtf8("Café \"1.5\" ") + QString(180, 'x');
    QVERIFY(answer("GET /MEDIA/PRESET.*",
        {"pr /MEDIA/PRESET.Button1AssignedPreset=" + cafe, "pr /MEDIA/PRESET.Button24AssignedPreset=last",
            "pr /MEDIA/PRESET.Button25AssignedPreset=beyond", "pr /MEDIA/PRESET.Button0AssignedPreset=before",
            "pr /MEDIA/PRESET.Name=none", "pr /MEDIA/PRESET.Button99999999999AssignedPreset=far"}));
    QTRY_COMPARE(assigned.count(), 2);
    QCOMPARE(m_presets->presetOfButton(1), cafe);
    QCOMPARE(m_presets->buttonOfPreset("last"), 24);
    QCOMPARE(m_presets->buttonOfPreset("beyond"), 0);
    QCOMPARE(m_presets->presetOfButton(25), QString());
    QVERIFY(!m_presets->buttonHasExistingPreset(1));
    QVERIFY(answer("GET /MEDIA/PRESET", {"n- /MEDIA/PRESET/" + cafe}));
    QTRY_VERIFY(m_presets->buttonHasExistingPreset(1));

    m_service.takeLines();
    m_presets->loadPresetByButtonNum(1);
    m_presets->loadPresetByButtonNum(2); // none assigned: the device is asked all the same
    m_presets->createPresetByButtonNum(24);
    for (const int button : {0, -1, 25}) {
        m_presets->loadPresetByButtonNum(button);
        m_presets->createPresetByButtonNum(button);
    }
    m_presets->createPresetByName("a b");
    const QStringList expected{"CALL /MEDIA/PRESET/" + cafe + ":load()", "CALL /MEDIA/PRESET/:load()",
        "CALL /MEDIA/PRESET:createButtonAssignedPreset(24,VIDEO)", "CALL /MEDIA/PRESET:create(a b,VIDEO)"};
    QTRY_COMPARE(requests(), expected);
}

void IdentificationTest::presetsComeAndGo()
{
    QSignalSpy added(m_presets, &PresetManager::onPresetAdded);
    QSignalSpy removed(m_presets, &PresetManager::onPresetRemoved);
    QVERIFY(identify("47110001"));
    QTRY_COMPARE(requests().mid(22).filter("PRESET"),
        (QStringList{"GET /MEDIA/PRESET.*", "OPEN /MEDIA/PRESET", "GET /MEDIA/PRESET"}));
    m_service.sendLines({"o- /MEDIA/PRESET"});
    QVERIFY(answer("GET /MEDIA/PRESET", {"n- /MEDIA/PRESET/A", "n- /MEDIA/PRESET/A", "n- /MEDIA/PRESET/"}));
    m_service.sendLines({"CHG /MEDIA/PRESET.Button3AssignedPreset=B", "NEW /MEDIA/PRESET/B", "DEL /MEDIA/PRESET/A"});
    QTRY_COMPARE(removed.count(), 1);
    QCOMPARE(added.count(), 4);
    QCOMPARE(added.at(2), QVariantList{"/"});
    QVERIFY(m_presets->buttonHasExistingPreset(3));
    QCOMPARE(m_presets->buttonOfPreset("B"), 3);
}

void IdentificationTest::presetsAreListedOnceAfterALoss()
{
    QVERIFY(identify("47110001"));
    QVERIFY(answer("GET /MEDIA/PRESET", {"n- /MEDIA/PRESET/A", "n- /MEDIA/PRESET/B"}));
    m_service.sendLines({"o- /MEDIA/PRESET", "CHG /MEDIA/PRESET.Button1AssignedPreset=A"});
    QTRY_VERIFY(m_presets->buttonHasExistingPreset(1));
    QSignalSpy removed(m_presets, &PresetManager::onPresetRemoved);
    reconnect();
    QCOMPARE(removed.count(), 2);
    QVERIFY(!m_presets->buttonHasExistingPreset(1));
    QCOMPARE(m_presets->presetOfButton(1), "A");
    QVERIFY(identify("47110001"));
    QTRY_COMPARE(requests().count("GET /MEDIA/PRESET"), 1);
    QCOMPARE(requests().count("OPEN /MEDIA/PRESET"), 1);
}

QTEST_GUILESS_MAIN(IdentificationTest)
#include "identificationtest.moc"
