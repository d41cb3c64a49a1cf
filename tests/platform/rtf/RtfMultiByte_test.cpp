#include "platform/rtf/RtfWriter.h"
#include "tests/platform/rtf/RtfDocuments.h"

#include <gtest/gtest.h>

// Text in code pages with characters of several bytes, in which a byte may look like
// a brace, a backslash or a line end, and a character may come in pieces.

namespace {

struct MultiByteRow
{
    const char *name;
    std::string body;
    QString text;
};

void PrintTo(const MultiByteRow &row, std::ostream *out)
{
    *out << row.body;
}

const auto rowName = [](const auto &info) { return info.param.name; };

/// Font 1 is Japanese, 2 Korean, 3 simplified and 4 traditional Chinese, 5 Johab; 6 to 8
/// are in code pages that they name, 9 has a Japanese name.
std::string rtf(const std::string &body)
{
    return R"({\rtf1\ansi\ansicpg1252\deff0{\fonttbl{\f0\fcharset0 Arial;}{\f1\fcharset128 Gothic;})"
           R"({\f2\fcharset129 Batang;}{\f3\fcharset134 SimSun;}{\f4\fcharset136 MingLiU;}{\f5\fcharset130 Johab;})"
           R"({\f6\cpg54936 A;}{\f7\cpg51932 B;}{\f8\cpg65001 C;}{\f9\fcharset128 \'82\'6c\'82\'72 \'83\'53;}})"
           R"(\pard\f0\fs20 )" +
           body + "}";
}

class RtfMultiByte : public testing::TestWithParam<MultiByteRow>
{
};

TEST_P(RtfMultiByte, IsRead)
{
    EXPECT_EQ(textOf(*documentOf(rtf(GetParam().body))), GetParam().text);
}

TEST_P(RtfMultiByte, IsTheSameWhenItIsReadAgain)
{
    const auto first = documentOf(rtf(GetParam().body));
    const std::string written = writeRtf(*first);
    const auto second = documentOf(written);
    EXPECT_EQ(seen(*second), seen(*first));
    EXPECT_EQ(writeRtf(*second), written);
}

INSTANTIATE_TEST_SUITE_P(
    Pairs, RtfMultiByte,
    testing::Values(
        MultiByteRow{"MayBeEscaped", R"(\f1\'82\'a0x)", QStringLiteral("あx")},
        MultiByteRow{"MayBeRaw", "\\f1 \x82\xa0x", QStringLiteral("あx")},
        MultiByteRow{"MayBeRawAndEscaped", "\\f1 \x82\\'a0x", QStringLiteral("あx")},
        MultiByteRow{"MayEndInALetter", R"(\f1\'83Ax)", QStringLiteral("アx")},
        MultiByteRow{"MayEndInALetterThatIsRawToo",
                     "\\f1 \x83"
                     "Ax",
                     QStringLiteral("アx")},
        MultiByteRow{"MayEndInAnEscapedLetter", R"(\f1\'83\'41x)", QStringLiteral("アx")},
        MultiByteRow{"MayEndInAnEscapedByteOfABackslash", R"(\f1\'95\'5cx)", QStringLiteral("表x")},
        MultiByteRow{"MayEndInAnEscapedBackslash", R"(\f1\'95\\x)", QStringLiteral("表x")},
        MultiByteRow{"MayEndInAnEscapedBackslashWhenTheyAreRaw", "\\f1 \x95\\\\x", QStringLiteral("表x")},
        MultiByteRow{"MayEndInAnEscapedByteOfABrace", R"(\f1\'96\'7bx\'83\'7dy)", QStringLiteral("本xマy")},
        MultiByteRow{"MayEndInAnEscapedBrace", R"(\f1\'96\{x\'83\}y)", QStringLiteral("本xマy")},
        MultiByteRow{"MayStandOnTwoLines", "\\f1\\'82\r\n\\'a0\\'82\n\xa2\\'83\r\nA", QStringLiteral("あいア")},
        MultiByteRow{"OfKorean", R"(\f2\'b0\'a1\'c7\'d1 A)", QStringLiteral("가한 A")},
        MultiByteRow{"OfKoreanBeyondTheStandard", R"(\f2\'81\'41\'8b\'c1)", QStringLiteral("갂떶")},
        MultiByteRow{"OfJohab", R"(\f5\'88a\'d0\'65\\)", QStringLiteral("가한\\")},
        MultiByteRow{"OfJohabMayEndInASemicolon", R"(\f5\'e0;)", QStringLiteral("家")},
        MultiByteRow{"OfSimplifiedChinese", R"(\f3\'d6\'d0\'ce\'c4)", QStringLiteral("中文")},
        MultiByteRow{"OfTraditionalChinese", R"(\f4\'a4\'a4\'a4\'e5\'b3\\\'a5\'7c)", QStringLiteral("中文許四")}),
    rowName);

INSTANTIATE_TEST_SUITE_P(
    Others, RtfMultiByte,
    testing::Values(MultiByteRow{"OfOneByteAreHalfWide", R"(\f1\'b1\'b2\'b3\'dex)", QStringLiteral("ｱｲｳﾞx")},
                    MultiByteRow{"OfFourBytesAreWhole", R"(\f6\'81\'30\'81\'30\'90\'30\'81\'30x)",
                                 QStringLiteral("\u0080\U00010000x")},
                    MultiByteRow{"OfFourBytesMayHaveTheirDigitsRaw",
                                 "\\f6\\'90"
                                 "0\\'81\r\n0x",
                                 QStringLiteral("\U00010000x")},
                    MultiByteRow{"OfThreeBytesAreWhole", R"(\f7\'8f\'b0\'a1x\'8e\'b1)", QStringLiteral("丂xｱ")},
                    MultiByteRow{"OfUtf8AreWhole", R"(\f8\'e2\'82\'ac\'f0\'9f\'98\'8a)",
                                 QStringLiteral("€\U0001f60a")}),
    rowName);

INSTANTIATE_TEST_SUITE_P(
    HalfCharacters, RtfMultiByte,
    testing::Values(MultiByteRow{"AtTheEndOfAGroupAreShown", R"({\f1 a\'82}bc)", QStringLiteral("a\ufffdbc")},
                    MultiByteRow{"BeforeAGroupAreShown", R"(\f1 a\'82{A}c)", QStringLiteral("a\ufffdAc")},
                    MultiByteRow{"BeforeAnotherFontAreShown", R"(\f1 a\'82\f0 Ab)", QStringLiteral("a\ufffdAb")},
                    MultiByteRow{"BeforeAWordAreShown", R"(\f1 a\'82\b Ab)", QStringLiteral("a\ufffdAb")},
                    MultiByteRow{"BeforeAParagraphAreShown", R"(\f1 a\'82\par Ab)", QStringLiteral("a\ufffd\nAb")},
                    MultiByteRow{"AtTheEndAreShown", R"(\f1 a\'82)", QStringLiteral("a\ufffd")},
                    MultiByteRow{"BeforeABlankLeaveTheBlank", R"(\f1 a\'82 b)", QStringLiteral("a\ufffd b")},
                    MultiByteRow{"BeforeADigitLeaveTheDigit", R"(\f1 a\'82 1)", QStringLiteral("a\ufffd 1")},
                    MultiByteRow{"BeforeALetterThatIsNoHalfLeaveTheLetter", R"(\f2 a\'bd[b)",
                                 QStringLiteral("a\ufffd[b")},
                    MultiByteRow{"OfKoreanAreShown", R"({\f2 a\'b0}b)", QStringLiteral("a\ufffdb")},
                    MultiByteRow{"OfJohabAreShown", R"({\f5 a\'88}b)", QStringLiteral("a\ufffdb")},
                    MultiByteRow{"OfChineseAreShown", R"({\f3 a\'d6}{\f4 b\'a4}c)", QStringLiteral("a\ufffdb\ufffdc")},
                    MultiByteRow{"OfFourBytesAreShown", R"({\f6 a\'90\'30\'81}b)", QStringLiteral("a\ufffd0\ufffdb")},
                    MultiByteRow{"OfUtf8AreShown", R"({\f8 a\'e2\'82}b)", QStringLiteral("a\ufffd\ufffdb")}),
    rowName);

INSTANTIATE_TEST_SUITE_P(
    CharactersThatStandForUnicode, RtfMultiByte,
    testing::Values(MultiByteRow{"AreTwoBytes", R"(\f1\uc2\u12354\'82\'a0x)", QStringLiteral("あx")},
                    MultiByteRow{"AreTwoRawBytes", "\\f1\\uc2\\u12354\x82\xa0x", QStringLiteral("あx")},
                    MultiByteRow{"AreAByteAndALetter", R"(\f1\uc2\u12450\'83Ax)", QStringLiteral("アx")},
                    MultiByteRow{"AreAByteAndABackslash", R"(\f1\uc2\u34920\'95\\x)", QStringLiteral("表x")},
                    MultiByteRow{"AreCountedForEach", R"(\f1{\uc2\u12354\'82\'a0\uc1\u233?\uc0\u12356}\u233?x)",
                                 QStringLiteral("あéいéx")}),
    rowName);

TEST(RtfMultiByteFonts, MayHaveNamesOfSeveralBytes)
{
    const auto document = documentOf(rtf(R"(\f9 a)"));
    EXPECT_EQ(document->begin().begin().fragment().charFormat().fontFamilies().toStringList(),
              QStringList(QStringLiteral("ＭＳ ゴ")));
}

TEST(RtfMultiByteFonts, AreWrittenInTheBytesOfTheirPage)
{
    const std::string written = writeRtf(*documentOf(rtf(R"(\f5\u44032?\u23478?\u960?\f1\u12354?)")));
    EXPECT_NE(written.find(R"({\f0\fnil\fcharset130 Johab;}{\f1\fnil\fcharset128 Gothic;})"), std::string::npos)
        << written;
    EXPECT_NE(written.find(R"(\f0\fs20 \'88\'61\'e0\'3b\'db\'92\f1 \'82\'a0)"), std::string::npos) << written;
}

} // namespace
