#pragma once

#include "Aircraft.h"
#include "HomeLocation.h"

#include <QList>
#include <QString>
#include <functional>

class FeedFetch;
class QNetworkAccessManager;
class QObject;

// The client of the two community ADS-B networks: one asynchronous operation that tries them in a fixed
// order and gives back the aircraft nearest first, credited to the network that answered.
namespace ADSB {

// One network: the name it is credited by, and the request URL for a home point and a whole radius.
struct Source
{
    QString name;
    std::function<QString(const HomeLocation &home, int radiusNM)> url;
};

struct FetchResult
{
    QList<Aircraft> aircraft;
    QString source;
};

struct FetchError
{
    QString message;
    [[nodiscard]] QString description() const { return message; }
};

// The error when no source even had a valid address.
inline constexpr QStringView noSourceReachable = u"No flight data source reachable";
// How long one source may take, from request to the end of its answer.
inline constexpr int requestTimeoutMs = 8000;

// The two networks, primary first; their addresses and names are read from the environment when called.
[[nodiscard]] QList<Source> sources();

// The radius sent to the networks: rounded half away from zero, clamped to 1...250.
[[nodiscard]] int requestRadius(double radiusNM);

// Keeps rows with a position no older than a minute, nearest first; rows without a distance last, and
// rows of equal distance in the feed's order.
[[nodiscard]] QList<Aircraft> filteredAndSorted(const QList<Aircraft> &rows);

// Starts a fetch on the process-wide HTTP client. The returned task reports exactly once, unless it is
// cancelled, and then deletes itself.
FeedFetch *fetch(const HomeLocation &home, double radiusNM, QObject *parent = nullptr);

} // namespace ADSB

Q_DECLARE_METATYPE(ADSB::FetchResult)
Q_DECLARE_METATYPE(ADSB::FetchError)
