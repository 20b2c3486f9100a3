#include "simulator/web/webserver.h"

#include "simulator/web/frontdoor.h"
#include "simulator/web/frontpage.h"
#include "simulator/web/httpanswers.h"

WebServer::WebServer(const Limits &limits, QObject *parent)
    : QObject(parent)
    , m_limits(limits)
    , m_http(std::make_unique<HttpAnswers>())
    , m_webSockets(QStringLiteral("panel-simulator"), QWebSocketServer::NonSecureMode)
{
    connect(&m_webSockets, &QWebSocketServer::newConnection, this, &WebServer::admitPage);
}

WebServer::~WebServer()
{
    setDevice(nullptr);
    qDeleteAll(m_pages);
}

bool WebServer::listen(quint16 port)
{
    auto door = std::make_unique<FrontDoor>(m_limits.requestTime);
    if (!door->listen(QHostAddress::LocalHost, port)) {
        m_error = door->errorString();
        return false;
    }
    m_door = door.release();
    m_http->bind(m_door);
    connect(m_door, &FrontDoor::upgradeRequested, &m_webSockets, &QWebSocketServer::handleConnection);
    return true;
}

quint16 WebServer::port() const { return m_door ? m_door->serverPort() : 0; }

void WebServer::setDevice(Device *device)
{
    m_http->setView(nullptr);
    if (m_view)
        m_nextLogNumber = m_view->nextLogNumber();
    m_view.reset();
    if (!device)
        return;
    m_view = std::make_unique<DeviceView>(*device, m_nextLogNumber);
    m_http->setView(m_view.get());
    // queued: whoever hears of it may well give us another device
    connect(m_view.get(), &DeviceView::quitRequested, this, &WebServer::quitRequested, Qt::QueuedConnection);
    for (FrontPage *page : std::as_const(m_pages))
        m_view->add(page);
}

void WebServer::admitPage()
{
    std::unique_ptr<QWebSocket> socket(m_webSockets.nextPendingConnection());
    auto *page = new FrontPage(std::move(socket), m_limits.pingTime, this);
    m_pages.append(page);
    // queued: a page may be found gone while all of them are being told something
    connect(
        page, &FrontPage::gone, this, [this, page] { forget(page); }, Qt::QueuedConnection);
    connect(
        page, &FrontPage::messageReceived, this, [this, page](const PageMessage &message) { handle(page, message); });
    if (m_pages.size() > m_limits.pages)
        page->close(FrontPage::TooManyPages, QStringLiteral("too many pages are open"));
    else if (m_view)
        m_view->add(page);
}

void WebServer::handle(FrontPage *page, const PageMessage &message)
{
    if (message.type == PageMessage::Type::Frame && m_view && m_view->isRecording())
        page->send({{"type", "result"}, {"id", message.id}, {"ok", false},
            {"text", "A script is being recorded; stop that first, or it would be lost."}});
    else if (message.type == PageMessage::Type::Frame)
        QMetaObject::invokeMethod(
            this, [this, row = message.row] { emit frameRequested(row); }, Qt::QueuedConnection);
    else if (m_view)
        m_view->handle(page, message);
}

void WebServer::forget(FrontPage *page)
{
    m_pages.removeOne(page);
    if (m_view)
        m_view->remove(page);
    page->deleteLater();
}
