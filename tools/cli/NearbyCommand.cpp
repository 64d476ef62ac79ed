#include "NearbyCommand.h"

#include "FeedFetch.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <cmath>
#include <cstdio>

namespace {

QJsonValue orNull(const std::optional<QString> &text)
{
    return text ? QJsonValue(*text) : QJsonValue(QJsonValue::Null);
}

std::optional<double> number(const QString &text)
{
    bool ok = false;
    // Arguments are read the same in every locale: a point as decimal mark.
    const double value = QLocale::c().toDouble(text, &ok);
    if (!ok || !std::isfinite(value))
        return std::nullopt;
    return value;
}

} // namespace

QString NearbyCommand::usage()
{
    return u"usage: aerolume-cli nearby --lat LAT --lon LON [--radius NM] [--unit mi|nm|km] [--json]"_qs;
}

std::optional<NearbyCommand::Options> NearbyCommand::parse(const QStringList &arguments, QString *error)
{
    Options options;
    bool haveLatitude = false;
    bool haveLongitude = false;
    for (qsizetype i = 0; i < arguments.size(); ++i) {
        const QString &argument = arguments[i];
        if (argument == u"--json") {
            options.json = true;
            continue;
        }
        const bool takesValue = argument == u"--lat" || argument == u"--lon" || argument == u"--radius" ||
                                argument == u"--unit";
        if (!takesValue) {
            *error = u"unknown argument: %1"_qs.arg(argument);
            return std::nullopt;
        }
        if (i + 1 >= arguments.size()) {
            *error = u"%1 needs a value"_qs.arg(argument);
            return std::nullopt;
        }
        const QString value = arguments[++i];
        if (argument == u"--unit") {
            if (value != u"mi" && value != u"nm" && value != u"km") {
                *error = u"--unit must be mi, nm or km, not %1"_qs.arg(value);
                return std::nullopt;
            }
            options.unit = value;
            continue;
        }
        const auto parsed = number(value);
        if (!parsed) {
            *error = u"%1 must be a number, not %2"_qs.arg(argument, value);
            return std::nullopt;
        }
        if (argument == u"--lat") {
            if (std::abs(*parsed) > 90) {
                *error = u"--lat must lie between -90 and 90"_qs;
                return std::nullopt;
            }
            options.latitude = *parsed;
            haveLatitude = true;
        } else if (argument == u"--lon") {
            if (std::abs(*parsed) > 180) {
                *error = u"--lon must lie between -180 and 180"_qs;
                return std::nullopt;
            }
            options.longitude = *parsed;
            haveLongitude = true;
        } else {
            if (*parsed <= 0) {
                *error = u"--radius must be above 0"_qs;
                return std::nullopt;
            }
            options.radiusNM = *parsed;
        }
    }
    if (!haveLatitude || !haveLongitude) {
        *error = u"--lat and --lon are required"_qs;
        return std::nullopt;
    }
    return options;
}

QByteArray NearbyCommand::toJson(const ADSB::FetchResult &result, const QString &unit, const QLocale &locale)
{
    QJsonArray rows;
    for (const Aircraft &aircraft : result.aircraft) {
        rows.append(QJsonObject{
            {u"hex"_qs, aircraft.hex()},
            {u"displayName"_qs, aircraft.displayName()},
            {u"typeName"_qs, orNull(aircraft.typeName())},
            {u"operator"_qs, orNull(aircraft.operatorDisplayName())},
            {u"altitudeText"_qs, aircraft.altitudeText(locale)},
            {u"speedText"_qs, aircraft.speedText()},
            {u"verticalText"_qs, orNull(aircraft.verticalText(locale))},
            {u"distanceText"_qs, orNull(aircraft.distanceText(unit, false))},
            {u"lookDirection"_qs, orNull(aircraft.lookDirection())},
            {u"emergency"_qs, aircraft.isEmergency()},
            {u"military"_qs, aircraft.isMilitary()},
            {u"helicopter"_qs, aircraft.isHelicopter()},
            {u"onGround"_qs, aircraft.isOnGround()},
        });
    }
    const QJsonObject root{{u"source"_qs, result.source}, {u"aircraft"_qs, rows}};
    return QJsonDocument(root).toJson(QJsonDocument::Indented);
}

QString NearbyCommand::toTable(const ADSB::FetchResult &result, const QString &unit, const QLocale &locale)
{
    const QStringList header{u"NAME"_qs, u"TYPE"_qs, u"ALTITUDE"_qs, u"SPEED"_qs, u"DISTANCE"_qs, u"LOOK"_qs};
    QList<QStringList> lines{header};
    for (const Aircraft &aircraft : result.aircraft) {
        QString name = aircraft.displayName();
        if (aircraft.isEmergency())
            name += u" !"_qs;
        lines.append({name, aircraft.typeName().value_or(u"—"_qs), aircraft.altitudeText(locale),
                      aircraft.speedText(), aircraft.distanceText(unit, false).value_or(u"—"_qs),
                      aircraft.lookDirection().value_or(QString())});
    }
    QList<qsizetype> widths(header.size(), 0);
    for (const QStringList &line : lines) {
        for (qsizetype column = 0; column < line.size(); ++column)
            widths[column] = std::max(widths[column], line[column].size());
    }
    QString table;
    for (const QStringList &line : lines) {
        QString text;
        for (qsizetype column = 0; column < line.size(); ++column) {
            // Numbers line up on the right, words on the left.
            const bool numeric = column >= 2 && column <= 4;
            const QString cell = numeric ? line[column].rightJustified(widths[column])
                                         : line[column].leftJustified(widths[column]);
            text += (column ? u"  "_qs : QString()) + cell;
        }
        table += text.trimmed() + u'\n';
    }
    table += u"%1 aircraft from %2\n"_qs.arg(result.aircraft.size()).arg(result.source);
    return table;
}

NearbyCommand::NearbyCommand(Options options, QObject *parent) : QObject(parent), m_options(std::move(options)) {}

void NearbyCommand::start()
{
    FeedFetch *fetch = ADSB::fetch(HomeLocation(m_options.latitude, m_options.longitude, {}), m_options.radiusNM, this);
    connect(fetch, &FeedFetch::succeeded, this, [this](const ADSB::FetchResult &result) {
        QTextStream out(stdout);
        if (m_options.json)
            out << QString::fromUtf8(toJson(result, m_options.unit));
        else
            out << toTable(result, m_options.unit);
        out.flush();
        emit finished(0);
    });
    connect(fetch, &FeedFetch::failed, this, [this](const ADSB::FetchError &error) {
        QTextStream(stderr) << error.description() << '\n';
        emit finished(1);
    });
}
