#include "LocationOnce.h"

#include <QGeoPositionInfoSource>
#include <QTimer>

namespace {
// Long enough for a first fix over the network, short enough that a silent service doesn't look hung.
constexpr int timeoutMs = 15000;
} // namespace

LocationOnce::LocationOnce(QObject *parent) : QObject(parent) {}

void LocationOnce::current(std::function<void(std::optional<QGeoCoordinate>)> done)
{
    m_waiting = std::move(done);
    if (!m_source) {
        m_source = QGeoPositionInfoSource::createDefaultSource(this);
        if (m_source) {
            m_source->setPreferredPositioningMethods(QGeoPositionInfoSource::AllPositioningMethods);
            connect(m_source, &QGeoPositionInfoSource::positionUpdated, this,
                    [this](const QGeoPositionInfo &info) {
                        finish(info.isValid() ? std::optional(info.coordinate()) : std::nullopt);
                    });
            connect(m_source, &QGeoPositionInfoSource::errorOccurred, this,
                    [this](QGeoPositionInfoSource::Error) { finish(std::nullopt); });
        }
    }
    if (!m_source) {
        QTimer::singleShot(0, this, [this] { finish(std::nullopt); });
        return;
    }
    m_source->requestUpdate(timeoutMs);
}

void LocationOnce::finish(std::optional<QGeoCoordinate> coordinate)
{
    if (!m_waiting)
        return;
    auto done = std::exchange(m_waiting, {});
    done(coordinate);
}
