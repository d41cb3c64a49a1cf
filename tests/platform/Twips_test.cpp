#include "platform/Twips.h"

#include <QGuiApplication>
#include <QScreen>

#include <gtest/gtest.h>

namespace {

TEST(Twips, AnInchIsTheScreensLogicalDotsPerInch)
{
    const double dots = QGuiApplication::primaryScreen()->logicalDotsPerInch();
    EXPECT_EQ(toPixels(twipsPerInch), qRound(dots));
    EXPECT_DOUBLE_EQ(toTwips(dots), twipsPerInch);
}

TEST(Twips, PixelsAreRoundedToTheNearestWholeNumber)
{
    const double twipsPerPixel = toTwips(1);
    EXPECT_EQ(toPixels(7.4 * twipsPerPixel), 7);
    EXPECT_EQ(toPixels(7.6 * twipsPerPixel), 8);
    EXPECT_EQ(toPixels(-7.6 * twipsPerPixel), -8);
    EXPECT_EQ(toPixels(0), 0);
}

TEST(Twips, WholePixelsSurviveTheWayToTwipsAndBack)
{
    for (int pixels = 0; pixels < 3000; ++pixels) {
        ASSERT_EQ(toPixels(toTwips(pixels)), pixels);
    }
}

} // namespace
