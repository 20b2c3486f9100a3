#include "managers/crosspointmanager.h"
#include "managers/frontpanelstatemanager.h"
#include "managers/operationstatemanager.h"
#include "managers/upgradestatemanager.h"
#include "protocol/catalogue.h"
#include "protocol/dt3manager.h"
#include "tests/support/scriptedservice.h"

#include <QSignalSpy>
#include <QTest>

/// The managers that mirror one area of device state each, on the device's own port.
class StateManagersTest : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void init();
    void cleanup();
    void subscribesBeforeReading_data();
    void subscribesBeforeReading();
    void passesOnRoutingAndLocks();
    void readsFlags_data();
    void readsFlags();
    void readsUpgradeProgress();
    void carriesOutRequests();
    void readsAgainAfterALoss();

private:
    template <typename Manager> void subscribe(Manager &manager);
    QStringList requests() const;
    void change(const QStringList &properties);

    ScriptedService m_service{6107};
};

void StateManagersTest::initTestCase()
{
    fillCatalogue();
    QSignalSpy spy(Dt3Manager::instance(), &Dt3Manager::connectionStateChanged);
    Dt3Manager::instance()->connectToDevice();
    QVERIFY(spy.wait());
    QTRY_VERIFY(m_service.hasClient());
}

void StateManagersTest::init() { m_service.takeLines(); }

/// Every manager of a case is gone now; what its going wrote must not reach the next one.
void StateManagersTest::cleanup()
{
    struct Last : Dt3Sink
    {
        Last() { call("/LAST:line", QString()); }
    } last;
    QTRY_VERIFY(m_service.lines().join(' ').contains("/LAST:line"));
}

/// The lines received, without their signatures.
QStringList StateManagersTest::requests() const
{
    QStringList requests = m_service.lines();
    for (QString &line : requests)
        line.remove(0, line.indexOf('#') + 1);
    return requests;
}

template <typename Manager> void StateManagersTest::subscribe(Manager &manager)
{
    manager.connectionStateChanged(true);
    QTRY_VERIFY(requests().join(' ').contains("GET"));
    for (const QString &line : requests()) {
        if (line.startsWith("OPEN "))
            m_service.sendLines({"o- " + line.mid(5)});
    }
}

void StateManagersTest::change(const QStringList &properties)
{
    for (const QString &property : properties)
        m_service.sendLines({"CHG " + property});
}

void StateManagersTest::subscribesBeforeReading_data()
{
    QTest::addColumn<int>("which");
    QTest::addColumn<QString>("node");
    QTest::addColumn<QStringList>("lines");

    const QString xp = "/MEDIA/XP/VIDEO", lcd = "/SYS/CECU/LCD", power = "/MANAGEMENT/POWER",
                  boot = "/MANAGEMENT/BOOTLOADER";
    QTest::newRow("crosspoint") << 0 << xp
                                << QStringList{"OPEN " + xp, "OPEN " + xp, "GET " + xp + ".DestinationConnectionStatus",
                                       "GET " + xp + ".DestinationPortStatus"};
    QTest::newRow("front panel state") << 1 << lcd
                                       << QStringList{"OPEN " + lcd, "OPEN " + lcd, "GET " + lcd + ".ControlLock",
                                              "GET " + lcd + ".AutoTake"};
    QTest::newRow("operation state") << 2 << power << QStringList{"OPEN " + power, "GET " + power + ".Operation"};
    QTest::newRow("upgrade state") << 3 << boot
                                   << QStringList{"OPEN " + boot, "OPEN " + boot, "GET " + boot + ".Status",
                                          "GET " + boot + ".Progress"};
}

void StateManagersTest::subscribesBeforeReading()
{
    QFETCH(int, which);
    QFETCH(QString, node);
    QFETCH(QStringList, lines);

    CrosspointManager crosspoint;
    FrontPanelStateManager frontPanel;
    OperationStateManager operation;
    UpgradeStateManager upgrade;
    const auto report = [&](bool connected) {
        switch (which) {
        case 0: crosspoint.connectionStateChanged(connected); break;
        case 1: frontPanel.connectionStateChanged(connected); break;
        case 2: operation.connectionStateChanged(connected); break;
        case 3:
            QTest::ignoreMessage(QtDebugMsg,
                QRegularExpression(connected ? "^UpgradeStateManager::connectionStateChanged, +true$"
                                             : "^UpgradeStateManager::connectionStateChanged, +false$"));
            upgrade.connectionStateChanged(connected);
            break;
        }
    };
    report(true);
    QTRY_COMPARE(requests(), lines);
    report(false);
    QTRY_COMPARE(requests().mid(lines.size()).value(0), "CLOSE " + node);
}

void StateManagersTest::passesOnRoutingAndLocks()
{
    CrosspointManager manager;
    QSignalSpy connections(&manager, &CrosspointManager::connectionChanged);
    QSignalSpy locks(&manager, &CrosspointManager::lockStateChanged);
    subscribe(manager);
    const QString getsConnections = m_service.lines().at(2).first(4);
    m_service.sendLines({'{' + getsConnections, "pr /MEDIA/XP/VIDEO.DestinationConnectionStatus=I1\\;0;", "}"});
    change({"/MEDIA/XP/VIDEO.SourcePortStatus=T", "/MEDIA/XP/VIDEO.DestinationPortStatus=U0;L0;",
        "/MEDIA/XP/VIDEO.DestinationPortStatus=U0;L0;"});
    QTRY_COMPARE(locks.count(), 2); // an equal value, too
    QCOMPARE(locks.front(), QVariantList{"U0;L0;"});
    QCOMPARE(connections.count(), 1);
    QCOMPARE(connections.front(), QVariantList{"I1\\;0;"}); // as the device wrote it
}

