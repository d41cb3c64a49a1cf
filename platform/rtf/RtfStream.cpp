#include "platform/rtf/RtfStream.h"

#include "platform/rtf/RtfControlWords.h"

#include <cstdint>
#include <utility>

namespace {

constexpr std::string_view lineEnd = "\r\n";

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
    for (const QChar c : text) {
        character(c.unicode(), page);
    }
}

void RtfStream::ascii(std::string_view text)
{
    endWord();
    m_written += text;
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

void RtfStream::character(char16_t c, const RtfCodePage &page)
{
    endWord();
    switch (c) {
    case u'\\':
    case u'{':
    case u'}':
        m_written += '\\';
        m_written += static_cast<char>(c);
        break;
    case u'\t': m_written += "\\tab "; break;
    case u'\v':
    case QChar::LineSeparator:
        m_written += "\\line";
        m_written += lineEnd;
        break;
    default:
        if (c >= u' ' && c <= u'~') {
            m_written += static_cast<char>(c);
        } else {
            unusual(c, page);
        }
    }
}

void RtfStream::unusual(char16_t c, const RtfCodePage &page)
{
    if (c >= 0x80) {
        const QByteArray bytes = page.encode(c);
        if (!bytes.isEmpty()) {
            for (const char byte : bytes) {
                hexByte(byte);
            }
            return;
        }
        const std::string_view word = rtfWordForCharacter(c);
        if (!word.empty()) {
            m_written += '\\';
            m_written += word;
            m_written += word.size() > 1 ? " " : ""; // a symbol of one character takes no blank
            return;
        }
    }
    m_written += "\\u" + std::to_string(static_cast<std::int16_t>(c)) + '?';
}

void RtfStream::hexByte(char byte)
{
    constexpr std::string_view digits = "0123456789abcdef";
    const auto value = static_cast<unsigned char>(byte);
    m_written += "\\'";
    m_written += digits[value >> 4U];
    m_written += digits[value & 15U];
}
