#include "platform/rtf/RtfFontTable.h"
#include "tests/platform/rtf/RtfDocuments.h"

#include <climits>
#include <gtest/gtest.h>

namespace {

class RtfFontTableTest : public testing::Test
{
protected:
    /// Begins the entry of font 1 in \p charset.
    void begin(int charset)
    {
        m_table.apply(RtfEffect::Font, 1);
        m_table.apply(RtfEffect::FontCharset, charset);
    }
    /// The font that entry 1 has made.
    [[nodiscard]] RtfFont font() const { return m_table.at(m_table.find(1, -1)); }

    RtfCodePages m_pages;
    RtfFontTable m_table{m_pages};
};

TEST_F(RtfFontTableTest, AnEntryEndsAtItsSemicolon)
{
    begin(0);
    m_table.append("Ari");
    m_table.append("al;");
    EXPECT_EQ(font(), (RtfFont{QStringLiteral("Arial"), 0, 1252}));
}

TEST_F(RtfFontTableTest, AnEntryEndsWhereTheNextOneBegins)
{
    begin(0);
    m_table.append("Arial");
    EXPECT_EQ(m_table.find(1, -7), -7);
    m_table.apply(RtfEffect::Font, 2);
    EXPECT_EQ(font().family, QStringLiteral("Arial"));
}

TEST_F(RtfFontTableTest, ANameIsInTheCodePageOfItsCharset)
{
    begin(204);
    m_table.append("\xcf\xf0;");
    EXPECT_EQ(font().family, QStringLiteral("Пр"));
}

TEST_F(RtfFontTableTest, ANameOfTwoBytesACharacterMayComeInPieces)
{
    begin(129);
    m_table.append("\xb1");
    m_table.append("\xbc");
    m_table.append("\xb8");
    m_table.append("\xb2;");
    EXPECT_EQ(font().family, QStringLiteral("굴림"));
}

TEST_F(RtfFontTableTest, ANameMayBeWrittenBeforeItsCharset)
{
    m_table.apply(RtfEffect::Font, 1);
    m_table.append("\x82\xa0");
    m_table.apply(RtfEffect::FontCharset, 128);
    m_table.append(";");
    EXPECT_EQ(font(), (RtfFont{QStringLiteral("あ"), 128, 932}));
}

TEST_F(RtfFontTableTest, ASemicolonMayBeHalfOfACharacter)
{
    begin(130);
    m_table.append("\xe0");
    m_table.append(";");
    m_table.append("x;");
    EXPECT_EQ(font().family, QStringLiteral("家x"));
}

TEST_F(RtfFontTableTest, ASemicolonBehindHalfACharacterEndsTheEntry)
{
    begin(128);
    m_table.append("A\x82;");
    EXPECT_EQ(font().family, QStringLiteral("A\ufffd"));
}

TEST_F(RtfFontTableTest, CharactersMayStandAmongBytes)
{
    begin(128);
    m_table.append("\x82\xa0");
    m_table.append(u'é');
    m_table.append(u'\xd83d');
    m_table.append(u'\xde0a');
    m_table.append(" B;");
    EXPECT_EQ(font().family, QStringLiteral("あé\U0001f60a B"));
}

TEST_F(RtfFontTableTest, BlanksOfANameAreSingle)
{
    begin(0);
    m_table.append("  Comic   Sans ;");
    EXPECT_EQ(font().family, QStringLiteral("Comic Sans"));
}

TEST_F(RtfFontTableTest, AFontWithoutACharsetIsInThatOfTheDocument)
{
    m_table.setDocumentCodePage(1251);
    m_table.apply(RtfEffect::Font, 1);
    m_table.append("\xcf;");
    EXPECT_EQ(font(), (RtfFont{QStringLiteral("П"), 204, 1251}));
}

TEST_F(RtfFontTableTest, TheCodePageOfAnEntryIsMoreThanItsCharset)
{
    begin(0);
    m_table.apply(RtfEffect::FontCodePage, 1253);
    m_table.append("\xe1;");
    EXPECT_EQ(font(), (RtfFont{QStringLiteral("α"), 161, 1253}));
}

TEST_F(RtfFontTableTest, NumbersThatAreNoCodePagesAreIgnored)
{
    const int ofSymbol = codePageOfSymbolFont(u"Symbol");
    for (const int number : {0, -1, INT_MIN, lastCodePage + 1, ofSymbol, INT_MAX}) {
        m_table.setDocumentCodePage(number);
        m_table.apply(RtfEffect::Font, 1);
        m_table.apply(RtfEffect::FontCodePage, number);
        m_table.append("\xe9;");
        EXPECT_EQ(font(), (RtfFont{QStringLiteral("é"), 0, 1252})) << number;
        EXPECT_EQ(m_table.codePage(-1).decode("\xe9"), QStringLiteral("é")) << number;
    }
}

TEST_F(RtfFontTableTest, ASymbolFontHasTheCodePageOfItsName)
{
    begin(symbolCharset);
    m_table.append("Wingdings;");
    EXPECT_EQ(font(), (RtfFont{QStringLiteral("Wingdings"), symbolCharset, codePageOfSymbolFont(u"Wingdings")}));
    EXPECT_EQ(m_table.codePage(m_table.find(1, -1)).decode("\xfc"), QStringLiteral("✓"));
}

TEST_F(RtfFontTableTest, ASymbolFontMayLackItsCharset)
{
    m_table.apply(RtfEffect::Font, 1);
    m_table.append("Symbol;");
    EXPECT_EQ(font(), (RtfFont{QStringLiteral("Symbol"), symbolCharset, codePageOfSymbolFont(u"Symbol")}));
}

TEST_F(RtfFontTableTest, ASymbolFontThatNobodyKnowsIsOneAllTheSame)
{
    begin(symbolCharset);
    m_table.append("Runes;");
    EXPECT_EQ(font(), (RtfFont{QStringLiteral("Runes"), symbolCharset, symbolCodePage}));
}

TEST_F(RtfFontTableTest, AFontOfAnotherCharsetIsNoSymbolFontByItsName)
{
    begin(ansiCharset);
    m_table.append("Symbol;");
    EXPECT_EQ(font(), (RtfFont{QStringLiteral("Symbol"), ansiCharset, 1252}));
}

TEST_F(RtfFontTableTest, TheNameOfASymbolFontIsNotInSymbols)
{
    begin(symbolCharset);
    m_table.append("Symb\xe9l;");
    EXPECT_EQ(font().family, QStringLiteral("Symbél"));
}

TEST_F(RtfFontTableTest, TextOutsideOfEntriesMakesNoFont)
{
    m_table.append("Arial;;;");
    m_table.endEntry();
    EXPECT_EQ(m_table.find(0, -7), -7);
    EXPECT_EQ(m_table.find(1, -7), -7);
}

} // namespace
