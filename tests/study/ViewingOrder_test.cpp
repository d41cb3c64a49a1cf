#include "study/StudySettings.h"
#include "study/ViewingOrder.h"

#include <gtest/gtest.h>

namespace {

float mustNotDraw()
{
    ADD_FAILURE() << "a number was drawn although the side is fixed";
    return 0;
}

RandomDraw always(float number)
{
    return [number] { return number; };
}

TEST(ViewingOrder, FrontFirstAndBackFirstDrawNothing)
{
    EXPECT_EQ(startingSide(ViewOrder::front, mustNotDraw), Side::Front);
    EXPECT_EQ(startingSide(ViewOrder::back, mustNotDraw), Side::Back);
}

TEST(ViewingOrder, EveryOtherValueIsRandom)
{
    for (const int order : {0, 3, 4, -1, 32767}) {
        EXPECT_EQ(startingSide(static_cast<std::int16_t>(order), always(0.2F)), Side::Front) << order;
        EXPECT_EQ(startingSide(static_cast<std::int16_t>(order), always(0.8F)), Side::Back) << order;
    }
}

TEST(ViewingOrder, TheLowerHalfOfTheDrawsIsTheFront)
{
    EXPECT_EQ(startingSide(ViewOrder::random, always(0.0F)), Side::Front);
    EXPECT_EQ(startingSide(ViewOrder::random, always(0.49999F)), Side::Front);
    EXPECT_EQ(startingSide(ViewOrder::random, always(0.5F)), Side::Back);
    EXPECT_EQ(startingSide(ViewOrder::random, always(0.99999F)), Side::Back);
}

TEST(ViewingOrder, ARandomSideTakesOneDraw)
{
    int draws = 0;
    (void)startingSide(ViewOrder::random, [&] {
        ++draws;
        return 0.0F;
    });
    EXPECT_EQ(draws, 1);
}

} // namespace
