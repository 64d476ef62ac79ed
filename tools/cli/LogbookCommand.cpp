#include "LogbookCommand.h"

#include "SightingLog.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLocale>
#include <QTextStream>

namespace {

constexpr int chartDays = 14;
constexpr int listedTypes = 8;

} // namespace

QString LogbookCommand::usage()
{
    return u"usage: aerolume-cli logbook [--json]"_qs;
}

QString LogbookCommand::toText(const SightingLog &log)
{
    const QLocale locale;
    QString text;
    QTextStream out(&text);
    out << "Today: " << locale.toString(log.todayCount()) << "   Last 7 days: " << locale.toString(log.lastSevenDaysCount())
        << "   Aircraft types: " << locale.toString(log.typeCount())
        << "   All time: " << locale.toString(log.totalUnique()) << "\n\n";

    out << "Aircraft per day — last 14 days\n";
    for (const auto &point : log.lastDays(chartDays))
        out << "  " << point.label.leftJustified(6) << ' ' << locale.toString(point.count) << '\n';

    out << "\nBusiest hours — last 14 days\n";
    const QList<qint64> profile = log.hourlyProfile();
    for (int hour = 0; hour < profile.size(); ++hour)
        out << "  " << QString::number(hour).rightJustified(2, u'0') << ":00  " << locale.toString(profile[hour]) << '\n';

    out << "\nRecently spotted types\n";
    const auto types = log.recentNewTypes(listedTypes);
    if (types.isEmpty())
        out << "  Nothing logged yet — the logbook fills in as aircraft pass by.\n";
    for (const auto &type : types)
        out << "  " << type.name << " (" << type.id << "), "
            << locale.toString(type.date.toLocalTime().date(), QLocale::ShortFormat) << '\n';
    out.flush();
    return text;
}

QByteArray LogbookCommand::toJson(const SightingLog &log)
{
    QJsonArray days;
    for (const auto &point : log.lastDays(chartDays))
        days.append(QJsonObject{{u"day"_qs, point.id}, {u"label"_qs, point.label}, {u"count"_qs, point.count}});
    QJsonArray hours;
    for (qint64 count : log.hourlyProfile())
        hours.append(count);
    QJsonArray types;
    for (const auto &type : log.recentNewTypes(listedTypes))
        types.append(QJsonObject{{u"code"_qs, type.id},
                                 {u"name"_qs, type.name},
                                 {u"firstSeen"_qs, type.date.toUTC().toString(Qt::ISODate)}});
    const QJsonObject root{{u"today"_qs, log.todayCount()},
                           {u"lastSevenDays"_qs, log.lastSevenDaysCount()},
                           {u"aircraftTypes"_qs, log.typeCount()},
                           {u"allTime"_qs, log.totalUnique()},
                           {u"lastDays"_qs, days},
                           {u"hourlyProfile"_qs, hours},
                           {u"recentTypes"_qs, types}};
    return QJsonDocument(root).toJson(QJsonDocument::Indented);
}

int LogbookCommand::run(const QStringList &arguments)
{
    bool json = false;
    for (const QString &argument : arguments) {
        if (argument == u"--json") {
            json = true;
        } else {
            QTextStream(stderr) << "unknown argument: " << argument << '\n' << usage() << '\n';
            return 2;
        }
    }
    // Only reads: no save timer, so a running owner's file is never touched from here.
    const SightingLog log(SightingLog::Dependencies{SightingLog::defaultFilePath(), {}, {}, 0});
    QTextStream out(stdout);
    if (json)
        out << QString::fromUtf8(toJson(log));
    else
        out << toText(log);
    return 0;
}
