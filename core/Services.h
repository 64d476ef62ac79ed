#pragma once

#include <QString>

// Addresses and display names of the services Aerolume talks to. Each base address can be replaced by
// an environment variable, read at the moment of use, which is how tests and the local simulator point
// the program at loopback.
namespace Services {

// Base addresses, without a trailing slash.
[[nodiscard]] QString primaryFeedURL();
[[nodiscard]] QString fallbackFeedURL();

// The names the feeds are credited by; a user who points Aerolume at their own receiver can name it.
[[nodiscard]] QString primaryFeedName();
[[nodiscard]] QString fallbackFeedName();

// The route and photo lookup services, and the names they are credited by.
[[nodiscard]] QString routeURL();
[[nodiscard]] QString photoURL();
[[nodiscard]] QString routeServiceName();
[[nodiscard]] QString photoServiceName();

// The track viewer (its page takes "/?icao=HEX").
[[nodiscard]] QString globeViewerURL();
// The directory's direct streams, and the domain every one of its hosts ends with.
[[nodiscard]] QString streamURL();
[[nodiscard]] QString towerFeedsDomain();
// The name the stream directory is credited by.
[[nodiscard]] QString towerFeedsName();

} // namespace Services
