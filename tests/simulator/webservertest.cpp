#include "simulator/web/webserver.h"

#include "simulator/scriptrunner.h"
#include "tests/simulator/programtools.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QPainter>
#include <QSignalSpy>
#include <QTcpSocket>
#include <QTemporaryDir>
#include <QtEndian>
#include <QTest>
#include <QWebSocket>

using namespace std::chrono_literals;

namespace {

// "keys PORT" links to that core service, and calls "key NUMBER VALUE" for each key.
const QByteArray tools = programTools + R"sh(
keys() { exec {device}<>/dev/input/event2; link $1; while :; do
    set -- $(head -c 16 <&$device | od -An -v -tu2 -w16); [ "$5" = 1 ] && key $(($6 - 703)) $7; done; }
)sh";

/// A device and its server.
struct Rig
{
    /// @param keyFunction of a shell script in the program's place, "key NUMBER VALUE"; without it there is no program.
    explicit Rig(const WebServer::Limits &limits = {}, int row = 1, const QByteArray &keyFunction = {})
        : web(limits)
    {
        QFile program(folder.filePath("front-panel"));
        const QString path = keyFunction.isEmpty() ? QString() : program.fileName();
        device = std::make_unique<Device>(Device::Setup{&frameDescriptors()[size_t(row - 1)], {}, path, {}, 0});
        QVERIFY(device->powerOn().isEmpty() && web.listen(0));
        web.setDevice(device.get());
        if (path.isEmpty())
            return;
        QVERIFY(program.open(QIODevice::WriteOnly) && program.setPermissions(QFile::ReadOwner | QFile::ExeOwner));
        program.write(tools + keyFunction + "\nkeys " + QByteArray::number(device->core().port()) + '\n');
        program.close();
        device->startProgram();
    }

    QByteArray own() const { return "127.0.0.1:" + QByteArray::number(web.port()); }

    /// What the server says until it hangs up.
    QByteArray ask(const QByteArray &request) const
    {
        QTcpSocket socket;
        socket.connectToHost(QHostAddress::LocalHost, web.port());
        socket.write(request);
        const bool ended = QTest::qWaitFor([&] { return socket.state() == QAbstractSocket::UnconnectedState; }, 10000);
        return ended ? socket.readAll() : "still connected: " + socket.readAll();
    }

    QByteArray post(const QByteArray &body) const
    {
        return ask("POST /command HTTP/1.1\r\nHost: localhost\r\nContent-Length: " + QByteArray::number(body.size())
            + "\r\n\r\n" + body);
    }

    QTemporaryDir folder;
    std::unique_ptr<Device> device;
    WebServer web;
};

/// A page that is up to date: keeps what it hears and paints what it sees.
struct Page
{
    explicit Page(const Rig &rig)
        : socket("http://" + rig.own())
    {
        lcd.fill(Qt::green);
        QObject::connect(&socket, &QWebSocket::textMessageReceived, &socket,
            [this](const QString &text) { heard += QJsonDocument::fromJson(text.toUtf8()).object(); });
        QObject::connect(&socket, &QWebSocket::binaryMessageReceived, &socket, [this](const QByteArray &piece) {
            const QImage image = QImage::fromData(piece.mid(4), "PNG");
            const QPoint place(qFromLittleEndian<quint16>(piece.data()), qFromLittleEndian<quint16>(piece.data() + 2));
            QPainter(&lcd).drawImage(place, image);
            pieces += QRect(place, image.size());
        });
        socket.open(QUrl("ws://" + rig.own() + "/front"));
        QTRY_VERIFY(!pieces.isEmpty());
    }

    void say(const QByteArray &text) { socket.sendTextMessage(text); }
    bool isClosed() const { return socket.state() == QAbstractSocket::UnconnectedState; }
    /// The newest message of a type.
    QJsonObject last(const QString &type) const
    {
        const auto found = std::find_if(heard.rbegin(), heard.rend(), [&](auto &m) { return m["type"] == type; });
        return found == heard.rend() ? QJsonObject() : *found;
    }
    QString held() const { return last("held")["keys"].toVariant().toStringList().join(' '); }
    /// "NUMBER DIRECTION TEXT" of all lines.
    QString log() const
    {
        QStringList lines;
        for (const QJsonObject &message : heard)
            for (const QJsonValue line : message["lines"].toArray())
                lines += QString("%1 ").arg(line["n"].toInt()) + line["direction"].toString() + ' '
                    + line["text"].toString();
        return lines.join(", ");
    }

