#include "platform/rtf/RtfDocumentBuilder.h"

#include "platform/rtf/RtfLimits.h"
#include "platform/rtf/RtfObjectFormat.h"

#include <QTextDocument>

namespace {

/// A list of a document visits all its paragraphs whenever one joins it, so that
/// long ones take quadratic time: they go on in another list. Nobody sees that
/// of bullets. Items that are added to a numbered one later do not count on into
/// the next, so they stay together as long as a whole text makes no more visits
/// than this: one list of over 4,000 paragraphs, or two thousand of a hundred.
constexpr int shortList = 64;
constexpr std::int64_t maxListVisits = 10'000'000;

/// A document looks for a format by its hash, but on a copy: one that was never
/// compared would be hashed anew for every run that has it.
template <typename Format>
void hash(const Format &format)
{
    static const Format other = [] {
        Format some;
        some.setProperty(QTextFormat::UserProperty, 0);
        return some;
    }();
    static_cast<void>(format == other);
}

} // namespace

RtfDocumentBuilder::RtfDocumentBuilder(QTextCursor &cursor, const RtfFontTable &fonts, const RtfLinkTable &links)
    : m_cursor(cursor)
    , m_fonts(fonts)
    , m_links(links)
    , m_units(*cursor.document())
    , m_formatBefore(cursor.blockFormat())
    , m_markBefore(cursor.blockCharFormat())
{
}

void RtfDocumentBuilder::append(QStringView text, const RtfCharacter &format)
{
    if (!text.isEmpty()) {
        prepare(format);
        m_text += text;
        m_runs.back().end = m_text.size();
    }
}

void RtfDocumentBuilder::append(QLatin1StringView text, const RtfCharacter &format)
{
    if (!text.isEmpty()) {
        prepare(format);
        m_text += text;
        m_runs.back().end = m_text.size();
    }
}

void RtfDocumentBuilder::appendObject(const QByteArray &source, const RtfCharacter &format)
{
    if (!isRoomForFormats()) {
        append(QStringView(u" "), format);
        return;
    }
    m_text += QChar::ObjectReplacementCharacter;
    m_objects.push_back(toObjectFormat(charFormat(format), source));
    ++m_newFormats;
    m_runs.push_back({m_text.size(), &m_objects.back()});
    m_mayJoinRun = false;
}

void RtfDocumentBuilder::endParagraph(const RtfParagraph &paragraph, const RtfCharacter &mark)
{
    if (m_paragraphs >= maxRtfParagraphs) {
        append(QStringView(u"\u2028"), mark);
        return;
    }
    beginBlock(paragraph, mark);
    insertRuns();
    m_breakIsDue = true;
}

void RtfDocumentBuilder::endDocument(const RtfParagraph &paragraph, const RtfCharacter &mark)
{
    if (m_breakIsDue && m_runs.empty()) {
        return;
    }
    beginBlock(paragraph, m_mayJoinRun ? m_runFormat : mark);
    insertRuns();
}

void RtfDocumentBuilder::endInsertion()
{
    if (m_breakIsDue) {
        m_cursor.insertBlock(m_formatBefore, m_markBefore);
    }
    insertRuns();
}

bool RtfDocumentBuilder::isRoomForFormats() const
{
    return m_cursor.document()->allFormats().size() + m_newFormats < maxRtfFormats;
}

void RtfDocumentBuilder::prepare(const RtfCharacter &format)
{
    if (!m_mayJoinRun || format != m_runFormat) {
        m_runs.push_back({m_text.size(), &charFormat(format)});
        m_runFormat = format;
        m_mayJoinRun = true;
    }
}

void RtfDocumentBuilder::insertRuns()
{
    qsizetype start = 0;
    for (const Run &run : m_runs) {
        m_cursor.insertText(QString::fromRawData(m_text.constData() + start, run.end - start), *run.format);
        start = run.end;
    }
    m_runs.clear();
    m_objects.clear();
    m_newFormats = 0;
    m_text.resize(0);
    m_mayJoinRun = false;
}

