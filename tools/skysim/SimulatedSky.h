#pragma once

#include "GeoPoint.h"
#include "SkyAircraft.h"

#include <QList>
#include <QtGlobal>
#include <optional>
#include <vector>

// The traffic model. A sky is made of areas; each area is a disc of `spread` nautical miles around a centre
// with `count` aircraft. The first area is centred on the fixed centre when one is given, else on the
// first point asked about. A query is served by the nearest area whose centre lies within `spread` of the
// queried point; a point farther from every centre gets a new area around itself, so any place on Earth
// has traffic. An area's traffic depends only on the seed, its centre and the time, never on the order
// of queries.
//
// Each of an area's aircraft flies a straight great-circle chord across the disc at constant speed and
// re-enters as a new flight (new address, callsign, type, chord bearing) when it leaves; some chords pass
// straight over the centre. Aircraft on the ground taxi on short segments. Aircraft of the same index are
// the same whatever the count, so changing the count adds or removes aircraft and leaves the others be.
class SimulatedSky
{
public:
    static constexpr int maxCount = 5000;
    static constexpr int maxAreas = 64;

    SimulatedSky(quint64 seed, int count, double spreadNM, std::optional<GeoPoint> fixedCentre);

    // Every aircraft of the area that serves the point, `seconds` after the start of the simulation.
    [[nodiscard]] QList<SkyAircraft> aircraftAround(GeoPoint point, double seconds);
    // Every aircraft of every area made so far, area by area; makes no area. What the lookup services
    // know of: the traffic that the feeds have shown.
    [[nodiscard]] QList<SkyAircraft> everyAircraft(double seconds) const;

    [[nodiscard]] quint64 seed() const { return m_seed; }
    [[nodiscard]] int count() const { return m_count; }
    [[nodiscard]] double spreadNM() const { return m_spreadNM; }
    [[nodiscard]] QList<GeoPoint> areaCentres() const;
    // Goes up whenever the areas or the count change, so that a copy of the traffic can tell it is old.
    [[nodiscard]] quint64 generation() const { return m_generation; }

    // Clamped to [0, maxCount].
    void setCount(int count);
    // Drops every area but the fixed one, so that the next query centres a new one.
    void forgetAreas();

private:
    enum class SpeedClass
    {
        Helicopter,
        Light,
        Jet,
        MilitaryJet,
        MilitaryHelicopter
    };
    enum class Vertical
    {
        Level,
        Climb,
        Descent
    };

    struct Slot
    {
        SpeedClass speedClass = SpeedClass::Jet;
        Vertical vertical = Vertical::Level;
        bool onGround = false;
        double offsetNM = 0.0; // of the chord from the centre; 0 passes overhead
        double lengthNM = 1.0;
        double speedKnots = 0.0;
        double phaseNM = 0.0;
        GeoPoint taxiCentre; // on the ground: the middle of the taxi segment
    };

    struct Area
    {
        GeoPoint centre;
        quint64 seed = 0;
        std::vector<Slot> lanes; // one per aircraft index
    };

    [[nodiscard]] Area makeArea(GeoPoint centre) const;
    void fillSlots(Area &area) const;
    [[nodiscard]] Slot makeSlot(const Area &area, int index) const;
    [[nodiscard]] QList<SkyAircraft> observeArea(const Area &area, double seconds) const;
    [[nodiscard]] SkyAircraft observe(const Area &area, const Slot &slot, int index, double seconds) const;
    [[nodiscard]] Area &areaFor(GeoPoint point);

    quint64 m_seed;
    int m_count;
    double m_spreadNM;
    std::optional<GeoPoint> m_fixedCentre;
    QList<Area> m_areas;
    quint64 m_generation = 0;
};