    QWebSocket socket;
    QList<QJsonObject> heard;
    QImage lcd{TestBed::lcdWidth, TestBed::lcdHeight, QImage::Format_RGB32};
    QList<QRect> pieces;
};

const QByteArray pngBegin = "\x89PNG";

/// A page that answers nothing by itself, pings neither, and shows every byte.
struct RawPage
{
    explicit RawPage(const Rig &rig)
    {
        socket.connectToHost(QHostAddress::LocalHost, rig.web.port());
        socket.write("GET /front HTTP/1.1\r\nHost: " + rig.own()
            + "\r\nUpgrade: websocket\r\nConnection: Upgrade\r\n"
              "Sec-WebSocket-Version: 13\r\nSec-WebSocket-Key: dGhlIHNhbXBsZSBub25jZQ==\r\n\r\n");
    }

    /// @param opcode 1 text, 10 pong. @param payload under 126 bytes.
    void send(int opcode, const QByteArray &payload)
    {
        socket.write(QByteArray(1, char(0x80 | opcode)) + char(0x80 | payload.size()) + QByteArray(4, '\0') + payload);
    }
    QByteArray bytes() { return all += socket.readAll(); }

    QTcpSocket socket;
    QByteArray all;
};

/// Paints on a device's LCD as its program would.
void paint(const Device &device, QPoint pixel, quint32 colour)
{
    QFile file(device.bed().programEnvironment().value("UMOCKDEV_DIR") + "/dev/fb0");
    QVERIFY(file.open(QIODevice::ReadWrite | QIODevice::Unbuffered));
    file.seek((pixel.y() * TestBed::lcdWidth + pixel.x()) * 4);
    file.write(reinterpret_cast<const char *>(&colour), sizeof colour);
}

QByteArray request(const QByteArray &line, const QByteArray &fields = {})
{
    return line + " HTTP/1.1\r\nHost: localhost:8080\r\n" + fields + "\r\n";
}

} // namespace

class WebServerTest : public QObject
{
    Q_OBJECT
private slots:
    void answersRequests_data();
    void answersRequests();
    void guardsItsAnswers();
    void hangsUpOnSlowClients();
    void answersOncePerConnection();
    void executesCommands();
    void commandsWaitForEachOther();
    void keyOfALostClientComesUp();
    void closesOnWrongMessages_data();
    void closesOnWrongMessages();
    void refusesOnePageTooMany();
    void tellsWhatThereIs();
    void keyComesUpWithItsLastHolder();
    void silentPageLosesItsKeys();
    void sendsWhatChangesOnTheLcd();
    void passesOverASlowPage();
    void tellsWhatHappens();
    void recordsWhatReplays();
    void exchangesTheDevice();
};

