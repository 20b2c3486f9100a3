#include "simulator/web/webserver.h"

#include "simulator/scriptrunner.h"

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

/// A device without a program, or with a shell script in the program's place, and its server.
struct Rig
{
    explicit Rig(const WebServer::Limits &limits = {}, int row = 1, const QString &program = {})
        : device(std::make_unique<Device>(Device::Setup{&frameDescriptors()[size_t(row - 1)], {}, program, {}, 0}))
        , web(limits)
    {
        stands = device->powerOn().isEmpty() && web.listen(0);
        web.setDevice(device.get());
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

    std::unique_ptr<Device> device;
    WebServer web;
    bool stands;
};

/// A page: keeps what it hears and paints what it sees.
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
    }

    void say(const QByteArray &text) { socket.sendTextMessage(text); }
    bool isClosed() const { return socket.state() == QAbstractSocket::UnconnectedState; }
    /// The newest message of a type.
    QJsonObject last(const QString &type) const
    {
        const auto found = std::find_if(heard.rbegin(), heard.rend(), [&](auto &m) { return m["type"] == type; });
        return found == heard.rend() ? QJsonObject() : *found;
    }
    bool hasPicture() const { return !pieces.isEmpty(); }
    QString held() const { return last("held")["keys"].toVariant().toStringList().join(' '); }

    QWebSocket socket;
    QList<QJsonObject> heard;
    QImage lcd{TestBed::lcdWidth, TestBed::lcdHeight, QImage::Format_RGB32};
    QList<QRect> pieces;
};

/// A page that answers nothing by itself, pings neither, and shows every byte.
struct RawPage
{
    struct Frame
    {
        int opcode;
        QByteArray payload;
    };
    enum { Text = 1, Binary = 2, Close = 8, Ping = 9, Pong = 10 };

    explicit RawPage(const Rig &rig)
    {
        socket.connectToHost(QHostAddress::LocalHost, rig.web.port());
        socket.write("GET /front HTTP/1.1\r\nHost: " + rig.own()
            + "\r\nUpgrade: websocket\r\nConnection: Upgrade\r\n"
              "Sec-WebSocket-Version: 13\r\nSec-WebSocket-Key: dGhlIHNhbXBsZSBub25jZQ==\r\n\r\n");
    }

    /// @param payload under 126 bytes.
    void send(int opcode, const QByteArray &payload)
    {
        socket.write(QByteArray(1, char(0x80 | opcode)) + char(0x80 | payload.size()) + QByteArray(4, '\0') + payload);
    }

    const QList<Frame> &read()
    {
        bytes += socket.readAll();
        if (const qsizetype end = bytes.indexOf("\r\n\r\n"); end >= 0 && bytes.startsWith("HTTP"))
            bytes.remove(0, end + 4);
        for (;;) {
            const int marker = bytes.size() < 2 ? 0 : bytes[1] & 0x7f;
            const qsizetype head = marker == 126 ? 4 : marker == 127 ? 10 : 2;
            if (bytes.size() < head || bytes.startsWith("HTTP"))
                return frames;
            const qsizetype size = head == 4 ? qFromBigEndian<quint16>(bytes.data() + 2)
                : head == 10                 ? qsizetype(qFromBigEndian<quint64>(bytes.data() + 2))
                                             : marker;
            if (bytes.size() < head + size)
                return frames;
            frames.append({bytes[0] & 0xf, bytes.mid(head, size)});
            bytes.remove(0, head + size);
        }
    }
    qsizetype count(int opcode) { return std::ranges::count(read(), opcode, &Frame::opcode); }
    const Frame &lastOf(int opcode)
    {
        return *std::find_if(
            frames.rbegin(), frames.rend(), [&](const Frame &frame) { return frame.opcode == opcode; });
    }

    QTcpSocket socket;
    QByteArray bytes;
    QList<Frame> frames;
};

/// Paints on a device's LCD as its program would.
void paint(const Device &device, QPoint pixel, quint32 colour)
{
    QFile file(device.bed().programEnvironment().value("UMOCKDEV_DIR") + "/dev/fb0");
    QVERIFY(file.open(QIODevice::ReadWrite | QIODevice::Unbuffered));
    file.seek((pixel.y() * TestBed::lcdWidth + pixel.x()) * 4);
    file.write(reinterpret_cast<const char *>(&colour), sizeof colour);
}

