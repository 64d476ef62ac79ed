#include "TextRules.h"

#include <QTextBoundaryFinder>

#include <charconv>

namespace TextRules {

namespace {

char32_t firstCodePoint(QStringView text)
{
    if (text.isEmpty())
        return 0;
    const QChar first = text.front();
    if (first.isHighSurrogate() && text.size() > 1 && text[1].isLowSurrogate())
        return QChar::surrogateToUcs4(first, text[1]);
    return first.unicode();
}

QString fromCodePoint(char32_t codePoint)
{
    return QString::fromUcs4(&codePoint, 1);
}

} // namespace

bool isBlank(char32_t codePoint)
{
    return codePoint == U'\t' || QChar::category(codePoint) == QChar::Separator_Space;
}

QString trimmed(QStringView text)
{
    qsizetype begin = 0;
    qsizetype end = text.size();
    // Blanks outside the BMP don't exist, so single UTF-16 units suffice here.
    while (begin < end && isBlank(text[begin].unicode()))
        ++begin;
    while (end > begin && isBlank(text[end - 1].unicode()))
        --end;
    return text.sliced(begin, end - begin).toString();
}

QString upperCased(QStringView text)
{
    return text.toString().toUpper();
}

QString capitalizedWords(QStringView text)
{
    QString result;
    result.reserve(text.size());
    bool atWordStart = true;
    for (qsizetype i = 0; i < text.size();) {
        char32_t codePoint = text[i].unicode();
        qsizetype width = 1;
        if (text[i].isHighSurrogate() && i + 1 < text.size() && text[i + 1].isLowSurrogate()) {
            codePoint = QChar::surrogateToUcs4(text[i], text[i + 1]);
            width = 2;
        }
        const QString single = fromCodePoint(codePoint);
        if (QChar::isSpace(codePoint) || QChar::isPunct(codePoint)) {
            result += single;
            atWordStart = true;
        } else if (atWordStart) {
            result += single.toUpper();
            atWordStart = false;
        } else {
            result += single.toLower();
        }
        i += width;
    }
    return result;
}

QStringList graphemeClusters(const QString &text, qsizetype limit)
{
    QStringList clusters;
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, text);
    qsizetype start = 0;
    while (limit < 0 || clusters.size() < limit) {
        const qsizetype next = finder.toNextBoundary();
        if (next < 0)
            break;
        clusters.append(text.mid(start, next - start));
        start = next;
    }
    return clusters;
}

bool isLetter(QStringView cluster)
{
    return !cluster.isEmpty() && QChar::isLetter(firstCodePoint(cluster));
}

bool isNumber(QStringView cluster)
{
    return !cluster.isEmpty() && QChar::isNumber(firstCodePoint(cluster));
}

QString fixedPoint(double value, int decimals)
{
    char buffer[400]; // enough for any double in fixed notation with a few decimals
    const auto [end, error] = std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::fixed, decimals);
    if (error != std::errc())
        return QString::number(value, 'f', decimals);
    return QString::fromLatin1(buffer, end - buffer);
}

} // namespace TextRules
