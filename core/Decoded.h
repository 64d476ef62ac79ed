#pragma once

#include <QString>
#include <utility>
#include <variant>

// The outcome of decoding: a value, or the text that says what was wrong with the input.
template <typename T>
class Decoded
{
public:
    static Decoded success(T value) { return Decoded(std::move(value)); }
    static Decoded failure(QString error) { return Decoded(Error{std::move(error)}); }

    [[nodiscard]] bool ok() const { return std::holds_alternative<T>(m_state); }
    explicit operator bool() const { return ok(); }

    [[nodiscard]] const T &value() const & { return std::get<T>(m_state); }
    [[nodiscard]] T &&value() && { return std::get<T>(std::move(m_state)); }
    [[nodiscard]] QString error() const { return ok() ? QString() : std::get<Error>(m_state).text; }

private:
    struct Error
    {
        QString text;
    };
    explicit Decoded(T value) : m_state(std::move(value)) {}
    explicit Decoded(Error error) : m_state(std::move(error)) {}

    std::variant<T, Error> m_state;
};
