#pragma once

#include <QString>
#include <QStringView>
#include <optional>

// Six-digit hexadecimal colour texts ("#73FF99") as sRGB components from 0 to 1. The widget accent is
// stored this way, typed by the user, so the rules are strict and a bad text simply gives nothing.
namespace HexColor {

struct Components
{
    double red = 0;
    double green = 0;
    double blue = 0;

    bool operator==(const Components &) const = default;
};

// Blanks and tabs around the text are ignored (line breaks are not), a leading "#" is optional, and
// exactly six hexadecimal digits must follow, in either case.
[[nodiscard]] std::optional<Components> components(QStringView text);

} // namespace HexColor
