#include "Gazetteer.h"

#include "GeoMath.h"

#include <algorithm>

namespace {

const QString us = u"United States"_qs;
const QString wa = u"Washington"_qs;
const QString swiss = u"Schweiz/Suisse/Svizzera/Svizra"_qs;
const QString germany = u"Deutschland"_qs;

} // namespace

const Gazetteer &Gazetteer::instance()
{
    static const Gazetteer gazetteer;
    return gazetteer;
}

Gazetteer::Gazetteer()
{
    const QString city = u"city"_qs;
    m_places = {
        {u"Seattle"_qs, {}, {47.6038321, -122.330062}, city, u"King County"_qs, wa, us, u"us"_qs, 0.80},
        {u"Portland"_qs,
         {},
         {45.5202471, -122.674194},
         city,
         u"Multnomah County"_qs,
         u"Oregon"_qs,
         us,
         u"us"_qs,
         0.78},
        {u"Portland"_qs,
         {},
         {43.6573605, -70.2586618},
         city,
         u"Cumberland County"_qs,
         u"Maine"_qs,
         us,
         u"us"_qs,
         0.62},
        {u"Boise"_qs,
         {u"Boise City"_qs},
         {43.6166163, -116.200886},
         city,
         u"Ada County"_qs,
         u"Idaho"_qs,
         us,
         u"us"_qs,
         0.66},
        {u"Spokane"_qs, {}, {47.6571934, -117.42351}, city, u"Spokane County"_qs, wa, us, u"us"_qs, 0.64},
        {u"Vancouver"_qs,
         {},
         {49.2608724, -123.113952},
         city,
         u"Metro Vancouver Regional District"_qs,
         u"British Columbia"_qs,
         u"Canada"_qs,
         u"ca"_qs,
         0.77},
        {u"Vancouver"_qs, {}, {45.6306954, -122.6744557}, city, u"Clark County"_qs, wa, us, u"us"_qs, 0.60},
        {u"Forks"_qs, {}, {47.9504, -124.3855}, u"town"_qs, u"Clallam County"_qs, wa, us, u"us"_qs, 0.45},
        {u"Winthrop"_qs, {}, {48.4779, -120.1862}, u"town"_qs, u"Okanogan County"_qs, wa, us, u"us"_qs, 0.40},
        {u"Greenwater"_qs,
         {},
         {47.1526, -121.6426},
         u"village"_qs,
         u"Pierce County"_qs,
         wa,
         us,
         u"us"_qs,
         0.30},
        {u"Mazama"_qs, {}, {48.5923, -120.404}, u"hamlet"_qs, u"Okanogan County"_qs, wa, us, u"us"_qs, 0.30},
        {u"Mount Rainier"_qs,
         {u"Tahoma"_qs},
         {46.8529, -121.7604},
         u"peak"_qs,
         u"Pierce County"_qs,
         wa,
         us,
         u"us"_qs,
         0.60},
        {u"London"_qs,
         {},
         {51.5074456, -0.1277653},
         city,
         u"Greater London"_qs,
         u"England"_qs,
         u"United Kingdom"_qs,
         u"gb"_qs,
         0.85},
        {u"Berlin"_qs, {}, {52.5170365, 13.3888599}, city, {}, u"Berlin"_qs, germany, u"de"_qs, 0.83},
        {u"München"_qs,
         {u"Munich"_qs, u"Muenchen"_qs},
         {48.1371079, 11.5753822},
         city,
         {},
         u"Bayern"_qs,
         germany,
         u"de"_qs,
         0.80},
        {u"Köln"_qs,
         {u"Cologne"_qs, u"Koeln"_qs},
         {50.938361, 6.959974},
         city,
         {},
         u"Nordrhein-Westfalen"_qs,
         germany,
         u"de"_qs,
         0.74},
        {u"Zürich"_qs,
         {u"Zurich"_qs},
         {47.3744489, 8.5410422},
         city,
         u"Bezirk Zürich"_qs,
         u"Zürich"_qs,
         swiss,
         u"ch"_qs,
         0.76},
        {u"Genève"_qs,
         {u"Geneva"_qs, u"Genf"_qs},
         {46.2017559, 6.1466014},
         city,
         {},
         u"Genève"_qs,
         swiss,
         u"ch"_qs,
         0.72},
        {u"Paris"_qs,
         {},
         {48.8588897, 2.320041},
         city,
         u"Paris"_qs,
         u"Île-de-France"_qs,
         u"France"_qs,
         u"fr"_qs,
         0.88},
        {u"Amsterdam"_qs,
         {},
         {52.3730796, 4.8924534},
         city,
         {},
         u"Noord-Holland"_qs,
         u"Nederland"_qs,
         u"nl"_qs,
         0.80},
        {u"Wien"_qs,
         {u"Vienna"_qs},
         {48.2083537, 16.3725042},
         city,
         {},
         u"Wien"_qs,
         u"Österreich"_qs,
         u"at"_qs,
         0.78},
        {u"Kraków"_qs,
         {u"Cracow"_qs},
         {50.0619474, 19.9368564},
         city,
         {},
         u"województwo małopolskie"_qs,
         u"Polska"_qs,
         u"pl"_qs,
         0.70},
        {u"Reykjavík"_qs,
         {},
         {64.145981, -21.9422367},
         city,
         {},
         u"Höfuðborgarsvæðið"_qs,
         u"Ísland"_qs,
         u"is"_qs,
         0.68},
        {u"São Paulo"_qs,
         {},
         {-23.5506507, -46.6333824},
         city,
         u"Região Imediata de São Paulo"_qs,
         u"São Paulo"_qs,
         u"Brasil"_qs,
         u"br"_qs,
         0.80},
        {u"東京"_qs,
         {u"Tokyo"_qs, u"東京都"_qs},
         {35.6768601, 139.7638947},
         city,
         {},
         u"東京都"_qs,
         u"日本"_qs,
         u"jp"_qs,
         0.82},
        {u"Montréal"_qs,
         {},
         {45.5031824, -73.5698065},
         city,
         u"Montréal (agglomération)"_qs,
         u"Québec"_qs,
         u"Canada"_qs,
         u"ca"_qs,
         0.75},
        {u"Sydney"_qs,
         {},
         {-33.8698439, 151.2082848},
         city,
         u"Council of the City of Sydney"_qs,
         u"New South Wales"_qs,
         u"Australia"_qs,
         u"au"_qs,
         0.80},
        {u"Anchorage"_qs, {}, {61.2163129, -149.894852}, city, {}, u"Alaska"_qs, us, u"us"_qs, 0.65},
        {u"Honolulu"_qs,
         {},
         {21.304547, -157.855676},
         city,
         u"Honolulu County"_qs,
         u"Hawaii"_qs,
         us,
         u"us"_qs,
         0.68},
        {u"Singapore"_qs, {}, {1.2899175, 103.8519072}, city, {}, {}, u"Singapore"_qs, u"sg"_qs, 0.78},
        {u"Ushuaia"_qs,
         {},
         {-54.8069332, -68.3073246},
         city,
         u"Departamento Ushuaia"_qs,
         u"Tierra del Fuego"_qs,
         u"Argentina"_qs,
         u"ar"_qs,
         0.55},
        {u"Cape Town"_qs,
         {u"Kaapstad"_qs},
         {-33.928992, 18.417396},
         city,
         u"City of Cape Town"_qs,
         u"Western Cape"_qs,
         u"South Africa"_qs,
         u"za"_qs,
         0.72},
    };
    for (qsizetype i = 0; i < m_places.size(); ++i)
        m_places[i].index = int(i);
}

