#include "AircraftListModel.h"

#include <QAbstractItemModelTester>
#include <QPersistentModelIndex>
#include <QRandomGenerator>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTest>

namespace {

// One row as the feed would send it; `version` stands for everything else about the aircraft.
Aircraft record(const QString &hex, int version)
{
    const QByteArray json = "{\"hex\":\"" + hex.toUtf8() + "\",\"gs\":" + QByteArray::number(version) +
                            ",\"flight\":\"F" + hex.toUpper().toUtf8() + "\"}";
    auto decoded = Aircraft::decode(json);
    if (!decoded.ok())
        qFatal("%s", qPrintable(decoded.error()));
    return std::move(decoded).value();
}

// "a b c*": the rows in order, a star marking a record that differs from the one before.
QList<Aircraft> rowsOf(const QString &text)
{
    QList<Aircraft> rows;
    for (QString token : text.split(u' ', Qt::SkipEmptyParts)) {
        const bool changed = token.endsWith(u'*');
        if (changed)
            token.chop(1);
        rows.append(record(token, changed ? 2 : 1));
    }
    return rows;
}

QStringList hexesOf(const QList<Aircraft> &rows)
{
    QStringList hexes;
    for (const Aircraft &aircraft : rows)
        hexes.append(aircraft.hex());
    return hexes;
}

// Follows the model through its signals alone, as a view does, and writes down what it was told.
class Mirror
{
public:
    explicit Mirror(AircraftListModel &model) : m_model(model)
    {
        for (int row = 0; row < model.rowCount(); ++row)
            m_hexes.append(hexAt(row));
        QObject::connect(&model, &QAbstractItemModel::rowsInserted, &m_context,
                         [this](const QModelIndex &, int first, int last) {
                             for (int row = first; row <= last; ++row)
                                 m_hexes.insert(row, hexAt(row));
                             m_inserted += last - first + 1;
                         });
        QObject::connect(&model, &QAbstractItemModel::rowsRemoved, &m_context,
                         [this](const QModelIndex &, int first, int last) {
                             m_hexes.remove(first, last - first + 1);
                             m_removed += last - first + 1;
                         });
        QObject::connect(
            &model, &QAbstractItemModel::rowsMoved, &m_context,
            [this](const QModelIndex &, int first, int last, const QModelIndex &, int destination) {
                const QStringList block = m_hexes.mid(first, last - first + 1);
                m_hexes.remove(first, block.size());
                const int at = destination > last ? destination - int(block.size()) : destination;
                for (qsizetype i = 0; i < block.size(); ++i)
                    m_hexes.insert(at + i, block[i]);
                ++m_moves;
                m_movedRows += int(block.size());
            });
        QObject::connect(&model, &QAbstractItemModel::dataChanged, &m_context,
                         [this](const QModelIndex &topLeft, const QModelIndex &bottomRight) {
                             for (int row = topLeft.row(); row <= bottomRight.row(); ++row) {
                                 // A change in place never changes whose row it is.
                                 if (m_hexes.value(row) != hexAt(row))
                                     m_identityBroken = true;
                                 m_changed.append(hexAt(row));
                             }
                         });
        QObject::connect(&model, &QAbstractItemModel::modelReset, &m_context, [this] { m_reset = true; });
        QObject::connect(&model, &QAbstractItemModel::layoutChanged, &m_context, [this] { m_reset = true; });
    }

    [[nodiscard]] const QStringList &hexes() const { return m_hexes; }
    [[nodiscard]] QStringList changed() const
    {
        QStringList sorted = m_changed;
        sorted.sort();
        return sorted;
    }
    [[nodiscard]] int inserted() const { return m_inserted; }
    [[nodiscard]] int removed() const { return m_removed; }
    [[nodiscard]] int moves() const { return m_moves; }
    [[nodiscard]] int movedRows() const { return m_movedRows; }
    [[nodiscard]] bool wasReset() const { return m_reset; }
    [[nodiscard]] bool identityBroken() const { return m_identityBroken; }

private:
    [[nodiscard]] QString hexAt(int row) const
    {
        return m_model.data(m_model.index(row), AircraftListModel::HexRole).toString();
    }

