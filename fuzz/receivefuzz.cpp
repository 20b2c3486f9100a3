#include "fuzz/harness.h"
#include "protocol/dt3manager.h"
#include "protocol/dt3sink.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QSet>
#include <QTcpServer>

#include <array>
#include <functional>
#include <memory>

// Dt3Manager::receive() with sinks that open, close, ask and destroy each other while lines are handed out.
// An input's first line is what they do, in groups that "." divides: the first before all, the others one per
// callback. A word is who does what with which node, as in "0oA": o opens, c closes, g, s and m ask, d destroys,
// n makes anew. The rest of the input is what the device sends, in reads that a form feed divides.

namespace {

constexpr std::array nodes{"/", "/A", "/A/B", "/MEDIA/PRESET"};

/// Tells what it hears before it acts on it, for by then it may be destroyed.
struct Sink final : Dt3Sink
{
    explicit Sink(std::function<void()> play)
        : act(std::move(play))
    {
    }
    void nodeReceived(const QString &) override { answered(); }
    void propertyReceived(const QString &, const QString &) override { answered(); }
    void propertyChanged(const QString &property, const QString &) override { hear(Dt3Manager::nodeOf(property)); }
    void nodeAdded(const QString &parent, const QString &) override { hear(parent); }
    void nodeRemoved(const QString &parent, const QString &) override { hear(parent); }
    void answered()
    {
        require(hasAsked, "only who has asked is answered");
        const auto copy = act; // we may be gone in it
        copy();
    }
    void hear(const QString &node)
    {
        require(opened.contains(node), "changes come to who has the node open");
        ++heard;
        const auto copy = act; // we may be gone in it
        copy();
    }
    void request(char what, const QString &node)
    {
        hasAsked = hasAsked || QByteArrayView("gsm").contains(what);
        switch (what) {
        case 'o': opened.insert(node), open(node); break;
        case 'c': opened.remove(node), close(node); break;
        case 'g': get(node); break;
        case 's': set(node + ".X", "1"); break;
        case 'm': call(node + ":x", {}); break;
        default: break;
        }
    }

    const std::function<void()> act;
    QSet<QString> opened;
    bool hasAsked = false;
    int heard = 0; ///< Changes.
};

/// What they do, and who of them there is.
class Play
{
public:
    explicit Play(const QByteArray &script)
        : m_script(script.split('.'))
    {
        for (std::unique_ptr<Sink> &sink : m_sinks)
            sink = std::make_unique<Sink>([this] { next(); });
    }
    /// A word that makes no sense, or whose sink is not there, does nothing.
    void next()
    {
        if (m_script.isEmpty())
            return;
        const QList<QByteArray> words = m_script.takeFirst().split(' ');
        for (const QByteArray &word : words) {
            if (word.size() != 3)
                continue;
            std::unique_ptr<Sink> &sink = m_sinks[size_t(word[0]) % m_sinks.size()];
            if (word[1] == 'n' && !sink)
                sink = std::make_unique<Sink>([this] { next(); });
            else if (word[1] == 'd')
                sink.reset();
            else if (sink)
                sink->request(word[1], nodes[size_t(word[2]) % nodes.size()]);
        }
    }
    /// Every other one closes what it has open; the rest just go.
    void end()
    {
        for (size_t i = 0; i < m_sinks.size(); i += 2) {
            for (const char *node : nodes) {
                if (m_sinks[i] && m_sinks[i]->opened.contains(node))
                    m_sinks[i]->request('c', node);
            }
        }
        for (std::unique_ptr<Sink> &sink : m_sinks)
            sink.reset();
    }

private:
    QList<QByteArray> m_script;
    std::array<std::unique_ptr<Sink>, 4> m_sinks;
};

std::unique_ptr<QTcpSocket> connectManager(QTcpServer &server)
{
    QEventLoop loop;
    QObject::connect(Dt3Manager::instance(), &Dt3Manager::connectionStateChanged, &loop, &QEventLoop::quit);
    Dt3Manager::instance()->connectToDevice();
    loop.exec();
    require(server.hasPendingConnections() || server.waitForNewConnection(5000), "the client connects");
    return std::unique_ptr<QTcpSocket>(server.nextPendingConnection());
}

/// The nodes that are open at the device by what it has got.
QSet<QByteArray> openAt(QTcpSocket &device)
{
    Sink([] {}).request('g', "/END");
    QByteArray bytes;
    while (!bytes.endsWith("GET /END\r\n")) {
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        bytes += device.readAll();
    }
    QSet<QByteArray> open;
    for (const QByteArray &line : bytes.split('\n')) {
        if (line.startsWith("OPEN "))
            open.insert(line.mid(5));
        else if (line.startsWith("CLOSE "))
            open.remove(line.mid(6));
    }
    return open;
}

} // namespace

int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    static int argc = 1;
    static char name[] = "receivefuzz", *argv[] = {name, nullptr};
    static auto &application = *new QCoreApplication(argc, argv); // for the life of the process, as the server
    static auto &server = *new QTcpServer(&application);
    require(server.isListening() || server.listen(QHostAddress::LocalHost, 6107), "port 6107 is free");

    const QByteArray input = inputOf(data, size).toByteArray();
    const qsizetype end = input.indexOf('\n');
    const std::unique_ptr<QTcpSocket> device = connectManager(server);
    Play play(input.left(end));
    play.next();
    for (const QByteArray &read : input.mid(end < 0 ? input.size() : end + 1).split('\f'))
        Dt3Manager::instance()->receive(read);
    play.end();
    require(openAt(*device).isEmpty(), "no node stays open at the device");

    Sink late([] {});
    late.request('o', "/A");
    Dt3Manager::instance()->receive("\r\n}\r\no- /A\r\nCHG /A.X=1\r\n");
    require(late.heard == 1, "whatever has come, the next line is understood");
    delete Dt3Manager::instance();
    return 0;
}
