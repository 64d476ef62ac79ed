#include "FaceBoard.h"
#include "FaceLayoutStore.h"
#include "FaceRenderer.h"
#include "FaceWindow.h"
#include "SkyTimeline.h"

#include <QApplication>
#include <QMenu>
#include <QQmlEngine>
#include <QSettings>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QtQml/qqmlextensionplugin.h>
#include <memory>

Q_IMPORT_QML_PLUGIN(Aerolume_CorePlugin)

namespace {

QAction *findAction(QMenu *menu, const QString &text)
{
    for (QAction *action : menu->actions()) {
        if (action->text() == text)
            return action;
        if (action->menu()) {
            if (QAction *inner = findAction(action->menu(), text))
                return inner;
        }
    }
    return nullptr;
}

QList<FaceCatalog::Face> facesOf(const QList<FaceWindow *> &windows)
{
    QList<FaceCatalog::Face> faces;
    for (const FaceWindow *window : windows)
        faces.append(window->face());
    return faces;
}

} // namespace

class FaceBoardTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void firstStartOpensTheThreeFaces();
    void menuAddsAndRemovesFacesAndIsRemembered();
    void placesComeBackAtTheNextStart();
    void removingTheLastFaceQuits();
    void linksGoToTheUrlHandler();

private:
    [[nodiscard]] std::unique_ptr<FaceBoard> board();

    QTemporaryDir m_dirs;
    QString m_layoutFile;
    std::unique_ptr<QQmlEngine> m_engine;
    std::unique_ptr<SkyTimeline> m_timeline;
    QList<QUrl> m_opened;
};

void FaceBoardTest::initTestCase()
{
    QVERIFY(m_dirs.isValid());
    qputenv("XDG_DATA_HOME", m_dirs.filePath(u"data"_qs).toUtf8());
    m_engine = std::make_unique<QQmlEngine>();
    m_engine->addImportPath(u"qrc:/qt/qml"_qs);
    // No shared file: the faces ask for a home, and nothing is fetched.
    m_timeline = std::make_unique<SkyTimeline>(QDBusConnection(u"none"_qs), [] { return QDateTime(); });
    m_timeline->start();
}

void FaceBoardTest::init()
{
    m_layoutFile =
        m_dirs.filePath(u"config/Widgets-%1.conf"_qs.arg(QLatin1StringView(QTest::currentTestFunction())));
    m_opened.clear();
}

std::unique_ptr<FaceBoard> FaceBoardTest::board()
{
    auto faces = std::make_unique<FaceBoard>(m_timeline.get(), m_engine.get(), FaceLayoutStore(m_layoutFile));
    faces->setUrlOpener([this](const QUrl &url) { m_opened.append(url); });
    return faces;
}

void FaceBoardTest::firstStartOpensTheThreeFaces()
{
    auto faces = board();
    QVERIFY2(faces->restore(), qPrintable(faces->errorString()));
    QCOMPARE(facesOf(faces->windows()),
             QList<FaceCatalog::Face>(
                 {FaceCatalog::Face::Nearest, FaceCatalog::Face::RadarMedium, FaceCatalog::Face::Board}));
    for (FaceWindow *window : faces->windows()) {
        QVERIFY(window->isVisible());
        QCOMPARE(window->size(), FaceCatalog::pointSize(window->face()).toSize());
        QVERIFY(window->flags() & Qt::WindowStaysOnBottomHint);
        QVERIFY(window->flags() & Qt::FramelessWindowHint);
        // Off the taskbar.
        QCOMPARE(window->flags() & Qt::WindowType_Mask, Qt::Tool);
    }
    // They stand apart, not on top of each other.
    QVERIFY(faces->windows()[0]->geometry().bottom() < faces->windows()[1]->y());
    QVERIFY(faces->windows()[1]->geometry().bottom() < faces->windows()[2]->y());
}

