#include "PhotoAPI.h"

#include "LookupJson.h"
#include "RouteAPI.h"
#include "ServiceRequest.h"
#include "Services.h"

#include <QJsonArray>
#include <QJsonDocument>

namespace PhotoAPI {

std::optional<PlanePhoto> decode(const QByteArray &json)
{
    const QJsonDocument document = QJsonDocument::fromJson(json);
    if (!document.isObject())
        return std::nullopt;
    const QJsonValue photos = document.object().value(u"photos");
    if (photos.isUndefined() || photos.isNull())
        return std::nullopt;
    if (!photos.isArray())
        return std::nullopt;
    // Every photo must have the right shape, though only the first is used.
    bool failed = false;
    std::optional<QString> src, link, photographer;
    bool first = true;
    for (const QJsonValue &entry : photos.toArray()) {
        if (!entry.isObject()) { // a list element is not optional: null fails too
            failed = true;
            break;
        }
        const QJsonObject photo = entry.toObject();
        const auto thumbnail = LookupJson::object(photo, u"thumbnail_large", failed);
        const auto thumbnailSource = thumbnail ? LookupJson::text(*thumbnail, u"src", failed) : std::nullopt;
        const auto photoLink = LookupJson::text(photo, u"link", failed);
        const auto name = LookupJson::text(photo, u"photographer", failed);
        if (first) {
            src = thumbnailSource;
            link = photoLink;
            photographer = name;
            first = false;
        }
    }
    if (failed || first || !src)
        return std::nullopt;
    const QUrl thumbnailURL(*src, QUrl::StrictMode);
    if (!thumbnailURL.isValid() || thumbnailURL.isEmpty())
        return std::nullopt;
    std::optional<QUrl> pageURL;
    if (link) {
        const QUrl url(*link, QUrl::StrictMode);
        if (url.isValid() && !url.isEmpty())
            pageURL = url;
    }
    return PlanePhoto{thumbnailURL, pageURL, photographer};
}

void fetch(const QString &hex, QObject *context, std::function<void(std::optional<PlanePhoto>)> done)
{
    ServiceRequest::Options options;
    options.headers.append({"User-Agent", RouteAPI::userAgent()});
    ServiceRequest::get(
        Services::photoURL() + u"/pub/photos/hex/"_qs + hex, options,
        [done = std::move(done)](std::optional<QByteArray> body) { done(body ? decode(*body) : std::nullopt); },
        context);
}

} // namespace PhotoAPI
