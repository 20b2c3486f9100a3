#include "tests/ui/lcd.h"
#include "tests/ui/wire.h"
#include "ui/navigationmanager.h"
#include "ui/screens/edidbrowser.h"
#include "ui/screens/screenedid.h"
#include "ui/screens/sharedscreens.h"
#include "ui/screenwarning.h"

#include <QApplication>

namespace {

struct Case
{
    QByteArray keys;
    QString banks, title, sources, destinations = {};
    QByteArray leave = "\rDDDD\r"; ///< From the last entry of the last wheel, in hand.
    QString sends = {};
};

/// What it takes to show an EDID.
QStringList fetch(const QString &node)
{
    return QString("GET %1.PreferredResolution|GET %1.MonitorName|GET %1.AudioInfo|OPEN %1").arg(node).split('|');
}

/// All that is on a wheel in hand. Leaves it at the last.
QString turned(const ItemWheelListLabel *wheel)
{
    QStringList texts;
    Lcd::keys("QQ");
    do {
        texts += wheel->text();
        Lcd::keys("D");
    } while (wheel->text() != texts.last() && texts.size() <= wheel->optionCount());
    return texts.join(' ');
}

} // namespace

/// The EDIDs as the device lists them, on the pages that look at them, switch and save them.
class EdidScreensTest : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void init();
    void cleanup() { m_lcd.reset(); }
    void wheelsHoldWhatIsListed_data();
    void wheelsHoldWhatIsListed();
    void oneIsOpenAtATime();
    void lateListsAreOfNoAccount();

private:
    /// The page that these keys lead to from the one that shows.
    void open(const QByteArray &keys)
    {
        Lcd::keys(keys);
        m_page = QApplication::focusWidget();
    }
    void list(const QString &banks);
    ItemWheelListLabel *wheel(int index) const { return m_page->findChildren<ItemWheelListLabel *>().value(index); }
    /// What is known of the EDID.
    static QString values()
    {
        return QStringList(Lcd::rows().mid(1, 3)).replaceInStrings(QRegularExpression(".*: "), "").join('|');
    }

    Wire m_wire;
    std::unique_ptr<Lcd> m_lcd;
    const QWidget *m_page = nullptr;
};

void EdidScreensTest::initTestCase()
{
    connect(Dt3Manager::instance(), &Dt3Manager::connectionStateChanged, NavigationManager::instance(),
        &NavigationManager::connectionStateChanged);
    QVERIFY(m_wire.connectProgram());
}

void EdidScreensTest::init()
{
    m_lcd = std::make_unique<Lcd>();
    Lcd *lcd = m_lcd.get();
    SharedScreens shared{};
    shared.edidViewer = new ScreenEdidViewer(lcd);
    shared.edidSwitcher = new ScreenEdidSwitcher(lcd);
    shared.edidSaver = new ScreenEdidSaver(lcd);
    (new ScreenWarning(lcd, false, false))->showMe();
    (new ScreenEdid(lcd, shared))->showMe();
    m_wire.sent();
}

/// Answers for these banks with the names that follow each.
void EdidScreensTest::list(const QString &banks)
{
    for (const QString &bank : banks.split(", ")) {
        const QString node = "/EDID/" + bank.first(1);
        const QStringList nodes = bank.split(' ').mid(1).replaceInStrings(QRegularExpression("^"), "n- " + node + '/');
        m_wire.answer("GET " + node, QStringList("n- F9") + nodes); // and one of no bank
    }
}

