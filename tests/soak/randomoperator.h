#pragma once

#include "tests/endtoend/front.h"

#include <QRandomGenerator>

#include <functional>
#include <map>
#include <vector>

/// Operators, the device and its link, all at once and in no order.
class RandomOperator
{
public:
    /// @param front, random borrowed; the front has started.
    RandomOperator(Front &front, QRandomGenerator &random);
    Q_DISABLE_COPY_MOVE(RandomOperator)

    /// One thing happens, and for a moment none.
    void act();
    /// No key is held any more; the link is up and the device on, as it was delivered.
    void rest();

private:
    struct Deed
    {
        int weight;
        std::function<void()> act;
    };

    QString anyOf(const QStringList &texts) { return texts.at(m_random.bounded(int(texts.size()))); }
    void holdKey();
    void releaseKeys();
    void changeProperty();
    void restoreLink();

    Front &m_front;
    CoreService &m_core;
    QRandomGenerator &m_random;
    const std::vector<Deed> m_deeds;
    QList<std::pair<int, int>> m_held;     ///< Panel and button.
    QStringList m_properties;              ///< Those that the program has asked for.
    std::map<QString, QString> m_original; ///< Values of those that were changed.
};
