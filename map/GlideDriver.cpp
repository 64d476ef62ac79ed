#include "GlideDriver.h"

#include "MapAnnotation.h"

GlideDriver::GlideDriver(QObject *parent) : QAbstractAnimation(parent) {}

GlideDriver *GlideDriver::shared()
{
    static GlideDriver *driver = new GlideDriver();
    return driver;
}

void GlideDriver::add(MapAnnotation *annotation)
{
    m_annotations.insert(annotation);
    if (state() != Running) {
        m_lastTime = 0;
        start();
    }
}

void GlideDriver::remove(MapAnnotation *annotation)
{
    m_annotations.remove(annotation);
    if (m_annotations.isEmpty() && state() == Running)
        stop();
}

void GlideDriver::updateCurrentTime(int currentTime)
{
    const int elapsed = currentTime - m_lastTime;
    m_lastTime = currentTime;
    if (elapsed <= 0)
        return;
    // A copy: an annotation that arrives leaves the set.
    const QSet<MapAnnotation *> moving = m_annotations;
    for (MapAnnotation *annotation : moving)
        annotation->advanceGlide(elapsed);
}
