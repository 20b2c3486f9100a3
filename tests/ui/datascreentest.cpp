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
    using ScreenData::addHeaderLine;
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
        QStringList captions;
        for (const DataLine *line : lines()) {
            if (line->captionLabel()->property("state") == "hovered")
                captions += line->caption();
        }
        return captions.join('+');
    }
    QString value(qsizetype line) const { return lines()[line]->values().first()->text(); }

    QStringList ports;
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
    Lcd lcd;
    List root(&lcd), page(&lcd);
    page.addPropertyLine("Time", &propDatetimeCurrentTime);
    page.addPropertyLine("Again", &propDatetimeCurrentTime);
    page.addPropertyLine("Brightness", &propLcdBrightness);
    page.addPropertyLine("Lock", &propLcdControlLock);
    page.addWatchedProperty(&m_other);
    Dt3Property nowhere;
    page.addPropertyLine("Nothing", &nowhere);
    root.showMe();
    page.showMe();
    const QStringList subscribes{"GET /MANAGEMENT/DATETIME.CurrentTime", "GET /SYS/CECU/LCD.Brightness",
        "GET /SYS/CECU/LCD.ControlLock", "GET /OTHER.Watched", "OPEN /MANAGEMENT/DATETIME", "OPEN /SYS/CECU/LCD",
        "OPEN /OTHER"};
    QTRY_COMPARE(m_wire.requests(), subscribes);
    m_wire.takeLines();
    page.removeLine("Time");
    page.removeLine("Again"); // its node is still held
    page.hideMe();
    QTRY_COMPARE(m_wire.requests(), (QStringList{"CLOSE /MANAGEMENT/DATETIME", "CLOSE /SYS/CECU/LCD", "CLOSE /OTHER"}));
}

void DataScreenTest::showsValues()
{
    Lcd lcd;
    List root(&lcd), page(&lcd);
    page.addPropertyLine("DHCP", &propNetworkDhcpEnabled);
    page.addPropertyLine("IP", &propNetworkIpAddress);
    page.addPropertyLine("IP again", &propNetworkIpAddress);
    page.addPropertyLine("Gateway", &propNetworkGatewayAddress);
    root.showMe();
    page.showMe();
    QCOMPARE(page.value(0), "TBD");
    QTRY_COMPARE(m_wire.lines().size(), 4);
    m_wire.answer("/MANAGEMENT/NETWORK.DhcpEnabled", "true");
    QTRY_COMPARE(page.value(0), "Enabled");
    m_wire.answer("/MANAGEMENT/NETWORK.IpAddress", "1.2.3.4");
    QTRY_COMPARE(page.value(1) + page.value(2), "1.2.3.41.2.3.4");
    page.lines()[1]->collection()->hideAll();
    page.navigator().hide(page.lines()[3]->collection());
    m_wire.change("/MANAGEMENT/NETWORK.IpAddress", "<b>5</b> & 6");
    m_wire.change("/MANAGEMENT/NETWORK.GatewayAddress", "9");
    QTRY_COMPARE(page.value(2), "<b>5</b> & 6");
    QCOMPARE(page.value(1), "1.2.3.4"); // hidden
    page.hideMe();
    QTRY_COMPARE(m_wire.requests().last(), "CLOSE /MANAGEMENT/NETWORK");
    m_wire.sendLines({"CHG /MANAGEMENT/NETWORK.IpAddress=7"});
    page.showMe();
    QTRY_COMPARE(m_wire.requests().count("GET /MANAGEMENT/NETWORK.IpAddress"), 2);
    m_wire.answer("/MANAGEMENT/NETWORK.DhcpEnabled", "raw");
    QTRY_COMPARE(page.value(0), "raw");
    QCOMPARE(page.value(2), "<b>5</b> & 6");
}

