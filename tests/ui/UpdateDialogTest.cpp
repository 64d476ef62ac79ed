#include "DefaultsStore.h"
#include "LoopbackHttpServer.h"
#include "SymbolImageProvider.h"
#include "UpdateDialogPresenter.h"
#include "UpdaterModel.h"

#include "ItemTexts.h"
#include <QDesktopServices>
#include <QDir>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickStyle>
#include <QQuickWindow>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QtQml/qqmlextensionplugin.h>
#include <memory>

Q_IMPORT_QML_PLUGIN(Aerolume_MapPlugin)
Q_IMPORT_QML_PLUGIN(Aerolume_CorePlugin)

namespace {

QByteArray appcast(const QString &version, const QString &base)
{
    return (u"<?xml version=\"1.0\" encoding=\"utf-8\"?>\n"
            "<rss version=\"2.0\" "
            "xmlns:sparkle=\"http://www.andymatuschak.org/xml-namespaces/sparkle\"><channel>"
            "<title>Aerolume</title><item><title>Version %1</title>"
            "<sparkle:version>%1</sparkle:version><sparkle:shortVersionString>%1</sparkle:shortVersionString>"
            "<description><![CDATA[<h3>What is new</h3><ul><li>Faster radar sweeps</li>"
            "<li>Quieter update banner</li></ul>]]></description>"
            "<link>%2/download/</link><enclosure url=\"%2/aerolume-%1.tar.gz\" sparkle:version=\"%1\"/>"
            "</item></channel></rss>"_qs)
        .arg(version, base)
        .toUtf8();
}

} // namespace

// The update dialog and the list's banner on the shared updater, against a feed on loopback: what the
// dialog says in each outcome, its buttons, and the banner that leads to it.
class UpdateDialogTest : public QObject
{
    Q_OBJECT

    QTemporaryDir m_dir;
    QString m_pictures;
    LoopbackHttpServer m_server;
    QByteArray m_feed;
    int m_status = 200;
    std::unique_ptr<QQmlEngine> m_engine;
    UpdateDialogPresenter *m_presenter = nullptr;
    QUrl m_opened;

    UpdaterModel *updater() const { return UpdaterModel::shared(); }
    QQuickWindow *dialog() const { return m_presenter->dialog(); }

    QQuickItem *item(QQuickWindow *window, const QString &name) const
    {
        return window->findChild<QQuickItem *>(name);
    }

    void click(QQuickWindow *window, const QString &name)
    {
        QQuickItem *target = item(window, name);
        QVERIFY2(target && target->isVisible(), qPrintable(name));
        const QPointF centre = target->mapToScene(QPointF(target->width() / 2, target->height() / 2));
        QTest::mouseClick(window, Qt::LeftButton, {}, centre.toPoint());
    }

    void save(QQuickWindow *window, const QString &name)
    {
        const QImage image = window->grabWindow();
        QVERIFY(!image.isNull());
        QVERIFY(image.save(m_pictures + u'/' + name));
    }

    void openSessionAndWaitFor(UpdaterModel::SessionState state)
    {
        m_presenter->checkForUpdates();
        QVERIFY(dialog());
        QVERIFY(QTest::qWaitForWindowExposed(dialog()));
        QTRY_COMPARE(updater()->sessionState(), state);
    }

public slots:
    void captureUrl(const QUrl &url) { m_opened = url; }

private slots:
    void initTestCase()
    {
        QVERIFY(m_dir.isValid());
        for (const char *variable :
             {"XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_STATE_HOME", "XDG_RUNTIME_DIR", "XDG_CACHE_HOME"})
            qputenv(variable, m_dir.filePath(QString::fromLatin1(variable)).toUtf8());
        qputenv("DBUS_SESSION_BUS_ADDRESS", "disabled:");
        qputenv("AEROLUME_UPDATE_FEED_URL", (m_server.baseUrl() + u"/appcast.xml"_qs).toUtf8());
        m_feed = appcast(u"0.2.0"_qs, m_server.baseUrl());
        m_server.route("/appcast.xml", [this](const LoopbackHttpServer::Request &) {
            return LoopbackHttpServer::Response{m_status, m_status == 200 ? m_feed : QByteArray(),
                                                "application/rss+xml", false, false};
        });
        QDesktopServices::setUrlHandler(u"http"_qs, this, "captureUrl");
        m_pictures = QDir::currentPath() + u"/pictures"_qs;
        QDir().mkpath(m_pictures);
        QQuickStyle::setStyle(u"Fusion"_qs);

        m_engine = std::make_unique<QQmlEngine>();
        m_engine->addImportPath(u"qrc:/qt/qml"_qs);
        m_engine->addImageProvider(u"symbol"_qs, new SymbolImageProvider());
        QQmlComponent probe(m_engine.get());
        probe.setData(
            "import QtQml\nimport Aerolume.App\nQtObject { property var presenter: UpdateDialogPresenter }",
            QUrl());
        std::unique_ptr<QObject> object(probe.create());
        QVERIFY2(object, qPrintable(probe.errorString()));
        m_presenter = qvariant_cast<UpdateDialogPresenter *>(object->property("presenter"));
        QVERIFY(m_presenter);
        QVERIFY(m_presenter->canCheckForUpdates());
    }

