#include "ATCAudio.h"
#include "DefaultsStore.h"

#include <QAbstractItemModelTester>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>
#include <QtTest>

using namespace Qt::Literals::StringLiterals;

namespace {

const QString aUuid = u"0F8FAD5B-D9CB-469F-A165-70867728950E"_s;

} // namespace

class ATCFavoritesTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void firstRunStartsEmptyAndStoresNothing();
    void favoritesSurviveARestartInOrder();
    void storedFormIsAJsonArrayWithUpperCaseIds();
    void lowerCaseIdsAreReadAndRewritten();
    void unreadableDataLeavesTheListEmptyAndTheDataInPlace_data();
    void unreadableDataLeavesTheListEmptyAndTheDataInPlace();
    void addFormChecksNameAndAddress_data();
    void addFormChecksNameAndAddress();
    void duplicatesAreKept();
    void removeTakesTheEntryOutAndStores();
    void listModelChangesByDifference();
    void volumeDefaultsAndStoredValue_data();
    void volumeDefaultsAndStoredValue();
    void everyVolumeChangeIsStored();

private:
    [[nodiscard]] DefaultsStore *reopenedStore();

    std::unique_ptr<QTemporaryDir> m_dir;
    std::unique_ptr<DefaultsStore> m_store;
    QList<DefaultsStore *> m_reopened;
};

void ATCFavoritesTest::init()
{
    m_dir = std::make_unique<QTemporaryDir>();
    QVERIFY(m_dir->isValid());
    m_store = std::make_unique<DefaultsStore>(m_dir->filePath(u"Aerolume.conf"_s));
}

void ATCFavoritesTest::cleanup()
{
    qDeleteAll(m_reopened);
    m_reopened.clear();
    m_store.reset();
    m_dir.reset();
}

// The same file as another launch of the program would open it.
DefaultsStore *ATCFavoritesTest::reopenedStore()
{
    m_reopened.append(new DefaultsStore(m_store->filePath()));
    return m_reopened.last();
}

void ATCFavoritesTest::firstRunStartsEmptyAndStoresNothing()
{
    ATCAudio audio(m_store.get());
    QVERIFY(audio.favorites().isEmpty());
    QCOMPARE(audio.favoritesModel()->rowCount(), 0);
    QCOMPARE(audio.status(), ATCAudio::Status());
    QCOMPARE(audio.playingFavoriteID(), std::nullopt);
    QCOMPARE(audio.playingFavoriteIDText(), QString());
    QCOMPARE(audio.volume(), 0.8);
    QVERIFY(!audio.player());
    QVERIFY(!m_store->contains(u"atcFavorites"_s));
    QVERIFY(!m_store->contains(u"atcVolume"_s));
}

void ATCFavoritesTest::favoritesSurviveARestartInOrder()
{
    QList<ATCAudio::Favorite> saved;
    {
        ATCAudio audio(m_store.get());
        QVERIFY(audio.addFavorite(u"PDX Tower"_s, u"https://www.liveatc.net/hlisten.php?mount=kpdx_twr"_s));
        QVERIFY(audio.addFavorite(u"Zürich Delivery"_s, u"http://127.0.0.1:9/lszh.pls"_s));
        QVERIFY(audio.addFavorite(u"Approach"_s, u"https://d.liveatc.net/kpdx_app"_s));
        saved = audio.favorites();
    }
    ATCAudio restarted(reopenedStore());
    QCOMPARE(restarted.favorites(), saved);
    QCOMPARE(restarted.favoritesModel()->rowCount(), 3);
    QCOMPARE(restarted.favoritesModel()->index(1).data(ATCFavoriteListModel::NameRole).toString(),
             u"Zürich Delivery"_s);
}

