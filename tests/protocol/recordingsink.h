#pragma once

#include "protocol/dt3sink.h"

#include <QStringList>

#include <functional>

/// Keeps what it is told, a line each, and may do something of the test's own in reply.
class RecordingSink : public Dt3Sink
{
public:
    void nodeReceived(const QString &node) override { note("node " + node); }
    void propertyReceived(const QString &property, const QString &value) override
    {
        note("received " + property + "=" + value);
    }
    void propertyChanged(const QString &property, const QString &value) override
    {
        note("changed " + property + "=" + value);
    }
    void nodeAdded(const QString &parent, const QString &child) override { note("added " + parent + " " + child); }
    void nodeRemoved(const QString &parent, const QString &child) override { note("removed " + parent + " " + child); }

    QStringList take() { return std::exchange(news, {}); }

    QStringList news;
    std::function<void()> reply;

private:
    void note(const QString &line)
    {
        news.append(line);
        if (reply)
            reply();
    }
};
