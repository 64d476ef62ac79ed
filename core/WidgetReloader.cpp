#include "WidgetReloader.h"

#include <QDBusConnection>
#include <QDBusMessage>

WidgetReloader::WidgetReloader(QObject *parent) : QObject(parent) {}

WidgetReloader *WidgetReloader::shared()
{
    static WidgetReloader *reloader = new WidgetReloader();
    return reloader;
}

bool WidgetReloader::reloadAllTimelines()
{
    emit reloadRequested();
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected())
        return false;
    const QDBusMessage message =
        QDBusMessage::createSignal(path.toString(), interface.toString(), signal.toString());
    return bus.send(message);
}
