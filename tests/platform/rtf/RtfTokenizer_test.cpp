#include "platform/rtf/RtfTokenizer.h"

#include <gtest/gtest.h>
#include <limits>
#include <string>

namespace {

/// The tokens of \p rtf, one after the other: { } are groups, [word] and
/// [word:number] control words, 'text' text, <number> a byte, (data) binary.
std::string tokens(std::string_view rtf)
{
    RtfTokenizer tokenizer(rtf);
    std::string result;
    while (true) {
        const RtfToken token = tokenizer.next();
        const std::string number = token.number ? ':' + std::to_string(*token.number) : std::string();
        switch (token.kind) {
        case RtfToken::Kind::GroupStart: result += '{'; break;
        case RtfToken::Kind::GroupEnd: result += '}'; break;
        case RtfToken::Kind::Word: result += '[' + std::string(token.text) + number + ']'; break;
        case RtfToken::Kind::Text: result += '\'' + std::string(token.text) + '\''; break;
        case RtfToken::Kind::HexByte: result += '<' + std::to_string(*token.number) + '>'; break;
        case RtfToken::Kind::Binary: result += '(' + std::string(token.text) + ')'; break;
        case RtfToken::Kind::End: return result;
        }
    }
}

struct TokenRow
{
    const char *name;
    std::string rtf;
    std::string expected;
};

void PrintTo(const TokenRow &row, std::ostream *out)
{
    *out << row.rtf;
}

class RtfTokens : public testing::TestWithParam<TokenRow>
{
};

TEST_P(RtfTokens, AreAsExpected)
{
    EXPECT_EQ(tokens(GetParam().rtf), GetParam().expected);
}

const std::string longWord(100'000, 'w');
const std::string longNumber(100'000, '9');

const auto rowName = [](const auto &info) { return info.param.name; };

INSTANTIATE_TEST_SUITE_P(
    RtfTokenizer, RtfTokens,
    testing::Values(TokenRow{"NothingIsNoToken", "", ""}, TokenRow{"BracesAreGroups", "{{}}", "{{}}"},
                    TokenRow{"OneBlankBelongsToTheWord", R"(\b  x)", "[b]' x'"},
                    TokenRow{"TwoWordsNeedNoBlank", R"(\b\i)", "[b][i]"},
                    TokenRow{"DigitsAreTheNumberOfTheWord", R"(\fs20x)", "[fs:20]'x'"},
                    TokenRow{"AMinusBeforeDigitsIsPartOfTheNumber", R"(\li-360 x)", "[li:-360]'x'"},
                    TokenRow{"AMinusBeforeAnythingElseIsText", R"(\b-x)", "[b]'-x'"},
                    TokenRow{"ASymbolIsAWordOfOneCharacter", R"(\~\_\*)", "[~][_][*]"},
                    TokenRow{"TheBlankAfterASymbolIsText", R"(\~ x)", "[~]' x'"},
                    TokenRow{"EscapedStructureIsText", R"(\{\}\\)", R"('{''}''\')"},
                    TokenRow{"HexDigitsOfEitherCaseAreAByte", R"(\'e9\'E9)", "<233><233>"},
                    TokenRow{"AByteIsFollowedByTextAtOnce", R"(\'410)", "<65>'0'"},
                    TokenRow{"BadHexDigitsAreDropped", R"(a\'zzb)", "'a''b'"},
                    TokenRow{"ABraceInTheMidstOfAHexByteIsABrace", R"({\'4}x)", "{}'x'"},
                    TokenRow{"ALineBreakIsNothing", "a\r\nb", "'a''b'"},
                    TokenRow{"ALineBreakEndsAWordAndIsNothing", "\\par\r\n x", "[par]' x'"},
                    TokenRow{"ABackslashBeforeLfIsAWord", "a\\\nb", "'a'[\n]'b'"},
                    TokenRow{"ABackslashBeforeCrIsAWord", "a\\\rb", "'a'[\n]'b'"},
                    TokenRow{"ABackslashBeforeCrLfIsOneWord", "a\\\r\nb", "'a'[\n]'b'"},
                    TokenRow{"BinaryDataIsNoStructure", R"(\bin3 {}\x)", R"([bin:3]({}\)'x')"},
                    TokenRow{"BinaryDataEndsWithTheInput", R"(\bin2147483647 ab)", "[bin:2147483647](ab)"},
                    TokenRow{"BinaryDataOfNoLengthIsNone", R"(\bin0 ab\bin-1 c\bin d)",
                             "[bin:0]'ab'[bin:-1]'c'[bin]'d'"},
                    TokenRow{"ABackslashAtTheEndIsNothing", R"(a\)", "'a'"},
                    TokenRow{"AnApostropheAtTheEndIsNothing", R"(a\'4)", "'a'"},
                    TokenRow{"AWordMayEndTheInput", R"(a\par)", "'a'[par]"},
                    TokenRow{"AWordMayBeOfAnyLength", "\\" + longWord + " x", "[" + longWord + "]'x'"},
                    TokenRow{"ANumberBeyondIntIsTheLargest", "\\fs" + longNumber, "[fs:2147483647]"},
                    TokenRow{"ANumberBelowIntIsTheSmallest", "\\li-" + longNumber, "[li:-2147483648]"},
                    TokenRow{"BytesAboveAsciiAreText", "\xe9\xff", "'\xe9\xff'"},
                    TokenRow{"NulIsText", std::string("a\0b", 3), std::string("'a\0b'", 5)},
                    TokenRow{"CaseMatters", R"(\B\b)", "[B][b]"}),
    rowName);

TEST(RtfTokenizer, TokensKnowWhereTheyBegin)
{
    RtfTokenizer tokenizer(R"({\b1 ab\'e9})");
    EXPECT_EQ(tokenizer.next().offset, 0U);
    EXPECT_EQ(tokenizer.next().offset, 1U);
    EXPECT_EQ(tokenizer.next().offset, 5U);
    EXPECT_EQ(tokenizer.offset(), 7U);
    EXPECT_EQ(tokenizer.next().offset, 7U);
    EXPECT_EQ(tokenizer.next().offset, 11U);
}

TEST(RtfTokenizer, TheEndIsReportedForEver)
{
    RtfTokenizer tokenizer("a");
    EXPECT_EQ(tokenizer.next().kind, RtfToken::Kind::Text);
    for (int time = 0; time < 3; ++time) {
        const RtfToken token = tokenizer.next();
        EXPECT_EQ(token.kind, RtfToken::Kind::End);
        EXPECT_EQ(token.offset, 1U);
    }
}

TEST(RtfTokenizer, EveryPairOfBytesIsCutToItsEnd)
{
    for (int pair = 0; pair <= std::numeric_limits<std::uint16_t>::max(); ++pair) {
        const std::string rtf{'\\', static_cast<char>(pair >> 8), static_cast<char>(pair & 0xff)};
        RtfTokenizer tokenizer(rtf);
        int count = 0;
        while (tokenizer.next().kind != RtfToken::Kind::End) {
            ASSERT_LE(++count, 3) << pair;
        }
        ASSERT_EQ(tokenizer.offset(), rtf.size()) << pair;
    }
}

} // namespace
