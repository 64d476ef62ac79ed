#pragma once

#include "SightingLog.h"

#include <QDate>
#include <QLocale>
#include <QObject>
#include <QPointer>
#include <QStringList>
#include <QVariantList>
#include <QtQml/qqmlregistration.h>

// The figures of the Logbook window, read from a sighting log at every change of it: the four tiles, the
// two charts' bars and the recently spotted types. Nothing is kept between changes.
class LogbookFigures : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(SightingLog *log READ log WRITE setLog NOTIFY logChanged)
    Q_PROPERTY(int todayCount READ todayCount NOTIFY changed)
    Q_PROPERTY(int lastSevenDaysCount READ lastSevenDaysCount NOTIFY changed)
    Q_PROPERTY(int typeCount READ typeCount NOTIFY changed)
    Q_PROPERTY(qint64 totalUnique READ totalUnique NOTIFY changed)
    Q_PROPERTY(QStringList dayLabels READ dayLabels NOTIFY changed)
    Q_PROPERTY(QVariantList dayCounts READ dayCounts NOTIFY changed)
    Q_PROPERTY(QVariantList hourCounts READ hourCounts NOTIFY changed)
    // Up to recentTypeLimit entries, newest first, each {code, name, date} with date as shown.
    Q_PROPERTY(QVariantList recentTypes READ recentTypes NOTIFY changed)

public:
    static constexpr int chartDays = 14;
    static constexpr int tileDays = 7;
    static constexpr int recentTypeLimit = 8;

    explicit LogbookFigures(QObject *parent = nullptr);

    [[nodiscard]] SightingLog *log() const;
    void setLog(SightingLog *log);

    [[nodiscard]] int todayCount() const;
    [[nodiscard]] int lastSevenDaysCount() const;
    [[nodiscard]] int typeCount() const;
    [[nodiscard]] qint64 totalUnique() const;
    [[nodiscard]] QStringList dayLabels() const;
    [[nodiscard]] QVariantList dayCounts() const;
    [[nodiscard]] QVariantList hourCounts() const;
    [[nodiscard]] QVariantList recentTypes() const;

    // A date in the locale's words with the month abbreviated and no weekday: "Mar 5, 2025",
    // "5. März 2025" ("5. Mär. 2025" where the locale abbreviates so), "5 mars 2025".
    [[nodiscard]] static QString abbreviatedDate(QDate date, const QLocale &locale = QLocale());

signals:
    void logChanged();
    void changed();

private:
    QPointer<SightingLog> m_log;
};
