#pragma once

#include "SimClock.h"
#include "SimulatedSky.h"
#include "SkySimOptions.h"
#include "SourceBoard.h"

#include <QObject>
#include <QString>
#include <memory>

class ControlModule;
class FeedModule;
class SkySimServer;

// The whole simulator: the clock, the sky, the sources' faults, and a server with the feed and control
// modules. Further modules go into server().router() and may use the same sky, clock and sources.
class SkySimulator : public QObject
{
    Q_OBJECT

public:
    explicit SkySimulator(const SkySimOptions &options, QObject *parent = nullptr);
    ~SkySimulator() override;

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
    [[nodiscard]] ControlModule &control() { return *m_control; }

private:
    SimClock m_clock;
    SimulatedSky m_sky;
    SourceBoard m_sources;
    // Declared last so it goes first: its modules refer to the members above.
    std::unique_ptr<SkySimServer> m_server;
    ControlModule *m_control = nullptr;
};
