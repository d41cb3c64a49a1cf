#include "tests/look/PictureComparison.h"

#include <QColor>
#include <QFont>
#include <QPainter>

#include <gtest/gtest.h>

namespace {

/// A piece of a window: ruled paper with a label, and an icon's outline.
struct Scene
{
    QString label = QStringLiteral("Enable the Test Timer (2-50):");
    QPoint labelAt = {40, 60};
    QColor line = QColor(0x33, 0x33, 0xe0);
    bool hasIcon = true;
    QSize size = {1024, 700};
};

QImage paint(const Scene &scene = {})
{
    QImage picture(scene.size, QImage::Format_RGB32);
    picture.fill(Qt::white);
    QPainter painter(&picture);
    painter.fillRect(0, 80, picture.width(), 1, scene.line);
    QFont font;
    font.setPixelSize(13);
    painter.setFont(font);
    painter.drawText(scene.labelAt, scene.label);
    if (scene.hasIcon) {
        painter.setPen(QPen(Qt::black, 2));
        painter.drawEllipse(200, 200, 12, 12);
    }
    return picture;
}

bool isTolerable(const QImage &approved, const QImage &taken)
{
    return compare(approved, taken).isTolerable();
}

QImage withPixels(QImage picture, int count, int distance)
{
    for (int i = 0; i < count; ++i) {
        picture.setPixelColor(i * distance % picture.width(), 10 + i * distance / picture.width() * distance, Qt::red);
    }
    return picture;
}

} // namespace

TEST(PictureComparison, APictureEqualsItself)
{
    const PictureDifference difference = compare(paint(), paint());
    EXPECT_TRUE(difference.isTolerable());
    EXPECT_EQ(difference.pixels, 0);
}

TEST(PictureComparison, PicturesOfDifferentSizesAreDifferent)
{
    const PictureDifference difference = compare(paint(), paint({.size = {1024, 701}}));
    EXPECT_TRUE(difference.hasOtherSize);
    EXPECT_FALSE(difference.isTolerable());
}

TEST(PictureComparison, AColorMayBeOffByTheTolerance)
{
    const QRgb color = qRgb(100, 150, 200);
    EXPECT_FALSE(areDifferent(color, qRgb(100 + Tolerance::channel, 150, 200)));
    EXPECT_FALSE(areDifferent(color, qRgb(100, 150 - Tolerance::channel, 200)));
    EXPECT_FALSE(areDifferent(color, color));
}

TEST(PictureComparison, EveryChannelCounts)
{
    const QRgb color = qRgba(100, 150, 200, 100);
    constexpr int more = Tolerance::channel + 1;
    EXPECT_TRUE(areDifferent(color, qRgba(100 + more, 150, 200, 100)));
    EXPECT_TRUE(areDifferent(color, qRgba(100, 150 - more, 200, 100)));
    EXPECT_TRUE(areDifferent(color, qRgba(100, 150, 200 + more, 100)));
    EXPECT_TRUE(areDifferent(color, qRgba(100, 150, 200, 100 - more)));
}

TEST(PictureComparison, ALabelThatMovedByAPixelIsSeen)
{
    EXPECT_FALSE(isTolerable(paint(), paint({.labelAt = {41, 60}})));
    EXPECT_FALSE(isTolerable(paint(), paint({.labelAt = {40, 61}})));
}

TEST(PictureComparison, AMissingLetterIsSeen)
{
    const QString label = Scene().label;
    for (int i = 0; i < label.size(); ++i) {
        if (!label.at(i).isSpace()) {
            const QString rest = QString(label).remove(i, 1);
            EXPECT_FALSE(isTolerable(paint(), paint({.label = rest}))) << rest.toStdString();
        }
    }
}

TEST(PictureComparison, AMissingIconIsSeen)
{
    EXPECT_FALSE(isTolerable(paint(), paint({.hasIcon = false})));
}

TEST(PictureComparison, AnotherColorOfALineIsSeen)
{
    EXPECT_FALSE(isTolerable(paint(), paint({.line = QColor(0x33, 0x33, 0xc0)})));
}

TEST(PictureComparison, SingleStrayPixelsAreTolerated)
{
    const PictureDifference difference = compare(paint(), withPixels(paint(), 20, 50));
    EXPECT_EQ(difference.pixels, 20);
    EXPECT_EQ(difference.inWorstSquare, 1);
    EXPECT_TRUE(difference.isTolerable());
}

TEST(PictureComparison, ManyStrayPixelsAreSeen)
{
    const PictureDifference difference = compare(paint(), withPixels(paint(), 800, 16));
    EXPECT_LE(difference.inWorstSquare, Tolerance::pixelsOfSquare);
    EXPECT_FALSE(difference.isTolerable());
}

TEST(PictureComparison, AFewPixelsInOnePlaceAreSeen)
{
    const QImage taken = withPixels(paint(), Tolerance::pixelsOfSquare + 1, 1);
    EXPECT_FALSE(isTolerable(paint(), taken));
}

TEST(PictureComparison, TheLastPixelOfAPictureWithAnOddSizeCounts)
{
    QImage approved(13, 11, QImage::Format_RGB32);
    approved.fill(Qt::white);
    QImage taken = approved;
    taken.setPixelColor(12, 10, Qt::black);
    EXPECT_EQ(compare(approved, taken).pixels, 1);
    EXPECT_EQ(compare(approved, taken).inWorstSquare, 1);
}

TEST(PictureComparison, TheFormatOfAPictureDoesNotMatter)
{
    const QImage picture = paint();
    EXPECT_EQ(compare(picture, picture.convertToFormat(QImage::Format_RGB888)).pixels, 0);
    EXPECT_EQ(compare(picture.convertToFormat(QImage::Format_ARGB32_Premultiplied), picture).pixels, 0);
}

TEST(PictureComparison, TheSheetShowsBothPicturesAndTheDifference)
{
    const QImage approved = paint();
    const QImage taken = paint({.hasIcon = false});
    const QImage sheet = sideBySide(approved, taken);
    EXPECT_EQ(sheet.height(), approved.height());
    EXPECT_EQ(sheet.copy(approved.rect()), approved);
    const int step = (sheet.width() - approved.width()) / 2;
    EXPECT_EQ(sheet.copy(approved.rect().translated(step, 0)), taken);
    EXPECT_EQ(sheet.pixelColor(2 * step + 206, 200), QColor(230, 0, 0)) << "where the icon was";
}

TEST(PictureComparison, TheSheetOfDifferentSizesShowsTheTwo)
{
    const QImage approved = paint();
    const QImage taken = paint({.size = {500, 800}});
    const QImage sheet = sideBySide(approved, taken);
    EXPECT_EQ(sheet.height(), 800);
    EXPECT_EQ(sheet.copy(QRect({sheet.width() - 500, 0}, taken.size())), taken);
}
