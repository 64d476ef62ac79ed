#pragma once

#include <QJsonObject>
#include <QJsonValue>
#include <QString>
#include <optional>

// Strict reading of small service answers: an optional key may be missing or null, any other value of the
// wrong JSON type fails the whole answer.
class LookupJson
{
public:
    // Sets `failed` on a wrong type; absent for missing or null.
    [[nodiscard]] static std::optional<QString> text(const QJsonObject &object, QStringView key, bool &failed);
    [[nodiscard]] static std::optional<QJsonObject> object(const QJsonObject &object, QStringView key, bool &failed);
};
