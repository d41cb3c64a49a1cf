#include "platform/rtf/RtfParser.h"

#include <algorithm>
#include <utility>

namespace {

bool isPlainAscii(std::string_view text)
{
    return std::ranges::all_of(text, [](char c) { return (c >= ' ' && c <= '~') || c == '\t'; });
}

} // namespace

RtfParser::RtfParser(std::string_view rtf, QTextCursor &cursor)
    : m_rtf(rtf)
    , m_rawBytesAreUtf8(rtf.starts_with("{\\urtf") || isMultiByteUtf8(rtf))
    , m_tokenizer(rtf)
    , m_groups(maxRtfGroupDepth)
    , m_fonts(m_codePages)
    , m_body(cursor, m_fonts, m_colors)
{
}

std::optional<RtfError> RtfParser::parse()
{
    while (true) {
        const RtfToken token = m_tokenizer.next();
        const bool isGroupStart = std::exchange(m_isGroupStart, token.kind == RtfToken::Kind::GroupStart);
        switch (token.kind) {
        case RtfToken::Kind::GroupStart: openGroup(token.offset); break;
        case RtfToken::Kind::GroupEnd:
            closeGroup();
            if (!m_groups.isAnyOpen()) {
                readRest();
                return m_error;
            }
            break;
        case RtfToken::Kind::Word: readWord(token, isGroupStart); break;
        case RtfToken::Kind::Text: readText(token.text); break;
        case RtfToken::Kind::HexByte: readHexByte(*token.number); break;
        case RtfToken::Kind::Binary: m_fallbackToSkip = std::max(0, m_fallbackToSkip - 1); break;
        case RtfToken::Kind::End:
            flushBytes();
            m_lastCharacter = character();
            report(RtfError::Reason::UnbalancedGroups, token.offset);
            return m_error;
        }
    }
}

void RtfParser::openGroup(std::size_t offset)
{
    flushBytes();
    m_isIgnorable = false;
    m_fallbackToSkip = 0;
    if (!m_groups.open()) {
        report(RtfError::Reason::TooDeep, offset);
    }
}

void RtfParser::closeGroup()
{
    flushBytes();
    m_isIgnorable = false;
    m_fallbackToSkip = 0;
    m_lastCharacter = character();
    const RtfDestination closed = m_groups.destination();
    if (!m_groups.close()) {
        return;
    }
    if (closed == RtfDestination::FontTable) {
        m_fonts.endEntry();
    }
    if (closed != m_groups.destination()) {
        end(closed);
    }
}

void RtfParser::readWord(const RtfToken &token, bool isGroupStart)
{
    flushBytes();
    const RtfControlWord *row = findRtfControlWord(token.text);
    if (std::exchange(m_isIgnorable, false) && (row == nullptr || row->effect != RtfEffect::Destination)) {
        m_groups.skip();
        return;
    }
    if (skipFallback(row)) {
        return;
    }
    const std::optional<int> value = row != nullptr ? rtfValue(*row, token.number) : std::nullopt;
    if (!value) {
        return;
    }
    if (row->effect == RtfEffect::Ignorable) {
        m_isIgnorable = isGroupStart; // within a group the mark is a slip of some programs
    } else if (row->effect == RtfEffect::Destination) {
        begin(static_cast<RtfDestination>(*value));
    } else {
        apply(row->effect, *value);
    }
}

/// Skips the word \p row (nullptr: an unknown one) if it stands for the last \u.
/// One that is no character ends what stands for it.
bool RtfParser::skipFallback(const RtfControlWord *row)
{
    if (m_fallbackToSkip > 0 && row != nullptr && row->effect == RtfEffect::Character) {
        --m_fallbackToSkip;
        return true;
    }
    m_fallbackToSkip = 0;
    return false;
}

void RtfParser::readText(std::string_view bytes)
{
    m_isIgnorable = false;
    const std::size_t skipped = std::min(bytes.size(), static_cast<std::size_t>(m_fallbackToSkip));
    m_fallbackToSkip -= static_cast<int>(skipped);
    bytes.remove_prefix(skipped);
    if (bytes.empty()) {
        return;
    }
    const bool isBody = m_groups.destination() == RtfDestination::Body;
    if (isBody && m_bytes.empty() && isPlainAscii(bytes)) {
        m_body.appendAscii(bytes, character());
    } else if (isBody && m_rawBytesAreUtf8) {
        flushBytes();
        m_body.append(QString::fromUtf8(bytes.data(), static_cast<qsizetype>(bytes.size())), character());
    } else {
        append(bytes);
    }
}

void RtfParser::readHexByte(int byte)
{
    m_isIgnorable = false;
    if (m_fallbackToSkip > 0) {
        --m_fallbackToSkip;
        return;
    }
    const char c = static_cast<char>(byte);
    append(std::string_view(&c, 1));
}