void WebServerTest::answersRequests_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<int>("status");
    const auto rows = [](int status, const QByteArrayList &texts) {
        for (const QByteArray &text : texts)
            QTest::addRow("%d %s", status, text.simplified().left(100).constData()) << text << status;
    };
    for (const char *host : {"127.0.0.1", "[::1]:65535", "LocalHost:1"})
        rows(200, {"GET / HTTP/1.1\r\nHost: " + QByteArray(host) + "\r\n\r\n"});
    for (const char *host : {"example.org:80", "localhost.example.org", "mylocalhost", "127.0.0.1:80a", "127.0.0.2",
             "localhost@example.org", ""})
        rows(403, {"GET / HTTP/1.1\r\nHost: " + QByteArray(host) + "\r\n\r\n"});
    for (const char *origin : {"null", "http://localhost", "http://localhost:8080.example.org",
             "https://localhost:8080", "http://127.0.0.1:8080"})
        rows(403, {request("GET /", "Origin: " + QByteArray(origin) + "\r\n")});
    const QByteArray upgrade = "Upgrade: websocket\r\nConnection: Upgrade\r\nSec-WebSocket-Version: 13\r\n";
    rows(403,
        {"GET / HTTP/1.1\r\n\r\n", request("GET /front", upgrade + "Origin: http://example.org\r\n"),
            request("POST /command", "Origin: http://example.org\r\n")});
    rows(400,
        {request("GET /", "Host: localhost\r\n"), request("GET /", "Hello\r\n"), request("GET /", "Origin : null\r\n"),
            request("GET /", "X: a\r\n b\r\n"), request("GET /", "X: a\nOrigin: null\r\n"),
            request("GET http://localhost:8080/"), "GET / HTTP/2.0\r\nHost: localhost\r\n\r\n",
            request("POST /command", "Content-Length: +5\r\n") + "leds\n",
            request("POST /command", "Content-Length: 0\r\nContent-Length: 5\r\n") + "leds\n",
            request("GET /") + request("GET /")});
    rows(411, {request("POST /command", "Transfer-Encoding: chunked\r\n")});
    rows(413, {request("POST /command", "Content-Length: 65537\r\n")});
    const qsizetype most = 8192 - request("GET /", "X: \r\n").size();
    rows(431,
        {request("GET /", "X: " + QByteArray(most + 1, 'x') + "\r\n"),
            request("GET /", "Much: " + QByteArray(3000000, 'x') + "\r\n")});
    // Another site may lead to the page, but not say which frame it plays.
    rows(303, {request("GET /?frame=3", "Sec-Fetch-Site: cross-site\r\n")});
    rows(200,
        {request("GET /?frame=3&zoom=2", "Sec-Fetch-Site: none\r\n"), request("GET /", "Sec-Fetch-Site: same-site\r\n"),
            request("GET /", "Origin: http://localhost:8080\r\n"),
            request("GET /", "X: " + QByteArray(most, 'x') + "\r\n")});
    for (const char *path : {"/page/index.html", "/../demo/demo.script", "/%2e%2e/demo/demo.script", "/.",
             "//index.html", "/index.html/", "/front"})
        rows(404, {request("GET " + QByteArray(path))});
    rows(404, {request("GET /fronts", upgrade)});
    for (const char *line : {"PUT /", "HEAD /", "DELETE /lcd.png", "POST /", "POST /lcd.png", "GET /command"})
        rows(405, {request(line)});
}

void WebServerTest::answersRequests()
{
    QFETCH(QByteArray, text);
    QFETCH(int, status);
    const Rig rig;
    const QByteArray answer = rig.ask(text);
    QVERIFY2(answer.startsWith("HTTP/1.1 " + QByteArray::number(status) + ' '), answer.left(300));
    QVERIFY2(status != 403 || answer.size() < 300, answer); // and nothing else
    QVERIFY(rig.ask(request("GET /")).startsWith("HTTP/1.1 200 "));
}

void WebServerTest::guardsItsAnswers()
{
    const Rig rig;
    const QByteArray page = rig.ask(request("GET /")), lcd = rig.ask(request("GET /lcd.png"));
    for (const char *field : {"Content-Type: text/html; charset=utf-8", "Cache-Control: no-store",
             "X-Content-Type-Options: nosniff", "Content-Security-Policy: default-src 'none'; script-src 'self';",
             "connect-src 'self' ws://localhost:8080;", "frame-ancestors 'none'"})
        QVERIFY2(page.contains(field), page.left(1000) + field);
    QVERIFY(page == rig.ask(request("GET /index.html")) && lcd.contains("Content-Type: image/png"));
    paint(*rig.device, {0, 0}, 0xffffff);
    const QByteArray after = rig.ask(request("GET /lcd.png"));
    QCOMPARE(QImage::fromData(after.mid(after.indexOf("\r\n\r\n") + 4), "PNG").convertToFormat(QImage::Format_RGB32),
        rig.device->bed().lcd());
    QVERIFY(after != lcd);
}

