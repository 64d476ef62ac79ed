#pragma once

#include <QGeoCoordinate>
#include <QObject>
#include <QPointer>
#include <functional>
#include <optional>

class QGeoPositionInfoSource;

// One reading of this computer's position, or the reason there is none. Without any source of position
// (common on a desktop) the answer comes at once.
class LocationOnce : public QObject
{
    Q_OBJECT

public:
    explicit LocationOnce(QObject *parent = nullptr);

    // Calls `done` once with a coordinate or nothing; a later second answer is ignored.
    void current(std::function<void(std::optional<QGeoCoordinate>)> done);

private:
    void finish(std::optional<QGeoCoordinate> coordinate);

    QPointer<QGeoPositionInfoSource> m_source;
    std::function<void(std::optional<QGeoCoordinate>)> m_waiting;
};
