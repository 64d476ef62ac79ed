#include "SightingLog.h"

#include "AircraftTypes.h"
#include "PackedText.h"
#include "UserDirectories.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSaveFile>
#include <cmath>

namespace {

// 2001-01-01 00:00:00 UTC in seconds since 1970: the epoch of dates in the file.
constexpr double referenceEpoch = 978307200.0;
constexpr int hoursPerDay = 24;
constexpr qsizetype pruneAtDays = 121;
constexpr qint64 keepSeconds = 7776000; // 90 days

double toReferenceSeconds(const QDateTime &moment)
{
    return double(moment.toMSecsSinceEpoch()) / 1000.0 - referenceEpoch;
}

QDateTime fromReferenceSeconds(double seconds)
{
    return QDateTime::fromMSecsSinceEpoch(qint64(std::llround((seconds + referenceEpoch) * 1000.0)), QTimeZone::utc());
}

// Integers in the file must be whole numbers.
std::optional<qint64> wholeNumber(const QJsonValue &value)
{
    if (!value.isDouble())
        return std::nullopt;
    const double number = value.toDouble();
    if (std::trunc(number) != number || std::abs(number) > 9.0e15)
        return std::nullopt;
    return qint64(number);
}

} // namespace

SightingLog::SightingLog(Dependencies dependencies, QObject *parent)
    : QObject(parent), m_dependencies(std::move(dependencies))
{
    if (!m_dependencies.now)
        m_dependencies.now = [] { return QDateTime::currentDateTimeUtc(); };
    if (!m_dependencies.timeZone.isValid())
        m_dependencies.timeZone = QTimeZone::systemTimeZone();
    load();
    if (m_dependencies.saveIntervalMs > 0) {
        m_saveTimer.setInterval(m_dependencies.saveIntervalMs);
        connect(&m_saveTimer, &QTimer::timeout, this,
                [this] { QMetaObject::invokeMethod(this, &SightingLog::saveIfDirty, Qt::QueuedConnection); });
        m_saveTimer.start();
    }
}

SightingLog *SightingLog::shared()
{
    static SightingLog *log = new SightingLog(Dependencies{defaultFilePath(), {}, {}});
    return log;
}

QString SightingLog::defaultFilePath()
{
    return UserDirectories::data() + u"/logbook.json"_qs;
}

QDateTime SightingLog::local(const QDateTime &moment) const
{
    return moment.toTimeZone(m_dependencies.timeZone);
}

QString SightingLog::dayKey(const QDateTime &moment) const
{
    return local(moment).date().toString(u"yyyy-MM-dd");
}

void SightingLog::record(const QList<Aircraft> &aircraft)
{
    const QDateTime now = m_dependencies.now();
    const QString today = dayKey(now);
    const bool newDay = m_store.seenDayKey != today;
    if (newDay) {
        m_store.seenDayKey = today;
        m_store.seenHexes.clear();
        m_seenKeys.clear();
    }
    DayStats day = m_store.days.value(today);
    const int hour = local(now).time().hour();
    bool anyNew = false;
    for (const Aircraft &plane : aircraft) {
        const auto key = PackedText::address(plane.hex());
        if (key ? m_seenKeys.contains(*key) : m_store.seenHexes.contains(plane.hex()))
            continue;
        if (key)
            m_seenKeys.insert(*key);
        m_store.seenHexes.insert(plane.hex());
        ++day.count;
        ++day.byHour[hour];
        ++m_store.totalUnique;
        anyNew = true;
        if (plane.typeCode()) {
            const QString code = plane.typeCode()->toUpper();
            if (!m_store.typesFirstSeen.contains(code))
                m_store.typesFirstSeen.insert(code, now);
        }
    }
    if (!anyNew) {
        // The new day is a change of the store, and what counts as "today" moved with it.
        if (newDay)
            emit storeChanged();
        return;
    }
    m_store.days.insert(today, day);
    pruneIfNeeded(now);
    m_dirty = true;
    emit storeChanged();
}

void SightingLog::pruneIfNeeded(const QDateTime &now)
{
    if (m_store.days.size() < pruneAtDays)
        return;
    const QString cutoff = dayKey(now.addSecs(-keepSeconds));
    for (auto it = m_store.days.begin(); it != m_store.days.end();) {
        if (it.key() < cutoff)
            it = m_store.days.erase(it);
        else
            ++it;
    }
}

void SightingLog::saveIfDirty()
{
    if (!m_dirty)
        return;
    m_dirty = false;
    const QString path = m_dependencies.filePath;
    QDir().mkpath(QFileInfo(path).absolutePath());
    if (m_unreadableFileOnDisk) {
        // Never replace a history we could not read without keeping it.
        const QString aside = path + u".unreadable-"_qs +
                              m_dependencies.now().toUTC().toString(u"yyyyMMdd'T'HHmmss'Z'");
        if (!QFile::exists(path) || QFile::rename(path, aside))
            m_unreadableFileOnDisk = false;
        else
            return; // could not move it aside: keep it, try again at the next save
    }
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return;
    file.write(encode(m_store));
    file.commit();
}

void SightingLog::load()
{
    QFile file(m_dependencies.filePath);
    if (!file.exists())
        return;
    if (!file.open(QIODevice::ReadOnly)) {
        m_unreadableFileOnDisk = true;
        return;
    }
    auto store = decode(file.readAll());
    if (!store) {
        m_unreadableFileOnDisk = true;
        return;
    }
    m_store = std::move(*store);
    for (const QString &hex : std::as_const(m_store.seenHexes)) {
        if (const auto key = PackedText::address(hex))
            m_seenKeys.insert(*key);
    }
}

