#include "AircraftListModel.h"

#include <QSet>

AircraftListModel::AircraftListModel(QObject *parent) : QAbstractListModel(parent) {}

int AircraftListModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(m_rows.size());
}

QVariant AircraftListModel::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid))
        return {};
    const Aircraft &aircraft = m_rows.at(index.row());
    switch (role) {
    case HexRole: return aircraft.hex();
    case AircraftRole: return QVariant::fromValue(aircraft);
    case Qt::DisplayRole:
    case DisplayNameRole: return aircraft.displayName();
    default: return {};
    }
}

QHash<int, QByteArray> AircraftListModel::roleNames() const
{
    return {{HexRole, "hex"}, {AircraftRole, "aircraft"}, {DisplayNameRole, "displayName"}};
}

int AircraftListModel::indexOf(const QString &hex) const
{
    for (qsizetype row = 0; row < m_rows.size(); ++row) {
        if (m_rows[row].hex() == hex)
            return int(row);
    }
    return -1;
}

QString AircraftListModel::hexAt(int row) const
{
    return row >= 0 && row < m_rows.size() ? m_rows[row].hex() : QString();
}

void AircraftListModel::update(const QList<Aircraft> &rows)
{
    const qsizetype countBefore = m_rows.size();

    // 1. Rows whose aircraft left go, in contiguous runs from the end so indexes stay valid.
    QSet<QString> wanted;
    wanted.reserve(rows.size());
    for (const Aircraft &aircraft : rows)
        wanted.insert(aircraft.hex());
    for (qsizetype row = m_rows.size() - 1; row >= 0;) {
        if (wanted.contains(m_rows[row].hex())) {
            --row;
            continue;
        }
        qsizetype first = row;
        while (first > 0 && !wanted.contains(m_rows[first - 1].hex()))
            --first;
        beginRemoveRows({}, int(first), int(row));
        m_rows.remove(first, row - first + 1);
        endRemoveRows();
        row = first - 1;
    }

    // 2. Walk the new order: a row already in place is updated, one further down is moved up, a new
    // aircraft is inserted. The nearest-first order changes little between refreshes, so the search for
    // a moved row is short.
    for (qsizetype target = 0; target < rows.size(); ++target) {
        const Aircraft &aircraft = rows[target];
        if (target < m_rows.size() && m_rows[target].hex() == aircraft.hex()) {
            if (!(m_rows[target] == aircraft)) {
                m_rows[target] = aircraft;
                const QModelIndex changed = index(int(target));
                emit dataChanged(changed, changed);
            }
            continue;
        }
        qsizetype found = -1;
        for (qsizetype row = target + 1; row < m_rows.size(); ++row) {
            if (m_rows[row].hex() == aircraft.hex()) {
                found = row;
                break;
            }
        }
        if (found >= 0) {
            beginMoveRows({}, int(found), int(found), {}, int(target));
            m_rows.move(found, target);
            endMoveRows();
            if (!(m_rows[target] == aircraft)) {
                m_rows[target] = aircraft;
                const QModelIndex changed = index(int(target));
                emit dataChanged(changed, changed);
            }
        } else {
            beginInsertRows({}, int(target), int(target));
            m_rows.insert(target, aircraft);
            endInsertRows();
        }
    }

    // Rows left over can only be repeats of an address the feed sent twice before.
    if (m_rows.size() > rows.size()) {
        beginRemoveRows({}, int(rows.size()), int(m_rows.size() - 1));
        m_rows.resize(rows.size());
        endRemoveRows();
    }

    if (m_rows.size() != countBefore)
        emit countChanged();
}