/// Makes the paragraph of the document that the open one becomes.
void RtfDocumentBuilder::beginBlock(const RtfParagraph &paragraph, const RtfCharacter &mark)
{
    RtfCharacter unlinked = mark;
    unlinked.link = -1;
    const QTextCharFormat &markFormat = charFormat(unlinked);
    const bool isKnown = m_paragraphs > 0 && (paragraph == m_paragraph || !isRoomForFormats());
    const bool isList = (isKnown ? m_paragraph : paragraph).list.style != RtfListStyle::None;
    if (!isKnown) {
        m_paragraph = paragraph;
        m_paragraphFormat = toBlockFormat(paragraph, m_units);
        hash(m_paragraphFormat);
    }
    if (m_breakIsDue) {
        m_cursor.insertBlock(m_paragraphFormat, markFormat);
    } else {
        m_cursor.setBlockFormat(m_paragraphFormat);
        m_cursor.setBlockCharFormat(markFormat);
    }
    ++m_paragraphs;
    if (!isList) {
        m_list = nullptr;
    } else if (isKnown && m_list != nullptr && listMayGrow()) {
        ++m_listLength; // it is in the list by its format
        m_listVisits += m_listLength;
    } else {
        joinList(m_paragraph.list);
        m_paragraphFormat = m_cursor.blockFormat();
    }
}

void RtfDocumentBuilder::joinList(const RtfList &list)
{
    const bool goesOn = m_list != nullptr && m_listFormat == list;
    if (goesOn && listMayGrow()) {
        m_list->add(m_cursor.block());
        ++m_listLength;
        m_listVisits += m_listLength;
        return;
    }
    m_listOffset = goesOn ? m_listOffset + m_listLength : 0;
    m_listFormat = list;
    RtfList next = list;
    next.start += list.style != RtfListStyle::Bullet ? m_listOffset : 0;
    m_list = m_cursor.createList(toListFormat(next));
    m_listLength = 1;
}

bool RtfDocumentBuilder::listMayGrow() const
{
    return m_listLength <= shortList || (m_listFormat.style != RtfListStyle::Bullet && m_listVisits <= maxListVisits);
}

const QTextCharFormat &RtfDocumentBuilder::charFormat(const RtfCharacter &format)
{
    if (const QTextCharFormat *known = m_charFormats.find(format)) {
        return *known;
    }
    if (isRoomForFormats()) {
        const RtfFont *font = format.font >= 0 ? &m_fonts.at(format.font) : nullptr;
        m_charFormats.add(format, toCharFormat(format, font, m_links.at(format.link)));
        ++m_newFormats;
    }
    return m_charFormats.last();
}

const QTextCharFormat *RtfDocumentBuilder::CharFormats::find(const RtfCharacter &character) const
{
    const std::int32_t place = m_slots[slotOf(character)];
    return place >= 0 ? &m_entries[static_cast<std::size_t>(place)].format : nullptr;
}

void RtfDocumentBuilder::CharFormats::add(const RtfCharacter &character, const QTextCharFormat &format)
{
    if (2 * (m_entries.size() + 1) > m_slots.size()) {
        grow();
    }
    m_slots[slotOf(character)] = static_cast<std::int32_t>(m_entries.size());
    m_entries.push_back({character, format});
    hash(format);
}

/// The slot of \p character, or the free one that it would get.
std::size_t RtfDocumentBuilder::CharFormats::slotOf(const RtfCharacter &character) const
{
    const std::size_t mask = m_slots.size() - 1;
    std::size_t slot = RtfCharacterHash()(character) & mask;
    while (m_slots[slot] >= 0 && m_entries[static_cast<std::size_t>(m_slots[slot])].character != character) {
        slot = (slot + 1) & mask;
    }
    return slot;
}

void RtfDocumentBuilder::CharFormats::grow()
{
    m_slots.assign(2 * m_slots.size(), -1);
    for (std::size_t place = 1; place < m_entries.size(); ++place) {
        m_slots[slotOf(m_entries[place].character)] = static_cast<std::int32_t>(place);
    }
}
