#include "platform/rtf/RtfBody.h"

#include <algorithm>

namespace {

/// The largest length that a document gives; it is more than any page has.
constexpr int maxTwips = 1'000'000;
constexpr int maxHalfPoints = 3276;
constexpr int plainHalfPoints = 24;
constexpr std::size_t maxTabs = 32;
constexpr int maxCells = 64;

/// Whether all of \p text is characters that append() leaves as they are.
bool isPlainText(QStringView text)
{
    return std::ranges::all_of(text, [](QChar c) {
        return (c >= u' ' && c < u'\u2028') || c == u'\t' || (c > u'\u2029' && c < u'\ufdd0') || c > u'\ufdd1';
    });
}

} // namespace

RtfBody::RtfBody(QTextCursor &cursor, RtfFontTable &fonts, const RtfColorTable &colors)
    : m_fonts(fonts)
    , m_colors(colors)
    , m_builder(cursor, fonts)
{
}

void RtfBody::apply(RtfEffect effect, int value, RtfCharacter &character)
{
    const int twips = std::clamp(value, -maxTwips, maxTwips);
    const bool on = value != 0;
    switch (effect) {
    case RtfEffect::ParagraphEnd: endParagraph(character); break;
    case RtfEffect::Cell:
        m_cellsOfRow += value;
        append(u'\t', character);
        break;
    case RtfEffect::Row:
        if (value != 0) {
            endRow(character);
        } else {
            append(u' ', character);
        }
        break;

    case RtfEffect::CodePage:
        if (value > 0) {
            m_fonts.setDocumentCodePage(value);
        }
        break;
    case RtfEffect::DefaultFont:
        m_fonts.setDefault(value);
        character.font = m_fonts.find(value, character.font);
        break;

    case RtfEffect::CharacterReset: resetCharacter(character); break;
    case RtfEffect::Font: character.font = m_fonts.find(value, character.font); break;
    case RtfEffect::FontSize:
        if (value > 0) {
            character.halfPoints = std::min(value, maxHalfPoints);
        }
        break;
    case RtfEffect::Bold: character.bold = on; break;
    case RtfEffect::Italic: character.italic = on; break;
    case RtfEffect::Underline: character.underline = on; break;
    case RtfEffect::Strike: character.strike = on; break;
    case RtfEffect::Hidden: character.hidden = on; break;
    case RtfEffect::Superscript: character.script = on ? RtfScript::Superscript : RtfScript::Normal; break;
    case RtfEffect::Subscript: character.script = on ? RtfScript::Subscript : RtfScript::Normal; break;
    case RtfEffect::BaseLine: character.script = RtfScript::Normal; break;
    case RtfEffect::Raise: character.shift = std::clamp(value, -maxHalfPoints, maxHalfPoints); break;
    case RtfEffect::Lower: character.shift = -std::clamp(value, -maxHalfPoints, maxHalfPoints); break;
    case RtfEffect::Color: character.color = m_colors.at(value); break;
    case RtfEffect::Highlight: character.highlight = m_colors.at(value); break;

    case RtfEffect::ParagraphReset: resetParagraph(); break;
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

    // Not here: these are the same in every destination.
    case RtfEffect::Character:
    case RtfEffect::Unicode:
    case RtfEffect::FallbackLength:
    case RtfEffect::Ignorable:
    case RtfEffect::Destination: break;
    }
}

void RtfBody::append(QStringView text, const RtfCharacter &format)
{
    if (isPlainText(text)) {
        m_builder.append(text, format);
        return;
    }
    for (const QChar c : text) {
        append(c.unicode(), format);
    }
}

void RtfBody::append(char16_t character, const RtfCharacter &format)
{
    switch (character) {
    case u'\n':
    case u'\r':
    case QChar::ParagraphSeparator: endParagraph(format); return;
    case u'\0': character = u' '; break;
    case u'\v': character = QChar::LineSeparator; break;
    case 0xfdd0: // a document's own marks for the ends of frames
    case 0xfdd1: character = QChar::ReplacementCharacter; break;
    default: break;
    }
    m_builder.append(QStringView(&character, 1), format);
}

void RtfBody::appendAscii(std::string_view text, const RtfCharacter &format)
{
    m_builder.append(QLatin1StringView(text.data(), static_cast<qsizetype>(text.size())), format);
}

void RtfBody::endParagraph(const RtfCharacter &mark)
{
    if (m_inTable) {
        append(u' ', mark); // a row is one paragraph
    } else {
        m_builder.endParagraph(m_paragraph, mark);
    }
}

void RtfBody::endRow(const RtfCharacter &mark)
{
    for (; m_cellsOfRow < m_edgesOfRow; ++m_cellsOfRow) {
        append(u'\t', mark);
    }
    m_cellsOfRow = 0;
    m_builder.endParagraph(m_paragraph, mark);
}

void RtfBody::resetCharacter(RtfCharacter &character) const
{
    character = {};
    character.halfPoints = plainHalfPoints;
    character.font = m_fonts.findDefault(character.font);
}

void RtfBody::resetParagraph()
{
    m_paragraph = {};
    m_tabKind = RtfTabKind::Left;
    m_inTable = false;
}

void RtfBody::addTab(int position)
{
    if (m_paragraph.tabs.size() < maxTabs) {
        m_paragraph.tabs.push_back({m_tabKind, position});
    }
    m_tabKind = RtfTabKind::Left;
}
