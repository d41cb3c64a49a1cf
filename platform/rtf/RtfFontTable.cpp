#include "platform/rtf/RtfFontTable.h"

#include "platform/rtf/RtfLimits.h"

#include <utility>

QString fontTableName(const QString &family)
{
    constexpr qsizetype longest = 127;
    QString name = family.simplified();
    name.removeIf([](QChar c) { return c == u';' || c.category() == QChar::Other_Control; });
    if (name.size() > longest) {
        name.truncate(name[longest - 1].isHighSurrogate() ? longest - 1 : longest);
    }
    return name.simplified();
}

RtfFontTable::RtfFontTable(RtfCodePages &pages)
    : m_pages(pages)
{
}

void RtfFontTable::setDocumentCodePage(int codePage)
{
    if (codePage > 0 && codePage <= lastCodePage) {
        m_documentCodePage = codePage;
    }
}

void RtfFontTable::apply(RtfEffect effect, int value)
{
    if (effect == RtfEffect::Font) {
        endEntry();
        beginEntry(value);
    } else if (effect == RtfEffect::FontCharset) {
        m_entry.charset = value;
    } else if (effect == RtfEffect::FontCodePage && value <= lastCodePage) {
        m_entry.codePage = value;
    }
}

void RtfFontTable::append(std::string_view bytes)
{
    for (const char byte : bytes) {
        if (byte == ';' && !isInsideCharacter(byte)) {
            endEntry();
        } else {
            m_entry.bytes += byte;
        }
    }
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
    if (m_fonts.size() < maxRtfFonts) {
        m_fonts.push_back(fontOf(m_entry));
        m_placeOfNumber[m_entry.number] = static_cast<int>(m_fonts.size()) - 1;
    }
}

RtfFont RtfFontTable::fontOf(const Entry &entry) const
{
    RtfFont font{fontTableName(entry.name), entry.charset, codePageOf(entry)};
    const int symbols = codePageOfSymbolFont(font.family);
    const bool isSymbolByName = entry.charset == defaultCharset && entry.codePage <= 0 && symbols != symbolCodePage;
    if (isSymbolByName || font.codePage == symbolCodePage) {
        font.charset = symbolCharset;
        font.codePage = symbols;
    } else if (codePageOfCharset(font.charset) != font.codePage) {
        font.charset = charsetOfCodePage(font.codePage);
    }
    return font;
}

void RtfFontTable::decodeName()
{
    m_entry.name += namePage().decode(m_entry.bytes);
    m_entry.bytes.clear();
}

/// What the name of the entry is to be decoded by: that of a symbol font is not
/// written in symbols.
const RtfCodePage &RtfFontTable::namePage() const
{
    const int codePage = codePageOf(m_entry);
    return m_pages.page(isSymbolCodePage(codePage) ? m_documentCodePage : codePage);
}

/// Whether \p byte belongs to a character of the name that has begun.
bool RtfFontTable::isInsideCharacter(char byte) const
{
    const bool mayBe = !m_entry.bytes.empty() && static_cast<signed char>(m_entry.bytes.back()) < 0;
    return mayBe && namePage().isCutBefore(byte, m_entry.bytes);
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
