#include "TextCache.h"

#include <QTest>

#include <string>

class TextCacheTest : public QObject
{
    Q_OBJECT

private slots:
    void texts_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<bool>("kept");

        QTest::newRow("address") << QByteArray("a1b2c3") << true;
        QTest::newRow("empty") << QByteArray() << true;
        QTest::newRow("call sign with trailing blanks") << QByteArray("BAW29   ") << true;
        QTest::newRow("non-ASCII") << QByteArray("Lufthansa Cityline Stra\xc3\x9f" "e") << true;
        QTest::newRow("malformed UTF-8") << QByteArray("\xff\xfe" "A") << true;
        QTest::newRow("NUL inside") << QByteArray("a\0b", 3) << true;
        QTest::newRow("longest kept") << QByteArray(TextCache::maxLength, 'x') << true;
        QTest::newRow("one longer") << QByteArray(TextCache::maxLength + 1, 'x') << false;
    }

    // Every text reads as its bytes decoded; one asked for again is the same string, unless too long.
    void texts()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(bool, kept);

        TextCache cache;
        const std::string_view view(bytes.constData(), std::size_t(bytes.size()));
        const QString first = cache.text(view);
        QCOMPARE(first, QString::fromUtf8(bytes));
        QCOMPARE(cache.size(), kept ? 1 : 0);
        cache.nextRound();
        const QString again = cache.text(view);
        QCOMPARE(again, first);
        if (!bytes.isEmpty()) // an empty text has no storage to share
            QCOMPARE(again.isSharedWith(first), kept);
    }

    // Texts that differ only a little never meet, however many there are.
    void manyTexts()
    {
        TextCache cache;
        QList<QString> made;
        for (int i = 0; i < 20000; ++i) {
            const std::string bytes = std::to_string(i);
            made.append(cache.text(bytes));
            // One that is a prefix of the other, and one with a NUL after it.
            QCOMPARE(cache.text(bytes + '0'), QString::fromStdString(bytes + '0'));
            QCOMPARE(cache.text(bytes + std::string(1, '\0')).size(), qsizetype(bytes.size() + 1));
        }
        cache.nextRound();
        for (int i = 0; i < 20000; ++i) {
            const std::string bytes = std::to_string(i);
            const QString again = cache.text(bytes);
            QCOMPARE(again, QString::number(i));
            QVERIFY(again.isSharedWith(made[i]));
        }
    }

    // What no answer asks for any more is forgotten: the cache holds what the last answer read, not
    // everything ever seen.
    void forgetsTextsNoLongerAskedFor()
    {
        TextCache cache;
        QList<QString> first;
        for (int i = 0; i < 5000; ++i)
            first.append(cache.text(std::to_string(i)));
        cache.nextRound();
        for (int i = 0; i < 10; ++i)
            QCOMPARE(cache.text(std::to_string(i)), QString::number(i));
        cache.nextRound();
        QCOMPARE(cache.size(), 10);
        // Those still asked for are the strings made in the first round; the others are made anew.
        QVERIFY(cache.text("3").isSharedWith(first[3]));
        const QString remade = cache.text("4000");
        QCOMPARE(remade, u"4000"_qs);
        QVERIFY(!remade.isSharedWith(first[4000]));
    }

    // A few texts stay even through answers that ask for none of them, so a quiet sky costs no sweeps.
    void keepsAFewThroughQuietAnswers()
    {
        TextCache cache;
        const QString text = cache.text("a1b2c3");
        for (int round = 0; round < 5; ++round)
            cache.nextRound();
        QCOMPARE(cache.size(), 1);
        QVERIFY(cache.text("a1b2c3").isSharedWith(text));
    }
};

QTEST_GUILESS_MAIN(TextCacheTest)
#include "TextCacheTest.moc"
