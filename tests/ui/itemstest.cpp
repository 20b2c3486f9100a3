#include "tests/ui/lcd.h"
#include "ui/collection.h"
#include "ui/collectionnavigator.h"
#include "ui/itemslider.h"
#include "ui/itemwheellistlabel.h"
#include "ui/itemwheelrangelabel.h"

#include <QSignalSpy>
#include <QTest>

#include <memory>

namespace {

/// One of those that the highlight goes over.
struct Row
{
    Row(const char *name, Lcd *lcd, CollectionNavigator *highlight)
        : label(lcd)
    {
        label.setText(name);
        label.show();
        collection.addWidget(&label);
        highlight->append(&collection);
    }

    ItemLabel label;
    Collection collection;
};

/// The texts of the highlighted rows.
QString hovered(const Lcd &lcd)
{
    QString names;
    for (const ItemLabel *label : lcd.findChildren<ItemLabel *>())
        names += label->property("state") == "hovered" ? label->text() : QString();
    return names;
}

} // namespace

/// What the knob does to wheels, sliders and the highlight.
class ItemsTest : public QObject
{
    Q_OBJECT
private slots:
    void wheelTurns_data();
    void wheelTurns();
    void optionsComeAndGo();
    void sliderAsks_data();
    void sliderAsks();
    void highlightIsNeverLost();
};

void ItemsTest::wheelTurns_data()
{
    QTest::addColumn<QList<int>>("range"); // minimum, maximum, zero pad; else it is a list
    QTest::addColumn<bool>("wrap");
    QTest::addColumn<QString>("from");
    QTest::addColumn<QStringList>("keys"); // of one selection each
    QTest::addColumn<QString>("seen");     // in each selection; "~" is a turn of the list
    const auto row
        = [](const char *name, const QList<int> &range, bool wrap, const char *from, const QStringList &keys,
              const char *seen) { QTest::newRow(name) << range << wrap << QString(from) << keys << QString(seen); };
    row("stays at the first", {}, false, "a", {"A"}, "~a");
    row("stops at the last", {}, false, "c", {"E"}, "~e");
    row("wraps on", {}, true, "c", {"ED"}, "~~d");
    row("wraps back", {}, true, "b", {"QAA"}, "~~~e");
    row("chosen", {}, false, "a", {"DD\r"}, "~~ chosen deselected c");
    row("abandoned", {}, false, "b", {"D\x1b"}, "~ deselected b");
    row("no option does not turn", {}, false, "z", {"DA\x1b"}, " deselected z");
    row("pads to the maximum's digits", {0, 255, 1}, false, "6", {"D"}, "007");
    row("does not pad", {0, 255, 0}, false, "6", {"D"}, "7");
    row("stops", {0, 59, 1}, false, "55", {"E"}, "59");
    row("number wraps up", {1, 12, 1}, true, "12", {"D"}, "01");
    row("number wraps down", {1, 12, 1}, true, "01", {"Q"}, "03");
    row("out of range does not turn", {0, 59, 1}, true, "61", {"DAEQ"}, "61");
    row("no number counts as 0", {0, 59, 0}, false, "x", {"D"}, "1");
    row("whole range of int", {INT_MIN, INT_MAX, 0}, true, "2147483647", {"D"}, "-2147483648");
    row("Escape brings text and number back", {0, 59, 1}, false, "7", {"EE\x1b", "D"}, " deselected 708");
    row("Return keeps both", {0, 59, 1}, false, "7", {"D\r", "D\x1b"}, " chosen deselected 08 deselected 08");
}

void ItemsTest::wheelTurns()
{
    QFETCH(const QList<int>, range);
    QFETCH(const bool, wrap);
    QFETCH(const QString, from);
    QFETCH(const QStringList, keys);
    const bool isList = range.isEmpty();
    Lcd lcd;
    ItemWheelListLabel list(&lcd, wrap);
    ItemWheelRangeLabel number(&lcd, range.value(0), range.value(1), wrap, range.value(2), "#");
    ItemWheel &wheel = isList ? static_cast<ItemWheel &>(list) : number;
    list.setOptions({"a", "b", "c", "d", "e"});
    list.setCurrentText(from);
    number.setValue(from);
    QCOMPARE(number.text(), '#' + from);
    QString seen;
    connect(&list, &ItemWheelListLabel::signalScrolled, this, [&seen] { seen += '~'; });
    connect(&wheel, &ItemLabel::signalChosen, this, [&seen] { seen += " chosen"; });
    connect(&wheel, &ItemLabel::signalDeselected, this, [&seen] { seen += " deselected "; });
    wheel.show();
    for (const QString &selection : keys) {
        wheel.select();
        Lcd::keys(qPrintable(selection));
        seen += wheel.text().mid(isList ? 0 : 1);
    }
    QTEST(seen, "seen");
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
    wheel.scroll(1);
    QCOMPARE(wheel.text(), "");
}

