#include "platform/rtf/RtfControlWords.h"

#include <gtest/gtest.h>
#include <string>

namespace {

TEST(RtfControlWords, EveryRowIsFoundByItsWord)
{
    for (const RtfControlWord &row : rtfControlWords()) {
        EXPECT_EQ(findRtfControlWord(row.word), &row) << row.word;
    }
}

TEST(RtfControlWords, AWordThatIsNotInTheTableIsNotFound)
{
    for (const char *word : {"", "a", "B", "parx", "pa", "zzz", "\x7f"}) {
        EXPECT_EQ(findRtfControlWord(word), nullptr) << word;
    }
    EXPECT_EQ(findRtfControlWord(std::string(100'000, 'b')), nullptr);
}

TEST(RtfControlWords, AFixedParameterIgnoresTheNumber)
{
    const RtfControlWord row{"x", RtfEffect::Character, RtfParameter::Fixed, 7};
    EXPECT_EQ(rtfValue(row, std::nullopt), 7);
    EXPECT_EQ(rtfValue(row, 3), 7);
}

TEST(RtfControlWords, AnOptionalParameterFallsBackToTheTable)
{
    const RtfControlWord row{"x", RtfEffect::Bold, RtfParameter::Optional, 1};
    EXPECT_EQ(rtfValue(row, std::nullopt), 1);
    EXPECT_EQ(rtfValue(row, 0), 0);
}

TEST(RtfControlWords, AWordWithoutItsRequiredParameterDoesNothing)
{
    const RtfControlWord row{"x", RtfEffect::Unicode, RtfParameter::Required, 1};
    EXPECT_EQ(rtfValue(row, std::nullopt), std::nullopt);
    EXPECT_EQ(rtfValue(row, -5), -5);
}

TEST(RtfControlWords, ACharacterKnowsItsWord)
{
    EXPECT_EQ(rtfWordForCharacter(0x2011), "_");
    EXPECT_EQ(rtfWordForCharacter(0x200d), "zwj");
    EXPECT_EQ(rtfWordForCharacter(0x2028), "line");
}

TEST(RtfControlWords, ACharacterWithoutAWordHasAnEmptyOne)
{
    EXPECT_TRUE(rtfWordForCharacter(0x4e00).empty());
    EXPECT_TRUE(rtfWordForCharacter(u' ').empty()) << "the wide blanks are read as one, but it is none of them";
}

} // namespace
