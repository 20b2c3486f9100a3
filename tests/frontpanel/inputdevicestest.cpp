#include "frontpanel/rotaryencoderhandler.h"
#include "panelfront.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <climits>
#include <linux/input-event-codes.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace std::chrono_literals;

namespace {

QByteArray key(int code, int value) { return record(EV_KEY, code, value); }
QByteArray sync(std::chrono::microseconds time) { return record(EV_SYN, SYN_REPORT, 0, time); }
/// The movement, then the synchronisation that closes it.
QByteArray turn(int direction, std::chrono::microseconds time) { return record(EV_REL, REL_X, direction) + sync(time); }

bool send(int fd, const QByteArray &bytes) { return ::write(fd, bytes.data(), size_t(bytes.size())) == bytes.size(); }

std::unique_ptr<QObject> makeHandler(bool encoder, const QString &path)
{
    if (encoder)
        return std::make_unique<RotaryEncoderHandler>(path);
    return std::make_unique<ControlPanelHandler>(path, 80);
}

} // namespace

class InputDevicesTest : public QObject
{
    Q_OBJECT
private slots:
    void init();
    void keys_data();
    void keys();
    void troublesOfPanel() { troubles(false); }
    void troublesOfEncoder() { troubles(true); }
    void returningDeviceIsReadAgain();

private:
    void troubles(bool encoder);
    KeyRecorder m_recorder;
};

void InputDevicesTest::init()
{
    QTest::failOnWarning(QRegularExpression("."));
    QVERIFY(m_recorder.focus());
    m_recorder.keys.clear();
}

void InputDevicesTest::keys_data()
{
    QTest::addColumn<bool>("encoder");
    QTest::addColumn<QByteArray>("records");
    QTest::addColumn<QString>("keys");
    constexpr bool panel = false, encoder = true;
    const auto row = [](bool device, const char *name, const QByteArray &records, const QString &keys) {
        QTest::newRow(name) << device << records << keys;
    };
    row(panel, "press, auto-repeat, release", key(704, 1) + key(704, 2) + key(704, 0), "784+ 784+ 784-");
    row(panel, "only keys count", key(743, 1) + sync(1s) + record(EV_LED, 705, 1) + key(706, 1), "823+ 786+");
    row(panel, "more than one read takes", key(710, 1).repeated(100), QString("790+ ").repeated(100).trimmed());

    const QByteArray start = turn(1, 5s);
    row(encoder, "49.999 ms is fast", start + turn(1, 5049999us) + turn(1, 5099999us), "D+ D- E+ E- D+ D-");
    row(encoder, "to and fro", start + turn(1, 5001ms) + turn(-1, 5002ms) + turn(-1, 5003ms) + turn(1, 5004ms),
        "D+ D- E+ E- A+ A- Q+ Q- D+ D-");
    row(encoder, "over the full second", turn(1, 4980ms) + turn(1, 5020ms) + turn(1, 5940ms) + turn(1, 6020ms),
        "D+ D- E+ E- D+ D- D+ D-");
    row(encoder, "clock set back is fast", start + turn(1, 2s), "D+ D- E+ E-");
    row(encoder, "first and last second there is", turn(1, 1s * INT_MIN) + turn(1, 1s * INT_MAX), "D+ D- D+ D-");
    row(encoder, "synchronisation repeats", turn(-1, 5s) + sync(6s) + sync(6001ms), "A+ A- A+ A- Q+ Q-");
    row(encoder, "only X counts", start + record(EV_REL, REL_Y, -1) + key(REL_X, -1) + sync(6s), "D+ D- D+ D-");
}

void InputDevicesTest::keys()
{
    QFETCH(bool, encoder);
    QFETCH(QByteArray, records);
    QFETCH(QString, keys);
    PseudoTerminal device;
    const auto handler = makeHandler(encoder, device.farPath());
    QVERIFY(send(device.fd(), records));
    QTRY_COMPARE(m_recorder.keys.join(' '), keys);
}

void InputDevicesTest::troubles(bool encoder)
{
    const QByteArray action = encoder ? turn(1, 9s) : key(704, 1);
    const char *const warning = encoder ? "Error reading rotary events" : "Error reading control panel";
    const PseudoTerminal device;
    const auto handler = makeHandler(encoder, device.farPath());
    const auto *notifier = handler->findChild<QSocketNotifier *>();
    int reads = 0;
    connect(notifier, &QSocketNotifier::activated, this, [&reads] { ++reads; });

    m_recorder.clearFocus();
    QVERIFY(send(device.fd(), action));
    QTRY_COMPARE(reads, 1); // dropped in silence: Qt warns of events for nobody
    m_recorder.setFocus();
    QTest::ignoreMessage(QtWarningMsg, warning);
    QVERIFY(send(device.fd(), action + "half")); // no whole records: all are dropped
    QTRY_COMPARE(reads, 2);
    QTest::ignoreMessage(QtWarningMsg, warning);
    QVERIFY(QMetaObject::invokeMethod(handler.get(), "processEvent") && notifier->isEnabled()); // nothing to read
    QVERIFY(send(device.fd(), encoder ? turn(1, 20s) : action));
    QTRY_COMPARE(m_recorder.keys.join(' '), encoder ? "D+ D-" : "784+");

    const auto failing = makeHandler(encoder, "/proc/self/mem"); // readable for ever, an error at address 0
    QTest::ignoreMessage(QtWarningMsg, warning);
    QTRY_VERIFY(!failing->findChild<QSocketNotifier *>()->isEnabled());
}

void InputDevicesTest::returningDeviceIsReadAgain()
{
    QTemporaryDir folder;
    const QString path = folder.filePath("encoder");
    QCOMPARE(mkfifo(qPrintable(path), 0600), 0);
    const RotaryEncoderHandler handler(path);
    for (const auto &[time, keys] : {std::pair{1s, "A+ A-"}, {5s, "A+ A- A+ A-"}}) {
        QTest::ignoreMessage(QtWarningMsg, "Error reading rotary events"); // once for each absence
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Unbuffered) && file.write(sync(time)) == 16);
        file.close();
        QTRY_COMPARE(m_recorder.keys.join(' '), keys);
        QTRY_VERIFY(!handler.findChild<QSocketNotifier *>()->isEnabled());
    }
}

QTEST_MAIN(InputDevicesTest)
#include "inputdevicestest.moc"