void FaceBoardTest::menuAddsAndRemovesFacesAndIsRemembered()
{
    auto faces = board();
    QVERIFY(faces->restore());
    FaceWindow *first = faces->windows().first();
    std::unique_ptr<QMenu> menu(faces->menuFor(first));
    for (const QString &label : {u"Nearest Aircraft (Small)"_qs, u"Sky Radar (Small)"_qs,
                                 u"Sky Radar (Medium)"_qs, u"Sky Board (Large)"_qs, u"Remove This Widget"_qs,
                                 u"Open Aerolume"_qs, u"Quit Aerolume Widgets"_qs})
        QVERIFY2(findAction(menu.get(), label), qPrintable(label));

    findAction(menu.get(), u"Sky Radar (Small)"_qs)->trigger();
    QCOMPARE(faces->windows().size(), 4);
    QCOMPARE(faces->windows().last()->face(), FaceCatalog::Face::RadarSmall);

    findAction(menu.get(), u"Remove This Widget"_qs)->trigger();
    QCOMPARE(facesOf(faces->windows()),
             QList<FaceCatalog::Face>(
                 {FaceCatalog::Face::RadarMedium, FaceCatalog::Face::Board, FaceCatalog::Face::RadarSmall}));
    // Removing writes at once.
    const auto stored = FaceLayoutStore(m_layoutFile).load();
    QVERIFY(stored);
    QCOMPARE(stored->size(), 3);
    QCOMPARE(stored->at(2).face, FaceCatalog::Face::RadarSmall);
    QCOMPARE(stored->at(2).position, faces->windows().last()->position());
}

void FaceBoardTest::placesComeBackAtTheNextStart()
{
    {
        QSettings settings(m_layoutFile, QSettings::IniFormat);
        settings.beginWriteArray(u"faces"_qs, 4);
        const QList<std::tuple<QString, int, int>> rows{{u"board"_qs, 40, 50},
                                                        {u"a-face-from-the-future"_qs, 1, 1},
                                                        {u"nearest"_qs, 600, 70},
                                                        {u"radar-small"_qs, -5000, -5000}};
        for (int i = 0; i < rows.size(); ++i) {
            settings.setArrayIndex(i);
            settings.setValue(u"face"_qs, std::get<0>(rows[i]));
            settings.setValue(u"x"_qs, std::get<1>(rows[i]));
            settings.setValue(u"y"_qs, std::get<2>(rows[i]));
        }
        settings.endArray();
    }
    auto faces = board();
    QVERIFY(faces->restore());
    QCOMPARE(facesOf(faces->windows()),
             QList<FaceCatalog::Face>(
                 {FaceCatalog::Face::Board, FaceCatalog::Face::Nearest, FaceCatalog::Face::RadarSmall}));
    QCOMPARE(faces->windows()[0]->position(), QPoint(40, 50));
    QCOMPARE(faces->windows()[1]->position(), QPoint(600, 70));
    // Its screen is gone: the face comes back where it can be seen.
    QVERIFY(QGuiApplication::screenAt(faces->windows()[2]->position()));

    // A face moved is written down once it stands still.
    faces->windows()[1]->setPosition(QPoint(610, 90));
    QTRY_COMPARE_WITH_TIMEOUT(FaceLayoutStore(m_layoutFile).load()->at(1).position, QPoint(610, 90), 5000);
}

void FaceBoardTest::removingTheLastFaceQuits()
{
    auto faces = board();
    QVERIFY(faces->restore());
    QSignalSpy quit(faces.get(), &FaceBoard::quitRequested);
    while (faces->windows().size() > 1)
        faces->removeFace(faces->windows().first());
    QCOMPARE(quit.count(), 0);
    faces->removeFace(faces->windows().first());
    QCOMPARE(quit.count(), 1);
    // Nothing remembered means the first set again next time, never a program without a face.
    const auto stored = FaceLayoutStore(m_layoutFile).load();
    QVERIFY(stored && stored->isEmpty());
    auto next = board();
    QVERIFY(next->restore());
    QCOMPARE(next->windows().size(), 3);
}

void FaceBoardTest::linksGoToTheUrlHandler()
{
    auto faces = board();
    QVERIFY(faces->restore());
    FaceWindow *window = faces->windows().first();
    QVERIFY(QTest::qWaitForWindowExposed(window));
    // The setup prompt: a click opens the application, which asks for a home.
    QTest::mouseClick(window, Qt::LeftButton, {}, QPoint(85, 85));
    QCOMPARE(m_opened, QList<QUrl>{QUrl(u"aerolume://open"_qs)});

    std::unique_ptr<QMenu> menu(faces->menuFor(window));
    findAction(menu.get(), u"Open Aerolume"_qs)->trigger();
    QCOMPARE(m_opened.size(), 2);
    QSignalSpy quit(faces.get(), &FaceBoard::quitRequested);
    findAction(menu.get(), u"Quit Aerolume Widgets"_qs)->trigger();
    QCOMPARE(quit.count(), 1);
}

int main(int argc, char *argv[])
{
    FaceRenderer::useSoftwareRendering();
    QApplication app(argc, argv);
    FaceBoardTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "FaceBoardTest.moc"
