#include "study/TestClock.h"

#include <array>
#include <cstdio>
#include <gtest/gtest.h>
#include <string>

namespace {

/// "9:05", by other means than the clock's own.
std::string minutesAndSeconds(int seconds)
{
    std::array<char, 16> text{};
    std::snprintf(text.data(), text.size(), "%d:%02d", seconds / 60, seconds % 60);
    return text.data();
}

TEST(TestClock, FirstShowsTwoZerosOnlyForMultiplesOfSevenMinutes)
{
    for (int minutes = 2; minutes <= 50; ++minutes) {
        const bool isMultiple = minutes == 7 || minutes == 14 || minutes == 21 || minutes == 28 || minutes == 35 ||
                                minutes == 42 || minutes == 49;
        EXPECT_EQ(TestClock(minutes).firstDisplay(), std::to_string(minutes) + (isMultiple ? ":00" : ":0"));
    }
}

TEST(TestClock, StartsWithTheWholeTime)
{
    for (int minutes = 2; minutes <= 50; ++minutes) {
        const TestClock clock(minutes);
        EXPECT_TRUE(clock.isLimited());
        EXPECT_EQ(clock.secondsLeft(), minutes * 60);
    }
}

TEST(TestClock, ShowsEverySecondOfATwoMinuteTestAndOfAFiftyMinuteTest)
{
    for (const int minutes : {2, 50}) {
        TestClock clock(minutes);
        for (int left = minutes * 60 - 1; left >= 0; --left) {
            ASSERT_EQ(clock.tick(), left == 0) << left << " seconds left";
            ASSERT_EQ(clock.secondsLeft(), left);
            ASSERT_EQ(clock.display(), minutesAndSeconds(left));
            ASSERT_TRUE(clock.isLimited());
        }
        EXPECT_EQ(clock.display(), "0:00");
    }
}

TEST(TestClock, ShowsTheSecondsWithTwoDigitsAfterTheFirst)
{
    TestClock clock(10);
    EXPECT_EQ(clock.firstDisplay(), "10:0");
    EXPECT_FALSE(clock.tick());
    EXPECT_EQ(clock.display(), "9:59");
    while (clock.secondsLeft() > 550) {
        EXPECT_FALSE(clock.tick());
    }
    EXPECT_EQ(clock.display(), "9:10");
    EXPECT_FALSE(clock.tick());
    EXPECT_EQ(clock.display(), "9:09");
    while (clock.secondsLeft() > 545) {
        EXPECT_FALSE(clock.tick());
    }
    EXPECT_EQ(clock.display(), "9:05");
}

TEST(TestClock, SaysOnceThatTheTimeIsUpAndStandsStillAfterThat)
{
    TestClock clock(2);
    int ends = 0;
    for (int second = 1; second <= 500; ++second) {
        const bool isEnd = clock.tick();
        EXPECT_EQ(isEnd, second == 120);
        ends += isEnd ? 1 : 0;
    }
    EXPECT_EQ(ends, 1);
    EXPECT_EQ(clock.secondsLeft(), 0);
    EXPECT_EQ(clock.display(), "0:00");
}

TEST(TestClock, WithoutALimitNeverEnds)
{
    TestClock clock(0);
    EXPECT_FALSE(clock.isLimited());
    for (int second = 0; second < 10'000; ++second) {
        ASSERT_FALSE(clock.tick());
        ASSERT_EQ(clock.secondsLeft(), 0);
    }
    EXPECT_FALSE(clock.isLimited());
}

} // namespace
