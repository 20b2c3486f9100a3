#include "tests/ui/lcd.h"
#include "ui/collection.h"
#include "ui/collectionnavigator.h"
#include "ui/itemslider.h"
#include "ui/itemwheellistlabel.h"
#include "ui/itemwheelrangelabel.h"

#include <QApplication>
#include <QSignalSpy>
#include <QTest>

#include <memory>

/// What the knob does to wheels, sliders and the highlight.
class ItemsTest : public QObject
{
    Q_OBJECT
private slots:
    void listWheelTurns_data();
    void listWheelTurns();
    void optionsComeAndGo();
    void rangeWheelTurns_data();
    void rangeWheelTurns();
    void sliderAsks_data();
    void sliderAsks();
    void sliderBar_data();
    void sliderBar();
    void highlightIsNeverLost();
};

void ItemsTest::listWheelTurns_data()
{
    QTest::addColumn<bool>("wrap");
    QTest::addColumn<QString>("from");
    QTest::addColumn<QByteArray>("keys");
    QTest::addColumn<QString>("to");
    QTest::addColumn<QString>("signalsSeen");
    QTest::newRow("stays at the first") << false << "a" << QByteArray("A") << "a"
                                        << "1 scrolled";
    QTest::newRow("wraps to the last") << true << "a" << QByteArray("A") << "e"
                                       << "1 scrolled";
    QTest::newRow("fast") << false << "c" << QByteArray("E") << "e"
                          << "1 scrolled";
    QTest::newRow("fast with wrap") << true << "c" << QByteArray("E") << "c"
                                    << "1 scrolled";
    QTest::newRow("fast back") << true << "c" << QByteArray("QQA") << "b"
                               << "3 scrolled";
    QTest::newRow("chosen") << false << "a" << QByteArray("DD\r") << "c"
                            << "2 scrolled chosen deselected";
    QTest::newRow("abandoned") << false << "b" << QByteArray("DD\x1b") << "b"
                               << "2 scrolled deselected";
    QTest::newRow("no option does not turn") << false << "z" << QByteArray("DA\x1b") << "z"
                                             << "0 scrolled deselected";
}

void ItemsTest::listWheelTurns()
{
    QFETCH(const bool, wrap);
    QFETCH(const QString, from);
    QFETCH(const QByteArray, keys);
    Lcd lcd;
    ItemWheelListLabel wheel(&lcd, wrap);
    wheel.show();
    wheel.setOptions({"a", "b", "c", "d", "e"});
    wheel.setCurrentText(from);
    QSignalSpy scrolled(&wheel, &ItemWheelListLabel::signalScrolled);
    QSignalSpy chosen(&wheel, &ItemLabel::signalChosen), deselected(&wheel, &ItemLabel::signalDeselected);
    wheel.select();
    QCOMPARE(QApplication::focusWidget(), &wheel);
    Lcd::keys(keys);
    QTEST(wheel.text(), "to");
    QTEST(QString::number(scrolled.count()) + " scrolled" + (chosen.isEmpty() ? "" : " chosen")
            + (deselected.isEmpty() ? "" : " deselected"),
        "signalsSeen");
}

void ItemsTest::optionsComeAndGo()
{
    ItemWheelListLabel wheel(nullptr, false);
    wheel.addOption("b");
    wheel.addOption("b");
    wheel.insertOption("b", "a");
    wheel.insertOption("nobody", "c");
    QCOMPARE(wheel.optionCount(), 3);
    QCOMPARE(wheel.text(), "b");
    wheel.removeOption("b");
    QCOMPARE(wheel.text(), "c"); // the one behind it
    wheel.removeOption("c");
    QCOMPARE(wheel.text(), "a"); // it was the last: the one before
    wheel.removeOption("a");
    QCOMPARE(wheel.text(), "");
    wheel.scroll(1);
    QCOMPARE(wheel.text(), "");
}

