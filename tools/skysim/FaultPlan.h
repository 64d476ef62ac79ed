#pragma once

#include "SkySimReply.h"

#include <QString>
#include <QStringView>
#include <optional>

// How one source misbehaves. Written as text on the command line and in the control API:
//   none           answer normally
//   status:CODE    answer with that HTTP status (200-599) and an empty body, e.g. status:503, status:304
//   empty          200 with an empty body
//   malformed      an answer that parses but is wrong: for the feeds one row that lacks "hex"; each other
//                  module says what it sends
//   badjson        a good answer cut off in the middle
//   delay:MS       a good answer after MS milliseconds (0-600000)
//   drop           close the connection without answering
class FaultPlan
{
public:
    enum class Kind
    {
        None,
        Status,
        Empty,
        Malformed,
        BadJson,
        Delay,
        Drop
    };

    static constexpr int maxDelayMs = 600000;

    FaultPlan() = default;

    // Nothing for text that names no fault.
    [[nodiscard]] static std::optional<FaultPlan> parse(QStringView text);

    [[nodiscard]] Kind kind() const { return m_kind; }
    [[nodiscard]] int statusCode() const { return m_kind == Kind::Status ? m_value : 200; }
    [[nodiscard]] int delayMs() const { return m_kind == Kind::Delay ? m_value : 0; }
    [[nodiscard]] QString toString() const;

    // Does to a good answer what the fault does at the HTTP level. What a malformed answer holds is the
    // business of the module that writes it, which asks kind().
    void applyTo(SkySimReply &reply) const;

    bool operator==(const FaultPlan &) const = default;

private:
    FaultPlan(Kind kind, int value) : m_kind(kind), m_value(value) {}

    Kind m_kind = Kind::None;
    int m_value = 0;
};
