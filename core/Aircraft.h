#pragma once

#include "Decoded.h"

#include <QByteArray>
#include <QLocale>
#include <QMetaType>
#include <QSet>
#include <QString>
#include <QVariant>
#include <optional>

class FeedDecoder;

// One row of a feed answer. Records with content are made only by decoding feed JSON; the default
// constructor gives the empty record that QML value types need, which nothing shows.
class Aircraft
{
    Q_GADGET
    Q_PROPERTY(QString id READ id CONSTANT)
    Q_PROPERTY(QString hex READ hex CONSTANT)
    Q_PROPERTY(bool isEmpty READ isEmpty CONSTANT)
    Q_PROPERTY(QVariant flight READ flightVariant CONSTANT)
    Q_PROPERTY(QVariant registration READ registrationVariant CONSTANT)
    Q_PROPERTY(QVariant typeCode READ typeCodeVariant CONSTANT)
    Q_PROPERTY(QVariant squawk READ squawkVariant CONSTANT)
    Q_PROPERTY(QVariant category READ categoryVariant CONSTANT)
    Q_PROPERTY(QVariant lat READ latVariant CONSTANT)
    Q_PROPERTY(QVariant lon READ lonVariant CONSTANT)
    Q_PROPERTY(QVariant track READ trackVariant CONSTANT)
    Q_PROPERTY(QVariant groundSpeed READ groundSpeedVariant CONSTANT)
    Q_PROPERTY(QVariant distanceNM READ distanceNMVariant CONSTANT)
    Q_PROPERTY(QVariant directionDeg READ directionDegVariant CONSTANT)
    Q_PROPERTY(QString displayName READ displayName CONSTANT)
    Q_PROPERTY(QVariant coordinate READ coordinateVariant CONSTANT)
    Q_PROPERTY(bool isOnGround READ isOnGround CONSTANT)
    Q_PROPERTY(QVariant altitudeFeet READ altitudeFeetVariant CONSTANT)
    Q_PROPERTY(QString altitudeText READ altitudeText CONSTANT)
    Q_PROPERTY(QString speedText READ speedText CONSTANT)
    Q_PROPERTY(QVariant verticalRate READ verticalRateVariant CONSTANT)
    Q_PROPERTY(QVariant verticalText READ verticalTextVariant CONSTANT)
    Q_PROPERTY(bool isEmergency READ isEmergency CONSTANT)
    Q_PROPERTY(bool isMilitary READ isMilitary CONSTANT)
    Q_PROPERTY(QVariant distanceMiles READ distanceMilesVariant CONSTANT)
    Q_PROPERTY(QVariant typeName READ typeNameVariant CONSTANT)
    Q_PROPERTY(QVariant operatorDisplayName READ operatorDisplayNameVariant CONSTANT)
    Q_PROPERTY(bool isHelicopter READ isHelicopter CONSTANT)
    Q_PROPERTY(QVariant lookDirection READ lookDirectionVariant CONSTANT)

public:
    // Barometric altitude: a number of feet (possibly negative) or "on the ground".
    class Altitude
    {
    public:
        [[nodiscard]] static Altitude feet(qint64 value) { return Altitude(false, value); }
        [[nodiscard]] static Altitude ground() { return Altitude(true, 0); }

        [[nodiscard]] bool isGround() const { return m_ground; }
        // The number of feet; absent on the ground.
        [[nodiscard]] std::optional<qint64> feetValue() const
        {
            return m_ground ? std::nullopt : std::optional<qint64>(m_feet);
        }

        bool operator==(const Altitude &) const = default;

    private:
        Altitude(bool ground, qint64 feet) : m_ground(ground), m_feet(feet) {}
        bool m_ground;
        qint64 m_feet;
    };

    struct Coordinate
    {
        double latitude;
        double longitude;
        bool operator==(const Coordinate &) const = default;
    };

    // The emitter category feeds give to rotorcraft.
    static constexpr QStringView helicopterCategory = u"A7";

    Aircraft() = default;

    // Decodes one feed row, a JSON object. Fails on a wrong type or a number that doesn't fit its field.
    [[nodiscard]] static Decoded<Aircraft> decode(const QByteArray &json);

    bool operator==(const Aircraft &) const = default;

    // The 22 fields, as sent.
    [[nodiscard]] const QString &hex() const { return m_hex; }
    [[nodiscard]] const std::optional<QString> &flight() const { return m_flight; }
    [[nodiscard]] const std::optional<QString> &registration() const { return m_registration; }
    [[nodiscard]] const std::optional<QString> &typeCode() const { return m_typeCode; }
    [[nodiscard]] const std::optional<QString> &typeDescription() const { return m_typeDescription; }
    [[nodiscard]] const std::optional<QString> &operatorName() const { return m_operatorName; }
    [[nodiscard]] const std::optional<Altitude> &altBaro() const { return m_altBaro; }
    [[nodiscard]] std::optional<qint64> altGeom() const { return m_altGeom; }
    [[nodiscard]] std::optional<double> groundSpeed() const { return m_groundSpeed; }
    [[nodiscard]] std::optional<double> track() const { return m_track; }
    [[nodiscard]] std::optional<qint64> baroRate() const { return m_baroRate; }
    [[nodiscard]] std::optional<qint64> geomRate() const { return m_geomRate; }
    [[nodiscard]] const std::optional<QString> &squawk() const { return m_squawk; }
    [[nodiscard]] const std::optional<QString> &emergency() const { return m_emergency; }
    [[nodiscard]] const std::optional<QString> &category() const { return m_category; }
    [[nodiscard]] std::optional<double> lat() const { return m_lat; }
    [[nodiscard]] std::optional<double> lon() const { return m_lon; }
    [[nodiscard]] std::optional<double> seen() const { return m_seen; }
    [[nodiscard]] std::optional<double> seenPos() const { return m_seenPos; }
    [[nodiscard]] std::optional<qint64> dbFlags() const { return m_dbFlags; }
    [[nodiscard]] std::optional<double> distanceNM() const { return m_distanceNM; }
    [[nodiscard]] std::optional<double> directionDeg() const { return m_directionDeg; }

