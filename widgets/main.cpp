#include "WidgetProgram.h"

#include <QApplication>
#include <QtQml/qqmlextensionplugin.h>

Q_IMPORT_QML_PLUGIN(Aerolume_CorePlugin)

int main(int argc, char *argv[])
{
    WidgetProgram::prepare(argc, argv);
    QApplication app(argc, argv);
    QApplication::setApplicationName(u"aerolume-widgets"_qs);
    QApplication::setApplicationDisplayName(u"Aerolume Widgets"_qs);
    QApplication::setApplicationVersion(QStringLiteral(AEROLUME_VERSION));
    QApplication::setDesktopFileName(u"aerolume-widgets"_qs);
    return WidgetProgram::run(WidgetProgram::parse(QApplication::arguments()));
}