    AircraftListModel &m_model;
    QObject m_context; // ends the connections with the mirror
    QStringList m_hexes;
    QStringList m_changed;
    int m_inserted = 0;
    int m_removed = 0;
    int m_moves = 0;
    int m_movedRows = 0;
    bool m_reset = false;
    bool m_identityBroken = false;
};

// How many rows must come and go at least: the difference of the two lists counted with repeats.
QPair<int, int> rowsToInsertAndRemove(const QStringList &before, const QStringList &after)
{
    QHash<QString, int> balance;
    for (const QString &hex : before)
        --balance[hex];
    for (const QString &hex : after)
        ++balance[hex];
    int inserts = 0, removes = 0;
    for (int value : std::as_const(balance)) {
        if (value > 0)
            inserts += value;
        else
            removes -= value;
    }
    return {inserts, removes};
}

// How many rows must move at least: those outside the longest run of rows, matched n-th repeat to n-th,
// that keep their old order.
int rowsThatMustMove(const QStringList &before, const QStringList &after)
{
    QHash<QString, QList<int>> oldRows;
    for (int row = 0; row < before.size(); ++row)
        oldRows[before[row]].append(row);
    QList<int> tails; // smallest old row ending an increasing run of each length
    int matched = 0;
    for (const QString &hex : after) {
        QList<int> &rows = oldRows[hex];
        if (rows.isEmpty())
            continue;
        const int old = rows.takeFirst();
        ++matched;
        const auto place = std::lower_bound(tails.begin(), tails.end(), old);
        if (place == tails.end())
            tails.append(old);
        else
            *place = old;
    }
    return matched - int(tails.size());
}

} // namespace

class AircraftListModelTest : public QObject
{
    Q_OBJECT

    // Brings a model from `before` to `after` and checks everything a view relies on; `reported` gets
    // the hexes whose rows were said to have changed.
    static void checkUpdate(const QList<Aircraft> &before, const QList<Aircraft> &after,
                            QStringList *reported)
    {
        AircraftListModel model;
        QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
        model.update(before);
        QVERIFY(model.rows() == before);

        const QStringList beforeHexes = hexesOf(before);
        const QStringList afterHexes = hexesOf(after);
        // Rows whose address is there once before and once after must be the same row all along.
        QHash<QString, QPersistentModelIndex> followed;
        for (int row = 0; row < beforeHexes.size(); ++row) {
            if (beforeHexes.count(beforeHexes[row]) == 1)
                followed.insert(beforeHexes[row], QPersistentModelIndex(model.index(row)));
        }

        Mirror mirror(model);
        QSignalSpy countChanged(&model, &AircraftListModel::countChanged);
        model.update(after);

        QVERIFY(model.rows() == after);
        QCOMPARE_EQ(model.rowCount(), int(after.size()));
        QCOMPARE_EQ(mirror.hexes(), afterHexes);
        QCOMPARE_EQ(mirror.wasReset(), false);
        QCOMPARE_EQ(mirror.identityBroken(), false);
        const auto [inserts, removes] = rowsToInsertAndRemove(beforeHexes, afterHexes);
        QCOMPARE_EQ(mirror.inserted(), inserts);
        QCOMPARE_EQ(mirror.removed(), removes);
        QCOMPARE_EQ(countChanged.count(), before.size() == after.size() ? 0 : 1);
        for (auto it = followed.cbegin(); it != followed.cend(); ++it) {
            const qsizetype count = afterHexes.count(it.key());
            if (count == 0) {
                QVERIFY2(!it.value().isValid(), qPrintable(it.key()));
            } else if (count == 1) {
                QVERIFY2(it.value().isValid(), qPrintable(it.key()));
                QCOMPARE_EQ(it.value().row(), int(afterHexes.indexOf(it.key())));
            }
        }
        for (int row = 0; row < afterHexes.size(); ++row)
            QCOMPARE_EQ(model.indexOf(afterHexes[row]), int(afterHexes.indexOf(afterHexes[row])));
        *reported = mirror.changed();
    }

private slots:
    void update_data()
    {
        QTest::addColumn<QString>("before");
        QTest::addColumn<QString>("after");
        QTest::addColumn<QStringList>("changed");

        QTest::newRow("nothing to nothing") << u""_qs << u""_qs << QStringList();
        QTest::newRow("the same") << u"a b c"_qs << u"a b c"_qs << QStringList();
        QTest::newRow("first list") << u""_qs << u"a b c"_qs << QStringList();
        QTest::newRow("all gone") << u"a b c"_qs << u""_qs << QStringList();
        QTest::newRow("changed in place") << u"a b c"_qs << u"a b* c"_qs << QStringList{u"b"_qs};
        QTest::newRow("all changed") << u"a b c"_qs << u"a* b* c*"_qs
                                     << QStringList{u"a"_qs, u"b"_qs, u"c"_qs};
        QTest::newRow("swap") << u"a b"_qs << u"b a"_qs << QStringList();
        QTest::newRow("reversed") << u"a b c d e"_qs << u"e d c b a"_qs << QStringList();
        QTest::newRow("last to first") << u"a b c d"_qs << u"d a b c"_qs << QStringList();
        QTest::newRow("first to last") << u"a b c d"_qs << u"b c d a"_qs << QStringList();
        QTest::newRow("moved and changed") << u"a b c"_qs << u"c* a b"_qs << QStringList{u"c"_qs};
        QTest::newRow("inserted in the middle") << u"a c"_qs << u"a b c"_qs << QStringList();
        QTest::newRow("removed in the middle") << u"a b c"_qs << u"a c"_qs << QStringList();
        QTest::newRow("removed at both ends") << u"a b c d"_qs << u"b c"_qs << QStringList();
        QTest::newRow("runs removed") << u"a b c d e f g"_qs << u"c d g"_qs << QStringList();
        QTest::newRow("all replaced") << u"a b c"_qs << u"d e f"_qs << QStringList();
        QTest::newRow("mixed") << u"a b c d e"_qs << u"f d* b g a"_qs << QStringList{u"d"_qs};
        QTest::newRow("sent twice, then once") << u"a a"_qs << u"a"_qs << QStringList();
        QTest::newRow("once, then twice") << u"a"_qs << u"a a"_qs << QStringList();
        QTest::newRow("repeat moves away") << u"a b a"_qs << u"b a"_qs << QStringList();
        QTest::newRow("repeat appears") << u"a b"_qs << u"b a b"_qs << QStringList();
        QTest::newRow("three repeats to one") << u"a a a b"_qs << u"b a"_qs << QStringList();
        QTest::newRow("repeats around others") << u"a b a c"_qs << u"c a b a"_qs << QStringList();
    }

