#include "simulator/linelog.h"
#include "simulator/linereader.h"

#include <QSignalSpy>
#include <QTest>

#include <sys/ioctl.h>
#include <thread>
#include <unistd.h>

/// Lines from standard input, and the record of lines that expectations search.
class ConsoleLineTest : public QObject
{
    Q_OBJECT
private slots:
    void init() { QCOMPARE(pipe(m_pipe), 0); }
    void cleanup();

    void splitsInput_data();
    void splitsInput();
    void givesOneLinePerQuestion();
    void waitsForTheRestOfALine();
    void logForgetsTheOldest();

private:
    void send(const QByteArray &bytes)
    {
        QCOMPARE(write(m_pipe[1], bytes.data(), size_t(bytes.size())), ssize_t(bytes.size()));
    }
    void closeInput() { close(std::exchange(m_pipe[1], -1)); }

    int m_pipe[2] = {-1, -1};
};

void ConsoleLineTest::cleanup()
{
    for (int &end : m_pipe)
        close(std::exchange(end, -1));
}

void ConsoleLineTest::splitsInput_data()
{
    QTest::addColumn<QByteArray>("input");
    QTest::addColumn<QStringList>("lines");
    const QByteArray longest(LineReader::longestLine, 'x');
    const QString longestLine = QString::fromLatin1(longest);
    QTest::newRow("nothing") << QByteArray() << QStringList();
    QTest::newRow("two lines and a blank one") << QByteArray("leds\n\nquit\n") << QStringList{"leds", "", "quit"};
    QTest::newRow("the last line needs no end") << QByteArray("leds\nquit") << QStringList{"leds", "quit"};
    QTest::newRow("line ends of other systems") << QByteArray("leds\r\nquit\r\n") << QStringList{"leds", "quit"};
    QTest::newRow("text beyond ASCII") << QByteArray("preset add B\xc3\xbchne\n")
                                       << QStringList{QString::fromUtf8("preset add B\xc3\xbchne")};
    QTest::newRow("the longest line") << longest + "\nquit\n" << QStringList{longestLine, "quit"};
    QTest::newRow("a line too long") << longest + "x\nquit\n" << QStringList{"TOO LONG", "quit"};
    QTest::newRow("a line much too long") << longest.repeated(12) + "\nquit\n" << QStringList{"TOO LONG", "quit"};
    QTest::newRow("a line much too long without an end") << longest.repeated(12) << QStringList{"TOO LONG"};
}

void ConsoleLineTest::splitsInput()
{
    QFETCH(QByteArray, input);
    QFETCH(QStringList, lines);
    std::thread writer([this, input] { // more than a pipe holds
        send(input);
        closeInput();
    });
    LineReader reader(m_pipe[0]);
    QStringList read;
    bool closed = false;
    connect(&reader, &LineReader::lineRead, this, [&](const QString &line) {
        read += line;
        reader.next();
    });
    connect(&reader, &LineReader::lineTooLong, this, [&] {
        read += "TOO LONG";
        reader.next();
    });
    connect(&reader, &LineReader::closed, this, [&closed] { closed = true; });
    reader.next();
    const bool ended = QTest::qWaitFor([&closed] { return closed; });
    writer.join();
    QVERIFY(ended);
    QCOMPARE(read, lines);
}

void ConsoleLineTest::givesOneLinePerQuestion()
{
    send("one\ntwo\nthree\n");
    LineReader reader(m_pipe[0]);
    QSignalSpy lines(&reader, &LineReader::lineRead);
    for (const char *expected : {"one", "two", "three"}) {
        reader.next();
        QVERIFY(lines.isEmpty()); // never from within the question
        QTRY_COMPARE(lines.size(), 1);
        QCOMPARE(lines.takeFirst().first().toString(), QString(expected));
    }
}

void ConsoleLineTest::waitsForTheRestOfALine()
{
    LineReader reader(m_pipe[0]);
    QSignalSpy lines(&reader, &LineReader::lineRead);
    reader.next();
    send("tap ta");
    QTRY_VERIFY([this] {
        int left = 0;
        return ioctl(m_pipe[0], FIONREAD, &left) == 0 && left == 0;
    }());
    send("ke 100\n");
    QTRY_COMPARE(lines.size(), 1);
    QCOMPARE(lines.first().first().toString(), QStringLiteral("tap take 100"));
}

void ConsoleLineTest::logForgetsTheOldest()
{
    LineLog log;
    for (int i = 0; i < LineLog::capacity + 5; ++i)
        log.append(QString::number(i));
    QCOMPARE(log.end(), qint64(LineLog::capacity + 5));
    QCOMPARE(log.find("4", 0).value_or(-1), qint64(14)); // lines 0 to 4 are forgotten; numbers stay
    QCOMPARE(log.find("10004", 10004).value_or(-1), qint64(10004));
    QVERIFY(!log.find("10004", 10005));
    QCOMPARE(log.last(2), (QStringList{"10003", "10004"}));
    QCOMPARE(log.last(5, 10004), QStringList("10004"));
}

QTEST_GUILESS_MAIN(ConsoleLineTest)
#include "consolelinetest.moc"
