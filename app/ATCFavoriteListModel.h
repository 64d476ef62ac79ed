#pragma once

#include "ATCFavorite.h"

#include <QAbstractListModel>
#include <QList>

// The saved tower feeds for views, in the user's order. Changes come by difference (entries are only
// ever appended or removed), so a view keeps the delegates of the rows that stay.
class ATCFavoriteListModel : public QAbstractListModel
{
    Q_OBJECT
    Q_PROPERTY(int count READ rowCount NOTIFY countChanged)

public:
    enum Roles
    {
        FavoriteIdRole = Qt::UserRole + 1,
        NameRole,
        UrlRole,
    };
    Q_ENUM(Roles)

    explicit ATCFavoriteListModel(QObject *parent = nullptr);

    [[nodiscard]] int rowCount(const QModelIndex &parent = QModelIndex()) const override;
    [[nodiscard]] QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

    // Brings the rows in line with the given list, in its order.
    void update(const QList<ATCFavorite> &rows);
    [[nodiscard]] const QList<ATCFavorite> &rows() const { return m_rows; }

signals:
    void countChanged();

private:
    QList<ATCFavorite> m_rows;
};