    void cleanupTestCase()
    {
        QDesktopServices::unsetUrlHandler(u"http"_qs);
        m_engine.reset();
    }

    void init() { QTest::failOnWarning(QRegularExpression(u"qrc:/"_qs)); }

    void bannerLeadsToTheDialog()
    {
        // The list's sidebar on its own, for its status bar.
        QQmlComponent component(m_engine.get());
        component.setData(
            "import QtQuick\nimport Aerolume.App\n"
            "Window { width: 320; height: 420; visible: true; AircraftListView { anchors.fill: parent } }",
            QUrl(u"qrc:/test/ListWindow.qml"_qs));
        std::unique_ptr<QQuickWindow> list(qobject_cast<QQuickWindow *>(component.create()));
        QVERIFY2(list, qPrintable(component.errorString()));
        QVERIFY(QTest::qWaitForWindowExposed(list.get()));
        QQuickItem *banner = item(list.get(), u"updateBanner"_qs);
        QVERIFY(banner);
        QVERIFY(!banner->isVisible());

        updater()->probeQuietly();
        QTRY_VERIFY(banner->isVisible());
        QCOMPARE(banner->property("text").toString(), u"0.2.0 available"_qs);
        save(list.get(), u"update-banner.png"_qs);
        {
            const QRectF area = banner->mapRectToScene(QRectF(0, 0, banner->width(), banner->height()));
            const QImage zoomed = list->grabWindow().copy(area.toAlignedRect().adjusted(-4, -4, 4, 4));
            QVERIFY(zoomed.scaled(zoomed.size() * 4).save(m_pictures + u"/update-banner-zoom.png"_qs));
        }

        click(list.get(), u"updateBanner"_qs);
        QVERIFY(dialog());
        QVERIFY(QTest::qWaitForWindowExposed(dialog()));
        QVERIFY(updater()->sessionInProgress());
        // Opening the dialog is the attention that takes the banner away.
        QTRY_VERIFY(!banner->isVisible());
        QTRY_COMPARE(updater()->sessionState(), UpdaterModel::SessionState::UpdateFound);
        // Closed by the window manager's button, the session ends all the same.
        dialog()->close();
        QTRY_VERIFY(!updater()->sessionInProgress());
        QVERIFY(!dialog()->isVisible());
    }

    void updateFoundAndDownload()
    {
        openSessionAndWaitFor(UpdaterModel::SessionState::UpdateFound);
        const QStringList texts = ItemTexts::ofWindow(dialog());
        QVERIFY2(texts.contains(u"A new version of Aerolume is available!"_qs),
                 qPrintable(texts.join(u" | ")));
        QVERIFY(texts.contains(u"Aerolume 0.2.0 is now available—you have " AEROLUME_VERSION
                               ". Would you like to download it now?"_qs));
        QVERIFY(item(dialog(), u"releaseNotes"_qs)
                    ->property("text")
                    .toString()
                    .contains(u"Faster radar sweeps"_qs));
        for (const QString &button : {u"Skip This Version"_qs, u"Remind Me Later"_qs, u"Download"_qs,
                                      u"Check for updates automatically"_qs})
            QVERIFY2(texts.contains(button), qPrintable(button));
        QVERIFY(!texts.contains(u"OK"_qs));
        save(dialog(), u"update-found.png"_qs);

        click(dialog(), u"downloadButton"_qs);
        QCOMPARE(m_opened, QUrl(m_server.baseUrl() + u"/download/"_qs));
        QTRY_VERIFY(!dialog()->isVisible());
        QVERIFY(!updater()->sessionInProgress());
    }

