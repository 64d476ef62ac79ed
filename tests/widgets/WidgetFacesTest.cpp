#include "FaceProbe.h"
#include "FaceRenderer.h"
#include "FaceWindow.h"
#include "ScopePalette.h"
#include "SkyEntry.h"

#include <QApplication>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickWindow>
#include <QSignalSpy>
#include <QTest>
#include <QtQml/qqmlextensionplugin.h>
#include <memory>

Q_IMPORT_QML_PLUGIN(Aerolume_CorePlugin)

namespace {

const QDateTime fixedDate(QDate(2024, 5, 1), QTime(14, 5));
const HomeLocation home(45.5, -122.6, u"Home"_qs);
const QString setupText = u"Open Aerolume to set your home location"_qs;

Aircraft decoded(const QByteArray &json)
{
    const auto result = Aircraft::decode(json);
    if (!result.ok())
        qFatal("test row does not decode: %s", qPrintable(result.error()));
    return result.value();
}

SkyEntry entryWith(QList<Aircraft> aircraft, double radius = 25, std::optional<QString> accent = std::nullopt)
{
    return SkyEntry(fixedDate, std::move(aircraft), radius, home, false, u"mi"_qs, std::move(accent));
}

SkyEntry sample()
{
    return SkyEntry::sample(std::nullopt, fixedDate);
}

// Six aircraft, all with the feed's distance and direction.
SkyEntry sixAircraft()
{
    QList<Aircraft> rows;
    for (int i = 0; i < 6; ++i)
        rows.append(decoded(
            u"{\"hex\":\"b%1\",\"flight\":\"SIX%1\",\"dst\":%2,\"dir\":%3,\"alt_baro\":3000}"_qs.arg(i)
                .arg(2 + i * 3)
                .arg(i * 60)
                .toUtf8()));
    return entryWith(rows);
}

bool hasClassPrefix(const QObject *object, const char *prefix)
{
    return QByteArray(object->metaObject()->className()).startsWith(prefix);
}

void collect(QQuickItem *item, QList<QQuickItem *> &into)
{
    into.append(item);
    for (QQuickItem *child : item->childItems())
        collect(child, into);
}

} // namespace

class WidgetFacesTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanup();

    void sampleBlipsKeepTheirColours();
    void emergencyBlipIsRed();
    void accentColoursScopeAndFrame();
    void cornersOutsideTheFrameAreTransparent();
    void emptySky_data();
    void emptySky();
    void setupPromptWithoutHome_data();
    void setupPromptWithoutHome();
    void sampleWithoutHomeDrawsNormally();
    void sixAircraftListedAndAllPlotted();
    void radiusPrintsAsWholeNumber();
    void textsFollowTheLocale();
    void clicksOpenTheRightLinks();
    void rightClickAndDragOpenNothing();
    void rowsIgnoreClicksWithLinksOff();

private:
    // A face's frame in a window of its own, laid out but not shown.
    QQuickItem *frame(const QString &face, const SkyEntry &entry, bool linksEnabled = false);
    [[nodiscard]] QList<QQuickItem *> items() const;
    [[nodiscard]] QStringList visibleTexts() const;
    [[nodiscard]] int count(const char *classPrefix) const;
    [[nodiscard]] QList<int> plottedCounts() const;
    [[nodiscard]] QImage render(FaceCatalog::Face face, const SkyEntry &entry);

    std::unique_ptr<QQmlEngine> m_engine;
    std::unique_ptr<QQuickWindow> m_window;
    std::unique_ptr<QQuickItem> m_frame;
};

void WidgetFacesTest::initTestCase()
{
    m_engine = std::make_unique<QQmlEngine>();
    m_engine->addImportPath(u"qrc:/qt/qml"_qs);
}

void WidgetFacesTest::cleanup()
{
    m_frame.reset();
    m_window.reset();
    QLocale::setDefault(QLocale::c());
}