    void update()
    {
        QFETCH(QString, before);
        QFETCH(QString, after);
        QFETCH(QStringList, changed);

        QStringList reported;
        checkUpdate(rowsOf(before), rowsOf(after), &reported);
        if (QTest::currentTestFailed())
            return;
        QCOMPARE(reported, changed);
    }

    // Many orders of a few addresses, repeats included, each record changed or not.
    void updateFromAnyOrderToAnyOther()
    {
        QRandomGenerator random(20240305);
        const QStringList alphabet{u"a"_qs, u"b"_qs, u"c"_qs, u"d"_qs, u"e"_qs, u"f"_qs, u"g"_qs};
        const auto randomList = [&] {
            QList<Aircraft> rows;
            const int size = int(random.bounded(9));
            for (int i = 0; i < size; ++i)
                rows.append(record(alphabet[random.bounded(int(alphabet.size()))], int(random.bounded(2))));
            return rows;
        };
        for (int round = 0; round < 400; ++round) {
            const QList<Aircraft> before = randomList();
            const QList<Aircraft> after = randomList();
            QStringList reported;
            checkUpdate(before, after, &reported);
            if (QTest::currentTestFailed()) {
                qWarning() << "from" << hexesOf(before) << "to" << hexesOf(after);
                return;
            }
            // An address there once on both sides is reported exactly when its record differs.
            for (const QString &hex : alphabet) {
                const QStringList beforeHexes = hexesOf(before), afterHexes = hexesOf(after);
                if (beforeHexes.count(hex) != 1 || afterHexes.count(hex) != 1)
                    continue;
                const bool differs = !(before[beforeHexes.indexOf(hex)] == after[afterHexes.indexOf(hex)]);
                QVERIFY2(reported.contains(hex) == differs, qPrintable(hex));
            }
        }
    }

