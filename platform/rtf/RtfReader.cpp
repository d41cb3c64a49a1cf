#include "platform/rtf/RtfReader.h"

#include "platform/rtf/RtfCodePages.h"
#include "platform/rtf/RtfControlWords.h"
#include "platform/rtf/RtfDocumentBuilder.h"
#include "platform/rtf/RtfFontTable.h"
#include "platform/rtf/RtfTokenizer.h"

#include <QTextCursor>
#include <QTextDocument>

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

namespace {

/// The largest length that a document gives; it is more than any page has.
constexpr int maxTwips = 1'000'000;
constexpr int maxHalfPoints = 3276;
constexpr int plainHalfPoints = 24;
constexpr std::size_t maxTabs = 32;
constexpr int maxCells = 64;
constexpr std::string_view utf8Mark = "\xef\xbb\xbf";

/// What a group inherits from the group around it, and what ends with it.
struct Group
{
    RtfCharacter character;
    int fallbackLength = 1;
    RtfDestination destination = RtfDestination::Body;
    RtfDestination alternativeTo = RtfDestination::Body; ///< what \ud returns to
};

/// A colour on its way into the colour table.
struct ColorEntry
{
    bool isAutomatic = true;
    int red = 0;
    int green = 0;
    int blue = 0;

    [[nodiscard]] int value() const { return isAutomatic ? automaticColor : red << 16 | green << 8 | blue; }
};

bool isPlainAscii(std::string_view text)
{
    return std::ranges::all_of(text, [](char c) { return (c >= ' ' && c <= '~') || c == '\t'; });
}

bool isPlainText(QStringView text)
{
    return std::ranges::all_of(text, [](QChar c) {
        return (c >= u' ' && c < u'\u2028') || c == u'\t' || (c > u'\u2029' && c < u'\ufdd0') || c > u'\ufdd1';
    });
}

/// The bytes of \p input before its "{\rtf", or nothing if it is no RTF.
std::optional<std::size_t> startOfRtf(std::string_view input)
{
    std::size_t start = input.starts_with(utf8Mark) ? utf8Mark.size() : 0;
    while (start < input.size() && std::string_view(" \t\r\n").find(input[start]) != std::string_view::npos) {
        ++start;
    }
    const std::string_view rest = input.substr(start);
    if (rest.starts_with("{\\rtf") || rest.starts_with("{\\urtf")) {
        return start;
    }
    return std::nullopt;
}

class Reader
{
public:
    Reader(std::string_view rtf, QTextCursor &cursor);

    void read();
    void endDocument() { m_builder.endDocument(m_paragraph, m_lastState); }
    void endInsertion() { m_builder.endInsertion(); }
    [[nodiscard]] std::optional<RtfError> error() const { return m_error; }

private:
    // Tokens.
    void openGroup(std::size_t offset);
    void closeGroup();
    void readText(std::string_view bytes);
    void readHexByte(int byte);
    void readWord(const RtfToken &token, bool isGroupStart);
    void readRest();

    // Destinations.
    void enter(RtfDestination destination);
    void beginDestination(RtfDestination destination);
    void leave(RtfDestination destination);
    void apply(RtfEffect effect, int value);
    void applyInFontTable(RtfEffect effect, int value);
    void applyInColorTable(RtfEffect effect, int value);
    void applyInNumbering(RtfEffect effect, int value);
    void applyInBody(RtfEffect effect, int value);
    void applyUnicode(int value);

    // Text.
    void appendBytes(std::string_view bytes);
    void appendCharacter(char16_t character);
    void appendBodyText(QStringView text);
    void appendBodyCharacter(char16_t character);
    void flushBytes();
    void endParagraph();
    void endRow();

    // Formats.
    void setFont(int number);
    void resetCharacter();
    void addTab(int position);
    void addColor();
    [[nodiscard]] int colorAt(int number) const;

    Group &group() { return m_groups.back(); }
    RtfCharacter &character() { return m_groups.back().character; }
    const RtfCodePage &codePage();
    void report(RtfError::Reason reason, std::size_t offset);

    RtfTokenizer m_tokenizer;
    const std::string_view m_rtf;
    const bool m_rawBytesAreUtf8;
    RtfCodePages m_codePages;
    RtfFontTable m_fonts;
    RtfDocumentBuilder m_builder;
    std::optional<RtfError> m_error;

