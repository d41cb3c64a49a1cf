#include "app/Chance.h"

#include <chrono>
#include <gtest/gtest.h>
#include <vector>

namespace {

std::vector<float> numbersOf(RandomDraw draw, int count)
{
    std::vector<float> numbers;
    for (int number = 0; number < count; ++number) {
        numbers.push_back(draw());
    }
    return numbers;
}

/// Two seeds within one tick of the clock would be equal.
void waitForTheNextTick()
{
    const auto now = std::chrono::system_clock::now();
    while (std::chrono::system_clock::now() == now) {
    }
}

TEST(Chance, NumbersAreFromZeroToBelowOneAndSpreadOverIt)
{
    std::vector<int> tenths(10);
    for (const float number : numbersOf(generatorSeededFromClock(), 100'000)) {
        ASSERT_GE(number, 0);
        ASSERT_LT(number, 1);
        ++tenths[static_cast<std::size_t>(number * 10)];
    }
    for (const int hits : tenths) {
        EXPECT_NEAR(hits, 10'000, 1'000); // ten standard deviations
    }
}

TEST(Chance, AGeneratorGoesOnAndDoesNotRepeatItsNumber)
{
    const std::vector<float> numbers = numbersOf(generatorSeededFromClock(), 20);
    EXPECT_NE(numbers, std::vector(20, numbers.front()));
}

TEST(Chance, TwoGeneratorsGiveDifferentNumbers)
{
    const RandomDraw first = generatorSeededFromClock();
    waitForTheNextTick();
    EXPECT_NE(numbersOf(first, 20), numbersOf(generatorSeededFromClock(), 20));
}

TEST(Chance, NumbersThatAreEachSeededAnewSpreadTooAndFallOnBothSides)
{
    int upperHalf = 0;
    for (int draw = 0; draw < 4'000; ++draw) {
        const float number = generatorSeededFromClock()();
        ASSERT_GE(number, 0);
        ASSERT_LT(number, 1);
        upperHalf += number >= 0.5F ? 1 : 0;
        waitForTheNextTick();
    }
    EXPECT_GT(upperHalf, 400);
    EXPECT_LT(upperHalf, 3'600);
}

} // namespace
