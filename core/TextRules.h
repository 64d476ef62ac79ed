#pragma once

#include <QString>
#include <QStringList>
#include <QStringView>

// The text rules every displayed name goes through, so that an aircraft reads the same everywhere.
namespace TextRules {

// Blanks of every kind (Unicode space separators) and the horizontal tab; line breaks are kept.
[[nodiscard]] bool isBlank(char32_t codePoint);

// Removes blanks and tabs at both ends.
[[nodiscard]] QString trimmed(QStringView text);

// Unicode upper-casing of the whole text (full mappings, so "ß" becomes "SS").
[[nodiscard]] QString upperCased(QStringView text);

// Every word with its first letter upper case and the rest lower case; a word begins after white space
// or punctuation.
[[nodiscard]] QString capitalizedWords(QStringView text);

// The first `limit` grapheme clusters (user-perceived characters) of the text, or all when limit < 0.
[[nodiscard]] QStringList graphemeClusters(const QString &text, qsizetype limit = -1);

// Whether a character (grapheme cluster) is a letter / a number, judged by its first code point.
[[nodiscard]] bool isLetter(QStringView cluster);
[[nodiscard]] bool isNumber(QStringView cluster);

// A number with a fixed count of decimals and a point as decimal mark in every locale, rounded as C's
// printf rounds (the exact binary value, ties to even).
[[nodiscard]] QString fixedPoint(double value, int decimals);

} // namespace TextRules
