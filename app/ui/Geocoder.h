#pragma once

#include <QElapsedTimer>
#include <QHash>
#include <QList>
#include <QObject>
#include <QPointer>
#include <QString>
#include <functional>
#include <optional>

// Addresses to places through OpenStreetMap's Nominatim service: at most one request a second for the
// whole application, answers cached, and asked only when the user presses Look Up.
class Geocoder : public QObject
{
    Q_OBJECT

public:
    struct Placemark
    {
        double latitude = 0;
        double longitude = 0;
        std::optional<QString> locality;           // city, town, village or hamlet
        std::optional<QString> administrativeArea; // state
    };

    // Either places (possibly none) or the words of what went wrong.
    struct Answer
    {
        QList<Placemark> placemarks;
        std::optional<QString> error;
    };

    explicit Geocoder(QObject *parent = nullptr);
    [[nodiscard]] static Geocoder *shared();
    [[nodiscard]] static QString baseURL();

    // Calls `done` once from the event loop, unless `context` is gone by then.
    void search(const QString &text, QObject *context, std::function<void(const Answer &)> done);

    // The places of a Nominatim jsonv2 answer; absent when it isn't one.
    [[nodiscard]] static std::optional<QList<Placemark>> decode(const QByteArray &json);
    // The spacing between two requests; tests make it short.
    void setMinimumIntervalMs(int ms) { m_minimumIntervalMs = ms; }

private:
    void sendNext();

    struct Pending
    {
        QString text;
        QPointer<QObject> context;
        std::function<void(const Answer &)> done;
    };

    QHash<QString, QList<Placemark>> m_cache;
    QList<Pending> m_queue;
    QElapsedTimer m_sinceLast;
    bool m_busy = false;
    int m_minimumIntervalMs = 1000;
};
