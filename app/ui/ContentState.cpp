#include "ContentState.h"

#include "FlightStore.h"

#include <QLocale>

ContentState::ContentState(QObject *parent) : QObject(parent) {}

void ContentState::setStore(FlightStore *store)
{
    if (store == m_store)
        return;
    if (m_store)
        m_store->disconnect(this);
    m_store = store;
    if (m_store) {
        for (auto signal : {&FlightStore::aircraftChanged, &FlightStore::radiusNMChanged, &FlightStore::isPausedChanged,
                            &FlightStore::lastUpdatedChanged})
            connect(m_store, signal, this, &ContentState::subtitleChanged);
    }
    emit storeChanged();
    emit subtitleChanged();
}

QString ContentState::subtitle() const
{
    if (!m_store)
        return {};
    // All aircraft in range, not only those a filter lets through.
    QStringList parts{u"%1 aircraft within %2 nm"_qs.arg(m_store->aircraft().size()).arg(qint64(m_store->radiusNM()))};
    if (m_store->isPaused())
        parts.append(u"paused"_qs);
    else if (m_store->lastUpdated())
        parts.append(u"updated "_qs + QLocale().toString(m_store->lastUpdated()->toLocalTime().time(), QLocale::ShortFormat));
    return parts.join(u" · "_qs);
}