    // Identity: the transponder address exactly as sent.
    [[nodiscard]] const QString &id() const { return m_hex; }
    [[nodiscard]] bool isEmpty() const { return m_hex.isEmpty(); }

    // Presentation. Number grouping follows the given locale, the user's by default.
    [[nodiscard]] QString displayName() const;
    [[nodiscard]] std::optional<Coordinate> coordinate() const;
    [[nodiscard]] bool isOnGround() const;
    [[nodiscard]] std::optional<qint64> altitudeFeet() const;
    [[nodiscard]] QString altitudeText(const QLocale &locale = QLocale()) const;
    [[nodiscard]] QString speedText() const;
    [[nodiscard]] std::optional<qint64> verticalRate() const;
    [[nodiscard]] std::optional<QString> verticalText(const QLocale &locale = QLocale()) const;
    [[nodiscard]] bool isEmergency() const;
    [[nodiscard]] bool isMilitary() const;
    [[nodiscard]] std::optional<double> distanceMiles() const;
    [[nodiscard]] std::optional<QString> typeName() const;
    [[nodiscard]] std::optional<QString> operatorDisplayName() const;
    [[nodiscard]] bool isHelicopter() const;
    [[nodiscard]] std::optional<QString> lookDirection() const;
    // unit is the distanceUnit setting: "nm", "km", anything else miles. A point as decimal mark always.
    [[nodiscard]] std::optional<QString> distanceText(const QString &unit, bool compact) const;
    // For QML: the same text, undefined where absent.
    Q_INVOKABLE QVariant distanceTextFor(const QString &unit, bool compact) const;
    // What a screen reader says of the aircraft, on the map and in the list alike: displayName,
    // altitudeText, the distance if known, then "emergency" and "military" as they apply.
    [[nodiscard]] QString accessibilityText(const QString &distanceUnit) const;

    // The 16-point compass name of a bearing in degrees.
    [[nodiscard]] static QString compassPoint(double bearingDegrees);

    // Upper-case type designators of rotorcraft.
    [[nodiscard]] static const QSet<QString> &helicopterTypes();

private:
    friend class FeedDecoder;

    [[nodiscard]] QVariant flightVariant() const;
    [[nodiscard]] QVariant registrationVariant() const;
    [[nodiscard]] QVariant typeCodeVariant() const;
    [[nodiscard]] QVariant squawkVariant() const;
    [[nodiscard]] QVariant categoryVariant() const;
    [[nodiscard]] QVariant latVariant() const;
    [[nodiscard]] QVariant lonVariant() const;
    [[nodiscard]] QVariant trackVariant() const;
    [[nodiscard]] QVariant groundSpeedVariant() const;
    [[nodiscard]] QVariant distanceNMVariant() const;
    [[nodiscard]] QVariant directionDegVariant() const;
    [[nodiscard]] QVariant coordinateVariant() const;
    [[nodiscard]] QVariant altitudeFeetVariant() const;
    [[nodiscard]] QVariant verticalRateVariant() const;
    [[nodiscard]] QVariant verticalTextVariant() const;
    [[nodiscard]] QVariant distanceMilesVariant() const;
    [[nodiscard]] QVariant typeNameVariant() const;
    [[nodiscard]] QVariant operatorDisplayNameVariant() const;
    [[nodiscard]] QVariant lookDirectionVariant() const;

    // Fields in the order a row is read.
    QString m_hex;
    std::optional<QString> m_flight;
    std::optional<QString> m_squawk;
    std::optional<QString> m_emergency;
    std::optional<QString> m_category;
    std::optional<double> m_lat;
    std::optional<double> m_lon;
    std::optional<double> m_seen;
    std::optional<double> m_track;
    std::optional<qint64> m_dbFlags;
    std::optional<QString> m_registration;
    std::optional<QString> m_typeCode;
    std::optional<QString> m_typeDescription;
    std::optional<QString> m_operatorName;
    std::optional<Altitude> m_altBaro;
    std::optional<qint64> m_altGeom;
    std::optional<double> m_groundSpeed;
    std::optional<qint64> m_baroRate;
    std::optional<qint64> m_geomRate;
    std::optional<double> m_seenPos;
    std::optional<double> m_distanceNM;
    std::optional<double> m_directionDeg;
};

// Records move in lists as plain bytes: every member is relocatable.
Q_DECLARE_TYPEINFO(Aircraft, Q_RELOCATABLE_TYPE);
Q_DECLARE_METATYPE(Aircraft)
