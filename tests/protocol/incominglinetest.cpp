#include "protocol/incomingline.h"

#include "protocol/linesplitter.h"

#include <QTest>

/// From bytes to lines, and from a line to its meaning.
class IncomingLineTest : public QObject
{
    Q_OBJECT
private slots:
    void cutsIntoLines_data();
    void cutsIntoLines();
    void dropsAnEndlessLine();
    void resetForgetsTheBeginning();
    void understandsLines_data();
    void understandsLines();
    void unescapes_data();
    void unescapes();
};

void IncomingLineTest::cutsIntoLines_data()
{
    QTest::addColumn<QByteArray>("stream");
    QTest::addColumn<QList<QByteArray>>("lines");

    using Lines = QList<QByteArray>;
    QTest::newRow("two lines and a rest") << QByteArray("one\r\ntwo\r\nthr") << Lines{"one", "two"};
    QTest::newRow("empty lines are skipped") << QByteArray("\r\n\r\none\r\n\r\n") << Lines{"one"};
    QTest::newRow("a lone line feed ends nothing") << QByteArray("a\nb\r\n\nc\r\n") << Lines{"a\nb", "\nc"};
    QTest::newRow("a lone carriage return ends nothing") << QByteArray("a\rb\r\n\r\r\n") << Lines{"a\rb", "\r"};
    QTest::newRow("no line end, no line") << QByteArray("waiting\r") << Lines{};
}

void IncomingLineTest::cutsIntoLines()
{
    QFETCH(QByteArray, stream);
    QFETCH(QList<QByteArray>, lines);

    for (qsizetype size = 1; size <= stream.size(); ++size) {
        LineSplitter splitter;
        QList<QByteArray> seen;
        for (qsizetype from = 0; from < stream.size(); from += size)
            splitter.feed(QByteArrayView(stream).sliced(from, std::min(size, stream.size() - from)),
                [&](QByteArrayView line) { seen.append(line.toByteArray()); });
        QCOMPARE(seen, lines);
    }
}

void IncomingLineTest::dropsAnEndlessLine()
{
    const size_t limit = LineSplitter::maxLineLength;
    const QByteArray longest(qsizetype(limit), 'x');
    for (const qsizetype size : {qsizetype(1000), longest.size() * 2}) {
        LineSplitter splitter;
        QList<QByteArray> seen;
        const auto feed = [&](QByteArrayView bytes) {
            for (; !bytes.isEmpty(); bytes = bytes.sliced(std::min(size, bytes.size())))
                splitter.feed(bytes.first(std::min(size, bytes.size())),
                    [&](QByteArrayView line) { seen.append(line.toByteArray()); });
        };
        feed(longest + "\r\n");
        QCOMPARE(seen.size(), 1);
        QTest::ignoreMessage(QtWarningMsg, "Dropped a line of more than 1048576 bytes from the device.");
        feed(longest + "x\r\nnext\r\n");
        QCOMPARE(seen, (QList<QByteArray>{longest, "next"}));
        QTest::ignoreMessage(QtWarningMsg, "Dropped a line of more than 1048576 bytes from the device.");
        feed(longest + longest + longest + longest + "\r"); // one warning, however long
        feed("\nlast\r\n");
        QCOMPARE(seen.mid(1), (QList<QByteArray>{"next", "last"}));
    }
}

void IncomingLineTest::resetForgetsTheBeginning()
{
    LineSplitter splitter;
    QList<QByteArray> seen;
    const auto handle = [&](QByteArrayView line) { seen.append(line.toByteArray()); };
    splitter.feed("CHG /A.B=cut o", handle);
    splitter.reset();
    splitter.feed("whole\r\n", handle);
    QCOMPARE(seen, QList<QByteArray>{"whole"});
}

