#include "LookupJson.h"

std::optional<QString> LookupJson::text(const QJsonObject &object, QStringView key, bool &failed)
{
    const QJsonValue value = object.value(key);
    if (value.isUndefined() || value.isNull())
        return std::nullopt;
    if (!value.isString()) {
        failed = true;
        return std::nullopt;
    }
    return value.toString();
}

std::optional<QJsonObject> LookupJson::object(const QJsonObject &object, QStringView key, bool &failed)
{
    const QJsonValue value = object.value(key);
    if (value.isUndefined() || value.isNull())
        return std::nullopt;
    if (!value.isObject()) {
        failed = true;
        return std::nullopt;
    }
    return value.toObject();
}
