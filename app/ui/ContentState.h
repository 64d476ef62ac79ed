#pragma once

#include <QObject>
#include <QPointer>
#include <QString>
#include <QtQml/qqmlregistration.h>

#include "FlightStore.h"

// The main window's subtitle: how many aircraft are in range and how fresh the picture is.
class ContentState : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(FlightStore *store READ store WRITE setStore NOTIFY storeChanged)
    Q_PROPERTY(QString subtitle READ subtitle NOTIFY subtitleChanged)

public:
    explicit ContentState(QObject *parent = nullptr);

    [[nodiscard]] FlightStore *store() const { return m_store; }
    void setStore(FlightStore *store);
    // "37 aircraft within 25 nm · updated 14:05", or "· paused".
    [[nodiscard]] QString subtitle() const;

    // The radius choices of the toolbar, in nautical miles.
    Q_INVOKABLE [[nodiscard]] static QList<int> radiusChoices() { return {5, 10, 25, 50, 100, 250}; }

signals:
    void storeChanged();
    void subtitleChanged();

private:
    QPointer<FlightStore> m_store;
};
