#include "platform/rtf/RtfCodePages.h"
#include "platform/rtf/RtfFormats.h"
#include "platform/rtf/RtfSymbolFonts.h"
#include "platform/rtf/RtfWriter.h"
#include "tests/platform/rtf/RtfDocuments.h"

#include <gtest/gtest.h>
#include <set>

namespace {

const auto families =
    std::to_array<const char *>({"Symbol", "Wingdings", "Wingdings 2", "Wingdings 3", "Webdings", "ZapfDingbats"});

RtfCodePage pageOf(const char *family)
{
    return RtfCodePage(codePageOfSymbolFont(QString::fromLatin1(family)));
}

QByteArray encoded(const RtfCodePage &page, const QString &text)
{
    QByteArray bytes;
    for (const char32_t c : text.toUcs4()) {
        bytes += page.encode(c);
    }
    return bytes;
}

struct SymbolRow
{
    const char *name;
    const char *family;
    const char *bytes;
    QString text;
};

void PrintTo(const SymbolRow &row, std::ostream *out)
{
    *out << row.name;
}

const auto rowName = [](const auto &info) { return info.param.name; };

class RtfSymbols : public testing::TestWithParam<SymbolRow>
{
};

TEST_P(RtfSymbols, AreTheCharactersOfTheirBytes)
{
    EXPECT_EQ(pageOf(GetParam().family).decode(GetParam().bytes), GetParam().text);
}

TEST_P(RtfSymbols, AreWrittenAsTheirBytes)
{
    EXPECT_EQ(encoded(pageOf(GetParam().family), GetParam().text), QByteArray(GetParam().bytes));
}

INSTANTIATE_TEST_SUITE_P(
    Of, RtfSymbols,
    testing::Values(
        SymbolRow{"SmallGreekLetters", "Symbol", "abcdefghijklmnopqrstuvwxyz",
                  QStringLiteral("αβχδεφγηιϕκλμνοπθρστυϖωξψζ")},
        SymbolRow{"CapitalGreekLetters", "Symbol", "ABCDEFGHIJKLMNOPQRSTUVWXYZ",
                  QStringLiteral("ΑΒΧΔΕΦΓΗΙϑΚΛΜΝΟΠΘΡΣΤΥςΩΞΨΖ")},
        SymbolRow{"DigitsAndPunctuation", "Symbol", " !#%&()+,./0189:;<=>?[]_{|}",
                  QStringLiteral(" !#%&()+,./0189:;<=>?[]_{|}")},
        SymbolRow{"SignsInThePlacesOfAscii", "Symbol", "\"$'*-@\\^`~", QStringLiteral("∀∃∋∗−≅∴⊥‾∼")},
        SymbolRow{"OperatorsOfMathematics", "Symbol", "\xa3\xa5\xb1\xb3\xb4\xb8\xb9\xba\xbb\xd5\xd6\xe5\xf2",
                  QStringLiteral("≤∞±≥×÷≠≡≈∏√∑∫")},
        SymbolRow{"SetsAndLogic", "Symbol", "\xc6\xc7\xc8\xc9\xce\xcf\xd8\xd9\xda", QStringLiteral("∅∩∪⊃∈∉¬∧∨")},
        SymbolRow{"Arrows", "Symbol", "\xab\xac\xad\xae\xaf\xdb\xdc\xde", QStringLiteral("↔←↑→↓⇔⇐⇒")},
        SymbolRow{"TheBulletOfLists", "Symbol", "\xb7", QStringLiteral("•")},
        SymbolRow{"TheEuro", "Symbol", "\xa0", QStringLiteral("€")},
        SymbolRow{"BytesWithoutACharacter", "Symbol", "\x7f\x80\xf0\xff", QStringLiteral("\uf07f\uf080\uf0f0\uf0ff")},
        SymbolRow{"ChecksCrossesAndBoxes", "Wingdings", "\xfb\xfc\xfd\xfenoq\xa7", QStringLiteral("✗✓☒☑■□❑▪")},
        SymbolRow{"ArrowsThatProgramsType", "Wingdings", "\xdf\xe0\xe7\xe8\xf3\xd8", QStringLiteral("←→⬅➡⬄➢")},
        SymbolRow{"FacesThatProgramsType", "Wingdings", "JKL", QStringLiteral("☺\U0001f610☹")},
        SymbolRow{"PointingHands", "Wingdings", "EFGH", QStringLiteral("☜☞☝☟")},
        SymbolRow{"DigitsInCircles", "Wingdings", "\x80\x81\x8a\x8b\x8c", QStringLiteral("⓪➀➉⓿➊")},
        SymbolRow{"ClocksBeyondThePlane", "Wingdings", "\xb7\xc2", QStringLiteral("\U0001f550\U0001f55b")},
        SymbolRow{"ChecksOfTheSecondFont", "Wingdings 2", "OPRT", QStringLiteral("✗✓☑☒")},
        SymbolRow{"TrianglesOfTheThirdFont", "Wingdings 3", "pqtu}", QStringLiteral("▲▼◀▶▸")},
        SymbolRow{"PicturesOfWebdings", "Webdings", "34aQ", QStringLiteral("◀▶✔\U0001f3d5")},
        SymbolRow{"Dingbats", "ZapfDingbats", "3Hln\xac\xd5\xfe", QStringLiteral("✓★●■①→➾")}),
    rowName);

TEST(RtfSymbolFonts, AreKnownByTheirNamesHoweverTheyAreSpelt)
{
    const auto page = [](const char *name) { return codePageOfSymbolFont(QString::fromLatin1(name)); };
    EXPECT_EQ(page("SYMBOL"), page("Symbol"));
    EXPECT_EQ(page("Wingdings2"), page("Wingdings 2"));
    EXPECT_EQ(page("Wingdings-Regular"), symbolCodePage);
    EXPECT_EQ(page("ITC Zapf Dingbats"), page("ZapfDingbats"));
    EXPECT_NE(page("Wingdings 2"), page("Wingdings 3"));
    EXPECT_EQ(page("Arial"), symbolCodePage);
    EXPECT_EQ(page(""), symbolCodePage);
    EXPECT_EQ(codePageOfSymbolFont(QString(100000, QLatin1Char(' ')) + QStringLiteral("Symbol")), symbolCodePage);
}

TEST(RtfSymbolFonts, HaveCodePagesOfTheirOwnBeyondThoseThatATextCanName)
{
    std::set<int> pages;
    for (const char *family : families) {
        const int page = codePageOfSymbolFont(QString::fromLatin1(family));
        EXPECT_GT(page, lastCodePage);
        EXPECT_TRUE(isSymbolCodePage(page));
        EXPECT_TRUE(pages.insert(page).second) << family;
    }
    EXPECT_TRUE(isSymbolCodePage(symbolCodePage));
    for (const int other : {-1, 0, 1252, lastCodePage, *pages.rbegin() + 100, INT_MAX, INT_MIN}) {
        EXPECT_FALSE(isSymbolCodePage(other)) << other;
        EXPECT_EQ(symbolsOfCodePage(other), nullptr) << other;
    }
}

TEST(RtfSymbolFonts, GiveEveryByteBackForItsCharacter)
{
    const std::string signsWithoutSerifs = "\xe2\xe3\xe4";
    for (const char *family : families) {
        const RtfCodePage page = pageOf(family);
        for (int code = 0; code < 256; ++code) {
            const char byte = static_cast<char>(code);
            const QString text = page.decode({&byte, 1});
            EXPECT_EQ(text.toUcs4().size(), 1) << family << ' ' << code;
            const QByteArray back = encoded(page, text);
            EXPECT_EQ(page.decode({back.constData(), static_cast<std::size_t>(back.size())}), text);
            if (family != families.front() || signsWithoutSerifs.find(byte) == std::string::npos) {
                EXPECT_EQ(back, QByteArray(1, byte)) << family << ' ' << code;
            }
        }
    }
}

TEST(RtfSymbolFonts, ShowPrivateCharactersAsTheSymbolsThatTheyStandFor)
{
    const RtfCodePage symbol = pageOf("Symbol");
    EXPECT_EQ(symbol.shown(0xf0b7), U'•');
    EXPECT_EQ(symbol.shown(0xf061), U'α');
    EXPECT_EQ(symbol.shown(0xf0f0), char32_t{0xf0f0}) << "nobody knows it";
    EXPECT_EQ(symbol.shown(0xf01f), char32_t{0xf01f});
    EXPECT_EQ(symbol.shown(0xf100), char32_t{0xf100});
    EXPECT_EQ(symbol.shown(U'a'), U'a') << "a letter that was meant";
    EXPECT_EQ(symbol.encode(0xf0b7), QByteArray("\xb7"));
    EXPECT_EQ(pageOf("Wingdings").shown(0xf04b), char32_t{0x1f610});
    EXPECT_EQ(RtfCodePage(symbolCodePage).shown(0xf0b7), char32_t{0xf0b7});
    EXPECT_EQ(RtfCodePage(defaultCodePage).shown(0xf0b7), char32_t{0xf0b7});
}

TEST(RtfSymbolFonts, LeaveLettersThatTheyDoNotHaveToUnicode)
{
    const RtfCodePage symbol = pageOf("Symbol");
    EXPECT_FALSE(symbol.keepsAscii());
    EXPECT_TRUE(symbol.encode(U'a').isEmpty());
    EXPECT_TRUE(symbol.encode(U'é').isEmpty());
    EXPECT_EQ(symbol.encode(U'7'), QByteArray("7"));
}

TEST(RtfSymbolFonts, ThatAreUnknownKeepAsciiAndHavePrivateCharacters)
{
    const RtfCodePage page(codePageOfSymbolFont(u"Runes of Mine"));
    EXPECT_TRUE(page.keepsAscii());
    EXPECT_EQ(page.decode("a\x80\xb7\xff"), QStringLiteral("a\uf080\uf0b7\uf0ff"));
    EXPECT_EQ(encoded(page, QStringLiteral("a\uf080\uf0b7\uf0ff")), QByteArray("a\x80\xb7\xff"));
}

// In texts.

struct TextRow
{
    const char *name;
    std::string font; ///< of the entry in the font table
    std::string body;
    QString text;
};

void PrintTo(const TextRow &row, std::ostream *out)
{
    *out << row.font << ' ' << row.body;
}

class RtfSymbolText : public testing::TestWithParam<TextRow>
{
protected:
    static std::string rtf()
    {
        return R"({\rtf1\ansi\ansicpg1252\deff0{\fonttbl{\f0\fnil\fcharset0 Arial;}{\f1)" + GetParam().font +
               R"(;}}\pard\f0\fs20 )" + GetParam().body + "}";
    }
};

TEST_P(RtfSymbolText, IsRead)
{
    EXPECT_EQ(textOf(*documentOf(rtf())), GetParam().text);
}

TEST_P(RtfSymbolText, IsTheSameWhenItIsReadAgain)
{
    const auto first = documentOf(rtf());
    const std::string written = writeRtf(*first);
    const auto second = documentOf(written);
    EXPECT_EQ(seen(*second), seen(*first));
    EXPECT_EQ(writeRtf(*second), written);
}

INSTANTIATE_TEST_SUITE_P(
    Of, RtfSymbolText,
    testing::Values(
        TextRow{"LettersIsGreek", R"(\froman\fcharset2 Symbol)", R"(a\f1 abc\f0 b)", QStringLiteral("aαβχb")},
        TextRow{"EscapedLettersIsGreek", R"(\fcharset2 Symbol)", R"(\f1\'61\'62)", QStringLiteral("αβ")},
        TextRow{"BytesIsSymbols", R"(\fcharset2 Symbol)", R"(\f1\'b7\'ae\'a3)", QStringLiteral("•→≤")},
        TextRow{"RawBytesIsSymbols", R"(\fcharset2 Symbol)", "\\f1 \xb7\xae", QStringLiteral("•→")},
        TextRow{"EscapedBracesAndBackslashes", R"(\fcharset2 Symbol)", R"(\f1\{\\\})", QStringLiteral("{∴}")},
        TextRow{"PrivateCharacters", R"(\fcharset2 Symbol)", R"(\f1\u-3913?\u-3999?\uc0\u61623 x)",
                QStringLiteral("•α•ξ")},
        TextRow{"PrivateCharactersInOtherFonts", R"(\fcharset2 Symbol)", R"(\u-3913?)", QStringLiteral("\uf0b7")},
        TextRow{"LettersMeantAsLetters", R"(\fcharset2 Symbol)", R"(\f1\u97?)", QStringLiteral("a")},
        TextRow{"TabsAndLines", R"(\fcharset2 Symbol)", R"(\f1 a\tab\line b)", QStringLiteral("α\t\u2028β")},
        TextRow{"CharactersBeyondThePlane", R"(\fcharset2 Wingdings)", R"(\f1\'b7K\f0 x)",
                QStringLiteral("\U0001f550\U0001f610x")},
        TextRow{"PrivateCharactersBeyondThePlane", R"(\fcharset2 Wingdings)", R"(\f1\u-3913?)",
                QStringLiteral("\U0001f550")},
        TextRow{"AFontWithoutACharset", "\\fnil Wingdings", R"(\f1\'fc)", QStringLiteral("✓")},
        TextRow{"AFontThatIsSaidToBeWestern", R"(\fcharset0 Symbol)", R"(\f1 a\'e9)", QStringLiteral("aé")},
        TextRow{"AnUnknownFont", R"(\fcharset2 Runes)", R"(\f1 a\'b7)", QStringLiteral("a\uf0b7")},
        TextRow{"Nothing", R"(\fcharset2 Symbol)", R"(\f1\par)", QString()}),
    rowName);

TEST(RtfSymbolTexts, AreWrittenAsTheBytesOfTheirFont)
{
    const auto document = documentOf(wholeRtf(R"(a\f1 ab 1{\'b7}\u-3913?\u233?\u97?\{\f0 b)"));
    const std::string rtf = writeRtf(*document);
    EXPECT_NE(rtf.find(R"({\f1\fnil\fcharset2 Symbol;})"), std::string::npos) << rtf;
    EXPECT_NE(rtf.find(R"(a\f1 \'61\'62 1\'b7\'b7\u233?\u97?\{\f0 b)"), std::string::npos) << rtf;
}

TEST(RtfSymbolTexts, AreNotShownInTheirFontButBelongToIt)
{
    const auto document = documentOf(wholeRtf(R"(\f1 ab)"));
    const QTextCharFormat format = document->begin().begin().fragment().charFormat();
    EXPECT_TRUE(format.fontFamilies().toStringList().isEmpty()) << "where it is there, it has alpha in the place of a";
    EXPECT_EQ(fontOf(format, document->defaultFont()),
              (RtfFont{QStringLiteral("Symbol"), symbolCharset, codePageOfSymbolFont(u"Symbol")}));
}

TEST(RtfSymbolTexts, ThatGetAnotherFontStayWhatTheyShow)
{
    const auto document = documentOf(wholeRtf(R"(\f1 ab)"));
    QTextCursor cursor(document.get());
    cursor.select(QTextCursor::Document);
    QTextCharFormat format;
    format.setFontFamilies({QStringLiteral("Arial")});
    cursor.mergeCharFormat(format);
    const std::string rtf = writeRtf(*document);
    EXPECT_NE(rtf.find(R"({\f0\fnil\fcharset0 Arial;})"), std::string::npos) << rtf;
    EXPECT_NE(rtf.find(R"(\u945?\u946?)"), std::string::npos) << rtf;
    EXPECT_EQ(textOf(*documentOf(rtf)), QStringLiteral("αβ"));
}

TEST(RtfSymbolTexts, ThatAreTypedInASymbolFontOfTheDesktopStayWhatTheyAre)
{
    const auto document = emptyDocument();
    QTextCursor cursor(document.get());
    QTextCharFormat format;
    format.setFontFamilies({QStringLiteral("Symbol")});
    cursor.insertText(QStringLiteral("abα"), format);
    const std::string rtf = writeRtf(*document);
    EXPECT_NE(rtf.find(R"({\f0\fnil\fcharset0 Symbol;})"), std::string::npos) << rtf;
    EXPECT_EQ(textOf(*documentOf(rtf)), QStringLiteral("abα"));
}

} // namespace
