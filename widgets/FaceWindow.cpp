#include "FaceWindow.h"

#include <QGuiApplication>
#include <QMouseEvent>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickItem>
#include <QStyleHints>

FaceWindow::FaceWindow(FaceCatalog::Face face, QQmlEngine *engine, QWindow *parent)
    : QQuickWindow(parent), m_face(face)
{
    setFlags(Qt::FramelessWindowHint | Qt::WindowStaysOnBottomHint | Qt::Tool);
    setColor(Qt::transparent);
    setTitle(FaceCatalog::title(face));
    const QSize size = FaceCatalog::pointSize(face).toSize();
    resize(size);
    setMinimumSize(size);
    setMaximumSize(size);

    QQmlComponent component(engine, QUrl(u"qrc:/qt/qml/Aerolume/Core/WidgetFrame.qml"_qs));
    QObject *object = component.createWithInitialProperties(
        {{u"face"_qs, FaceCatalog::key(face)}, {u"linksEnabled"_qs, true}});
    m_frame = qobject_cast<QQuickItem *>(object);
    if (!m_frame) {
        m_error = component.errorString();
        delete object;
        return;
    }
    QQmlEngine::setObjectOwnership(m_frame, QQmlEngine::CppOwnership);
    m_frame->setParentItem(contentItem());
    m_frame->setSize(FaceCatalog::pointSize(face));
    connect(m_frame, SIGNAL(openRequested(QString)), this, SLOT(onOpenRequested(QString)));
}

FaceWindow::~FaceWindow()
{
    delete m_frame;
}

void FaceWindow::setEntry(const SkyEntry &entry)
{
    if (m_frame)
        m_frame->setProperty("entry", QVariant::fromValue(entry));
}

void FaceWindow::onOpenRequested(const QString &url)
{
    emit openRequested(QUrl(url));
}

void FaceWindow::mousePressEvent(QMouseEvent *event)
{
    if (event->button() == Qt::RightButton) {
        event->accept();
        emit menuRequested(event->globalPosition().toPoint());
        return;
    }
    if (event->button() == Qt::LeftButton)
        m_pressedAt = event->position();
    QQuickWindow::mousePressEvent(event);
}

void FaceWindow::mouseMoveEvent(QMouseEvent *event)
{
    if (m_pressedAt && (event->buttons() & Qt::LeftButton) &&
        (event->position() - *m_pressedAt).manhattanLength() >=
            QGuiApplication::styleHints()->startDragDistance()) {
        m_pressedAt.reset();
        // The press becomes a move of the window: whatever the press started in the face is called off,
        // so no click follows.
        if (QQuickItem *grabber = mouseGrabberItem())
            grabber->ungrabMouse();
        startSystemMove();
        event->accept();
        return;
    }
    QQuickWindow::mouseMoveEvent(event);
}

void FaceWindow::mouseReleaseEvent(QMouseEvent *event)
{
    m_pressedAt.reset();
    QQuickWindow::mouseReleaseEvent(event);
}
