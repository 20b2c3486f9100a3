#include "protocol/incomingline.h"

#include "protocol/linesplitter.h"

#include <QTest>

using Lines = QList<QByteArray>;

static void feed(LineSplitter &splitter, QByteArrayView bytes, qsizetype size, Lines &seen)
{
    for (; !bytes.isEmpty(); bytes = bytes.sliced(std::min(size, bytes.size())))
        splitter.feed(bytes.first(std::min(size, bytes.size())), [&](auto line) { seen.append(line.toByteArray()); });
}

/// From bytes to lines, and from a line to its meaning.
class IncomingLineTest : public QObject
{
    Q_OBJECT
private slots:
    void cutsIntoLines()
    {
        const QByteArray stream = "one\r\ntwo\r\n\r\n\r\na\nb\r\n\nc\r\na\rb\r\n\r\r\nrest\r";
        for (qsizetype size = 1; size <= stream.size(); ++size) {
            LineSplitter splitter;
            Lines seen;
            feed(splitter, stream, size, seen);
            splitter.reset();
            feed(splitter, "\nwhole\r\n", size, seen);
            QCOMPARE(seen, (Lines{"one", "two", "a\nb", "\nc", "a\rb", "\r", "\nwhole"}));
        }
    }

    void dropsAnEndlessLine()
    {
        const QByteArray longest(qsizetype(LineSplitter::maxLineLength), 'x');
        for (const qsizetype size : {qsizetype(1000), longest.size() * 2}) {
            LineSplitter splitter;
            Lines seen;
            for (const QByteArray &tooLong :
                {longest + 'x', longest + longest + longest}) { // one warning, however long
                QTest::ignoreMessage(QtWarningMsg, "Dropped a line of more than 1048576 bytes from the device.");
                feed(splitter, tooLong + '\r', size, seen);
                feed(splitter, "\nnext\r\n" + longest + "\r\n", size, seen);
            }
            QCOMPARE(seen, (Lines{"next", longest, "next", longest}));
        }
    }

    void understandsLines()
    {
        // clang-format off
        constexpr const char *meanings[][2] = { // kind, signature, path, node, value
            {"{0042", "0 42 [] [] []"}, {"{12345 x", "0 1234 [] [] []"}, {"{ab", "0 0 [] [] []"}, {"}.", "1 0 [] [] []"},
            {"n- /MEDIA/PRESET/My one", "2 0 [/MEDIA/PRESET/My one] [] []"}, {"o- /SYS", "3 0 [/SYS] [] []"},
            {"pr /A/B.C=5", "4 0 [/A/B.C] [/A/B] [5]"}, {"pw /.Name=x", "4 0 [/.Name] [/] [x]"},
            {"pr /A.B=c=d.5 V", "4 0 [/A.B] [/A] [c=d.5 V]"}, {"CHG /A.B", "5 0 [/A.B] [/A] []"},
            {"CHG /A/B.C=", "5 0 [/A/B.C] [/A/B] []"}, {"CHG /A", "8 0 [/A] [] []"},
            {"NEW /MEDIA/x", "6 0 [/MEDIA/x] [] []"}, {"DEL /MEDIA/x", "7 0 [/MEDIA/x] [] []"},
            {"CHG", "8 0 [] [] []"}, {"CHGX /A.B=1", "8 0 [] [] []"}, {" CHG /A.B=1", "8 0 [] [] []"},
        };
        // clang-format on
        for (const auto &[line, meaning] : meanings) {
            const IncomingLine is = IncomingLine::parse(line);
            const QString path = QString::fromUtf8(is.path), node = path.left(is.nodeLength);
            const QString seen = QString("%1 %2 [%3] [%4] [%5]")
                                     .arg(is.kind)
                                     .arg(is.signature)
                                     .arg(path, node, QString::fromUtf8(is.value));
            QVERIFY2(seen == meaning, qPrintable(line + (": " + seen)));
        }
    }

    void unescapes()
    {
        const std::pair<QByteArray, QString> cases[] = {
            {"", ""}, {R"(\#\%\(\)\\\n\r\t\{\}.)", "#%()\\\n\r\t{}."}, {R"(a\nb C:\a\x\N \\n)", "a\nb C:\\a\\x\\N \\n"},
            {"Café \\#1\\", "Café #1\\"}, {"a\xff\xfe\\nb", QString::fromUtf16(u"a\ufffd\ufffd\nb")}, // not UTF-8
            {"\xef\xbb\xbfx", QChar(0xfeff) + QString("x")}, // a byte order mark is a character
        };
        for (const auto &[escaped, plain] : cases)
            QCOMPARE(unescapeValue(escaped), plain);

        QString spare;
        const QString kept = unescapeValue(QByteArray(longValue, 'x') + "\\n\xff", &spare);
        spare = kept; // and somebody looks at it still
        QCOMPARE(unescapeValue(QByteArray(longValue, 'y'), &spare), QString(longValue, 'y'));
        QCOMPARE(kept, QString(longValue, 'x') + "\n\ufffd");
    }
};

QTEST_GUILESS_MAIN(IncomingLineTest)
#include "incominglinetest.moc"
