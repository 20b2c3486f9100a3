#pragma once

#include "protocol/catalogue.h"
#include "protocol/dt3manager.h"
#include "protocol/dt3sink.h"
#include "tests/support/scriptedservice.h"

#include <QRegularExpression>
#include <QTest>

/// The device's end of the connection of the process.
class Wire : public ScriptedService
{
public:
    Wire()
        : ScriptedService(6107)
    {
    }

    /// Makes the program connect. @return whether it has.
    bool connectProgram()
    {
        fillCatalogue();
        Dt3Manager::instance()->connectToDevice();
        return QTest::qWaitFor([this] { return hasClient(); });
    }

    /// The requests when all has settled, and takes them.
    QStringList sent()
    {
        settle();
        const QStringList all = requests();
        takeLines();
        return all.filter(QRegularExpression("^(?!GET /PROBE)"));
    }
    /// Until each side has heard the other, and what that made it say. @return whether it did.
    bool settle()
    {
        struct Probe : Dt3Sink
        {
            explicit Probe(const QString &property) { get(property); }
            void propertyReceived(const QString &, const QString &) override { answered = true; }
            bool answered = false;
        };
        bool settled = true;
        for (int round = 0; round < 2; ++round) {
            const QString property = QString("/PROBE.%1").arg(++m_probes);
            const Probe probe(property);
            answer(property, "1");
            settled = settled && QTest::qWaitFor([&] { return probe.answered; });
        }
        return settled;
    }

    /// Answers the last such request, as soon as it is there.
    void answer(const QString &request, const QStringList &answers)
    {
        QTRY_VERIFY(requests().contains(request));
        const QString signature = lines().at(requests().lastIndexOf(request)).first(4);
        sendLines(QStringList('{' + signature) + answers + QStringList("}"));
    }
    /// Answers the last GET of a property.
    void answer(const QString &property, const QString &value)
    {
        answer("GET " + property, QStringList("pr " + property + '=' + value));
    }
    /// Confirms the node, and reports a change of a property of it.
    void change(const QString &property, const QString &value)
    {
        sendLines({"o- " + Dt3Manager::nodeOf(property), "CHG " + property + '=' + value});
    }

private:
    int m_probes = 0;
};
