#include "platform/rtf/RtfListMark.h"

#include "platform/rtf/RtfListWriter.h"

#include <algorithm>
#include <array>
#include <string>

namespace {

/// A longer text is no mark that was counted.
constexpr qsizetype longestMark = 64;

bool isDigit(QChar c)
{
    return c >= QLatin1Char('0') && c <= QLatin1Char('9');
}

bool isLowerLetter(QChar c)
{
    return c >= QLatin1Char('a') && c <= QLatin1Char('z');
}

bool isUpperLetter(QChar c)
{
    return c >= QLatin1Char('A') && c <= QLatin1Char('Z');
}

bool isAlphanumeric(QChar c)
{
    return isDigit(c) || isLowerLetter(c) || isUpperLetter(c);
}

bool isOfLetters(RtfListStyle style)
{
    return style == RtfListStyle::LowerLetter || style == RtfListStyle::UpperLetter;
}

bool isRoman(RtfListStyle style)
{
    return style == RtfListStyle::LowerRoman || style == RtfListStyle::UpperRoman;
}

/// The roman number \p lower, in small letters; 0 if it is none.
int romanValue(const std::string &lower)
{
    constexpr std::string_view digits = "ivxlcdm";
    constexpr auto values = std::to_array({1, 5, 10, 50, 100, 500, 1000});
    constexpr std::size_t longest = 15; // mmmdccclxxxviii
    if (lower.size() > longest) {
        return 0;
    }
    int value = 0;
    int last = 0;
    for (auto c = lower.rbegin(); c != lower.rend(); ++c) {
        const std::size_t digit = digits.find(*c);
        if (digit == std::string_view::npos) {
            return 0;
        }
        value += values[digit] < last ? -values[digit] : values[digit];
        last = std::max(last, values[digit]);
    }
    return value > 0 && rtfListNumber(RtfListStyle::LowerRoman, value) == lower ? value : 0;
}

/// The place of \p lower, in small letters, in the order a to z, aa to zz; 0 if it
/// is longer.
int letterValue(const std::string &lower)
{
    constexpr int letters = 26;
    if (lower.size() > 2) {
        return 0;
    }
    int value = 0;
    for (const char c : lower) {
        value = value * letters + (c - 'a' + 1);
    }
    return value;
}

struct Number
{
    RtfListStyle style = RtfListStyle::None;
    int value = 0;
};

std::optional<Number> readLetters(const std::string &lower, bool isUpper, RtfListStyle hint)
{
    const int roman = romanValue(lower);
    const int letter = letterValue(lower);
    const bool looksRoman = lower.size() > 1 || lower == "i";
    const bool takesRoman = roman > 0 && (letter == 0 || isRoman(hint) || (looksRoman && !isOfLetters(hint)));
    if (takesRoman) {
        return Number{isUpper ? RtfListStyle::UpperRoman : RtfListStyle::LowerRoman, roman};
    }
    if (letter > 0) {
        return Number{isUpper ? RtfListStyle::UpperLetter : RtfListStyle::LowerLetter, letter};
    }
    return std::nullopt;
}

/// The number or letter that \p text is, all of it.
std::optional<Number> readNumber(QStringView text, RtfListStyle hint)
{
    constexpr qsizetype mostDigits = 9; // all fit into an int
    if (std::ranges::all_of(text, isDigit)) {
        return text.size() <= mostDigits ? std::optional(Number{RtfListStyle::Decimal, text.toInt()}) : std::nullopt;
    }
    const bool isUpper = std::ranges::all_of(text, isUpperLetter);
    if (!isUpper && !std::ranges::all_of(text, isLowerLetter)) {
        return std::nullopt;
    }
    return readLetters(text.toString().toLower().toStdString(), isUpper, hint);
}

qsizetype startOfRun(QStringView text, qsizetype end)
{
    while (end > 0 && isAlphanumeric(text[end - 1])) {
        --end;
    }
    return end;
}

/// Where the numbers begin of which the last stands from \p start on.
qsizetype startOfNumbers(QStringView text, qsizetype start)
{
    while (start >= 2 && (text[start - 1] == QLatin1Char('.') || text[start - 1] == QLatin1Char('-'))) {
        const qsizetype outer = startOfRun(text, start - 1);
        if (outer == start - 1 || !readNumber(text.mid(outer, start - 1 - outer), RtfListStyle::None)) {
            break;
        }
        start = outer;
    }
    return start;
}

} // namespace

std::optional<RtfListMark> readListMark(QStringView text, RtfListStyle hint)
{
    const RtfListMark bullet{{RtfListStyle::Bullet, 1, {}, {}}, 1};
    const QStringView mark = text.trimmed();
    if (mark.isEmpty()) {
        return std::nullopt;
    }
    const bool isHollowBullet = mark == QLatin1Char('o') && !isOfLetters(hint);
    if (mark.size() > longestMark || isHollowBullet) {
        return bullet;
    }
    const auto lastOfNumber = std::find_if(mark.rbegin(), mark.rend(), isAlphanumeric);
    const qsizetype end = lastOfNumber.base() - mark.begin();
    const qsizetype start = startOfRun(mark, end);
    if (start == end) {
        return bullet;
    }
    const auto number = readNumber(mark.mid(start, end - start), hint);
    if (!number) {
        return bullet;
    }
    const QString before = mark.left(startOfNumbers(mark, start)).toString();
    return RtfListMark{{number->style, number->value, before, mark.mid(end).toString()}, number->value};
}
