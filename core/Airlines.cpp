#include "Airlines.h"

#include "TextRules.h"

namespace Airlines {

const QHash<QString, QString> &table()
{
    static const QHash<QString, QString> airlines{
        {u"AAL"_qs, u"American Airlines"_qs},
        {u"DAL"_qs, u"Delta Air Lines"_qs},
        {u"UAL"_qs, u"United Airlines"_qs},
        {u"SWA"_qs, u"Southwest Airlines"_qs},
        {u"ASA"_qs, u"Alaska Airlines"_qs},
        {u"JBU"_qs, u"JetBlue"_qs},
        {u"NKS"_qs, u"Spirit Airlines"_qs},
        {u"FFT"_qs, u"Frontier Airlines"_qs},
        {u"AAY"_qs, u"Allegiant Air"_qs},
        {u"HAL"_qs, u"Hawaiian Airlines"_qs},
        {u"SCX"_qs, u"Sun Country Airlines"_qs},
        {u"MXY"_qs, u"Breeze Airways"_qs},
        {u"VXP"_qs, u"Avelo Airlines"_qs},
        {u"QXE"_qs, u"Horizon Air"_qs},
        {u"SKW"_qs, u"SkyWest Airlines"_qs},
        {u"ASH"_qs, u"Mesa Airlines"_qs},
        {u"ENY"_qs, u"Envoy Air"_qs},
        {u"RPA"_qs, u"Republic Airways"_qs},
        {u"EDV"_qs, u"Endeavor Air"_qs},
        {u"PDT"_qs, u"Piedmont Airlines"_qs},
        {u"PSA"_qs, u"PSA Airlines"_qs},
        {u"JIA"_qs, u"PSA Airlines"_qs},
        {u"GJS"_qs, u"GoJet Airlines"_qs},
        {u"AWI"_qs, u"Air Wisconsin"_qs},
        {u"UCA"_qs, u"CommuteAir"_qs},
        {u"FDX"_qs, u"FedEx Express"_qs},
        {u"UPS"_qs, u"UPS Airlines"_qs},
        {u"GTI"_qs, u"Atlas Air"_qs},
        {u"ABX"_qs, u"ABX Air"_qs},
        {u"CKS"_qs, u"Kalitta Air"_qs},
        {u"PAC"_qs, u"Polar Air Cargo"_qs},
        {u"ATN"_qs, u"Air Transport International"_qs},
        {u"WGN"_qs, u"Western Global"_qs},
        {u"MTN"_qs, u"Mountain Air Cargo"_qs},
        {u"AMF"_qs, u"Ameriflight"_qs},
        {u"EJA"_qs, u"NetJets"_qs},
        {u"LXJ"_qs, u"Flexjet"_qs},
        {u"XOJ"_qs, u"XOJet"_qs},
        {u"JTL"_qs, u"Jet Linx"_qs},
        {u"ACA"_qs, u"Air Canada"_qs},
        {u"WJA"_qs, u"WestJet"_qs},
        {u"JZA"_qs, u"Air Canada Jazz"_qs},
        {u"POE"_qs, u"Porter Airlines"_qs},
        {u"TSC"_qs, u"Air Transat"_qs},
        {u"FLE"_qs, u"Flair Airlines"_qs},
        {u"AMX"_qs, u"Aeroméxico"_qs},
        {u"VOI"_qs, u"Volaris"_qs},
        {u"VIV"_qs, u"Viva Aerobus"_qs},
        {u"BAW"_qs, u"British Airways"_qs},
        {u"VIR"_qs, u"Virgin Atlantic"_qs},
        {u"AFR"_qs, u"Air France"_qs},
        {u"KLM"_qs, u"KLM"_qs},
        {u"DLH"_qs, u"Lufthansa"_qs},
        {u"SWR"_qs, u"Swiss"_qs},
        {u"AUA"_qs, u"Austrian"_qs},
        {u"IBE"_qs, u"Iberia"_qs},
        {u"EIN"_qs, u"Aer Lingus"_qs},
        {u"SAS"_qs, u"SAS"_qs},
        {u"FIN"_qs, u"Finnair"_qs},
        {u"TAP"_qs, u"TAP Air Portugal"_qs},
        {u"ITY"_qs, u"ITA Airways"_qs},
        {u"LOT"_qs, u"LOT Polish"_qs},
        {u"THY"_qs, u"Turkish Airlines"_qs},
        {u"UAE"_qs, u"Emirates"_qs},
        {u"QTR"_qs, u"Qatar Airways"_qs},
        {u"ETD"_qs, u"Etihad Airways"_qs},
        {u"ELY"_qs, u"El Al"_qs},
        {u"JAL"_qs, u"Japan Airlines"_qs},
        {u"ANA"_qs, u"All Nippon Airways"_qs},
        {u"KAL"_qs, u"Korean Air"_qs},
        {u"AAR"_qs, u"Asiana Airlines"_qs},
        {u"CPA"_qs, u"Cathay Pacific"_qs},
        {u"CAL"_qs, u"China Airlines"_qs},
        {u"EVA"_qs, u"EVA Air"_qs},
        {u"SIA"_qs, u"Singapore Airlines"_qs},
        {u"QFA"_qs, u"Qantas"_qs},
        {u"ANZ"_qs, u"Air New Zealand"_qs},
        {u"CCA"_qs, u"Air China"_qs},
        {u"CES"_qs, u"China Eastern"_qs},
        {u"CSN"_qs, u"China Southern"_qs},
        {u"AIC"_qs, u"Air India"_qs},
        {u"PAL"_qs, u"Philippine Airlines"_qs},
        {u"VJC"_qs, u"VietJet Air"_qs},
        {u"HVN"_qs, u"Vietnam Airlines"_qs},
        {u"LAN"_qs, u"LATAM"_qs},
        {u"TAM"_qs, u"LATAM Brasil"_qs},
        {u"AVA"_qs, u"Avianca"_qs},
        {u"CMP"_qs, u"Copa Airlines"_qs},
        {u"GAF"_qs, u"German Air Force"_qs},
        {u"RCH"_qs, u"US Air Mobility Command"_qs},
        {u"CFC"_qs, u"Canadian Forces"_qs},
    };
    return airlines;
}

namespace {

// The first four grapheme clusters of the normalised callsign when it is an airline's, else nothing.
std::optional<QStringList> airlineClusters(const std::optional<QString> &callsign)
{
    if (!callsign)
        return std::nullopt;
    const QString text = TextRules::upperCased(TextRules::trimmed(*callsign));
    const QStringList clusters = TextRules::graphemeClusters(text, 4);
    if (clusters.size() < 4)
        return std::nullopt;
    for (int i = 0; i < 3; ++i) {
        if (!TextRules::isLetter(clusters[i]))
            return std::nullopt;
    }
    if (!TextRules::isNumber(clusters[3]))
        return std::nullopt;
    return clusters;
}

} // namespace

bool isAirlineCallsign(const std::optional<QString> &callsign)
{
    return airlineClusters(callsign).has_value();
}

std::optional<QString> nameForCallsign(const std::optional<QString> &callsign)
{
    const auto clusters = airlineClusters(callsign);
    if (!clusters)
        return std::nullopt;
    const auto it = table().constFind(clusters->mid(0, 3).join(QString()));
    if (it == table().constEnd())
        return std::nullopt;
    return *it;
}

} // namespace Airlines