void WebServerTest::hangsUpOnSlowClients()
{
    const Rig rig({100ms, 5s, 16});
    QVERIFY(rig.ask("GET / HTTP/1.1\r\nHost: loc").startsWith("HTTP/1.1 408 "));
    QVERIFY(rig.ask(request("POST /command", "Content-Length: 9\r\n") + "leds").startsWith("HTTP/1.1 408 "));
}

void WebServerTest::answersOncePerConnection()
{
    const Rig rig;
    QTcpSocket socket;
    socket.connectToHost(QHostAddress::LocalHost, rig.web.port());
    socket.write(request("POST /command", "Content-Length: 9\r\n") + "tap take\n");
    const QSignalSpy pressed(&rig.device->bed(), &TestBed::buttonSet);
    QTRY_COMPARE(pressed.count(), 1); // the first request is being answered
    socket.write("GET / HTTP/1.1\r\nHost: example.org\r\n\r\n");
    QTRY_COMPARE_WITH_TIMEOUT(socket.state(), QAbstractSocket::UnconnectedState, 10000);
    const QByteArray answer = socket.readAll();
    QVERIFY2(answer.count("HTTP/1.1 ") == 1 && answer.contains("\"ok\":true"), answer);
}

void WebServerTest::executesCommands()
{
    const Rig rig;
    const auto answer = [&](const QByteArray &body) { return rig.post(body).split('\n').last(2).join('\n').trimmed(); };
    QCOMPARE(answer("# one\n\n set /SYS/CECU/LCD.Message=gr\xc3\xbc\xc3\x9f \"a\"\r\nget /SYS/CECU/LCD.Message\n"),
        "{\"ok\":true,\"results\":["
        "{\"line\":\"set /SYS/CECU/LCD.Message=gr\xc3\xbc\xc3\x9f \\\"a\\\"\",\"ok\":true,\"text\":\"\"},"
        "{\"line\":\"get /SYS/CECU/LCD.Message\",\"ok\":true,\"text\":\"/SYS/CECU/LCD.Message=gr\xc3\xbc\xc3\x9f "
        "a\"}]}");
    QCOMPARE(answer("leds\nget /SYS.No\nleds"), // the first that fails is the last
        "{\"ok\":false,\"results\":[{\"line\":\"leds\",\"ok\":true,\"text\":\"all LEDs are 0\"},"
        "{\"line\":\"get /SYS.No\",\"ok\":false,\"text\":\"the device has no property /SYS.No\"}]}");
    QCOMPARE(answer("\n# only talk\n"), "{\"ok\":true,\"results\":[]}");
    QCOMPARE(answer("set /SYS/CECU/LCD.Message=\xff\n"), "400"); // no UTF-8
    QCOMPARE(answer("quit").first(10), "{\"ok\":true");
}

void WebServerTest::commandsWaitForEachOther()
{
    const Rig rig;
    QByteArray seen;
    const QSignalSpy pressed(&rig.device->bed(), &TestBed::buttonSet);
    connect(&rig.device->bed(), &TestBed::buttonSet, this, [&] {
        if (pressed.count() == 1) // while the first request is being executed
            QTimer::singleShot(0, this, [&] { seen = rig.post("get /SYS/CECU/LCD.Brightness"); });
    });
    rig.post("tap take 100\nset /SYS/CECU/LCD.Brightness=3");
    QTRY_VERIFY2(seen.contains("/SYS/CECU/LCD.Brightness=3"), seen);
}

void WebServerTest::keyOfALostClientComesUp()
{
    const Rig rig;
    const QSignalSpy moved(&rig.device->bed(), &TestBed::buttonSet);
    QTcpSocket socket;
    socket.connectToHost(QHostAddress::LocalHost, rig.web.port());
    socket.write(request("POST /command", "Content-Length: 30\r\n") + "tap take 600000\ntap load 1000\n");
    QTRY_COMPARE(moved.count(), 1);
    socket.abort();
    QTRY_COMPARE(moved.count(), 2);
    QVERIFY(rig.post("leds").contains("\"ok\":true")); // and nobody waits for it
    QCOMPARE(moved.count(), 2);
}

