#pragma once

#include "Aircraft.h"
#include "HomeLocation.h"
#include "ScopePalette.h"

#include <QDateTime>
#include <QList>
#include <QMetaType>
#include <QString>
#include <QVariant>
#include <optional>

// One snapshot of the sky as a widget draws it: the aircraft nearest first, the scope's radius, home,
// and how to show distances and colours. Faces are drawn from it and from nothing else.
class SkyEntry
{
    Q_GADGET
    Q_PROPERTY(QDateTime date READ date CONSTANT)
    Q_PROPERTY(QVariantList aircraft READ aircraftList CONSTANT)
    Q_PROPERTY(int count READ count CONSTANT)
    Q_PROPERTY(Aircraft nearest READ nearest CONSTANT)
    Q_PROPERTY(double radiusNM READ radiusNM CONSTANT)
    Q_PROPERTY(bool hasHome READ hasHome CONSTANT)
    Q_PROPERTY(HomeLocation home READ homeOrEmpty CONSTANT)
    Q_PROPERTY(bool isSample READ isSample CONSTANT)
    Q_PROPERTY(QString unit READ unit CONSTANT)
    Q_PROPERTY(QVariant accentHex READ accentHexVariant CONSTANT)
    Q_PROPERTY(ScopePalette palette READ palette CONSTANT)
    Q_PROPERTY(bool needsSetup READ needsSetup CONSTANT)

public:
    static constexpr double sampleRadiusNM = 25;

    // An empty sky without home: what a widget shows before it knows anything.
    SkyEntry() = default;
    SkyEntry(QDateTime date, QList<Aircraft> aircraft, double radiusNM, std::optional<HomeLocation> home,
             bool isSample, QString unit, std::optional<QString> accentHex);

    // Five made-up aircraft around a made-up home, for previews and for a widget that has nothing yet.
    // The last one is military and so shows gold.
    [[nodiscard]] static SkyEntry sample(const std::optional<QString> &accentHex,
                                         const QDateTime &now = QDateTime::currentDateTime());
    // The rows of the sample as feed JSON, decoded like any feed answer.
    [[nodiscard]] static QList<Aircraft> sampleAircraft();

    [[nodiscard]] const QDateTime &date() const { return m_date; }
    // Nearest first: faces show the first ones and call the first one the nearest.
    [[nodiscard]] const QList<Aircraft> &aircraft() const { return m_aircraft; }
    [[nodiscard]] int count() const { return int(m_aircraft.size()); }
    // The nearest aircraft, or an empty record when there is none.
    [[nodiscard]] Aircraft nearest() const { return m_aircraft.isEmpty() ? Aircraft() : m_aircraft.first(); }
    [[nodiscard]] double radiusNM() const { return m_radiusNM; }
    [[nodiscard]] const std::optional<HomeLocation> &home() const { return m_home; }
    [[nodiscard]] bool hasHome() const { return m_home.has_value(); }
    [[nodiscard]] bool isSample() const { return m_isSample; }
    [[nodiscard]] const QString &unit() const { return m_unit; }
    [[nodiscard]] const std::optional<QString> &accentHex() const { return m_accentHex; }
    [[nodiscard]] ScopePalette palette() const { return ScopePalette::fromHex(m_accentHex); }
    // Without home there is nothing to show but the prompt to set one; a sample needs no home.
    [[nodiscard]] bool needsSetup() const { return !m_home && !m_isSample; }

    bool operator==(const SkyEntry &) const = default;

private:
    [[nodiscard]] QVariantList aircraftList() const;
    [[nodiscard]] HomeLocation homeOrEmpty() const { return m_home.value_or(HomeLocation()); }
    [[nodiscard]] QVariant accentHexVariant() const;

    QDateTime m_date;
    QList<Aircraft> m_aircraft;
    double m_radiusNM = 0;
    std::optional<HomeLocation> m_home;
    bool m_isSample = false;
    QString m_unit = u"mi"_qs;
    std::optional<QString> m_accentHex;
};

Q_DECLARE_METATYPE(SkyEntry)
