#pragma once

#include <QObject>
#include <QStringList>

class QQmlEngine;

// Loads every QML file of the faces' module, then makes and draws every face in each state it has
// (sample sky, empty sky, no home, another accent), and as a desktop window. Any error or QML warning
// is a problem.
class SelfTest : public QObject
{
    Q_OBJECT

public:
    explicit SelfTest(QQmlEngine *engine, QObject *parent = nullptr);

    // The problems found; empty when all is well.
    [[nodiscard]] QStringList run();

private:
    QQmlEngine *m_engine;
};