void WebServerTest::closesOnWrongMessages_data()
{
    QTest::addColumn<QByteArray>("message");
    QTest::addColumn<int>("code");
    for (const char *text :
        {"hello", "", "[]", R"({"type":"dance"})", R"({"type":"press"})", R"({"type":"press","key":1.17})",
            R"({"type":"press","key":"4.1"})", R"({"type":"press","key":"1.41"})", R"({"type":"press","key":"1.0"})",
            R"({"type":"press","key":"1.07"})", R"({"type":"release","key":"take"})",
            R"({"type":"turn","detents":0,"fast":true})", R"({"type":"turn","detents":21,"fast":true})",
            R"({"type":"turn","detents":-21,"fast":true})", R"({"type":"turn","detents":1.5,"fast":true})",
            R"({"type":"turn","detents":"1","fast":true})", R"({"type":"turn","detents":1,"fast":1})",
            R"({"type":"command","line":5})", R"({"type":"command","line":"leds\nleds"})",
            R"({"type":"frame","row":0})", R"({"type":"frame","row":34})", R"({"type":"release-all"} x)"})
        QTest::newRow(*text ? text : "nothing") << QByteArray(text) << 1007;
    QTest::newRow("largest") << QByteArray(65536, ' ') << 1007;
    QTest::newRow("too large") << QByteArray(65537, ' ') << 1009;
    QTest::newRow("binary") << QByteArray("\0", 1) << 1003;
}

void WebServerTest::closesOnWrongMessages()
{
    QFETCH(QByteArray, message);
    QFETCH(int, code);
    const Rig rig;
    const QSignalSpy moved(&rig.device->bed(), &TestBed::buttonSet);
    Page page(rig), other(rig);
    page.say(R"({"type":"press","key":"1.17"})");
    if (code == 1003)
        page.socket.sendBinaryMessage(message);
    else
        page.say(message);
    page.say(R"({"type":"press","key":"1.18"})");
    QTRY_VERIFY(page.isClosed());
    QCOMPARE(int(page.socket.closeCode()), code);
    QTRY_COMPARE(moved.count(), 2); // down, and up as the page is gone; the other key was never pressed
    other.say(R"({"type":"press","key":"1.19"})");
    QTRY_COMPARE(other.held(), "1.19");
}

void WebServerTest::refusesOnePageTooMany()
{
    const Rig rig({5s, 5s, 2});
    auto first = std::make_unique<Page>(rig);
    const Page second(rig);
    RawPage late(rig);
    QTRY_VERIFY(late.bytes().contains("\x03\xf5too many pages")); // 1013
    QVERIFY(!late.bytes().contains("\"type\""));
    first.reset();
    QTRY_COMPARE(late.socket.state(), QAbstractSocket::UnconnectedState);
    const Page next(rig);
}

void WebServerTest::tellsWhatThereIs()
{
    const Rig rig({}, 20); // two panels, with audio
    rig.device->core().addPreset("Show");
    const Page page(rig);
    QStringList types;
    for (const QJsonObject &message : page.heard)
        types += message["type"].toString();
    QCOMPARE(types.mid(0, 7).join(' '), "device leds held program bench log recording");
    const QJsonObject device = page.last("device"), bench = page.last("bench");
    const QJsonArray frames = device["frames"].toArray(), panels = device["panels"].toArray();
    const auto text = [](const QJsonValue &value) { return value.toVariant().toString(); };
    const auto frame = [&](const QJsonValue &row) {
        return text(row["row"]) + ' ' + text(row["partNumber"]) + ' ' + text(row["inputs"]) + 'x'
            + text(row["outputs"]);
    };
    QCOMPARE(frame(device) + ", " + frame(frames[19]), "20 47110020 16x20, 20 47110020 16x20");
    QCOMPARE(frames.size(), 33);
    QCOMPARE(panels.size(), 2);
    QStringList keys;
    for (const QJsonValue &key : {panels[0][16], panels[1][16], panels[0][35], panels[0][39], panels[1][39]})
        keys += text(key["key"]) + ' ' + text(key["role"]) + ' ' + text(key["number"]);
    QCOMPARE(keys.join(", "), "1.17 source 9, 2.17 destination 9, 1.36 take 0, 1.40 destination-lock 0, 2.40 none 0");
    QCOMPARE(page.last("program")["state"], "none");
    QVERIFY(bench["link"].toBool() && bench["upgrade"] == -1 && bench["presets"] == QJsonArray{"Show"});
    QVERIFY(bench["inputSignals"].toArray().size() == 16 && !bench["inputSignals"][3].toBool());
    QVERIFY(bench["psu1"].toBool() && bench["inputSignals"][0].toBool() && !bench["standby"].toBool());
}