QByteArray request(const char *line, const QByteArray &fields = {})
{
    return line + QByteArray(" HTTP/1.1\r\nHost: localhost:8080\r\n") + fields + "\r\n";
}

QByteArray get(const QByteArray &fields) { return "GET / HTTP/1.1\r\n" + fields + "\r\n"; }

// What a program in the device's place can do; PORT is the core service's.
const QByteArray tools = R"sh(#!/bin/bash
link() { exec {core}<>/dev/tcp/127.0.0.1/PORT; ask 'GET /.PartNumber'; }
ask() { printf '0001#%s\r\n' "$1" >&$core; }
light() { printf "\0\0\0\0\0\0\0\0\x11\0\x$(printf %02x $1)\0\x0$2\0\0\0" >&$device; }
keys() { exec {device}<>/dev/input/event2; link; while :; do # "key NUMBER VALUE" for each
    set -- $(head -c 16 <&$device | od -An -v -tu2 -w16); [ "$5" = 1 ] && key $(($6 - 703)) $7; done; }
)sh";

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
    void executesCommands_data();
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
    const auto row
        = [](const char *name, const QByteArray &text, int status) { QTest::newRow(name) << text << status; };
    const QByteArray upgrade = "Upgrade: websocket\r\nConnection: Upgrade\r\nSec-WebSocket-Version: 13\r\n";
    for (const char *host : {"127.0.0.1", "localhost:1", "[::1]:65535", "LocalHost"})
        row(host, get(QByteArray("Host: ") + host + "\r\n"), 200);
    for (const char *host : {"example.org", "localhost.example.org", "127.0.0.1.example.org", "example.org:80",
             "mylocalhost", "127.0.0.1:80a", "127.0.0.1:", "127.0.0.2", "::1", "localhost@example.org", ""})
        row(host, get(QByteArray("Host: ") + host + "\r\n"), 403);
    for (const char *origin : {"null", "http://example.org", "http://localhost", "http://localhost:80800",
             "http://localhost:8080.example.org", "https://localhost:8080", "http://127.0.0.1:8080"})
        row(origin, request("GET /", QByteArray("Origin: ") + origin + "\r\n"), 403);
    row("its own origin", request("GET /", "Origin: http://localhost:8080\r\n"), 200);
    row("no host", get(""), 403);
    row("two hosts", get("Host: localhost\r\nHost: localhost\r\n"), 400);
    row("two origins", request("GET /", "Origin: http://localhost:8080\r\nOrigin: http://example.org\r\n"), 400);
    row("foreign WebSocket", request("GET /front", upgrade + "Origin: http://example.org\r\n"), 403);
    row("WebSocket elsewhere", request("GET /fronts", upgrade), 404);
    row("commands from a foreign page", request("POST /command", "Origin: http://example.org\r\n"), 403);
    row("no field", request("GET /", "Hello\r\n"), 400);
    row("blank before the colon", request("GET /", "Origin : null\r\n"), 400);
    row("folded field", request("GET /", "X: a\r\n b\r\n"), 400);
    row("bare line end", request("GET /", "X: a\nOrigin: null\r\n"), 400);
    row("whole address", request("GET http://localhost:8080/"), 400);
    row("other protocol", "GET / HTTP/2.0\r\nHost: localhost\r\n\r\n", 400);
    row("body in chunks", request("POST /command", "Transfer-Encoding: chunked\r\n"), 411);
    row("large body", request("POST /command", "Content-Length: 65537\r\n"), 413);
    row("no length", request("POST /command", "Content-Length: +5\r\n") + "leds\n", 400);
    row("two lengths", request("POST /command", "Content-Length: 0\r\nContent-Length: 5\r\n") + "leds\n", 400);
    row("a second request behind it", request("GET /") + request("GET /"), 400);
    const qsizetype rest = 8192 - request("GET /", "X: \r\n").size();
    row("longest head", request("GET /", "X: " + QByteArray(rest, 'x') + "\r\n"), 200);
    row("longer head", request("GET /", "X: " + QByteArray(rest + 1, 'x') + "\r\n"), 431);
    row("much longer head", request("GET /", "X: " + QByteArray(3000000, 'x') + "\r\n"), 431);
    row("with a query", request("GET /?frame=3&zoom=2", "Sec-Fetch-Site: none\r\n"), 200);
    row("led by another site", request("GET /?frame=3", "Sec-Fetch-Site: cross-site\r\n"), 303);
    row("led by another site, as it is", request("GET /", "Sec-Fetch-Site: same-site\r\n"), 200);
    row("LCD", request("GET /lcd.png"), 200);
    for (const char *path : {"/nothing", "/page/index.html", "/../demo/demo.script", "/%2e%2e/demo/demo.script", "/.",
             "//index.html", "/index.html/", "/front"})
        row(path, request("GET " + QByteArray(path)), 404);
    for (const char *line :
        {"PUT /", "HEAD /", "OPTIONS /command", "DELETE /lcd.png", "BREW /", "POST /", "POST /lcd.png", "GET /command"})
        row(line, request(line), 405);
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

