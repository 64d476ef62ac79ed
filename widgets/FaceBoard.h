#pragma once

#include "FaceCatalog.h"
#include "FaceLayoutStore.h"

#include <QList>
#include <QObject>
#include <QPoint>
#include <QTimer>
#include <QUrl>
#include <functional>
#include <optional>

class FaceWindow;
class QMenu;
class QQmlEngine;
class SkyTimeline;

// The faces on the desktop: opens them where they stood last time, keeps them fed from the timeline,
// and offers the menu that adds and removes faces and quits. Links go to the desktop's URL handler.
class FaceBoard : public QObject
{
    Q_OBJECT

public:
    using UrlOpener = std::function<void(const QUrl &url)>;

    FaceBoard(SkyTimeline *timeline, QQmlEngine *engine, FaceLayoutStore store, QObject *parent = nullptr);
    ~FaceBoard() override;

    void setUrlOpener(UrlOpener opener) { m_opener = std::move(opener); }

    // Opens the remembered faces, or a first set when none are remembered. False, with errorString(),
    // when a face could not be made.
    bool restore();
    FaceWindow *addFace(FaceCatalog::Face face, std::optional<QPoint> position = std::nullopt);
    void removeFace(FaceWindow *window);
    [[nodiscard]] const QList<FaceWindow *> &windows() const { return m_windows; }
    [[nodiscard]] QString errorString() const { return m_error; }

    // The context menu of one face; the caller owns it.
    [[nodiscard]] QMenu *menuFor(FaceWindow *window);
    // Writes the open faces and their places now rather than after the next pause.
    void saveNow();

signals:
    void quitRequested();

private:
    void showMenu(FaceWindow *window, const QPoint &globalPosition);
    [[nodiscard]] QPoint firstFreePosition(FaceCatalog::Face face) const;

    SkyTimeline *m_timeline;
    QQmlEngine *m_engine;
    FaceLayoutStore m_store;
    UrlOpener m_opener;
    QList<FaceWindow *> m_windows;
    QTimer m_saveSoon;
    QString m_error;
};
