#include "gallery/contactsheet.h"
#include "gallery/menuwalk.h"
#include "hardware/framedescriptor.h"
#include "managers/presetmanager.h"
#include "managers/variantmanager.h"
#include "protocol/catalogue.h"
#include "protocol/dt3manager.h"
#include "simulator/coreservice/coreservice.h"
#include "tests/ui/lcd.h"
#include "ui/navigationmanager.h"
#include "ui/pool.h"
#include "ui/screen.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QElapsedTimer>
#include <QRegularExpression>
#include <QTest>

#include <memory>

namespace {

/// A device with something to see on each page.
void decorate(CoreService &core, const FrameDescriptor &frame)
{
    core.addPreset(QStringLiteral("Conference"));
    core.addPreset(QStringLiteral("Cinema"));
    if (frame.presetButtonCount() > 0)
        core.callMethod(QStringLiteral("/MEDIA/PRESET:createButtonAssignedPreset"), QStringLiteral("3,VIDEO"));
    core.callMethod(QStringLiteral("/MEDIA/XP/VIDEO:lockDestination"), QStringLiteral("O2;"));
    core.setProperty(
        QStringLiteral("/SYS/CECU/HEALTH.Voltage2_1V2"), QStringLiteral("1.29 V;1.14;1.26;1.08;1.32;1.19;1.29"));
    core.setProperty(
        QStringLiteral("/SYS/HSMB/HEALTH.Temperature2"), QStringLiteral("73.5 C;5.0;60.0;0.0;70.0;40.0;73.5"));
}

/// Opens one port of each kind, unless all are wanted, and some of the preset buttons.
class Choice
{
public:
    Choice(const CoreService &core, bool everyPort)
        : m_core(core)
        , m_everyPort(everyPort)
    {
    }

    bool operator()(const QStringList &place)
    {
        static const QRegularExpression furtherButton(QStringLiteral("^Button([^13]|1\\d)"));
        if (furtherButton.match(place.last()).hasMatch())
            return false; // each asks the same
        if (place.size() != 2 || !place.last().startsWith(QLatin1StringView("Port ")) || m_everyPort)
            return true;
        const QString port = (place.first().startsWith('I') ? 'I' : 'O') + place.last().section(' ', 1);
        const QString kind = port.front()
            + m_core.property(QStringLiteral("/MEDIA/PORTS/VIDEO/%1.PortType").arg(port)).value_or(QString());
        if (m_seen.contains(kind))
            return false;
        m_seen.append(kind);
        return true;
    }

private:
    const CoreService &m_core;
    const bool m_everyPort;
    QStringList m_seen;
};

/// For a picture in the middle of it: the knob is turned to and fro, while the games' own time passes.
void playGame()
{
    constexpr int turns = 24, apart = 300; // ms
    for (int turn = 0; turn < turns; ++turn) {
        QTest::keyClick(QApplication::focusWidget(), turn % 8 < 4 ? Qt::Key_A : Qt::Key_D);
        if (turn % 3 == 0)
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Down);
        QElapsedTimer timer;
        timer.start();
        if (!QTest::qWaitFor([&timer] { return timer.hasExpired(apart); }))
            return;
    }
}

/// "input-ports.port-1.hdmi-status" for the captions that lead there.
QString fileName(const QStringList &place, bool continued)
{
    static const QRegularExpression others(QStringLiteral("[^a-z0-9]+"));
    QStringList words;
    for (const QString &caption : place) {
        QString word = caption.toLower();
        word.replace(others, QStringLiteral("-"));
        words.append(word.isEmpty() ? QStringLiteral("game") : word); // behind a blank row
    }
    return (words.isEmpty() ? QStringLiteral("main-menu") : words.join('.'))
        + (continued ? QStringLiteral("-continued.png") : QStringLiteral(".png"));
}

} // namespace

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral(
        "Walks every page of the menu on the simulated device and saves a picture of each.\n"
        "Needs port 6107: tests/support/own-network gives it a network of its own.\n"
        "Exit code: 0; 1 where a page could not be left, a value did not come or a picture not be saved."));
    parser.addHelpOption();
    const QCommandLineOption frameOption(QStringLiteral("frame"),
        QStringLiteral("The frame model, by its row in the frame table; default 20."), QStringLiteral("ROW"),
        QStringLiteral("20"));
    const QCommandLineOption outputOption(QStringLiteral("output"),
        QStringLiteral(
            "Where the pictures, gallery.md and contact-sheet.png go; without it the pages are only walked."),
        QStringLiteral("FOLDER"));
    const QCommandLineOption everyPortOption(
        QStringLiteral("every-port"), QStringLiteral("Opens every port, not one of each kind."));
    parser.addOptions({frameOption, outputOption, everyPortOption});
    parser.process(application);

    const auto frames = frameDescriptors();
    const size_t row = parser.value(frameOption).toUInt();
    if (row < 1 || row > frames.size())
        qFatal("--frame takes 1 to %zu", frames.size());
    const FrameDescriptor &frame = frames[row - 1];
    CoreService core(frame);
    if (!core.listen(6107))
        qFatal("Port 6107: %s. Is another simulator running?", qUtf8Printable(core.errorString()));
    decorate(core, frame);

    prepareLcdLooks();
    fillCatalogue();
    Dt3Manager *dt3 = Dt3Manager::instance();
    Pool *pool = Pool::instance();
    pool->initScreens();
    QObject::connect(
        dt3, &Dt3Manager::connectionStateChanged, VariantManager::instance(), &VariantManager::connectionStateChanged);
    QObject::connect(dt3, &Dt3Manager::connectionStateChanged, pool, &Pool::connectionStateChanged);
    QObject::connect(
        dt3, &Dt3Manager::connectionStateChanged, PresetManager::instance(), &PresetManager::connectionStateChanged);
    dt3->connectToDevice();
    if (!QTest::qWaitFor([] { return VariantManager::instance()->frameDescriptor() && Screen::pendingEntries() == 0; }))
        qFatal("the menu is not complete");

    ContactSheet sheet(parser.value(outputOption));
    const auto visit = [&](const QStringList &place, bool continued) {
        if (!place.isEmpty() && place.last().isEmpty() && parser.isSet(outputOption))
            playGame();
        if (parser.isSet(outputOption))
            sheet.add(fileName(place, continued), place, pool->grab().toImage());
    };
    QStringList faults = MenuWalk(visit, Choice(core, parser.isSet(everyPortOption))).run();
    if (parser.isSet(outputOption))
        faults += sheet.finish(QStringLiteral("frame model %1 (%2 x %3)")
                                   .arg(row)
                                   .arg(frame.inputPortCount())
                                   .arg(frame.outputPortCount()));
    for (const QString &fault : std::as_const(faults))
        qWarning("%s", qUtf8Printable(fault));
    PresetManager::destroyInstance();
    return faults.isEmpty() ? 0 : 1;
}