void WebServerTest::executesCommands_data()
{
    QTest::addColumn<QByteArray>("body");
    QTest::addColumn<QByteArray>("answer"); // the end of it
    const auto row = [](const char *name, const QByteArray &body, const QByteArray &answer) {
        QTest::newRow(name) << body << answer;
    };
    row("lines in order", "# one\n\n set /SYS/CECU/LCD.Message=gr\xc3\xbc\xc3\x9f \"a\"\r\nget /SYS/CECU/LCD.Message\n",
        "{\"ok\":true,\"results\":["
        "{\"line\":\"set /SYS/CECU/LCD.Message=gr\xc3\xbc\xc3\x9f \\\"a\\\"\",\"ok\":true,\"text\":\"\"},"
        "{\"line\":\"get /SYS/CECU/LCD.Message\",\"ok\":true,\"text\":\"/SYS/CECU/LCD.Message=gr\xc3\xbc\xc3\x9f "
        "a\"}]}\n");
    row("the first that fails is the last", "leds\nget /SYS.No\nleds",
        "{\"ok\":false,\"results\":[{\"line\":\"leds\",\"ok\":true,\"text\":\"all LEDs are 0\"},"
        "{\"line\":\"get /SYS.No\",\"ok\":false,\"text\":\"the device has no property /SYS.No\"}]}\n");
    row("a name that a preset cannot have", "preset add /x/y",
        "\"ok\":false,\"text\":\"name not accepted: /x/y\"}]}\n");
    row("nothing", "\n# only talk\n", "{\"ok\":true,\"results\":[]}\n");
    row("no UTF-8", "set /SYS/CECU/LCD.Message=\xff\n", "\r\n\r\n400\n");
}

void WebServerTest::executesCommands()
{
    QFETCH(QByteArray, body);
    QFETCH(QByteArray, answer);
    const QByteArray seen = Rig().post(body);
    QVERIFY2(seen.endsWith(answer), seen);
}

void WebServerTest::commandsWaitForEachOther()
{
    const Rig rig;
    const QByteArray second = "get /SYS/CECU/LCD.Brightness";
    QByteArray seen;
    const QSignalSpy pressed(&rig.device->bed(), &TestBed::buttonSet);
    connect(&rig.device->bed(), &TestBed::buttonSet, this, [&] {
        if (pressed.count() == 1) // while the first request is being executed
            QTimer::singleShot(0, this, [&] { seen = rig.post(second); });
    });
    QVERIFY(rig.post("tap take 100\nset /SYS/CECU/LCD.Brightness=3").contains("\"ok\":true"));
    QTRY_VERIFY2(seen.contains("/SYS/CECU/LCD.Brightness=3"), seen);
    QVERIFY(Rig().post("quit").contains("\"ok\":true"));
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
        {"hello", "", "[]", "null", "{}", R"({"type":"dance"})", R"({"type":["press"]})", R"({"type":"press"})",
            R"({"type":"press","key":1.17})", R"({"type":"press","key":"4.1"})", R"({"type":"press","key":"1.41"})",
            R"({"type":"press","key":"1.0"})", R"({"type":"press","key":"1.07"})", R"({"type":"press","key":"1.1 "})",
            R"({"type":"release","key":"take"})", R"({"type":"turn"})", R"({"type":"turn","detents":0,"fast":true})",
            R"({"type":"turn","detents":21,"fast":true})", R"({"type":"turn","detents":-21,"fast":true})",
            R"({"type":"turn","detents":1.5,"fast":true})", R"({"type":"turn","detents":"1","fast":true})",
            R"({"type":"turn","detents":1,"fast":1})", R"({"type":"command","id":1})", R"({"type":"command","line":5})",
            R"({"type":"command","line":"leds\nleds"})", R"({"type":"frame","row":0})", R"({"type":"frame","row":34})",
            R"({"type":"frame","row":"1"})", R"({"type":"release-all"} x)"})
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
    QTRY_VERIFY(page.hasPicture() && other.hasPicture());
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
    Page next(rig);
    QTRY_COMPARE(next.held(), "1.19");
}

