#include "protocol/incomingline.h"

#include "protocol/linesplitter.h"

#include <QTest>

using Lines = QList<QByteArray>;

/// From bytes to lines, and from a line to its meaning.
class IncomingLineTest : public QObject
{
    Q_OBJECT
private slots:
    void cutsIntoLines();
    void dropsAnEndlessLine();
    void understandsLines();
    void unescapes();
};

static void feed(LineSplitter &splitter, QByteArrayView bytes, qsizetype size, Lines &seen)
{
    for (; !bytes.isEmpty(); bytes = bytes.sliced(std::min(size, bytes.size())))
        splitter.feed(bytes.first(std::min(size, bytes.size())), [&](auto line) { seen.append(line.toByteArray()); });
}

void IncomingLineTest::cutsIntoLines()
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

void IncomingLineTest::dropsAnEndlessLine()
{
    const QByteArray longest(qsizetype(LineSplitter::maxLineLength), 'x');
    for (const qsizetype size : {qsizetype(1000), longest.size() * 2}) {
        LineSplitter splitter;
        Lines seen;
        feed(splitter, longest + "\r\n", size, seen);
        QTest::ignoreMessage(QtWarningMsg, "Dropped a line of more than 1048576 bytes from the device.");
        feed(splitter, longest + "x\r\nnext\r\n", size, seen);
        QTest::ignoreMessage(QtWarningMsg, "Dropped a line of more than 1048576 bytes from the device.");
        feed(splitter, longest + longest + longest + longest + "\r", size, seen); // one warning, however long
        feed(splitter, "\nlast\r\n", size, seen);
        QCOMPARE(seen, (Lines{longest, "next", "last"}));
    }
}

void IncomingLineTest::understandsLines()
{
    // clang-format off
    constexpr const char *meanings[][2] = { // kind, signature, path, node, value
        {"{0042", "0 42 [] [] []"}, {"{12345 x", "0 1234 [] [] []"}, {"{ab", "0 0 [] [] []"}, {"}.", "1 0 [] [] []"},
        {"n- /MEDIA/PRESET/My one", "2 0 [/MEDIA/PRESET/My one] [] []"}, {"o- /SYS/LCD", "3 0 [/SYS/LCD] [] []"},
        {"pr /A/B.C=5", "4 0 [/A/B.C] [/A/B] [5]"}, {"pw /.Name=x", "4 0 [/.Name] [/] [x]"},
        {"pr /A.B=c=d.5 V", "4 0 [/A.B] [/A] [c=d.5 V]"}, {"pr /A.B", "4 0 [/A.B] [/A] []"},
        {"CHG /A/B.C=", "5 0 [/A/B.C] [/A/B] []"}, {"CHG /A", "8 0 [/A] [] []"},
        {"NEW /MEDIA/x", "6 0 [/MEDIA/x] [] []"}, {"DEL /MEDIA/x", "7 0 [/MEDIA/x] [] []"},
        {"CHG", "8 0 [] [] []"}, {"CHGX /A.B=1", "8 0 [] [] []"}, {"chg /A.B=1", "8 0 [] [] []"},
        {"pE /A.B no such thing", "8 0 [] [] []"}, {" CHG /A.B=1", "8 0 [] [] []"},
    };
    // clang-format on
    for (const auto &[line, meaning] : meanings) {
        const IncomingLine is = IncomingLine::parse(line);
        const QString path = QString::fromUtf8(is.path), value = QString::fromUtf8(is.value);
        const QString seen
            = QString("%1 %2 [%3] [%4]").arg(is.kind).arg(is.signature).arg(path, path.left(is.nodeLength));
        QVERIFY2(seen + " [" + value + ']' == meaning, line);
    }
}

void IncomingLineTest::unescapes()
{
    QCOMPARE(unescapeValue(""), "");
    QCOMPARE(unescapeValue(R"(\#\%\(\)\\\n\r\t\{\}.)"), "#%()\\\n\r\t{}.");
    QCOMPARE(unescapeValue(R"(a\nb C:\a\x\N \\n)"), QString("a\nb ") + R"(C:\a\x\N \n)");
    QCOMPARE(unescapeValue("Caf\xc3\xa9 \\#1\\"), QString::fromUtf8("Café #1\\"));
    QCOMPARE(unescapeValue("a\xff\xfe\\nb"), QString::fromUtf16(u"a\ufffd\ufffd\nb")); // not UTF-8
    QCOMPARE(unescapeValue("\xef\xbb\xbfx"), QChar(0xfeff) + QString("x")); // a byte order mark is a character
}

QTEST_GUILESS_MAIN(IncomingLineTest)
#include "incominglinetest.moc"