void ATCFavoritesTest::storedFormIsAJsonArrayWithUpperCaseIds()
{
    ATCAudio audio(m_store.get());
    QVERIFY(audio.addFavorite(u"PDX Tower"_s, u"https://d.liveatc.net/kpdx_twr"_s));
    const std::optional<QByteArray> data = reopenedStore()->dataValue(u"atcFavorites"_s);
    QVERIFY(data);
    const QJsonDocument document = QJsonDocument::fromJson(*data);
    QVERIFY(document.isArray());
    QCOMPARE(document.array().size(), 1);
    const QJsonObject entry = document.array().first().toObject();
    QCOMPARE(entry.keys(), QStringList({u"id"_s, u"name"_s, u"url"_s}));
    const QString id = entry.value(u"id").toString();
    QVERIFY2(QRegularExpression(u"^[0-9A-F]{8}-[0-9A-F]{4}-[0-9A-F]{4}-[0-9A-F]{4}-[0-9A-F]{12}$"_s)
                 .match(id)
                 .hasMatch(),
             qPrintable(id));
    QCOMPARE(QUuid::fromString(id), audio.favorites().first().id);
    QCOMPARE(entry.value(u"name").toString(), u"PDX Tower"_s);
    QCOMPARE(entry.value(u"url").toString(), u"https://d.liveatc.net/kpdx_twr"_s);
    QCOMPARE(audio.favoritesModel()->index(0).data(ATCFavoriteListModel::FavoriteIdRole).toString(), id);
}

void ATCFavoritesTest::lowerCaseIdsAreReadAndRewritten()
{
    m_store->setValue(
        u"atcFavorites"_s,
        QByteArray(R"([{"id":"0f8fad5b-d9cb-469f-a165-70867728950e","name":"Tower","url":"x","extra":1}])"));
    ATCAudio audio(m_store.get());
    QCOMPARE(audio.favorites().size(), 1);
    QCOMPARE(audio.favorites().first().id, QUuid::fromString(aUuid));
    // What was read is written back at once, in the stored form.
    const QJsonArray stored = QJsonDocument::fromJson(*m_store->dataValue(u"atcFavorites"_s)).array();
    QCOMPARE(stored.first().toObject().value(u"id").toString(), aUuid);
    QVERIFY(!stored.first().toObject().contains(u"extra"));
}

void ATCFavoritesTest::unreadableDataLeavesTheListEmptyAndTheDataInPlace_data()
{
    QTest::addColumn<QVariant>("stored");
    const auto entry = [](const QByteArray &fields) { return QVariant(QByteArray("[" + fields + "]")); };
    const QByteArray good =
        R"({"id":")" + aUuid.toLatin1() + R"(","name":"Tower","url":"https://d.liveatc.net/a"})";
    QTest::newRow("no url") << entry(R"({"id":")" + aUuid.toLatin1() + R"(","name":"Tower"})");
    QTest::newRow("no name") << entry(R"({"id":")" + aUuid.toLatin1() + R"(","url":"x"})");
    QTest::newRow("no id") << entry(R"({"name":"Tower","url":"x"})");
    QTest::newRow("one bad entry among good ones") << entry(good + R"(,{"name":"Tower","url":"x"})");
    QTest::newRow("id not a UUID") << entry(R"({"id":"tower-1","name":"Tower","url":"x"})");
    QTest::newRow("id in braces") << entry(R"({"id":"{)" + aUuid.toLatin1() +
                                           R"(}","name":"Tower","url":"x"})");
    QTest::newRow("name not text") << entry(R"({"id":")" + aUuid.toLatin1() + R"(","name":7,"url":"x"})");
    QTest::newRow("url null") << entry(R"({"id":")" + aUuid.toLatin1() + R"(","name":"T","url":null})");
    QTest::newRow("object, not array") << QVariant(good);
    QTest::newRow("not JSON") << QVariant(QByteArray("\x00\x01garbage", 9));
    QTest::newRow("text, not data") << QVariant(QString::fromLatin1("[" + good + "]"));
}

void ATCFavoritesTest::unreadableDataLeavesTheListEmptyAndTheDataInPlace()
{
    QFETCH(QVariant, stored);
    m_store->setValue(u"atcFavorites"_s, stored);
    const QVariant before = reopenedStore()->value(u"atcFavorites"_s);

    ATCAudio audio(m_store.get());
    QVERIFY(audio.favorites().isEmpty());
    QCOMPARE(reopenedStore()->value(u"atcFavorites"_s), before);

    // The next change of the list replaces it.
    QVERIFY(audio.addFavorite(u"Ground"_s, u"https://d.liveatc.net/g"_s));
    ATCAudio restarted(reopenedStore());
    QCOMPARE(restarted.favorites(), audio.favorites());
    QCOMPARE(restarted.favorites().size(), 1);
}

