#include "study/TestScore.h"

#include <gtest/gtest.h>

namespace {

TEST(TestScore, IsTheExactPercentageTruncatedForEveryTestExceptOne)
{
    int exceptions = 0;
    for (int total = 5; total <= 50; ++total) {
        for (int right = 0; right <= total; ++right) {
            const int exact = right * 100 / total;
            const bool isException = right == 29 && total == 50;
            EXPECT_EQ((TestScore{right, total}.percent()), isException ? exact - 1 : exact)
                << right << " out of " << total;
            exceptions += isException ? 1 : 0;
        }
    }
    EXPECT_EQ(exceptions, 1);
}

TEST(TestScore, OfTwentyNineOutOfFiftyIsFiftySevenPercent)
{
    EXPECT_EQ((TestScore{29, 50}.percent()), 57);
    EXPECT_EQ((TestScore{28, 50}.percent()), 56);
    EXPECT_EQ((TestScore{30, 50}.percent()), 60);
}

TEST(TestScore, TruncatesAndDoesNotRound)
{
    EXPECT_EQ((TestScore{1, 6}.percent()), 16);
    EXPECT_EQ((TestScore{5, 6}.percent()), 83);
    EXPECT_EQ((TestScore{49, 50}.percent()), 98);
    EXPECT_EQ((TestScore{48, 49}.percent()), 97);
}

TEST(TestScore, TellsTheLearnerTheResultToTheLetter)
{
    EXPECT_EQ((TestScore{8, 10}.message()), "Test results: 80% (8 out of 10)\n\n"
                                            "Flash cards for all incorrect questions have been automatically marked.");
}

TEST(TestScore, TellsOfNothingRightAndOfEverythingRight)
{
    EXPECT_TRUE((TestScore{0, 5}.message()).starts_with("Test results: 0% (0 out of 5)\n\nFlash cards"));
    EXPECT_TRUE((TestScore{50, 50}.message()).starts_with("Test results: 100% (50 out of 50)\n\nFlash cards"));
    EXPECT_TRUE((TestScore{29, 50}.message()).starts_with("Test results: 57% (29 out of 50)\n\nFlash cards"));
}

} // namespace
