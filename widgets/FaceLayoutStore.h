#pragma once

#include "FaceCatalog.h"

#include <QList>
#include <QPoint>
#include <QString>

// Which faces are open and where they stand, kept across launches in the widget program's own settings
// file (the application keeps its own; the two never write the same file).
class FaceLayoutStore
{
public:
    struct Placement
    {
        FaceCatalog::Face face;
        QPoint position;
        bool operator==(const Placement &) const = default;
    };

    // $XDG_CONFIG_HOME/Aerolume/Widgets.conf
    FaceLayoutStore();
    explicit FaceLayoutStore(QString filePath);

    [[nodiscard]] const QString &filePath() const { return m_filePath; }
    // Absent when nothing was ever stored; an empty list is a stored answer of its own.
    [[nodiscard]] std::optional<QList<Placement>> load() const;
    void save(const QList<Placement> &placements);

private:
    QString m_filePath;
};
