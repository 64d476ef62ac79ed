#include "DefaultsStore.h"
#include "FlightStore.h"
#include "HomeCommand.h"
#include "LiveStateLock.h"
#include "LogbookCommand.h"
#include "LookupCommand.h"
#include "NearbyCommand.h"
#include "WatchCommand.h"

#include <QCoreApplication>
#include <QTextStream>

namespace {

QString usage()
{
    return NearbyCommand::usage() + u'\n' + HomeCommand::usage() + u'\n' + WatchCommand::usage() + u'\n' +
           LogbookCommand::usage() + u'\n' + LookupCommand::usage();
}

int nearby(QCoreApplication &app, const QStringList &arguments)
{
    QString error;
    const auto options = NearbyCommand::parse(arguments, &error);
    if (!options) {
        QTextStream(stderr) << error << '\n' << NearbyCommand::usage() << '\n';
        return 2;
    }
    NearbyCommand command(*options);
    QObject::connect(&command, &NearbyCommand::finished, &app, &QCoreApplication::exit, Qt::QueuedConnection);
    command.start();
    return app.exec();
}

int watch(QCoreApplication &app, const QStringList &arguments)
{
    QTextStream err(stderr);
    QString error;
    const auto options = WatchCommand::parse(arguments, &error);
    if (!options) {
        err << error << '\n' << WatchCommand::usage() << '\n';
        return 2;
    }
    LiveStateLock lock;
    if (!lock.tryLock()) {
        err << "Aerolume's live state is already run by " << lock.holder() << ".\n";
        return 1;
    }
    if (!DefaultsStore::shared()->dataValue(u"homeLocation"_qs)) {
        err << "No home is set: set one with aerolume-cli home set LAT LON [LABEL].\n";
        return 1;
    }
    FlightStore *store = FlightStore::shared();
    if (!store->home()) {
        err << "The stored home can't be read: set it again with aerolume-cli home set LAT LON [LABEL].\n";
        return 1;
    }
    WatchCommand command(*options, store);
    QObject::connect(&command, &WatchCommand::finished, &app, &QCoreApplication::exit, Qt::QueuedConnection);
    return app.exec();
}

} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    QCoreApplication::setApplicationName(u"aerolume-cli"_qs);
    QCoreApplication::setApplicationVersion(QStringLiteral(AEROLUME_VERSION));

    const QStringList arguments = app.arguments().mid(1);
    const QString command = arguments.value(0);
    if (command.isEmpty()) {
        QTextStream(stderr) << usage() << '\n';
        return 2;
    }
    if (command == u"--help" || command == u"-h" || command == u"help") {
        QTextStream(stdout) << usage() << '\n';
        return 0;
    }
    if (command == u"--version") {
        QTextStream(stdout) << "aerolume-cli " << AEROLUME_VERSION << '\n';
        return 0;
    }
    if (command == u"nearby")
        return nearby(app, arguments.mid(1));
    if (command == u"home" || command == u"radius")
        return HomeCommand::run(arguments);
    if (command == u"route" || command == u"photo" || command == u"resolve-stream") {
        LookupCommand lookup;
        if (!lookup.start(arguments))
            return 2;
        QObject::connect(&lookup, &LookupCommand::finished, &app, &QCoreApplication::exit, Qt::QueuedConnection);
        return app.exec();
    }
    if (command == u"logbook")
        return LogbookCommand::run(arguments.mid(1));
    if (command == u"watch")
        return watch(app, arguments.mid(1));
    QTextStream(stderr) << "unknown command: " << command << '\n' << usage() << '\n';
    return 2;
}
