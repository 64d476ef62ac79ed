#pragma once

#include <QString>

// The product's addresses, fixed when the program is built (AEROLUME_WEBSITE_URL,
// AEROLUME_UPDATE_FEED_URL); an environment variable of the same name replaces either, which is how tests
// and the local simulator point the program at loopback. Empty means none is configured.
namespace AppLinks {

[[nodiscard]] QString website();
// The web site with the fragment "#releases"; empty without a web site.
[[nodiscard]] QString releaseHistory();
// The appcast of updates. A variable that is set but empty switches the updater off.
[[nodiscard]] QString updateFeed();

} // namespace AppLinks
