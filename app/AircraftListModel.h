#pragma once

#include "Aircraft.h"

#include <QAbstractListModel>
#include <QList>

#include <vector>

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
    [[nodiscard]] QList<Aircraft> rows() const;
    // The row of an aircraft, or -1.
    Q_INVOKABLE [[nodiscard]] int indexOf(const QString &hex) const;
    // The address at a row, or empty.
    Q_INVOKABLE [[nodiscard]] QString hexAt(int row) const;

signals:
    void countChanged();

private:
    // Each row points at its record in the list last given, which the model keeps (shared, never copied
    // element by element): a move shifts pointers, and a changed row is pointed at its new record. Each
    // keeps its address as a number, so that a refresh matches rows without hashing or reading text.
    struct Row
    {
        const Aircraft *aircraft = nullptr;
        quint64 key = 0;
    };
    [[nodiscard]] quint64 keyOf(const QString &hex);

    QList<Aircraft> m_list;
    std::vector<Row> m_rows;
    // Addresses too long or unusual to be packed into a number get one of their own, for good.
    QHash<QString, quint64> m_otherKeys;
};