void WebServerTest::refusesOnePageTooMany()
{
    const Rig rig({5s, 5s, 3});
    std::list<Page> pages;
    for (int i = 0; i < 3; ++i)
        pages.emplace_back(rig);
    for (const Page &page : pages)
        QTRY_VERIFY(page.hasPicture());
    RawPage late(rig);
    QTRY_COMPARE(late.count(RawPage::Close), 1);
    QCOMPARE(qFromBigEndian<quint16>(late.lastOf(RawPage::Close).payload.data()), 1013);
    QCOMPARE(late.count(RawPage::Text), 0);
    pages.pop_front();
    QTRY_COMPARE(late.socket.state(), QAbstractSocket::UnconnectedState);
    Page next(rig);
    QTRY_VERIFY(next.hasPicture());
}

void WebServerTest::tellsWhatThereIs()
{
    const Rig rig({}, 20); // two panels, with audio
    rig.device->core().addPreset("Show");
    Page page(rig);
    QTRY_VERIFY(page.hasPicture());
    QStringList types;
    for (const QJsonObject &message : page.heard)
        types += message["type"].toString();
    QCOMPARE(types.mid(0, 7).join(' '), "device leds held program bench log recording");
    const QJsonObject device = page.last("device"), bench = page.last("bench");
    QCOMPARE(device["partNumber"], "47110020");
    QCOMPARE(device["frames"].toArray().size(), 33);
    const QJsonObject row = device["frames"][19].toObject();
    QVERIFY(row["row"] == 20 && row["outputs"] == 20 && row["inputs"] == 16 && device["outputs"] == 20);
    const auto key = [panels = device["panels"].toArray()](int panel, int button) {
        const QJsonObject object = panels[panel - 1][button - 1].toObject();
        return QString("%1 %2 %3")
            .arg(object["key"].toString(), object["role"].toString())
            .arg(object["number"].toInt());
    };
    QCOMPARE(device["panels"].toArray().size(), 2);
    QCOMPARE(key(1, 17) + ", " + key(2, 17) + ", " + key(1, 36) + ", " + key(1, 40) + ", " + key(2, 40),
        "1.17 source 9, 2.17 destination 9, 1.36 take 0, 1.40 destination-lock 0, 2.40 none 0");
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
    QTRY_VERIFY(one->hasPicture() && two.hasPicture());
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
    const Rig rig({5s, 200ms, 16});
    const QSignalSpy moved(&rig.device->bed(), &TestBed::buttonSet);
    Page lively(rig);
    RawPage silent(rig);
    QTRY_VERIFY(silent.count(RawPage::Text) > 0);
    silent.send(RawPage::Text, R"({"type":"press","key":"1.1"})");
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
    Page page(rig);
    QTRY_VERIFY(page.hasPicture() && slow.count(RawPage::Binary) == 1);
    for (int i = 1; i <= 10; ++i) {
        paint(*rig.device, {i, 0}, 0xffffff);
        QTRY_COMPARE(page.pieces.size(), i + 1);
    }
    QCOMPARE(slow.count(RawPage::Binary), 3); // so many it need not have read
    slow.send(RawPage::Pong, slow.lastOf(RawPage::Ping).payload);
    QTRY_COMPARE(slow.count(RawPage::Binary), 4);
    const QImage piece = QImage::fromData(slow.lastOf(RawPage::Binary).payload.mid(4), "PNG");
    QCOMPARE(piece.convertToFormat(QImage::Format_RGB32), page.lcd.copy(0, 0, 16, 16)); // the newest at once
}

