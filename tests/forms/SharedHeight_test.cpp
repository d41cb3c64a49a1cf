#include "forms/frmTest/SharedHeight.h"

#include <algorithm>
#include <array>
#include <gtest/gtest.h>
#include <numeric>

namespace {

using Shares = std::vector<int>;

TEST(SharedHeight, IsSharedByTheWeightsWhereAllHaveEnough)
{
    EXPECT_EQ(shareHeight(140, {{10, 5}, {10, 3}, {10, 3}, {10, 3}}), (Shares{50, 30, 30, 30}));
    EXPECT_EQ(shareHeight(140, {{50, 5}, {30, 3}, {30, 3}, {30, 3}}), (Shares{50, 30, 30, 30})) << "just enough";
}

TEST(SharedHeight, IsSharedByTheWeightsWhereNoneHasEnough)
{
    EXPECT_EQ(shareHeight(140, {{500, 5}, {31, 3}, {500, 3}, {90, 3}}), (Shares{50, 30, 30, 30}));
}

TEST(SharedHeight, ALongTextGetsWhatShortOnesLeave)
{
    EXPECT_EQ(shareHeight(140, {{500, 5}, {20, 3}, {10, 3}, {15, 3}}), (Shares{95, 20, 10, 15}));
    EXPECT_EQ(shareHeight(140, {{20, 5}, {10, 3}, {500, 3}, {15, 3}}), (Shares{20, 10, 95, 15}));
}

TEST(SharedHeight, LongTextsShareWhatShortOnesLeaveByTheirWeights)
{
    EXPECT_EQ(shareHeight(140, {{500, 5}, {500, 3}, {30, 3}, {30, 3}}), (Shares{50, 30, 30, 30}));
    EXPECT_EQ(shareHeight(140, {{500, 5}, {500, 3}, {20, 3}, {8, 3}}), (Shares{70, 42, 20, 8}));
}

TEST(SharedHeight, WhatIsLeftMayBeEnoughForATextThatHadTooLittle)
{
    // 40 is more than the share of 30, and less than that of what the short ones leave.
    EXPECT_EQ(shareHeight(140, {{500, 5}, {40, 3}, {10, 3}, {10, 3}}), (Shares{80, 40, 10, 10}));
    EXPECT_EQ(shareHeight(140, {{60, 5}, {31, 3}, {10, 3}, {10, 3}}), (Shares{75, 45, 10, 10}))
        << "all have enough now";
}

TEST(SharedHeight, OneBoxGetsItAll)
{
    EXPECT_EQ(shareHeight(140, {{10, 3}}), Shares{140});
    EXPECT_EQ(shareHeight(140, {{1000, 3}}), Shares{140});
}

TEST(SharedHeight, NoHeightAndNoBoxesAreShared)
{
    EXPECT_EQ(shareHeight(0, {{10, 5}, {10, 3}}), (Shares{0, 0}));
    EXPECT_EQ(shareHeight(-20, {{10, 5}, {10, 3}}), (Shares{0, 0}));
    EXPECT_EQ(shareHeight(0, {{0, 5}, {10, 3}}), (Shares{0, 0}));
    EXPECT_EQ(shareHeight(140, {}), Shares{});
}

TEST(SharedHeight, NoBoxGetsLessThanItsShareUnlessItWantsLessAndNoMoreThanTheHeightIsGiven)
{
    constexpr std::array weights{5, 3, 3};
    const Shares wants{0, 7, 30, 45, 64, 200};
    for (const int height : {1, 11, 64, 100, 199}) {
        for (const int a : wants) {
            for (const int b : wants) {
                for (const int c : wants) {
                    const Shares shares = shareHeight(height, {{a, weights[0]}, {b, weights[1]}, {c, weights[2]}});
                    const int given = std::accumulate(shares.begin(), shares.end(), 0);
                    EXPECT_LE(given, height);
                    EXPECT_GT(given, height - 3) << "all but what division leaves";
                    const Shares wanted{a, b, c};
                    for (std::size_t i = 0; i < shares.size(); ++i) {
                        EXPECT_GE(shares[i], std::min(wanted[i], height * weights.at(i) / 11))
                            << height << ": " << a << ' ' << b << ' ' << c;
                    }
                }
            }
        }
    }
}

} // namespace