void WebServerTest::keyComesUpWithItsLastHolder()
{
    const Rig rig;
    TestBed &bed = rig.device->bed();
    QStringList moves;
    connect(&bed, &TestBed::buttonSet, this,
        [&](int panel, int button, bool down) { moves += QString("%1.%2 %3").arg(panel).arg(button).arg(down); });
    connect(&bed, &TestBed::keyboardKeySet, this,
        [&](int code, bool down) { moves += QString("%1 %2").arg(code).arg(down); });
    connect(&bed, &TestBed::knobTurned, this, [&](int detents, std::chrono::milliseconds spacing) {
        moves += QString("%1 every %2").arg(detents).arg(spacing.count());
    });
    auto one = std::make_unique<Page>(rig);
    Page two(rig);
    for (const char *key : {"1.17", "3.40", "push"})
        one->say(QByteArray(R"({"type":"press","key":")") + key + "\"}");
    QTRY_COMPARE(two.held(), "push 1.17 3.40");
    two.say(R"({"type":"release","key":"1.17"})"); // is not its to release
    two.say(R"({"type":"press","key":"1.17"})");
    two.say(R"({"type":"turn","detents":-2,"fast":true})");
    QTRY_COMPARE(moves.join(", "), "1.17 1, 3.40 1, 28 1, -2 every 20");
    one->socket.abort();
    QTRY_COMPARE(two.held(), "1.17");
    two.say(R"({"type":"press","key":"escape"})");
    QTRY_COMPARE(two.held(), "escape 1.17");
    bed.setButton(1, 17, true); // a console
    two.say(R"({"type":"release-all"})");
    QTRY_COMPARE(two.held(), "1.17");
    bed.setButton(1, 17, false);
    QTRY_COMPARE(two.held(), "");
    QCOMPARE(moves.mid(4).join(", "), "28 0, 3.40 0, 1 1, 1.17 1, 1 0, 1.17 0");
}

void WebServerTest::silentPageLosesItsKeys()
{
    const Rig rig({5s, 500ms, 16});
    const QSignalSpy moved(&rig.device->bed(), &TestBed::buttonSet);
    const Page lively(rig);
    RawPage silent(rig);
    QTRY_VERIFY(silent.bytes().contains("\"held\""));
    silent.send(1, R"({"type":"press","key":"1.1"})");
    QTRY_COMPARE(moved.count(), 1);
    QTRY_COMPARE(moved.count(), 2);
    QVERIFY(!lively.isClosed());
}

void WebServerTest::sendsWhatChangesOnTheLcd()
{
    const Rig rig;
    Page page(rig);
    paint(*rig.device, {319, 239}, 0x123456);
    QTRY_VERIFY(page.lcd == rig.device->bed().lcd());
    QCOMPARE(page.pieces.first(), QRect(0, 0, 320, 240));
    page.pieces.clear();
    paint(*rig.device, {100, 50}, 0xabcdef);
    QTRY_VERIFY(page.lcd == rig.device->bed().lcd());
    page.say(R"({"type":"command","id":7,"line":"wait 150"})"); // some looks at an LCD that does not change
    QTRY_COMPARE(page.last("result")["id"], 7);
    QCOMPARE(page.pieces.size(), 1);
    QVERIFY(page.pieces.first().contains(100, 50) && page.pieces.first().width() * page.pieces.first().height() < 1000);
    Page late(rig);
    QTRY_VERIFY(late.lcd == page.lcd);
    QCOMPARE(page.pieces.size(), 1);
    for (int i = 0; i < 40; ++i) // more than is worth a piece each
        paint(*rig.device, {(i * 97) % 320, i * 6}, 0xff0000);
    QTRY_VERIFY(page.lcd == rig.device->bed().lcd() && late.lcd == page.lcd);
    QVERIFY(page.pieces.size() < 40);
}

