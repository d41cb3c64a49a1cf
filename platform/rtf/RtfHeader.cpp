#include "platform/rtf/RtfHeader.h"

#include <QTextDocument>

namespace {

constexpr int english = 1033;

} // namespace

RtfHeader::RtfHeader(const QTextDocument &document)
    : m_units(document)
    , m_defaultFont(document.defaultFont())
{
}

void RtfHeader::collect(int index, const QTextCharFormat &format)
{
    if (m_formats.contains(index)) {
        return;
    }
    RtfCharacter character = characterOf(format, m_defaultFont, m_units);
    character.font = fontNumber(fontOf(format, m_defaultFont));
    character.link = m_links.place(format.anchorHref());
    collectColor(character.color);
    collectColor(character.highlight);
    m_formats.insert(index, character);
}

void RtfHeader::collectSymbolFont()
{
    m_symbolFont = fontNumber({QStringLiteral("Symbol"), symbolCharset, symbolCodePage});
}

const RtfCodePage &RtfHeader::codePage(int number)
{
    return m_codePages.page(m_fonts[static_cast<std::size_t>(number)].codePage);
}

int RtfHeader::fontNumber(RtfFont font)
{
    font.family = fontTableName(font.family);
    if (font.family.isEmpty()) {
        font.family = fontTableName(m_defaultFont.family());
    }
    if (font.codePage == symbolCodePage) {
        font.codePage = codePageOfSymbolFont(font.family);
    }
    const auto key = std::pair(font.family, font.charset);
    const auto known = m_fontNumbers.constFind(key);
    if (known != m_fontNumbers.constEnd()) {
        return *known;
    }
    m_fonts.push_back(std::move(font));
    return *m_fontNumbers.insert(key, static_cast<int>(m_fonts.size()) - 1);
}

void RtfHeader::collectColor(int color)
{
    if (color != automaticColor && !m_colorNumbers.contains(color)) {
        m_colors.push_back(color);
        m_colorNumbers.insert(color, static_cast<int>(m_colors.size()));
    }
}

void RtfHeader::write(RtfStream &out)
{
    out.open();
    out.word("rtf1");
    out.word("ansi");
    out.word("ansicpg", defaultCodePage);
    out.word("deff", 0);
    out.word("deflang", english);
    writeFonts(out);
    writeColors(out);
}

void RtfHeader::writeFonts(RtfStream &out)
{
    out.open();
    out.word("fonttbl");
    for (int number = 0; number < static_cast<int>(m_fonts.size()); ++number) {
        const RtfFont &font = m_fonts[static_cast<std::size_t>(number)];
        out.open();
        out.word("f", number);
        out.word("fnil");
        out.word("fcharset", font.charset);
        out.text(font.family, m_codePages.page(isSymbolCodePage(font.codePage) ? defaultCodePage : font.codePage));
        out.semicolon();
        out.close();
    }
    out.close();
    out.endLine();
}

void RtfHeader::writeColors(RtfStream &out) const
{
    if (m_colors.empty()) {
        return;
    }
    out.open();
    out.word("colortbl");
    out.ascii(";");
    for (const int color : m_colors) {
        out.word("red", color >> 16 & 0xff);
        out.word("green", color >> 8 & 0xff);
        out.word("blue", color & 0xff);
        out.semicolon();
    }
    out.close();
    out.endLine();
}
