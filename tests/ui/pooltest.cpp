#include "ui/pool.h"

#include "protocol/catalogue.h"
#include "tests/ui/lcd.h"
#include "ui/screenwarning.h"

#include <QApplication>
#include <QProcess>
#include <QTest>

/// The notices of the LCD. In a network of its own, whose addresses are the test's.
class PoolTest : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void failureShowsTheAddress();
    void lockWarningStaysForTheLastKey();
    void messageFitsItsBox_data();
    void messageFitsItsBox();

private:
    Pool *m_pool = nullptr;
};

void PoolTest::initTestCase()
{
    prepareLcdLooks();
    fillCatalogue();
    m_pool = Pool::instance();
    QVERIFY(QTest::qWaitForWindowActive(m_pool));
    m_pool->initScreens();
    for (const Qt::Key key : {Qt::Key_Tab, Qt::Key_Backtab}) // moves nothing
        QTest::keyClick(QApplication::focusWidget(), key);
    QVERIFY2(Lcd::texts().startsWith("BOOTING...|Please wait..."), qPrintable(Lcd::texts()));
}

void PoolTest::failureShowsTheAddress()
{
    m_pool->connectionTimeoutExpired();
    QVERIFY2(Lcd::texts().startsWith("BOOTING FAILED|Plz connect ethernet cable..."), qPrintable(Lcd::texts()));
    QCOMPARE(QProcess::execute("ip", {"addr", "add", "192.168.1.10/32", "dev", "lo"}), 0);
    QTRY_VERIFY_WITH_TIMEOUT(Lcd::texts().contains("Download log files:\n\thttp://192.168.1.10/log\n"
                                                   "Firmware upgrade:\n\thttp://192.168.1.10/firmware"),
        12000);
    m_pool->connectionStateChanged(true);
    QTRY_VERIFY(Lcd::texts().startsWith("MAIN MENU|"));
}

void PoolTest::lockWarningStaysForTheLastKey()
{
    QElapsedTimer time;
    for (int key = 0; key < 3; ++key) {
        m_pool->lockedWarningAction();
        time.start();
        QVERIFY(Lcd::texts().startsWith("WARNING|Front panel is locked."));
        QVERIFY(!QTest::qWaitFor([] { return Lcd::texts().startsWith("MAIN"); }, 1000));
    }
    QTRY_VERIFY(Lcd::texts().startsWith("MAIN MENU")); // it was shown once, and left once
    QVERIFY(time.elapsed() >= 2900);
}

void PoolTest::messageFitsItsBox_data()
{
    QTest::addColumn<QString>("message");
    QTest::addColumn<QString>("end"); // of what is shown
    const QString words = QString("word ").repeated(30), ellipsis = QChar(0x2026);
    QTest::newRow("short, looks like markup") << QString("<b>") << QString("<b>");
    QTest::newRow("lines") << words << words;
    QTest::newRow("a word without end") << QString(200, 'x') << ellipsis;
    QTest::newRow("a text without end") << words.repeated(150) << ellipsis;
}

void PoolTest::messageFitsItsBox()
{
    QFETCH(const QString, message);
    QFETCH(const QString, end);
    m_pool->propertyChanged(propLcdMessage.path(), message);
    m_pool->propertyChanged(propLcdMessage.path(), {}); // changes nothing
    const QLabel *label = nullptr;
    for (const QLabel *child : m_pool->findChildren<QLabel *>(QString(), Qt::FindDirectChildrenOnly))
        label = child->wordWrap() ? child : label;
    QVERIFY(label && label->isVisible() && label->text().endsWith(end));
    QVERIFY(label->width() >= 100 && label->width() <= 300 && label->height() <= 220);
    QVERIFY(label->heightForWidth(label->width()) <= label->height());
    QCOMPARE(label->pos(), QPoint((320 - label->width()) / 2, (240 - label->height()) / 2));
}

QTEST_MAIN(PoolTest)
#include "pooltest.moc"
