#include "simulator/web/lcdstream.h"

#include "simulator/hardware/testbed.h"
#include "simulator/web/frontpage.h"
#include "simulator/web/lcdpieces.h"

using namespace std::chrono_literals;

namespace {

constexpr auto lookInterval = 34ms;

} // namespace

LcdStream::LcdStream(const TestBed &bed, QObject *parent)
    : QObject(parent)
    , m_bed(bed)
{
    m_timer.setTimerType(Qt::PreciseTimer);
    m_timer.setInterval(lookInterval);
    connect(&m_timer, &QTimer::timeout, this, &LcdStream::look);
}

void LcdStream::add(FrontPage *page)
{
    m_shown.insert(page, {});
    if (!m_timer.isActive())
        m_timer.start();
}

void LcdStream::remove(FrontPage *page)
{
    m_shown.remove(page);
    if (!m_shown.isEmpty())
        return;
    m_timer.stop();
    m_unchanged.invalidate();
}

std::chrono::milliseconds LcdStream::stillTime() const
{
    return std::chrono::milliseconds(m_unchanged.isValid() ? m_unchanged.elapsed() : 0);
}

void LcdStream::look()
{
    const QImage picture = m_bed.lcd();
    if (m_picture.isNull() || !changedRectangles(m_picture, picture).isEmpty()) {
        m_picture = picture;
        m_encoded.clear();
        m_unchanged.start();
    } else if (!m_unchanged.isValid()) {
        m_unchanged.start();
    }
    for (auto page = m_shown.begin(); page != m_shown.end(); ++page) {
        if (page->cacheKey() == m_picture.cacheKey() || !page.key()->isReadyForPicture())
            continue;
        if (const QList<QByteArray> &pieces = piecesSince(*page); !pieces.isEmpty())
            page.key()->sendPicture(pieces);
        *page = m_picture;
    }
}

const QList<QByteArray> &LcdStream::piecesSince(const QImage &shown)
{
    const auto known = m_encoded.constFind(shown.cacheKey());
    if (known != m_encoded.constEnd())
        return *known;
    QList<QByteArray> pieces;
    for (const QRect &rectangle : changedRectangles(shown, m_picture))
        pieces.append(encodePiece(m_picture, rectangle));
    return *m_encoded.insert(shown.cacheKey(), pieces);
}
