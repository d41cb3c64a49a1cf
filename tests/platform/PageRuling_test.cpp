#include "platform/PageRuling.h"

#include <gtest/gtest.h>
#include <string>

namespace {

struct LineCount
{
    std::string name;
    double firstLine;
    double height;
    int lines;
};

class CountRuledLines : public testing::TestWithParam<LineCount>
{
};

TEST_P(CountRuledLines, IsTheRoundedNumberOfSpacingsBelowTheFirstLine)
{
    EXPECT_EQ(countRuledLines(GetParam().firstLine, GetParam().height), GetParam().lines);
}

INSTANTIATE_TEST_SUITE_P(Table, CountRuledLines,
                         testing::Values(LineCount{"APageLowerThanItsFirstLineHasNone", 1180, 900, 0},
                                         LineCount{"AMuchLowerPageHasNone", 1180, 0, 0},
                                         LineCount{"APageThatEndsAtItsFirstLineHasNone", 1180, 1180, 0},
                                         LineCount{"HalfASpacingGoesDownToNone", 1180, 1180 + 180, 0},
                                         LineCount{"MoreThanHalfASpacingIsOne", 1180, 1180 + 181, 1},
                                         LineCount{"OneAndAHalfGoesUpToTwo", 1180, 1180 + 540, 2},
                                         LineCount{"TwoAndAHalfGoesDownToTwo", 1180, 1180 + 900, 2},
                                         LineCount{"ThreeAndAHalfGoesUpToFour", 840, 840 + 1260, 4},
                                         LineCount{"ALittleLessThanHalfGoesDown", 840, 840 + 1259.9, 3},
                                         LineCount{"TheMainWindowsSmallestHeight", 1180, 6105, 14}),
                         [](const auto &row) { return row.param.name; });

TEST(HolePlaces, ThreeHolesLieAtTheTopTheBottomAndBetween)
{
    const QVector<QRectF> holes = holePlaces(PageRuling{}, 6000);
    ASSERT_EQ(holes.size(), 3);
    EXPECT_EQ(holes[0], QRectF(120, 240, 375, 375));
    EXPECT_EQ(holes[1], QRectF(120, 6000 - 375 - 240, 375, 375));
    EXPECT_EQ(holes[2], QRectF(120, 3000 - 187.5, 375, 375));
}

TEST(HolePlaces, TheTopHoleKeepsClearOfTheToolbarAndTheMiddleOneStaysBetween)
{
    PageRuling ruling;
    ruling.toolbarHeight = 800;
    const QVector<QRectF> holes = holePlaces(ruling, 6000);
    ASSERT_EQ(holes.size(), 3);
    EXPECT_EQ(holes[0].top(), 1040);
    EXPECT_EQ(holes[1].top(), 5385);
    EXPECT_EQ(holes[2].center().y(), (holes[0].center().y() + holes[1].center().y()) / 2);
}

TEST(HolePlaces, ASpiralHasNineteenSmallHolesWhateverTheHeight)
{
    PageRuling ruling;
    ruling.binding = PageRuling::Binding::Spiral;
    for (const double height : {100.0, 5000.0, 20000.0}) {
        const QVector<QRectF> holes = holePlaces(ruling, height);
        ASSERT_EQ(holes.size(), 19);
        for (int i = 0; i < 19; ++i) {
            EXPECT_EQ(holes[i], QRectF(120, 120 + 240 * i, 135, 135));
        }
    }
}

TEST(PageRuling, ColoursAreBlueAndLightRed)
{
    EXPECT_EQ(PageRuling::lineColor().name().toStdString(), "#0000ff");
    EXPECT_EQ(PageRuling::marginColor().name().toStdString(), "#ff8080");
}

} // namespace