void ATCFavoritesTest::addFormChecksNameAndAddress_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("url");
    QTest::addColumn<bool>("added");
    QTest::addColumn<QString>("storedURL");

    QTest::newRow("plain") << u"PDX Tower"_s << u"https://d.liveatc.net/kpdx_twr"_s << true
                           << u"https://d.liveatc.net/kpdx_twr"_s;
    QTest::newRow("spaces and tabs trimmed")
        << u"PDX"_s << u" \thttp://d.liveatc.net/kpdx\t "_s << true << u"http://d.liveatc.net/kpdx"_s;
    QTest::newRow("line end is not trimmed")
        << u"PDX"_s << u"http://d.liveatc.net/kpdx\n"_s << false << QString();
    QTest::newRow("empty name") << QString() << u"https://d.liveatc.net/a"_s << false << QString();
    QTest::newRow("blank name kept as typed")
        << u"  "_s << u"https://d.liveatc.net/a"_s << true << u"https://d.liveatc.net/a"_s;
    QTest::newRow("empty address") << u"PDX"_s << QString() << false << QString();
    QTest::newRow("blank address") << u"PDX"_s << u" \t "_s << false << QString();
    QTest::newRow("address with a space inside")
        << u"PDX"_s << u"http://d.liveatc.net/a b"_s << false << QString();
    QTest::newRow("scheme not looked at")
        << u"PDX"_s << u"ftp://example.org/tower"_s << true << u"ftp://example.org/tower"_s;
}

void ATCFavoritesTest::addFormChecksNameAndAddress()
{
    QFETCH(QString, name);
    QFETCH(QString, url);
    QFETCH(bool, added);
    QFETCH(QString, storedURL);

    ATCAudio audio(m_store.get());
    QSignalSpy changes(&audio, &ATCAudio::favoritesChanged);
    QCOMPARE(ATCAudio::canAddFavorite(name, url), added);
    QCOMPARE(audio.addFavorite(name, url), added);
    QCOMPARE(changes.size(), added ? 1 : 0);
    if (!added) {
        QVERIFY(audio.favorites().isEmpty());
        QVERIFY(!m_store->contains(u"atcFavorites"_s));
        return;
    }
    QCOMPARE(audio.favorites().size(), 1);
    QCOMPARE(audio.favorites().first().name, name);
    QCOMPARE(audio.favorites().first().url, storedURL);
    QVERIFY(!audio.favorites().first().id.isNull());
    // Adding starts nothing.
    QCOMPARE(audio.status(), ATCAudio::Status());
    QCOMPARE(ATCAudio(reopenedStore()).favorites(), audio.favorites());
}

void ATCFavoritesTest::duplicatesAreKept()
{
    ATCAudio audio(m_store.get());
    QVERIFY(audio.addFavorite(u"Tower"_s, u"https://d.liveatc.net/a"_s));
    QVERIFY(audio.addFavorite(u"Tower"_s, u"https://d.liveatc.net/a"_s));
    QCOMPARE(audio.favorites().size(), 2);
    QVERIFY(audio.favorites()[0].id != audio.favorites()[1].id);
}

void ATCFavoritesTest::removeTakesTheEntryOutAndStores()
{
    ATCAudio audio(m_store.get());
    QVERIFY(audio.addFavorite(u"A"_s, u"https://d.liveatc.net/a"_s));
    QVERIFY(audio.addFavorite(u"B"_s, u"https://d.liveatc.net/b"_s));
    QVERIFY(audio.addFavorite(u"C"_s, u"https://d.liveatc.net/c"_s));
    const ATCAudio::Favorite b = audio.favorites()[1];

    audio.remove(b);
    QCOMPARE(audio.favorites().size(), 2);
    QCOMPARE(audio.favorites()[0].name, u"A"_s);
    QCOMPARE(audio.favorites()[1].name, u"C"_s);
    QCOMPARE(ATCAudio(reopenedStore()).favorites(), audio.favorites());

    // Views name a favorite by its id text; one that is gone, or never was, changes nothing.
    audio.removeFavorite(b.id.toString(QUuid::WithoutBraces).toUpper());
    audio.removeFavorite(u"not an id"_s);
    QCOMPARE(audio.favorites().size(), 2);
    audio.removeFavorite(audio.favorites()[0].id.toString(QUuid::WithoutBraces).toUpper());
    QCOMPARE(audio.favorites().size(), 1);
    QCOMPARE(audio.favorites()[0].name, u"C"_s);
}