void StateManagersTest::readsFlags_data()
{
    QTest::addColumn<QString>("value");
    QTest::addColumn<bool>("on");
    QTest::addColumn<bool>("standby");

    QTest::newRow("true") << "true" << true << false;
    QTest::newRow("false") << "false" << false << false;
    QTest::newRow("a number is not true") << "1" << false << false;
    QTest::newRow("other case is not true") << "TRUE" << false << false;
    QTest::newRow("standby") << "STANDBY" << false << true;
    QTest::newRow("other case is not standby") << "standby" << false << false;
    QTest::newRow("nothing") << "" << false << false;
}

void StateManagersTest::readsFlags()
{
    QFETCH(QString, value);
    QFETCH(bool, on);
    QFETCH(bool, standby);

    FrontPanelStateManager frontPanel;
    OperationStateManager operation;
    QSignalSpy locked(&frontPanel, &FrontPanelStateManager::controlLockStateChanged);
    QSignalSpy autotake(&frontPanel, &FrontPanelStateManager::autotakeModeChanged);
    QSignalSpy inStandby(&operation, &OperationStateManager::operationStateChanged);
    subscribe(operation);
    frontPanel.connectionStateChanged(true);
    QTRY_COMPARE(requests().size(), 6);
    m_service.sendLines({"o- /SYS/CECU/LCD"});
    change({"/SYS/CECU/LCD.ControlLock=" + value, "/SYS/CECU/LCD.Brightness=true", "/SYS/CECU/LCD.AutoTake=" + value,
        "/MANAGEMENT/POWER.Psu1=STANDBY", "/MANAGEMENT/POWER.Operation=" + value});
    QTRY_COMPARE(inStandby.count(), 1);
    QCOMPARE(inStandby.front(), QVariantList{standby});
    QCOMPARE(locked.count(), 1);
    QCOMPARE(locked.front(), QVariantList{on});
    QCOMPARE(autotake.count(), 1);
    QCOMPARE(autotake.front(), QVariantList{on});
}

void StateManagersTest::readsUpgradeProgress()
{
    UpgradeStateManager manager;
    QStringList states;
    QObject::connect(&manager, &UpgradeStateManager::upgradeStateChanged, this,
        [&](bool upgrading, uint8_t progress) { states.append(QString("%1 %2").arg(upgrading).arg(progress)); });
    subscribe(manager);
    const QString boot = "/MANAGEMENT/BOOTLOADER";
    change({boot + ".Progress=7", boot + ".Status=UPDATING", boot + ".Progress=10", boot + ".Progress=55 of 100",
        boot + ".Progress= 56", boot + ".Progress=300", boot + ".Progress=-1 x", boot + ".Progress=12%",
        boot + ".Progress=99999999999", boot + ".Progress=", boot + ".Progress=55", boot + ".Status=IDLE"});
    const QStringList expected{
        "0 7", "1 7", "1 10", "1 55", "1 0", "1 44", "1 255", "1 0", "1 0", "1 0", "1 55", "0 55"};
    QTRY_COMPARE(states, expected);
}

void StateManagersTest::carriesOutRequests()
{
    CrosspointManager crosspoint;
    FrontPanelStateManager frontPanel;
    OperationStateManager operation;
    crosspoint.connect("I3:-O5;");
    crosspoint.connect("");
    crosspoint.lockDestination("O3;");
    crosspoint.unlockDestination("O5;");
    frontPanel.setControlLock(true);
    frontPanel.setControlLock(false);
    frontPanel.setAutotakeMode(true);
    operation.wakeUp();
    const QStringList expected{"CALL /MEDIA/XP/VIDEO:connect(I3:-O5;)", "CALL /MEDIA/XP/VIDEO:connect()",
        "CALL /MEDIA/XP/VIDEO:lockDestination(O3;)", "CALL /MEDIA/XP/VIDEO:unlockDestination(O5;)",
        "SET /SYS/CECU/LCD.ControlLock=1", "SET /SYS/CECU/LCD.ControlLock=0", "SET /SYS/CECU/LCD.AutoTake=1",
        "CALL /MANAGEMENT/POWER:wakeUp()"};
    QTRY_COMPARE(requests(), expected);
}

void StateManagersTest::readsAgainAfterALoss()
{
    OperationStateManager manager;
    QObject::connect(Dt3Manager::instance(), &Dt3Manager::connectionStateChanged, &manager,
        &OperationStateManager::connectionStateChanged);
    subscribe(manager);
    m_service.takeLines();
    m_service.dropClient();
    QTRY_COMPARE(requests(), (QStringList{"OPEN /MANAGEMENT/POWER", "GET /MANAGEMENT/POWER.Operation"}));
    m_service.sendLines({"o- /MANAGEMENT/POWER"});
    QSignalSpy standby(&manager, &OperationStateManager::operationStateChanged);
    change({"/MANAGEMENT/POWER.Operation=STANDBY"});
    QTRY_COMPARE(standby.count(), 1);
}

QTEST_GUILESS_MAIN(StateManagersTest)
#include "statemanagerstest.moc"
