#include "platform/rtf/RtfTokenizer.h"

#include <algorithm>
#include <array>
#include <limits>

namespace {

constexpr bool isLetter(char c)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

constexpr bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

// What a byte is in a run of text.
constexpr std::uint8_t endOfText = 1;
constexpr std::uint8_t notPlain = 2;

constexpr auto textBytes = []() {
    std::array<std::uint8_t, 256> table{};
    for (std::size_t byte = 0; byte < table.size(); ++byte) {
        table[byte] = (byte >= ' ' && byte <= '~') || byte == '\t' ? 0 : notPlain;
    }
    for (const char end : {'\\', '{', '}', '\r', '\n'}) {
        table[static_cast<unsigned char>(end)] |= endOfText;
    }
    return table;
}();

constexpr std::uint8_t textByte(char c)
{
    return textBytes[static_cast<unsigned char>(c)];
}

constexpr bool endsText(char c)
{
    return (textByte(c) & endOfText) != 0;
}

/// Value of the hexadecimal digit \p c, or -1.
constexpr int hexDigit(char c)
{
    if (isDigit(c)) {
        return c - '0';
    }
    if (c >= 'a' && c <= 'f') {
        return c - 'a' + 10;
    }
    if (c >= 'A' && c <= 'F') {
        return c - 'A' + 10;
    }
    return -1;
}

} // namespace

RtfTokenizer::RtfTokenizer(std::string_view rtf)
    : m_rtf(rtf)
{
}

RtfToken RtfTokenizer::next()
{
    if (m_binaryLength > 0 && !atEnd()) {
        const std::size_t start = m_next;
        m_next += std::min(m_binaryLength, m_rtf.size() - m_next);
        m_binaryLength = 0;
        return {RtfToken::Kind::Binary, start, m_rtf.substr(start, m_next - start), {}};
    }
    while (!atEnd()) {
        switch (m_rtf[m_next]) {
        case '\r':
        case '\n': ++m_next; break;
        case '{': return {RtfToken::Kind::GroupStart, m_next, m_rtf.substr(m_next++, 1), {}};
        case '}': return {RtfToken::Kind::GroupEnd, m_next, m_rtf.substr(m_next++, 1), {}};
        case '\\':
            if (const auto token = escape()) {
                return *token;
            }
            break;
        default: return textRun();
        }
    }
    return {RtfToken::Kind::End, m_rtf.size(), {}, {}};
}

RtfToken RtfTokenizer::textRun()
{
    const std::size_t start = m_next;
    std::uint8_t seen = 0;
    for (; !atEnd() && !endsText(m_rtf[m_next]); ++m_next) {
        seen |= textByte(m_rtf[m_next]);
    }
    return {RtfToken::Kind::Text, start, m_rtf.substr(start, m_next - start), {}, seen == 0};
}

std::optional<RtfToken> RtfTokenizer::escape()
{
    const std::size_t start = m_next++;
    if (atEnd()) {
        return std::nullopt;
    }
    const char c = m_rtf[m_next];
    if (isLetter(c)) {
        return word(start);
    }
    ++m_next;
    switch (c) {
    case '\\':
    case '{':
    case '}': return RtfToken{RtfToken::Kind::Text, start, m_rtf.substr(start + 1, 1), {}, true};
    case '\'': return hexByte(start);
    case '\r':
        if (!atEnd() && m_rtf[m_next] == '\n') {
            ++m_next;
        }
        [[fallthrough]];
    case '\n': return RtfToken{RtfToken::Kind::Word, start, "\n", {}};
    default: return RtfToken{RtfToken::Kind::Word, start, m_rtf.substr(start + 1, 1), {}};
    }
}

RtfToken RtfTokenizer::word(std::size_t start)
{
    while (!atEnd() && isLetter(m_rtf[m_next])) {
        ++m_next;
    }
    RtfToken token{RtfToken::Kind::Word, start, m_rtf.substr(start + 1, m_next - start - 1), parameter()};
    if (!atEnd() && m_rtf[m_next] == ' ') {
        ++m_next;
    }
    if (token.text == "bin" && token.number.value_or(0) > 0) {
        m_binaryLength = static_cast<std::size_t>(*token.number);
    }
    return token;
}

std::optional<int> RtfTokenizer::parameter()
{
    const bool negative = m_rtf.size() - m_next >= 2 && m_rtf[m_next] == '-' && isDigit(m_rtf[m_next + 1]);
    if (negative) {
        ++m_next;
    }
    if (atEnd() || !isDigit(m_rtf[m_next])) {
        return std::nullopt;
    }
    constexpr std::int64_t beyond = std::int64_t{std::numeric_limits<int>::max()} + 1;
    std::int64_t value = 0;
    for (; !atEnd() && isDigit(m_rtf[m_next]); ++m_next) {
        value = std::min(value * 10 + (m_rtf[m_next] - '0'), beyond);
    }
    return static_cast<int>(negative ? -value : std::min(value, beyond - 1));
}

std::optional<RtfToken> RtfTokenizer::hexByte(std::size_t start)
{
    int value = 0;
    for (int digit = 0; digit < 2; ++digit) {
        if (atEnd() || endsText(m_rtf[m_next])) {
            return std::nullopt; // a brace or a line break here is what it is anywhere
        }
        const int part = hexDigit(m_rtf[m_next++]);
        value = value < 0 || part < 0 ? -1 : value * 16 + part;
    }
    if (value < 0) {
        return std::nullopt;
    }
    return RtfToken{RtfToken::Kind::HexByte, start, m_rtf.substr(start, m_next - start), value};
}
