#pragma once

#include "Aircraft.h"

#include <QDateTime>
#include <QHash>
#include <QList>
#include <QObject>
#include <QSet>
#include <QTimeZone>
#include <QTimer>
#include <functional>
#include <optional>

// The logbook: how many different aircraft passed each local day, in which hour each was first seen,
// when each type was first seen, and a running total. Saved at most once a minute.
class SightingLog : public QObject
{
    Q_OBJECT
    Q_PROPERTY(int todayCount READ todayCount NOTIFY storeChanged)
    Q_PROPERTY(int lastSevenDaysCount READ lastSevenDaysCount NOTIFY storeChanged)
    Q_PROPERTY(int typeCount READ typeCount NOTIFY storeChanged)
    Q_PROPERTY(qint64 totalUnique READ totalUnique NOTIFY storeChanged)

public:
    struct DayStats
    {
        qint64 count = 0;
        QList<qint64> byHour = QList<qint64>(24, 0);
        bool operator==(const DayStats &) const = default;
    };

    struct Store
    {
        QHash<QString, DayStats> days;          // by day key "yyyy-MM-dd"
        QHash<QString, QDateTime> typesFirstSeen; // upper-case type code -> first logged
        qint64 totalUnique = 0;
        QString seenDayKey;
        QSet<QString> seenHexes;
        bool operator==(const Store &) const = default;
    };

    struct DayPoint
    {
        QString id;    // day key
        QString label; // "M/d"
        qint64 count = 0;
    };

    struct NewType
    {
        QString id;
        QString name;
        QDateTime date;
    };

    struct Dependencies
    {
        QString filePath;                // logbook.json
        std::function<QDateTime()> now;  // the current time when empty
        QTimeZone timeZone;              // the system's when invalid
        int saveIntervalMs = 60000;      // 0: no timer, saves only through saveIfDirty()
    };

    explicit SightingLog(Dependencies dependencies, QObject *parent = nullptr);

    // At $XDG_DATA_HOME/Aerolume/logbook.json; made on first use.
    [[nodiscard]] static SightingLog *shared();
    [[nodiscard]] static QString defaultFilePath();

    void record(const QList<Aircraft> &aircraft);
    void saveIfDirty();

    [[nodiscard]] const Store &store() const { return m_store; }
    [[nodiscard]] bool isDirty() const { return m_dirty; }
    [[nodiscard]] QString filePath() const { return m_dependencies.filePath; }
    [[nodiscard]] QString dayKey(const QDateTime &moment) const;

    // Statistics, computed at each call.
    [[nodiscard]] int todayCount() const;
    [[nodiscard]] QList<DayPoint> lastDays(int n) const;
    [[nodiscard]] int lastSevenDaysCount() const;
    [[nodiscard]] QList<qint64> hourlyProfile() const;
    [[nodiscard]] QList<NewType> recentNewTypes(int limit) const;
    [[nodiscard]] int typeCount() const { return int(m_store.typesFirstSeen.size()); }
    [[nodiscard]] qint64 totalUnique() const { return m_store.totalUnique; }

    // The file format: dates as seconds since 2001-01-01 00:00:00 UTC; decoding needs all five keys.
    [[nodiscard]] static QByteArray encode(const Store &store);
    [[nodiscard]] static std::optional<Store> decode(const QByteArray &json);

signals:
    void storeChanged();

private:
    void load();
    void pruneIfNeeded(const QDateTime &now);
    [[nodiscard]] QDateTime local(const QDateTime &moment) const;

    Dependencies m_dependencies;
    Store m_store;
    // Today's addresses that pack into numbers (PackedText), as numbers: the every-refresh question "seen today?"
    // is then answered without reading text. Always a subset of m_store.seenHexes.
    QSet<quint64> m_seenKeys;
    bool m_dirty = false;
    // A file that existed but could not be read: kept aside before the first save replaces it.
    bool m_unreadableFileOnDisk = false;
    QTimer m_saveTimer;
};
