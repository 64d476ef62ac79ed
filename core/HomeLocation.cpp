#include "HomeLocation.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QJsonParseError>
#include <QJsonValue>

namespace {

QString typeWord(const QJsonValue &value)
{
    switch (value.type()) {
    case QJsonValue::Null: return u"null"_qs;
    case QJsonValue::Bool: return u"a boolean"_qs;
    case QJsonValue::Double: return u"a number"_qs;
    case QJsonValue::String: return u"a string"_qs;
    case QJsonValue::Array: return u"a list"_qs;
    case QJsonValue::Object: return u"an object"_qs;
    case QJsonValue::Undefined: break;
    }
    return u"missing"_qs;
}

} // namespace

Decoded<HomeLocation> HomeLocation::decode(const QByteArray &json)
{
    QJsonParseError parseError;
    const QJsonDocument document = QJsonDocument::fromJson(json, &parseError);
    if (parseError.error != QJsonParseError::NoError)
        return Decoded<HomeLocation>::failure(u"the home location is not valid JSON (%1)"_qs.arg(parseError.errorString()));
    if (!document.isObject())
        return Decoded<HomeLocation>::failure(u"the home location must be a JSON object"_qs);
    const QJsonObject object = document.object();

    auto problem = [&](const QString &key, bool wanted, const QString &expected) -> QString {
        const QJsonValue value = object.value(key);
        if (wanted)
            return {};
        if (value.isUndefined())
            return u"\"%1\" is missing"_qs.arg(key);
        return u"\"%1\" must be %2, not %3"_qs.arg(key, expected, typeWord(value));
    };
    const QJsonValue latitude = object.value(u"latitude");
    const QJsonValue longitude = object.value(u"longitude");
    const QJsonValue label = object.value(u"label");
    for (const QString &message : {problem(u"latitude"_qs, latitude.isDouble(), u"a number"_qs),
                                   problem(u"longitude"_qs, longitude.isDouble(), u"a number"_qs),
                                   problem(u"label"_qs, label.isString(), u"a string"_qs)}) {
        if (!message.isEmpty())
            return Decoded<HomeLocation>::failure(message);
    }
    return Decoded<HomeLocation>::success(HomeLocation(latitude.toDouble(), longitude.toDouble(), label.toString()));
}

QByteArray HomeLocation::encode() const
{
    const QJsonObject object{{u"latitude"_qs, latitude}, {u"longitude"_qs, longitude}, {u"label"_qs, label}};
    return QJsonDocument(object).toJson(QJsonDocument::Compact);
}
