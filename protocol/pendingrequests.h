#pragma once

#include <QtGlobal>

#include <map>
#include <optional>

class Dt3Sink;

/// The signed requests that wait for their answer block, and the block that is being read.
/// Signatures go round from 9999 to 0, for the wire has four digits; which of two is older is told along the circle.
class PendingRequests
{
public:
    /// Remembers who asks. @return the signature of the request.
    quint16 add(Dt3Sink *sink);

    /// The block of this signature begins. Older requests will not be answered any more: they are dropped, and logged.
    void startBlock(quint16 signature);
    /// The block is over, and with it its request.
    void endBlock();
    /// The connection that the block came over is gone; its request goes on waiting.
    void leaveBlock() { m_current.reset(); }

    /// Who asked for what the present block answers; null if nobody did, or outside a block.
    Dt3Sink *answeredSink() const;

    /// The sink is going: what is answered to it reaches nobody.
    void forget(const Dt3Sink *sink);

private:
    std::map<quint16, Dt3Sink *> m_sinks; ///< By signature; null where the sink has gone.
    quint16 m_next = 0;                   ///< Signature of the next request.
    std::optional<quint16> m_current;     ///< Of the block being read.
};
