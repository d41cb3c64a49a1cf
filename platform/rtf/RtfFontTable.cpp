#include "platform/rtf/RtfFontTable.h"

#include <utility>

RtfFontTable::RtfFontTable(RtfCodePages &pages)
    : m_pages(pages)
{
}

void RtfFontTable::apply(RtfEffect effect, int value)
{
    if (effect == RtfEffect::Font) {
        endEntry();
        beginEntry(value);
    } else if (effect == RtfEffect::FontCharset) {
        m_entry.charset = value;
    } else if (effect == RtfEffect::FontCodePage) {
        m_entry.codePage = value;
    }
}

void RtfFontTable::append(std::string_view bytes)
{
    for (std::size_t end = bytes.find(';'); end != std::string_view::npos; end = bytes.find(';')) {
        m_entry.bytes += bytes.substr(0, end);
        endEntry();
        bytes.remove_prefix(end + 1);
    }
    m_entry.bytes += bytes;
}

void RtfFontTable::append(char16_t character)
{
    decodeName();
    m_entry.name += QChar(character);
}

void RtfFontTable::beginEntry(int number)
{
    m_entry = Entry{};
    m_entry.number = number;
    m_inEntry = true;
}

void RtfFontTable::endEntry()
{
    decodeName();
    if (!std::exchange(m_inEntry, false)) {
        return;
    }
    const int codePage = codePageOf(m_entry);
    const bool charsetTells = codePageOfCharset(m_entry.charset) == codePage;
    m_fonts.push_back(
        {m_entry.name.simplified(), charsetTells ? m_entry.charset : charsetOfCodePage(codePage), codePage});
    m_placeOfNumber[m_entry.number] = static_cast<int>(m_fonts.size()) - 1;
}

void RtfFontTable::decodeName()
{
    const int codePage = codePageOf(m_entry);
    // The name of a symbol font is not written in symbols.
    m_entry.name += m_pages.page(codePage == symbolCodePage ? defaultCodePage : codePage).decode(m_entry.bytes);
    m_entry.bytes.clear();
}

int RtfFontTable::find(int number, int otherwise) const
{
    const auto place = m_placeOfNumber.find(number);
    return place != m_placeOfNumber.end() ? place->second : otherwise;
}

const RtfCodePage &RtfFontTable::codePage(int place) const
{
    return m_pages.page(place >= 0 ? at(place).codePage : m_documentCodePage);
}

int RtfFontTable::codePageOf(const Entry &entry) const
{
    if (entry.codePage > 0) {
        return entry.codePage;
    }
    const int codePage = codePageOfCharset(entry.charset);
    return codePage != 0 ? codePage : m_documentCodePage;
}
