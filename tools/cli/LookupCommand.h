#pragma once

#include <QObject>
#include <QStringList>

// `aerolume-cli route CALLSIGN`, `aerolume-cli photo HEX` and `aerolume-cli resolve-stream URL`: one lookup,
// its result or "none" (status 1).
class LookupCommand : public QObject
{
    Q_OBJECT

public:
    explicit LookupCommand(QObject *parent = nullptr);
    [[nodiscard]] static QString usage();
    // Starts the lookup for the arguments after "aerolume-cli"; false (and a message) for bad arguments.
    bool start(const QStringList &arguments);

signals:
    void finished(int exitCode);

private:
    void print(const QString &text, int exitCode);
};