void ItemsTest::sliderAsks_data()
{
    QTest::addColumn<QList<int>>("scale"); // minimum, maximum, bipolar
    QTest::addColumn<QString>("value");
    QTest::addColumn<QString>("keys");
    QTest::addColumn<QString>("asked");
    QTest::addColumn<QList<int>>("bar"); // left edge and width, in pixels of 270
    const auto row = [](const char *name, const QList<int> &scale, const char *value, const char *keys,
                         const char *asked, const QList<int> &bar) {
        QTest::newRow(name) << scale << QString(value) << QString(keys) << QString(asked) << bar;
    };
    row("both ways", {0, 100, 0}, "50", "DEAQ", "10 10 -10 -10 ", {0, 135});
    row("not over the end by a part of a step", {0, 100, 0}, "95", "DA", "-10 ", {0, 256});
    row("not below the start", {0, 100, 0}, "5", "AD", "10 ", {0, 13});
    row("not from outside", {0, 100, 0}, "105", "DA", "", {0, 270});
    row("huge", {0, 100, 0}, "1e99", "DA", "", {0, 270});
    row("truncated", {0, 100, 0}, "90.9", "D", "10 ", {0, 243});
    row("nan is 0", {0, 100, 0}, "nan", "AD", "10 ", {0, 1});
    row("a scale without length", {5, 5, 0}, "5", "DA", "", {0, 1});
    row("zero in the middle", {-10, 10, 1}, "0", "", "", {135, 1});
    row("to the right", {-10, 10, 1}, "5", "", "", {135, 67});
    row("to the left, below the scale", {-10, 10, 1}, "-20", "", "", {0, 135});
}

void ItemsTest::sliderAsks()
{
    QFETCH(const QList<int>, scale);
    QFETCH(const QString, value);
    QFETCH(const QString, keys);
    Lcd lcd;
    ItemSlider slider(&lcd, scale[0], scale[1], 10);
    slider.resize(270, 10);
    slider.setBipolar(scale[2]);
    slider.setValue(value);
    const QString shown = slider.valueText();
    QString asked;
    connect(&slider, &ItemSlider::signalChanged, this, [&asked](int by) { asked += QString::number(by) + ' '; });
    const QSignalSpy deselected(&slider, &ItemSlider::signalDeselected);
    slider.show();
    slider.select();
    slider.select(); // as a screen that is activated again does: it leaves the keyboard at once all the same
    Lcd::keys(qPrintable(keys + '\r'));
    QTEST(asked, "asked");
    QCOMPARE(deselected.count(), 1);
    QCOMPARE(slider.valueText(), shown); // what it shows changes when the owner says so
    const QRect bar = slider.findChild<QWidget *>()->geometry();
    QTEST((QList{bar.x(), bar.width()}), "bar");
}

void ItemsTest::highlightIsNeverLost()
{
    Lcd lcd;
    CollectionNavigator highlight;
    auto a = std::make_unique<Row>("a", &lcd, &highlight), b = std::make_unique<Row>("b", &lcd, &highlight),
         c = std::make_unique<Row>("c", &lcd, &highlight);
    QCOMPARE(hovered(lcd), "a");
    highlight.hide(&b->collection);
    highlight.next(); // a hidden one is passed over
    highlight.next(); // and the end stops it
    QCOMPARE(hovered(lcd), "c");
    highlight.hide(&c->collection);
    QCOMPARE(hovered(lcd), "a");
    highlight.show(&c->collection, true);
    highlight.next();
    QCOMPARE(hovered(lcd), "a"); // shown, but skipped
    highlight.hide(&a->collection);
    QCOMPARE(hovered(lcd), "");
    highlight.next();
    highlight.show(&b->collection, false);
    QCOMPARE(hovered(lcd), "b"); // the first to come back gets it
    highlight.show(&a->collection, false);
    highlight.remove(&b->collection);
    QCOMPARE(hovered(lcd), "a");
    highlight.show(&c->collection, false);
    highlight.remove(&a->collection); // the first of all, with the highlight on it
    QCOMPARE(hovered(lcd), "c");
    highlight.remove(&c->collection);
    for (auto *row : {&a, &b, &c})
        row->reset();
    highlight.next();
    highlight.select();
    const Row d("d", &lcd, &highlight);
    QCOMPARE(hovered(lcd), "d");
}

QTEST_MAIN(ItemsTest)
#include "itemstest.moc"
