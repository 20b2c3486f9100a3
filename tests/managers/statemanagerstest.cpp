#include "managers/crosspointmanager.h"
#include "managers/frontpanelstatemanager.h"
#include "managers/operationstatemanager.h"
#include "managers/upgradestatemanager.h"
#include "protocol/catalogue.h"
#include "protocol/dt3manager.h"
#include "tests/support/scriptedservice.h"

#include <QTest>

namespace {

/// The managers that mirror one area of device state each, and what they say.
struct House : QObject
{
    House();

    CrosspointManager crosspoint;
    FrontPanelStateManager frontPanel;
    OperationStateManager operation;
    UpgradeStateManager upgrade;
    QStringList news;
};

House::House()
{
    const auto dt3 = Dt3Manager::instance();
    const auto changed = &Dt3Manager::connectionStateChanged;
    connect(dt3, changed, &crosspoint, &CrosspointManager::connectionStateChanged);
    connect(dt3, changed, &frontPanel, &FrontPanelStateManager::connectionStateChanged);
    connect(dt3, changed, &operation, &OperationStateManager::connectionStateChanged);
    connect(dt3, changed, &upgrade, &UpgradeStateManager::connectionStateChanged);
    const auto note = [this](const QString &what) { return [this, what](auto value) { news += what.arg(value); }; };
    connect(&crosspoint, &CrosspointManager::connectionChanged, this, note("routing %1"));
    connect(&crosspoint, &CrosspointManager::lockStateChanged, this, note("locks %1"));
    connect(&frontPanel, &FrontPanelStateManager::controlLockStateChanged, this, note("locked %1"));
    connect(&frontPanel, &FrontPanelStateManager::autotakeModeChanged, this, note("autotake %1"));
    connect(&operation, &OperationStateManager::operationStateChanged, this, note("standby %1"));
    connect(&upgrade, &UpgradeStateManager::upgradeStateChanged, this,
        [this](bool upgrading, uint8_t progress) { news += QString("%1 %2").arg(upgrading).arg(progress); });
}

} // namespace

/// On the device's own port.
class StateManagersTest : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void init() { m_house->news.clear(); }
    void passesOnRoutingAndLocks();
    void readsFlags();
    void readsUpgradeProgress();
    void carriesOutRequests();

private:
    void change(const QStringList &properties) { m_service.sendLines({"CHG " + properties.join("\r\nCHG ")}); }

    ScriptedService m_service{6107};
    std::optional<House> m_house;
    QString m_getsRouting; ///< Signature of that request.
};

/// Everything is subscribed before it is read, and again after a loss.
void StateManagersTest::initTestCase()
{
    fillCatalogue();
    m_house.emplace();
    Dt3Manager::instance()->connectToDevice();
    const QStringList expected{"OPEN /MEDIA/XP/VIDEO", "OPEN /MEDIA/XP/VIDEO",
        "GET /MEDIA/XP/VIDEO.DestinationConnectionStatus", "GET /MEDIA/XP/VIDEO.DestinationPortStatus",
        "OPEN /SYS/CECU/LCD", "OPEN /SYS/CECU/LCD", "GET /SYS/CECU/LCD.ControlLock", "GET /SYS/CECU/LCD.AutoTake",
        "OPEN /MANAGEMENT/POWER", "GET /MANAGEMENT/POWER.Operation", "OPEN /MANAGEMENT/BOOTLOADER",
        "OPEN /MANAGEMENT/BOOTLOADER", "GET /MANAGEMENT/BOOTLOADER.Status", "GET /MANAGEMENT/BOOTLOADER.Progress"};
    const QStringList confirmations{
        "o- /MEDIA/XP/VIDEO", "o- /SYS/CECU/LCD", "o- /MANAGEMENT/POWER", "o- /MANAGEMENT/BOOTLOADER"};
    for (int connection = 1; connection <= 2; ++connection) {
        QTRY_COMPARE(m_service.requests(), expected);
        m_getsRouting = m_service.takeLines().at(2).first(4);
        m_service.sendLines(confirmations + QStringList{"CHG /MANAGEMENT/POWER.Operation=NORMAL"});
        QTRY_COMPARE(m_house->news.size(), connection);
        if (connection == 1)
            m_service.dropClient();
    }
}

void StateManagersTest::passesOnRoutingAndLocks()
{
    m_service.sendLines({'{' + m_getsRouting, "pr /MEDIA/XP/VIDEO.DestinationConnectionStatus=I1\\;0;", "}"});
    change({"/MEDIA/XP/VIDEO.SourcePortStatus=T", "/MEDIA/XP/VIDEO.DestinationPortStatus=U0;L0;",
        "/MEDIA/XP/VIDEO.DestinationPortStatus=U0;L0;"});
    QTRY_COMPARE(m_house->news, (QStringList{"routing I1\\;0;", "locks U0;L0;", "locks U0;L0;"})); // an equal one, too
}

void StateManagersTest::readsFlags()
{
    QString expected;
    for (const QString value : {"true", "false", "1", "TRUE", "STANDBY", "standby", ""}) {
        change(
            {"/SYS/CECU/LCD.ControlLock=" + value, "/SYS/CECU/LCD.Brightness=true", "/SYS/CECU/LCD.AutoTake=" + value,
                "/MANAGEMENT/POWER.Psu1=STANDBY", "/MANAGEMENT/POWER.Operation=" + value});
        expected += QString("locked %1 autotake %1 standby %2 ").arg(value == "true").arg(value == "STANDBY");
    }
    QTRY_COMPARE(m_house->news.join(' ') + ' ', expected);
}

void StateManagersTest::readsUpgradeProgress()
{
    const QString boot = "/MANAGEMENT/BOOTLOADER.";
    change({boot + "Progress=7", boot + "Status=UPDATING"});
    for (const char *progress : {"10", "55 of 100", " 56", "300", "-1 x", "12%", "99999999999", "", "55"})
        change({boot + "Progress=" + progress});
    change({boot + "Status=IDLE"});
    QTRY_COMPARE(m_house->news.join(", "), "0 7, 1 7, 1 10, 1 55, 1 0, 1 44, 1 255, 1 0, 1 0, 1 0, 1 55, 0 55");
}

void StateManagersTest::carriesOutRequests()
{
    m_service.takeLines();
    m_house->crosspoint.connect("I3:-O5;");
    m_house->crosspoint.lockDestination("O3;");
    m_house->crosspoint.unlockDestination("O5;");
    m_house->frontPanel.setControlLock(true);
    m_house->frontPanel.setAutotakeMode(false);
    m_house->operation.wakeUp();
    const QStringList expected{"CALL /MEDIA/XP/VIDEO:connect(I3:-O5;)", "CALL /MEDIA/XP/VIDEO:lockDestination(O3;)",
        "CALL /MEDIA/XP/VIDEO:unlockDestination(O5;)", "SET /SYS/CECU/LCD.ControlLock=1",
        "SET /SYS/CECU/LCD.AutoTake=0", "CALL /MANAGEMENT/POWER:wakeUp()"};
    QTRY_COMPARE(m_service.requests(), expected);
}

QTEST_GUILESS_MAIN(StateManagersTest)
#include "statemanagerstest.moc"
