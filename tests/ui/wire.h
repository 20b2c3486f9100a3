#pragma once

#include "protocol/dt3manager.h"
#include "tests/support/scriptedservice.h"

#include <QRegularExpression>

/// The device's end of the connection of the process.
class Wire : public ScriptedService
{
public:
    Wire()
        : ScriptedService(6107)
    {
    }

    /// Since the last takeLines(), without their signatures.
    QStringList requests() const
    {
        return QStringList(lines()).replaceInStrings(QRegularExpression(QStringLiteral("^\\d{4}#")), QString());
    }
    /// Answers the last GET of a property.
    void answer(const QString &property, const QString &value)
    {
        const qsizetype index = requests().lastIndexOf("GET " + property);
        sendLines({'{' + lines().at(index).first(4), "pr " + property + '=' + value, "}"});
    }
    /// Confirms the node, and reports a change of a property of it.
    void change(const QString &property, const QString &value)
    {
        sendLines({"o- " + Dt3Manager::nodeOf(property), "CHG " + property + '=' + value});
    }
};
