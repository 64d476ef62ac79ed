#pragma once

#include <QMetaType>
#include <QString>
#include <QVariant>
#include <optional>

// The route flown under a callsign: airport codes (IATA when known, else ICAO) and their towns.
struct FlightRoute
{
    Q_GADGET
    Q_PROPERTY(QString originCode MEMBER originCode CONSTANT)
    Q_PROPERTY(QString destinationCode MEMBER destinationCode CONSTANT)
    Q_PROPERTY(QString summary READ summary CONSTANT)
    Q_PROPERTY(QVariant citySummary READ citySummaryVariant CONSTANT)

public:
    QString originCode;
    std::optional<QString> originCity;
    QString destinationCode;
    std::optional<QString> destinationCity;

    // "SEA → SFO"
    [[nodiscard]] QString summary() const { return originCode + u" → "_qs + destinationCode; }
    // "Seattle → San Francisco"; absent unless both towns are known (an empty one counts as known).
    [[nodiscard]] std::optional<QString> citySummary() const
    {
        if (!originCity || !destinationCity)
            return std::nullopt;
        return *originCity + u" → "_qs + *destinationCity;
    }

    bool operator==(const FlightRoute &) const = default;

private:
    [[nodiscard]] QVariant citySummaryVariant() const
    {
        const auto text = citySummary();
        return text ? QVariant(*text) : QVariant();
    }
};

Q_DECLARE_METATYPE(FlightRoute)
