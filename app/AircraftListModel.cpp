#include "AircraftListModel.h"

#include "PackedText.h"

#include <algorithm>
#include <utility>

AircraftListModel::AircraftListModel(QObject *parent) : QAbstractListModel(parent) {}

int AircraftListModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(m_rows.size());
}

QVariant AircraftListModel::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid))
        return {};
    const Aircraft &aircraft = *m_rows[size_t(index.row())].aircraft;
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

QList<Aircraft> AircraftListModel::rows() const
{
    QList<Aircraft> copy;
    copy.reserve(qsizetype(m_rows.size()));
    for (const Row &row : m_rows)
        copy.append(*row.aircraft);
    return copy;
}

int AircraftListModel::indexOf(const QString &hex) const
{
    for (size_t row = 0; row < m_rows.size(); ++row) {
        if (m_rows[row].aircraft->hex() == hex)
            return int(row);
    }
    return -1;
}

QString AircraftListModel::hexAt(int row) const
{
    return row >= 0 && size_t(row) < m_rows.size() ? m_rows[size_t(row)].aircraft->hex() : QString();
}

quint64 AircraftListModel::keyOf(const QString &hex)
{
    if (const auto packed = PackedText::address(hex))
        return *packed;
    const auto known = m_otherKeys.constFind(hex);
    if (known != m_otherKeys.cend())
        return *known;
    const quint64 key = PackedText::addressLimit + quint64(m_otherKeys.size());
    m_otherKeys.insert(hex, key);
    return key;
}

namespace {

struct Keyed
{
    quint64 key;
    qsizetype index;
    friend bool operator<(const Keyed &a, const Keyed &b) { return a.key != b.key ? a.key < b.key : a.index < b.index; }
};

// Marks the longest run of targets whose old rows are already in increasing order: those rows stay where
// they are, and only the others move. One aircraft that drops from the top of the list to the bottom is
// then one move, not a move of every row it passes.
std::vector<bool> rowsThatStay(const std::vector<qsizetype> &oldRowOfTarget)
{
    const size_t count = oldRowOfTarget.size();
    std::vector<size_t> tails;              // targets ending the best run of each length
    std::vector<qsizetype> previous(count, -1);
    for (size_t target = 0; target < count; ++target) {
        const qsizetype old = oldRowOfTarget[target];
        if (old < 0)
            continue;
        const auto place = std::lower_bound(tails.begin(), tails.end(), old,
                                            [&](size_t tail, qsizetype value) { return oldRowOfTarget[tail] < value; });
        if (place != tails.begin())
            previous[target] = qsizetype(*(place - 1));
        if (place == tails.end())
            tails.push_back(target);
        else
            *place = target;
    }
    std::vector<bool> stays(count, false);
    for (qsizetype target = tails.empty() ? -1 : qsizetype(tails.back()); target >= 0; target = previous[size_t(target)])
        stays[size_t(target)] = true;
    return stays;
}

// Nearly every aircraft has moved since the last refresh: the position tells most records apart before
// their texts are compared.
bool recordsDiffer(const Aircraft &before, const Aircraft &after)
{
    if (before.lat() != after.lat() || before.lon() != after.lon())
        return true;
    return !(before == after);
}

} // namespace

