#include "simulator/web/devicemessage.h"

#include "simulator/device.h"
#include "simulator/frontkey.h"
#include "simulator/web/pagekey.h"

#include <QJsonArray>

namespace {

constexpr int buttonCount = 40;

QJsonObject frameRow(const FrameDescriptor &frame)
{
    return {
        {"row", int(&frame - frameDescriptors().data()) + 1},
        {"partNumber", QStringLiteral("%1").arg(frame.partNumber, 8, 10, QLatin1Char('0'))},
        {"inputs", frame.inputPortCount()},
        {"outputs", frame.outputPortCount()},
    };
}

QJsonArray frameRows()
{
    QJsonArray rows;
    for (const FrameDescriptor &frame : frameDescriptors())
        rows.append(frameRow(frame));
    return rows;
}

QJsonObject keyRow(const PanelLayout &layout, FrontKey key)
{
    const QString id = PageKey::ofButton(key.panel, key.button).name();
    const QString name = keyName(layout, key); // "source 3", "take", or the id
    return {
        {"key", id},
        {"role", name == id ? QStringLiteral("none") : name.section(' ', 0, 0)},
        {"number", name.section(' ', 1).toInt()},
    };
}

} // namespace

int panelCount(const PanelLayout &layout)
{
    int count = 1;
    for (const auto &runs : {layout.sources, layout.destinations}) {
        for (const PortRun &run : runs)
            count = std::max(count, run.count > 0 ? run.panel : 0);
    }
    return count;
}

QJsonObject deviceMessage(const Device &device)
{
    QJsonArray panels;
    for (int panel = 1; panel <= panelCount(device.layout()); ++panel) {
        QJsonArray keys;
        for (int button = 1; button <= buttonCount; ++button)
            keys.append(keyRow(device.layout(), {panel, button}));
        panels.append(keys);
    }
    QJsonObject message = frameRow(device.frame());
    message["type"] = "device";
    message["layout"] = device.frame().layoutId();
    message["panels"] = panels;
    message["frames"] = frameRows();
    return message;
}
