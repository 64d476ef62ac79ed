#pragma once

#include "FaceCatalog.h"
#include "SkyEntry.h"

#include <QImage>
#include <QObject>
#include <QString>

#include <memory>

class QQmlEngine;

// Draws faces into images without a screen: each face in its frame, at twice its point size, the
// corners outside the rounded frame transparent. The widget program renders through Qt Quick's software
// renderer (set up before the process shows any Qt Quick window); a program that draws its windows on
// the graphics card, as the application does, gets the same pictures from a window that is never shown.
class FaceRenderer : public QObject
{
    Q_OBJECT

public:
    static constexpr qreal scale = 2;

    explicit FaceRenderer(QQmlEngine *engine, QObject *parent = nullptr);

    // Selects the software renderer for the process; call before any Qt Quick window exists.
    static void useSoftwareRendering();

    // A null image when the face could not be made; errorString() says why.
    [[nodiscard]] QImage render(FaceCatalog::Face face, const SkyEntry &entry);
    // Every face as DIR/<key>.png. False, with errorString(), when one could not be made or written.
    bool writeAll(const QString &directory, const SkyEntry &entry);
    // The file name a face is written to.
    [[nodiscard]] static QString fileName(FaceCatalog::Face face);

    [[nodiscard]] QString errorString() const { return m_error; }

private:
    QImage renderUnshown(FaceCatalog::Face face, const SkyEntry &entry);
    // The face's view on the entry, or null with the error kept.
    std::unique_ptr<QObject> createFace(FaceCatalog::Face face, const SkyEntry &entry);

    QQmlEngine *m_engine;
    QString m_error;
};
