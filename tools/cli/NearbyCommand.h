#pragma once

#include "ADSB.h"

#include <QObject>
#include <QStringList>
#include <QTextStream>

// `aerolume-cli nearby`: one fetch around a point, printed nearest first as a table or as JSON.
class NearbyCommand : public QObject
{
    Q_OBJECT

public:
    struct Options
    {
        double latitude = 0;
        double longitude = 0;
        double radiusNM = 25.0;
        QString unit = u"mi"_qs;
        bool json = false;
    };

    // Reads the arguments after "nearby"; on a mistake returns nothing and sets `error`.
    [[nodiscard]] static std::optional<Options> parse(const QStringList &arguments, QString *error);
    [[nodiscard]] static QString usage();

    // The outputs, one aircraft a line or row, in the order given.
    [[nodiscard]] static QByteArray toJson(const ADSB::FetchResult &result, const QString &unit,
                                           const QLocale &locale = QLocale());
    [[nodiscard]] static QString toTable(const ADSB::FetchResult &result, const QString &unit,
                                         const QLocale &locale = QLocale());

    explicit NearbyCommand(Options options, QObject *parent = nullptr);
    // Starts the fetch; finished() carries the process exit status.
    void start();

signals:
    void finished(int exitCode);

private:
    Options m_options;
};
