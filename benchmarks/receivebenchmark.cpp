// The receive path of the protocol client, from bytes to the sink's callback, beside memchr for the line ends of
// the same bytes (the floor) and beside another line protocol's reader; the argument is the size of a read.

#include "benchmarks/devicestream.h"
#include "protocol/dt3manager.h"
#include "protocol/dt3sink.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QTcpServer>

#include <benchmark/benchmark.h>
#include <cstring>
#include <fcntl.h>
#include <hiredis/hiredis.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <thread>
#include <unistd.h>

// Counts every allocation of the process; forwards to tcmalloc, which the program is linked with.
extern "C" {
void *tc_malloc(size_t size);
void *tc_calloc(size_t count, size_t size);
void *tc_realloc(void *old, size_t size);

static size_t allocations = 0;

void *malloc(size_t size)
{
    ++allocations;
    return tc_malloc(size);
}
void *calloc(size_t count, size_t size)
{
    ++allocations;
    return tc_calloc(count, size);
}
void *realloc(void *old, size_t size)
{
    ++allocations;
    return tc_realloc(old, size);
}
}

void *operator new(size_t size) { return malloc(size); }

namespace {

struct CountingSink : Dt3Sink
{
    void propertyReceived(const QString &, const QString &value) override { characters += value.size(); }
    void propertyChanged(const QString &property, const QString &value) override
    {
        characters += property.size() + value.size();
        ++changes;
        if (loop && value == u"last")
            loop->quit();
    }

    qsizetype characters = 0;
    int changes = 0;
    QEventLoop *loop = nullptr;
};

/// The socket's descriptor, as one that the caller owns and may wait on.
int blockingCopy(const QTcpSocket &socket)
{
    const int descriptor = dup(int(socket.socketDescriptor()));
    fcntl(descriptor, F_SETFL, fcntl(descriptor, F_GETFL) & ~O_NONBLOCK);
    return descriptor;
}

/// A client that holds the stream's nodes open. Its connection may be cut afterwards.
class Client
{
public:
    explicit Client(const QStringList &nodes)
    {
        m_server.listen(QHostAddress::LocalHost);
        m_manager.reset(new Dt3Manager(QStringLiteral("127.0.0.1"), QString::number(m_server.serverPort())));
        QEventLoop loop;
        QObject::connect(m_manager.get(), &Dt3Manager::connectionStateChanged, &loop, &QEventLoop::quit);
        m_manager->connectToDevice();
        loop.exec();
        for (const QString &node : nodes) {
            m_manager->open(&sink, node);
            m_manager->receive("o- " + node.toUtf8() + "\r\n");
        }
    }

    /// Without a connection requests are remembered and not written, which is all that reading answers needs.
    void cut()
    {
        QEventLoop loop;
        QObject::connect(m_manager.get(), &Dt3Manager::connectionStateChanged, &loop, &QEventLoop::quit);
        m_server.close();
        if (!m_server.hasPendingConnections())
            m_server.waitForNewConnection(1000);
        delete m_server.nextPendingConnection();
        loop.exec();
    }

    /// The service's end of the connection, as a plain descriptor that the caller owns.
    int takeDescriptor()
    {
        if (!m_server.hasPendingConnections())
            m_server.waitForNewConnection(1000);
        return blockingCopy(*m_server.nextPendingConnection());
    }

