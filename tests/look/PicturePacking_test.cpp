#include "tests/look/PictureComparison.h"
#include "tests/look/PicturePacking.h"

#include <QBuffer>

#include <gtest/gtest.h>

namespace {

/// As many colours as pixels, which differ in red and green by \p step.
QImage colorful(int edge, int step)
{
    QImage picture(edge, edge, QImage::Format_RGB32);
    for (int y = 0; y < edge; ++y) {
        for (int x = 0; x < edge; ++x) {
            picture.setPixel(x, y, qRgb(x * step, y * step, 128));
        }
    }
    return picture;
}

int largestError(const QImage &one, const QImage &other)
{
    int error = 0;
    for (int y = 0; y < one.height(); ++y) {
        for (int x = 0; x < one.width(); ++x) {
            const QRgb before = one.pixel(x, y);
            const QRgb after = other.pixel(x, y);
            error = std::max({error, std::abs(qRed(before) - qRed(after)), std::abs(qGreen(before) - qGreen(after)),
                              std::abs(qBlue(before) - qBlue(after))});
        }
    }
    return error;
}

} // namespace

TEST(PicturePacking, APictureOfFewColorsStaysExact)
{
    const QImage picture = colorful(16, 16);
    const QImage small = packed(picture);
    EXPECT_EQ(small.format(), QImage::Format_Indexed8);
    EXPECT_EQ(small.convertToFormat(QImage::Format_RGB32), picture);
}

TEST(PicturePacking, ManyColorsAreOffByNoMoreThanAllowed)
{
    const QImage picture = colorful(64, 3);
    const QImage small = packed(picture);
    EXPECT_EQ(small.format(), QImage::Format_Indexed8);
    EXPECT_GT(largestError(picture, small), 0);
    EXPECT_LE(largestError(picture, small), packingError);
    EXPECT_TRUE(compare(small, picture).isTolerable());
}

TEST(PicturePacking, TheMostFrequentColorStaysExact)
{
    QImage picture(100, 100, QImage::Format_RGB32);
    picture.fill(qRgb(251, 252, 253));
    for (int i = 0; i < 64; ++i) {
        for (int j = 0; j < 64; ++j) {
            picture.setPixel(i, j, qRgb(190 + i, 190 + j, 253));
        }
    }
    const QImage small = packed(picture);
    EXPECT_EQ(small.format(), QImage::Format_Indexed8);
    EXPECT_EQ(small.pixel(99, 99), qRgb(251, 252, 253));
}

TEST(PicturePacking, APictureWithTooManyColorsStaysAsItIs)
{
    QImage picture = colorful(256, 1);
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            picture.setPixel(x, y, qRgb(x, y, (x + y) * 31 % 256));
        }
    }
    EXPECT_EQ(packed(picture), picture);
}

TEST(PicturePacking, ATransparentPictureStaysAsItIs)
{
    QImage picture(8, 8, QImage::Format_ARGB32);
    picture.fill(QColor(255, 0, 0, 100));
    EXPECT_EQ(packed(picture), picture);
}

TEST(PicturePacking, TheFileIsReadAsItWasPacked)
{
    const QImage small = packed(colorful(64, 3));
    QBuffer file;
    file.open(QIODevice::ReadWrite);
    ASSERT_TRUE(small.save(&file, "png", 0));
    EXPECT_EQ(compare(small, QImage::fromData(file.data())).pixels, 0);
}
