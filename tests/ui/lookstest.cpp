#include "tests/ui/lcd.h"
#include "ui/propertydisplaylabel.h"
#include "ui/styles.h"

#include <QLabel>
#include <QTest>

namespace {

QImage pixels(QWidget &widget) { return widget.grab().toImage().convertToFormat(QImage::Format_RGB32); }

} // namespace

/// What a label shows, beside a label of Qt's own with the same style sheet.
class LooksTest : public QObject
{
    Q_OBJECT
private slots:
    void looksAsQtsStyleSheets_data();
    void looksAsQtsStyleSheets();
    void textOfTheDeviceIsPlain();
    void valuesAreFormatted_data();
    void valuesAreFormatted();
    void audioInfoCycles();
    void tooLongIsElided();
};

void LooksTest::looksAsQtsStyleSheets_data()
{
    QTest::addColumn<QString>("sheet");
    QTest::newRow("value") << Style::value;
    QTest::newRow("icon") << Style::backIcon;
    QTest::newRow("header") << Style::headerCaption;
    QTest::newRow("option") << Style::chooseCaption;
    QTest::newRow("wheel") << Style::wheel(19);
    QTest::newRow("reading") << Style::value
            + "*[state=\"warning\"]{ color: orange}*[state=\"selected\"]{ color: green }";
    QTest::newRow("rule of a state before that of all") << "*[state=\"hovered\"]{color:red}*{color:#FFFFFF}";
}

void LooksTest::looksAsQtsStyleSheets()
{
    QFETCH(const QString, sheet);
    Lcd lcd;
    StyledLabel ours(&lcd);
    QLabel qts(&lcd);
    for (QLabel *label : {static_cast<QLabel *>(&ours), &qts}) {
        label->setGeometry(10, 10, 200, 40);
        label->setText(QStringLiteral("Gg \uF00C 12.3"));
        if (!sheet.contains("alignment"))
            label->setAlignment(Qt::AlignCenter);
        label->show();
    }
    ours.setSheet(sheet);
    for (const char *state : {"normal", "hovered", "selected", "warning"}) {
        if (sheet.contains("[state=") && !sheet.contains(state))
            continue; // no such state there
        for (const bool set : {false, true}) {
            ours.setStyledProperty("set", set);
            ours.setStyledProperty("state", state);
            qts.setProperty("set", set);
            qts.setProperty("state", state);
            qts.setStyleSheet(sheet);
            QCOMPARE(pixels(ours), pixels(qts));
            QCOMPARE(ours.sizeHint(), qts.sizeHint());
        }
    }
}

void LooksTest::textOfTheDeviceIsPlain()
{
    Lcd lcd;
    StyledLabel label(&lcd), longer(&lcd);
    label.setText("<b>x</b>");
    longer.setText("<b>x</b> &amp;");
    QCOMPARE(label.sizeHint().width(), label.fontMetrics().size(0, "<b>x</b>").width());
    QVERIFY(longer.sizeHint().width() > label.sizeHint().width());
}

void LooksTest::valuesAreFormatted_data()
{
    QTest::addColumn<QStringList>("values");
    QTest::addColumn<QStringList>("shown");
    const auto row = [](const char *kind, const QStringList &values, const QStringList &shown) {
        QTest::newRow(kind) << values << shown;
    };
    row("MHz", {"23.6", "23.5", "-0.2", "1e300000", "nan", ""},
        {"24 MHz", "24 MHz", "0 MHz", "1e300000 MHz", "nan MHz", " MHz"});
    row("time", {"2026-11-24T12:34:56", "2026"}, {"12:34:56", ""});
    row("date", {"2026-11-24T12:34:56"}, {"2026-11-24"});
    row("supply", {"running", "RUNNING"}, {"running running", "stopped stopped"});
    row("reading",
        {"12.1 V;11.5;12.5;11.0;13.0;0;0", "11.5 V; 11.5; 12.5; 11.0; 13.0", "11.2 V;11.5;12.5;11.0;13.0",
            "10.5 V;11.5;12.5;11.0;13.0", "nan C;11.5;12.5;11.0;13.0"},
        {"12.1 normal", "11.5 normal", "11.2 warning", "10.5 error", "nan error"});
    row("reading without limits", {"12.1 V", "12.1 V; ; ;;", "50 C;10;20", "9", ""},
        {"12.1 normal", "12.1 normal", "50 error", " normal", " normal"});
}

void LooksTest::valuesAreFormatted()
{
    QFETCH(const QStringList, values);
    PropertyDisplayLabelNumericValue frequency(nullptr, true, "MHz");
    PropertyDisplayLabelTimeAndDate time(nullptr, true), date(nullptr, false);
    PropertyDisplayLabelVoltageAndTemperature reading(nullptr);
    PropertyDisplayLabelPowerSupplyState supply(nullptr);
    const QMap<QString, PropertyDisplayLabel *> labels{
        {"MHz", &frequency}, {"time", &time}, {"date", &date}, {"reading", &reading}, {"supply", &supply}};
    PropertyDisplayLabel *label = labels[QString(QTest::currentDataTag()).section(' ', 0, 0)];
    QCOMPARE(label->text(), "TBD");
    QStringList shown;
    for (const QString &value : values) {
        label->setText(value);
        const QString state = label->QObject::property("state").toString();
        shown += label->text() + (state.isEmpty() ? "" : ' ' + state);
    }
    QTEST(shown, "shown");
}

void LooksTest::audioInfoCycles()
{
    PropertyDisplayLabelAudioInfo label(nullptr);
    label.setText("a,,b,c");
    for (const char *shown : {"a", "b", "c", "a"})
        QTRY_COMPARE(label.text(), shown); // by the timer, and after the last the first
    label.setText("x,y");
    QCOMPARE(label.text(), "x");
    label.setText("");
    label.tick();
    QCOMPARE(label.text(), "");
}

void LooksTest::tooLongIsElided()
{
    Lcd lcd;
    StyledLabel label(&lcd);
    label.setSheet(Style::value);
    const auto picture = [&](const QString &text) {
        label.setText(text);
        label.resize(100, 30);
        return pixels(label);
    };
    const QString name = "A preset with a long name";
    const QString elided = label.fontMetrics().elidedText(name, Qt::ElideRight, 100);
    QVERIFY(elided.endsWith(QChar(0x2026)));
    QCOMPARE(picture(name), picture(elided));
}

QTEST_MAIN(LooksTest)
#include "lookstest.moc"
