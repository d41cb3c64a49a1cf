#include "platform/rtf/RtfFontTable.h"

#include <utility>

void RtfFontTable::beginEntry(int number)
{
    m_entry = Entry{};
    m_entry.number = number;
    m_inEntry = true;
}

void RtfFontTable::setCharset(int charset)
{
    m_entry.charset = charset;
}

void RtfFontTable::setCodePage(int codePage)
{
    m_entry.codePage = codePage;
}

void RtfFontTable::appendName(std::string_view bytes)
{
    m_entry.bytes += bytes;
}

void RtfFontTable::appendName(char16_t character, RtfCodePages &pages)
{
    decodeName(pages);
    m_entry.name += QChar(character);
}

void RtfFontTable::endEntry(RtfCodePages &pages)
{
    decodeName(pages);
    if (!std::exchange(m_inEntry, false)) {
        return;
    }
    const int codePage = codePageOf(m_entry);
    const bool charsetTells = codePageOfCharset(m_entry.charset) == codePage;
    m_fonts.push_back(
        {m_entry.name.simplified(), charsetTells ? m_entry.charset : charsetOfCodePage(codePage), codePage});
    m_placeOfNumber[m_entry.number] = static_cast<int>(m_fonts.size()) - 1;
}

void RtfFontTable::decodeName(RtfCodePages &pages)
{
    const int codePage = codePageOf(m_entry);
    // The name of a symbol font is not written in symbols.
    m_entry.name += pages.page(codePage == symbolCodePage ? defaultCodePage : codePage).decode(m_entry.bytes);
    m_entry.bytes.clear();
}

int RtfFontTable::find(int number) const
{
    const auto place = m_placeOfNumber.find(number);
    return place != m_placeOfNumber.end() ? place->second : -1;
}

int RtfFontTable::codePageOf(const Entry &entry) const
{
    if (entry.codePage > 0) {
        return entry.codePage;
    }
    const int codePage = codePageOfCharset(entry.charset);
    return codePage != 0 ? codePage : m_documentCodePage;
}