    std::vector<Group> m_groups;
    int m_excessGroups = 0;    ///< open groups beyond the limit
    int m_excessSkippedAt = 0; ///< the one of them that began to skip, 0 if none
    RtfDestination m_excessReturn = RtfDestination::Body;
    bool m_isGroupStart = false; ///< the last token opened a group
    bool m_isIgnorable = false;  ///< \* was the last word
    int m_fallbackToSkip = 0;    ///< characters that stand for the last \u
    std::string m_bytes;         ///< text that waits for decoding: a character may come in pieces

    RtfParagraph m_paragraph; ///< not part of a group
    RtfTabKind m_tabKind = RtfTabKind::Left;
    RtfCharacter m_lastState; ///< at the end of the text
    int m_defaultFont = -1;   ///< its number, -1 if none is named
    std::vector<int> m_colors;
    ColorEntry m_color;
    RtfList m_numbering;
    bool m_inTable = false;
    int m_cellsOfRow = 0;
    int m_edgesOfRow = 0;
};

Reader::Reader(std::string_view rtf, QTextCursor &cursor)
    : m_tokenizer(rtf)
    , m_rtf(rtf)
    , m_rawBytesAreUtf8(rtf.starts_with("{\\urtf") || isMultiByteUtf8(rtf))
    , m_builder(cursor, m_fonts)
    , m_groups(1)
{
}

void Reader::read()
{
    while (true) {
        const RtfToken token = m_tokenizer.next();
        const bool isGroupStart = std::exchange(m_isGroupStart, token.kind == RtfToken::Kind::GroupStart);
        switch (token.kind) {
        case RtfToken::Kind::GroupStart: openGroup(token.offset); break;
        case RtfToken::Kind::GroupEnd:
            closeGroup();
            if (m_groups.size() == 1) {
                readRest();
                return;
            }
            break;
        case RtfToken::Kind::Word: readWord(token, isGroupStart); break;
        case RtfToken::Kind::Text: readText(token.text); break;
        case RtfToken::Kind::HexByte: readHexByte(*token.number); break;
        case RtfToken::Kind::Binary: m_fallbackToSkip = std::max(0, m_fallbackToSkip - 1); break;
        case RtfToken::Kind::End:
            flushBytes();
            m_lastState = character();
            report(RtfError::Reason::UnbalancedGroups, token.offset);
            return;
        }
    }
}

void Reader::openGroup(std::size_t offset)
{
    flushBytes();
    m_isIgnorable = false;
    m_fallbackToSkip = 0;
    if (m_groups.size() <= maxRtfGroupDepth) {
        m_groups.push_back(group());
    } else {
        ++m_excessGroups;
        report(RtfError::Reason::TooDeep, offset);
    }
}

void Reader::closeGroup()
{
    flushBytes();
    m_isIgnorable = false;
    m_fallbackToSkip = 0;
    if (m_excessGroups > 0) {
        if (m_excessGroups-- == m_excessSkippedAt) {
            group().destination = m_excessReturn;
            m_excessSkippedAt = 0;
        }
        return;
    }
    m_lastState = character();
    const RtfDestination closed = group().destination;
    m_groups.pop_back();
    if (closed == RtfDestination::FontTable) {
        m_fonts.endEntry(m_codePages);
    }
    if (closed != group().destination) {
        leave(closed);
    }
}

void Reader::readRest()
{
    const std::size_t surplus = m_rtf.find('}', m_tokenizer.offset());
    if (surplus != std::string_view::npos) {
        report(RtfError::Reason::UnbalancedGroups, surplus);
    }
}

void Reader::readText(std::string_view bytes)
{
    m_isIgnorable = false;
    if (m_fallbackToSkip > 0) {
        const std::size_t skipped = std::min(bytes.size(), static_cast<std::size_t>(m_fallbackToSkip));
        m_fallbackToSkip -= static_cast<int>(skipped);
        bytes.remove_prefix(skipped);
    }
    if (bytes.empty()) {
        return;
    }
    if (group().destination == RtfDestination::Body && m_bytes.empty() && isPlainAscii(bytes)) {
        m_builder.append(QLatin1StringView(bytes.data(), static_cast<qsizetype>(bytes.size())), character());
    } else if (group().destination == RtfDestination::Body && m_rawBytesAreUtf8) {
        flushBytes();
        appendBodyText(QString::fromUtf8(bytes.data(), static_cast<qsizetype>(bytes.size())));
    } else {
        appendBytes(bytes);
    }
}

void Reader::readHexByte(int byte)
{
    m_isIgnorable = false;
    if (m_fallbackToSkip > 0) {
        --m_fallbackToSkip;
        return;
    }
    const char c = static_cast<char>(byte);
    appendBytes({&c, 1});
}

void Reader::readWord(const RtfToken &token, bool isGroupStart)
{
    flushBytes();
    const RtfControlWord *row = findRtfControlWord(token.text);
    if (std::exchange(m_isIgnorable, false) && (row == nullptr || row->effect != RtfEffect::Destination)) {
        enter(RtfDestination::Skipped);
        return;
    }
    if (m_fallbackToSkip > 0) {
        if (row != nullptr && row->effect == RtfEffect::Character) {
            --m_fallbackToSkip;
            return;
        }
        m_fallbackToSkip = 0;
    }
    const std::optional<int> value = row != nullptr ? rtfValue(*row, token.number) : std::nullopt;
    if (!value) {
        return;
    }
    if (row->effect == RtfEffect::Ignorable) {
        m_isIgnorable = isGroupStart; // within a group the mark is a slip of some programs
    } else if (row->effect == RtfEffect::Destination) {
        beginDestination(static_cast<RtfDestination>(*value));
    } else {
        apply(row->effect, *value);
    }
}

void Reader::apply(RtfEffect effect, int value)
{
    switch (group().destination) {
    case RtfDestination::Body: applyInBody(effect, value); break;
    case RtfDestination::FontTable: applyInFontTable(effect, value); break;
    case RtfDestination::ColorTable: applyInColorTable(effect, value); break;
    case RtfDestination::Numbering:
    case RtfDestination::NumberingTextBefore:
    case RtfDestination::NumberingTextAfter: applyInNumbering(effect, value); break;
    case RtfDestination::Skipped:
    case RtfDestination::Alternatives:
    case RtfDestination::UnicodeAlternative: break;
    }
}

void Reader::enter(RtfDestination destination)
{
    if (m_excessGroups > 0 && m_excessSkippedAt == 0) {
        m_excessSkippedAt = m_excessGroups;
        m_excessReturn = group().destination;
    }
    group().destination = destination;
}

void Reader::beginDestination(RtfDestination destination)
{
    const RtfDestination outer = group().destination;
    if (outer == RtfDestination::Skipped) {
        return;
    }
    if (outer == RtfDestination::Alternatives && destination != RtfDestination::UnicodeAlternative) {
        return;
    }
    switch (destination) {
    case RtfDestination::ColorTable:
        m_colors.clear();
        m_color = {};
        break;
    case RtfDestination::Numbering: m_numbering = {}; break;
    case RtfDestination::NumberingTextBefore:
    case RtfDestination::NumberingTextAfter:
        if (outer != RtfDestination::Numbering) {
            destination = RtfDestination::Skipped;
        }
        break;
    case RtfDestination::Alternatives: group().alternativeTo = outer; break;
    case RtfDestination::UnicodeAlternative:
        destination = outer == RtfDestination::Alternatives ? group().alternativeTo : outer;
        break;
    case RtfDestination::Body:
    case RtfDestination::Skipped:
    case RtfDestination::FontTable: break;
    }
    enter(destination);
}

void Reader::leave(RtfDestination destination)
{
    switch (destination) {
    case RtfDestination::FontTable:
        if (m_defaultFont >= 0) {
            setFont(m_defaultFont);
        }
        break;
    case RtfDestination::ColorTable:
        if (!m_color.isAutomatic) {
            addColor();
        }
        break;
    case RtfDestination::Numbering:
        if (m_numbering.style == RtfListStyle::None || m_numbering.style == RtfListStyle::Bullet) {
            m_numbering = {
                .style = m_numbering.style, .start = 1, .before = {}, .after = {}}; // bullets all look the same
        }
        m_paragraph.list = m_numbering;
        break;
    case RtfDestination::Body:
    case RtfDestination::Skipped:
    case RtfDestination::Alternatives:
    case RtfDestination::UnicodeAlternative:
    case RtfDestination::NumberingTextBefore:
    case RtfDestination::NumberingTextAfter: break;
    }
}

void Reader::applyInFontTable(RtfEffect effect, int value)
{
    if (effect == RtfEffect::Font) {
        m_fonts.endEntry(m_codePages);
        m_fonts.beginEntry(value);
    } else if (effect == RtfEffect::FontCharset) {
        m_fonts.setCharset(value);
    } else if (effect == RtfEffect::FontCodePage) {
        m_fonts.setCodePage(value);
    } else if (effect == RtfEffect::Character) {
        appendCharacter(static_cast<char16_t>(value));
    } else if (effect == RtfEffect::Unicode) {
        applyUnicode(value);
    } else if (effect == RtfEffect::FallbackLength) {
        group().fallbackLength = std::max(0, value);
    }
}

void Reader::applyInColorTable(RtfEffect effect, int value)
{
    const int component = std::clamp(value, 0, 255);
    if (effect == RtfEffect::Red) {
        m_color.red = component;
    } else if (effect == RtfEffect::Green) {
        m_color.green = component;
    } else if (effect == RtfEffect::Blue) {
        m_color.blue = component;
    } else {
        return;
    }
    m_color.isAutomatic = false;
}

void Reader::applyInNumbering(RtfEffect effect, int value)
{
    if (effect == RtfEffect::NumberingStyle) {
        m_numbering.style = static_cast<RtfListStyle>(value);
    } else if (effect == RtfEffect::NumberingStart) {
        m_numbering.start = std::max(0, value);
    } else if (effect == RtfEffect::Font) {
        setFont(value);
    } else if (effect == RtfEffect::Character) {
        appendCharacter(static_cast<char16_t>(value));
    } else if (effect == RtfEffect::Unicode) {
        applyUnicode(value);
    } else if (effect == RtfEffect::FallbackLength) {
        group().fallbackLength = std::max(0, value);
    }
}

void Reader::applyInBody(RtfEffect effect, int value)
{
    const int twips = std::clamp(value, -maxTwips, maxTwips);
    const bool on = value != 0;
    switch (effect) {
    case RtfEffect::Character: appendBodyCharacter(static_cast<char16_t>(value)); break;
    case RtfEffect::Unicode: applyUnicode(value); break;
    case RtfEffect::FallbackLength: group().fallbackLength = std::max(0, value); break;
    case RtfEffect::ParagraphEnd: endParagraph(); break;
    case RtfEffect::Cell:
        m_cellsOfRow += value;
        appendBodyCharacter(u'\t');
        break;
    case RtfEffect::Row:
        if (value != 0) {
            endRow();
        } else {
            appendBodyCharacter(u' ');
        }
        break;

    case RtfEffect::CodePage:
        if (value > 0) {
            m_fonts.setDocumentCodePage(value);
        }
        break;
    case RtfEffect::DefaultFont:
        m_defaultFont = value;
        setFont(value);
        break;

    case RtfEffect::CharacterReset: resetCharacter(); break;
    case RtfEffect::Font: setFont(value); break;
    case RtfEffect::FontSize:
        if (value > 0) {
            character().halfPoints = std::min(value, maxHalfPoints);
        }
        break;
    case RtfEffect::Bold: character().bold = on; break;
    case RtfEffect::Italic: character().italic = on; break;
    case RtfEffect::Underline: character().underline = on; break;
    case RtfEffect::Strike: character().strike = on; break;
    case RtfEffect::Hidden: character().hidden = on; break;
    case RtfEffect::Superscript: character().script = on ? RtfScript::Superscript : RtfScript::Normal; break;
    case RtfEffect::Subscript: character().script = on ? RtfScript::Subscript : RtfScript::Normal; break;
    case RtfEffect::BaseLine: character().script = RtfScript::Normal; break;
    case RtfEffect::Raise: character().shift = std::clamp(value, -maxHalfPoints, maxHalfPoints); break;
    case RtfEffect::Lower: character().shift = -std::clamp(value, -maxHalfPoints, maxHalfPoints); break;
    case RtfEffect::Color: character().color = colorAt(value); break;
    case RtfEffect::Highlight: character().highlight = colorAt(value); break;

    case RtfEffect::ParagraphReset:
        m_paragraph = {};
        m_tabKind = RtfTabKind::Left;
        m_inTable = false;
        break;
    case RtfEffect::Alignment: m_paragraph.alignment = static_cast<RtfAlignment>(value); break;
    case RtfEffect::LeftIndent: m_paragraph.leftIndent = twips; break;
    case RtfEffect::FirstLineIndent: m_paragraph.firstLineIndent = twips; break;
    case RtfEffect::RightIndent: m_paragraph.rightIndent = twips; break;
    case RtfEffect::SpaceBefore: m_paragraph.spaceBefore = std::max(0, twips); break;
    case RtfEffect::SpaceAfter: m_paragraph.spaceAfter = std::max(0, twips); break;
    case RtfEffect::LineSpacing: m_paragraph.lineSpacing = twips; break;
    case RtfEffect::LineSpacingMultiple: m_paragraph.lineSpacingIsMultiple = on; break;
    case RtfEffect::RightToLeft: m_paragraph.rightToLeft = on; break;
    case RtfEffect::TabKind: m_tabKind = static_cast<RtfTabKind>(value); break;
    case RtfEffect::TabStop: addTab(twips); break;
    case RtfEffect::InTable: m_inTable = on; break;
    case RtfEffect::RowStart: m_edgesOfRow = 0; break;
    case RtfEffect::CellEdge: m_edgesOfRow = std::min(m_edgesOfRow + 1, maxCells); break;

    // These mean something in their own destination only.
    case RtfEffect::FontCharset:
    case RtfEffect::FontCodePage:
    case RtfEffect::Red:
    case RtfEffect::Green:
    case RtfEffect::Blue:
    case RtfEffect::NumberingStyle:
    case RtfEffect::NumberingStart:

    // Not here: readWord() has them.
    case RtfEffect::Ignorable:
    case RtfEffect::Destination: break;
    }
}

/// \p value is a UTF-16 code unit, written as a signed number; whole code points
/// beyond them occur too.
void Reader::applyUnicode(int value)
{
    constexpr int lastUnit = 0xffff;
    constexpr int lastCodePoint = 0x10ffff;
    if (value > lastUnit && value <= lastCodePoint) {
        const auto codePoint = static_cast<char32_t>(value);
        appendCharacter(QChar::highSurrogate(codePoint));
        appendCharacter(QChar::lowSurrogate(codePoint));
    } else {
        appendCharacter(static_cast<char16_t>(static_cast<unsigned>(value) & 0xffffU));
    }
    m_fallbackToSkip = group().fallbackLength;
}

void Reader::appendBytes(std::string_view bytes)
{
    switch (group().destination) {
    case RtfDestination::Body:
    case RtfDestination::NumberingTextBefore:
    case RtfDestination::NumberingTextAfter: m_bytes += bytes; break;
    case RtfDestination::FontTable:
        for (std::size_t end = bytes.find(';'); end != std::string_view::npos; end = bytes.find(';')) {
            m_fonts.appendName(bytes.substr(0, end));
            m_fonts.endEntry(m_codePages);
            bytes.remove_prefix(end + 1);
        }
        m_fonts.appendName(bytes);
        break;
    case RtfDestination::ColorTable:
        for (auto count = std::ranges::count(bytes, ';'); count > 0; --count) {
            addColor();
        }
        break;
    case RtfDestination::Skipped:
    case RtfDestination::Alternatives:
    case RtfDestination::UnicodeAlternative:
    case RtfDestination::Numbering: break;
    }
}

void Reader::appendCharacter(char16_t character)
{
    switch (group().destination) {
    case RtfDestination::Body: appendBodyCharacter(character); break;
    case RtfDestination::FontTable: m_fonts.appendName(character, m_codePages); break;
    case RtfDestination::NumberingTextBefore: m_numbering.before += QChar(character); break;
    case RtfDestination::NumberingTextAfter: m_numbering.after += QChar(character); break;
    case RtfDestination::Skipped:
    case RtfDestination::Alternatives:
    case RtfDestination::UnicodeAlternative:
    case RtfDestination::ColorTable:
    case RtfDestination::Numbering: break;
    }
}

void Reader::appendBodyText(QStringView text)
{
    if (isPlainText(text)) {
        m_builder.append(text, character());
        return;
    }
    for (const QChar c : text) {
        appendBodyCharacter(c.unicode());
    }
}

void Reader::appendBodyCharacter(char16_t character)
{
    switch (character) {
    case u'\n':
    case u'\r':
    case QChar::ParagraphSeparator: endParagraph(); return;
    case u'\0': character = u' '; break;
    case u'\v': character = QChar::LineSeparator; break;
    case 0xfdd0: // a document's own marks for the ends of frames
    case 0xfdd1: character = QChar::ReplacementCharacter; break;
    default: break;
    }
    m_builder.append(QStringView(&character, 1), group().character);
}

void Reader::flushBytes()
{
    if (m_bytes.empty()) {
        return;
    }
    const QString text = codePage().decode(m_bytes);
    m_bytes.clear();
    if (group().destination == RtfDestination::Body) {
        appendBodyText(text);
        return;
    }
    for (const QChar c : text) {
        appendCharacter(c.unicode());
    }
}

void Reader::endParagraph()
{
    if (m_inTable) {
        appendBodyCharacter(u' '); // a row is one paragraph
    } else {
        m_builder.endParagraph(m_paragraph, character());
    }
}

void Reader::endRow()
{
    for (; m_cellsOfRow < m_edgesOfRow; ++m_cellsOfRow) {
        appendBodyCharacter(u'\t');
    }
    m_cellsOfRow = 0;
    m_builder.endParagraph(m_paragraph, character());
}

void Reader::setFont(int number)
{
    const int place = m_fonts.find(number);
    if (place >= 0) {
        character().font = place;
    }
}

void Reader::resetCharacter()
{
    character() = {};
    character().halfPoints = plainHalfPoints;
    if (m_defaultFont >= 0) {
        setFont(m_defaultFont);
    }
}

void Reader::addTab(int position)
{
    if (m_paragraph.tabs.size() < maxTabs) {
        m_paragraph.tabs.push_back({m_tabKind, position});
    }
    m_tabKind = RtfTabKind::Left;
}

void Reader::addColor()
{
    m_colors.push_back(m_color.value());
    m_color = {};
}

int Reader::colorAt(int number) const
{
    // Number 0 is the automatic colour, whatever its entry says.
    return number > 0 && static_cast<std::size_t>(number) < m_colors.size() ? m_colors[static_cast<std::size_t>(number)]
                                                                            : automaticColor;
}

const RtfCodePage &Reader::codePage()
{
    const int font = character().font;
    return m_codePages.page(font >= 0 ? m_fonts.at(font).codePage : m_fonts.documentCodePage());
}

void Reader::report(RtfError::Reason reason, std::size_t offset)
{
    if (!m_error) {
        m_error = RtfError{reason, offset};
    }
}

/// Line breaks as a document has them: one '\n' each. CR CR LF is none, but
/// where a line was wrapped.
QString plainText(std::string_view bytes)
{
    if (bytes.starts_with(utf8Mark)) {
        bytes.remove_prefix(utf8Mark.size());
    }
    QString text = isMultiByteUtf8(bytes) ? QString::fromUtf8(bytes.data(), static_cast<qsizetype>(bytes.size()))
                                          : RtfCodePage(defaultCodePage).decode(bytes);
    text.replace(QStringLiteral("\r\r\n"), QStringLiteral(" "));
    text.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
    text.replace(QLatin1Char('\r'), QLatin1Char('\n'));
    text.replace(QLatin1Char('\v'), QChar(QChar::LineSeparator));
    text.replace(QLatin1Char('\0'), QLatin1Char(' '));
    return text;
}

/// Reads \p rtf, RTF or not, into the document at \p cursor. \p end says how its
/// last paragraph ends.
std::optional<RtfError> readAt(QTextCursor &cursor, std::string_view rtf, void (Reader::*end)())
{
    const std::optional<std::size_t> start = startOfRtf(rtf);
    if (!start) {
        cursor.insertText(plainText(rtf));
        return rtf.empty() ? std::nullopt : std::optional(RtfError{RtfError::Reason::NotRtf, 0});
    }
    Reader reader(rtf.substr(*start), cursor);
    reader.read();
    (reader.*end)();
    std::optional<RtfError> error = reader.error();
    if (error) {
        error->offset += *start;
    }
    return error;
}

} // namespace

std::optional<RtfError> readRtf(std::string_view rtf, QTextDocument &document)
{
    const bool undo = document.isUndoRedoEnabled();
    document.setUndoRedoEnabled(false);
    document.clear();
    QTextCursor cursor(&document);
    cursor.beginEditBlock();
    const auto error = readAt(cursor, rtf, &Reader::endDocument);
    cursor.endEditBlock();
    document.setUndoRedoEnabled(undo);
    document.setModified(false);
    return error;
}

std::optional<RtfError> insertRtf(std::string_view rtf, QTextCursor &cursor)
{
    if (cursor.isNull()) {
        return std::nullopt;
    }
    cursor.beginEditBlock();
    cursor.removeSelectedText();
    const auto error = readAt(cursor, rtf, &Reader::endInsertion);
    cursor.endEditBlock();
    return error;
}