    // Refresh after refresh of a long list, the way nearest-first order changes: most rows drift a few
    // places, some far, a few come and go, an address now and then twice. Each refresh tells a view exactly
    // the new order, and moves no more rows than it must.
    void longListRefreshAfterRefresh()
    {
        QRandomGenerator random(20261123);
        QList<Aircraft> current;
        for (int i = 0; i < 500; ++i)
            current.append(record(u"r%1"_qs.arg(i), 1));
        int nextAddress = 500;
        AircraftListModel model;
        QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
        model.update(current);
        for (int round = 0; round < 25; ++round) {
            const int drift = 1 + round * 3; // from neighbours swapping to long jumps
            QList<QPair<double, Aircraft>> keyed;
            for (qsizetype row = 0; row < current.size(); ++row) {
                if (random.bounded(100) < 3)
                    continue; // gone
                const double key = double(row) + random.bounded(double(drift)) - drift / 2.0;
                keyed.append({key, record(current[row].hex(), int(random.bounded(2)))});
            }
            for (int i = 0; i < 12; ++i) {
                const QString hex = random.bounded(10) == 0 && !current.isEmpty()
                                        ? current[random.bounded(int(current.size()))].hex() // a repeat
                                        : u"r%1"_qs.arg(nextAddress++);
                keyed.append({random.bounded(double(current.size())), record(hex, 1)});
            }
            std::stable_sort(keyed.begin(), keyed.end(),
                             [](const auto &a, const auto &b) { return a.first < b.first; });
            QList<Aircraft> after;
            for (const auto &entry : std::as_const(keyed))
                after.append(entry.second);

            Mirror mirror(model);
            model.update(after);
            const QStringList beforeHexes = hexesOf(current), afterHexes = hexesOf(after);
            QVERIFY2(model.rows() == after, qPrintable(u"round %1"_qs.arg(round)));
            QCOMPARE(mirror.hexes(), afterHexes);
            QVERIFY(!mirror.identityBroken());
            const auto [inserts, removes] = rowsToInsertAndRemove(beforeHexes, afterHexes);
            QCOMPARE(mirror.inserted(), inserts);
            QCOMPARE(mirror.removed(), removes);
            QCOMPARE(mirror.movedRows(), rowsThatMustMove(beforeHexes, afterHexes));
            current = after;
        }
    }

    // Rows keep their place unless they must move: an aircraft that leaves the top of a long list for
    // its end is one move, not a move of every row it passes.
    void fewestMoves_data()
    {
        QTest::addColumn<QString>("before");
        QTest::addColumn<QString>("after");
        QTest::addColumn<int>("moves");

        QStringList longList;
        for (int i = 0; i < 60; ++i)
            longList.append(u"r%1"_qs.arg(i));
        QStringList firstToEnd = longList.mid(1);
        firstToEnd.append(longList.first());
        QStringList endToFirst = longList.mid(0, longList.size() - 1);
        endToFirst.prepend(longList.last());
        QStringList twoCrossing = longList;
        twoCrossing.move(3, 50);
        twoCrossing.move(40, 5);

        QTest::newRow("the same") << u"a b c"_qs << u"a b c"_qs << 0;
        QTest::newRow("swap") << u"a b"_qs << u"b a"_qs << 1;
        QTest::newRow("reversed") << u"a b c d e"_qs << u"e d c b a"_qs << 4;
        QTest::newRow("inserted and removed only") << u"a b c"_qs << u"x a c y"_qs << 0;
        QTest::newRow("first of sixty to the end") << longList.join(u' ') << firstToEnd.join(u' ') << 1;
        QTest::newRow("last of sixty to the top") << longList.join(u' ') << endToFirst.join(u' ') << 1;
        QTest::newRow("two cross in sixty") << longList.join(u' ') << twoCrossing.join(u' ') << 2;
    }

    void fewestMoves()
    {
        QFETCH(QString, before);
        QFETCH(QString, after);
        QFETCH(int, moves);

        AircraftListModel model;
        model.update(rowsOf(before));
        Mirror mirror(model);
        model.update(rowsOf(after));
        QCOMPARE(mirror.hexes(), hexesOf(rowsOf(after)));
        QCOMPARE(mirror.moves(), moves);
    }

    void roles()
    {
        AircraftListModel model;
        const QList<Aircraft> rows = rowsOf(u"a b"_qs);
        model.update(rows);
        QCOMPARE(model.data(model.index(1), AircraftListModel::HexRole).toString(), u"b"_qs);
        QCOMPARE(model.data(model.index(1), AircraftListModel::DisplayNameRole).toString(), u"FB"_qs);
        QCOMPARE(model.data(model.index(1), Qt::DisplayRole).toString(), u"FB"_qs);
        QCOMPARE(model.data(model.index(0), AircraftListModel::AircraftRole).value<Aircraft>(), rows[0]);
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"is not valid"_qs));
        QVERIFY(!model.data(model.index(2), AircraftListModel::HexRole).isValid());
        QCOMPARE(model.roleNames().value(AircraftListModel::HexRole), QByteArray("hex"));
        QCOMPARE(model.roleNames().value(AircraftListModel::AircraftRole), QByteArray("aircraft"));
        QCOMPARE(model.property("count").toInt(), 2);
        QCOMPARE(model.indexOf(u"zz"_qs), -1);
    }
};

QTEST_GUILESS_MAIN(AircraftListModelTest)
#include "AircraftListModelTest.moc"
