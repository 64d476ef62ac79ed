#pragma once

#include "SimClock.h"
#include "SimulatedSky.h"
#include "SkyIndex.h"
#include "SkySimOptions.h"
#include "SourceBoard.h"
#include "UpdateOffer.h"

#include <QObject>
#include <QString>
#include <QStringList>
#include <memory>

class ControlModule;
class SkySimServer;

// The whole simulator: the clock, the sky, the sources' faults, the offered update, and a server with a
// module for each service (feeds, route, photo, stream, tiles, geocoder, update feed) and the control
// API. Further modules go into server().router() and may use the same sky, clock and sources.
class SkySimulator : public QObject
{
    Q_OBJECT

public:
    explicit SkySimulator(const SkySimOptions &options, QObject *parent = nullptr);
    ~SkySimulator() override;

    // Every source whose faults can be set, in the order the state lists them.
    [[nodiscard]] static QStringList sourceNames();

    // On 127.0.0.1; port 0 picks a free one. False with errorString() when it can't.
    bool listen(quint16 port);
    [[nodiscard]] quint16 port() const;
    [[nodiscard]] QString errorString() const;
    // "http://127.0.0.1:PORT", the base of every path.
    [[nodiscard]] QString baseUrl() const;
    // The shell lines that point Aerolume at this simulator.
    [[nodiscard]] QString environmentLines() const;

    [[nodiscard]] SkySimServer &server() { return *m_server; }
    [[nodiscard]] SimulatedSky &sky() { return m_sky; }
    [[nodiscard]] SimClock &clock() { return m_clock; }
    [[nodiscard]] SourceBoard &sources() { return m_sources; }
    [[nodiscard]] UpdateOffer &updateOffer() { return m_offer; }
    [[nodiscard]] ControlModule &control() { return *m_control; }

private:
    SimClock m_clock;
    SimulatedSky m_sky;
    SkyIndex m_index;
    SourceBoard m_sources;
    UpdateOffer m_offer;
    // Declared last so it goes first: its modules refer to the members above.
    std::unique_ptr<SkySimServer> m_server;
    ControlModule *m_control = nullptr;
};
