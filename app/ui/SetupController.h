#pragma once

#include "HomeLocation.h"

#include <QObject>
#include <QPointer>
#include <QtQml/qqmlregistration.h>
#include <optional>

#include "FlightStore.h"
class Geocoder;
class LocationOnce;

// The state and actions of the home setup: an address looked up, this computer's location, or typed
// coordinates; nothing takes effect until confirm(). Each setup view makes its own.
class SetupController : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(FlightStore *store READ store WRITE setStore NOTIFY storeChanged)
    Q_PROPERTY(QString address MEMBER m_address NOTIFY addressChanged)
    Q_PROPERTY(QString latText MEMBER m_latText NOTIFY latTextChanged)
    Q_PROPERTY(QString lonText MEMBER m_lonText NOTIFY lonTextChanged)
    Q_PROPERTY(bool hasResolved READ hasResolved NOTIFY resolvedChanged)
    Q_PROPERTY(QString resolvedText READ resolvedText NOTIFY resolvedChanged)
    Q_PROPERTY(QString statusMessage READ statusMessage NOTIFY statusChanged)
    Q_PROPERTY(bool statusIsError READ statusIsError NOTIFY statusChanged)
    Q_PROPERTY(bool isWorking READ isWorking NOTIFY isWorkingChanged)

public:
    explicit SetupController(QObject *parent = nullptr);

    [[nodiscard]] FlightStore *store() const { return m_store; }
    void setStore(FlightStore *store);
    void setGeocoder(Geocoder *geocoder) { m_geocoder = geocoder; }

    [[nodiscard]] const std::optional<HomeLocation> &resolved() const { return m_resolved; }
    [[nodiscard]] bool hasResolved() const { return m_resolved.has_value(); }
    // "Portland, Oregon  (45.5152, -122.6784)"
    [[nodiscard]] QString resolvedText() const;
    [[nodiscard]] QString statusMessage() const { return m_statusMessage.value_or(QString()); }
    [[nodiscard]] bool statusIsError() const { return m_statusIsError; }
    [[nodiscard]] bool isWorking() const { return m_isWorking; }

    // Opens on the present home, if there is one.
    Q_INVOKABLE void appear();
    Q_INVOKABLE void geocode();
    Q_INVOKABLE void useCurrentLocation();
    Q_INVOKABLE void setManual();
    // Makes the found point the home.
    Q_INVOKABLE void confirm();

    // The texts the setup says.
    static constexpr QStringView foundText = u"Location found.";
    static constexpr QStringView noMatchText = u"No match found for that address.";
    static constexpr QStringView lookupFailedText = u"Address lookup failed: ";
    static constexpr QStringView noLocationText = u"Couldn't get this computer's location. Try the address field instead.";
    static constexpr QStringView badCoordinatesText = u"Coordinates must be decimal degrees, e.g. 45.6387, -122.6615.";

signals:
    void storeChanged();
    void addressChanged();
    void latTextChanged();
    void lonTextChanged();
    void resolvedChanged();
    void statusChanged();
    void isWorkingChanged();

private:
    void accept(double latitude, double longitude, const QString &label);
    void setStatus(std::optional<QString> message, bool isError);
    void setWorking(bool working);
    void setFields(const QString &latitude, const QString &longitude);

    QPointer<FlightStore> m_store;
    Geocoder *m_geocoder = nullptr;
    LocationOnce *m_locator = nullptr;
    QString m_address;
    QString m_latText;
    QString m_lonText;
    std::optional<HomeLocation> m_resolved;
    std::optional<QString> m_statusMessage;
    bool m_statusIsError = false;
    bool m_isWorking = false;
};
