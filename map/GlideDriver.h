#pragma once

#include <QAbstractAnimation>
#include <QSet>

class MapAnnotation;

// One animation that moves every gliding annotation along, instead of one animation each: with two
// thousand aircraft that is one timer callback a frame, not four thousand property animations.
class GlideDriver : public QAbstractAnimation
{
    Q_OBJECT

public:
    explicit GlideDriver(QObject *parent = nullptr);

    // The driver of the main thread, made on first use.
    [[nodiscard]] static GlideDriver *shared();

    void add(MapAnnotation *annotation);
    void remove(MapAnnotation *annotation);
    [[nodiscard]] int gliding() const { return int(m_annotations.size()); }
    [[nodiscard]] int duration() const override { return -1; }

protected:
    void updateCurrentTime(int currentTime) override;

private:
    QSet<MapAnnotation *> m_annotations;
    int m_lastTime = 0;
};
