#include "hardware/devicefile.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <thread>

class DeviceFileTest : public QObject
{
    Q_OBJECT

private slots:
    void opensOnce();
    void gathersPieces();
    void nonBlocking();
    void failures();

private:
    QByteArray path(const char *name) const { return QFile::encodeName(m_directory.filePath(name)); }
    QTemporaryDir m_directory;
};

void DeviceFileTest::opensOnce()
{
    DeviceFile file;
    QVERIFY(!file.isOpen());
    QCOMPARE(file.close(), 0);
    QCOMPARE(file.open(path("missing")), -1);
    QCOMPARE(errno, ENOENT);
    QVERIFY(!file.isOpen());
    QCOMPARE(file.open("/dev/zero"), 0);
    QCOMPARE(file.open(path("missing")), 0); // it stays with the one it has
    char byte = 1;
    QCOMPARE(file.readAll(&byte, 1), 1);
    QCOMPARE(byte, '\0');
    QCOMPARE(file.close(), 0);
    QVERIFY(!file.isOpen());
    QCOMPARE(file.read(&byte, 1), -1);
}

void DeviceFileTest::gathersPieces()
{
    const QByteArray pipe = path("pipe");
    QCOMPARE(::mkfifo(pipe, 0600), 0);
    DeviceFile writer;
    DeviceFile reader;
    QCOMPARE(writer.open(pipe), 0);
    QCOMPARE(reader.open(pipe), 0);
    QByteArray sent(300000, 'x'); // several times what a pipe holds
    sent.back() = 'y';
    ssize_t written = 0;
    std::thread thread([&] { written = writer.writeAll(sent, static_cast<size_t>(sent.size())); });
    QByteArray received(sent.size(), 0);
    const ssize_t count = reader.readAll(received.data(), static_cast<size_t>(received.size()));
    thread.join();
    QCOMPARE(written, sent.size());
    QCOMPARE(count, sent.size());
    QCOMPARE(received, sent);
}

void DeviceFileTest::nonBlocking()
{
    const QByteArray pipe = path("quiet");
    QCOMPARE(::mkfifo(pipe, 0600), 0);
    DeviceFile file;
    QCOMPARE(file.setNonBlocking(), -1);
    QCOMPARE(file.open(pipe), 0);
    QCOMPARE(file.setNonBlocking(), 0);
    char bytes[2];
    QCOMPARE(file.read(bytes, 2), -1);
    QCOMPARE(errno, EAGAIN);
    QCOMPARE(file.writeAll("a", 1), 1);
    QCOMPARE(file.readAll(bytes, 2), -1); // only one is there
}

void DeviceFileTest::failures()
{
    DeviceFile full;
    QCOMPARE(full.writeAll("a", 0), 0);
    QCOMPARE(full.readAll(nullptr, 0), 0);
    QCOMPARE(full.open("/dev/full"), 0);
    QCOMPARE(full.writeAll("a", 1), -1);
    QCOMPARE(errno, ENOSPC);

    QFile contents(m_directory.filePath("short"));
    QVERIFY(contents.open(QIODevice::WriteOnly) && contents.write("abc") == 3);
    contents.close();
    DeviceFile file;
    QCOMPARE(file.open(path("short")), 0);
    char bytes[4];
    QCOMPARE(file.readAll(bytes, 4), -1); // the file ends before
}

QTEST_GUILESS_MAIN(DeviceFileTest)
#include "devicefiletest.moc"