void WebServerTest::passesOverASlowPage()
{
    const Rig rig;
    RawPage slow(rig);
    const Page page(rig);
    QTRY_COMPARE(slow.bytes().count(pngBegin), 1);
    for (int i = 1; i <= 10; ++i) {
        paint(*rig.device, {i, 0}, 0xffffff);
        QTRY_COMPARE(page.pieces.size(), i + 1);
    }
    QCOMPARE(slow.bytes().count(pngBegin), 3); // so many it need not have read
    slow.send(10, "3");                        // the pings are numbered
    QTRY_COMPARE(slow.bytes().count(pngBegin), 4);
    const auto newest = [&] { return QImage::fromData(slow.bytes().mid(slow.bytes().lastIndexOf(pngBegin)), "PNG"); };
    QTRY_COMPARE(newest().convertToFormat(QImage::Format_RGB32), page.lcd.copy(0, 0, 16, 16));
}

void WebServerTest::tellsWhatHappens()
{
    const Rig rig({}, 1, "key() { [ $2 = 1 ] && light $1 2; [ $1 = 9 ] && echo bye && exit 3; }");
    Page page(rig);
    QTRY_VERIFY(rig.device->isProgramReady());
    QCOMPARE(page.last("program")["state"], "running");
    page.say(R"({"type":"press","key":"1.3"})");
    QTRY_COMPARE(page.last("led")["key"], "1.3");
    QCOMPARE(page.last("led")["value"], 2);
    page.say(R"({"type":"command","id":{"a":[1]},"line":"link drop"})");
    QTRY_VERIFY(page.last("bench").contains("link") && !page.last("bench")["link"].toBool());
    QCOMPARE(page.last("result"),
        (QJsonObject{{"type", "result"}, {"id", QJsonObject{{"a", QJsonArray{1}}}}, {"ok", true}, {"text", ""}}));
    rig.post("link restore\nupgrade 60\npreset add Show\nset /MANAGEMENT/POWER.Psu1=stopped\ncall "
             "/MANAGEMENT/POWER:standby()");
    QTRY_VERIFY(page.last("bench")["upgrade"].toInt() >= 0 && page.last("bench")["standby"].toBool());
    QVERIFY(page.last("bench")["presets"] == QJsonArray{"Show"} && !page.last("bench")["psu1"].toBool());
    page.say(R"({"type":"press","key":"1.9"})");
    QTRY_COMPARE(page.last("program")["state"], "ended");
    QVERIFY(page.last("program")["text"].toString().contains("exit code 3; its last messages:\n    bye"));
    QTRY_COMPARE(page.log(), "1 request GET /.PartNumber, 2 answer pr /.PartNumber=47110001, 3 message bye");
    const Page late(rig); // hears the same
    QCOMPARE(late.log(), page.log());
    QCOMPARE(late.last("leds")["panels"][0][2], 2);
    QCOMPARE(late.last("bench"), page.last("bench"));
    page.say(R"({"type":"command","id":1,"line":"restart"})");
    QTRY_COMPARE(late.last("program")["state"], "running");
}