void DataScreenTest::opensChildWithThePortOfTheRow()
{
    Lcd lcd;
    List root(&lcd), page(&lcd), child(&lcd);
    page.addLine("Port 3", &child)->setPort("/I3", false);
    page.addLine("Plain");
    child.addPropertyLine("Type", &propPortStatusSignalType);
    child.addPropertyLine("Fixed", &propPortStatusColorSpace)->setPort("/O7", true);
    root.showMe();
    page.showMe();
    Lcd::keys("D\r"); // a row without a child: nothing opens
    QVERIFY(child.ports.isEmpty());
    Lcd::keys("A\r");
    QCOMPARE(child.ports, QStringList{"/I3"});
    QCOMPARE(propPortStatusSignalType.path(), "/MEDIA/PORTS/VIDEO/I3/STATUS.SignalType");
    QVERIFY(propPortStatusColorSpace.path().contains("/O7/"));
    QTRY_VERIFY(m_wire.requests().contains("OPEN /MEDIA/PORTS/VIDEO/I3/STATUS"));
    m_wire.answer("/MEDIA/PORTS/VIDEO/I3/STATUS.SignalType", "x");
    QTRY_COMPARE(child.value(0), "x");
    Lcd::keys("\x1b");
    QVERIFY(page.hasFocus());
    QCOMPARE(page.hovered(), "Port 3"); // where it was left
}

void DataScreenTest::absentBoardIsNotedOnce()
{
    Lcd lcd;
    List page(&lcd);
    page.addPropertyLine("V10", &propUidAdditionalFirmwareVersion3);
    page.addPropertyLine("Package", &propUidFirmwareVersion);
    page.showMe();
    page.ports.clear();
    const QString path = propUidAdditionalFirmwareVersion3.path();
    page.propertyReceived(path, "0.0.0b1");
    page.propertyReceived(propUidFirmwareVersion.path(), "0.0.0b0"); // without a number
    page.propertyChanged(path, "0.0.0b0");
    QCOMPARE(page.ports, QStringList());
    page.propertyReceived(path, "0.0.0b0");
    page.propertyReceived(path, "0.0.0b0");
    QCOMPARE(page.ports, QStringList{""});
}

void DataScreenTest::highlightSurvivesRemoval()
{
    Lcd lcd;
    List root(&lcd), page(&lcd);
    root.showMe();
    page.showMe();
    for (const char *caption : {"a", "b", "c"})
        page.addLine(caption);
    QCOMPARE(page.hovered(), "a");
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
    Lcd lcd;
    List page(&lcd);
    page.showMe();
    const auto *grid = page.findChild<QGridLayout *>();
    int rows = 0;
    qsizetype objects = 0;
    for (int week = 0; week < 50; ++week) {
        for (int i = 0; i < 5; ++i)
            page.addPropertyLine(QString::number(i), &propLcdBrightness);
        page.removeLine("0");
        page.removeLine("3");
        page.addLine("last");
        QCoreApplication::sendPostedEvents();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QStringList order;
        for (int row = 0; row < 4; ++row) // no gap where a row was
            order += static_cast<QLabel *>(grid->itemAtPosition(row, 1)->widget())->text();
        QCOMPARE(order, (QStringList{"1", "2", "4", "last"}));
        if (week == 1) {
            rows = grid->rowCount();
            objects = page.findChildren<QObject *>().size();
        }
        if (week > 1) {
            QCOMPARE(grid->rowCount(), rows);
            QCOMPARE(page.findChildren<QObject *>().size(), objects);
        }
        if (week % 2)
            page.clearLines();
        else
            for (const char *caption : {"last", "4", "1", "2"})
                page.removeLine(caption);
    }
}

void DataScreenTest::longListScrolls()
{
    Lcd lcd;
    List root(&lcd), page(&lcd);
    for (int i = 0; i < 48; ++i)
        page.addPropertyLine(QString("Row %1").arg(i), &propLcdBrightness);
    page.showBackButton();
    root.showMe();
    page.showMe();
    QTRY_VERIFY(!root.isVisible());
    const auto *bar = page.findChild<QScrollBar *>();
    for (const char *way : {"D", "A"}) {
        for (int i = 0; i < 47; ++i) {
            Lcd::keys(way);
            const int row = page.hovered().mid(4).toInt();
            QCOMPARE(row, *way == 'D' ? i + 1 : 46 - i);
            QVERIFY2(isInView(page.lines()[row]->captionLabel()), qPrintable(page.hovered()));
        }
        QVERIFY(*way == 'D' ? bar->value() == bar->maximum() : bar->value() < 30);
    }
    for (int i = 0; i < 20; ++i)
        Lcd::keys("D");
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
