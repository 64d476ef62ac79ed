#pragma once

#include "Aircraft.h"

#include <QAbstractListModel>
#include <QList>

// The displayed aircraft as a list model keyed by `hex`. A refresh changes it by difference: rows that
// stay are moved and changed in place, the others inserted or removed, so views keep their delegates
// and markers can glide from the old position to the new one.
class AircraftListModel : public QAbstractListModel
{
    Q_OBJECT
    Q_PROPERTY(int count READ rowCount NOTIFY countChanged)

public:
    enum Roles {
        HexRole = Qt::UserRole + 1,
        AircraftRole,
        DisplayNameRole,
    };
    Q_ENUM(Roles)

    explicit AircraftListModel(QObject *parent = nullptr);

    [[nodiscard]] int rowCount(const QModelIndex &parent = QModelIndex()) const override;
    [[nodiscard]] QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

    // Brings the rows in line with the given list, in its order.
    void update(const QList<Aircraft> &rows);
    [[nodiscard]] const QList<Aircraft> &rows() const { return m_rows; }
    // The row of an aircraft, or -1.
    Q_INVOKABLE [[nodiscard]] int indexOf(const QString &hex) const;
    // The address at a row, or empty.
    Q_INVOKABLE [[nodiscard]] QString hexAt(int row) const;

signals:
    void countChanged();

private:
    QList<Aircraft> m_rows;
};
