#include "LookupCommand.h"

#include "PhotoAPI.h"
#include "RouteAPI.h"
#include "StreamResolver.h"

#include <QTextStream>

LookupCommand::LookupCommand(QObject *parent) : QObject(parent) {}

QString LookupCommand::usage()
{
    return u"usage: aerolume-cli route CALLSIGN\n"
           u"       aerolume-cli photo HEX\n"
           u"       aerolume-cli resolve-stream URL"_qs;
}

void LookupCommand::print(const QString &text, int exitCode)
{
    QTextStream out(stdout);
    out << text << '\n';
    out.flush();
    emit finished(exitCode);
}

bool LookupCommand::start(const QStringList &arguments)
{
    const QString command = arguments.value(0);
    if (arguments.size() != 2 || (command != u"route" && command != u"photo" && command != u"resolve-stream")) {
        QTextStream(stderr) << "bad arguments\n" << usage() << '\n';
        return false;
    }
    const QString key = arguments[1];
    if (command == u"resolve-stream") {
        StreamResolver::resolve(key, this, [this](std::optional<QUrl> stream) {
            if (!stream)
                return print(u"none"_qs, 1);
            print(stream->toString(), 0);
        });
    } else if (command == u"route") {
        RouteAPI::fetch(key, this, [this](std::optional<FlightRoute> route) {
            if (!route)
                return print(u"none"_qs, 1);
            QString text = route->summary();
            if (const auto cities = route->citySummary())
                text += u"  ("_qs + *cities + u')';
            print(text, 0);
        });
    } else {
        PhotoAPI::fetch(key, this, [this](std::optional<PlanePhoto> photo) {
            if (!photo)
                return print(u"none"_qs, 1);
            QString text = photo->thumbnailURL.toString();
            if (photo->pageURL)
                text += u"\npage: "_qs + photo->pageURL->toString();
            if (photo->photographer)
                text += u"\nphotographer: "_qs + *photo->photographer;
            print(text, 0);
        });
    }
    return true;
}