QQuickItem *WidgetFacesTest::frame(const QString &face, const SkyEntry &entry, bool linksEnabled)
{
    m_frame.reset();
    m_window = std::make_unique<QQuickWindow>();
    QQmlComponent component(m_engine.get(), QUrl(u"qrc:/qt/qml/Aerolume/Core/WidgetFrame.qml"_qs));
    QObject *object = component.createWithInitialProperties(
        {{u"face"_qs, face}, {u"entry"_qs, QVariant::fromValue(entry)}, {u"linksEnabled"_qs, linksEnabled}});
    if (!object)
        qWarning().noquote() << component.errorString();
    m_frame.reset(qobject_cast<QQuickItem *>(object));
    if (!m_frame)
        return nullptr;
    m_frame->setParentItem(m_window->contentItem());
    m_window->resize(m_frame->size().toSize());
    return m_frame.get();
}

QList<QQuickItem *> WidgetFacesTest::items() const
{
    QList<QQuickItem *> all;
    if (m_frame)
        collect(m_frame.get(), all);
    return all;
}

QStringList WidgetFacesTest::visibleTexts() const
{
    QStringList texts;
    for (QQuickItem *item : items()) {
        if (item->inherits("QQuickText") && item->isVisible())
            texts.append(item->property("text").toString());
    }
    return texts;
}

int WidgetFacesTest::count(const char *classPrefix) const
{
    int n = 0;
    for (QQuickItem *item : items())
        n += hasClassPrefix(item, classPrefix) && item->isVisible() ? 1 : 0;
    return n;
}

QList<int> WidgetFacesTest::plottedCounts() const
{
    QList<int> counts;
    for (QQuickItem *item : items()) {
        if (item->inherits("RadarScope") && item->isVisible())
            counts.append(item->property("plottedCount").toInt());
    }
    return counts;
}

QImage WidgetFacesTest::render(FaceCatalog::Face face, const SkyEntry &entry)
{
    FaceRenderer renderer(m_engine.get());
    const QImage image = renderer.render(face, entry);
    if (image.isNull())
        qWarning().noquote() << renderer.errorString();
    return image;
}

void WidgetFacesTest::sampleBlipsKeepTheirColours()
{
    const QImage image = render(FaceCatalog::Face::RadarSmall, sample());
    QVERIFY(!image.isNull());
    QCOMPARE(image.size(), QSize(340, 340));
    // RCH440, the military sample: 18.9 of 25 nm at 170°.
    const QPoint military = FaceProbe::radarSmallPixel(18.9 / 25, 170);
    QVERIFY2(FaceProbe::sameColor(image.pixelColor(military), ScopePalette::gold()),
             qPrintable(FaceProbe::describe(image.pixelColor(military))));
    // ASA512: 3.2 nm at 310°, in the phosphor.
    const QPoint airliner = FaceProbe::radarSmallPixel(3.2 / 25, 310);
    QVERIFY2(FaceProbe::sameColor(image.pixelColor(airliner), ScopePalette::standard().phosphor()),
             qPrintable(FaceProbe::describe(image.pixelColor(airliner))));
    // Home is the phosphor dot in the centre; nothing is gold where no military aircraft is.
    QVERIFY(FaceProbe::sameColor(image.pixelColor(FaceProbe::radarSmallCentre()),
                                 ScopePalette::standard().phosphor()));
    QVERIFY(
        !FaceProbe::colorNear(image, FaceProbe::radarSmallPixel(18.9 / 25, 10), 12, ScopePalette::gold()));
}

void WidgetFacesTest::emergencyBlipIsRed()
{
    const SkyEntry entry =
        entryWith({decoded(R"({"hex":"e1","dst":10,"dir":90,"squawk":"7700","dbFlags":1})"),
                   decoded(R"({"hex":"m1","dst":10,"dir":270,"dbFlags":1})")},
                  20);
    const QImage image = render(FaceCatalog::Face::RadarSmall, entry);
    QVERIFY(!image.isNull());
    const QPoint east = FaceProbe::radarSmallPixel(0.5, 90);
    const QPoint west = FaceProbe::radarSmallPixel(0.5, 270);
    QVERIFY2(FaceProbe::sameColor(image.pixelColor(east), QColor(Qt::red)),
             qPrintable(FaceProbe::describe(image.pixelColor(east))));
    QVERIFY2(FaceProbe::sameColor(image.pixelColor(west), ScopePalette::gold()),
             qPrintable(FaceProbe::describe(image.pixelColor(west))));
}

