#include "LogbookFigures.h"

#include <QRegularExpression>
#include <QSet>
#include <QVariantMap>

LogbookFigures::LogbookFigures(QObject *parent) : QObject(parent) {}

SightingLog *LogbookFigures::log() const
{
    return m_log;
}

void LogbookFigures::setLog(SightingLog *log)
{
    if (log == m_log)
        return;
    if (m_log)
        disconnect(m_log, nullptr, this, nullptr);
    m_log = log;
    // Synchronous, so that a record that adds an aircraft shows in the same pass of the event loop.
    if (m_log)
        connect(m_log, &SightingLog::storeChanged, this, &LogbookFigures::changed);
    emit logChanged();
    emit changed();
}

int LogbookFigures::todayCount() const
{
    return m_log ? m_log->todayCount() : 0;
}

int LogbookFigures::lastSevenDaysCount() const
{
    return m_log ? m_log->lastSevenDaysCount() : 0;
}

int LogbookFigures::typeCount() const
{
    return m_log ? m_log->typeCount() : 0;
}

qint64 LogbookFigures::totalUnique() const
{
    return m_log ? m_log->totalUnique() : 0;
}

QStringList LogbookFigures::dayLabels() const
{
    QStringList labels;
    if (!m_log)
        return QStringList(chartDays, QString());
    QSet<QString> taken;
    for (const SightingLog::DayPoint &point : m_log->lastDays(chartDays)) {
        // Around a change of daylight saving one day can come twice; the chart's axis drops a repeated
        // label, so the second one is told apart by a mark that takes no room.
        QString label = point.label;
        while (taken.contains(label))
            label.append(QChar(0x200B));
        taken.insert(label);
        labels.append(label);
    }
    return labels;
}

QVariantList LogbookFigures::dayCounts() const
{
    QVariantList counts;
    if (!m_log)
        return QVariantList(chartDays, 0.0);
    for (const SightingLog::DayPoint &point : m_log->lastDays(chartDays))
        counts.append(double(point.count));
    return counts;
}

QVariantList LogbookFigures::hourCounts() const
{
    QVariantList counts;
    if (!m_log)
        return QVariantList(24, 0.0);
    for (qint64 count : m_log->hourlyProfile())
        counts.append(double(count));
    return counts;
}

QVariantList LogbookFigures::recentTypes() const
{
    QVariantList types;
    if (!m_log)
        return types;
    const QLocale locale;
    for (const SightingLog::NewType &type : m_log->recentNewTypes(recentTypeLimit)) {
        types.append(QVariantMap{{u"code"_qs, type.id},
                                 {u"name"_qs, type.name},
                                 {u"date"_qs, abbreviatedDate(type.date.toLocalTime().date(), locale)}});
    }
    return types;
}

QString LogbookFigures::abbreviatedDate(QDate date, const QLocale &locale)
{
    // Qt has no abbreviated date style: take the locale's long date, shorten the month's name and drop
    // the weekday with the punctuation that joins it to the rest.
    QString format = locale.dateFormat(QLocale::LongFormat);
    format.replace(u"MMMM"_qs, u"MMM"_qs);
    static const QRegularExpression weekdayFirst(u"dddd[,.،、]?\\s*"_qs);
    static const QRegularExpression weekdayLast(u"[,،、]?\\s*dddd"_qs);
    format.remove(weekdayFirst);
    format.remove(weekdayLast);
    return locale.toString(date, format.trimmed());
}
