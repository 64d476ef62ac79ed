#include "SettingsModel.h"

#include "DefaultsStore.h"
#include "FeedDecoder.h"
#include "FlightStore.h"
#include "Services.h"

#include <cmath>

namespace {

struct Pane
{
    const char16_t *name;
    const char16_t *title;
    const char16_t *symbol;
};

constexpr Pane paneTable[] = {
    {u"general", u"General", u"gearshape"},
    {u"map", u"Map", u"map"},
    {u"alerts", u"Alerts", u"bell.badge"},
    {u"accessibility", u"Accessibility", u"accessibility"},
    {u"privacy", u"Privacy", u"hand.raised"},
};

} // namespace

SettingsModel::SettingsModel(QObject *parent) : SettingsModel(FlightStore::shared(), DefaultsStore::shared(), parent) {}

SettingsModel::SettingsModel(FlightStore *store, DefaultsStore *defaults, QObject *parent)
    : QObject(parent), m_store(store), m_defaults(defaults)
{
    // The widgets show distances and their accent; a change of either rewrites their file.
    connect(m_defaults, &DefaultsStore::changed, this, [this](const QString &key) {
        if (m_store && (key == u"distanceUnit"_qs || key == u"widgetColorHex"_qs))
            m_store->shareWithWidgets();
    });
}

QVariantList SettingsModel::panes()
{
    QVariantList list;
    for (const Pane &pane : paneTable) {
        list.append(QVariantMap{{u"name"_qs, QString::fromUtf16(pane.name)},
                                {u"title"_qs, QString::fromUtf16(pane.title)},
                                {u"symbol"_qs, QString::fromUtf16(pane.symbol)}});
    }
    return list;
}

QString SettingsModel::paneTitle(const QString &name)
{
    for (const Pane &pane : paneTable) {
        if (name == QStringView(pane.name))
            return QString::fromUtf16(pane.title);
    }
    return QString();
}

QStringList SettingsModel::presets()
{
    return {u"#FF8A00"_qs, u"#FFD60A"_qs, u"#FF375F"_qs, u"#BF5AF2"_qs,
            u"#32D74B"_qs, u"#64D2FF"_qs, u"#0A84FF"_qs, u"#FFFFFF"_qs};
}

QStringList SettingsModel::widgetPresets()
{
    return {u"#73FF99"_qs, u"#FFBF00"_qs, u"#7FD8FF"_qs, u"#FF7A66"_qs, u"#C57FFF"_qs, u"#FFFFFF"_qs};
}

QVariant SettingsModel::previewAircraft()
{
    static const QVariant aircraft = [] {
        const auto decoded = FeedDecoder::decodeAircraft(
            R"({"hex":"abc123","flight":"ASA512","t":"B739","alt_baro":12000,"track":45})");
        return decoded.ok() ? QVariant::fromValue(decoded.value()) : QVariant();
    }();
    return aircraft;
}

QString SettingsModel::privacyText()
{
    return u"Your home coordinates and search radius go to the public ADS-B services (%1 and %2) as the query "
           u"area. When you select an aircraft, its callsign may be sent to %3 to look up the route, and its ICAO "
           u"code to %4 for a photo. ATC audio connects directly to stream URLs you provide. Address lookup is "
           u"handled by OpenStreetMap's Nominatim service. No accounts, no analytics; your home location and "
           u"settings stay on this computer."_qs
        .arg(Services::primaryFeedName(), Services::fallbackFeedName(), Services::routeServiceName(),
             Services::photoServiceName());
}

QString SettingsModel::percentText(double textScale)
{
    // Slider steps of 0.05 land a hair below the whole percent (1.15 × 100 = 114.99…); truncation
    // must not show that as 114%.
    return u"%1%"_qs.arg(static_cast<long long>(std::trunc(textScale * 100 + 1e-6)));
}

void SettingsModel::resetToDefaults()
{
    if (!m_defaults)
        return;
    m_defaults->setValue(u"planeColorHex"_qs, u"#FF8A00"_qs);
    m_defaults->setValue(u"markerScale"_qs, 1.0);
    m_defaults->setValue(u"mapStyleChoice"_qs, u"standard"_qs);
    m_defaults->setValue(u"widgetColorHex"_qs, u"#73FF99"_qs);
    m_defaults->setValue(u"colorByAltitude"_qs, false);
    m_defaults->setValue(u"showTrails"_qs, true);
    m_defaults->setValue(u"trailMinutes"_qs, 1.0);
    m_defaults->setValue(u"trailWidth"_qs, 2.0);
}

void SettingsModel::forgetHome()
{
    if (m_store)
        m_store->setHome(std::nullopt);
}
