#include "LegendSamples.h"

#include "FeedDecoder.h"
#include "ScopePalette.h"

#include <optional>

namespace {

Aircraft decodeSample(const char *json)
{
    Decoded<Aircraft> decoded = FeedDecoder::decodeAircraft(QByteArray(json));
    // The texts are constants of ours: failing to decode them is a broken build, not a runtime case.
    Q_ASSERT(decoded.ok());
    return decoded.ok() ? decoded.value() : Aircraft();
}

std::optional<QString> accentText(const QString &hex)
{
    return hex.isEmpty() ? std::nullopt : std::optional<QString>(hex);
}

} // namespace

LegendSamples::LegendSamples(QObject *parent) : QObject(parent) {}

const Aircraft &LegendSamples::normal()
{
    static const Aircraft sample =
        decodeSample(R"({"hex":"sample1","flight":"ASA512","t":"B739","alt_baro":12000,"track":45})");
    return sample;
}

const Aircraft &LegendSamples::emergency()
{
    static const Aircraft sample = decodeSample(
        R"({"hex":"sample2","flight":"N123AB","t":"C172","alt_baro":3500,"track":180,"squawk":"7700"})");
    return sample;
}

const Aircraft &LegendSamples::military()
{
    static const Aircraft sample = decodeSample(
        R"({"hex":"sample3","flight":"RCH440","t":"C17","alt_baro":18000,"track":315,"dbFlags":1})");
    return sample;
}

QColor LegendSamples::widgetGold()
{
    return ScopePalette::gold();
}

QColor LegendSamples::widgetRed()
{
    return ScopePalette::emergency();
}

QColor LegendSamples::widgetAccent(const QString &hex)
{
    return ScopePalette::fromHex(accentText(hex)).phosphor();
}

QColor LegendSamples::widgetBackground(const QString &hex)
{
    return ScopePalette::fromHex(accentText(hex)).background();
}
