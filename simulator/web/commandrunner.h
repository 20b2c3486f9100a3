#pragma once

#include "simulator/commandexecutor.h"

#include <QPointer>

#include <deque>

struct LineResult
{
    QString line;
    CommandResult result;
};

/// Executes groups of command lines, one group after the other. A line that fails ends its group.
class CommandRunner : public QObject
{
    Q_OBJECT
public:
    /// Gets the lines that were executed, the one that failed last.
    using Done = std::function<void(const QList<LineResult> &results)>;

    static constexpr size_t mostWaiting = 64; ///< Groups.

    /// @param device borrowed.
    explicit CommandRunner(Device &device, QObject *parent = nullptr);
    /// Groups that are not done yet fail.
    ~CommandRunner() override;

    /// @param asker when it goes, nobody wants to know any more: what is left is not done.
    /// @param done called later, once. @return false: too many wait already, and done is not called.
    bool add(const QStringList &lines, QObject *asker, Done done);

signals:
    void lineBegun(const QString &line);
    void quitRequested();

private:
    struct Group
    {
        QStringList lines; // not done yet
        QPointer<QObject> asker;
        Done done;
        QList<LineResult> results;
    };

    void forgetOrphans();
    void next();
    void note(const CommandResult &result);
    void finishGroup();

    CommandExecutor m_executor;
    std::deque<Group> m_groups; // the first is being executed
};