void ItemsTest::rangeWheelTurns_data()
{
    QTest::addColumn<QList<int>>("range"); // minimum, maximum, wrap, zero pad
    QTest::addColumn<QString>("from");
    QTest::addColumn<QByteArray>("keys");
    QTest::addColumn<QString>("to");
    QTest::newRow("pads") << QList{1, 31, 0, 1} << "4" << QByteArray("D") << "#05";
    QTest::newRow("pads to the maximum's digits") << QList{0, 255, 0, 1} << "6" << QByteArray("D") << "#007";
    QTest::newRow("does not pad") << QList{0, 255, 0, 0} << "6" << QByteArray("D") << "#7";
    QTest::newRow("stops") << QList{0, 59, 0, 1} << "55" << QByteArray("E") << "#59";
    QTest::newRow("wraps up") << QList{1, 12, 1, 1} << "12" << QByteArray("D") << "#01";
    QTest::newRow("wraps down") << QList{1, 12, 1, 1} << "01" << QByteArray("Q") << "#03";
    QTest::newRow("out of range does not turn") << QList{0, 59, 1, 1} << "61" << QByteArray("DAEQ") << "#61";
    QTest::newRow("no number counts as 0") << QList{0, 59, 0, 0} << "x" << QByteArray("D") << "#1";
    QTest::newRow("whole range of int") << QList{INT_MIN, INT_MAX, 1, 0} << "2147483647" << QByteArray("D")
                                        << "#-2147483648";
    QTest::newRow("Escape brings text and number back") << QList{0, 59, 0, 1} << "7" << QByteArray("EE\x1b") << "#7";
    QTest::newRow("and it goes on from there") << QList{0, 59, 0, 1} << "7" << QByteArray("EE\x1b+D") << "#08";
    QTest::newRow("Return keeps it, for Escape too") << QList{0, 59, 0, 1} << "7" << QByteArray("D\r+D\x1b") << "#08";
}

void ItemsTest::rangeWheelTurns()
{
    QFETCH(const QList<int>, range);
    QFETCH(const QString, from);
    QFETCH(const QByteArray, keys);
    Lcd lcd;
    ItemWheelRangeLabel wheel(&lcd, range[0], range[1], range[2], range[3], "#");
    wheel.show();
    wheel.setValue(from);
    QCOMPARE(wheel.text(), '#' + from);
    for (const QByteArray &selection : keys.split('+')) {
        wheel.select();
        Lcd::keys(selection);
    }
    QTEST(wheel.text(), "to");
}

void ItemsTest::sliderAsks_data()
{
    QTest::addColumn<QString>("value");
    QTest::addColumn<QByteArray>("keys");
    QTest::addColumn<QList<int>>("asked");
    QTest::newRow("both ways") << "50" << QByteArray("DEAQ") << QList{10, 10, -10, -10};
    QTest::newRow("not over the end") << "100" << QByteArray("DA") << QList{-10};
    QTest::newRow("not over the end by a part of a step") << "95" << QByteArray("DA") << QList{-10};
    QTest::newRow("not below the start") << "5" << QByteArray("AD") << QList{10};
    QTest::newRow("not from outside") << "200" << QByteArray("DA") << QList<int>{};
    QTest::newRow("huge") << "1e99" << QByteArray("DA") << QList<int>{};
    QTest::newRow("truncated") << "90.9" << QByteArray("D") << QList{10};
    QTest::newRow("nan is 0") << "nan" << QByteArray("A") << QList<int>{};
}

void ItemsTest::sliderAsks()
{
    QFETCH(const QString, value);
    QFETCH(const QByteArray, keys);
    Lcd lcd;
    ItemSlider slider(&lcd, 0, 100, 10);
    slider.show();
    slider.setValue(value);
    const QString shown = slider.valueText();
    QSignalSpy changed(&slider, &ItemSlider::signalChanged), deselected(&slider, &ItemSlider::signalDeselected);
    slider.select();
    slider.select(); // a screen that is activated again selects it again: it leaves the keyboard at once all the same
    Lcd::keys(keys + '\r');
    QList<int> asked;
    for (const QVariantList &arguments : changed)
        asked.append(arguments.first().toInt());
    QTEST(asked, "asked");
    QCOMPARE(deselected.count(), 1);
    QCOMPARE(slider.valueText(), shown); // what it shows changes when the owner says so
    QVERIFY(QApplication::focusWidget() != &slider || slider.parentWidget()->focusWidget() != nullptr);
}

