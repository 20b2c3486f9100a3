#include "simulator/frontkey.h"

#include <QRegularExpression>

namespace {

struct FunctionKey
{
    const char *name;
    int button; ///< Of panel 1.
};

std::array<FunctionKey, 5> functionKeys(const PanelLayout &layout)
{
    return {{{"take", layout.take}, {"load", layout.loadPreset}, {"save", layout.savePreset},
        {"panel-lock", PanelLayout::controlLock}, {"destination-lock", PanelLayout::destinationLock}}};
}

FrontKey portKey(const std::array<PortRun, 3> &runs, int number)
{
    for (const PortRun &run : runs) {
        if (number >= run.firstNumber && number < run.firstNumber + run.count)
            return {run.panel, run.firstButton + number - run.firstNumber};
    }
    return {};
}

/// 0: the button belongs to none of these ports.
int portNumber(const std::array<PortRun, 3> &runs, FrontKey key)
{
    for (const PortRun &run : runs) {
        if (key.panel == run.panel && key.button >= run.firstButton && key.button < run.firstButton + run.count)
            return run.firstNumber + key.button - run.firstButton;
    }
    return 0;
}

QString takePort(const std::array<PortRun, 3> &runs, int count, QStringList *words, FrontKey *key)
{
    const QString name = words->first();
    const int number = words->value(1).toInt();
    if (number < 1 || number > count)
        return QStringLiteral("%1 needs a number from 1 to %2").arg(name).arg(count);
    *key = portKey(runs, number);
    words->remove(0, 2);
    return {};
}

} // namespace

QString takeKey(const PanelLayout &layout, QStringList *words, FrontKey *key)
{
    const QString name = words->value(0);
    if (name == "source")
        return takePort(layout.sources, layout.sourceCount, words, key);
    if (name == "destination")
        return takePort(layout.destinations, layout.destinationCount, words, key);
    for (const FunctionKey &function : functionKeys(layout)) {
        if (name == function.name) {
            *key = {1, function.button};
            words->removeFirst();
            return {};
        }
    }
    static const QRegularExpression position(QStringLiteral("\\A([1-3])\\.([0-9]{1,2})\\z"));
    const QRegularExpressionMatch match = position.match(name);
    const int button = match.captured(2).toInt();
    if (button >= 1 && button <= 40) {
        *key = {match.captured(1).toInt(), button};
        words->removeFirst();
        return {};
    }
    return QStringLiteral("\"%1\" is no key: source N, destination N, take, load, save, panel-lock, destination-lock, "
                          "or PANEL.BUTTON from 1.1 to 3.40")
        .arg(name);
}

QString keyName(const PanelLayout &layout, FrontKey key)
{
    if (const int source = portNumber(layout.sources, key))
        return QStringLiteral("source %1").arg(source);
    if (const int destination = portNumber(layout.destinations, key))
        return QStringLiteral("destination %1").arg(destination);
    for (const FunctionKey &function : functionKeys(layout)) {
        if (key.panel == 1 && key.button == function.button)
            return QString::fromLatin1(function.name);
    }
    return QStringLiteral("%1.%2").arg(key.panel).arg(key.button);
}
