#include "FaceBoard.h"

#include "FaceWindow.h"
#include "SkyTimeline.h"
#include "WidgetLinks.h"

#include <QDesktopServices>
#include <QGuiApplication>
#include <QMenu>
#include <QScreen>

namespace {

// Where faces go on a first launch, and the space kept between them and the screen's edge.
const QList<FaceCatalog::Face> firstFaces{FaceCatalog::Face::Nearest, FaceCatalog::Face::RadarMedium,
                                          FaceCatalog::Face::Board};
constexpr int margin = 24;
// Moves come as a stream of small steps; the places are written once the face has stood still.
constexpr int saveDelayMs = 500;

} // namespace

FaceBoard::FaceBoard(SkyTimeline *timeline, QQmlEngine *engine, FaceLayoutStore store, QObject *parent)
    : QObject(parent), m_timeline(timeline), m_engine(engine), m_store(std::move(store)),
      m_opener([](const QUrl &url) { QDesktopServices::openUrl(url); })
{
    m_saveSoon.setSingleShot(true);
    m_saveSoon.setInterval(saveDelayMs);
    connect(&m_saveSoon, &QTimer::timeout, this, &FaceBoard::saveNow);
    connect(m_timeline, &SkyTimeline::entryChanged, this, [this] {
        for (FaceWindow *window : std::as_const(m_windows))
            window->setEntry(m_timeline->entry());
    });
}

FaceBoard::~FaceBoard()
{
    if (m_saveSoon.isActive())
        saveNow();
    qDeleteAll(m_windows);
}

bool FaceBoard::restore()
{
    const auto stored = m_store.load();
    if (stored && !stored->isEmpty()) {
        for (const FaceLayoutStore::Placement &placement : *stored) {
            if (!addFace(placement.face, placement.position))
                return false;
        }
        return true;
    }
    for (FaceCatalog::Face face : firstFaces) {
        if (!addFace(face))
            return false;
    }
    return true;
}

FaceWindow *FaceBoard::addFace(FaceCatalog::Face face, std::optional<QPoint> position)
{
    auto *window = new FaceWindow(face, m_engine);
    if (!window->frame()) {
        m_error = window->errorString();
        delete window;
        return nullptr;
    }
    window->setEntry(m_timeline->entry());
    // A place remembered on a screen that is gone would hide the face.
    if (position && !QGuiApplication::screenAt(*position))
        position.reset();
    window->setPosition(position.value_or(firstFreePosition(face)));
    connect(window, &FaceWindow::openRequested, this, [this](const QUrl &url) { m_opener(url); });
    connect(window, &FaceWindow::menuRequested, this,
            [this, window](const QPoint &at) { showMenu(window, at); });
    connect(window, &QWindow::xChanged, &m_saveSoon, qOverload<>(&QTimer::start));
    connect(window, &QWindow::yChanged, &m_saveSoon, qOverload<>(&QTimer::start));
    m_windows.append(window);
    window->show();
    m_saveSoon.start();
    return window;
}

void FaceBoard::removeFace(FaceWindow *window)
{
    if (!m_windows.removeOne(window))
        return;
    window->deleteLater();
    saveNow();
    // Nothing left to show: a later start opens the first set again.
    if (m_windows.isEmpty())
        emit quitRequested();
}

void FaceBoard::saveNow()
{
    m_saveSoon.stop();
    QList<FaceLayoutStore::Placement> placements;
    for (const FaceWindow *window : std::as_const(m_windows))
        placements.append({window->face(), window->position()});
    m_store.save(placements);
}

QPoint FaceBoard::firstFreePosition(FaceCatalog::Face face) const
{
    // Down the right edge of the primary screen, below the faces already there.
    const QScreen *screen = QGuiApplication::primaryScreen();
    const QRect area = screen ? screen->availableGeometry() : QRect(0, 0, 1280, 800);
    const QSize size = FaceCatalog::pointSize(face).toSize();
    int top = area.top() + margin;
    for (const FaceWindow *window : m_windows)
        top = std::max(top, window->y() + window->height() + margin / 2);
    if (top + size.height() > area.bottom())
        top = area.top() + margin;
    return {area.right() - margin - size.width(), top};
}

QMenu *FaceBoard::menuFor(FaceWindow *window)
{
    auto *menu = new QMenu();
    QMenu *add = menu->addMenu(tr("Add Widget"));
    for (FaceCatalog::Face face : FaceCatalog::all()) {
        const QString label = tr("%1 (%2)").arg(FaceCatalog::title(face), FaceCatalog::sizeName(face));
        add->addAction(label, this, [this, face] { addFace(face); });
    }
    menu->addAction(tr("Remove This Widget"), this, [this, window] { removeFace(window); });
    menu->addSeparator();
    menu->addAction(tr("Open Aerolume"), this, [this] { m_opener(WidgetLinks::open()); });
    menu->addAction(tr("Quit Aerolume Widgets"), this, &FaceBoard::quitRequested);
    return menu;
}

void FaceBoard::showMenu(FaceWindow *window, const QPoint &globalPosition)
{
    QMenu *menu = menuFor(window);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->popup(globalPosition);
}