    Dt3Manager &manager() { return *m_manager; }
    CountingSink sink;

private:
    QTcpServer m_server;
    std::unique_ptr<Dt3Manager> m_manager;
};

template <typename Handle> void inReads(const QByteArray &bytes, qsizetype size, Handle handle)
{
    for (qsizetype from = 0; from < bytes.size(); from += size)
        handle(QByteArrayView(bytes).sliced(from, std::min(size, bytes.size() - from)));
}

void setRates(benchmark::State &state, const DeviceStream &stream)
{
    state.SetBytesProcessed(state.iterations() * stream.bytes().size());
    state.SetItemsProcessed(state.iterations() * stream.lineCount());
}

void memchrFloor(benchmark::State &state)
{
    const DeviceStream stream;
    for (auto _ : state) {
        size_t lines = 0;
        inReads(stream.bytes(), state.range(0), [&lines](QByteArrayView read) {
            for (const char *at = read.begin();
                 (at = static_cast<const char *>(std::memchr(at, '\n', size_t(read.end() - at)))); ++at)
                ++lines;
        });
        benchmark::DoNotOptimize(lines);
    }
    setRates(state, stream);
}

void receivePath(benchmark::State &state)
{
    DeviceStream stream;
    Client client(stream.nodes());
    client.cut();
    int signature = 0;
    size_t allocated = 0;
    for (auto _ : state) {
        state.PauseTiming();
        stream.renumber(signature);
        for (int block = 0; block < stream.blockCount(); ++block)
            client.manager().get(&client.sink, QStringLiteral("/MEDIA/PORTS/VIDEO/I1/SETTINGS.*"));
        signature = (signature + stream.blockCount()) % 10000;
        const size_t before = allocations;
        state.ResumeTiming();
        inReads(stream.bytes(), state.range(0), [&client](QByteArrayView read) { client.manager().receive(read); });
        allocated += allocations - before;
    }
    if (client.sink.changes != state.iterations() * stream.changeCount())
        state.SkipWithError("changes were lost");
    setRates(state, stream);
    state.counters["allocations/line"] = double(allocated) / double(state.iterations() * stream.lineCount());
}

void changesOnly(benchmark::State &state)
{
    const DeviceStream all;
    QByteArray changes;
    int count = 0;
    for (const QByteArray &line : all.bytes().split('\n')) {
        if (line.startsWith("CHG ")) {
            changes += line + '\n';
            ++count;
        }
    }
    Client client(all.nodes());
    client.cut();
    client.manager().receive(changes); // every path is known from here on
    size_t allocated = 0;
    for (auto _ : state) {
        const size_t before = allocations;
        inReads(changes, state.range(0), [&client](QByteArrayView read) { client.manager().receive(read); });
        allocated += allocations - before;
    }
    state.SetItemsProcessed(state.iterations() * count);
    state.counters["allocations/change"] = double(allocated) / double(state.iterations() * count);
}

void hiredisReader(benchmark::State &state)
{
    const DeviceStream stream;
    QByteArray lines;
    for (const QByteArray &line : stream.bytes().split('\n')) {
        if (!line.isEmpty())
            lines += '+' + line + '\n'; // a status reply, the protocol's plain line
    }
    redisReader *reader = redisReaderCreate();
    for (auto _ : state) {
        size_t characters = 0;
        inReads(lines, state.range(0), [&](QByteArrayView read) {
            redisReaderFeed(reader, read.data(), size_t(read.size()));
            for (void *reply = nullptr; redisReaderGetReply(reader, &reply) == REDIS_OK && reply;) {
                characters += static_cast<redisReply *>(reply)->len;
                freeReplyObject(reply);
            }
        });
        benchmark::DoNotOptimize(characters);
    }
    redisReaderFree(reader);
    setRates(state, stream);
}

constexpr int streamsPerRound = 100;

/// Writes the stream again and again, then the last line, from a thread of its own.
std::thread sendStream(int descriptor, const DeviceStream &stream)
{
    return std::thread([descriptor, &stream] {
        QByteArray bytes = stream.bytes();
        const QByteArray last = "CHG " + stream.nodes().front().toUtf8() + ".SignalType=last\r\n";
        for (int i = 0; i <= streamsPerRound; ++i) {
            const QByteArray &part = i < streamsPerRound ? bytes : last;
            for (qsizetype sent = 0; sent < part.size();) {
                const ssize_t n = send(descriptor, part.data() + sent, size_t(part.size() - sent), MSG_NOSIGNAL);
                if (n < 1)
                    return;
                sent += n;
            }
        }
    });
}

void throughTcpSocket(benchmark::State &state)
{
    const DeviceStream stream;
    Client client(stream.nodes());
    const int service = client.takeDescriptor();
    QEventLoop loop;
    client.sink.loop = &loop;
    for (auto _ : state) {
        std::thread sender = sendStream(service, stream);
        loop.exec();
        sender.join();
    }
    close(service);
    state.SetBytesProcessed(state.iterations() * streamsPerRound * stream.bytes().size());
}

void throughRawRecv(benchmark::State &state)
{
    const DeviceStream stream;
    QTcpServer server;
    server.listen(QHostAddress::LocalHost);
    const int client = socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(server.serverPort());
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    if (connect(client, reinterpret_cast<sockaddr *>(&address), sizeof address) != 0)
        state.SkipWithError("cannot connect");
    server.waitForNewConnection(1000);
    const int service = blockingCopy(*server.nextPendingConnection());
    QByteArray buffer(65536, 0);
    for (auto _ : state) {
        std::thread sender = sendStream(service, stream);
        for (bool done = false; !done;) {
            const ssize_t n = recv(client, buffer.data(), size_t(buffer.size()), 0);
            done = n < 1 || QByteArrayView(buffer.data(), n).endsWith("=last\r\n");
        }
        sender.join();
    }
    close(service);
    close(client);
    state.SetBytesProcessed(state.iterations() * streamsPerRound * stream.bytes().size());
}

void readSizes(benchmark::internal::Benchmark *benchmark)
{
    for (const int size : {1, 7, 1460, 16384})
        benchmark->Arg(size);
}

BENCHMARK(memchrFloor)->Apply(readSizes);
BENCHMARK(receivePath)->Apply(readSizes);
BENCHMARK(hiredisReader)->Apply(readSizes);
BENCHMARK(changesOnly)->Arg(1460);
BENCHMARK(throughTcpSocket)->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK(throughRawRecv)->UseRealTime()->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) {});
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
