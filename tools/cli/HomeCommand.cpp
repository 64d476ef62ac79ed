#include "HomeCommand.h"

#include "DefaultsStore.h"
#include "FlightStore.h"
#include "LiveStateLock.h"
#include "TextRules.h"
#include "WidgetReloader.h"

#include <QLocale>
#include <QTextStream>
#include <cmath>

namespace {

std::optional<double> number(const QString &text)
{
    bool ok = false;
    const double value = QLocale::c().toDouble(text, &ok);
    return ok && std::isfinite(value) ? std::optional(value) : std::nullopt;
}

int usageError(const QString &message)
{
    QTextStream(stderr) << message << '\n' << HomeCommand::usage() << '\n';
    return 2;
}

// A store that only keeps and shares settings: a one-off command never polls the networks.
FlightStore makeStore()
{
    return FlightStore(FlightStore::Dependencies{DefaultsStore::shared(), WidgetReloader::shared(), {}, {}, 0, false});
}

} // namespace

QString HomeCommand::usage()
{
    return u"usage: aerolume-cli home [set LAT LON [LABEL] | clear]\n"
           u"       aerolume-cli radius NM"_qs;
}

int HomeCommand::run(const QStringList &arguments)
{
    QTextStream out(stdout);
    QTextStream err(stderr);
    const QString command = arguments.value(0);
    const QString action = arguments.value(1);

    if (command == u"home" && arguments.size() == 1) {
        DefaultsStore &defaults = *DefaultsStore::shared();
        std::optional<HomeLocation> home;
        if (const auto data = defaults.dataValue(u"homeLocation"_qs); data && HomeLocation::decode(*data).ok())
            home = HomeLocation::decode(*data).value();
        const auto radius = defaults.doubleValue(u"radiusNM"_qs);
        const double radiusNM = radius && *radius > 0 ? *radius : 25.0;
        if (home)
            out << "Home: " << (home->label.isEmpty() ? u"(no name)"_qs : home->label) << " at "
                << TextRules::fixedPoint(home->latitude, 5) << ", " << TextRules::fixedPoint(home->longitude, 5) << '\n';
        else
            out << "No home is set.\n";
        out << "Radius: " << QString::number(radiusNM) << " nm\n";
        return 0;
    }

    // Validate everything before taking the lock, so a typo never meets a running owner.
    std::optional<HomeLocation> newHome;
    std::optional<double> newRadius;
    if (command == u"home" && action == u"set") {
        if (arguments.size() < 4 || arguments.size() > 5)
            return usageError(u"home set needs LAT LON and an optional LABEL"_qs);
        const auto latitude = number(arguments[2]);
        const auto longitude = number(arguments[3]);
        if (!latitude || std::abs(*latitude) > 90)
            return usageError(u"LAT must be a number between -90 and 90, not %1"_qs.arg(arguments[2]));
        if (!longitude || std::abs(*longitude) > 180)
            return usageError(u"LON must be a number between -180 and 180, not %1"_qs.arg(arguments[3]));
        const QString label = arguments.size() == 5
                                  ? arguments[4]
                                  : TextRules::fixedPoint(*latitude, 5) + u", "_qs + TextRules::fixedPoint(*longitude, 5);
        newHome = HomeLocation(*latitude, *longitude, label);
    } else if (command == u"home" && action == u"clear" && arguments.size() == 2) {
        // newHome stays absent: the home is forgotten
    } else if (command == u"radius" && arguments.size() == 2) {
        newRadius = number(arguments[1]);
        if (!newRadius || *newRadius <= 0)
            return usageError(u"NM must be a number above 0, not %1"_qs.arg(arguments[1]));
    } else {
        return usageError(u"unknown %1 command: %2"_qs.arg(command, arguments.mid(1).join(u' ')));
    }

    LiveStateLock lock;
    if (!lock.tryLock()) {
        err << "Aerolume is running as " << lock.holder()
            << ", which would neither see nor keep this change; make it there, or stop it first.\n";
        return 1;
    }
    FlightStore store = makeStore();
    if (newRadius) {
        store.setRadiusNM(*newRadius);
        out << "Radius: " << QString::number(*newRadius) << " nm\n";
    } else {
        store.setHome(newHome);
        if (newHome)
            out << "Home: " << newHome->label << '\n';
        else
            out << "Home cleared.\n";
    }
    return 0;
}
