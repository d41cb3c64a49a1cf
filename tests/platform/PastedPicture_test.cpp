#include "platform/PastedPicture.h"
#include "platform/rtf/RtfObject.h"

#include <QBuffer>
#include <QImage>
#include <QImageReader>
#include <QPainter>
#include <QRandomGenerator>

#include <gtest/gtest.h>
#include <string>

namespace {

constexpr QSize screen(800, 600);

QImage plainImage(QSize size, QImage::Format format = QImage::Format_RGB32)
{
    QImage image(size, format);
    image.fill(QColor(0x20, 0x60, 0xc0));
    return image;
}

/// As noisy as a photograph is for a png.
QImage photograph(QSize size)
{
    QImage image(size, QImage::Format_RGB32);
    QRandomGenerator random(1);
    for (int y = 0; y < size.height(); ++y) {
        for (int x = 0; x < size.width(); ++x) {
            const int light = 64 + 96 * x / size.width() + static_cast<int>(random.bounded(12U));
            image.setPixelColor(x, y, QColor(light, light + 8, 255 - light));
        }
    }
    return image;
}

QByteArray fileOf(const QImage &image, const char *format)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    EXPECT_TRUE(image.save(&buffer, format));
    return bytes;
}

RtfObject objectOf(const QByteArray &source)
{
    return readRtfObject({source.constData(), static_cast<std::size_t>(source.size())});
}

/// A jpg whose head says that it was taken with the camera turned by a right angle.
QByteArray turnedJpg(QSize size)
{
    QByteArray jpg = fileOf(plainImage(size), "jpg");
    const QByteArray orientation = QByteArray::fromHex("ffe10022457869660000"
                                                       "4d4d002a00000008"
                                                       "0001011200030000000100060000"
                                                       "00000000");
    return jpg.insert(2, orientation);
}

TEST(SourceOfImage, APixelIsAUnit)
{
    const RtfObject object = objectOf(sourceOfImage(plainImage({40, 30}), screen));
    EXPECT_TRUE(object.isPicture);
    EXPECT_EQ(object.kind, QStringLiteral("PNG"));
    EXPECT_EQ(object.size, QSize(600, 450));
    EXPECT_EQ(QImage::fromData(object.image), plainImage({40, 30}));
}

TEST(SourceOfImage, NoImageHasNoSource)
{
    EXPECT_TRUE(sourceOfImage(QImage(), screen).isEmpty());
}

TEST(SourceOfImage, ALargeImageIsScaledToFitAndKeepsItsShape)
{
    const RtfObject wide = objectOf(sourceOfImage(plainImage({1600, 400}), screen));
    EXPECT_EQ(wide.size, QSize(12'000, 3'000));
    EXPECT_EQ(QImage::fromData(wide.image).size(), QSize(800, 200));
    const RtfObject high = objectOf(sourceOfImage(plainImage({400, 1200}), screen));
    EXPECT_EQ(high.size, QSize(3'000, 9'000));
}

