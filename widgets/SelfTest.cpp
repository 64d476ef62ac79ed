#include "SelfTest.h"

#include "FaceCatalog.h"
#include "FaceRenderer.h"
#include "FaceWindow.h"
#include "SkyEntry.h"

#include <QDir>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQmlError>
#include <QQuickItem>

namespace {

const QString moduleFolder = u":/qt/qml/Aerolume/Core"_qs;

} // namespace

SelfTest::SelfTest(QQmlEngine *engine, QObject *parent) : QObject(parent), m_engine(engine) {}

QStringList SelfTest::run()
{
    QStringList problems;
    m_engine->setOutputWarningsToStandardError(false);
    connect(m_engine, &QQmlEngine::warnings, this, [&problems](const QList<QQmlError> &warnings) {
        for (const QQmlError &warning : warnings)
            problems.append(warning.toString());
    });

    const QStringList files = QDir(moduleFolder).entryList({u"*.qml"_qs}, QDir::Files, QDir::Name);
    if (files.isEmpty())
        problems.append(u"no QML files in "_qs + moduleFolder);
    for (const QString &file : files) {
        QQmlComponent component(m_engine, QUrl(u"qrc"_qs + moduleFolder + u'/' + file));
        if (!component.isReady())
            problems.append(component.errorString().trimmed());
    }

    const QDateTime now = QDateTime::currentDateTime();
    const HomeLocation home(45.5, -122.6, u"Home"_qs);
    const QList<std::pair<QString, SkyEntry>> states{
        {u"sample sky"_qs, SkyEntry::sample(std::nullopt, now)},
        {u"other accent"_qs, SkyEntry::sample(u"#FF8A00"_qs, now)},
        {u"empty sky"_qs, SkyEntry(now, {}, 25, home, false, u"km"_qs, std::nullopt)},
        {u"no home"_qs, SkyEntry()},
    };
    FaceRenderer renderer(m_engine);
    for (FaceCatalog::Face face : FaceCatalog::all()) {
        for (const auto &[name, entry] : states) {
            if (renderer.render(face, entry).isNull())
                problems.append(u"%1, %2: %3"_qs.arg(FaceCatalog::key(face), name, renderer.errorString()));
        }
        FaceWindow window(face, m_engine);
        if (!window.frame())
            problems.append(u"%1 window: %2"_qs.arg(FaceCatalog::key(face), window.errorString()));
        else
            window.setEntry(states.first().second);
    }
    disconnect(m_engine, &QQmlEngine::warnings, this, nullptr);
    return problems;
}
