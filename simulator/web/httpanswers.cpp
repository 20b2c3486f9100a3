#include "simulator/web/httpanswers.h"

#include "simulator/web/deviceview.h"
#include "simulator/web/frontdoor.h"
#include "simulator/web/lcdpieces.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QStringDecoder>
#include <QTcpSocket>

namespace {

using Status = QHttpServerResponder::StatusCode;
using Method = QHttpServerRequest::Method;

/// The page loads nothing from elsewhere, and nobody shows it in a frame. Its host is named for browsers that do not
/// take a WebSocket of the same host for the page's own.
QByteArray contentPolicy(const QByteArray &host)
{
    return "default-src 'none'; script-src 'self'; style-src 'self'; img-src 'self' blob: data:; connect-src 'self' "
           "ws://"
        + host + "; base-uri 'none'; form-action 'none'; frame-ancestors 'none'";
}

/// Sends an answer and ends the connection.
class Answer
{
public:
    Answer(const QHttpServerRequest &request, QHttpServerResponder responder)
        : m_host(request.value("Host"))
        , m_responder(std::move(responder))
        , m_socket(m_responder.socket())
    {
    }

    /// Goes when the client does.
    QTcpSocket *socket() const { return m_socket; }

    void send(Status status, const QByteArray &type, const QByteArray &body)
    {
        m_responder.write(body,
            {{"Content-Type", type}, {"Cache-Control", "no-store"}, {"X-Content-Type-Options", "nosniff"},
                {"Content-Security-Policy", contentPolicy(m_host)}, {"Referrer-Policy", "no-referrer"},
                {"Cross-Origin-Resource-Policy", "same-origin"}, {"Connection", "close"}},
            status);
        m_socket->disconnectFromHost();
    }

    void redirect(const QByteArray &path)
    {
        m_responder.write(QByteArray(), {{"Location", path}, {"Connection", "close"}}, Status::SeeOther);
        m_socket->disconnectFromHost();
    }

    void refuse(Status status) { send(status, "text/plain", QByteArray::number(int(status)) + '\n'); }

private:
    QByteArray m_host;
    QHttpServerResponder m_responder;
    QTcpSocket *m_socket;
};

/// A link or a script of another site leads here. What the page's address asks for, another frame, is not that site's
/// to ask.
bool isLedFromElsewhere(const QHttpServerRequest &request)
{
    const QByteArray site = request.value("Sec-Fetch-Site"); // browsers send it
    return !site.isEmpty() && site != "none" && site != "same-origin";
}

/// Those with a command in them. Nothing where the text is no UTF-8.
std::optional<QStringList> commandLines(const QByteArray &body)
{
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    const QString text = decoder(body);
    if (decoder.hasError())
        return std::nullopt;
    QStringList lines;
    const QStringList all = text.split('\n');
    for (const QString &line : all) {
        if (const QString command = line.trimmed(); !command.isEmpty() && !command.startsWith('#'))
            lines.append(command);
    }
    return lines;
}

QByteArray resultText(const QList<LineResult> &results)
{
    QJsonArray rows;
    for (const LineResult &row : results)
        rows.append(QJsonObject{{"line", row.line}, {"ok", row.result.ok()}, {"text", row.result.text}});
    const bool ok = results.isEmpty() || results.last().result.ok();
    return QJsonDocument(QJsonObject{{"ok", ok}, {"results", rows}}).toJson(QJsonDocument::Compact) + '\n';
}

} // namespace

HttpAnswers::HttpAnswers(QObject *parent)
    : QObject(parent)
{
    m_server.route(
        "/command", Method::Post, [this](const QHttpServerRequest &request, QHttpServerResponder &&responder) {
            execute(request, std::move(responder));
        });
    m_server.route(
        "/lcd.png", Method::Get, [this](const QHttpServerRequest &request, QHttpServerResponder &&responder) {
            sendLcd(request, std::move(responder));
        });
    m_server.setMissingHandler([this](const QHttpServerRequest &request, QHttpServerResponder &&responder) {
        sendFile(request, std::move(responder));
    });
}

void HttpAnswers::bind(FrontDoor *door) { m_server.bind(door); }

void HttpAnswers::execute(const QHttpServerRequest &request, QHttpServerResponder responder)
{
    auto answer = std::make_shared<Answer>(request, std::move(responder));
    const std::optional<QStringList> lines = commandLines(request.body());
    const auto send = [answer](const QList<LineResult> &results) {
        answer->send(Status::Ok, "application/json", resultText(results));
    };
    if (!lines)
        answer->refuse(Status::BadRequest);
    else if (lines->isEmpty())
        send({});
    else if (!m_view || !m_view->commands().add(*lines, answer->socket(), send))
        answer->refuse(Status::ServiceUnavailable);
}

void HttpAnswers::sendLcd(const QHttpServerRequest &request, QHttpServerResponder responder)
{
    Answer answer(request, std::move(responder));
    if (m_view)
        answer.send(Status::Ok, "image/png", encodePng(m_view->lcd()));
    else
        answer.refuse(Status::ServiceUnavailable);
}

/// Whatever has no route of its own is a file of the page.
void HttpAnswers::sendFile(const QHttpServerRequest &request, QHttpServerResponder responder)
{
    Answer answer(request, std::move(responder));
    const QString path = request.url().path(QUrl::FullyEncoded);
    const bool isCommand = path == "/command";
    const PageFiles::File *file = m_files.find(path);
    if (file && request.url().hasQuery() && isLedFromElsewhere(request))
        answer.redirect(path.toLatin1());
    else if (isCommand || request.method() != Method::Get)
        answer.refuse(Status::MethodNotAllowed);
    else if (file)
        answer.send(Status::Ok, file->type, file->contents);
    else
        answer.refuse(Status::NotFound);
}
