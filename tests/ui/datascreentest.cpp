#include "protocol/catalogue.h"
#include "tests/ui/lcd.h"
#include "tests/ui/wire.h"
#include "ui/propertydisplaylabel.h"
#include "ui/screendata.h"

#include <QScrollBar>
#include <QTest>

namespace {

/// A list page, with its row operations in the open.
class List : public ScreenData
{
public:
    using ScreenData::addLine;
    using ScreenData::addPropertyLine;
    using ScreenData::addWatchedProperty;
    using ScreenData::clearLines;
    using ScreenData::lines;
    using ScreenData::navigator;
    using ScreenData::removeLine;
    using ScreenData::ScreenData;

    void setPort(const QString &port) override
    {
        ports.append(port);
        ScreenData::setPort(port);
    }
    QString hovered() const
    {
        QString captions;
        for (const DataLine *line : lines())
            captions += line->captionLabel()->property("state") == "hovered" ? line->caption() : QString();
        return captions;
    }
    QString values() const
    {
        QStringList texts;
        for (const DataLine *line : lines())
            texts += line->values().first()->text();
        return texts.join(' ');
    }

    QStringList ports;
};

/// A page over the root of a menu.
struct Menu
{
    Menu() { root.showMe(); }

    Lcd lcd;
    List root{&lcd}, page{&lcd};
};

bool isInView(const QWidget *row)
{
    const QWidget *view = row->parentWidget()->parentWidget();
    return view->rect().contains(QRect(row->mapTo(view, QPoint()), row->size()));
}

} // namespace

/// A list page on the wire and under the knob.
class DataScreenTest : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void init() { m_wire.takeLines(); }
    void fetchesOnceAndCloses();
    void showsValues();
    void opensChildWithThePortOfTheRow();
    void absentBoardIsNotedOnce();
    void highlightSurvivesRemoval();
    void rowsLeaveNothing();
    void longListScrolls();

private:
    Wire m_wire;
    Dt3Property m_other;
};

void DataScreenTest::initTestCase()
{
    fillCatalogue();
    m_other.setPath("/OTHER.Watched");
    Dt3Manager::instance()->connectToDevice();
    QTRY_VERIFY(m_wire.hasClient());
}

void DataScreenTest::fetchesOnceAndCloses()
{
    Menu menu;
    List &page = menu.page;
    page.addPropertyLine("Time", &propDatetimeCurrentTime);
    page.addPropertyLine("Again", &propDatetimeCurrentTime);
    page.addPropertyLine("Brightness", &propLcdBrightness);
    page.addWatchedProperty(&m_other);
    Dt3Property nowhere;
    page.addPropertyLine("Nothing", &nowhere);
    page.showMe();
    const QStringList subscribes{"GET /MANAGEMENT/DATETIME.CurrentTime", "GET /SYS/CECU/LCD.Brightness",
        "GET /OTHER.Watched", "OPEN /MANAGEMENT/DATETIME", "OPEN /SYS/CECU/LCD", "OPEN /OTHER"};
    QTRY_COMPARE(m_wire.requests(), subscribes);
    m_wire.takeLines();
    page.removeLine("Time");
    page.removeLine("Again"); // its node is still held
    page.hideMe();
    QTRY_COMPARE(m_wire.requests(), (QStringList{"CLOSE /MANAGEMENT/DATETIME", "CLOSE /SYS/CECU/LCD", "CLOSE /OTHER"}));
}

void DataScreenTest::showsValues()
{
    Menu menu;
    List &page = menu.page;
    page.addPropertyLine("DHCP", &propNetworkDhcpEnabled);
    page.addPropertyLine("IP", &propNetworkIpAddress);
    page.addPropertyLine("IP again", &propNetworkIpAddress);
    page.showMe();
    QTRY_COMPARE(m_wire.lines().size(), 3);
    QCOMPARE(page.values(), "TBD TBD TBD");
    m_wire.answer("/MANAGEMENT/NETWORK.DhcpEnabled", "true");
    m_wire.answer("/MANAGEMENT/NETWORK.IpAddress", "1.2.3.4");
    QTRY_COMPARE(page.values(), "Enabled 1.2.3.4 1.2.3.4");
    page.lines()[1]->collection()->hideAll();
    m_wire.change("/MANAGEMENT/NETWORK.IpAddress", "<b>5</b>");
    QTRY_COMPARE(page.values(), "Enabled 1.2.3.4 <b>5</b>"); // a hidden one waits
    page.hideMe();
    QTRY_COMPARE(m_wire.requests().last(), "CLOSE /MANAGEMENT/NETWORK");
    m_wire.sendLines({"CHG /MANAGEMENT/NETWORK.IpAddress=7"}); // is nobody's business now
    page.showMe();
    QTRY_COMPARE(m_wire.requests().count("GET /MANAGEMENT/NETWORK.IpAddress"), 2);
    m_wire.answer("/MANAGEMENT/NETWORK.DhcpEnabled", "raw");
    QTRY_COMPARE(page.values(), "raw 1.2.3.4 <b>5</b>");
}

