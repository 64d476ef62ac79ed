#pragma once

#include "FaceCatalog.h"
#include "SkyEntry.h"

#include <QPoint>
#include <QPointer>
#include <QQuickItem>
#include <QQuickWindow>
#include <QUrl>

class QQmlEngine;

// One face on the desktop: a small frameless window kept below other windows and off the taskbar. A
// drag anywhere moves it, a right click asks for the menu, a click opens the application.
class FaceWindow : public QQuickWindow
{
    Q_OBJECT

public:
    FaceWindow(FaceCatalog::Face face, QQmlEngine *engine, QWindow *parent = nullptr);
    ~FaceWindow() override;

    [[nodiscard]] FaceCatalog::Face face() const { return m_face; }
    // The face's frame, or null when it could not be made (errorString() says why).
    [[nodiscard]] QQuickItem *frame() const { return m_frame; }
    [[nodiscard]] QString errorString() const { return m_error; }

    void setEntry(const SkyEntry &entry);

signals:
    void openRequested(const QUrl &url);
    void menuRequested(const QPoint &globalPosition);

protected:
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;

private slots:
    void onOpenRequested(const QString &url);

private:
    FaceCatalog::Face m_face;
    QPointer<QQuickItem> m_frame;
    QString m_error;
    std::optional<QPointF> m_pressedAt;
};
