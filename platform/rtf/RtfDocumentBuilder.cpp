#include "platform/rtf/RtfDocumentBuilder.h"

#include <utility>

namespace {

/// A list of a document visits all its paragraphs whenever one joins it, so that
/// long ones take quadratic time. Nobody sees where bullets go on in another
/// list. Numbers begin again at 1 there, so they stay together as long as a whole
/// text makes no more visits than this: one list of over 4,000 paragraphs, or two
/// thousand lists of a hundred.
constexpr int shortList = 64;
constexpr std::int64_t maxListVisits = 10'000'000;

} // namespace

RtfDocumentBuilder::RtfDocumentBuilder(QTextCursor &cursor, const RtfFontTable &fonts)
    : m_cursor(cursor)
    , m_fonts(fonts)
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
    }
}

void RtfDocumentBuilder::append(QLatin1StringView text, const RtfCharacter &format)
{
    if (!text.isEmpty()) {
        prepare(format);
        m_text += text;
    }
}

void RtfDocumentBuilder::endParagraph(const RtfParagraph &paragraph, const RtfCharacter &mark)
{
    if (m_breakIsDue) {
        breakParagraph();
    }
    flush();
    applyParagraph(paragraph);
    applyMark(mark);
    m_breakIsDue = true;
}

void RtfDocumentBuilder::endDocument(const RtfParagraph &paragraph, const RtfCharacter &mark)
{
    if (m_breakIsDue) {
        return;
    }
    flush();
    applyParagraph(paragraph);
    applyMark(m_paragraphHasText ? m_textFormat : mark);
}

void RtfDocumentBuilder::endInsertion()
{
    if (m_breakIsDue) {
        breakParagraph();
    }
    flush();
    if (m_hasBroken) {
        m_cursor.setBlockFormat(m_formatBefore);
        m_cursor.setBlockCharFormat(m_markBefore);
    }
}

void RtfDocumentBuilder::prepare(const RtfCharacter &format)
{
    if (m_breakIsDue) {
        breakParagraph();
    }
    if (format != m_textFormat) {
        flush();
        m_textFormat = format;
    }
    m_paragraphHasText = true;
}

void RtfDocumentBuilder::flush()
{
    if (!m_text.isEmpty()) {
        m_cursor.insertText(m_text, charFormat(m_textFormat));
        m_text.resize(0);
    }
}

void RtfDocumentBuilder::breakParagraph()
{
    flush();
    m_cursor.insertBlock(m_paragraphFormat, charFormat(m_mark));
    if (m_paragraph.list.style != RtfListStyle::None) {
        ++m_listLength;
        m_listVisits += m_listLength;
        m_paragraphIsKnown = listMayGrow();
    }
    m_breakIsDue = false;
    m_hasBroken = true;
    m_paragraphHasText = false;
}

void RtfDocumentBuilder::applyParagraph(const RtfParagraph &paragraph)
{
    if (m_paragraphIsKnown && paragraph == m_paragraph) {
        return;
    }
    m_paragraph = paragraph;
    m_paragraphIsKnown = true;
    m_cursor.setBlockFormat(toBlockFormat(paragraph, m_units));
    joinList(paragraph.list);
    m_paragraphFormat = m_cursor.blockFormat();
}

void RtfDocumentBuilder::applyMark(const RtfCharacter &mark)
{
    if (m_markIsKnown && mark == m_mark) {
        return;
    }
    m_mark = mark;
    m_markIsKnown = true;
    m_cursor.setBlockCharFormat(charFormat(mark));
}

void RtfDocumentBuilder::joinList(const RtfList &list)
{
    if (list.style == RtfListStyle::None) {
        m_list = nullptr;
        return;
    }
    if (m_list != nullptr && m_listFormat == list && listMayGrow()) {
        m_list->add(m_cursor.block());
        m_listVisits += 2 * std::int64_t{m_listLength}; // its new format took it out of the list before
        return;
    }
    m_list = m_cursor.createList(toListFormat(list));
    m_listFormat = list;
    m_listLength = 1;
}

bool RtfDocumentBuilder::listMayGrow() const
{
    return m_listLength <= shortList || (m_listFormat.style != RtfListStyle::Bullet && m_listVisits <= maxListVisits);
}

const QTextCharFormat &RtfDocumentBuilder::charFormat(const RtfCharacter &format)
{
    const auto [place, isNew] = m_charFormats.try_emplace(format);
    if (isNew) {
        place->second = toCharFormat(format, format.font >= 0 ? &m_fonts.at(format.font) : nullptr);
    }
    return place->second;
}
