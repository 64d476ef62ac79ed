#pragma once

#include <QElapsedTimer>
#include <QtGlobal>

// The simulator's time. It starts at a given instant and then follows the wall clock, unless frozen;
// either way it can be pushed forward, so tests move the sky without waiting.
class SimClock
{
public:
    SimClock(qint64 startEpochMs, bool frozen);

    // Milliseconds since 1970, as the feeds' "now".
    [[nodiscard]] qint64 nowMs() const { return m_startMs + elapsedMs(); }
    // Simulated time since the start.
    [[nodiscard]] qint64 elapsedMs() const;
    [[nodiscard]] double elapsedSeconds() const { return double(elapsedMs()) / 1000.0; }
    [[nodiscard]] qint64 startMs() const { return m_startMs; }
    [[nodiscard]] bool isFrozen() const { return m_frozen; }

    void setFrozen(bool frozen);
    // Moves time forward; negative amounts are ignored, time never runs back except by reset().
    void advance(qint64 milliseconds);
    // Back to the start instant, frozen or running as at the start.
    void reset();

private:
    qint64 m_startMs;
    bool m_startFrozen;
    bool m_frozen;
    qint64 m_bankedMs = 0; // time that passed while running before the last freeze, plus advances
    QElapsedTimer m_running;
};