void EdidScreensTest::wheelsHoldWhatIsListed_data()
{
    QTest::addColumn<Case>("is");
    const auto row = [](const char *name, const Case &is) { QTest::newRow(name) << is; };
    row("factory", {"\r\r", "F F1 F2 X3 F1", "FACTORY EDIDS", "F1 F2 X3"});
    row("user, none", {"\rDD\r", "U", "USER EDIDS", ""});
    row("emulated", {"\rDDD\r", "E E1", "EMULATED EDIDS", "E1"});
    row("switch all",
        {"D\r", "F F1 F2, U X1 U1, D D1, E X1 E2 E1 E2 E3", "SWITCH", "F1 F2 U1 D1", "E2 E1 E3 All", "\rD\r",
            "CALL /EDID:switchAll(D1)"});
    row("switch one",
        {"D\r", "F F1 F12, U, D, E E1 E3", "SWITCH", "F1 F12", "E1 E3 All", "A\rD\r", "CALL /EDID:switch(F12:E3)"});
    row("nothing emulated", {"D\r", "F, U, D D1, E", "SWITCH", "D1", "", "\rD\r"});
    row("nothing to switch", {"D\r", "F, U, D, E E1", "SWITCH", "", "E1 All", "\rD\r"});
    row("save", {"DD\r", "U U2 U5 X1 U2, D X1 D1 D3", "SAVE", "D1 D3", "U2 U5", "\rD\r", "CALL /EDID:copy(D3:U5)"});
}

void EdidScreensTest::wheelsHoldWhatIsListed()
{
    QFETCH(const Case, is);
    open(is.keys);
    list(is.banks);
    const auto node = [&](const QString &name) {
        return "/EDID/" + (wheel(1) ? name : is.banks).first(1) + '/' + name; // the viewer takes them as they come
    };
    const QString first = is.sources.section(' ', 0, 0), last = is.sources.section(' ', -1);
    QStringList requests;
    for (const QString &bank : is.banks.split(", "))
        requests += "GET /EDID/" + bank.first(1);
    QCOMPARE(m_wire.sent(), requests + (first.isEmpty() ? QStringList() : fetch(node(first))));
    QCOMPARE(Lcd::title(), is.title);
    QCOMPARE(values(), "||"); // until they are answered
    Lcd::keys("\r");
    QCOMPARE(turned(wheel(0)), is.sources);
    const QStringList turns = m_wire.sent(); // nothing where it only turned against its ends
    QCOMPARE(turns.value(turns.size() - 1), last == first ? QString() : "OPEN " + node(last));
    if (wheel(1)) {
        Lcd::keys("\rDDDD\r");
        QCOMPARE(turned(wheel(1)), is.destinations);
    }
    Lcd::keys(is.leave);
    QCOMPARE(m_wire.sent().join(' '), (is.sends + (last.isEmpty() ? "" : " CLOSE " + node(last))).trimmed());
    QVERIFY(QApplication::focusWidget() != m_page);
}

/// However fast the wheel turns, from bank to bank, and over a loss of the link.
void EdidScreensTest::oneIsOpenAtATime()
{
    open("D\r");
    list("F F1 F3, U U1, D, E E1");
    m_wire.sent();
    Lcd::keys("\rDDD");
    QTRY_COMPARE(m_wire.requests(),
        QStringList("CLOSE /EDID/F/F1") + fetch("/EDID/F/F3") + QStringList("CLOSE /EDID/F/F3") + fetch("/EDID/U/U1"));
    m_wire.answer("/EDID/F/F3.MonitorName", "of the one before");
    m_wire.answer("/EDID/U/U1.PreferredResolution", "800x600");
    m_wire.change("/EDID/U/U1.MonitorName", "Wall");
    m_wire.sent();
    Lcd::keys("\x1b"); // puts the wheel down
    QCOMPARE(wheel(0)->text() + '|' + values(), "U1|800x600|Wall|");

    m_wire.dropClient();
    list("F F3 F4, U, D, E E2");
    const QStringList requests = m_wire.sent();
    QCOMPARE(requests.first() + ", " + requests.last(), "CLOSE /EDID/U/U1, OPEN /EDID/F/F3");
    QCOMPARE(wheel(1)->text() + values(), "E2||");
    Lcd::keys("\r");
    QCOMPARE(turned(wheel(0)), "F3 F4");
}

void EdidScreensTest::lateListsAreOfNoAccount()
{
    Lcd::keys("\r");
    for (const bool another : {false, true}) { // nobody looks, or at another bank
        Lcd::keys("\r\x1b");
        if (another)
            open("D\r");
        list(another ? "F F9, D D1" : "F F9");
        QCOMPARE(m_wire.sent().filter("F9"), QStringList());
    }
    QCOMPARE(wheel(0)->text(), "D1");
}

QTEST_MAIN(EdidScreensTest)
#include "edidscreenstest.moc"
