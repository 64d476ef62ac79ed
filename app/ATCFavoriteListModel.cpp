#include "ATCFavoriteListModel.h"

#include <QSet>

ATCFavoriteListModel::ATCFavoriteListModel(QObject *parent) : QAbstractListModel(parent) {}

int ATCFavoriteListModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(m_rows.size());
}

QVariant ATCFavoriteListModel::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid))
        return {};
    const ATCFavorite &favorite = m_rows.at(index.row());
    switch (role) {
    case FavoriteIdRole:
        return favorite.id.toString(QUuid::WithoutBraces).toUpper();
    case Qt::DisplayRole:
    case NameRole:
        return favorite.name;
    case UrlRole:
        return favorite.url;
    default:
        return {};
    }
}

QHash<int, QByteArray> ATCFavoriteListModel::roleNames() const
{
    return {{FavoriteIdRole, "favoriteId"}, {NameRole, "name"}, {UrlRole, "url"}};
}

void ATCFavoriteListModel::update(const QList<ATCFavorite> &rows)
{
    const qsizetype countBefore = m_rows.size();

    QSet<QUuid> kept;
    for (const ATCFavorite &favorite : rows)
        kept.insert(favorite.id);
    for (qsizetype row = m_rows.size() - 1; row >= 0; --row) {
        if (!kept.contains(m_rows[row].id)) {
            beginRemoveRows({}, int(row), int(row));
            m_rows.removeAt(row);
            endRemoveRows();
        }
    }

    // What stays must be the head of the new list; anything else (never made by appending and removing)
    // is shown afresh.
    bool isHead = m_rows.size() <= rows.size();
    for (qsizetype row = 0; isHead && row < m_rows.size(); ++row)
        isHead = m_rows[row].id == rows[row].id;
    if (!isHead) {
        beginResetModel();
        m_rows = rows;
        endResetModel();
    } else {
        for (qsizetype row = 0; row < m_rows.size(); ++row) {
            if (m_rows[row] != rows[row]) {
                m_rows[row] = rows[row];
                emit dataChanged(index(int(row)), index(int(row)));
            }
        }
        if (rows.size() > m_rows.size()) {
            beginInsertRows({}, int(m_rows.size()), int(rows.size() - 1));
            m_rows.append(rows.sliced(m_rows.size()));
            endInsertRows();
        }
    }
    if (m_rows.size() != countBefore)
        emit countChanged();
}
