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

QString focus()
{
    const QWidget *widget = QApplication::focusWidget();
    return widget ? widget->objectName() : QStringLiteral("nobody");
}

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
    void noScreenStandsTwice();
    void coveredNoticeLeavesLater();
    void reconnectionActivatesTheTop();
    void destroyedScreensAreOut();
    void pendingEntriesAreCountedTogether();
};

void NavigationTest::opensAndLeaves()
{
    Lcd lcd;
    QStringList news;
    Page root(&lcd, "root", &news), child(&lcd, "child", &news);
    root.setRootScreen();
    root.showMe();
    root.showMe();     // on top already
    root.hideMe();     // the last one stays
    child.hideMe();    // not on the stack
    Lcd::keys("\x1b"); // does not leave the top of the menu
    QCOMPARE(std::exchange(news, {}), QStringList{"+root"});
    QTRY_COMPARE(root.geometry(), shown);

    child.setTitle("title & <b>");
    child.showMe();
    QCOMPARE(std::exchange(news, {}), (QStringList{"-root", "+child"}));
    QCOMPARE(focus(), "child");
    QCOMPARE(child.findChild<QLabel *>()->text(), "TITLE & <B>");
    QVERIFY(child.geometry().x() > 0); // it comes from the right
    QTRY_VERIFY(!root.isVisible());
    QCOMPARE(child.geometry(), shown);

    Lcd::keys("\x1b");
    QCOMPARE(std::exchange(news, {}), (QStringList{"-child", "+root"}));
    QCOMPARE(focus(), "root");
    QVERIFY(root.isVisible());
    QTRY_VERIFY(!child.isVisible());
    QCOMPARE(child.geometry(), parked);
    QCOMPARE(focus(), "root"); // Qt takes no part when something with the focus hides
}

void NavigationTest::slidesMeet()
{
    Lcd lcd;
    QStringList news;
    Page root(&lcd, "root", &news), a(&lcd, "a", &news), b(&lcd, "b", &news);
    root.showMe();
    a.showMe();
    b.showMe(); // while the first still slides
    QTRY_VERIFY(!a.isVisible() && !root.isVisible());
    QCOMPARE(b.geometry(), shown);
    b.hideMe();
    b.showMe(); // back before it was out
    QTRY_VERIFY(!a.isVisible());
    QCOMPARE(b.geometry(), shown);
    QVERIFY(b.isVisible());
    b.hideMe();
    a.hideMe();
    QTRY_VERIFY(!b.isVisible() && !a.isVisible());
    QVERIFY(root.isVisible());
    QCOMPARE(root.geometry(), shown);
}

void NavigationTest::knobReachesEveryItem()
{
    Lcd lcd;
    QStringList news;
    Page root(&lcd, "root", &news), page(&lcd, "page", &news);
    page.showSaveButton();
    root.showMe();
    const auto leaves = [&](const char *keys) {
        page.showMe();
        Lcd::keys(keys);
        return focus() == "root";
    };
    QVERIFY(leaves("DD\r")); // wheel, Save, Back
    QVERIFY(leaves("D\r"));
    QVERIFY(leaves("DDDDAA\x1b"));
    QVERIFY(leaves("DDDDDAE\r")); // the end stops it
    page.showMe();
    Lcd::keys("DDDQQ\r"); // and so does the start; each opening begins there
    QCOMPARE(QApplication::focusWidget(), &page.wheel);
}

void NavigationTest::editedItemHasTheKeyboard()
{
    Lcd lcd;
    QStringList news;
    Page root(&lcd, "root", &news), page(&lcd, "page", &news);
    root.showMe();
    page.showMe();
    for (const char *end : {"\r", "\x1b"}) {
        Lcd::keys("\rD"); // selects the wheel, and turns it
        QCOMPARE(page.wheel.text(), "b");
        QCOMPARE(page.wheel.property("state"), "selected");
        page.wheel.select(); // as the activation of a screen may
        Lcd::keys(end);
        QCOMPARE(focus(), "page");
        QCOMPARE(page.wheel.property("state"), "hovered");
        page.wheel.setCurrentText("a");
    }
    Lcd::keys("\r");
    page.hideMe(); // with the item still in hand
    QCOMPARE(focus(), "root");
}