void WidgetFacesTest::accentColoursScopeAndFrame()
{
    const SkyEntry entry = entryWith({decoded(R"({"hex":"p1","dst":10,"dir":0})")}, 20, u"#FF8A00"_qs);
    const QImage image = render(FaceCatalog::Face::RadarSmall, entry);
    QVERIFY(!image.isNull());
    const QColor orange(0xFF, 0x8A, 0x00);
    const QPoint blip = FaceProbe::radarSmallPixel(0.5, 0);
    QVERIFY2(FaceProbe::sameColor(image.pixelColor(blip), orange),
             qPrintable(FaceProbe::describe(image.pixelColor(blip))));
    // The frame's padding, left of the scope, is the accent at 9 %.
    const QColor frameColor = image.pixelColor(QPoint(5, 85) * 2);
    QVERIFY2(FaceProbe::sameColor(frameColor, QColor::fromRgbF(0.09f, 0.09f * 0x8A / 255, 0), 2),
             qPrintable(FaceProbe::describe(frameColor)));
}

void WidgetFacesTest::cornersOutsideTheFrameAreTransparent()
{
    for (FaceCatalog::Face face : FaceCatalog::all()) {
        const QImage image = render(face, sample());
        QVERIFY(!image.isNull());
        QCOMPARE(image.size(), (FaceCatalog::pointSize(face) * 2).toSize());
        QCOMPARE(image.pixelColor(1, 1).alpha(), 0);
        QCOMPARE(image.pixelColor(image.width() - 2, image.height() - 2).alpha(), 0);
        QCOMPARE(image.pixelColor(image.width() / 2, 4).alpha(), 255);
    }
}

void WidgetFacesTest::emptySky_data()
{
    QTest::addColumn<QString>("face");
    QTest::addColumn<QStringList>("texts");
    QTest::addColumn<int>("rows");

    QTest::newRow("small radar") << u"radar-small"_qs << QStringList{u"QUIET SKY"_qs, u"0"_qs, u"25nm"_qs}
                                 << 0;
    QTest::newRow("medium radar") << u"radar-medium"_qs << QStringList{u"0 AIRCRAFT · 25 NM"_qs} << 0;
    QTest::newRow("board") << u"board"_qs << QStringList{u"Quiet skies"_qs} << 0;
    QTest::newRow("nearest") << u"nearest"_qs << QStringList{u"Quiet skies"_qs} << 0;
}

void WidgetFacesTest::emptySky()
{
    QFETCH(QString, face);
    QFETCH(QStringList, texts);
    QFETCH(int, rows);
    QVERIFY(frame(face, entryWith({})));
    const QStringList shown = visibleTexts();
    for (const QString &text : texts)
        QVERIFY2(shown.contains(text), qPrintable(shown.join(u" | "_qs)));
    QVERIFY(!shown.contains(setupText));
    QCOMPARE(count("LinkedAircraftRow"), rows);
    for (int plotted : plottedCounts())
        QCOMPARE(plotted, 0);
    // "QUIET SKY" belongs to the small radar alone.
    QCOMPARE(shown.contains(u"QUIET SKY"_qs), face == u"radar-small");
}

void WidgetFacesTest::setupPromptWithoutHome_data()
{
    QTest::addColumn<FaceCatalog::Face>("face");
    for (FaceCatalog::Face face : FaceCatalog::all())
        QTest::newRow(qPrintable(FaceCatalog::key(face))) << face;
}

void WidgetFacesTest::setupPromptWithoutHome()
{
    QFETCH(FaceCatalog::Face, face);
    // Aircraft without a home (a stale entry) still give way to the prompt.
    const SkyEntry noHome(fixedDate, SkyEntry::sampleAircraft(), 25, std::nullopt, false, u"mi"_qs,
                          std::nullopt);
    QVERIFY(frame(FaceCatalog::key(face), noHome));
    const QStringList shown = visibleTexts();
    QCOMPARE(shown, QStringList{setupText});
    QVERIFY(plottedCounts().isEmpty());

    const QImage image = render(face, noHome);
    QVERIFY(!image.isNull());
    // No scope, no blip: not a single pixel in a blip's colour.
    const QImage rgb = image.convertToFormat(QImage::Format_ARGB32);
    for (int y = 0; y < rgb.height(); ++y) {
        for (int x = 0; x < rgb.width(); ++x) {
            const QColor pixel = rgb.pixelColor(x, y);
            QVERIFY(!FaceProbe::sameColor(pixel, ScopePalette::standard().phosphor(), 4));
            QVERIFY(!FaceProbe::sameColor(pixel, ScopePalette::gold(), 4));
        }
    }
}

