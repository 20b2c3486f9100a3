#include "protocol/pendingrequests.h"

#include <QDebug>

namespace {

constexpr quint16 signatureCount = 10000;

/// More than half the circle ahead means behind.
constexpr bool isOlder(quint16 signature, quint16 than)
{
    const int distance = (than + signatureCount - signature) % signatureCount;
    return distance > 0 && distance < signatureCount / 2;
}
static_assert(isOlder(9997, 0) && !isOlder(1, 9998) && !isOlder(5, 5));

} // namespace

quint16 PendingRequests::add(Dt3Sink *sink)
{
    const quint16 signature = m_next;
    m_next = quint16((m_next + 1) % signatureCount);
    m_sinks[signature] = sink;
    return signature;
}

void PendingRequests::startBlock(quint16 signature)
{
    m_current = signature;
    // In the order they were made: from the far side of the circle on.
    auto request = m_sinks.lower_bound(quint16((signature + signatureCount / 2 + 1) % signatureCount));
    for (size_t left = m_sinks.size(); left > 0; --left) {
        if (request == m_sinks.end())
            request = m_sinks.begin();
        if (!isOlder(request->first, signature))
            return;
        qDebug().noquote().nospace() << "REMOVED unanswered signature: " << request->first;
        request = m_sinks.erase(request);
    }
}

void PendingRequests::endBlock()
{
    if (m_current)
        m_sinks.erase(*m_current);
    m_current.reset();
}

Dt3Sink *PendingRequests::answeredSink() const
{
    const auto request = m_current ? m_sinks.find(*m_current) : m_sinks.end();
    return request == m_sinks.end() ? nullptr : request->second;
}

void PendingRequests::forget(const Dt3Sink *sink)
{
    for (auto &[signature, pending] : m_sinks) {
        if (pending == sink)
            pending = nullptr;
    }
}
