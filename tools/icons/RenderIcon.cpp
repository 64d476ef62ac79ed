// Renders the application's SVG icon to square PNGs for the icon theme, at build time, with the same
// Qt SVG code the program draws its symbols with, so no outside converter is needed.
//
//   aerolume-render-icon ICON.svg OUTPUT_DIR SIZE...
// writes OUTPUT_DIR/SIZExSIZE/apps/<name>.png for each size, <name> being the SVG's base name.

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QImage>
#include <QPainter>
#include <QSvgRenderer>
#include <QTextStream>

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    const QStringList arguments = app.arguments().mid(1);
    QTextStream err(stderr);
    if (arguments.size() < 3) {
        err << "usage: aerolume-render-icon ICON.svg OUTPUT_DIR SIZE...\n";
        return 2;
    }
    QSvgRenderer renderer(arguments.at(0));
    if (!renderer.isValid()) {
        err << "cannot read " << arguments.at(0) << '\n';
        return 1;
    }
    const QString name = QFileInfo(arguments.at(0)).completeBaseName();
    const QDir output(arguments.at(1));
    for (const QString &sizeText : arguments.mid(2)) {
        bool ok = false;
        const int size = sizeText.toInt(&ok);
        if (!ok || size < 1 || size > 4096) {
            err << "not a size: " << sizeText << '\n';
            return 2;
        }
        QImage image(size, size, QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::transparent);
        {
            QPainter painter(&image);
            painter.setRenderHint(QPainter::Antialiasing);
            painter.setRenderHint(QPainter::SmoothPixmapTransform);
            renderer.render(&painter, QRectF(0, 0, size, size));
        }
        const QString folder = u"%1x%1/apps"_qs.arg(size);
        if (!output.mkpath(folder)) {
            err << "cannot create " << output.filePath(folder) << '\n';
            return 1;
        }
        const QString file = output.filePath(folder + u'/' + name + u".png"_qs);
        if (!image.convertToFormat(QImage::Format_ARGB32).save(file, "PNG")) {
            err << "cannot write " << file << '\n';
            return 1;
        }
    }
    return 0;
}