void WebServerTest::recordsWhatReplays()
{
    const QByteArray good = "key() { [ $2 = 1 ] && light $1 1 && ask \"SET /SYS/CECU/LCD.Message=a  \\\"$1\\\"\"; }";
    const Rig rig({}, 1, good);
    rig.device->core().setProperty("/SYS/CECU/LCD.AutoTake", "true");
    Page page(rig);
    QTRY_VERIFY(rig.device->isProgramReady());
    page.say(R"({"type":"start-recording","id":1})");
    for (const char *message : {R"({"type":"press","key":"1.3"})", R"({"type":"press","key":"1.17"})",
             R"({"type":"release","key":"1.17"})", R"({"type":"turn","detents":-2,"fast":true})",
             R"({"type":"turn","detents":-1,"fast":true})", R"({"type":"turn","detents":1,"fast":false})",
             R"({"type":"press","key":"push"})", R"({"type":"release-all"})"})
        page.say(message);
    QTRY_COMPARE(rig.device->bed().led(1, 17), 1);
    page.say(R"({"type":"command","id":2,"line":"wait 700"})");
    page.say(R"({"type":"command","id":2,"line":"set /SYS/CECU/LCD.Brightness=3"})");
    QTRY_COMPARE(rig.device->core().property("/SYS/CECU/LCD.Brightness"), "3");
    page.say(R"({"type":"stop-recording","id":3})");
    QTRY_COMPARE(page.last("result")["id"], 3);
    QVERIFY(!page.last("recording")["on"].toBool());
    const QStringList script = page.last("result")["text"].toString().split('\n');
    const QString shape = script.join('|');
    QVERIFY2(shape.startsWith("# Recorded on frame 47110001. "), qPrintable(shape));
    for (const char *part :
        {"|set /SYS/CECU/LCD.AutoTake=true|wait-lcd-still|", "|press source 3|", "|turn -3 fast|turn 1|",
            "|expect request \"SET /SYS/CECU/LCD.Message=a  \\\"3\\\"\"|", "|expect led source 3 1|",
            "|expect led destination 1 1|", "|wait-lcd-still 300|", "|set /SYS/CECU/LCD.Brightness=3|", "|push "})
        QVERIFY2(shape.contains(part), qPrintable(shape + part));
    for (const bool isGood : {true, false}) {
        const Rig fresh({}, 1, isGood ? good : "key() { :; }");
        ScriptRunner runner(*fresh.device, "recorded", script);
        QCOMPARE(runner.check(), QString());
        QSignalSpy finished(&runner, &ScriptRunner::finished);
        runner.start();
        QVERIFY(finished.wait(30000));
        QVERIFY2(isGood == finished[0][1].toString().isEmpty(), qPrintable(shape + finished[0][1].toString()));
    }
}

void WebServerTest::exchangesTheDevice()
{
    Rig rig;
    const QSignalSpy wanted(&rig.web, &WebServer::frameRequested);
    Page page(rig);
    page.say(R"({"type":"press","key":"1.17"})");
    page.say(R"({"type":"command","id":1,"line":"tap take 60000"})"); // ends with the device, and tells that
    const Page other(rig);
    QTRY_COMPARE(page.held(), "1.17 1.33");
    QTcpSocket core;
    core.connectToHost(QHostAddress::LocalHost, rig.device->core().port());
    core.write("GET /.SerialNumber\r\n");
    QTRY_VERIFY(page.last("log")["lines"].toArray().size() == 2);
    page.say(R"({"type":"frame","row":17})");
    QTRY_COMPARE(wanted.count(), 1);
    QCOMPARE(wanted[0][0], 17);
    page.pieces.clear();
    rig.web.setDevice(nullptr);
    rig.device.reset();
    page.say(R"({"type":"press","key":"1.18"})"); // into the void
    QVERIFY(rig.post("leds").startsWith("HTTP/1.1 503 ") && rig.ask(request("GET /")).startsWith("HTTP/1.1 200 "));
    QTRY_COMPARE(page.last("result")["ok"], false);
    rig.device = std::make_unique<Device>(Device::Setup{&frameDescriptors()[16], {}, {}, {}, 0});
    QCOMPARE(rig.device->powerOn(), QString());
    rig.web.setDevice(rig.device.get());
    QTRY_VERIFY(!page.pieces.isEmpty());
    QCOMPARE(page.pieces.first(), QRect(0, 0, 320, 240));
    QCOMPARE(page.last("device")["row"], 17);
    QCOMPARE(page.last("device")["panels"].toArray().size(), 3);
    QVERIFY(page.held().isEmpty() && page.last("log")["lines"].toArray().isEmpty());
    rig.device->bed().setButton(2, 1, true);
    QTRY_COMPARE(page.held(), "2.1");
    core.connectToHost(QHostAddress::LocalHost, rig.device->core().port());
    core.write("GET /.SerialNumber\r\n");
    QTRY_COMPARE(page.last("log")["lines"][0]["n"], 3);
}

QTEST_GUILESS_MAIN(WebServerTest)
#include "webservertest.moc"
