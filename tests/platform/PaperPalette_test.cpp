#include "platform/ContrastRatio.h"
#include "platform/PaperPalette.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <vector>

namespace {

constexpr double wellReadable = 7.0;
constexpr double readable = 4.5;

/// A grid over all colours.
std::vector<QColor> papers()
{
    std::vector<QColor> colors;
    for (int red = 0; red <= 255; red += 51) {
        for (int green = 0; green <= 255; green += 51) {
            for (int blue = 0; blue <= 255; blue += 51) {
                colors.emplace_back(red, green, blue);
            }
        }
    }
    return colors;
}

/// What the best ink there is would reach on \p paper.
double reachable(const QColor &paper)
{
    return std::max(contrastRatio(paper, Qt::black), contrastRatio(paper, Qt::white));
}

double contrast(const QPalette &palette, QPalette::ColorRole one, QPalette::ColorRole other,
                QPalette::ColorGroup group = QPalette::Active)
{
    return contrastRatio(palette.color(group, one), palette.color(group, other));
}

TEST(ContrastRatio, HasTheKnownValues)
{
    EXPECT_NEAR(contrastRatio(Qt::black, Qt::white), 21.0, 1e-9);
    EXPECT_NEAR(contrastRatio(Qt::white, Qt::black), 21.0, 1e-9);
    EXPECT_NEAR(contrastRatio(Qt::red, Qt::red), 1.0, 1e-9);
    EXPECT_NEAR(contrastRatio(QColor(0x77, 0x77, 0x77), Qt::white), 4.48, 0.005);
    EXPECT_NEAR(contrastRatio(Qt::blue, Qt::white), 8.59, 0.005);
}

TEST(PaperPalette, WindowIsThePaper)
{
    for (const QColor &paper : papers()) {
        EXPECT_EQ(paperPalette(paper).color(QPalette::Window), paper);
    }
}

TEST(PaperPalette, InkOnPaperIsWellReadableWhereverAnyInkIs)
{
    for (const QColor &paper : papers()) {
        const double wanted = std::min(wellReadable, reachable(paper));
        EXPECT_GE(contrast(paperPalette(paper), QPalette::WindowText, QPalette::Window), wanted - 1e-9)
            << paper.name().toStdString();
    }
}

TEST(PaperPalette, TextInBoxesAndOnButtonsIsAlwaysWellReadable)
{
    for (const QColor &paper : papers()) {
        const QPalette palette = paperPalette(paper);
        EXPECT_GE(contrast(palette, QPalette::Text, QPalette::Base), wellReadable) << paper.name().toStdString();
        EXPECT_GE(contrast(palette, QPalette::ButtonText, QPalette::Button), wellReadable)
            << paper.name().toStdString();
    }
}

TEST(PaperPalette, SelectedTextAndToolTipsAreWellReadable)
{
    for (const QColor &paper : papers()) {
        const QPalette palette = paperPalette(paper);
        EXPECT_GE(contrast(palette, QPalette::HighlightedText, QPalette::Highlight), wellReadable);
        EXPECT_GE(contrast(palette, QPalette::ToolTipText, QPalette::ToolTipBase), wellReadable);
    }
}

TEST(PaperPalette, FaintTextIsStillReadableAndLinksAreToo)
{
    for (const QColor &paper : papers()) {
        const QPalette palette = paperPalette(paper);
        const std::string name = paper.name().toStdString();
        const double onPaper = std::min(readable, reachable(paper));
        EXPECT_GE(contrast(palette, QPalette::PlaceholderText, QPalette::Base), readable) << name;
        EXPECT_GE(contrast(palette, QPalette::Text, QPalette::Base, QPalette::Disabled), readable) << name;
        EXPECT_GE(contrast(palette, QPalette::WindowText, QPalette::Window, QPalette::Disabled), onPaper - 1e-9)
            << name;
        EXPECT_GE(contrast(palette, QPalette::Link, QPalette::Base), readable) << name;
    }
}

TEST(PaperPalette, FaintTextIsFainterThanInkOnLightAndDarkPaper)
{
    for (const QColor &paper : {QColor(Qt::white), QColor(0xfd, 0xf6, 0xdc), QColor(0x20, 0x20, 0x28)}) {
        const QPalette palette = paperPalette(paper);
        EXPECT_LT(contrast(palette, QPalette::PlaceholderText, QPalette::Base),
                  contrast(palette, QPalette::Text, QPalette::Base));
        EXPECT_NE(palette.color(QPalette::Disabled, QPalette::ButtonText),
                  palette.color(QPalette::Active, QPalette::ButtonText));
    }
}

TEST(PaperPalette, LeavesNoRoleToTheDesktop)
{
    const QPalette desktop(QColor(0x12, 0x34, 0x56));
    const QPalette onPaper = paperPalette(Qt::white).resolve(desktop);
    EXPECT_EQ(onPaper, paperPalette(Qt::white));
    for (int role = 0; role < QPalette::NColorRoles; ++role) {
        if (role == QPalette::NoRole) {
            continue;
        }
        EXPECT_TRUE(paperPalette(Qt::white).isBrushSet(QPalette::Active, static_cast<QPalette::ColorRole>(role)))
            << role;
    }
}

TEST(ColorNumber, LowByteIsRed)
{
    EXPECT_EQ(colorOfNumber(0x0000ff), QColor(Qt::red));
    EXPECT_EQ(colorOfNumber(0xff0000), QColor(Qt::blue));
    EXPECT_EQ(colorOfNumber(16777215), QColor(Qt::white));
    EXPECT_EQ(numberOfColor(QColor(0xff, 0x80, 0x80)), 8421631);
    EXPECT_EQ(numberOfColor(QColor(0x12, 0x34, 0x56)), 0x563412);
}

TEST(ColorNumber, BitsBeyondTheColourAreIgnored)
{
    EXPECT_EQ(colorOfNumber(0x7f123456), colorOfNumber(0x123456));
    EXPECT_EQ(colorOfNumber(-1), QColor(Qt::white));
}

} // namespace
