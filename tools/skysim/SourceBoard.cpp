#include "SourceBoard.h"

void SourceBoard::addSource(const QString &name, const FaultPlan &startFault)
{
    if (!m_entries.contains(name))
        m_order.append(name);
    m_entries.insert(name, Entry{startFault, startFault, 0, QString()});
}

FaultPlan SourceBoard::fault(const QString &name) const
{
    return m_entries.value(name).fault;
}

bool SourceBoard::setFault(const QString &name, const FaultPlan &fault)
{
    const auto it = m_entries.find(name);
    if (it == m_entries.end())
        return false;
    it->fault = fault;
    return true;
}

void SourceBoard::noteRequest(const QString &name, const QString &target)
{
    const auto it = m_entries.find(name);
    if (it == m_entries.end())
        return;
    ++it->requests;
    it->lastTarget = target;
}

int SourceBoard::requestCount(const QString &name) const
{
    return m_entries.value(name).requests;
}

QString SourceBoard::lastTarget(const QString &name) const
{
    return m_entries.value(name).lastTarget;
}

void SourceBoard::reset()
{
    for (Entry &entry : m_entries) {
        entry.fault = entry.startFault;
        entry.requests = 0;
        entry.lastTarget.clear();
    }
}
