#include "platform/rtf/RtfGroupSource.h"

#include <gtest/gtest.h>
#include <string>

namespace {

struct GroupRow
{
    const char *name;
    std::string opening;
    std::string rest; ///< what stands behind the opening, with the brace that closes the group
    std::string group;
};

void PrintTo(const GroupRow &row, std::ostream *out)
{
    *out << row.opening << row.rest;
}

std::string groupOf(const std::string &opening, std::string_view rest)
{
    RtfTokenizer tokenizer(rest);
    return toGroup(opening, takeGroup(tokenizer)).toStdString();
}

class RtfGroupSource : public testing::TestWithParam<GroupRow>
{
};

TEST_P(RtfGroupSource, IsAGroupOfItsOwn)
{
    EXPECT_EQ(groupOf(GetParam().opening, GetParam().rest), GetParam().group);
}

TEST_P(RtfGroupSource, IsKeptToTheByteWhenItIsTakenAgain)
{
    const std::string &group = GetParam().group;
    RtfTokenizer tokenizer(group);
    static_cast<void>(tokenizer.next());
    const RtfGroupRest rest = takeGroup(tokenizer);
    EXPECT_TRUE(rest.isClosed);
    EXPECT_TRUE(rest.isPlain);
    EXPECT_EQ(toGroup({}, rest).toStdString(), group);
}

const auto rowName = [](const auto &info) { return info.param.name; };

INSTANTIATE_TEST_SUITE_P(Whole, RtfGroupSource,
                         testing::Values(GroupRow{"MayBeEmpty", "\\pict", "}", "{\\pict}"},
                                         GroupRow{"HasWordsAndDigits", "\\pict", "\\pngblip\\picw10 00FF}",
                                                  "{\\pict\\pngblip\\picw10 00FF}"},
                                         GroupRow{"HasGroups", "\\object", "{\\*\\objdata 01{}}{\\result{\\pict 00}}}",
                                                  "{\\object{\\*\\objdata 01{}}{\\result{\\pict 00}}}"},
                                         GroupRow{"HasLineBreaksOfAnyKind", "\\pict", "\r\n00\r\n\r01\n}",
                                                  "{\\pict\r\n00\r\n\r01\n}"},
                                         GroupRow{"HasBlanksAndTabs", "\\pict ", "  00\t 01 }", "{\\pict   00\t 01 }"},
                                         GroupRow{"HasEscapes", "\\object", "\\{\\}\\\\\\'E9\\~\\*\\\r\n}",
                                                  "{\\object\\{\\}\\\\\\'E9\\~\\*\\\r\n}"},
                                         GroupRow{"EndsAtItsOwnBrace", "\\pict", "{a}{b{c}}}d}", "{\\pict{a}{b{c}}}"},
                                         GroupRow{"FollowsItsOpeningAtOnce", "\\pict", "-x}", "{\\pict-x}"}),
                         rowName);

INSTANTIATE_TEST_SUITE_P(
    WrittenAnew, RtfGroupSource,
    testing::Values(GroupRow{"HasBinaryDataAsDigits", "\\pict", "\\pngblip\\bin3 a}\xff}", "{\\pict\\pngblip 617dff}"},
                    GroupRow{"HasBinaryDataThatIsTextAsDigits", "\\pict", "\\bin2 ab}", "{\\pict 6162}"},
                    GroupRow{"HasNoMoreBinaryDataThanThereIs", "\\pict ", "\\bin2147483647 a}", "{\\pict 617d}"},
                    GroupRow{"HasDigitsBeforeAndBehindBinaryData", "\\pict ", "00\\bin1 a01}", "{\\pict 006101}"},
                    GroupRow{"HasRawBytesEscaped", "\\object ", "caf\xe9\x80\x7f\x01}",
                             "{\\object caf\\'e9\\'80\\'7f\\'01}"},
                    GroupRow{"HasEscapesOfStructure", "\\object", "\\{\xe9\\}\\\\}", "{\\object\\{\\'e9\\}\\\\}"},
                    GroupRow{"HasTheNumbersOfItsWords", "\\pict", "\\picw-10\\picscalex100\\bin1 a}",
                             "{\\pict\\picw-10 \\picscalex100 61}"},
                    GroupRow{"HasAnEscapedLineBreakAsAWord", "\\object", "\\\r\n\xe9}", "{\\object\\par \\'e9}"},
                    GroupRow{"LosesNul", "\\pict", std::string("\0p}", 3), "{\\pict p}"},
                    GroupRow{"LosesNulBeforeABlank", "\\pict", std::string("\0 p}", 4), "{\\pict  p}"},
                    GroupRow{"LosesNulBehindAWord", "\\pict", std::string("\\b\0p}", 5), "{\\pict\\b p}"},
                    GroupRow{"LosesSymbolsThatAreNone", "\\object", "\\\xe9\\\x01 a}", "{\\object  a}"},
                    GroupRow{"LosesBytesThatHaveBadDigits", "\\object", "\\'\xe9\xe9 a}", "{\\object  a}"},
                    GroupRow{"ClosesItsGroups", "\\pict", "a{b{c", "{\\pict a{b{c}}}"},
                    GroupRow{"ClosesItselfWhereNothingIsLeft", "\\pict", "", "{\\pict}"},
                    GroupRow{"LosesHalfAnEscapeAtTheEnd", "\\pict", "\\b{a\\", "{\\pict\\b {a}}"}),
    rowName);

TEST(RtfGroup, StopsBeforeTheBraceThatClosesIt)
{
    const std::string_view text = "a{b}\\bin1 }c}d";
    RtfTokenizer tokenizer(text);
    const RtfGroupRest rest = takeGroup(tokenizer);
    EXPECT_EQ(rest.text, "a{b}\\bin1 }c");
    EXPECT_TRUE(rest.isClosed);
    EXPECT_FALSE(rest.isPlain);
    const RtfToken closing = tokenizer.next();
    EXPECT_EQ(closing.kind, RtfToken::Kind::GroupEnd);
    EXPECT_EQ(closing.offset, 12U);
    EXPECT_EQ(tokenizer.next().text, "d");
}

TEST(RtfGroup, OfAnUnclosedTextIsAllThatIsLeft)
{
    RtfTokenizer tokenizer("a{b}{c");
    const RtfGroupRest rest = takeGroup(tokenizer);
    EXPECT_EQ(rest.text, "a{b}{c");
    EXPECT_FALSE(rest.isClosed);
    EXPECT_EQ(tokenizer.next().kind, RtfToken::Kind::End);
}

TEST(RtfGroup, MayNestAsDeepAsItLikes)
{
    constexpr std::size_t depth = 100'000;
    const std::string open(depth, '{');
    const std::string closed(depth, '}');
    EXPECT_EQ(groupOf("\\pict", open + "00" + closed + "}x"), "{\\pict" + open + "00" + closed + "}");
    EXPECT_EQ(groupOf("\\pict", open + "00"), "{\\pict" + open + "00" + closed + "}");
}

TEST(RtfGroup, OfAnyTwoBytesIsSevenBitAndClosed)
{
    for (int first = 0; first < 256; ++first) {
        for (int second = 0; second < 256; ++second) {
            const std::string bytes{static_cast<char>(first), static_cast<char>(second), '}'};
            const std::string group = groupOf("\\pict", bytes);
            RtfTokenizer tokenizer(group);
            static_cast<void>(tokenizer.next());
            const RtfGroupRest again = takeGroup(tokenizer);
            ASSERT_TRUE(again.isClosed && again.isPlain) << first << ' ' << second;
            static_cast<void>(tokenizer.next());
            ASSERT_EQ(tokenizer.next().kind, RtfToken::Kind::End) << first << ' ' << second;
        }
    }
}

} // namespace
