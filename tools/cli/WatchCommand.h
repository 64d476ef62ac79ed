#pragma once

#include <QObject>
#include <QStringList>
#include <optional>

class FlightStore;

// `aerolume-cli watch [--count N] [--json]`: the real flight store, headless, one line per applied
// refresh or failure.
class WatchCommand : public QObject
{
    Q_OBJECT

public:
    struct Options
    {
        std::optional<int> count;
        bool json = false;
    };

    [[nodiscard]] static std::optional<Options> parse(const QStringList &arguments, QString *error);
    [[nodiscard]] static QString usage();

    WatchCommand(Options options, FlightStore *store, QObject *parent = nullptr);

    // The lines as printed.
    [[nodiscard]] static QString appliedLine(const FlightStore &store, const QString &source, bool json);
    [[nodiscard]] static QString failedLine(const QString &message, bool json);

signals:
    void finished(int exitCode);

private:
    void print(const QString &line);

    Options m_options;
    int m_printed = 0;
};