void ItemsTest::sliderBar_data()
{
    QTest::addColumn<QList<int>>("range"); // minimum, maximum, bipolar
    QTest::addColumn<QString>("value");
    QTest::addColumn<QRect>("bar");
    QTest::newRow("from the start") << QList{0, 10, 0} << "3" << QRect(0, 0, 81, 10);
    QTest::newRow("truncated") << QList{0, 7, 0} << "3" << QRect(0, 0, 115, 10);
    QTest::newRow("one pixel at least") << QList{0, 10, 0} << "0" << QRect(0, 0, 1, 10);
    QTest::newRow("below the scale") << QList{0, 10, 0} << "-5" << QRect(0, 0, 1, 10);
    QTest::newRow("above the scale") << QList{0, 10, 0} << "500" << QRect(0, 0, 270, 10);
    QTest::newRow("a scale without length") << QList{5, 5, 0} << "5" << QRect(0, 0, 1, 10);
    QTest::newRow("zero in the middle") << QList{-10, 10, 1} << "0" << QRect(135, 0, 1, 10);
    QTest::newRow("to the right") << QList{-10, 10, 1} << "5" << QRect(135, 0, 67, 10);
    QTest::newRow("to the left") << QList{-10, 10, 1} << "-5" << QRect(67, 0, 68, 10);
}

void ItemsTest::sliderBar()
{
    QFETCH(const QList<int>, range);
    QFETCH(const QString, value);
    ItemSlider slider(nullptr, range[0], range[1], 1);
    slider.resize(270, 10);
    slider.setBipolar(range[2]);
    slider.setValue(value);
    QTEST(slider.findChild<QWidget *>()->geometry(), "bar");
}

void ItemsTest::highlightIsNeverLost()
{
    Lcd lcd;
    std::vector<std::unique_ptr<ItemLabel>> labels;
    std::vector<std::unique_ptr<Collection>> rows;
    CollectionNavigator highlight;
    const auto add = [&](const char *name) {
        labels.push_back(std::make_unique<ItemLabel>(&lcd));
        labels.back()->setText(name);
        labels.back()->show();
        rows.push_back(std::make_unique<Collection>());
        rows.back()->addWidget(labels.back().get());
        highlight.append(rows.back().get());
        return rows.back().get();
    };
    const auto hovered = [&] {
        QString names;
        for (const auto &label : labels) {
            if (label->property("state") == "hovered")
                names += label->text();
        }
        return names;
    };
    Collection *a = add("a"), *b = add("b"), *c = add("c");
    QCOMPARE(hovered(), "a");
    highlight.hide(b);
    highlight.next();
    QCOMPARE(hovered(), "c"); // a hidden one is passed over
    highlight.next();
    QCOMPARE(hovered(), "c"); // and the end stops it
    highlight.hide(c);
    QCOMPARE(hovered(), "a");
    highlight.show(c, true);
    highlight.next();
    QCOMPARE(hovered(), "a"); // shown, but skipped
    highlight.hide(a);
    QCOMPARE(hovered(), "");
    highlight.next();
    highlight.select();
    highlight.show(b, false);
    QCOMPARE(hovered(), "b"); // the first to come back gets it
    highlight.show(a, false);
    highlight.remove(b);
    QCOMPARE(hovered(), "a");
    highlight.show(c, false);
    highlight.remove(a); // the first of all, with the highlight on it
    QCOMPARE(hovered(), "c");
    highlight.remove(c);
    rows.clear();
    highlight.next();
    highlight.select();
    add("d");
    QCOMPARE(hovered(), "d");
}

QTEST_MAIN(ItemsTest)
#include "itemstest.moc"