void ATCFavoritesTest::listModelChangesByDifference()
{
    ATCAudio audio(m_store.get());
    ATCFavoriteListModel *model = audio.favoritesModel();
    QAbstractItemModelTester tester(model, QAbstractItemModelTester::FailureReportingMode::QtTest);
    QSignalSpy inserted(model, &QAbstractItemModel::rowsInserted);
    QSignalSpy removed(model, &QAbstractItemModel::rowsRemoved);
    QSignalSpy reset(model, &QAbstractItemModel::modelReset);

    QVERIFY(audio.addFavorite(u"A"_s, u"https://d.liveatc.net/a"_s));
    QVERIFY(audio.addFavorite(u"B"_s, u"https://d.liveatc.net/b"_s));
    QVERIFY(audio.addFavorite(u"C"_s, u"https://d.liveatc.net/c"_s));
    QCOMPARE(inserted.size(), 3);
    QCOMPARE(inserted.last().at(1).toInt(), 2);

    audio.remove(audio.favorites()[1]);
    QCOMPARE(removed.size(), 1);
    QCOMPARE(removed.first().at(1).toInt(), 1);
    QCOMPARE(reset.size(), 0);
    QCOMPARE(model->rowCount(), 2);
    QCOMPARE(model->index(1).data(ATCFavoriteListModel::UrlRole).toString(), u"https://d.liveatc.net/c"_s);
    QCOMPARE(model->roleNames().value(ATCFavoriteListModel::FavoriteIdRole), QByteArray("favoriteId"));
}

void ATCFavoritesTest::volumeDefaultsAndStoredValue_data()
{
    QTest::addColumn<QVariant>("stored");
    QTest::addColumn<double>("volume");

    QTest::newRow("absent") << QVariant() << 0.8;
    QTest::newRow("stored") << QVariant(0.35) << 0.35;
    QTest::newRow("silent") << QVariant(0.0) << 0.0;
    QTest::newRow("stored as text") << QVariant(u"0.5"_s) << 0.5;
    QTest::newRow("not a number") << QVariant(u"loud"_s) << 0.8;
}

void ATCFavoritesTest::volumeDefaultsAndStoredValue()
{
    QFETCH(QVariant, stored);
    QFETCH(double, volume);
    if (stored.isValid())
        m_store->setValue(u"atcVolume"_s, stored);
    ATCAudio audio(m_store.get());
    QCOMPARE(audio.volume(), volume);
}

void ATCFavoritesTest::everyVolumeChangeIsStored()
{
    ATCAudio audio(m_store.get());
    QSignalSpy changes(&audio, &ATCAudio::volumeChanged);
    QSignalSpy stored(m_store.get(), &DefaultsStore::changed);

    audio.setVolume(0.3);
    QCOMPARE(audio.volume(), 0.3);
    QCOMPARE(changes.size(), 1);
    QCOMPARE(reopenedStore()->doubleValue(u"atcVolume"_s), 0.3);

    // Each step of a dragged slider is stored, with no debounce.
    for (double step : {0.31, 0.32, 0.33})
        audio.setVolume(step);
    QCOMPARE(changes.size(), 4);
    QCOMPARE(stored.count(QVariantList{u"atcVolume"_s}), 4);
    QCOMPARE(ATCAudio(reopenedStore()).volume(), 0.33);
}

QTEST_GUILESS_MAIN(ATCFavoritesTest)
#include "ATCFavoritesTest.moc"