void IncomingLineTest::understandsLines_data()
{
    QTest::addColumn<QByteArray>("line");
    QTest::addColumn<QString>("meaning"); // kind, signature, path, node, value

    QTest::newRow("block start") << QByteArray("{0042") << "0 42 [] [] []";
    QTest::newRow("block start, then anything") << QByteArray("{12345 x") << "0 1234 [] [] []";
    QTest::newRow("block start without a number") << QByteArray("{ab") << "0 0 [] [] []";
    QTest::newRow("block end, then anything") << QByteArray("} bye") << "1 0 [] [] []";
    QTest::newRow("child") << QByteArray("n- /MEDIA/PRESET/My one") << "2 0 [/MEDIA/PRESET/My one] [] []";
    QTest::newRow("confirmation") << QByteArray("o- /SYS/CECU/LCD") << "3 0 [/SYS/CECU/LCD] [] []";
    QTest::newRow("read-only property") << QByteArray("pr /A/B.C=5") << "4 0 [/A/B.C] [/A/B] [5]";
    QTest::newRow("writable property") << QByteArray("pw /A/B.C=5") << "4 0 [/A/B.C] [/A/B] [5]";
    QTest::newRow("change") << QByteArray("CHG /A/B.C=") << "5 0 [/A/B.C] [/A/B] []";
    QTest::newRow("property of the root") << QByteArray("pw /.Name=x") << "4 0 [/.Name] [/] [x]";
    QTest::newRow("value with equals signs") << QByteArray("pr /A.B=c=d=e") << "4 0 [/A.B] [/A] [c=d=e]";
    QTest::newRow("value with dots and blanks") << QByteArray("pr /A.B=1.5 V") << "4 0 [/A.B] [/A] [1.5 V]";
    QTest::newRow("property without a value") << QByteArray("pr /A.B") << "4 0 [/A.B] [/A] []";
    QTest::newRow("change that names no property") << QByteArray("CHG /A") << "8 0 [/A] [] []";
    QTest::newRow("a node came") << QByteArray("NEW /MEDIA/PRESET/x") << "6 0 [/MEDIA/PRESET/x] [] []";
    QTest::newRow("a node went") << QByteArray("DEL /MEDIA/PRESET/x") << "7 0 [/MEDIA/PRESET/x] [] []";
    QTest::newRow("prefix alone") << QByteArray("CHG") << "8 0 [] [] []";
    QTest::newRow("longer prefix") << QByteArray("CHGX /A.B=1") << "8 0 [] [] []";
    QTest::newRow("other case") << QByteArray("chg /A.B=1") << "8 0 [] [] []";
    QTest::newRow("error line") << QByteArray("pE /A.B no such thing") << "8 0 [] [] []";
    QTest::newRow("blank first") << QByteArray(" CHG /A.B=1") << "8 0 [] [] []";
}

void IncomingLineTest::understandsLines()
{
    QFETCH(QByteArray, line);
    QFETCH(QString, meaning);

    const IncomingLine is = IncomingLine::parse(line);
    QCOMPARE(QStringLiteral("%1 %2 [%3] [%4] [%5]")
                 .arg(is.kind)
                 .arg(is.signature)
                 .arg(QString::fromUtf8(is.path), QString::fromUtf8(is.path.first(is.nodeLength)),
                     QString::fromUtf8(is.value)),
        meaning);
}

void IncomingLineTest::unescapes_data()
{
    QTest::addColumn<QByteArray>("escaped");
    QTest::addColumn<QString>("plain");

    QTest::newRow("nothing") << QByteArray() << QString();
    QTest::newRow("every escape") << QByteArray(R"(\#\%\(\)\\\n\r\t\{\}.)") << "#%()\\\n\r\t{}.";
    QTest::newRow("between letters") << QByteArray(R"(a\nb)") << "a\nb";
    QTest::newRow("any other letter keeps its backslash") << QByteArray(R"(C:\a\x\N)") << R"(C:\a\x\N)";
    QTest::newRow("last byte") << QByteArray("end\\") << "end\\";
    QTest::newRow("a pair and a letter") << QByteArray(R"(\\n)") << R"(\n)";
    QTest::newRow("UTF-8") << QByteArray("Caf\xc3\xa9 \\#1") << QString::fromUtf8("Café #1");
    QTest::newRow("bytes that are not UTF-8") << QByteArray("a\xff\xfe\\nb") << QString::fromUtf16(u"a\ufffd\ufffd\nb");
    QTest::newRow("a byte order mark is a character") << QByteArray("\xef\xbb\xbfx") << QChar(0xfeff) + QString("x");
    QTest::newRow("longer than a kilobyte") << QByteArray(5000, 'v') + "\\t" << QString(5000, u'v') + "\t";
}

void IncomingLineTest::unescapes()
{
    QFETCH(QByteArray, escaped);
    QFETCH(QString, plain);
    QCOMPARE(unescapeValue(escaped), plain);
}

QTEST_GUILESS_MAIN(IncomingLineTest)
#include "incominglinetest.moc"
