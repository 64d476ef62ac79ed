#pragma once

#include "ADSB.h"
#include "DefaultsStore.h"
#include "FlightStore.h"
#include "LoopbackHttpServer.h"
#include "WidgetReloader.h"

#include <QCoreApplication>
#include <QDir>
#include <QEventLoop>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>
#include <QTimer>
#include <memory>

// Everything a flight store needs, real and private to one test: XDG folders in a temporary directory,
// a defaults store on the file the application uses there, a widget reloader, a fixed clock and two feed
// networks on a loopback server whose answers each test scripts in advance.
class StoreHarness
{
public:
    using Response = LoopbackHttpServer::Response;

    static inline const QByteArray primaryPath = "/v2/point/";
    static inline const QByteArray fallbackPath = "/api/v2/lat/";

    StoreHarness()
    {
        for (const char *name : {"XDG_DATA_HOME", "XDG_CONFIG_HOME", "XDG_STATE_HOME", "XDG_RUNTIME_DIR"}) {
            const QString dir = m_root.filePath(QString::fromLatin1(name).toLower());
            QDir().mkpath(dir);
            qputenv(name, QFile::encodeName(dir));
        }
        // A bus that isn't there: reload requests must not reach the desktop the tests run on.
        qputenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=" + QFile::encodeName(m_root.filePath(u"no-bus"_qs)));
        qputenv("AEROLUME_PRIMARY_FEED_URL", m_server.baseUrl().toUtf8());
        qputenv("AEROLUME_FALLBACK_FEED_URL", m_server.baseUrl().toUtf8());
        qunsetenv("AEROLUME_PRIMARY_FEED_NAME");
        qunsetenv("AEROLUME_FALLBACK_FEED_NAME");

        m_defaults = std::make_unique<DefaultsStore>(DefaultsStore::defaultFilePath());
        QObject::connect(&m_reloader, &WidgetReloader::reloadRequested, [this] { ++m_reloads; });
        m_server.route(primaryPath, [this](const LoopbackHttpServer::Request &request) {
            return next(m_primaryAnswers, m_primaryDefault, request);
        });
        m_server.route(fallbackPath, [this](const LoopbackHttpServer::Request &request) {
            return next(m_fallbackAnswers, m_fallbackDefault, request);
        });
    }

    ~StoreHarness()
    {
        m_store.reset(); // before the server and the defaults it uses
    }

    StoreHarness(const StoreHarness &) = delete;
    StoreHarness &operator=(const StoreHarness &) = delete;

    [[nodiscard]] QString path(const QString &relative) const { return m_root.filePath(relative); }
    [[nodiscard]] QString widgetFile() const { return path(u"xdg_data_home/Aerolume/widget-config.json"_qs); }
    [[nodiscard]] QString settingsFile() const { return path(u"xdg_config_home/Aerolume/Aerolume.conf"_qs); }
    [[nodiscard]] DefaultsStore &defaults() { return *m_defaults; }
    [[nodiscard]] WidgetReloader &reloader() { return m_reloader; }
    [[nodiscard]] LoopbackHttpServer &server() { return m_server; }
    [[nodiscard]] FlightStore &store() { return *m_store; }

    // Each refresh as the store reported it: "applied SOURCE HEX,HEX" or "failed MESSAGE".
    [[nodiscard]] const QStringList &outcomes() const { return m_outcomes; }
    // Every refresh the store started, with what it asked for.
    [[nodiscard]] const QList<QPair<HomeLocation, double>> &started() const { return m_started; }
    [[nodiscard]] int reloads() const { return m_reloads; }

    void setNow(const QDateTime &now) { m_now = now; }
    [[nodiscard]] QDateTime now() const { return m_now; }

    void storeHome(const HomeLocation &home) { m_defaults->setValue(u"homeLocation"_qs, home.encode()); }

    // The store as the application makes it, without a timer: ticks come from tick(). With
    // countStarts the real feed client still runs, and every start is written down first.
    FlightStore &makeStore(bool countStarts = true)
    {
        if (!countStarts)
            return makeStoreWith({});
        return makeStoreWith([this](const HomeLocation &home, double radiusNM, QObject *parent) {
            m_started.append({home, radiusNM});
            return ADSB::fetch(home, radiusNM, parent);
        });
    }

    FlightStore &makeStoreWith(const FlightStore::FetchStarter &starter)
    {
        m_store = std::make_unique<FlightStore>(
            FlightStore::Dependencies{m_defaults.get(), &m_reloader, starter, [this] { return m_now; }, 0});
        QObject::connect(m_store.get(), &FlightStore::refreshApplied, [this](const QString &source, int) {
            QStringList hexes;
            for (const Aircraft &aircraft : m_store->aircraft())
                hexes.append(aircraft.hex());
            m_outcomes.append(u"applied %1 %2"_qs.arg(source, hexes.join(u',')));
        });
        QObject::connect(m_store.get(), &FlightStore::refreshFailed,
                         [this](const QString &message) { m_outcomes.append(u"failed "_qs + message); });
        return *m_store;
    }

