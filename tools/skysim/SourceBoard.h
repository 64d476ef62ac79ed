#pragma once

#include "FaultPlan.h"

#include <QHash>
#include <QString>
#include <QStringList>

// The named sources the simulator serves ("primary", "fallback", and whatever later modules add): the
// fault each one is set to, and what was asked of it, which tests read through the control API.
class SourceBoard
{
public:
    // The fault given at start is the one reset() goes back to.
    void addSource(const QString &name, const FaultPlan &startFault = FaultPlan());

    [[nodiscard]] QStringList sources() const { return m_order; }
    [[nodiscard]] bool contains(const QString &name) const { return m_entries.contains(name); }

    [[nodiscard]] FaultPlan fault(const QString &name) const;
    // False for an unknown source.
    bool setFault(const QString &name, const FaultPlan &fault);

    void noteRequest(const QString &name, const QString &target);
    [[nodiscard]] int requestCount(const QString &name) const;
    [[nodiscard]] QString lastTarget(const QString &name) const;

    // Start faults back, counts to zero.
    void reset();

private:
    struct Entry
    {
        FaultPlan startFault;
        FaultPlan fault;
        int requests = 0;
        QString lastTarget;
    };

    QStringList m_order;
    QHash<QString, Entry> m_entries;
};
