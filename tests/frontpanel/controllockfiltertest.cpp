#include "frontpanel/controllockfilter.h"

#include "frontpanel/frontlogic.h"
#include "panelfront.h"

#include <QApplication>
#include <QTest>

class ControlLockFilterTest : public QObject
{
    Q_OBJECT
private slots:
    void keys_data();
    void keys();
};

void ControlLockFilterTest::keys_data()
{
    QTest::addColumn<QString>("state"); ///< C connected, U upgrading, S standby, L locked
    QTest::addColumn<QString>("outcome");
    const auto row
        = [](const char *name, const char *state, const QString &outcome) { QTest::newRow(name) << state << outcome; };
    row("disconnected comes first", "USL", "");
    row("panel keys go to the logic", "C",
        "D+ D- Return+ Return- Enter+ Enter- 703+ 703- button selected source 824+ 824- idle hold");
    row("upgrade comes before standby", "CUSL", "");
    row("standby comes before locked, Return wakes up once", "CSL", "wake");
    row("locked warns of each press and release, once", "CL", QString("warn ").repeated(16) + "hold");
}

void ControlLockFilterTest::keys()
{
    QFETCH(QString, state);
    PanelFront front;
    FrontLogic logic(front.panels(), {.hold = std::chrono::milliseconds(60)});
    logic.setLayout(1);
    ControlLockFilter filter(&logic);
    QWidget window, middle(&window); // a key that nobody takes is offered to them, too
    KeyRecorder leaf(&middle);
    QVERIFY(leaf.focus());
    const auto note = [&leaf](const char *what) { return [&leaf, what] { leaf.keys += what; }; };
    connect(&filter, &ControlLockFilter::wakeUpAction, this, note("wake"));
    connect(&filter, &ControlLockFilter::lockedWarningAction, this, note("warn"));
    connect(&logic, &FrontLogic::loadPresetButtonPushed, this, note("button"));
    connect(&logic, &FrontLogic::preselectAction, this, [&leaf](const QString &action) { leaf.keys += action; });
    connect(&logic, &FrontLogic::controlLockStatusChanged, this, note("hold"));
    int takeHolds = 0;
    connect(&logic, &FrontLogic::autotakeModeChanged, this, [&takeHolds] { ++takeHolds; });
    filter.connectionStatusChanged(state.contains('C'));
    filter.upgradeStateChanged(state.contains('U'), 1);
    filter.operationStatusChanged(state.contains('S'));
    filter.lockedStatusChanged(state.contains('L'));
    qApp->installEventFilter(&filter);

    for (const int key : {int(Qt::Key_D), int(Qt::Key_Return), int(Qt::Key_Enter), 703, 737, 704, 742, 823, 824})
        QTest::sendKeyEvent(QTest::Click, &leaf, Qt::Key(key), QString(), Qt::NoModifier);
    logic.handleButton(736, true); // as long a hold, begun later: the tap was none
    QTRY_COMPARE(takeHolds, 1);
    QTest::sendKeyEvent(QTest::Press, &leaf, Qt::Key(742), QString(), Qt::NoModifier);
    logic.handleButton(736, true);
    QTRY_COMPARE(takeHolds, 2);
    QTEST(leaf.keys.join(' '), "outcome");
}

QTEST_MAIN(ControlLockFilterTest)
#include "controllockfiltertest.moc"