void WebServerTest::tellsWhatHappens()
{
    QTemporaryDir folder;
    const QString program = folder.filePath("front-panel");
    const Rig rig({}, 1, program);
    QFile file(program);
    QVERIFY(
        file.open(QIODevice::WriteOnly) && file.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
    file.write(QByteArray(tools).replace("PORT", QByteArray::number(rig.device->core().port()))
        + "key() { [ $2 = 1 ] && light $1 2; [ $1 = 9 ] && echo bye && exit 3; }; keys\n");
    file.close();
    rig.device->startProgram();
    Page page(rig);
    QTRY_COMPARE(page.last("program")["state"], "running");
    QTRY_VERIFY(rig.device->isProgramReady());
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
    QStringList log;
    const auto collect = [&] {
        log.clear();
        for (const QJsonObject &message : page.heard)
            for (const QJsonValue line : message["type"] == "log" ? message["lines"].toArray() : QJsonArray())
                log += QString("%1 %2 %3")
                           .arg(line["n"].toInt())
                           .arg(line["direction"].toString(), line["text"].toString());
        return log.join(", ");
    };
    QTRY_COMPARE(collect(), "1 request GET /.PartNumber, 2 answer pr /.PartNumber=47110001, 3 message bye");
    Page late(rig); // hears the same
    QTRY_VERIFY(late.hasPicture());
    QCOMPARE(late.last("log")["lines"].toArray().size(), 3);
    QCOMPARE(late.last("leds")["panels"][0][2], 2);
    QCOMPARE(late.last("bench"), page.last("bench"));
    page.say(R"({"type":"command","id":1,"line":"restart"})");
    QTRY_COMPARE(late.last("program")["state"], "running");
}

void WebServerTest::recordsWhatReplays()
{
    QTemporaryDir folder;
    const QString program = folder.filePath("front-panel");
    const auto writeProgram = [&program](Device &device, const QByteArray &key) {
        QFile file(program);
        QVERIFY(file.open(QIODevice::WriteOnly)
            && file.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
        file.write(QByteArray(tools).replace("PORT", QByteArray::number(device.core().port())) + key + "\nkeys\n");
    };
    const QByteArray good = "key() { [ $2 = 1 ] && light $1 1 && ask \"SET /SYS/CECU/LCD.Message=a  \\\"$1\\\"\"; }";
    const Rig rig({}, 1, program);
    writeProgram(*rig.device, good);
    rig.device->startProgram();
    rig.device->core().setProperty("/SYS/CECU/LCD.AutoTake", "true");
    Page page(rig);
    QTRY_VERIFY(page.hasPicture() && rig.device->isProgramReady());
    page.say(R"({"type":"start-recording","id":1})");
    for (const char *message : {R"({"type":"press","key":"1.3"})", R"({"type":"press","key":"1.17"})",
             R"({"type":"release","key":"1.17"})", R"({"type":"turn","detents":-2,"fast":true})",
             R"({"type":"turn","detents":-1,"fast":true})", R"({"type":"turn","detents":1,"fast":false})",
             R"({"type":"press","key":"push"})", R"({"type":"release-all"})"})
        page.say(message);
    QTRY_VERIFY(rig.device->bed().led(1, 17) == 1);
    page.say(R"({"type":"command","id":2,"line":"wait 700"})");
    page.say(R"({"type":"command","id":2,"line":"set /SYS/CECU/LCD.Brightness=3"})");
    QTRY_COMPARE(page.last("result")["id"], 2);
    QTRY_COMPARE(rig.device->core().property("/SYS/CECU/LCD.Brightness"), "3");
    page.say(R"({"type":"stop-recording","id":3})");
    QTRY_COMPARE(page.last("result")["id"], 3);
    QVERIFY(!page.last("recording")["on"].toBool());
    const QStringList script = page.last("result")["text"].toString().split('\n');
    const QString shape = script.join('|');
    QVERIFY2(shape.contains("expect led source 3 1|") && shape.startsWith("# Recorded on frame 47110001. ")
            && shape.contains("|set /SYS/CECU/LCD.AutoTake=true|wait-lcd-still|press source 3|"),
        qPrintable(shape));
    for (const char *part : {"|turn -3 fast|turn 1|", "|expect request \"SET /SYS/CECU/LCD.Message=a  \\\"3\\\"\"|",
             "|expect led destination 1 1|", "|wait-lcd-still 300|", "|set /SYS/CECU/LCD.Brightness=3|", "|push "})
        QVERIFY2(shape.contains(part), qPrintable(shape + part));
    for (const bool isGood : {true, false}) {
        Rig fresh({}, 1, program);
        writeProgram(*fresh.device, isGood ? good : "key() { :; }");
        fresh.device->startProgram();
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
    QTRY_VERIFY(page.hasPicture());
    page.say(R"({"type":"press","key":"1.17"})");
    page.say(R"({"type":"command","id":1,"line":"tap take 60000"})"); // ends with the device, and tells that
    Page other(rig);
    QTRY_COMPARE(page.held(), "1.17 1.33");
    QTRY_VERIFY(other.hasPicture());
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
    QTRY_VERIFY(page.hasPicture());
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
