#include "FaultPlan.h"

#include <algorithm>

namespace {

std::optional<int> wholeNumber(QStringView text)
{
    if (text.isEmpty() || text.size() > 9)
        return std::nullopt;
    for (const QChar c : text) {
        if (c < u'0' || c > u'9')
            return std::nullopt;
    }
    return text.toInt();
}

} // namespace

std::optional<FaultPlan> FaultPlan::parse(QStringView text)
{
    const QStringView trimmed = text.trimmed();
    if (trimmed == u"none")
        return FaultPlan();
    if (trimmed == u"empty")
        return FaultPlan(Kind::Empty, 0);
    if (trimmed == u"malformed")
        return FaultPlan(Kind::Malformed, 0);
    if (trimmed == u"badjson")
        return FaultPlan(Kind::BadJson, 0);
    if (trimmed == u"drop")
        return FaultPlan(Kind::Drop, 0);
    if (trimmed.startsWith(u"status:")) {
        const auto code = wholeNumber(trimmed.mid(7));
        if (code && *code >= 200 && *code <= 599)
            return FaultPlan(Kind::Status, *code);
        return std::nullopt;
    }
    if (trimmed.startsWith(u"delay:")) {
        const auto milliseconds = wholeNumber(trimmed.mid(6));
        if (milliseconds && *milliseconds <= maxDelayMs)
            return FaultPlan(Kind::Delay, *milliseconds);
        return std::nullopt;
    }
    return std::nullopt;
}

QString FaultPlan::toString() const
{
    switch (m_kind) {
    case Kind::None:
        return u"none"_qs;
    case Kind::Status:
        return u"status:"_qs + QString::number(m_value);
    case Kind::Empty:
        return u"empty"_qs;
    case Kind::Malformed:
        return u"malformed"_qs;
    case Kind::BadJson:
        return u"badjson"_qs;
    case Kind::Delay:
        return u"delay:"_qs + QString::number(m_value);
    case Kind::Drop:
        return u"drop"_qs;
    }
    return QString();
}

void FaultPlan::applyTo(SkySimReply &reply) const
{
    switch (m_kind) {
    case Kind::None:
    case Kind::Malformed:
        break;
    case Kind::Status:
        // In place of whatever the answer was: a stream, a silence, a picture with its cache headers.
        reply.action = SkySimReply::Action::Answer;
        reply.stream.reset();
        reply.headers.clear();
        reply.status = m_value;
        reply.body.clear();
        break;
    case Kind::Empty:
        reply.action = SkySimReply::Action::Answer;
        reply.stream.reset();
        reply.status = 200;
        reply.body.clear();
        break;
    case Kind::BadJson:
        // Any proper prefix of a JSON object is invalid: its closing brace is missing.
        reply.body.truncate(std::max<qsizetype>(1, reply.body.size() / 2));
        break;
    case Kind::Delay:
        reply.delayMs = m_value;
        break;
    case Kind::Drop:
        reply.action = SkySimReply::Action::Drop;
        break;
    }
}