    void skipThisVersion()
    {
        openSessionAndWaitFor(UpdaterModel::SessionState::UpdateFound);
        click(dialog(), u"skipButton"_qs);
        QTRY_VERIFY(!dialog()->isVisible());
        QCOMPARE(DefaultsStore::shared()->stringValue(u"skippedUpdateVersion"_qs), u"0.2.0"_qs);
        // A quiet check no longer raises the banner for it.
        const int before = m_server.requestCount("/appcast.xml");
        QSignalSpy finished(updater(), &UpdaterModel::quietCheckFinished);
        updater()->probeQuietly();
        QTRY_COMPARE(finished.size(), 1);
        QCOMPARE(m_server.requestCount("/appcast.xml"), before + 1);
        QVERIFY(finished.at(0).at(0).toBool());
        QVERIFY(!updater()->updateAvailable());
        DefaultsStore::shared()->remove(u"skippedUpdateVersion"_qs);
    }

    void automaticChecksBox()
    {
        openSessionAndWaitFor(UpdaterModel::SessionState::UpdateFound);
        QQuickItem *box = item(dialog(), u"automaticChecksBox"_qs);
        QVERIFY(box->property("checked").toBool());
        click(dialog(), u"automaticChecksBox"_qs);
        QVERIFY(!box->property("checked").toBool());
        QCOMPARE(DefaultsStore::shared()->value(u"automaticallyChecksForUpdates"_qs).toBool(), false);
        QVERIFY(!updater()->automaticallyChecksForUpdates());
        click(dialog(), u"automaticChecksBox"_qs);
        QVERIFY(updater()->automaticallyChecksForUpdates());
        click(dialog(), u"remindButton"_qs);
        QTRY_VERIFY(!dialog()->isVisible());
        QVERIFY(!updater()->sessionInProgress());
    }

    void upToDate()
    {
        m_feed = appcast(QStringLiteral(AEROLUME_VERSION), m_server.baseUrl());
        openSessionAndWaitFor(UpdaterModel::SessionState::UpToDate);
        const QStringList texts = ItemTexts::ofWindow(dialog());
        QVERIFY2(texts.contains(u"You’re up to date!"_qs), qPrintable(texts.join(u" | ")));
        QVERIFY(
            texts.contains(u"Aerolume " AEROLUME_VERSION " is currently the newest version available."_qs));
        QVERIFY(!texts.contains(u"Download"_qs));
        save(dialog(), u"update-up-to-date.png"_qs);
        // Escape closes it, and with it the session.
        QTest::keyClick(dialog(), Qt::Key_Escape);
        QTRY_VERIFY(!dialog()->isVisible());
        QVERIFY(!updater()->sessionInProgress());
        m_feed = appcast(u"0.2.0"_qs, m_server.baseUrl());
    }

    void checkFailed()
    {
        m_status = 500;
        openSessionAndWaitFor(UpdaterModel::SessionState::Failed);
        const QStringList texts = ItemTexts::ofWindow(dialog());
        QVERIFY2(texts.contains(u"Update Error!"_qs), qPrintable(texts.join(u" | ")));
        QVERIFY(texts.contains(u"OK"_qs));
        save(dialog(), u"update-failed.png"_qs);
        click(dialog(), u"closeButton"_qs);
        QTRY_VERIFY(!dialog()->isVisible());
        QVERIFY(!updater()->sessionInProgress());
        m_status = 200;
    }

    // Shown by anything else (a window registry, say), the dialog opens its own session.
    void showingTheWindowOpensASession()
    {
        QVERIFY(dialog());
        QVERIFY(!updater()->sessionInProgress());
        QSignalSpy started(updater(), &UpdaterModel::sessionStarted);
        dialog()->show();
        QTRY_COMPARE(started.size(), 1);
        QTRY_COMPARE(updater()->sessionState(), UpdaterModel::SessionState::UpdateFound);
        dialog()->close();
        QTRY_VERIFY(!updater()->sessionInProgress());
        QCOMPARE(started.size(), 1);
    }
};

QTEST_MAIN(UpdateDialogTest)
#include "UpdateDialogTest.moc"
