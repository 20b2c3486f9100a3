#include "fuzz/harness.h"
#include "protocol/incomingline.h"
#include "simulator/coreservice/answer.h"
#include "simulator/coreservice/crosspoint.h"
#include "simulator/coreservice/deviceclock.h"
#include "simulator/coreservice/frametree.h"
#include "simulator/coreservice/presetstore.h"
#include "simulator/coreservice/requestsplitter.h"
#include "simulator/web/pagemessage.h"
#include "simulator/web/requesthead.h"

#include <QJsonDocument>
#include <QJsonObject>

// What the simulator reads from outside. An input that begins with "{" is a message of a page, one that begins with
// "HTTP" and a blank the head of a request to the web server, and anything else goes to the core service.

namespace {

QByteArray jsonOf(const PageMessage &message)
{
    static constexpr const char *types[]
        = {"press", "release", "release-all", "turn", "command", "frame", "start-recording", "stop-recording"};
    QJsonObject object{{"type", types[int(message.type)]}, {"detents", message.detents}, {"fast", message.fast},
        {"row", message.row}, {"line", message.line}};
    if (message.key)
        object["key"] = message.key->name();
    object["id"] = message.id; // an undefined one is none
    return QJsonDocument(object).toJson();
}

void runMessage(QByteArrayView input)
{
    const std::optional<PageMessage> message = parsePageMessage(QString::fromUtf8(input));
    if (!message)
        return;
    const std::optional<PageMessage> again = parsePageMessage(QString::fromUtf8(jsonOf(*message)));
    require(again && again->type == message->type && again->key == message->key && again->detents == message->detents
            && again->fast == message->fast && again->row == message->row && again->id == message->id
            && again->line == message->line,
        "a message reads as it was written");
}

/// As RequestGuard does it.
void runHead(const QByteArray &input)
{
    const qsizetype end = input.indexOf("\r\n\r\n");
    if (end < 0)
        return;
    const RequestHead head = parseRequestHead(input.first(end + 4));
    if (head.refusal != 0)
        return;
    require(head.bodySize >= 0 && head.bodySize <= RequestHead::longestBody, "a body has its bounds");
    const QByteArray plain = head.method + ' ' + head.target + " HTTP/1.1\r\nHost: " + head.host
        + "\r\nContent-Length: " + QByteArray::number(head.bodySize) + (head.isUpgrade ? "\r\nUpgrade: websocket" : "")
        + (head.expectsContinue ? "\r\nExpect: 100-continue" : "") + "\r\n\r\n";
    const RequestHead again = parseRequestHead(plain);
    require(again.refusal == 0 && again.target == head.target && again.host == head.host
            && again.bodySize == head.bodySize && again.isUpgrade == head.isUpgrade
            && again.expectsContinue == head.expectsContinue,
        "a head reads as it was written");
}

/// The program reads from the news what the tree holds.
void checkChange(const QString &node, const QString &name, const QString &value)
{
    const QByteArray line = ("CHG " + node + '.' + name + '=' + escapeValue(value)).toUtf8();
    require(!line.contains('\n'), "a change is one line");
    require(unescapeValue(IncomingLine::parse(line).value) == value, "the program reads the change");
}

/// What CoreService has behind its door, for the smallest frame.
struct Device
{
    Device()
    {
        QObject::connect(&tree, &PropertyTree::valueChanged, &tree, &checkChange);
        QObject::connect(&tree, &PropertyTree::valueChanged, &tree, [this] { isUsed = true; });
        QObject::connect(&tree, &PropertyTree::nodeAdded, &tree, [this] { isUsed = true; });
    }
    /// Making a new one for every input takes too long.
    void restore()
    {
        if (!isUsed)
            return;
        presets.removeAll();
        crosspoint.unlockAll();
        tree.restoreDefaults();
        isUsed = false;
    }

    const FrameDescriptor &frame = *findFrameDescriptor(47110014);
    FrameTree tree{frame};
    Crosspoint crosspoint{tree, frame};
    PresetStore presets{tree, crosspoint, 8};
    DeviceClock clock{tree};
    bool isUsed = false;
};

/// The program reads from the line what the tree holds.
void checkAnswer(const QString &line, PropertyTree &tree)
{
    const QByteArray bytes = line.toUtf8();
    require(!bytes.isEmpty() && !bytes.contains('\n'), "an answer is one line");
    const IncomingLine read = IncomingLine::parse(bytes);
    if (read.kind == IncomingLine::Property) // the clock goes on
        require(unescapeValue(read.value) == tree.value(textOf(read.path)) || line.contains("/DATETIME."),
            "the program reads what is sent");
    else if (read.kind == IncomingLine::Node)
        require(tree.node(textOf(read.path)), "the program reads what is sent");
    else
        require(!line.startsWith("pr ") && !line.startsWith("pw "), "a property reads as one");
}

void runRequests(const QByteArray &input)
{
    RequestSplitter whole, pieces;
    const QList<RequestSplitter::Line> lines = whole.feed(input);
    qsizetype count = 0;
    for (const char byte : input) {
        for (const RequestSplitter::Line &line : pieces.feed(QByteArray(1, byte)))
            require(count < lines.size() && line.text == lines[count++].text, "bytes come in any pieces");
    }
    require(count == lines.size(), "bytes come in any pieces");

    static Device &device = *new Device; // for the life of the process
    device.restore();
    for (const RequestSplitter::Line &line : lines) {
        for (const QString &answer : answerTo(device.tree, parseRequest(QString::fromUtf8(line.text))))
            checkAnswer(answer, device.tree);
    }
}

} // namespace

int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QByteArrayView input = inputOf(data, size);
    if (input.startsWith('{'))
        runMessage(input);
    else if (input.startsWith("HTTP "))
        runHead(input.sliced(5).toByteArray());
    else
        runRequests(input.toByteArray());
    return 0;
}
