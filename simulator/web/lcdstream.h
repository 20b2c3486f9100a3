#pragma once

#include <QElapsedTimer>
#include <QHash>
#include <QImage>
#include <QObject>
#include <QTimer>

class FrontPage;
class TestBed;

/// Keeps the LCD on pages up to date: looks at it some thirty times a second while there is a page, and sends each
/// page what has changed since the last picture that this one got. A page that is still busy with that is passed over
/// and gets the newest picture later.
class LcdStream : public QObject
{
    Q_OBJECT
public:
    /// @param bed borrowed.
    explicit LcdStream(const TestBed &bed, QObject *parent = nullptr);

    /// @param page borrowed until it is removed. Its first picture is the whole LCD.
    void add(FrontPage *page);
    void remove(FrontPage *page);

    /// The LCD has been watched, and has not changed, for this long; 0 while nobody watches.
    std::chrono::milliseconds stillTime() const;

private:
    void look();
    const QList<QByteArray> &piecesSince(const QImage &shown);

    const TestBed &m_bed;
    QTimer m_timer;
    QImage m_picture;
    QElapsedTimer m_unchanged;
    QHash<FrontPage *, QImage> m_shown;         // shares m_picture with the pages that are up to date
    QHash<qint64, QList<QByteArray>> m_encoded; // what leads from an older picture to m_picture
};
