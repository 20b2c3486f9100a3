#include "app/servicemanager.h"

#include <QSocketNotifier>
#include <QTemporaryDir>
#include <QTest>

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

/// The service manager's end of the socket.
class ServiceManagerTest : public QObject
{
    Q_OBJECT
private slots:
    void init();
    void cleanup();
    void tellsThatItIsUp();
    void reportsThatItLives();

private:
    QTemporaryDir m_folder;
    int m_socket = -1;
    std::unique_ptr<QSocketNotifier> m_notifier;
    QByteArrayList m_heard;
};

void ServiceManagerTest::init()
{
    m_socket = socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    sockaddr_un address{AF_UNIX, {}};
    const QByteArray path = m_folder.filePath("notify").toLocal8Bit();
    qstrncpy(address.sun_path, path, sizeof address.sun_path);
    QCOMPARE(bind(m_socket, reinterpret_cast<sockaddr *>(&address), sizeof address), 0);
    qputenv("NOTIFY_SOCKET", path);
    m_notifier = std::make_unique<QSocketNotifier>(m_socket, QSocketNotifier::Read);
    connect(m_notifier.get(), &QSocketNotifier::activated, this, [this] {
        QByteArray text(100, '\0');
        text.resize(std::max<ssize_t>(0, read(m_socket, text.data(), size_t(text.size()))));
        m_heard += text;
    });
}

void ServiceManagerTest::cleanup()
{
    m_notifier.reset();
    close(m_socket);
    QFile::remove(m_folder.filePath("notify"));
    m_heard.clear();
    qunsetenv("NOTIFY_SOCKET");
    qunsetenv("WATCHDOG_USEC");
}

void ServiceManagerTest::tellsThatItIsUp()
{
    const ServiceManager manager;
    QTRY_COMPARE(m_heard, QByteArrayList{"READY=1"});
}

void ServiceManagerTest::reportsThatItLives()
{
    qputenv("WATCHDOG_USEC", "40000");
    const ServiceManager manager;
    QTRY_COMPARE(m_heard.value(2), "WATCHDOG=1"); // again and again
    QCOMPARE(m_heard.first(), "READY=1");
}

QTEST_GUILESS_MAIN(ServiceManagerTest)
#include "servicemanagertest.moc"
