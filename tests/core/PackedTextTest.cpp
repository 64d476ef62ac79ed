#include "PackedText.h"

#include <QSet>
#include <QTest>

class PackedTextTest : public QObject
{
    Q_OBJECT

private slots:
    void pack_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("maxChars");
        QTest::addColumn<bool>("upper");
        QTest::addColumn<bool>("packs");

        QTest::newRow("address") << u"a1b2c3"_qs << 7 << false << true;
        QTest::newRow("other source's address") << u"~a1b2c3"_qs << 7 << false << true;
        QTest::newRow("eight over an address's seven") << u"~a1b2c3d"_qs << 7 << false << false;
        QTest::newRow("eight when eight allowed") << u"ABCDEFGH"_qs << 8 << false << true;
        QTest::newRow("never more than eight") << u"ABCDEFGHI"_qs << 12 << false << false;
        QTest::newRow("empty") << QString() << 8 << false << true;
        QTest::newRow("non-ASCII") << u"stra\u00dfe"_qs << 8 << true << false;
        QTest::newRow("NUL") << QString(QChar(0)) << 8 << false << false;
    }

    void pack()
    {
        QFETCH(QString, text);
        QFETCH(int, maxChars);
        QFETCH(bool, upper);
        QFETCH(bool, packs);
        const auto packed = PackedText::pack(text, maxChars,
                                             upper ? PackedText::LetterCase::Upper : PackedText::LetterCase::AsWritten);
        QCOMPARE(packed.has_value(), packs);
        if (packed && maxChars <= 7)
            QVERIFY(*packed < PackedText::addressLimit);
    }

    // Different texts never share a number; upper-casing makes letters meet their capitals only.
    void distinct()
    {
        const QStringList texts{u""_qs,     u"A"_qs,      u"a"_qs,       u"AA"_qs,      u" A"_qs,     u"A "_qs,
                                u"abc123"_qs, u"ABC123"_qs, u"~abc123"_qs, u"abc12"_qs, u"1"_qs,      u"01"_qs,
                                u"N12345"_qs, u"D-AIBL"_qs, u"ZZZZZZZZ"_qs, u"zzzzzzzz"_qs};
        QSet<quint64> seen;
        for (const QString &text : texts) {
            const auto packed = PackedText::pack(text, 8);
            QVERIFY2(packed, qPrintable(text));
            QVERIFY2(!seen.contains(*packed), qPrintable(text));
            seen.insert(*packed);
        }
        QCOMPARE(PackedText::pack(u"d-aibl"_qs, 8, PackedText::LetterCase::Upper), PackedText::pack(u"D-AIBL"_qs, 8));
        QCOMPARE(PackedText::pack(u"[`{"_qs, 8, PackedText::LetterCase::Upper), PackedText::pack(u"[`{"_qs, 8));
        QCOMPARE(PackedText::address(u"abc123"_qs), PackedText::pack(u"abc123"_qs, 7));
    }
};

QTEST_GUILESS_MAIN(PackedTextTest)
#include "PackedTextTest.moc"
