#pragma once

#include "SkyEntry.h"

#include <QQuickPaintedItem>
#include <QtQml/qqmlregistration.h>

// The scope of one entry, painted as vectors at the window's pixel density. It is drawn again only when
// the entry or the size changes, which for a widget is every few minutes.
class RadarScope : public QQuickPaintedItem
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(SkyEntry entry READ entry WRITE setEntry NOTIFY entryChanged)
    Q_PROPERTY(int maxBlips READ maxBlips WRITE setMaxBlips NOTIFY maxBlipsChanged)
    // How many aircraft are on the scope, for what a screen reader says about it.
    Q_PROPERTY(int plottedCount READ plottedCount NOTIFY entryChanged)

public:
    explicit RadarScope(QQuickItem *parent = nullptr);

    [[nodiscard]] SkyEntry entry() const { return m_entry; }
    void setEntry(const SkyEntry &entry);
    [[nodiscard]] int maxBlips() const { return m_maxBlips; }
    void setMaxBlips(int maxBlips);
    [[nodiscard]] int plottedCount() const;

    void paint(QPainter *painter) override;

signals:
    void entryChanged();
    void maxBlipsChanged();

private:
    SkyEntry m_entry;
    int m_maxBlips = 40;
};