void WidgetFacesTest::sampleWithoutHomeDrawsNormally()
{
    const SkyEntry noHomeSample(fixedDate, SkyEntry::sampleAircraft(), 25, std::nullopt, true, u"mi"_qs,
                                std::nullopt);
    QVERIFY(frame(u"board"_qs, noHomeSample));
    QVERIFY(!visibleTexts().contains(setupText));
    QCOMPARE(plottedCounts(), QList<int>{5});
    QCOMPARE(count("LinkedAircraftRow"), 5);
}

void WidgetFacesTest::sixAircraftListedAndAllPlotted()
{
    const SkyEntry six = sixAircraft();
    QVERIFY(frame(u"board"_qs, six));
    QCOMPARE(count("LinkedAircraftRow"), 5);
    QCOMPARE(plottedCounts(), QList<int>{6});
    QVERIFY(visibleTexts().contains(u"SIX4"_qs));
    QVERIFY(!visibleTexts().contains(u"SIX5"_qs));

    QVERIFY(frame(u"radar-medium"_qs, six));
    QCOMPARE(count("LinkedAircraftRow"), 3);
    QCOMPARE(plottedCounts(), QList<int>{6});
    QVERIFY(visibleTexts().contains(u"6 AIRCRAFT · 25 NM"_qs));

    QVERIFY(frame(u"radar-small"_qs, six));
    QCOMPARE(count("LinkedAircraftRow"), 0);
    QCOMPARE(plottedCounts(), QList<int>{6});
    QVERIFY(visibleTexts().contains(u"6"_qs));
    QVERIFY(!visibleTexts().contains(u"QUIET SKY"_qs));

    QVERIFY(frame(u"nearest"_qs, six));
    QVERIFY(visibleTexts().contains(u"SIX0"_qs));
    QVERIFY(visibleTexts().contains(u"NEAREST"_qs));
}

void WidgetFacesTest::radiusPrintsAsWholeNumber()
{
    QVERIFY(frame(u"radar-small"_qs, entryWith({}, 25.7)));
    QVERIFY2(visibleTexts().contains(u"25nm"_qs), qPrintable(visibleTexts().join(u" | "_qs)));
    QVERIFY(frame(u"board"_qs, entryWith({}, 25.7)));
    QVERIFY(
        visibleTexts().contains(u"25 NM · "_qs + QLocale().toString(fixedDate.time(), QLocale::ShortFormat)));
}

void WidgetFacesTest::textsFollowTheLocale()
{
    QLocale::setDefault(QLocale(u"de_DE"_qs));
    QVERIFY(frame(u"nearest"_qs, sample()));
    const QStringList shown = visibleTexts();
    QVERIFY2(shown.contains(u"5 in range · 14:05"_qs), qPrintable(shown.join(u" | "_qs)));
    QVERIFY(shown.contains(u"3.7 mi · 12.500 ft"_qs));
    QVERIFY(shown.contains(u"B739 · N512AS"_qs));
    QVERIFY(shown.contains(u"ASA512"_qs));

    QVERIFY(frame(u"board"_qs, sample()));
    QVERIFY(visibleTexts().contains(u"12.500ft"_qs));
    QVERIFY(visibleTexts().contains(u"FL240"_qs));
    QVERIFY(visibleTexts().contains(u"3.7mi"_qs));
}

