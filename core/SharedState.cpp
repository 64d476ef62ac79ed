#include "SharedState.h"

#include "UserDirectories.h"

#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSaveFile>

namespace SharedState {

QString directory()
{
    return UserDirectories::data();
}

QString filePath()
{
    return directory() + u"/widget-config.json"_qs;
}

QByteArray encode(const Config &config)
{
    QJsonObject object{
        {u"home"_qs, QJsonObject{{u"latitude"_qs, config.home.latitude},
                                 {u"longitude"_qs, config.home.longitude},
                                 {u"label"_qs, config.home.label}}},
        {u"radiusNM"_qs, config.radiusNM},
    };
    if (config.distanceUnit)
        object.insert(u"distanceUnit"_qs, *config.distanceUnit);
    if (config.widgetColorHex)
        object.insert(u"widgetColorHex"_qs, *config.widgetColorHex);
    return QJsonDocument(object).toJson(QJsonDocument::Compact);
}

std::optional<Config> decode(const QByteArray &json)
{
    const QJsonDocument document = QJsonDocument::fromJson(json);
    if (!document.isObject())
        return std::nullopt;
    const QJsonObject object = document.object();
    const QJsonValue home = object.value(u"home");
    const QJsonValue radius = object.value(u"radiusNM");
    if (!home.isObject() || !radius.isDouble())
        return std::nullopt;
    auto decodedHome = HomeLocation::decode(QJsonDocument(home.toObject()).toJson(QJsonDocument::Compact));
    if (!decodedHome.ok())
        return std::nullopt;
    Config config{std::move(decodedHome).value(), radius.toDouble(), std::nullopt, std::nullopt};
    // Optional keys may be missing or null; any other type means the file isn't ours.
    for (auto [key, field] : {std::pair{u"distanceUnit", &config.distanceUnit},
                              std::pair{u"widgetColorHex", &config.widgetColorHex}}) {
        const QJsonValue value = object.value(QStringView(key));
        if (value.isString())
            *field = value.toString();
        else if (!value.isUndefined() && !value.isNull())
            return std::nullopt;
    }
    return config;
}

void write(const Config &config)
{
    QDir().mkpath(directory());
    QSaveFile file(filePath());
    if (!file.open(QIODevice::WriteOnly))
        return;
    file.write(encode(config));
    file.commit();
}

std::optional<Config> read()
{
    QFile file(filePath());
    if (!file.open(QIODevice::ReadOnly))
        return std::nullopt;
    return decode(file.readAll());
}

void clear()
{
    QFile::remove(filePath());
}

} // namespace SharedState
