#include "protocol/dt3sink.h"

#include "protocol/dt3manager.h"
#include "protocol/dt3property.h"

#include <QDebug>

Dt3Sink::~Dt3Sink() { Dt3Manager::forget(this); }

void Dt3Sink::nodeReceived(const QString &) { }
void Dt3Sink::propertyReceived(const QString &, const QString &) { }
void Dt3Sink::propertyChanged(const QString &, const QString &) { }
void Dt3Sink::nodeAdded(const QString &, const QString &) { }
void Dt3Sink::nodeRemoved(const QString &, const QString &) { }

void Dt3Sink::get(const QString &path) { Dt3Manager::instance()->get(this, path); }

void Dt3Sink::set(const QString &propertyPath, const QString &value)
{
    Dt3Manager::instance()->set(this, propertyPath, value);
}

void Dt3Sink::call(const QString &methodPath, const QString &arguments)
{
    Dt3Manager::instance()->call(this, methodPath, arguments);
}

void Dt3Sink::open(const QString &nodePath)
{
    switch (const Dt3OpenResult result = Dt3Manager::instance()->open(this, nodePath)) {
    case DT3_OPEN_RESULT_OK: break;
    case DT3_OPEN_RESULT_WRITE_ERROR: qWarning("DT3_OPEN_RESULT_WRITE_ERROR in sendOpen"); break;
    case DT3_OPEN_RESULT_SOCKET_NOT_OPEN: qWarning("DT3_OPEN_RESULT_SOCKET_NOT_OPEN in sendOpen"); break;
    default: qWarning() << "Unexpected error happened in sendOpen:" << result;
    }
}

void Dt3Sink::close(const QString &nodePath) { Dt3Manager::instance()->close(this, nodePath); }

void Dt3Sink::setValue(const Dt3Property &property, const QString &caption)
{
    const QString raw = property.rawValue(caption);
    if (property.hasMethodPath())
        call(property.methodPath(), raw);
    else if (property.hasWritePath())
        set(property.writePath(), raw);
    else if (property.hasPath())
        set(property.path(), raw);
}
