#pragma once

#include "simulator/web/deviceview.h"

#include <QObject>
#include <QWebSocketServer>

class FrontDoor;
class HttpAnswers;

/// Shows a device in browsers on this machine: serves the page, and talks to every page that is open. Reachable on
/// 127.0.0.1 only, and only for pages of its own and programs that are no browsers.
class WebServer : public QObject
{
    Q_OBJECT
public:
    struct Limits
    {
        std::chrono::milliseconds requestTime{5000}; ///< For a client to send its request.
        std::chrono::milliseconds pingTime{5000};    ///< For a page to show that it is still there.
        qsizetype pages = 16;
    };

    explicit WebServer(const Limits &limits, QObject *parent = nullptr);
    explicit WebServer(QObject *parent = nullptr)
        : WebServer(Limits(), parent)
    {
    }
    ~WebServer() override;

    /// @param port 0 takes any free one. False: see errorString(). Once.
    bool listen(quint16 port);
    quint16 port() const;
    QString errorString() const { return m_error; }

    /// What pages see from now on; null for nothing, until there is another device. Called before a device goes.
    /// @param device borrowed.
    void setDevice(Device *device);

signals:
    /// A page wants to play another frame model. @param row of the frame table, from 1.
    void frameRequested(int row);
    /// A page or program sent the command that ends the simulator.
    void quitRequested();

private:
    void admitPage();
    void handle(FrontPage *page, const PageMessage &message);
    void forget(FrontPage *page);

    Limits m_limits;
    QString m_error;
    std::unique_ptr<HttpAnswers> m_http;
    FrontDoor *m_door = nullptr; ///< Owned by m_http once it listens.
    QWebSocketServer m_webSockets;
    QList<FrontPage *> m_pages; ///< Children.
    qint64 m_nextLogNumber = 1;
    std::unique_ptr<DeviceView> m_view;
};