    void destroyStore() { m_store.reset(); }

    // Answers of the primary network, one per request in this order; afterwards the default answer.
    void queuePrimary(const Response &response) { m_primaryAnswers.append(response); }
    void queuePrimary(const QList<QJsonObject> &rows, bool hold = false)
    {
        queuePrimary(answer(rows, "ac", hold));
    }
    void setPrimaryDefault(const Response &response) { m_primaryDefault = response; }
    void queueFallback(const Response &response) { m_fallbackAnswers.append(response); }
    void queueFallback(const QList<QJsonObject> &rows) { queueFallback(answer(rows, "aircraft", false)); }
    void setFallbackDefault(const Response &response) { m_fallbackDefault = response; }

    // Waits until the store has reported this many refreshes in all, or ten seconds have gone by.
    bool waitForOutcomes(qsizetype count)
    {
        if (m_outcomes.size() >= count)
            return true;
        QEventLoop loop;
        const auto check = [&] {
            if (m_outcomes.size() >= count)
                loop.quit();
        };
        const auto applied = QObject::connect(m_store.get(), &FlightStore::refreshApplied, &loop, check);
        const auto failed = QObject::connect(m_store.get(), &FlightStore::refreshFailed, &loop, check);
        QTimer::singleShot(10000, &loop, &QEventLoop::quit);
        loop.exec();
        QObject::disconnect(applied);
        QObject::disconnect(failed);
        return m_outcomes.size() >= count;
    }

    // Waits until the server has received this many requests in all.
    bool waitForRequests(qsizetype count)
    {
        if (m_server.requests().size() >= count)
            return true;
        QEventLoop loop;
        const auto connection = QObject::connect(&m_server, &LoopbackHttpServer::requestReceived, &loop, [&] {
            if (m_server.requests().size() >= count)
                loop.quit();
        });
        QTimer::singleShot(10000, &loop, &QEventLoop::quit);
        loop.exec();
        QObject::disconnect(connection);
        return m_server.requests().size() >= count;
    }

    // Puts text into the settings file as another program (or the user) would, before the store reads it.
    void writeSettings(const QByteArray &lines)
    {
        QDir().mkpath(QFileInfo(settingsFile()).path());
        QFile file(settingsFile());
        if (file.open(QIODevice::WriteOnly))
            file.write("[General]\n" + lines + "\n");
    }

    // Asks for a refresh and waits for its outcome, which it returns.
    QString refresh()
    {
        const qsizetype before = m_outcomes.size();
        m_store->fetchNow();
        if (!waitForOutcomes(before + 1))
            return u"no outcome"_qs;
        return m_outcomes.constLast();
    }

    // Lets everything that has been posted to the event loop so far run, such as a tick.
    static void drain()
    {
        QCoreApplication::sendPostedEvents();
        QCoreApplication::processEvents();
    }

    // A feed row with a position; `distance` puts it in the nearest-first order.
    static QJsonObject row(const QString &hex, double lat, double lon, double distance,
                           const QJsonObject &extra = {})
    {
        QJsonObject object{{u"hex"_qs, hex}, {u"lat"_qs, lat}, {u"lon"_qs, lon}, {u"dst"_qs, distance}};
        for (auto it = extra.begin(); it != extra.end(); ++it)
            object.insert(it.key(), it.value());
        return object;
    }

    static Response status(int code)
    {
        Response response;
        response.status = code;
        response.body = "{}";
        return response;
    }

    static Response answer(const QList<QJsonObject> &rows, const char *listKey, bool hold)
    {
        QJsonArray list;
        for (const QJsonObject &object : rows)
            list.append(object);
        Response response;
        response.body =
            QJsonDocument(QJsonObject{{QString::fromLatin1(listKey), list}}).toJson(QJsonDocument::Compact);
        response.hold = hold;
        return response;
    }

private:
    static Response next(QList<Response> &queue, const Response &fallback,
                         const LoopbackHttpServer::Request &)
    {
        return queue.isEmpty() ? fallback : queue.takeFirst();
    }

    QTemporaryDir m_root;
    LoopbackHttpServer m_server;
    std::unique_ptr<DefaultsStore> m_defaults;
    WidgetReloader m_reloader;
    QDateTime m_now = QDateTime(QDate(2024, 3, 5), QTime(10, 20, 30), Qt::UTC);
    QList<Response> m_primaryAnswers;
    QList<Response> m_fallbackAnswers;
    // An empty list from the primary, an error from the fallback: a success with no aircraft.
    Response m_primaryDefault = answer({}, "ac", false);
    Response m_fallbackDefault = status(500);
    QStringList m_outcomes;
    QList<QPair<HomeLocation, double>> m_started;
    int m_reloads = 0;
    std::unique_ptr<FlightStore> m_store;
};