TEST(SourceOfImage, AVeryNarrowImageKeepsAPixel)
{
    EXPECT_EQ(objectOf(sourceOfImage(plainImage({8000, 1}), screen)).size, QSize(12'000, 15));
}

TEST(SourceOfImage, ADenseImageIsAsLargeAsItWasOnItsScreen)
{
    QImage image = plainImage({200, 100});
    image.setDevicePixelRatio(2);
    const RtfObject object = objectOf(sourceOfImage(image, screen));
    EXPECT_EQ(object.size, QSize(1'500, 750));
    EXPECT_EQ(QImage::fromData(object.image).size(), QSize(200, 100));
}

TEST(SourceOfImage, WithoutALimitThereIsThatOfTheText)
{
    const QSize size = objectOf(sourceOfImage(plainImage({3000, 10}), {})).size;
    EXPECT_LE(size.width(), maxObjectTwips);
    EXPECT_GT(size.width(), maxObjectTwips - 15);
}

TEST(SourceOfImage, WhatIsTransparentStaysTransparent)
{
    QImage image = plainImage({300, 300}, QImage::Format_ARGB32);
    image.setPixelColor(5, 5, QColor(255, 0, 0, 10));
    const RtfObject object = objectOf(sourceOfImage(image, screen));
    EXPECT_EQ(object.kind, QStringLiteral("PNG"));
    EXPECT_EQ(QImage::fromData(object.image).pixelColor(5, 5).alpha(), 10);
}

TEST(SourceOfImage, APhotographIsKeptAsJpgAndGraphicsAsPng)
{
    const QImage photo = photograph({700, 500});
    const QByteArray png = fileOf(photo, "png");
    const RtfObject object = objectOf(sourceOfImage(photo, screen));
    EXPECT_EQ(object.kind, QStringLiteral("JPEG"));
    EXPECT_LT(object.image.size() * 4, png.size());
    EXPECT_EQ(objectOf(sourceOfImage(plainImage({700, 500}), screen)).kind, QStringLiteral("PNG"));
}

TEST(SourceOfPictureFile, APngOrJpgThatFitsKeepsItsBytes)
{
    for (const char *format : {"png", "jpg"}) {
        const QByteArray file = fileOf(plainImage({40, 30}), format);
        const RtfObject object = objectOf(sourceOfPictureFile(file, screen));
        EXPECT_EQ(object.image, file) << format;
        EXPECT_EQ(object.size, QSize(600, 450)) << format;
    }
}

TEST(SourceOfPictureFile, OtherFormatsBecomePng)
{
    for (const char *format : {"bmp", "ppm"}) {
        const RtfObject object = objectOf(sourceOfPictureFile(fileOf(plainImage({4, 3}), format), screen));
        EXPECT_EQ(object.kind, QStringLiteral("PNG")) << format;
        EXPECT_EQ(QImage::fromData(object.image), plainImage({4, 3})) << format;
    }
}

TEST(SourceOfPictureFile, ALargeJpgIsAJpgWhenItIsScaled)
{
    const RtfObject object = objectOf(sourceOfPictureFile(fileOf(plainImage({1600, 1200}), "jpg"), screen));
    EXPECT_EQ(object.kind, QStringLiteral("JPEG"));
    EXPECT_EQ(QImage::fromData(object.image).size(), QSize(800, 600));
    EXPECT_EQ(object.size, QSize(12'000, 9'000));
}

TEST(SourceOfPictureFile, APhotographIsTurnedAsItsCameraSays)
{
    const QByteArray file = turnedJpg({40, 20});
    QByteArray bytes = file;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::ReadOnly);
    ASSERT_EQ(QImageReader(&buffer).transformation(), QImageIOHandler::TransformationRotate90);
    const RtfObject object = objectOf(sourceOfPictureFile(file, screen));
    EXPECT_EQ(object.size, QSize(300, 600));
    EXPECT_EQ(QImage::fromData(object.image).size(), QSize(20, 40));
}

TEST(SourceOfPictureFile, IsShownAsLargeAsIsAsked)
{
    const QByteArray file = fileOf(plainImage({40, 20}), "png");
    EXPECT_EQ(objectOf(sourceOfPictureFile(file, screen, {10, 10})).size, QSize(150, 150));
    EXPECT_EQ(objectOf(sourceOfPictureFile(file, screen, {10, 0})).size, QSize(150, 75));
    EXPECT_EQ(objectOf(sourceOfPictureFile(file, screen, {-1, 40})).size, QSize(1'200, 600));
    EXPECT_EQ(objectOf(sourceOfPictureFile(file, screen, {2'000'000'000, 1})).size, QSize(12'000, 15));
    EXPECT_EQ(objectOf(sourceOfPictureFile(file, screen, {10, 10})).image, file);
}

TEST(SourceOfPictureFile, WhatIsNoPictureHasNoSource)
{
    const QByteArray png = fileOf(plainImage({40, 30}), "png");
    for (const QByteArray &file :
         {QByteArray(), QByteArray("text"), QByteArray(1000, '\0'), png.left(20), png.mid(1)}) {
        EXPECT_TRUE(sourceOfPictureFile(file, screen).isEmpty());
    }
}

TEST(SourceOfPictureFile, DrawingsThatMayNameFilesAreNotTaken)
{
    const QByteArray svg = "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"9\" height=\"9\"><rect width=\"9\" "
                           "height=\"9\"/></svg>";
    EXPECT_TRUE(sourceOfPictureFile(svg, screen).isEmpty());
}

TEST(SourceOfPictureFile, MorePixelsThanAllowedAreNotDecoded)
{
    EXPECT_FALSE(sourceOfPictureFile("P5 8000 1000 255 " + QByteArray(8'000'000, '\1'), screen).isEmpty());
    EXPECT_TRUE(sourceOfPictureFile("P5 8001 8000 255 " + QByteArray(64'008'000, '\1'), screen).isEmpty());
    QByteArray bmp = fileOf(plainImage({1, 1}), "bmp");
    bmp.replace(18, 8, QByteArray::fromHex("ffff0000ffff0000"));
    EXPECT_TRUE(sourceOfPictureFile(bmp, screen).isEmpty());
}

TEST(SourceOfPictureFile, TheLimitOfTheProgramIsAsItWas)
{
    const int before = QImageReader::allocationLimit();
    static_cast<void>(sourceOfPictureFile(fileOf(plainImage({4, 3}), "png"), screen));
    EXPECT_EQ(QImageReader::allocationLimit(), before);
}

} // namespace
