#include "SimClock.h"

SimClock::SimClock(qint64 startEpochMs, bool frozen)
    : m_startMs(startEpochMs), m_startFrozen(frozen), m_frozen(frozen)
{
    m_running.start();
}

qint64 SimClock::elapsedMs() const
{
    return m_bankedMs + (m_frozen ? 0 : m_running.elapsed());
}

void SimClock::setFrozen(bool frozen)
{
    if (frozen == m_frozen)
        return;
    if (frozen)
        m_bankedMs += m_running.elapsed();
    else
        m_running.restart();
    m_frozen = frozen;
}

void SimClock::advance(qint64 milliseconds)
{
    if (milliseconds > 0)
        m_bankedMs += milliseconds;
}

void SimClock::reset()
{
    m_bankedMs = 0;
    m_frozen = m_startFrozen;
    m_running.restart();
}