void NavigationTest::noScreenStandsTwice()
{
    Lcd lcd;
    QStringList news;
    Page root(&lcd, "root", &news), notice(&lcd, "notice", &news), other(&lcd, "other", &news);
    root.showMe();
    notice.showMe();
    other.showMe();
    news.clear();
    notice.showMe(); // while the other one slides in over it
    QCOMPARE(news, (QStringList{"-other", "+notice"}));
    QTRY_VERIFY(!other.isVisible());
    QTRY_COMPARE(notice.geometry(), shown);
    QVERIFY(notice.isVisible());
    notice.hideMe();
    QCOMPARE(focus(), "other");
    other.hideMe();
    QCOMPARE(focus(), "root");
}

void NavigationTest::coveredNoticeLeavesLater()
{
    Lcd lcd;
    QStringList news;
    Page root(&lcd, "root", &news);
    ScreenWarning lock(&lcd, false, false);
    ScreenReconnecting reconnecting(&lcd);
    root.showMe();
    lock.present();
    reconnecting.present();
    reconnecting.setFocus();
    Lcd::keys("\x1b\rDA"); // nobody leaves this one
    QVERIFY(lock.isVisible() && reconnecting.isVisible());
    lock.withdraw(); // covered: later
    QVERIFY(QApplication::focusWidget() == &reconnecting);
    reconnecting.withdraw();
    QTRY_COMPARE(focus(), "root");
    QTRY_VERIFY(!lock.isVisible() && !reconnecting.isVisible());
    lock.present();
    reconnecting.present();
    lock.withdraw();
    lock.present(); // wanted again: it comes to the top, and stays
    QVERIFY(QApplication::focusWidget() == &lock);
    reconnecting.withdraw();
    lock.withdraw();
    QTRY_COMPARE(focus(), "root");
}

void NavigationTest::reconnectionActivatesTheTop()
{
    Lcd lcd;
    QStringList news;
    Page root(&lcd, "root", &news), page(&lcd, "page", &news);
    root.showMe();
    page.showMe();
    news.clear();
    NavigationManager::instance()->connectionStateChanged(false);
    NavigationManager::instance()->connectionStateChanged(true);
    QCOMPARE(news, (QStringList{"-page", "+page"}));
}

void NavigationTest::destroyedScreensAreOut()
{
    NavigationManager::instance()->connectionStateChanged(true); // nobody is left of the tests before
    Lcd lcd;
    QStringList news;
    Page root(&lcd, "root", &news);
    root.showMe();
    {
        Page page(&lcd, "page", &news);
        page.showMe();
        Lcd::keys("\r");
    }
    QCOMPARE(focus(), "root");
    NavigationManager::instance()->connectionStateChanged(true);
    QCOMPARE(news.last(), "+root");
}

void NavigationTest::pendingEntriesAreCountedTogether()
{
    Lcd lcd;
    QStringList news;
    Page one(&lcd, "one", &news), two(&lcd, "two", &news);
    const QSignalSpy ofOne(&one, &Screen::pendingEntriesFinished), ofTwo(&two, &Screen::pendingEntriesFinished);
    one.endPendingEntry(); // none began
    Screen::beginPendingEntry();
    Screen::beginPendingEntry();
    one.endPendingEntry();
    QCOMPARE(ofOne.count() + ofTwo.count(), 0);
    two.endPendingEntry();
    QCOMPARE(ofOne.count(), 0);
    QCOMPARE(ofTwo.count(), 1);
}

QTEST_MAIN(NavigationTest)
#include "navigationtest.moc"