void WidgetFacesTest::clicksOpenTheRightLinks()
{
    FaceWindow board(FaceCatalog::Face::Board, m_engine.get());
    QVERIFY2(board.frame(), qPrintable(board.errorString()));
    board.setEntry(sample());
    board.show();
    QVERIFY(QTest::qWaitForWindowExposed(&board));
    QSignalSpy opened(&board, &FaceWindow::openRequested);

    QList<QQuickItem *> rows;
    QList<QQuickItem *> all;
    collect(board.frame(), all);
    for (QQuickItem *item : all) {
        if (hasClassPrefix(item, "LinkedAircraftRow"))
            rows.append(item);
    }
    QCOMPARE(rows.size(), 5);
    const QPoint second = rows[1]->mapToScene(QPointF(rows[1]->width() / 2, rows[1]->height() / 2)).toPoint();
    QTest::mouseClick(&board, Qt::LeftButton, {}, second);
    QCOMPARE(opened.count(), 1);
    QCOMPARE(opened.takeFirst().first().toUrl(), QUrl(u"aerolume://aircraft/a2c4e6"_qs));

    // The title line is no row: the application opens.
    QTest::mouseClick(&board, Qt::LeftButton, {}, QPoint(30, 20));
    QCOMPARE(opened.count(), 1);
    QCOMPARE(opened.takeFirst().first().toUrl(), QUrl(u"aerolume://open"_qs));

    // Nearest Aircraft opens on the nearest one, anywhere; with nobody near, the application.
    FaceWindow nearest(FaceCatalog::Face::Nearest, m_engine.get());
    nearest.setEntry(sample());
    nearest.show();
    QVERIFY(QTest::qWaitForWindowExposed(&nearest));
    QSignalSpy nearestOpened(&nearest, &FaceWindow::openRequested);
    QTest::mouseClick(&nearest, Qt::LeftButton, {}, QPoint(85, 85));
    QCOMPARE(nearestOpened.count(), 1);
    QCOMPARE(nearestOpened.takeFirst().first().toUrl(), QUrl(u"aerolume://aircraft/a1b2c3"_qs));
    nearest.setEntry(entryWith({}));
    QTest::mouseClick(&nearest, Qt::LeftButton, {}, QPoint(85, 85));
    QCOMPARE(nearestOpened.count(), 1);
    QCOMPARE(nearestOpened.takeFirst().first().toUrl(), QUrl(u"aerolume://open"_qs));
}

void WidgetFacesTest::rightClickAndDragOpenNothing()
{
    FaceWindow radar(FaceCatalog::Face::RadarSmall, m_engine.get());
    radar.setEntry(sample());
    radar.show();
    QVERIFY(QTest::qWaitForWindowExposed(&radar));
    QSignalSpy opened(&radar, &FaceWindow::openRequested);
    QSignalSpy menu(&radar, &FaceWindow::menuRequested);

    QTest::mouseClick(&radar, Qt::RightButton, {}, QPoint(60, 60));
    QCOMPARE(menu.count(), 1);
    QCOMPARE(opened.count(), 0);

    // A press that moves far becomes a move of the window, not a click.
    QTest::mousePress(&radar, Qt::LeftButton, {}, QPoint(60, 60));
    QTest::mouseMove(&radar, QPoint(100, 100));
    QTest::mouseRelease(&radar, Qt::LeftButton, {}, QPoint(100, 100));
    QCOMPARE(opened.count(), 0);

    QTest::mouseClick(&radar, Qt::LeftButton, {}, QPoint(60, 60));
    QCOMPARE(opened.count(), 1);
    QCOMPARE(opened.first().first().toUrl(), QUrl(u"aerolume://open"_qs));
}

void WidgetFacesTest::rowsIgnoreClicksWithLinksOff()
{
    QQuickItem *board = frame(u"board"_qs, sample(), false);
    QVERIFY(board);
    m_window->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
    QSignalSpy opened(board, SIGNAL(openRequested(QString)));
    QList<QQuickItem *> rows;
    for (QQuickItem *item : items()) {
        if (hasClassPrefix(item, "LinkedAircraftRow"))
            rows.append(item);
    }
    QCOMPARE(rows.size(), 5);
    for (QQuickItem *row : rows)
        QTest::mouseClick(m_window.get(), Qt::LeftButton, {},
                          row->mapToScene(QPointF(20, row->height() / 2)).toPoint());
    QTest::mouseClick(m_window.get(), Qt::LeftButton, {}, QPoint(30, 20));
    QCOMPARE(opened.count(), 0);
}

int main(int argc, char *argv[])
{
    // The faces are drawn by the same software renderer the widget program's pictures use.
    FaceRenderer::useSoftwareRendering();
    QApplication app(argc, argv);
    WidgetFacesTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "WidgetFacesTest.moc"
