#include "simulator/web/pagemessage.h"

#include "hardware/framedescriptor.h"

#include <QJsonDocument>
#include <QJsonObject>

namespace {

using Type = PageMessage::Type;

bool takeKey(const QJsonObject &object, PageMessage *message)
{
    message->key = PageKey::named(object["key"].toString());
    return message->key.has_value();
}

bool takeNumber(const QJsonValue &value, int lowest, int highest, int *number)
{
    if (!value.isDouble() || value.toDouble() < lowest || value.toDouble() > highest)
        return false;
    *number = int(value.toDouble());
    return *number == value.toDouble();
}

bool takeTurn(const QJsonObject &object, PageMessage *message)
{
    message->fast = object["fast"].toBool();
    return object["fast"].isBool()
        && takeNumber(object["detents"], -PageMessage::mostDetents, PageMessage::mostDetents, &message->detents)
        && message->detents != 0;
}

bool takeCommand(const QJsonObject &object, PageMessage *message)
{
    message->line = object["line"].toString();
    return object["line"].isString() && !message->line.contains('\n');
}

bool takeFrame(const QJsonObject &object, PageMessage *message)
{
    return takeNumber(object["row"], 1, int(frameDescriptors().size()), &message->row);
}

bool takeNothing(const QJsonObject &, PageMessage *) { return true; }

constexpr struct
{
    const char *name;
    Type type;
    bool (*takeFields)(const QJsonObject &object, PageMessage *message);
} rows[] = {
    {"press", Type::Press, takeKey},
    {"release", Type::Release, takeKey},
    {"release-all", Type::ReleaseAll, takeNothing},
    {"turn", Type::Turn, takeTurn},
    {"command", Type::Command, takeCommand},
    {"frame", Type::Frame, takeFrame},
    {"start-recording", Type::StartRecording, takeNothing},
    {"stop-recording", Type::StopRecording, takeNothing},
};

} // namespace

std::optional<PageMessage> parsePageMessage(const QString &text)
{
    const QJsonObject object = QJsonDocument::fromJson(text.toUtf8()).object();
    const QString name = object["type"].toString();
    for (const auto &row : rows) {
        if (name != QLatin1String(row.name))
            continue;
        PageMessage message;
        message.type = row.type;
        message.id = object["id"];
        return row.takeFields(object, &message) ? std::optional(message) : std::nullopt;
    }
    return std::nullopt;
}