void RtfParser::readRest()
{
    const std::size_t surplus = m_rtf.find('}', m_tokenizer.offset());
    if (surplus != std::string_view::npos) {
        report(RtfError::Reason::UnbalancedGroups, surplus);
    }
}

void RtfParser::begin(RtfDestination destination)
{
    if (!m_groups.begin(destination)) {
        return;
    }
    if (destination == RtfDestination::ColorTable) {
        m_colors.begin();
    } else if (destination == RtfDestination::Numbering) {
        m_list.begin();
    }
}

void RtfParser::end(RtfDestination destination)
{
    if (destination == RtfDestination::FontTable) {
        character().font = m_fonts.findDefault(character().font);
    } else if (destination == RtfDestination::ColorTable) {
        m_colors.end();
    } else if (destination == RtfDestination::Numbering) {
        m_body.setList(m_list.list());
    }
}

void RtfParser::apply(RtfEffect effect, int value)
{
    switch (m_groups.destination()) {
    case RtfDestination::Body:
        if (!applyToText(effect, value)) {
            m_body.apply(effect, value, character());
        }
        break;
    case RtfDestination::FontTable:
        if (!applyToText(effect, value)) {
            m_fonts.apply(effect, value);
        }
        break;
    case RtfDestination::ColorTable: m_colors.apply(effect, value); break;
    case RtfDestination::Numbering:
    case RtfDestination::NumberingTextBefore:
    case RtfDestination::NumberingTextAfter:
        if (effect == RtfEffect::Font) {
            character().font = m_fonts.find(value, character().font);
        } else if (!applyToText(effect, value)) {
            m_list.apply(effect, value);
        }
        break;
    case RtfDestination::Skipped:
    case RtfDestination::Alternatives:
    case RtfDestination::UnicodeAlternative: break;
    }
}

/// Words that are the same wherever there is text. Returns whether \p effect is
/// one of theirs.
bool RtfParser::applyToText(RtfEffect effect, int value)
{
    constexpr int lastUnit = 0xffff;
    constexpr int lastCodePoint = 0x10ffff;
    if (effect == RtfEffect::Character) {
        append(static_cast<char16_t>(value));
    } else if (effect == RtfEffect::FallbackLength) {
        m_groups.current().fallbackLength = std::max(0, value);
    } else if (effect == RtfEffect::Unicode) {
        // A UTF-16 code unit, written as a signed number; whole code points beyond
        // them occur too.
        if (value > lastUnit && value <= lastCodePoint) {
            append(QChar::highSurrogate(static_cast<char32_t>(value)));
            append(QChar::lowSurrogate(static_cast<char32_t>(value)));
        } else {
            append(static_cast<char16_t>(static_cast<unsigned>(value) & 0xffffU));
        }
        m_fallbackToSkip = m_groups.current().fallbackLength;
    } else {
        return false;
    }
    return true;
}

void RtfParser::append(std::string_view bytes)
{
    switch (m_groups.destination()) {
    case RtfDestination::Body:
    case RtfDestination::NumberingTextBefore:
    case RtfDestination::NumberingTextAfter: m_bytes += bytes; break;
    case RtfDestination::FontTable: m_fonts.append(bytes); break;
    case RtfDestination::ColorTable: m_colors.append(bytes); break;
    case RtfDestination::Skipped:
    case RtfDestination::Alternatives:
    case RtfDestination::UnicodeAlternative:
    case RtfDestination::Numbering: break;
    }
}

void RtfParser::append(char16_t code)
{
    switch (m_groups.destination()) {
    case RtfDestination::Body: m_body.append(code, character()); break;
    case RtfDestination::FontTable: m_fonts.append(code); break;
    case RtfDestination::NumberingTextBefore:
    case RtfDestination::NumberingTextAfter: m_list.append(m_groups.destination(), code); break;
    case RtfDestination::Skipped:
    case RtfDestination::Alternatives:
    case RtfDestination::UnicodeAlternative:
    case RtfDestination::ColorTable:
    case RtfDestination::Numbering: break;
    }
}

void RtfParser::flushBytes()
{
    if (m_bytes.empty()) {
        return;
    }
    const QString text = m_fonts.codePage(character().font).decode(m_bytes);
    m_bytes.clear();
    if (m_groups.destination() == RtfDestination::Body) {
        m_body.append(text, character());
        return;
    }
    for (const QChar c : text) {
        append(c.unicode());
    }
}

void RtfParser::report(RtfError::Reason reason, std::size_t offset)
{
    if (!m_error) {
        m_error = RtfError{reason, offset};
    }
}
