#pragma once

#include "PlanePhoto.h"

#include <QByteArray>
#include <functional>
#include <optional>

class QObject;

// A photo of an aircraft by its transponder address, from the photo service. Every failure is no photo.
namespace PhotoAPI {

[[nodiscard]] std::optional<PlanePhoto> decode(const QByteArray &json);
// Calls `done` once from the event loop, unless `context` is gone by then.
void fetch(const QString &hex, QObject *context, std::function<void(std::optional<PlanePhoto>)> done);

} // namespace PhotoAPI
