#include "platform/rtf/RtfBody.h"

#include "platform/rtf/RtfLimits.h"
#include "platform/rtf/RtfListMark.h"

#include <algorithm>

namespace {

constexpr int plainHalfPoints = 24;

/// Whether all of \p text is characters that append() leaves as they are.
bool isPlainText(QStringView text)
{
    return std::ranges::all_of(text, [](QChar c) {
        return (c >= u' ' && c < u'\u2028') || c == u'\t' || (c > u'\u2029' && c < u'\ufdd0') || c > u'\ufdd1';
    });
}

bool isOfParagraph(RtfEffect effect)
{
    return effect >= RtfEffect::ParagraphReset && effect <= RtfEffect::CellEdge;
}

} // namespace

RtfBody::RtfBody(QTextCursor &cursor, RtfFontTable &fonts, const RtfColorTable &colors, const RtfLinkTable &links,
                 const RtfListTable &lists)
    : m_fonts(fonts)
    , m_colors(colors)
    , m_lists(lists)
    , m_builder(cursor, fonts, links)
{
}

void RtfBody::apply(RtfEffect effect, int value, RtfCharacter &character)
{
    if (m_notes > 0 && isOfParagraph(effect)) {
        return; // a note has no paragraphs of its own
    }
    const bool on = value != 0;
    const int twips = std::clamp(value, -maxRtfTwips, maxRtfTwips);
    const int halfPoints = std::clamp(value, -maxRtfHalfPoints, maxRtfHalfPoints);
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
    case RtfEffect::FontSize: character.halfPoints = value > 0 ? halfPoints : character.halfPoints; break;
    case RtfEffect::Bold: character.bold = on; break;
    case RtfEffect::Italic: character.italic = on; break;
    case RtfEffect::Underline: character.underline = on; break;
    case RtfEffect::Strike: character.strike = on; break;
    case RtfEffect::Capitals: character.capitals = on ? RtfCapitals::All : RtfCapitals::AsTyped; break;
    case RtfEffect::SmallCapitals: character.capitals = on ? RtfCapitals::Small : RtfCapitals::AsTyped; break;
    case RtfEffect::Hidden: character.hidden = on; break;
    case RtfEffect::Superscript: character.script = on ? RtfScript::Superscript : RtfScript::Normal; break;
    case RtfEffect::Subscript: character.script = on ? RtfScript::Subscript : RtfScript::Normal; break;
    case RtfEffect::BaseLine: character.script = RtfScript::Normal; break;
    case RtfEffect::Raise: character.shift = halfPoints; break;
    case RtfEffect::Lower: character.shift = -halfPoints; break;
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
    case RtfEffect::ListNumber: m_paragraph.listNumber = value; break;
    case RtfEffect::ListLevel: m_paragraph.listLevel = value; break;
    case RtfEffect::InTable: m_paragraph.isInTable = on; break;
    case RtfEffect::RowStart: m_edgesOfRow.clear(); break;
    case RtfEffect::CellEdge:
        if (m_edgesOfRow.size() < maxRtfCells) {
            m_edgesOfRow.push_back(twips);
        }
        break;

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
    case RtfEffect::FieldStart:
    case RtfEffect::Ignorable:
    case RtfEffect::Destination: break;
    }
}

