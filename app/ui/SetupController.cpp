#include "SetupController.h"

#include "CoordinateText.h"
#include "FlightStore.h"
#include "Geocoder.h"
#include "LocationOnce.h"

SetupController::SetupController(QObject *parent)
    : QObject(parent), m_geocoder(Geocoder::shared()), m_locator(new LocationOnce(this))
{
}

void SetupController::setStore(FlightStore *store)
{
    if (store == m_store)
        return;
    m_store = store;
    emit storeChanged();
}

QString SetupController::resolvedText() const
{
    if (!m_resolved)
        return {};
    return m_resolved->label + u"  ("_qs + CoordinateText::fourDecimals(m_resolved->latitude) + u", "_qs +
           CoordinateText::fourDecimals(m_resolved->longitude) + u')';
}

void SetupController::appear()
{
    if (!m_store || !m_store->home())
        return;
    m_resolved = *m_store->home();
    emit resolvedChanged();
    setFields(CoordinateText::fiveDecimals(m_resolved->latitude), CoordinateText::fiveDecimals(m_resolved->longitude));
}

void SetupController::setFields(const QString &latitude, const QString &longitude)
{
    if (latitude != m_latText) {
        m_latText = latitude;
        emit latTextChanged();
    }
    if (longitude != m_lonText) {
        m_lonText = longitude;
        emit lonTextChanged();
    }
}

void SetupController::accept(double latitude, double longitude, const QString &label)
{
    m_resolved = HomeLocation(latitude, longitude, label);
    emit resolvedChanged();
    setFields(CoordinateText::fiveDecimals(latitude), CoordinateText::fiveDecimals(longitude));
    setStatus(foundText.toString(), false);
}

void SetupController::setStatus(std::optional<QString> message, bool isError)
{
    if (message == m_statusMessage && isError == m_statusIsError)
        return;
    m_statusMessage = std::move(message);
    m_statusIsError = isError;
    emit statusChanged();
}

void SetupController::setWorking(bool working)
{
    if (working == m_isWorking)
        return;
    m_isWorking = working;
    emit isWorkingChanged();
}

void SetupController::geocode()
{
    // Not trimmed: a text of blanks is the user's to send.
    if (m_address.isEmpty())
        return;
    setWorking(true);
    setStatus(std::nullopt, m_statusIsError);
    m_geocoder->search(m_address, this, [this](const Geocoder::Answer &answer) {
        if (answer.error) {
            setStatus(lookupFailedText.toString() + *answer.error, true);
        } else if (answer.placemarks.isEmpty()) {
            setStatus(noMatchText.toString(), true);
        } else {
            const Geocoder::Placemark &place = answer.placemarks.constFirst();
            QStringList parts;
            if (place.locality)
                parts.append(*place.locality);
            if (place.administrativeArea)
                parts.append(*place.administrativeArea);
            const QString label = parts.isEmpty() ? u"Home"_qs : parts.join(u", "_qs);
            accept(place.latitude, place.longitude, label);
        }
        setWorking(false);
    });
}

void SetupController::useCurrentLocation()
{
    setWorking(true);
    setStatus(std::nullopt, m_statusIsError);
    m_locator->current([this](std::optional<QGeoCoordinate> coordinate) {
        if (coordinate && coordinate->isValid())
            accept(coordinate->latitude(), coordinate->longitude(), u"My location"_qs);
        else
            setStatus(noLocationText.toString(), true);
        setWorking(false);
    });
}

void SetupController::setManual()
{
    const auto latitude = CoordinateText::parse(m_latText);
    const auto longitude = CoordinateText::parse(m_lonText);
    if (latitude && longitude && CoordinateText::inBounds(*latitude, *longitude))
        accept(*latitude, *longitude, u"Home"_qs);
    else
        setStatus(badCoordinatesText.toString(), true);
}

void SetupController::confirm()
{
    if (m_store && m_resolved)
        m_store->setHome(*m_resolved);
}
