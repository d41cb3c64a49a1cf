#include "platform/rtf/RtfParser.h"

#include "platform/rtf/RtfLimits.h"

#include <algorithm>
#include <utility>

namespace {

/// Whether what \p destination has is text of the document.
bool isText(RtfDestination destination)
{
    return destination == RtfDestination::Body || destination == RtfDestination::Note ||
           destination == RtfDestination::TextBox || destination == RtfDestination::Margin;
}

/// Whether bytes are text in the code page of their font there.
bool isDecoded(RtfDestination destination)
{
    return isText(destination) || destination == RtfDestination::ListText ||
           destination == RtfDestination::FieldInstruction || destination == RtfDestination::NumberingTextBefore ||
           destination == RtfDestination::NumberingTextAfter;
}

bool isAscii(std::string_view text)
{
    return std::ranges::none_of(text, [](char c) { return static_cast<signed char>(c) < 0; });
}

} // namespace

RtfParser::RtfParser(std::string_view rtf, QTextCursor &cursor, bool margins)
    : m_rtf(rtf)
    , m_rawBytesAreUtf8(rtf.starts_with("{\\urtf") || isMultiByteUtf8(rtf))
    , m_margins(margins)
    , m_tokenizer(rtf)
    , m_groups(maxRtfGroupDepth)
    , m_fonts(m_codePages)
    , m_body(cursor, m_fonts, m_colors, m_links, m_listTable)
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
            if (!m_groups.isAnyOpen() && !readNext()) {
                return m_error;
            }
            break;
        case RtfToken::Kind::Word: readWord(token, isGroupStart); break;
        case RtfToken::Kind::Text: readText(token.text, token.isPlain); break;
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
    m_groupStart = offset;
    if (!m_groups.open()) {
        report(RtfError::Reason::TooDeep, offset);
    }
}

void RtfParser::closeGroup()
{
    flushBytes();
    m_isIgnorable = false;
    m_fallbackToSkip = 0;
    const RtfCharacter inner = std::exchange(m_lastCharacter, character());
    const RtfGroup group = m_groups.current();
    if (!m_groups.close()) {
        return;
    }
    if (group.symbol) {
        endField(group, inner);
    }
    if (group.destination == RtfDestination::FontTable) {
        m_fonts.endEntry();
    }
    if (group.begun) {
        end(*group.begun);
    }
}

