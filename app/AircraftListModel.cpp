#include "AircraftListModel.h"

#include "PackedIndex.h"
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

// Which places of a fixed layout hold a row, and how many filled places come before a place: a Fenwick
// tree, so that both take a few steps.
class FilledPlaces
{
public:
    FilledPlaces(size_t size, const std::vector<size_t> &filledAtStart) : m_tree(size + 1, 0)
    {
        for (size_t place : filledAtStart)
            m_tree[place + 1] = 1;
        for (size_t node = 1; node <= size; ++node) {
            if (const size_t parent = node + (node & -node); parent <= size)
                m_tree[parent] += m_tree[node];
        }
    }

    void fill(size_t place) { add(place, 1); }
    void take(size_t place) { add(place, -1); }

    // The filled places before this one.
    [[nodiscard]] size_t before(size_t place) const
    {
        qsizetype count = 0;
        for (size_t node = place; node > 0; node -= node & -node)
            count += m_tree[node];
        return size_t(count);
    }

private:
    void add(size_t place, qsizetype change)
    {
        for (size_t node = place + 1; node < m_tree.size(); node += node & -node)
            m_tree[node] += change;
    }

    std::vector<qsizetype> m_tree;
};

// Moves rows [from, from + count) to just before row `before`. Rows are plain data, so a single row (the
// usual case) is shifted past the rows between in one memory move rather than swapped along.
template <typename Row> void shiftRows(std::vector<Row> &rows, size_t from, size_t count, size_t before)
{
    const auto first = rows.begin() + qsizetype(from);
    const auto last = first + qsizetype(count);
    const auto destination = rows.begin() + qsizetype(before);
    if (count != 1) {
        if (before > from)
            std::rotate(first, last, destination);
        else
            std::rotate(destination, first, last);
        return;
    }
    const Row moving = *first;
    if (before > from) {
        std::copy(last, destination, first);
        *(destination - 1) = moving;
    } else {
        std::copy_backward(destination, first, last);
        *destination = moving;
    }
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

    // 1. Old and new rows matched by address, the n-th repeat of an address on one side with the n-th on
    // the other. What finds no partner goes or is new.
    std::vector<qsizetype> laterRepeat(countBefore, -1); // old row -> the next old row of its address
    PackedIndex firstOldRow(countBefore);
    for (size_t row = countBefore; row-- > 0;)
        laterRepeat[row] = firstOldRow.exchange(m_rows[row].key, qsizetype(row));
    std::vector<quint64> newKeys(wantedCount);
    std::vector<qsizetype> oldRowOfTarget(wantedCount, -1);
    std::vector<bool> goes(countBefore, true);
    for (size_t target = 0; target < wantedCount; ++target) {
        const quint64 key = keyOf(rows[qsizetype(target)].hex());
        newKeys[target] = key;
        const qsizetype old = firstOldRow.find(key);
        if (old < 0)
            continue;
        oldRowOfTarget[target] = old;
        goes[size_t(old)] = false;
        firstOldRow.exchange(key, laterRepeat[size_t(old)]);
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
    // moved when it was there before, inserted when it is new. Where a row is at each step comes from a
    // fixed layout of places: the old rows in their order, and before each row that stays, a gap with one
    // place for each target that will come to rest there. Counting the filled places before a place
    // gives its row, in a few steps however far the rows move.
    const size_t oldCount = m_rows.size();
    std::vector<size_t> placeOfOld(oldCount);
    std::vector<size_t> placeOfTarget(wantedCount); // in its gap; only for targets that don't stay
    std::vector<qsizetype> anchorOf(wantedCount, -1); // the old row of the next target that stays, or -1
    {
        size_t place = 0, old = 0, target = 0;
        for (size_t next = 0; next <= wantedCount; ++next) {
            if (next < wantedCount && !stays[next])
                continue;
            const size_t anchor = next < wantedCount ? size_t(oldRowOfTarget[next]) : oldCount;
            while (old < anchor)
                placeOfOld[old++] = place++;
            for (; target < next; ++target) {
                placeOfTarget[target] = place++;
                anchorOf[target] = next < wantedCount ? qsizetype(anchor) : -1;
            }
            if (next < wantedCount) {
                placeOfOld[old++] = place++;
                target = next + 1;
            }
        }
    }
    FilledPlaces filled(oldCount + wantedCount, placeOfOld);
    for (size_t target = 0; target < wantedCount; ++target) {
        if (stays[target])
            continue;
        const size_t before = filled.before(placeOfTarget[target]);
        if (const qsizetype old = oldRowOfTarget[target]; old >= 0) {
            const size_t from = filled.before(placeOfOld[size_t(old)]);
            // Neighbours that go to the same place in the same order go as one block.
            size_t count = 1;
            while (target + count < wantedCount && !stays[target + count] && anchorOf[target + count] == anchorOf[target] &&
                   oldRowOfTarget[target + count] >= 0 &&
                   filled.before(placeOfOld[size_t(oldRowOfTarget[target + count])]) == from + count)
                ++count;
            const bool moves = before != from && before != from + count;
            if (moves)
                beginMoveRows({}, int(from), int(from + count - 1), {}, int(before));
            for (size_t k = 0; k < count; ++k) {
                filled.take(placeOfOld[size_t(oldRowOfTarget[target + k])]);
                filled.fill(placeOfTarget[target + k]);
            }
            if (moves) {
                shiftRows(m_rows, from, count, before);
                endMoveRows();
            }
            target += count - 1;
        } else {
            beginInsertRows({}, int(before), int(before));
            m_rows.insert(m_rows.begin() + qsizetype(before), Row{records + target, newKeys[target]});
            filled.fill(placeOfTarget[target]);
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
