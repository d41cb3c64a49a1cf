#include "platform/rtf/RtfStream.h"

#include "platform/rtf/RtfControlWords.h"

#include <QChar>

#include <cstdint>
#include <utility>

namespace {

constexpr std::string_view lineEnd = "\r\n";
constexpr char32_t lastUnit = 0xffff;

constexpr bool isControl(char32_t c)
{
    return c < U' ' || c == U'\x7f';
}

/// Whether \p c is ASCII that may stand as it is in text of \p page.
bool isItsOwnByte(char32_t c, const RtfCodePage &page)
{
    if (c > U'~' || isControl(c)) {
        return false;
    }
    return page.keepsAscii() || page.encode(c) == QByteArray(1, static_cast<char>(c));
}

/// Whether \p unit is written as it is in every page that keeps ASCII.
constexpr bool isPlain(QChar unit)
{
    return unit >= u' ' && unit <= u'~' && unit != u'\\' && unit != u'{' && unit != u'}';
}

} // namespace

void RtfStream::open()
{
    m_written += '{';
    m_wordIsOpen = false;
}

void RtfStream::close()
{
    m_written += '}';
    m_wordIsOpen = false;
}

void RtfStream::endLine()
{
    m_written += lineEnd;
    m_wordIsOpen = false;
}

void RtfStream::word(std::string_view name)
{
    m_written += '\\';
    m_written += name;
    m_wordIsOpen = true;
}

void RtfStream::word(std::string_view name, int number)
{
    word(name);
    m_written += std::to_string(number);
}

void RtfStream::ignorable()
{
    m_written += "\\*";
}

void RtfStream::text(QStringView text, const RtfCodePage &page)
{
    for (qsizetype index = 0; index < text.size(); ++index) {
        const QChar unit = text[index];
        if (isPlain(unit) && page.keepsAscii()) {
            endWord();
            m_written += static_cast<char>(unit.unicode());
            continue;
        }
        if (unit.isHighSurrogate() && index + 1 < text.size() && text[index + 1].isLowSurrogate()) {
            character(QChar::surrogateToUcs4(unit, text[++index]), page);
        } else {
            character(unit.unicode(), page);
        }
    }
}

void RtfStream::text(QStringView text)
{
    static const RtfCodePage plain(defaultCodePage);
    for (const QChar c : text) {
        if (c.unicode() < 0x80) {
            character(c.unicode(), plain);
        } else {
            endWord();
            unicode(c.unicode());
        }
    }
}

void RtfStream::ascii(std::string_view text)
{
    endWord();
    m_written += text;
}

void RtfStream::group(std::string_view source)
{
    m_written += source;
    m_wordIsOpen = false;
}

void RtfStream::semicolon()
{
    m_written += ';';
    m_wordIsOpen = false;
}

void RtfStream::symbolBullet()
{
    m_written += "\\'B7"; // in the capitals that the old programs use
    m_wordIsOpen = false;
}

void RtfStream::endWord()
{
    if (std::exchange(m_wordIsOpen, false)) {
        m_written += ' ';
    }
}

void RtfStream::character(char32_t c, const RtfCodePage &page)
{
    endWord();
    switch (c) {
    case U'\t': m_written += "\\tab "; break;
    case U'\v':
    case QChar::LineSeparator:
        m_written += "\\line";
        m_written += lineEnd;
        break;
    default:
        if (isItsOwnByte(c, page)) {
            m_written += c == U'\\' || c == U'{' || c == U'}' ? "\\" : "";
            m_written += static_cast<char>(c);
        } else {
            unusual(c, page);
        }
    }
}

void RtfStream::unusual(char32_t c, const RtfCodePage &page)
{
    const QByteArray bytes = isControl(c) ? QByteArray() : page.encode(c);
    if (!bytes.isEmpty()) {
        for (const char byte : bytes) {
            hexByte(byte);
        }
        return;
    }
    const std::string_view word = c <= lastUnit ? rtfWordForCharacter(static_cast<char16_t>(c)) : std::string_view();
    if (!word.empty()) {
        m_written += '\\';
        m_written += word;
        m_written += word.size() > 1 ? " " : ""; // a symbol of one character takes no blank
        return;
    }
    for (const char16_t unit : QChar::fromUcs4(c)) {
        unicode(unit);
    }
}

void RtfStream::unicode(char16_t unit)
{
    m_written += "\\u" + std::to_string(static_cast<std::int16_t>(unit)) + '?';
}

void RtfStream::hexByte(char byte)
{
    constexpr std::string_view digits = "0123456789abcdef";
    const auto value = static_cast<unsigned char>(byte);
    m_written += "\\'";
    m_written += digits[value >> 4U];
    m_written += digits[value & 15U];
}