void RtfParser::readWord(const RtfToken &token, bool isGroupStart)
{
    flushBytes();
    const RtfControlWord *row = findRtfControlWord(token.text);
    const bool isIgnorable = std::exchange(m_isIgnorable, false);
    if (isIgnorable && (row == nullptr || row->effect != RtfEffect::Destination)) {
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
        begin(static_cast<RtfDestination>(*value), token, isIgnorable);
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

void RtfParser::readText(std::string_view bytes, bool isPlain)
{
    m_isIgnorable = false;
    const std::size_t skipped = std::min(bytes.size(), static_cast<std::size_t>(m_fallbackToSkip));
    m_fallbackToSkip -= static_cast<int>(skipped);
    bytes.remove_prefix(skipped);
    if (bytes.empty()) {
        return;
    }
    const bool isBody = isText(m_groups.destination());
    if (isBody && m_bytes.empty() && isPlain && codePage().keepsAscii()) {
        m_body.appendAscii(bytes, character());
    } else if (isBody && m_rawBytesAreUtf8 && !isAscii(bytes)) {
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

/// Behind the end of the text: returns whether it was followed by another one, as
/// programs write that put texts one behind the other.
bool RtfParser::readNext()
{
    const std::string_view rest = m_tokenizer.rest();
    const std::size_t next = rest.find("{\\rtf");
    if (next != std::string_view::npos) {
        std::string between(rest.substr(0, next));
        std::erase_if(between,
                      [](char c) { return std::string_view("\0\r\n{}", 5).find(c) != std::string_view::npos; });
        if (between.find_first_not_of(" \t") != std::string::npos) {
            readText(between, false);
            flushBytes();
        }
        m_tokenizer.skip(next);
        return true;
    }
    const std::size_t surplus = rest.find('}');
    if (surplus != std::string_view::npos) {
        report(RtfError::Reason::UnbalancedGroups, m_tokenizer.offset() + surplus);
    }
    return false;
}

void RtfParser::begin(RtfDestination destination, const RtfToken &word, bool isIgnorable)
{
    if (destination == RtfDestination::Object) {
        readObject(word, isIgnorable);
        return;
    }
    if (!m_groups.begin(destination)) {
        return;
    }
    using enum RtfDestination;
    if (destination == ColorTable) {
        m_colors.begin();
    } else if (destination == Numbering) {
        m_list.begin();
    } else if (destination == FieldInstruction) {
        m_field.begin();
    } else if (destination == ListText) {
        m_mark.clear();
        m_markIsInTable.reset();
    } else if (destination == ListTable || destination == ListOverrideTable) {
        readLists(destination);
    } else if (destination == ShapePicture) {
        readShapePicture(word);
    } else if (destination == Note) {
        m_body.beginNote();
    } else if (destination == TextBox) {
        m_body.beginBox(character());
    } else if (destination == Margin) {
        readMargin();
    }
}

void RtfParser::end(RtfDestination destination)
{
    using enum RtfDestination;
    if (destination == FontTable) {
        character().font = m_fonts.findDefault(character().font);
    } else if (destination == ColorTable) {
        m_colors.end();
    } else if (destination == Numbering) {
        m_body.setList(m_list.list());
    } else if (destination == FieldInstruction) {
        endInstruction();
    } else if (destination == ListText && isText(m_groups.destination())) {
        m_body.setMark(m_mark, m_markIsInTable.value_or(m_body.isInTable()), character());
    } else if (destination == Note) {
        m_body.endNote();
    } else if (destination == TextBox) {
        m_body.endBox(m_lastCharacter);
    }
}

void RtfParser::readMargin()
{
    if (!m_margins) {
        m_leftMarginsOut = true;
        m_groups.skip();
    }
}

void RtfParser::readLists(RtfDestination table)
{
    const std::string_view rest = takeGroup(m_tokenizer).text;
    const std::string_view group = m_rtf.substr(m_groupStart, m_tokenizer.offset() - m_groupStart);
    if (rest.empty()) {
        return;
    }
    if (table == RtfDestination::ListTable) {
        m_listTable.readLists(group);
    } else {
        m_listTable.readOverrides(group);
    }
}

void RtfParser::readObject(const RtfToken &word, bool isIgnorable)
{
    const RtfDestination outer = m_groups.destination();
    if (!isText(outer) && outer != RtfDestination::Shape) {
        m_groups.skip();
        return;
    }
    const std::string opening = (isIgnorable ? "\\*" : "") + std::string(writtenAs(word, m_tokenizer));
    m_body.appendObject(toGroup(opening, takeGroup(m_tokenizer)), character());
}

/// The picture, with the form for older programs that may stand behind it.
void RtfParser::readShapePicture(const RtfToken &word)
{
    const std::string opening = "\\*" + std::string(writtenAs(word, m_tokenizer));
    const RtfGroupRest rest = takeGroup(m_tokenizer);
    if (!rest.hasPicture) {
        return;
    }
    QByteArray source = toGroup(opening, rest);
    RtfTokenizer ahead = m_tokenizer;
    if (ahead.next().kind == RtfToken::Kind::GroupEnd && ahead.next().kind == RtfToken::Kind::GroupStart) {
        const RtfToken next = ahead.next();
        if (next.text == "nonshppict") {
            const std::string_view older = writtenAs(next, ahead);
            source += toGroup(older, takeGroup(ahead));
        }
    }
    m_body.appendObject(source, character());
}

/// The bytes of \p word, with the blank that ends it, if \p after stands behind it.
std::string_view RtfParser::writtenAs(const RtfToken &word, const RtfTokenizer &after) const
{
    return m_rtf.substr(word.offset, after.offset() - word.offset);
}

void RtfParser::endInstruction()
{
    RtfGroup &field = m_groups.current();
    if (field.isField) {
        field.character.link = m_links.place(m_field.address());
        field.symbol = m_field.symbol();
        field.countBefore = m_body.count();
    }
}

/// Of a field for a symbol with an empty result: \p result is the format of that.
void RtfParser::endField(const RtfGroup &field, const RtfCharacter &result)
{
    if (field.countBefore != m_body.count() || !isText(m_groups.destination())) {
        return;
    }
    if (*field.symbol < 0x100) {
        const char byte = static_cast<char>(*field.symbol);
        m_body.append(m_fonts.codePage(result.font).decode({&byte, 1}), result);
    } else {
        const auto code = static_cast<char32_t>(*field.symbol);
        m_body.append(QChar::fromUcs4(m_fonts.codePage(result.font).shown(code)), result);
    }
}

void RtfParser::apply(RtfEffect effect, int value)
{
    const RtfDestination destination = m_groups.destination();
    if (isText(destination)) {
        if (!applyToText(effect, value)) {
            m_body.apply(effect, value, character());
        }
    } else if (destination == RtfDestination::FontTable) {
        if (!applyToText(effect, value)) {
            m_fonts.apply(effect, value);
        }
    } else if (destination == RtfDestination::ColorTable) {
        m_colors.apply(effect, value);
    } else if (isDecoded(destination) || destination == RtfDestination::Numbering) {
        applyToMark(effect, value);
    }
}

/// Of the destinations whose text is no text of the document, but in its fonts.
void RtfParser::applyToMark(RtfEffect effect, int value)
{
    const bool isListText = m_groups.destination() == RtfDestination::ListText;
    if (effect == RtfEffect::Font) {
        character().font = m_fonts.find(value, character().font);
    } else if (applyToText(effect, value)) {
        return;
    } else if (!isListText) {
        m_list.apply(effect, value);
    } else if (effect == RtfEffect::ParagraphReset) {
        m_markIsInTable = false;
    } else if (effect == RtfEffect::InTable) {
        m_markIsInTable = true;
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
    } else if (effect == RtfEffect::FieldStart) {
        m_groups.current().isField = true;
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
    if (isDecoded(m_groups.destination())) {
        m_bytes += bytes;
    } else if (m_groups.destination() == RtfDestination::FontTable) {
        m_fonts.append(bytes);
    } else if (m_groups.destination() == RtfDestination::ColorTable) {
        m_colors.append(bytes);
    }
}

void RtfParser::append(char16_t code)
{
    if (isText(m_groups.destination())) {
        m_body.append(QChar::fromUcs4(codePage().shown(code)), character());
    } else if (m_groups.destination() == RtfDestination::FontTable) {
        m_fonts.append(code);
    } else {
        append(QChar::fromUcs4(codePage().shown(code)));
    }
}

void RtfParser::append(QStringView text)
{
    const RtfDestination destination = m_groups.destination();
    if (destination == RtfDestination::ListText) {
        m_mark += text;
    } else if (destination == RtfDestination::FieldInstruction) {
        m_field.append(text);
    } else if (isDecoded(destination)) {
        for (const QChar c : text) {
            m_list.append(destination, c.unicode());
        }
    }
}

void RtfParser::flushBytes()
{
    if (m_bytes.empty()) {
        return;
    }
    const RtfCodePage &ofFont = codePage();
    // What a field is is never in a symbol font.
    const bool isCode = m_groups.destination() == RtfDestination::FieldInstruction && !ofFont.keepsAscii();
    const QString text = (isCode ? m_codePages.page(defaultCodePage) : ofFont).decode(m_bytes);
    m_bytes.clear();
    if (isText(m_groups.destination())) {
        m_body.append(text, character());
    } else {
        append(QStringView(text));
    }
}

void RtfParser::report(RtfError::Reason reason, std::size_t offset)
{
    if (!m_error) {
        m_error = RtfError{reason, offset};
    }
}
