#include "FaceRenderer.h"

#include <QDir>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickRenderControl>
#include <QQuickRenderTarget>
#include <QQuickWindow>
#include <QSaveFile>
#include <memory>

namespace {

const QUrl frameUrl(u"qrc:/qt/qml/Aerolume/Core/WidgetFrame.qml"_qs);

} // namespace

FaceRenderer::FaceRenderer(QQmlEngine *engine, QObject *parent) : QObject(parent), m_engine(engine) {}

void FaceRenderer::useSoftwareRendering()
{
    QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
}

QString FaceRenderer::fileName(FaceCatalog::Face face)
{
    return FaceCatalog::key(face) + u".png"_qs;
}

QImage FaceRenderer::render(FaceCatalog::Face face, const SkyEntry &entry)
{
    m_error.clear();
    const bool software = QQuickWindow::graphicsApi() == QSGRendererInterface::Software
                          || QQuickWindow::sceneGraphBackend() == u"software"_qs;
    if (!software)
        return renderUnshown(face, entry);
    const QSizeF points = FaceCatalog::pointSize(face);

    QQuickRenderControl control;
    QQuickWindow window(&control);
    window.setColor(Qt::transparent);
    window.setGeometry(0, 0, int(points.width()), int(points.height()));
    window.contentItem()->setSize(points);

    std::unique_ptr<QObject> object = createFace(face, entry);
    auto *item = qobject_cast<QQuickItem *>(object.get());
    if (!item)
        return {};
    item->setParentItem(window.contentItem());
    item->setSize(points);

    QImage image((points * scale).toSize(), QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    image.setDevicePixelRatio(scale);
    QQuickRenderTarget target = QQuickRenderTarget::fromPaintDevice(&image);
    target.setDevicePixelRatio(scale);
    window.setRenderTarget(target);
    // The software renderer paints straight into the image; there is no graphics device to set up.
    control.polishItems();
    control.beginFrame();
    control.sync();
    control.render();
    control.endFrame();
    // Items go before the window that shows them.
    object.reset();
    return image;
}

std::unique_ptr<QObject> FaceRenderer::createFace(FaceCatalog::Face face, const SkyEntry &entry)
{
    QQmlComponent component(m_engine, frameUrl);
    std::unique_ptr<QObject> object(
        component.createWithInitialProperties({{u"face"_qs, FaceCatalog::key(face)},
                                               {u"entry"_qs, QVariant::fromValue(entry)},
                                               {u"linksEnabled"_qs, false}}));
    if (!qobject_cast<QQuickItem *>(object.get()))
        m_error = component.errorString();
    return object;
}

QImage FaceRenderer::renderUnshown(FaceCatalog::Face face, const SkyEntry &entry)
{
    const QSizeF points = FaceCatalog::pointSize(face);
    // A window that is never shown renders one frame of its own when grabbed. Its pixel ratio is the
    // screen's, so the face is drawn scaled by two in a window twice its size.
    QQuickWindow window;
    window.setColor(Qt::transparent);
    window.resize((points * scale).toSize());
    QQuickItem stage(window.contentItem());
    stage.setSize(points);
    stage.setTransformOrigin(QQuickItem::TopLeft);
    stage.setScale(scale);

    std::unique_ptr<QObject> object = createFace(face, entry);
    auto *item = qobject_cast<QQuickItem *>(object.get());
    if (!item)
        return {};
    item->setParentItem(&stage);
    item->setSize(points);
    QImage image = window.grabWindow();
    object.reset();
    if (image.isNull()) {
        m_error = u"the window could not be grabbed"_qs;
        return {};
    }
    image.setDevicePixelRatio(scale);
    return image;
}

bool FaceRenderer::writeAll(const QString &directory, const SkyEntry &entry)
{
    if (!QDir().mkpath(directory)) {
        m_error = u"cannot make the folder %1"_qs.arg(directory);
        return false;
    }
    for (FaceCatalog::Face face : FaceCatalog::all()) {
        const QImage image = render(face, entry);
        if (image.isNull())
            return false;
        QSaveFile file(QDir(directory).filePath(fileName(face)));
        if (!file.open(QIODevice::WriteOnly) || !image.save(&file, "PNG") || !file.commit()) {
            m_error = u"cannot write %1: %2"_qs.arg(file.fileName(), file.errorString());
            return false;
        }
    }
    return true;
}
