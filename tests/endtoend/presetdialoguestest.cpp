#include "tests/endtoend/front.h"

#include <QMap>
#include <QTest>

namespace {

constexpr int take = 33, load = 34, save = 35; // buttons, and their LEDs

} // namespace

/// Presets from the buttons of the front and from the menu: "Hall" is on button 2.
class PresetDialoguesTest : public QObject
{
    Q_OBJECT
private slots:
    void init();
    void cleanup() { m_front.reset(); }
    void buttonsOpenAndClose();
    void menuLightsTheMode();

private:
    /// The LCD shows the picture of this name, and the LEDs are those of load and save. A new name is for a picture
    /// that has not been seen before.
    bool shows(const QString &name, const char *leds = "0 0");
    bool tap(std::initializer_list<int> buttons, const QString &name, const char *leds = "0 0");
    bool key(int code, const QString &name, const char *leds = "0 0");
    /// Turns the knob, then pushes it.
    bool knob(int detents, const QString &name, const char *leds = "0 0");

    std::unique_ptr<Front> m_front;
    QMap<QString, QImage> m_pictures;
};

void PresetDialoguesTest::init()
{
    m_front = std::make_unique<Front>(1);
    m_front->device().core().addPreset("Hall");
    QVERIFY(m_front->device().core().setProperty("/MEDIA/PRESET.Button2AssignedPreset", "Hall"));
    QVERIFY(m_front->start());
    m_pictures.clear();
    QVERIFY(shows("menu"));
}

bool PresetDialoguesTest::shows(const QString &name, const char *leds)
{
    const QImage picture = m_front->picture();
    const QString lit = QString("%1 %2").arg(m_front->led(1, load)).arg(m_front->led(1, save));
    if (!m_pictures.contains(name) && m_pictures.key(picture).isEmpty())
        m_pictures.insert(name, picture);
    return m_pictures.value(name) == picture && lit == leds;
}

bool PresetDialoguesTest::tap(std::initializer_list<int> buttons, const QString &name, const char *leds)
{
    for (const int button : buttons)
        m_front->tap(1, button);
    return shows(name, leds);
}

bool PresetDialoguesTest::key(int code, const QString &name, const char *leds)
{
    m_front->tapKey(code);
    return shows(name, leds);
}

bool PresetDialoguesTest::knob(int detents, const QString &name, const char *leds)
{
    m_front->turn(detents);
    m_front->picture(); // it comes from another device than the push
    return key(TestBed::pushKey, name, leds);
}

void PresetDialoguesTest::buttonsOpenAndClose()
{
    QVERIFY(tap({load}, "load list", "1 0"));
    QVERIFY(tap({2}, "load Hall?", "1 0"));
    QVERIFY(tap({5}, "no preset", "1 0"));
    QVERIFY(tap({2}, "load Hall?", "1 0"));
    QTRY_VERIFY_WITH_TIMEOUT(shows("load list", "1 0"), 15000); // idle: the mode stays
    QVERIFY(tap({5}, "no preset", "1 0"));
    QVERIFY(tap({load}, "menu")); // with the warning over the list

    QVERIFY(tap({save}, "save list", "0 1"));
    QVERIFY(tap({5}, "create?", "0 1"));
    QVERIFY(tap({2}, "overwrite Hall?", "0 1"));
    QTRY_VERIFY_WITH_TIMEOUT(shows("save list", "0 1"), 15000);
    QVERIFY(tap({2}, "overwrite Hall?", "0 1"));
    QVERIFY(tap({save}, "menu"));

    QVERIFY(tap({load}, "load list", "1 0"));
    QVERIFY(tap({2}, "load Hall?", "1 0"));
    QVERIFY(tap({save}, "save list", "0 1")); // from one mode to the other
    QVERIFY(tap({5}, "create?", "0 1"));
    QVERIFY(tap({load}, "load list", "1 0"));
    QVERIFY(tap({load}, "menu"));
    QCOMPARE(m_front->requests(), QStringList());

    QVERIFY(tap({load, 2, take}, "menu"));
    QTRY_COMPARE(m_front->requests(), QStringList("CALL /MEDIA/PRESET/Hall:load()"));
    QVERIFY(tap({save, 5, take}, "menu"));
    QTRY_COMPARE(m_front->requests().last(), "CALL /MEDIA/PRESET:createButtonAssignedPreset(5,VIDEO)");
    QCOMPARE(m_front->device().core().presetNames(), (QStringList{"Hall", "Button5"}));
    QVERIFY(tap({save, 5}, "overwrite Button5?", "0 1"));
}

void PresetDialoguesTest::menuLightsTheMode()
{
    QVERIFY(tap({load}, "load list", "1 0"));
    QVERIFY(tap({load}, "menu"));
    QVERIFY(knob(5, "presets"));
    QVERIFY(knob(0, "load list", "1 0"));
    QVERIFY(knob(0, "load Hall?", "1 0"));
    QVERIFY(knob(0, "load list", "1 0")); // yes
    QTRY_COMPARE(m_front->requests(), QStringList("CALL /MEDIA/PRESET/Hall:load()"));
    QVERIFY(knob(5, "presets")); // Back
    QVERIFY(knob(1, "save list", "0 1"));
    QVERIFY(key(TestBed::escapeKey, "presets, save"));
    QVERIFY(knob(-1, "load list", "1 0"));
    QVERIFY(tap({load}, "presets")); // its button closes it, too
    QVERIFY(tap({save}, "save list", "0 1"));
    QVERIFY(tap({save}, "presets"));
    QCOMPARE(m_front->requests().size(), 1);
}

QTEST_GUILESS_MAIN(PresetDialoguesTest)
#include "presetdialoguestest.moc"
