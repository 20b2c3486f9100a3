#include "tests/ui/lcd.h"
#include "tests/ui/wire.h"
#include "ui/propertydisplaylabel.h"
#include "ui/screendata.h"

#include <QScrollBar>

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
    using ScreenData::removeLine;
    using ScreenData::ScreenData;

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
};

/// A page over the root of a menu.
struct Menu
{
    Menu() { root.showMe(); }

    Lcd lcd;
    List root{&lcd}, page{&lcd};
};

} // namespace

/// A list page on the wire and under the knob.
class DataScreenTest : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase() { QVERIFY(m_wire.connectProgram()); }
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
};

void DataScreenTest::fetchesOnceAndCloses()
{
    Menu menu;
    List &page = menu.page;
    Dt3Property nowhere, watched;
    watched.setPath("/OTHER.Watched");
    page.addPropertyLine("Time", &propDatetimeCurrentTime);
    page.addPropertyLine("Again", &propDatetimeCurrentTime);
    page.addPropertyLine("Brightness", &propLcdBrightness);
    page.addPropertyLine("Nothing", &nowhere);
    page.addWatchedProperty(&watched);
    page.showMe();
    page.removeLine("Time");
    page.removeLine("Again"); // its node is still held
    page.hideMe();
    QCOMPARE(m_wire.sent().join(", "),
        "GET /MANAGEMENT/DATETIME.CurrentTime, GET /SYS/CECU/LCD.Brightness, GET /OTHER.Watched, "
        "OPEN /MANAGEMENT/DATETIME, OPEN /SYS/CECU/LCD, OPEN /OTHER, "
        "CLOSE /MANAGEMENT/DATETIME, CLOSE /SYS/CECU/LCD, CLOSE /OTHER");
}

void DataScreenTest::showsValues()
{
    Menu menu;
    List &page = menu.page;
    page.addPropertyLine("DHCP", &propNetworkDhcpEnabled);
    page.addPropertyLine("IP", &propNetworkIpAddress);
    page.addPropertyLine("IP again", &propNetworkIpAddress);
    page.showMe();
    QCOMPARE(page.values(), "TBD TBD TBD");
    m_wire.answer("/MANAGEMENT/NETWORK.DhcpEnabled", "true");
    m_wire.answer("/MANAGEMENT/NETWORK.IpAddress", "1.2.3.4");
    QTRY_COMPARE(page.values(), "Enabled 1.2.3.4 1.2.3.4");
    page.lines()[1]->collection()->hideAll();
    m_wire.change("/MANAGEMENT/NETWORK.IpAddress", "<b>5</b>");
    QTRY_COMPARE(page.values(), "Enabled 1.2.3.4 <b>5</b>"); // a hidden one waits
    page.hideMe();
    QCOMPARE(m_wire.sent().last(), "CLOSE /MANAGEMENT/NETWORK");
    m_wire.sendLines({"CHG /MANAGEMENT/NETWORK.IpAddress=7"}); // is nobody's business now
    page.showMe();
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
    QVERIFY(propPortStatusColorSpace.path().contains("/O7/"));
    m_wire.answer("/MEDIA/PORTS/VIDEO/I3/STATUS.SignalType", "x");
    QTRY_COMPARE(child.values(), "x TBD");
    Lcd::keys("\x1b");
    QVERIFY(page.hasFocus());
    QCOMPARE(page.hovered(), "Port 3"); // where it was left
}

void DataScreenTest::absentBoardIsNotedOnce()
{
    struct Page : ScreenData
    {
        using ScreenData::ScreenData;
        void setPort(const QString &) override { ++notes; }
        int notes = 0;
    };
    Lcd lcd;
    Page page(&lcd);
    const QString path = propUidAdditionalFirmwareVersion3.path();
    page.propertyChanged(path, "0.0.0b0");
    QCOMPARE(page.notes, 0);
    page.propertyReceived(path, "0.0.0b0");
    page.propertyReceived(path, "0.0.0b0");
    QCOMPARE(page.notes, 1);
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
    QStringList weeks;
    for (int week = 0; week < 4; ++week) {
        for (const char *caption : {"0", "1", "2", "3", "4"})
            page.addPropertyLine(caption, &propLcdBrightness);
        page.removeLine("0");
        page.removeLine("3");
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QString order;
        for (int row = 0; row < 3; ++row) // no gap where a row was
            order += static_cast<QLabel *>(grid->itemAtPosition(row, 1)->widget())->text();
        weeks += QString("%1 %2 %3").arg(order).arg(grid->rowCount()).arg(page.findChildren<QObject *>().size());
        page.clearLines();
    }
    QVERIFY2(weeks[1].startsWith("124 "), qPrintable(weeks[1]));
    QCOMPARE(weeks.mid(2), QStringList(2, weeks[1]));
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
    const auto isInView = [&](qsizetype row) {
        const QWidget *label = page.lines()[row]->captionLabel(), *view = label->parentWidget()->parentWidget();
        return view->rect().contains(QRect(label->mapTo(view, QPoint()), label->size()));
    };
    for (int turn = 1; turn <= 94; ++turn) { // to the last one, and back
        Lcd::keys(turn <= 47 ? "D" : "A");
        const int row = turn <= 47 ? turn : 94 - turn;
        QCOMPARE(page.hovered(), QString("Row %1").arg(row));
        QVERIFY2(isInView(row), qPrintable(page.hovered()));
        QVERIFY(turn != 47 || bar->value() == bar->maximum());
    }
    QVERIFY(bar->value() < 30);
    Lcd::keys("DDDDDDDDDDDDDDDDDDDD");
    for (int i = 0; i < 15; ++i)
        page.removeLine(QString("Row %1").arg(i)); // those above go: the highlight is still in view
    QTRY_VERIFY(isInView(5));
    QCOMPARE(page.hovered(), "Row 20");
    page.hideMe();
    page.showMe();
    QTRY_COMPARE(bar->value(), 0); // at the first row again
}

QTEST_MAIN(DataScreenTest)
#include "datascreentest.moc"
