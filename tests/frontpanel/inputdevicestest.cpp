#include "eventdevice.h"
#include "frontpanel/rotaryencoderhandler.h"

#include <QFile>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <climits>
#include <linux/input-event-codes.h>
#include <sys/stat.h>

namespace {

/// A detent as the encoder reports it: the movement, then the synchronisation that closes it.
QByteArray detent(int direction, int seconds, int microseconds)
{
    return eventRecord(seconds, microseconds, EV_REL, REL_X, direction)
        + eventRecord(seconds, microseconds, EV_SYN, SYN_REPORT, 0);
}

QByteArray sync(int seconds, int microseconds) { return eventRecord(seconds, microseconds, EV_SYN, SYN_REPORT, 0); }
QByteArray key(int code, int value) { return eventRecord(1, 0, EV_KEY, code, value); }

std::unique_ptr<QObject> makeHandler(bool encoder, const QString &path)
{
    if (encoder)
        return std::make_unique<RotaryEncoderHandler>(path);
    return std::make_unique<ControlPanelHandler>(path, 0);
}

void addBothHandlers()
{
    QTest::addColumn<bool>("encoder");
    QTest::addColumn<QByteArray>("action"); ///< Sends a key.
    QTest::addColumn<QString>("keys");
    QTest::addColumn<QString>("openedAs");
    QTest::addColumn<QString>("warning");
    QTest::newRow("panel") << false << key(704, 1) << "704+"
                           << "control panel"
                           << "Error reading control panel";
    QTest::newRow("encoder") << true << detent(1, 9, 0) << "D+ D-"
                             << "rotary encoder device"
                             << "Error reading rotary events";
}

} // namespace

class InputDevicesTest : public QObject
{
    Q_OBJECT

private slots:
    void init() { QTest::failOnWarning(QRegularExpression(".")); }

    void panelKeys_data();
    void panelKeys();
    void encoderKeys_data();
    void encoderKeys();
    void ledIsOneRecord();
    void deviceThatCannotBeOpened_data() { addBothHandlers(); }
    void deviceThatCannotBeOpened();
    void chunkOfBrokenRecordsIsDropped_data() { addBothHandlers(); }
    void chunkOfBrokenRecordsIsDropped();
    void vanishedDeviceIsLeftAlone_data() { addBothHandlers(); }
    void vanishedDeviceIsLeftAlone();
    void failingDeviceIsLeftAlone_data() { addBothHandlers(); }
    void failingDeviceIsLeftAlone();
    void nothingToReadIsToldAndNoMore_data() { addBothHandlers(); }
    void nothingToReadIsToldAndNoMore();
    void returningDeviceIsReadAgain();
    void keysWithoutFocusAreDropped_data() { addBothHandlers(); }
    void keysWithoutFocusAreDropped();
};

void InputDevicesTest::panelKeys_data()
{
    QTest::addColumn<int>("offset");
    QTest::addColumn<QByteArray>("records");
    QTest::addColumn<QString>("keys");
    QTest::newRow("press and release") << 0 << key(704, 1) + key(704, 0) << "704+ 704-";
    QTest::newRow("kernel's auto-repeat is another press") << 0 << key(743, 1) + key(743, 2) << "743+ 743+";
    QTest::newRow("second panel") << 40 << key(705, 1) << "745+";
    QTest::newRow("third panel's last button") << 80 << key(743, 1) << "823+";
    QTest::newRow("records of other types are skipped")
        << 0 << key(704, 1) + sync(1, 0) + eventRecord(1, 0, EV_LED, 705, 1) + key(706, 1) << "704+ 706+";
    QByteArray many;
    QStringList manyKeys;
    for (int i = 0; i < 100; ++i) {
        many += key(704 + i % 40, 1);
        manyKeys += QString::number(704 + i % 40) + '+';
    }
    QTest::newRow("more records than one read takes") << 0 << many << manyKeys.join(' ');
}

void InputDevicesTest::panelKeys()
{
    QFETCH(int, offset);
    QFETCH(QByteArray, records);
    QFETCH(QString, keys);
    KeyRecorder recorder;
    QVERIFY(recorder.focus());
    EventDevice device;
    const ControlPanelHandler handler(device.path(), offset);
    QVERIFY(device.send(records));
    QTRY_COMPARE(recorder.keys(), keys);
}