QString Gazetteer::folded(const QString &text)
{
    QString plain;
    for (const QChar c : text.normalized(QString::NormalizationForm_KD)) {
        if (c.category() != QChar::Mark_NonSpacing)
            plain.append(c);
    }
    return plain.toCaseFolded().simplified();
}

QList<Gazetteer::Place> Gazetteer::search(const QString &query, int limit) const
{
    const QString wanted = folded(query.section(u',', 0, 0));
    if (wanted.isEmpty() || limit <= 0)
        return {};
    QList<Place> found;
    for (const Place &place : m_places) {
        const QStringList names = QStringList{place.name} + place.otherNames;
        const bool match = std::any_of(names.cbegin(), names.cend(), [&wanted](const QString &name) {
            const QString candidate = folded(name);
            return candidate.startsWith(wanted) || wanted.startsWith(candidate + u' ');
        });
        if (match)
            found.append(place);
    }
    std::stable_sort(found.begin(), found.end(),
                     [](const Place &a, const Place &b) { return a.importance > b.importance; });
    if (found.size() > limit)
        found.resize(limit);
    return found;
}

std::optional<Gazetteer::Place> Gazetteer::nearest(GeoPoint point, double maxKm) const
{
    std::optional<Place> best;
    double bestKm = maxKm;
    for (const Place &place : m_places) {
        const double km = GeoMath::distanceNM(point, place.position) * 1.852;
        if (km <= bestKm) {
            best = place;
            bestKm = km;
        }
    }
    return best;
}
