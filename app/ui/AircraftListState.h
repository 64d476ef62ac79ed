#pragma once

#include <QObject>
#include <QPointer>
#include <QString>
#include <QtQml/qqmlregistration.h>

#include "FlightStore.h"

// What the aircraft list says about itself: the filter menu's label, the count, the placeholder over an
// empty list and the status bar, all derived from the flight store and kept current.
class AircraftListState : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(FlightStore *store READ store WRITE setStore NOTIFY storeChanged)
    Q_PROPERTY(QString filterLabel READ filterLabel NOTIFY changed)
    Q_PROPERTY(bool anyFilter READ anyFilter NOTIFY changed)
    Q_PROPERTY(QString countText READ countText NOTIFY changed)
    Q_PROPERTY(QString placeholder READ placeholder NOTIFY changed)
    Q_PROPERTY(QString placeholderTitle READ placeholderTitle NOTIFY changed)
    Q_PROPERTY(QString placeholderSymbol READ placeholderSymbol NOTIFY changed)
    Q_PROPERTY(QString placeholderDescription READ placeholderDescription NOTIFY changed)
    Q_PROPERTY(QString statusText READ statusText NOTIFY changed)
    Q_PROPERTY(bool statusIsError READ statusIsError NOTIFY changed)
    Q_PROPERTY(bool statusDotWarns READ statusDotWarns NOTIFY changed)

public:
    explicit AircraftListState(QObject *parent = nullptr);

    [[nodiscard]] FlightStore *store() const { return m_store; }
    void setStore(FlightStore *store);

    // "All Aircraft", one filter's menu label, or "3 Filters".
    [[nodiscard]] QString filterLabel() const;
    [[nodiscard]] bool anyFilter() const;
    // "12 of 40" while a filter is on, else empty.
    [[nodiscard]] QString countText() const;
    // Which placeholder covers the list: "" (none), "noMatches", "noData", "paused", "checking", "quiet".
    [[nodiscard]] QString placeholder() const;
    [[nodiscard]] QString placeholderTitle() const;
    [[nodiscard]] QString placeholderSymbol() const;
    [[nodiscard]] QString placeholderDescription() const;
    [[nodiscard]] QString statusText() const;
    [[nodiscard]] bool statusIsError() const;
    // Orange while paused or in trouble, green otherwise.
    [[nodiscard]] bool statusDotWarns() const;

    // The menu label of a filter, by its raw value.
    Q_INVOKABLE [[nodiscard]] static QString filterMenuLabel(const QString &filter);
    Q_INVOKABLE [[nodiscard]] static QString filterSymbol(const QString &filter);
    Q_INVOKABLE [[nodiscard]] static QStringList filterNames();
    // Empties the filters and the search.
    Q_INVOKABLE void showAll();

signals:
    void storeChanged();
    void changed();

private:
    QPointer<FlightStore> m_store;
};