void InputDevicesTest::encoderKeys_data()
{
    QTest::addColumn<QByteArray>("records");
    QTest::addColumn<QString>("detents");
    QTest::newRow("30 ms apart is fast") << detent(1, 5, 0) + detent(1, 5, 30'000) << "DE";
    QTest::newRow("60 ms apart is slow") << detent(1, 5, 0) + detent(1, 5, 60'000) << "DD";
    QTest::newRow("49.999 ms is fast, 50 ms slow")
        << detent(-1, 5, 0) + detent(-1, 5, 49'999) + detent(-1, 5, 99'999) << "AQA";
    QTest::newRow("a change of direction is slow, and nothing is lost")
        << detent(1, 5, 0) + detent(1, 5, 10'000) + detent(-1, 5, 20'000) + detent(-1, 5, 30'000) + detent(1, 5, 40'000)
        << "DEAQD";
    QTest::newRow("to and fro") << detent(1, 5, 0) + detent(-1, 5, 1) + detent(1, 5, 2) + detent(-1, 5, 3) << "DADA";
    QTest::newRow("over the full second, fast") << detent(1, 5, 980'000) + detent(1, 6, 20'000) << "DE";
    QTest::newRow("over the full second, slow") << detent(1, 5, 940'000) + detent(1, 6, 20'000) << "DD";
    QTest::newRow("seconds apart is slow") << detent(1, 5, 0) + detent(1, 7, 10'000) << "DD";
    QTest::newRow("clock set back is fast") << detent(1, 5, 0) + detent(1, 2, 0) << "DE";
    QTest::newRow("from the first to the last second there is") // and back
        << detent(1, INT_MIN, 0) + detent(1, INT_MAX, 0) + detent(1, INT_MIN, INT_MAX) + detent(1, INT_MAX, INT_MIN)
        << "DDED";
    QTest::newRow("synchronisation alone repeats the direction") << detent(-1, 5, 0) + sync(6, 0) + sync(6, 1) << "AAQ";
    QTest::newRow("other axes and buttons do not count")
        << detent(1, 5, 0) + eventRecord(6, 0, EV_REL, REL_Y, -1) + eventRecord(6, 0, EV_KEY, REL_X, -1) + sync(6, 0)
        << "DD";
}

void InputDevicesTest::encoderKeys()
{
    QFETCH(QByteArray, records);
    QFETCH(QString, detents);
    KeyRecorder recorder;
    QVERIFY(recorder.focus());
    EventDevice device;
    const RotaryEncoderHandler handler(device.path());
    QVERIFY(device.send(records));
    QStringList keys;
    for (const QChar &each : detents)
        keys += {QString(each) + '+', QString(each) + '-'};
    QTRY_COMPARE(recorder.keys(), keys.join(' '));
}

void InputDevicesTest::ledIsOneRecord()
{
    EventDevice device;
    ControlPanelHandler handler(device.path(), 40);
    handler.setLed(40, 2);
    handler.setLed(0, 1);
    const QByteArray records = eventRecord(0, 0, EV_LED, 40, 2) + eventRecord(0, 0, EV_LED, 0, 1);
    QCOMPARE(device.receive(records.size()), records);
}

void InputDevicesTest::deviceThatCannotBeOpened()
{
    QFETCH(bool, encoder);
    QTest::ignoreMessage(QtWarningMsg, "Cannot open /nowhere/event9: No such file or directory");
    const auto handler = makeHandler(encoder, "/nowhere/event9");
    QVERIFY(!handler->findChild<QSocketNotifier *>());
    if (auto *panel = qobject_cast<ControlPanelHandler *>(handler.get()))
        panel->setLed(1, 1);
}

void InputDevicesTest::chunkOfBrokenRecordsIsDropped()
{
    QFETCH(bool, encoder);
    QFETCH(QByteArray, action);
    QFETCH(QString, keys);
    QFETCH(QString, openedAs);
    QFETCH(QString, warning);
    KeyRecorder recorder;
    QVERIFY(recorder.focus());
    EventDevice device;
    QTest::ignoreMessage(QtDebugMsg, qPrintable("Opened " + device.path() + " as " + openedAs));
    const auto handler = makeHandler(encoder, device.path());
    int reads = 0;
    connect(handler->findChild<QSocketNotifier *>(), &QSocketNotifier::activated, this, [&reads] { ++reads; });

    QTest::ignoreMessage(QtWarningMsg, qPrintable(warning));
    QVERIFY(device.send(action.left(16) + "half"));
    QTRY_COMPARE(reads, 1);
    QVERIFY(device.send(action)); // the device is still listened to
    QTRY_COMPARE(recorder.keys(), keys);
}

void InputDevicesTest::vanishedDeviceIsLeftAlone()
{
    QFETCH(bool, encoder);
    QFETCH(QString, warning);
    EventDevice device;
    const auto handler = makeHandler(encoder, device.path());
    const auto *notifier = handler->findChild<QSocketNotifier *>();
    QVERIFY(notifier && notifier->isEnabled());
    QTest::ignoreMessage(QtWarningMsg, qPrintable(warning)); // once
    device.vanish();
    QTRY_VERIFY(!notifier->isEnabled());
    if (auto *panel = qobject_cast<ControlPanelHandler *>(handler.get()))
        panel->setLed(1, 1);
}

void InputDevicesTest::failingDeviceIsLeftAlone()
{
    QFETCH(bool, encoder);
    QFETCH(QString, warning);
    // Our own memory: readable for ever, and address 0 is an input/output error.
    const auto handler = makeHandler(encoder, "/proc/self/mem");
    const auto *notifier = handler->findChild<QSocketNotifier *>();
    QVERIFY(notifier);
    QTest::ignoreMessage(QtWarningMsg, qPrintable(warning));
    QTRY_VERIFY(!notifier->isEnabled());
}

void InputDevicesTest::nothingToReadIsToldAndNoMore()
{
    QFETCH(bool, encoder);
    QFETCH(QByteArray, action);
    QFETCH(QString, keys);
    KeyRecorder recorder;
    QVERIFY(recorder.focus());
    EventDevice device;
    const auto handler = makeHandler(encoder, device.path());
    QFETCH(QString, warning);
    QTest::ignoreMessage(QtWarningMsg, qPrintable(warning));
    QVERIFY(QMetaObject::invokeMethod(handler.get(), "processEvent"));
    QVERIFY(device.send(action));
    QTRY_COMPARE(recorder.keys(), keys);
}

void InputDevicesTest::returningDeviceIsReadAgain()
{
    KeyRecorder recorder;
    QVERIFY(recorder.focus());
    QTemporaryDir folder;
    const QString path = folder.filePath("encoder");
    QCOMPARE(mkfifo(qPrintable(path), 0600), 0);
    RotaryEncoderHandler handler(path);
    const auto writeOnce = [&path](const QByteArray &records) {
        QFile file(path);
        return file.open(QIODevice::WriteOnly | QIODevice::Unbuffered) && file.write(records) == records.size();
    };
    QTest::ignoreMessage(QtWarningMsg, "Error reading rotary events"); // once for the whole absence
    QVERIFY(writeOnce(sync(1, 0)));
    QTRY_COMPARE(recorder.keys(), "A+ A-");
    QTRY_VERIFY(!handler.findChild<QSocketNotifier *>()->isEnabled());
    QTest::ignoreMessage(QtWarningMsg, "Error reading rotary events"); // it goes again
    QVERIFY(writeOnce(sync(5, 0)));
    QTRY_COMPARE(recorder.keys(), "A+ A- A+ A-");
    QTRY_VERIFY(!handler.findChild<QSocketNotifier *>()->isEnabled());
}

void InputDevicesTest::keysWithoutFocusAreDropped()
{
    QFETCH(bool, encoder);
    QFETCH(QByteArray, action);
    QFETCH(QString, keys);
    KeyRecorder recorder;
    QVERIFY(recorder.focus());
    recorder.clearFocus();
    EventDevice device;
    const auto handler = makeHandler(encoder, device.path());
    int reads = 0;
    connect(handler->findChild<QSocketNotifier *>(), &QSocketNotifier::activated, this, [&reads] { ++reads; });
    QVERIFY(device.send(action));
    QTRY_COMPARE(reads, 1); // Qt warns of events for nobody
    recorder.setFocus();
    QVERIFY(device.send(encoder ? detent(1, 20, 0) : action));
    QTRY_COMPARE(recorder.keys(), keys);
}

QTEST_MAIN(InputDevicesTest)
#include "inputdevicestest.moc"
