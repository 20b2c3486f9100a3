#include "frontpanel/controllockfilter.h"

#include "eventdevice.h"
#include "frontpanel/frontlogic.h"

#include <QApplication>
#include <QKeyEvent>
#include <QSignalSpy>
#include <QTest>
#include <QWindow>

using namespace std::chrono_literals;

namespace {

constexpr int loadKey = 737; // on the 8x8 front: what it emits counts its presses
constexpr int lockKey = 742;

/// A leaf three levels deep that takes no key, so that Qt offers each key to every parent.
class UnwillingLeaf : public KeyRecorder
{
public:
    using KeyRecorder::KeyRecorder;

protected:
    void keyPressEvent(QKeyEvent *event) override
    {
        KeyRecorder::keyPressEvent(event);
        event->ignore();
    }
    void keyReleaseEvent(QKeyEvent *event) override
    {
        KeyRecorder::keyReleaseEvent(event);
        event->ignore();
    }
};

} // namespace

class ControlLockFilterTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase_data();
    void keys_data();
    void keys();
    void lockedPanelIsUnlockedByHolding();
};

void ControlLockFilterTest::initTestCase_data()
{
    QTest::addColumn<bool>("posted");
    QTest::newRow("posted by a reader") << true;
    QTest::newRow("from Qt's own keyboard") << false;
}

void ControlLockFilterTest::keys_data()
{
    QTest::addColumn<QString>("state"); ///< C connected, U upgrading, S standby, L locked
    QTest::addColumn<int>("key");
    QTest::addColumn<QString>("outcome"); ///< Of one press and release.
    QTest::newRow("before the first connection, encoder") << "" << int(Qt::Key_D) << "";
    QTest::newRow("before the first connection, button") << "" << loadKey << "";
    QTest::newRow("disconnected comes before locked and standby") << "SL" << int(Qt::Key_Return) << "";
    QTest::newRow("encoder") << "C" << int(Qt::Key_D) << "leaf leaf";
    QTest::newRow("Return") << "C" << int(Qt::Key_Return) << "leaf leaf";
    QTest::newRow("button") << "C" << loadKey << "button";
    QTest::newRow("first panel key") << "C" << 704 << "selected";
    QTest::newRow("below the panels") << "C" << 703 << "leaf leaf";
    QTest::newRow("last panel key") << "C" << 823 << "";
    QTest::newRow("above the panels") << "C" << 824 << "leaf leaf";
    QTest::newRow("upgrade, encoder") << "CU" << int(Qt::Key_D) << "";
    QTest::newRow("upgrade, button") << "CU" << loadKey << "";
    QTest::newRow("upgrade comes before standby and locked") << "CUSL" << int(Qt::Key_Return) << "";
    QTest::newRow("standby, Return wakes once") << "CS" << int(Qt::Key_Return) << "wake";
    QTest::newRow("standby, Enter does not") << "CS" << int(Qt::Key_Enter) << "";
    QTest::newRow("standby, button") << "CS" << loadKey << "";
    QTest::newRow("standby comes before locked") << "CSL" << int(Qt::Key_Return) << "wake";
    QTest::newRow("standby comes before locked, encoder") << "CSL" << int(Qt::Key_D) << "";
    QTest::newRow("locked, encoder") << "CL" << int(Qt::Key_D) << "warn warn";
    QTest::newRow("locked, Return") << "CL" << int(Qt::Key_Return) << "warn warn";
    QTest::newRow("locked, button") << "CL" << loadKey << "warn warn";
    QTest::newRow("locked, panel lock button") << "CL" << lockKey << "";
}

void ControlLockFilterTest::keys()
{
    QFETCH_GLOBAL(bool, posted);
    QFETCH(QString, state);
    QFETCH(int, key);
    QFETCH(QString, outcome);

    PanelFront front;
    FrontLogic logic(front.panels());
    logic.setLayout(1);
    ControlLockFilter filter(&logic);
    QWidget window;
    QWidget middle(&window);
    UnwillingLeaf leaf(&middle);
    QVERIFY(leaf.focus());

    QStringList seen;
    connect(&filter, &ControlLockFilter::wakeUpAction, this, [&seen] { seen += "wake"; });
    connect(&filter, &ControlLockFilter::lockedWarningAction, this, [&seen] { seen += "warn"; });
    connect(&logic, &FrontLogic::loadPresetButtonPushed, this, [&seen] { seen += "button"; });
    connect(&logic, &FrontLogic::preselectAction, this, [&seen] { seen += "selected"; });
    filter.connectionStatusChanged(state.contains('C'));
    filter.upgradeStateChanged(state.contains('U'), 1);
    filter.operationStatusChanged(state.contains('S'));
    filter.lockedStatusChanged(state.contains('L'));
    qApp->installEventFilter(&filter);

    for (const auto type : {QEvent::KeyPress, QEvent::KeyRelease}) {
        if (posted)
            QCoreApplication::postEvent(&leaf, new QKeyEvent(type, key, Qt::NoModifier));
        else
            QTest::sendKeyEvent(type == QEvent::KeyPress ? QTest::Press : QTest::Release, window.windowHandle(),
                static_cast<Qt::Key>(key), QString(), Qt::NoModifier);
    }
    QCoreApplication::sendPostedEvents();
    if (!leaf.keys().isEmpty())
        seen += QStringList(leaf.keys().split(' ').size(), "leaf");
    QCOMPARE(seen.join(' '), outcome);
}

void ControlLockFilterTest::lockedPanelIsUnlockedByHolding()
{
    QFETCH_GLOBAL(bool, posted);
    if (!posted)
        return; // buttons come from the readers
    PanelFront front;
    FrontLogic logic(front.panels(), {3000ms, 100ms, 60ms});
    logic.setLayout(1);
    logic.onControlLockStatusChange(true);
    ControlLockFilter filter(&logic);
    filter.connectionStatusChanged(true);
    filter.lockedStatusChanged(true);
    qApp->installEventFilter(&filter);
    QSignalSpy locks(&logic, &FrontLogic::controlLockStatusChanged);
    QSignalSpy autotakes(&logic, &FrontLogic::autotakeModeChanged);
    const auto send = [&](QEvent::Type type) {
        QKeyEvent event(type, lockKey, Qt::NoModifier);
        QCoreApplication::sendEvent(this, &event);
    };

    send(QEvent::KeyPress);
    QTRY_COMPARE(locks, QList<QVariantList>{{false}});
    send(QEvent::KeyPress);
    send(QEvent::KeyRelease);
    logic.handleButton(736, true); // as long a hold, begun later
    QTRY_COMPARE(autotakes.size(), 1);
    QCOMPARE(locks.size(), 1);
}

QTEST_MAIN(ControlLockFilterTest)
#include "controllockfiltertest.moc"