void AircraftListModel::update(const QList<Aircraft> &rows)
{
    // Both lists stay alive to the end: rows point into the old one until they are pointed at the new.
    const QList<Aircraft> next = rows;
    const QList<Aircraft> previous = std::exchange(m_list, next);
    const Aircraft *const records = next.constData();
    const size_t countBefore = m_rows.size();
    const size_t wantedCount = size_t(rows.size());

    // 1. Old and new rows matched by address: both sides sorted by address and then by position, so the
    // n-th repeat of an address on one side meets the n-th on the other. What finds no partner goes or
    // is new.
    std::vector<quint64> newKeys(wantedCount);
    std::vector<Keyed> newSorted(wantedCount);
    for (size_t target = 0; target < wantedCount; ++target) {
        newKeys[target] = keyOf(rows[qsizetype(target)].hex());
        newSorted[target] = {newKeys[target], qsizetype(target)};
    }
    std::vector<Keyed> oldSorted(countBefore);
    for (size_t row = 0; row < countBefore; ++row)
        oldSorted[row] = {m_rows[row].key, qsizetype(row)};
    std::sort(newSorted.begin(), newSorted.end());
    std::sort(oldSorted.begin(), oldSorted.end());
    std::vector<qsizetype> oldRowOfTarget(wantedCount, -1);
    std::vector<bool> goes(countBefore, true);
    for (size_t i = 0, j = 0; i < countBefore && j < wantedCount;) {
        if (oldSorted[i].key < newSorted[j].key) {
            ++i;
        } else if (newSorted[j].key < oldSorted[i].key) {
            ++j;
        } else {
            oldRowOfTarget[size_t(newSorted[j].index)] = oldSorted[i].index;
            goes[size_t(oldSorted[i].index)] = false;
            ++i;
            ++j;
        }
    }

    // 2. Rows without a partner go, in contiguous runs from the end so indexes stay valid; the partners'
    // rows are renumbered to match.
    for (size_t end = countBefore; end > 0;) {
        if (!goes[end - 1]) {
            --end;
            continue;
        }
        size_t first = end - 1;
        while (first > 0 && goes[first - 1])
            --first;
        beginRemoveRows({}, int(first), int(end - 1));
        m_rows.erase(m_rows.begin() + qsizetype(first), m_rows.begin() + qsizetype(end));
        endRemoveRows();
        end = first;
    }
    {
        std::vector<qsizetype> rowAfterRemoval(countBefore, -1);
        qsizetype kept = 0;
        for (size_t row = 0; row < countBefore; ++row) {
            if (!goes[row])
                rowAfterRemoval[row] = kept++;
        }
        for (qsizetype &old : oldRowOfTarget) {
            if (old >= 0)
                old = rowAfterRemoval[size_t(old)];
        }
    }
    const std::vector<bool> stays = rowsThatStay(oldRowOfTarget);

    // 3. Every other row goes just before the next row that stays (or to the end), in the new order:
    // moved when it was there before, inserted when it is new. A refresh shuffles neighbours, so many rows
    // move a short way; where each old row is now is kept up to date over the span a step touched.
    const size_t oldCount = m_rows.size();
    std::vector<qsizetype> idAt(oldCount);     // current row -> old row, -1 for a new one
    std::vector<size_t> rowOfId(oldCount);     // old row -> current row
    for (size_t row = 0; row < oldCount; ++row) {
        idAt[row] = qsizetype(row);
        rowOfId[row] = row;
    }
    const auto renumber = [&](size_t from, size_t to) {
        for (size_t row = from; row < to; ++row) {
            if (idAt[row] >= 0)
                rowOfId[size_t(idAt[row])] = row;
        }
    };
    qsizetype anchor = -1;
    std::vector<qsizetype> anchorOf(wantedCount, -1);
    for (size_t target = wantedCount; target-- > 0;) {
        anchorOf[target] = anchor;
        if (stays[target])
            anchor = oldRowOfTarget[target];
    }
    for (size_t target = 0; target < wantedCount; ++target) {
        if (stays[target])
            continue;
        const size_t before = anchorOf[target] >= 0 ? rowOfId[size_t(anchorOf[target])] : m_rows.size();
        if (const qsizetype old = oldRowOfTarget[target]; old >= 0) {
            const size_t from = rowOfId[size_t(old)];
            // Neighbours that go to the same place in the same order go as one block.
            size_t count = 1;
            while (target + count < wantedCount && !stays[target + count] && anchorOf[target + count] == anchorOf[target] &&
                   oldRowOfTarget[target + count] >= 0 &&
                   rowOfId[size_t(oldRowOfTarget[target + count])] == from + count)
                ++count;
            target += count - 1;
            if (from + count == before)
                continue;
            beginMoveRows({}, int(from), int(from + count - 1), {}, int(before));
            const size_t low = std::min(from, before);
            const size_t high = std::max(from + count, before);
            const size_t middle = from < before ? from + count : from;
            std::rotate(m_rows.begin() + qsizetype(low), m_rows.begin() + qsizetype(middle),
                        m_rows.begin() + qsizetype(high));
            std::rotate(idAt.begin() + qsizetype(low), idAt.begin() + qsizetype(middle), idAt.begin() + qsizetype(high));
            renumber(low, high);
            endMoveRows();
        } else {
            beginInsertRows({}, int(before), int(before));
            m_rows.insert(m_rows.begin() + qsizetype(before), Row{records + target, newKeys[target]});
            idAt.insert(idAt.begin() + qsizetype(before), -1);
            renumber(before, idAt.size());
            endInsertRows();
        }
    }

    // 4. The rows are in the new order: each is pointed at its new record, and those whose record
    // differs are told so.
    for (size_t row = 0; row < wantedCount; ++row) {
        const Aircraft *record = records + row;
        if (m_rows[row].aircraft == record)
            continue;
        const bool differs = recordsDiffer(*m_rows[row].aircraft, *record);
        m_rows[row].aircraft = record;
        if (differs) {
            const QModelIndex changed = index(int(row));
            emit dataChanged(changed, changed);
        }
    }

    if (m_rows.size() != countBefore)
        emit countChanged();
}