void RtfBody::append(QStringView text, const RtfCharacter &format)
{
    if (isPlainText(text)) {
        if (!text.isEmpty()) {
            prepare(format, text.front());
            m_builder.append(text, format);
            m_endsInBlank = text.back().isSpace();
        }
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
    prepare(format, character);
    m_builder.append(QStringView(&character, 1), format);
    m_endsInBlank = QChar::isSpace(character);
}

void RtfBody::appendAscii(std::string_view text, const RtfCharacter &format)
{
    prepare(format, QLatin1Char(text.front()));
    m_builder.append(QLatin1StringView(text.data(), static_cast<qsizetype>(text.size())), format);
    m_endsInBlank = text.back() == ' ' || text.back() == '\t';
}

void RtfBody::appendObject(const QByteArray &source, const RtfCharacter &format)
{
    prepare(format, QChar::ObjectReplacementCharacter);
    m_builder.appendObject(source, format);
    m_endsInBlank = false;
}

/// Something that begins with \p first comes into the paragraph.
void RtfBody::prepare(const RtfCharacter &format, QChar first)
{
    ++m_count;
    m_paragraphIsOpen = true;
    if (!m_blankIsDue && !m_noteBreakIsDue) {
        return;
    }
    const bool breaks = std::exchange(m_noteBreakIsDue, false);
    const bool blank = std::exchange(m_blankIsDue, false) && !m_endsInBlank && !first.isSpace();
    const QChar between = breaks ? QChar(QChar::LineSeparator) : QChar(u' ');
    if (breaks || blank) {
        m_builder.append(QStringView(&between, 1), format);
    }
}

void RtfBody::setList(const RtfList &list)
{
    if (m_notes == 0) {
        m_paragraph.list = list;
    }
}

void RtfBody::setMark(const QString &mark, bool isInTable, const RtfCharacter &format)
{
    if (!isInTable && m_notes == 0) {
        m_mark = mark;
        return;
    }
    append(mark.trimmed(), format);
    m_blankIsDue = true;
}

void RtfBody::beginNote()
{
    ++m_notes;
    m_blankIsDue = true;
}

void RtfBody::endNote()
{
    --m_notes;
    m_noteBreakIsDue = false;
    m_blankIsDue = true;
}

void RtfBody::beginBox(const RtfCharacter &format)
{
    const bool isWords = m_paragraph.isInTable || m_notes > 0;
    if (m_paragraphIsOpen && !isWords) {
        endParagraph(format);
    }
    m_aroundBoxes.push_back(m_paragraph);
    if (isWords) {
        beginNote();
    } else {
        resetParagraph();
    }
}

void RtfBody::endBox(const RtfCharacter &format)
{
    const Paragraph around = m_aroundBoxes.back();
    m_aroundBoxes.pop_back();
    if (around.isInTable || m_notes > 0) {
        endNote();
    } else if (m_paragraphIsOpen) {
        endParagraph(format);
    }
    m_paragraph = around;
}

void RtfBody::endParagraph(const RtfCharacter &mark)
{
    if (m_notes > 0) {
        m_noteBreakIsDue = m_paragraphIsOpen && !m_blankIsDue;
    } else if (m_paragraph.isInTable) {
        append(u' ', mark); // a row is one paragraph
    } else {
        m_builder.endParagraph(currentParagraph(), mark);
        m_paragraphIsOpen = false;
        m_blankIsDue = false;
        m_endsInBlank = true;
        m_mark.clear();
    }
}

void RtfBody::endRow(const RtfCharacter &mark)
{
    for (; m_cellsOfRow < static_cast<int>(m_edgesOfRow.size()); ++m_cellsOfRow) {
        append(u'\t', mark);
    }
    m_cellsOfRow = 0;
    m_row = m_paragraph;
    m_row.list = {};
    m_row.tabs.clear();
    for (const int edge : m_edgesOfRow) {
        if (edge > 0 && m_row.tabs.size() < maxRtfTabs) {
            m_row.tabs.push_back({RtfTabKind::Left, edge});
        }
    }
    m_builder.endParagraph(m_row, mark);
    m_paragraphIsOpen = false;
    m_blankIsDue = false;
    m_endsInBlank = true;
}

void RtfBody::resetCharacter(RtfCharacter &character) const
{
    const int link = character.link;
    character = {};
    character.halfPoints = plainHalfPoints;
    character.font = m_fonts.findDefault(character.font);
    character.link = link;
}

void RtfBody::resetParagraph()
{
    m_paragraph = {};
    m_tabKind = RtfTabKind::Left;
}

void RtfBody::addTab(int position)
{
    if (m_paragraph.tabs.size() < maxRtfTabs) {
        m_paragraph.tabs.push_back({m_tabKind, position});
    }
    m_tabKind = RtfTabKind::Left;
}

/// The paragraph that ends here, in the list that it stands in.
const RtfParagraph &RtfBody::currentParagraph()
{
    if (m_paragraph.list.style != RtfListStyle::None || (m_paragraph.listNumber <= 0 && m_mark.isEmpty())) {
        m_lastPlace.reset();
        return m_paragraph;
    }
    m_marked = m_paragraph;
    m_marked.list = listHere();
    return m_marked;
}

/// The list of a word processor that the paragraph which ends here stands in. It
/// goes on with the paragraph before, or begins with the number that is written
/// beside it or, without one, with the next.
RtfList RtfBody::listHere()
{
    const Place place(m_paragraph.listNumber, m_paragraph.listLevel);
    const std::optional<RtfList> known = m_lists.find(place.first, place.second);
    const RtfListStyle before = m_lastPlace == place ? m_lastList.style : RtfListStyle::None;
    const std::optional<RtfListMark> mark = readListMark(m_mark, known ? known->style : before);
    if (!known && !mark) {
        m_lastPlace.reset();
        return {};
    }
    RtfList list = known ? *known : mark->list;
    if (list.style != RtfListStyle::None && list.style != RtfListStyle::Bullet) {
        const auto last = m_lastNumbers.find(place);
        const bool isMarked = mark && mark->list.style != RtfListStyle::Bullet;
        const int number = isMarked ? mark->number : last != m_lastNumbers.end() ? last->second + 1 : list.start;
        const bool goesOn = m_lastPlace == place && last != m_lastNumbers.end() && number == last->second + 1;
        m_lastNumbers.erase(m_lastNumbers.upper_bound(place), m_lastNumbers.upper_bound({place.first, maxRtfTwips}));
        m_lastNumbers[place] = number;
        list.start = goesOn ? m_lastList.start : number;
    }
    m_lastPlace = place;
    m_lastList = list;
    return list;
}
