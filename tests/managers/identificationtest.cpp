#include "hardware/framedescriptor.h"
#include "managers/variantmanager.h"
#include "protocol/catalogue.h"
#include "protocol/dt3manager.h"
#include "tests/support/scriptedservice.h"

#include <QSignalSpy>
#include <QTest>

/// The frame is found again from the device.
class IdentificationTest : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void init() { reconnect(); }
    void identifiesOncePerConnection();
    void unknownPartNumberIsGivenUp();
    void answersComeInAnyOrderAndTwice();

private:
    /// Answers a request that has come in with these lines; false if none of that text has.
    bool answer(const QString &request, const QStringList &lines);
    /// The device says what frame it is and what versions its slots have, from slot 2 on; "V5_" where none is given.
    bool identify(const QString &partNumber, const QStringList &versions = {});
    void reconnect();
    bool settle();
    QString cards(int direction, int count) const;

    ScriptedService m_service{6107};
    VariantManager *m_variant = VariantManager::instance();
};

void IdentificationTest::initTestCase()
{
    fillCatalogue();
    QSignalSpy connection(Dt3Manager::instance(), &Dt3Manager::connectionStateChanged);
    Dt3Manager::instance()->connectToDevice();
    QVERIFY(connection.wait());
    QTRY_VERIFY(m_service.hasClient());
}

/// What a loss of the link and its return mean to it; the part number has been asked for.
void IdentificationTest::reconnect()
{
    m_variant->connectionStateChanged(false);
    QVERIFY(settle());
    m_service.takeLines();
    m_variant->connectionStateChanged(true);
    QTRY_COMPARE(m_service.requests(), QStringList{"GET /.PartNumber"});
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

bool IdentificationTest::answer(const QString &request, const QStringList &lines)
{
    if (!QTest::qWaitFor([&] { return m_service.requests().contains(request); }))
        return false;
    const QString signature = m_service.lines().at(m_service.requests().lastIndexOf(request)).first(4);
    m_service.sendLines(QStringList{'{' + signature} + lines + QStringList{"}"});
    return true;
}

bool IdentificationTest::identify(const QString &partNumber, const QStringList &versions)
{
    bool asked = answer("GET /.PartNumber", {"pr /.PartNumber=" + partNumber});
    for (int slot = 2; asked && slot <= 22; ++slot) {
        const QString path = QString("/MANAGEMENT/UID.AddonHwVersion%1").arg(slot);
        asked = answer("GET " + path, {"pr " + path + '=' + versions.value(slot - 2, "V5_")});
    }
    return asked && settle();
}

/// Versions of that many cards.
QString IdentificationTest::cards(int direction, int count) const
{
    QStringList cards;
    for (int card = 0; card < count; ++card)
        cards += QString::number(m_variant->cardVersion(direction, card));
    return cards.join(' ');
}

void IdentificationTest::identifiesOncePerConnection()
{
    QSignalSpy identified(m_variant, &VariantManager::variantIdentified);
    const QStringList versions{
        "V19_2023", "V7_", "V8_", "V9_", "V19", "v19_", " V19_", "V99999999999_", "V1_", "V1_", "V12_"};
    QVERIFY(identify("47110020", versions)); // 16 x 20: slots 2, 3, 6, 7 and 4, 5, 8, 9, 12
    QCOMPARE(identified.count(), 1);
    QCOMPARE(m_variant->frameDescriptor()->partNumber, 47110020U);
    const QStringList asked = m_service.requests().filter("AddonHwVersion");
    QCOMPARE(asked.size(), 21);
    QCOMPARE(asked.front() + asked.back(), "GET /MANAGEMENT/UID.AddonHwVersion2GET /MANAGEMENT/UID.AddonHwVersion22");
    QCOMPARE(cards(1, 5) + " / " + cards(2, 6), "19 7 0 0 0 / 8 9 0 0 12 0");
    reconnect();
    QCOMPARE(m_variant->frameDescriptor()->partNumber, 47110020U); // still readable
    QVERIFY(identify("47110001"));
    QCOMPARE(identified.count(), 2);
    QCOMPARE(cards(1, 4) + " / " + cards(2, 5), "5 5 0 0 / 5 5 0 0 0"); // none of the earlier frame
}

void IdentificationTest::unknownPartNumberIsGivenUp()
{
    QSignalSpy identified(m_variant, &VariantManager::variantIdentified);
    for (const char *partNumber : {"12345678", "no number"}) {
        QTest::ignoreMessage(QtWarningMsg, "Some weird variant was detected. Giving up.");
        QVERIFY(identify(partNumber));
        QCOMPARE(m_variant->frameDescriptor(), nullptr);
        reconnect();
    }
    QVERIFY(identify("58220003"));
    QCOMPARE(identified.count(), 1); // the first of the three that is known
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
    QVERIFY(settle());
    QCOMPARE(identified.count(), 1);
    QCOMPARE(m_variant->frameDescriptor()->partNumber, 47110004U);
    QCOMPARE(cards(1, 1), "12");
}

QTEST_GUILESS_MAIN(IdentificationTest)
#include "identificationtest.moc"