QByteArray SightingLog::encode(const Store &store)
{
    QJsonObject days;
    for (auto it = store.days.cbegin(); it != store.days.cend(); ++it) {
        QJsonArray byHour;
        for (qint64 count : it->byHour)
            byHour.append(count);
        days.insert(it.key(), QJsonObject{{u"count"_qs, it->count}, {u"byHour"_qs, byHour}});
    }
    QJsonObject types;
    for (auto it = store.typesFirstSeen.cbegin(); it != store.typesFirstSeen.cend(); ++it)
        types.insert(it.key(), toReferenceSeconds(*it));
    QJsonArray hexes;
    for (const QString &hex : store.seenHexes)
        hexes.append(hex);
    const QJsonObject root{{u"days"_qs, days},
                           {u"typesFirstSeen"_qs, types},
                           {u"totalUnique"_qs, store.totalUnique},
                           {u"seenDayKey"_qs, store.seenDayKey},
                           {u"seenHexes"_qs, hexes}};
    return QJsonDocument(root).toJson(QJsonDocument::Compact);
}

std::optional<SightingLog::Store> SightingLog::decode(const QByteArray &json)
{
    const QJsonDocument document = QJsonDocument::fromJson(json);
    if (!document.isObject())
        return std::nullopt;
    const QJsonObject root = document.object();
    const QJsonValue days = root.value(u"days");
    const QJsonValue types = root.value(u"typesFirstSeen");
    const auto total = wholeNumber(root.value(u"totalUnique"));
    const QJsonValue seenDayKey = root.value(u"seenDayKey");
    const QJsonValue seenHexes = root.value(u"seenHexes");
    if (!days.isObject() || !types.isObject() || !total || !seenDayKey.isString() || !seenHexes.isArray())
        return std::nullopt;

    Store store;
    store.totalUnique = *total;
    store.seenDayKey = seenDayKey.toString();
    const QJsonObject dayObject = days.toObject();
    for (auto it = dayObject.constBegin(); it != dayObject.constEnd(); ++it) {
        if (!it->isObject())
            return std::nullopt;
        const QJsonObject entry = it->toObject();
        const auto count = wholeNumber(entry.value(u"count"));
        const QJsonValue byHour = entry.value(u"byHour");
        // Statistics index the hours directly: anything but 24 makes the file unreadable.
        if (!count || !byHour.isArray() || byHour.toArray().size() != hoursPerDay)
            return std::nullopt;
        DayStats stats;
        stats.count = *count;
        const QJsonArray hours = byHour.toArray();
        for (int hour = 0; hour < hoursPerDay; ++hour) {
            const auto value = wholeNumber(hours[hour]);
            if (!value)
                return std::nullopt;
            stats.byHour[hour] = *value;
        }
        store.days.insert(it.key(), stats);
    }
    const QJsonObject typeObject = types.toObject();
    for (auto it = typeObject.constBegin(); it != typeObject.constEnd(); ++it) {
        if (!it->isDouble())
            return std::nullopt;
        store.typesFirstSeen.insert(it.key(), fromReferenceSeconds(it->toDouble()));
    }
    for (const QJsonValue &hex : seenHexes.toArray()) {
        if (!hex.isString())
            return std::nullopt;
        store.seenHexes.insert(hex.toString());
    }
    return store;
}

int SightingLog::todayCount() const
{
    return int(m_store.days.value(dayKey(m_dependencies.now())).count);
}

QList<SightingLog::DayPoint> SightingLog::lastDays(int n) const
{
    QList<DayPoint> points;
    const QDateTime now = m_dependencies.now();
    for (int i = n - 1; i >= 0; --i) {
        // Whole days of seconds, not calendar days, as the chart has always counted them.
        const QDateTime moment = now.addSecs(-qint64(i) * 86400);
        const QString key = dayKey(moment);
        points.append(DayPoint{key, local(moment).date().toString(u"M/d"), m_store.days.value(key).count});
    }
    return points;
}

int SightingLog::lastSevenDaysCount() const
{
    qint64 sum = 0;
    for (const DayPoint &point : lastDays(7))
        sum += point.count;
    return int(sum);
}

QList<qint64> SightingLog::hourlyProfile() const
{
    QList<qint64> profile(hoursPerDay, 0);
    for (const DayPoint &point : lastDays(14)) {
        const auto it = m_store.days.constFind(point.id);
        if (it == m_store.days.constEnd())
            continue;
        for (int hour = 0; hour < hoursPerDay; ++hour)
            profile[hour] += it->byHour[hour];
    }
    return profile;
}

QList<SightingLog::NewType> SightingLog::recentNewTypes(int limit) const
{
    QList<NewType> types;
    for (auto it = m_store.typesFirstSeen.cbegin(); it != m_store.typesFirstSeen.cend(); ++it)
        types.append(NewType{it.key(), AircraftTypes::name(it.key()).value_or(it.key()), *it});
    std::stable_sort(types.begin(), types.end(), [](const NewType &a, const NewType &b) { return a.date > b.date; });
    if (limit >= 0 && types.size() > limit)
        types.resize(limit);
    return types;
}
