#include "PackedIndex.h"
#include "PackedText.h"

#include <QHash>
#include <QRandomGenerator>
#include <QTest>

class PackedIndexTest : public QObject
{
    Q_OBJECT

private slots:
    void againstAReference_data()
    {
        QTest::addColumn<QString>("keys");
        QTest::addColumn<int>("expected");

        // The families of numbers the table meets, each sized for fewer rows than it gets, so it grows.
        QTest::newRow("addresses") << u"addresses"_qs << 64;
        QTest::newRow("addresses, sized right") << u"addresses"_qs << 3000;
        QTest::newRow("small numbers") << u"small"_qs << 4;
        QTest::newRow("only high bits differ") << u"high"_qs << 16;
        QTest::newRow("past the address limit") << u"other"_qs << 0;
    }

    // Random stores and look-ups, repeats included, agree with a plain hash table.
    void againstAReference()
    {
        QFETCH(QString, keys);
        QFETCH(int, expected);

        QRandomGenerator random(7);
        const auto keyAt = [&](quint32 n) -> quint64 {
            if (keys == u"addresses")
                return *PackedText::address(QString::number(0xa00000 + n, 16));
            if (keys == u"small")
                return n;
            if (keys == u"high")
                return quint64(n) << 40;
            return PackedText::addressLimit + n;
        };
        PackedIndex index{std::size_t(expected)};
        QHash<quint64, qsizetype> reference;
        for (int step = 0; step < 20000; ++step) {
            const quint64 key = keyAt(random.bounded(3000u));
            if (random.bounded(3u) == 0) {
                QCOMPARE(index.find(key), reference.value(key, -1));
                continue;
            }
            const qsizetype value = qsizetype(random.bounded(-1, 5000));
            QCOMPARE(index.exchange(key, value), reference.value(key, -1));
            reference.insert(key, value);
        }
        for (auto it = reference.cbegin(); it != reference.cend(); ++it)
            QCOMPARE(index.find(it.key()), it.value());
        QCOMPARE(index.find(keyAt(5000)), -1);
    }
};

QTEST_GUILESS_MAIN(PackedIndexTest)
#include "PackedIndexTest.moc"