void DataScreenTest::opensChildWithThePortOfTheRow()
{
    Menu menu;
    List &page = menu.page, child(&menu.lcd);
    page.addLine("Port 3", &child)->setPort("/I3", false);
    page.addLine("Plain");
    child.addPropertyLine("Type", &propPortStatusSignalType);
    child.addPropertyLine("Fixed", &propPortStatusColorSpace)->setPort("/O7", true);
    page.showMe();
    Lcd::keys("D\r"); // a row without a child: nothing opens
    QVERIFY(page.hasFocus());
    Lcd::keys("A\r");
    QCOMPARE(child.ports, QStringList{"/I3"});
    QVERIFY(propPortStatusColorSpace.path().contains("/O7/"));
    QTRY_VERIFY(m_wire.requests().contains("OPEN /MEDIA/PORTS/VIDEO/I3/STATUS"));
    m_wire.answer("/MEDIA/PORTS/VIDEO/I3/STATUS.SignalType", "x");
    QTRY_COMPARE(child.values(), "x TBD");
    Lcd::keys("\x1b");
    QVERIFY(page.hasFocus());
    QCOMPARE(page.hovered(), "Port 3"); // where it was left
}

void DataScreenTest::absentBoardIsNotedOnce()
{
    Menu menu;
    const QString path = propUidAdditionalFirmwareVersion3.path();
    menu.page.propertyChanged(path, "0.0.0b0");
    QCOMPARE(menu.page.ports, QStringList());
    menu.page.propertyReceived(path, "0.0.0b0");
    menu.page.propertyReceived(path, "0.0.0b0");
    QCOMPARE(menu.page.ports, QStringList{""});
}

void DataScreenTest::highlightSurvivesRemoval()
{
    Menu menu;
    List &page = menu.page;
    page.showMe();
    for (const char *caption : {"a", "b", "c"})
        page.addLine(caption);
    Lcd::keys("DD");
    page.removeLine("c");
    QCOMPARE(page.hovered(), "b");
    page.addLine("d");
    QCOMPARE(page.hovered(), "a"); // a new row takes it back to the first
    page.removeLine("a");
    QCOMPARE(page.hovered(), "b");
    page.clearLines();
    Lcd::keys("D\rA");
    page.addLine("e");
    QCOMPARE(page.hovered(), "e");
    // A row that is removed by what it opens is not gone before its signal has ended.
    connect(page.lines()[0]->captionLabel(), &ItemLabel::signalSelected, &page, [&page] { page.clearLines(); });
    Lcd::keys("\r");
    QVERIFY(page.lines().isEmpty());
}

void DataScreenTest::rowsLeaveNothing()
{
    Menu menu;
    List &page = menu.page;
    page.showMe();
    const auto *grid = page.findChild<QGridLayout *>();
    int rows = 0;
    qsizetype objects = 0;
    for (int week = 0; week < 10; ++week) {
        for (const char *caption : {"0", "1", "2", "3", "4"})
            page.addPropertyLine(caption, &propLcdBrightness);
        page.removeLine("0");
        page.removeLine("3");
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QString order;
        for (int row = 0; row < 3; ++row) // no gap where a row was
            order += static_cast<QLabel *>(grid->itemAtPosition(row, 1)->widget())->text();
        QCOMPARE(order, "124");
        if (week < 2) {
            rows = grid->rowCount();
            objects = page.findChildren<QObject *>().size();
        }
        QCOMPARE(grid->rowCount(), rows);
        QCOMPARE(page.findChildren<QObject *>().size(), objects);
        page.clearLines();
    }
}

void DataScreenTest::longListScrolls()
{
    Menu menu;
    List &page = menu.page;
    for (int i = 0; i < 48; ++i)
        page.addPropertyLine(QString("Row %1").arg(i), &propLcdBrightness);
    page.showBackButton();
    page.showMe();
    QTRY_VERIFY(!menu.root.isVisible());
    const auto *bar = page.findChild<QScrollBar *>();
    for (int turn = 1; turn <= 94; ++turn) { // to the last one, and back
        Lcd::keys(turn <= 47 ? "D" : "A");
        const int row = turn <= 47 ? turn : 94 - turn;
        QCOMPARE(page.hovered(), QString("Row %1").arg(row));
        QVERIFY2(isInView(page.lines()[row]->captionLabel()), qPrintable(page.hovered()));
        QVERIFY(turn != 47 || bar->value() == bar->maximum());
    }
    QVERIFY(bar->value() < 30);
    Lcd::keys("DDDDDDDDDDDDDDDDDDDD");
    for (int i = 0; i < 15; ++i)
        page.removeLine(QString("Row %1").arg(i)); // those above go: the highlight is still in view
    QTRY_VERIFY(isInView(page.lines()[5]->captionLabel()));
    QCOMPARE(page.hovered(), "Row 20");
    page.hideMe();
    page.showMe();
    QTRY_COMPARE(bar->value(), 0); // at the first row again
}

QTEST_MAIN(DataScreenTest)
#include "datascreentest.moc"
