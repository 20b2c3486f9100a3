#pragma once

#include "simulator/web/pagefiles.h"

#include <QHttpServer>

class DeviceView;
class FrontDoor;
struct LineResult;

/// Answers plain HTTP requests: the page's files, the LCD as a picture, and command lines. A connection ends with its
/// answer.
class HttpAnswers : public QObject
{
    Q_OBJECT
public:
    explicit HttpAnswers(QObject *parent = nullptr);

    /// Answers what the door lets in. @param door listens; becomes a child.
    void bind(FrontDoor *door);
    /// @param view borrowed, null for none: there are files only.
    void setView(DeviceView *view) { m_view = view; }

private:
    void execute(const QHttpServerRequest &request, QHttpServerResponder responder);
    void sendLcd(const QHttpServerRequest &request, QHttpServerResponder responder);
    void sendFile(const QHttpServerRequest &request, QHttpServerResponder responder);

    QHttpServer m_server;
    PageFiles m_files;
    DeviceView *m_view = nullptr;
};
