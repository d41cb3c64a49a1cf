#include "platform/ContrastRatio.h"
#include "platform/help/InkContrast.h"

#include <gtest/gtest.h>

namespace {

TEST(InkContrast, GoesFromOneToTwentyOne)
{
    EXPECT_DOUBLE_EQ(contrastRatio(Qt::white, Qt::white), 1);
    EXPECT_NEAR(contrastRatio(Qt::white, Qt::black), 21, 1e-9);
    EXPECT_DOUBLE_EQ(contrastRatio(Qt::black, Qt::white), contrastRatio(Qt::white, Qt::black));
    EXPECT_NEAR(contrastRatio(Qt::white, QColor(0x76, 0x76, 0x76)), 4.54, 0.01);
}

TEST(InkContrast, AnInkThatCanBeReadStaysAsItIs)
{
    const QColor blue(0, 0, 0xff);
    EXPECT_EQ(inkOn(Qt::white, blue).name(), blue.name());
}

TEST(InkContrast, AnyInkCanBeReadOnAnyGround)
{
    for (int ground = 0; ground <= 255; ground += 15) {
        for (int hue = 0; hue < 360; hue += 30) {
            for (const QColor &paper : {QColor(ground, ground, ground), QColor::fromHsl(hue, 255, ground)}) {
                for (const int lightness : {0, 60, 128, 200, 255}) {
                    const QColor ink = QColor::fromHsl((hue + 120) % 360, 255, lightness);
                    EXPECT_GE(contrastRatio(paper, inkOn(paper, ink)), 4.5)
                        << paper.name().toStdString() << ' ' << ink.name().toStdString();
                }
            }
        }
    }
}

TEST(InkContrast, TheInkKeepsItsHue)
{
    const QColor link = inkOn(QColor(35, 35, 35), QColor(0, 0, 0xff));
    EXPECT_NEAR(link.hslHue(), 240, 3);
    EXPECT_GT(link.lightness(), 128);
}

} // namespace
