#include "tests/ui/lcd.h"
#include "ui/itemwheellistlabel.h"
#include "ui/navigationmanager.h"
#include "ui/screenwarning.h"

#include <QApplication>
#include <QSignalSpy>
#include <QTest>

namespace {

constexpr QRect shown(0, 0, 320, 240), parked(320, 0, 320, 240);

/// A page with a wheel, that notes what becomes of it.
class Page : public Screen
{
public:
    Page(QWidget *lcd, const QString &name, QStringList *news)
        : Screen(lcd)
        , wheel(this, true)
        , m_news(news)
    {
        setObjectName(name);
        wheel.setOptions({"a", "b"});
        wheel.setFixedSize(100, 35);
        m_wheel.addWidget(&wheel);
        contentLayout()->addWidget(&wheel);
        stackContents(Contents::Centred);
        navigator().insert(saveCollection(), &m_wheel);
        connect(&wheel, &ItemLabel::signalDeselected, &m_wheel, &Collection::hover);
        showBackButton();
    }
    void setActive(bool active) override { m_news->append((active ? "+" : "-") + objectName()); }
    using Screen::showSaveButton;

    ItemWheelListLabel wheel;

private:
    QStringList *m_news;
    Collection m_wheel;
};

/// The root on the LCD, and two pages to put over it.
struct Stage
{
    Stage() { root.showMe(); }

    Lcd lcd;
    QStringList news;
    Page root{&lcd, "root", &news}, a{&lcd, "a", &news}, b{&lcd, "b", &news};
};

QString focus() { return QApplication::focusWidget()->objectName(); }

} // namespace

/// Screens over each other: who shows, who has the keyboard, who is active.
class NavigationTest : public QObject
{
    Q_OBJECT
private slots:
    void opensAndLeaves();
    void slidesMeet();
    void knobReachesEveryItem();
    void editedItemHasTheKeyboard();
    void coveredNoticeLeavesLater();
    void destroyedScreensAreOut();
    void pendingEntriesAreCountedTogether();
};

void NavigationTest::opensAndLeaves()
{
    Stage on;
    on.root.setRootScreen();
    on.root.showMe();  // on top already
    on.root.hideMe();  // the last one stays
    on.a.hideMe();     // not on the stack
    Lcd::keys("\x1b"); // does not leave the top of the menu
    QCOMPARE(std::exchange(on.news, {}), QStringList{"+root"});
    QTRY_COMPARE(on.root.geometry(), shown);

    on.a.setTitle("title & <b>");
    on.a.showMe();
    QCOMPARE(std::exchange(on.news, {}), (QStringList{"-root", "+a"}));
    QCOMPARE(focus(), "a");
    QCOMPARE(on.a.findChild<QLabel *>()->text(), "TITLE & <B>");
    QVERIFY(on.a.geometry().x() > 0); // it comes from the right
    QTRY_VERIFY(!on.root.isVisible());
    QCOMPARE(on.a.geometry(), shown);

    Lcd::keys("\x1b");
    QCOMPARE(std::exchange(on.news, {}), (QStringList{"-a", "+root"}));
    QVERIFY(on.root.isVisible());
    QTRY_VERIFY(!on.a.isVisible());
    QCOMPARE(on.a.geometry(), parked);
    QCOMPARE(focus(), "root"); // Qt takes no part when something with the focus hides
}

void NavigationTest::slidesMeet()
{
    Stage on;
    on.a.showMe();
    on.b.showMe(); // while the first still slides
    on.a.showMe(); // from under the other one
    QTRY_VERIFY(!on.b.isVisible());
    QTRY_COMPARE(on.a.geometry(), shown);
    QVERIFY(on.a.isVisible());
    on.a.hideMe(); // it stood there once
    QCOMPARE(focus(), "b");
    on.b.hideMe();
    on.b.showMe(); // back before it was out
    on.a.showMe();
    QTRY_VERIFY(!on.root.isVisible() && !on.b.isVisible());
    on.a.hideMe();
    on.b.hideMe();
    QTRY_VERIFY(!on.a.isVisible() && !on.b.isVisible());
    QVERIFY(on.root.isVisible());
    QCOMPARE(on.root.geometry(), shown);
}

void NavigationTest::knobReachesEveryItem()
{
    Stage on;
    on.a.showSaveButton();
    for (const char *leaving : {"D\r", "DD\r", "DDDDDAE\r"}) { // wheel, Save, Back; the end stops it
        on.a.showMe();
        Lcd::keys(leaving);
        QCOMPARE(focus(), "root");
    }
    on.a.showMe();
    Lcd::keys("A\r"); // and so does the start; each opening begins there
    QCOMPARE(QApplication::focusWidget(), &on.a.wheel);
}

void NavigationTest::editedItemHasTheKeyboard()
{
    Stage on;
    on.a.showMe();
    for (const char *end : {"\r", "\x1b"}) {
        on.a.wheel.setCurrentText("a");
        Lcd::keys("\rD"); // selects the wheel, and turns it
        QCOMPARE(on.a.wheel.text(), "b");
        QCOMPARE(on.a.wheel.property("state"), "selected");
        on.a.wheel.select(); // as the activation of a screen may
        Lcd::keys(end);
        QCOMPARE(focus(), "a");
        QCOMPARE(on.a.wheel.property("state"), "hovered");
    }
    Lcd::keys("\r");
    on.a.hideMe(); // with the item still in hand
    QCOMPARE(focus(), "root");
}

void NavigationTest::coveredNoticeLeavesLater()
{
    Stage on;
    ScreenWarning lock(&on.lcd, false, false);
    ScreenReconnecting reconnecting(&on.lcd);
    lock.present();
    reconnecting.present();
    Lcd::keys("\x1b\rDA"); // nobody leaves this one
    lock.withdraw();       // covered: later
    QVERIFY(lock.isVisible() && QApplication::focusWidget() == &reconnecting);
    reconnecting.withdraw();
    QTRY_COMPARE(focus(), "root");
    QTRY_VERIFY(!lock.isVisible() && !reconnecting.isVisible());
    lock.present();
    reconnecting.present();
    lock.withdraw();
    lock.present(); // wanted again: it comes to the top, and stays
    reconnecting.withdraw();
    QCOMPARE(QApplication::focusWidget(), &lock);
    lock.withdraw();
    QTRY_COMPARE(focus(), "root");
}

void NavigationTest::destroyedScreensAreOut()
{
    NavigationManager::instance()->connectionStateChanged(true); // nobody is left of the tests before
    Stage on;
    {
        Page page(&on.lcd, "page", &on.news);
        page.showMe();
        Lcd::keys("\r");
    }
    QCOMPARE(focus(), "root");
    on.news.clear();
    NavigationManager::instance()->connectionStateChanged(false);
    NavigationManager::instance()->connectionStateChanged(true);
    QCOMPARE(on.news, (QStringList{"-root", "+root"})); // active again: it asks for all its values
}

void NavigationTest::pendingEntriesAreCountedTogether()
{
    Stage on;
    const QSignalSpy ofA(&on.a, &Screen::pendingEntriesFinished), ofB(&on.b, &Screen::pendingEntriesFinished);
    on.a.endPendingEntry(); // none began
    Screen::beginPendingEntry();
    Screen::beginPendingEntry();
    on.a.endPendingEntry();
    QCOMPARE(ofA.count() + ofB.count(), 0);
    on.b.endPendingEntry();
    QCOMPARE(ofA.count(), 0);
    QCOMPARE(ofB.count(), 1);
}

QTEST_MAIN(NavigationTest)
#include "navigationtest.moc"
