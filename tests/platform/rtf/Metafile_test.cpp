#include "platform/rtf/Metafile.h"
#include "tests/support/Bytes.h"

#include <QColor>
#include <QImage>

#include <cstdint>
#include <gtest/gtest.h>
#include <limits>
#include <string>

namespace {

/// The head of a bitmap of \p bits per pixel, with \p colors in its palette (0: as many as fit).
std::string dibHead(std::int64_t width, std::int64_t height, int bits, std::int64_t colors = 0, int compression = 0)
{
    return u32(40) + u32(width) + u32(height) + u16(1) + u16(bits) + u32(compression) + u32(0) + u32(2835) + u32(2835) +
           u32(colors) + u32(0);
}

/// A bitmap of 24 bits per pixel that is red (a byte of blue, of green, of red each).
std::string redDib(int width, int height)
{
    std::string row;
    for (int pixel = 0; pixel < width; ++pixel) {
        row += std::string("\x00\x00\xff", 3);
    }
    row.resize((row.size() + 3) / 4 * 4);
    std::string dib = dibHead(width, height, 24);
    for (int line = 0; line < height; ++line) {
        dib += row;
    }
    return dib;
}

std::string record(int function, const std::string &parameters)
{
    const std::string padded = parameters.size() % 2 == 0 ? parameters : parameters + '\0';
    return u32(static_cast<std::int64_t>(padded.size() / 2 + 3)) + u16(function) + padded;
}

/// A record that stretches \p dib over \p width and \p height.
std::string stretched(const std::string &dib, int width, int height)
{
    return record(0x0f43, u32(0x00cc0020) + u16(0) + u16(1) + u16(1) + u16(0) + u16(0) + u16(height) + u16(width) +
                              u16(0) + u16(0) + dib);
}

std::string windowOf(int width, int height)
{
    return record(0x020c, u16(height) + u16(width));
}

std::string wmf(const std::string &records)
{
    return u16(1) + u16(9) + u16(0x0300) + u32(0) + u16(0) + u32(0) + u16(0) + records + record(0, {});
}

std::string placeable(int left, int top, int right, int bottom, int unitsPerInch)
{
    return u32(0x9ac6cdd7) + u16(0) + u16(left) + u16(top) + u16(right) + u16(bottom) + u16(unitsPerInch) + u32(0) +
           u16(0);
}

std::string emf(std::int64_t left, std::int64_t top, std::int64_t right, std::int64_t bottom)
{
    return u32(1) + u32(88) + std::string(16, '\0') + u32(left) + u32(top) + u32(right) + u32(bottom) + " EMF" +
           std::string(44, '\0');
}

QSize pixelsOf(const QByteArray &file)
{
    return QImage::fromData(file, "BMP").size();
}

// Bitmaps without a file's header.

TEST(DibFile, ShowsThePixelsOfTheBitmap)
{
    const QByteArray file = bitmapFileOfDib(redDib(3, 2));
    const QImage image = QImage::fromData(file, "BMP");
    ASSERT_EQ(image.size(), QSize(3, 2));
    EXPECT_EQ(image.pixelColor(2, 1), QColor(Qt::red));
}

TEST(DibFile, NamesItsOwnSize)
{
    const std::string dib = redDib(3, 2);
    const QByteArray file = bitmapFileOfDib(dib);
    ASSERT_EQ(file.size(), static_cast<qsizetype>(dib.size() + 14));
    EXPECT_EQ(file.first(6).toStdString(), "BM" + u32(file.size()));
}

TEST(DibFile, KeepsABitmapWhoseRowsRunFromTheTop)
{
    const std::string dib = dibHead(1, -2, 24) + std::string("\x00\x00\xff\x00\xff\x00\x00\x00", 8);
    const QImage image = QImage::fromData(bitmapFileOfDib(dib), "BMP");
    ASSERT_EQ(image.size(), QSize(1, 2));
    EXPECT_EQ(image.pixelColor(0, 0), QColor(Qt::red));
}

TEST(DibFile, MayHaveTheSmallestHead)
{
    const std::string dib = u32(12) + u16(1) + u16(1) + u16(1) + u16(24) + std::string("\x00\x00\xff\x00", 4);
    EXPECT_EQ(QImage::fromData(bitmapFileOfDib(dib), "BMP").pixelColor(0, 0), QColor(Qt::red));
}

struct DibRow
{
    const char *name;
    std::string dib;
    int pixelOffset; ///< in the file
};

void PrintTo(const DibRow &row, std::ostream *out)
{
    *out << row.name;
}

const auto rowName = [](const auto &info) { return info.param.name; };

class DibPalettes : public testing::TestWithParam<DibRow>
{
};

TEST_P(DibPalettes, StandBeforeThePixels)
{
    const QByteArray file = bitmapFileOfDib(GetParam().dib + std::string(2000, '\0'));
    EXPECT_EQ(file.mid(10, 4).toStdString(), u32(GetParam().pixelOffset));
}

INSTANTIATE_TEST_SUITE_P(
    Heads, DibPalettes,
    testing::Values(DibRow{"OfTwoColors", dibHead(4, 4, 1), 54 + 8},
                    DibRow{"OfSixteenColors", dibHead(4, 4, 4), 54 + 64},
                    DibRow{"OfAllColorsOfAByte", dibHead(4, 4, 8), 54 + 1024},
                    DibRow{"OfTheColorsInUse", dibHead(4, 4, 8, 3), 54 + 12},
                    DibRow{"OfNoColors", dibHead(4, 4, 24), 54},
                    DibRow{"OfColorsForOldScreens", dibHead(4, 4, 24, 2), 54 + 8},
                    DibRow{"OfMasks", dibHead(4, 4, 16, 0, 3), 54 + 12},
                    DibRow{"OfTheSmallestHead", u32(12) + u16(4) + u16(4) + u16(1) + u16(1), 14 + 12 + 6},
                    DibRow{"OfALongHead", u32(108) + dibHead(4, 4, 32).substr(4) + std::string(68, '\0'), 14 + 108}),
    rowName);

class NoDib : public testing::TestWithParam<DibRow>
{
};

TEST_P(NoDib, MakesNoFile)
{
    EXPECT_TRUE(bitmapFileOfDib(GetParam().dib).isEmpty());
}

const std::string somePixels(64, '\0');

INSTANTIATE_TEST_SUITE_P(
    Bytes, NoDib,
    testing::Values(DibRow{"Nothing", {}, 0}, DibRow{"AFragment", dibHead(4, 4, 24).substr(0, 20), 0},
                    DibRow{"AHeadAlone", dibHead(4, 4, 24), 0},
                    DibRow{"AHeadOfUnknownLength", u32(41) + dibHead(4, 4, 24).substr(4) + somePixels, 0},
                    DibRow{"NoWidth", dibHead(0, 4, 24) + somePixels, 0},
                    DibRow{"NegativeWidth", dibHead(-4, 4, 24) + somePixels, 0},
                    DibRow{"NoHeight", dibHead(4, 0, 24) + somePixels, 0},
                    DibRow{"SevenBitsPerPixel", dibHead(4, 4, 7) + somePixels, 0},
                    DibRow{"APictureFileInsteadOfPixels", dibHead(4, 4, 0, 0, 5) + somePixels, 0},
                    DibRow{"MoreColorsThanBytes", dibHead(4, 4, 8, 0xffffffff) + somePixels, 0}),
    rowName);

TEST(DibFile, HasRoomForTheTallestBitmapThereIs)
{
    constexpr auto tallest = std::numeric_limits<std::int32_t>::min();
    EXPECT_FALSE(
        bitmapFileOfDib(dibHead(std::numeric_limits<std::int32_t>::max(), tallest, 24) + somePixels).isEmpty());
}

// Metafiles.

TEST(MetafileBitmap, IsFoundInEachRecordThatPaintsOne)
{
    const std::string dib = redDib(3, 2);
    const std::string position = u16(0) + u16(0);
    const std::string size = u16(2) + u16(3);
    const std::string copy = u32(0x00cc0020);
    const std::string records[] = {
        record(0x0940, copy + position + size + position + dib),
        record(0x0b41, copy + size + position + size + position + dib),
        record(0x0d33, u16(0) + u16(2) + u16(0) + position + size + position + dib),
        record(0x0f43, copy + u16(0) + size + position + size + position + dib),
    };
    for (const std::string &each : records) {
        const QImage image = QImage::fromData(bitmapOfMetafile(wmf(each)), "BMP");
        ASSERT_EQ(image.size(), QSize(3, 2));
        EXPECT_EQ(image.pixelColor(0, 0), QColor(Qt::red));
    }
}

TEST(MetafileBitmap, IsFoundBehindAPlaceableHeader)
{
    const std::string file = placeable(0, 0, 30, 20, 96) + wmf(stretched(redDib(3, 2), 30, 20));
    EXPECT_EQ(pixelsOf(bitmapOfMetafile(file)), QSize(3, 2));
}

TEST(MetafileBitmap, IsTheOneOfMostPixels)
{
    const std::string file =
        wmf(stretched(redDib(2, 2), 9, 9) + stretched(redDib(4, 5), 9, 9) + stretched(redDib(3, 3), 9, 9));
    EXPECT_EQ(pixelsOf(bitmapOfMetafile(file)), QSize(4, 5));
}

TEST(MetafileBitmap, IsThePictureRatherThanItsMask)
{
    const std::string mask = dibHead(3, 2, 1) + std::string(16, '\0');
    const QByteArray file = bitmapOfMetafile(wmf(stretched(mask, 9, 9) + stretched(redDib(3, 2), 9, 9)));
    EXPECT_EQ(QImage::fromData(file, "BMP").pixelColor(0, 0), QColor(Qt::red));
}

TEST(MetafileBitmap, FillsAtLeastHalfOfTheWindow)
{
    EXPECT_FALSE(bitmapOfMetafile(wmf(windowOf(100, 60) + stretched(redDib(3, 2), 50, 30))).isEmpty());
    EXPECT_TRUE(bitmapOfMetafile(wmf(windowOf(100, 60) + stretched(redDib(3, 2), 49, 60))).isEmpty());
    EXPECT_TRUE(bitmapOfMetafile(wmf(windowOf(100, 60) + stretched(redDib(3, 2), 100, 29))).isEmpty());
}

TEST(MetafileBitmap, MayBePaintedUpsideDown)
{
    EXPECT_FALSE(bitmapOfMetafile(wmf(windowOf(100, -60) + stretched(redDib(3, 2), 100, -60))).isEmpty());
}

TEST(MetafileBitmap, IsMissingWhereNoneIsPainted)
{
    const std::string rectangle = record(0x041b, u16(1) + u16(1) + u16(0) + u16(0));
    EXPECT_TRUE(bitmapOfMetafile(wmf(rectangle)).isEmpty());
    EXPECT_TRUE(bitmapOfMetafile(wmf(record(0x0940, u32(0x00f00021) + std::string(14, '\0')))).isEmpty());
    EXPECT_TRUE(bitmapOfMetafile({}).isEmpty());
    EXPECT_TRUE(bitmapOfMetafile(emf(0, 0, 100, 100)).isEmpty());
    EXPECT_TRUE(bitmapOfMetafile("no metafile, but long enough for the head of one").isEmpty());
}

TEST(MetafileBitmap, OfARecordLongerThanTheFileIsWhatIsThere)
{
    std::string file = wmf({});
    file.resize(18);
    std::string longRecord = stretched(redDib(3, 2), 9, 9);
    longRecord.replace(0, 4, u32(0xffffffff));
    EXPECT_EQ(pixelsOf(bitmapOfMetafile(file + longRecord)), QSize(3, 2));
}

TEST(MetafileBitmap, IsNotLookedForBehindARecordWithoutLength)
{
    const std::string file = wmf(u32(0) + u16(0) + stretched(redDib(3, 2), 9, 9));
    EXPECT_TRUE(bitmapOfMetafile(file).isEmpty());
}

TEST(MetafileBitmap, IsLookedForInEveryBeginningOfAFile)
{
    const std::string whole = placeable(0, 0, 9, 9, 96) + wmf(windowOf(9, 9) + stretched(redDib(3, 2), 9, 9));
    std::size_t found = 0;
    for (std::size_t size = 0; size <= whole.size(); ++size) {
        found += bitmapOfMetafile(whole.substr(0, size)).isEmpty() ? 0 : 1;
    }
    EXPECT_GT(found, 0U);
    EXPECT_LT(found, whole.size());
}

TEST(MetafileKinds, AreToldByTheFirstBytes)
{
    EXPECT_EQ(metafileKindOf(wmf({})), MetafileKind::Wmf);
    EXPECT_EQ(metafileKindOf(placeable(0, 0, 1, 1, 96)), MetafileKind::Wmf);
    EXPECT_EQ(metafileKindOf(emf(0, 0, 1, 1)), MetafileKind::Emf);
    EXPECT_EQ(metafileKindOf(u32(1) + std::string(100, '\0')), MetafileKind::None);
    EXPECT_EQ(metafileKindOf("BM"), MetafileKind::None);
    EXPECT_EQ(metafileKindOf({}), MetafileKind::None);
}

TEST(MetafileSize, IsThatOfThePlaceableHeader)
{
    EXPECT_EQ(sizeOfMetafile(placeable(10, 20, 106, 68, 96)), QSize(1440, 720));
}

TEST(MetafileSize, IsPositiveWhicheverWayTheBoxRuns)
{
    EXPECT_EQ(sizeOfMetafile(placeable(96, 48, 0, 0, 96)), QSize(1440, 720));
    EXPECT_EQ(sizeOfMetafile(placeable(-32768, -32768, 32767, 32767, 65535)), QSize(1440, 1440));
}

TEST(MetafileSize, IsAtLeastATwip)
{
    EXPECT_EQ(sizeOfMetafile(placeable(0, 0, 1, 1, 65535)), QSize(1, 1));
}

TEST(MetafileSize, IsTheFrameOfAnEmf)
{
    EXPECT_EQ(sizeOfMetafile(emf(0, 0, 2540, 1270)), QSize(1440, 720));
}

TEST(MetafileSize, OfTheLargestFrameIsAsLargeAsASizeCanBe)
{
    constexpr auto least = std::numeric_limits<std::int32_t>::min();
    constexpr auto most = std::numeric_limits<std::int32_t>::max();
    EXPECT_EQ(sizeOfMetafile(emf(least, least, most, most)), QSize(most, most));
}

TEST(MetafileSize, IsUnknownWithoutAHeadThatTellsIt)
{
    EXPECT_EQ(sizeOfMetafile(wmf(windowOf(9, 9))), std::nullopt);
    EXPECT_EQ(sizeOfMetafile(placeable(0, 0, 9, 9, 0)), std::nullopt);
    EXPECT_EQ(sizeOfMetafile(placeable(5, 0, 5, 9, 96)), std::nullopt);
    EXPECT_EQ(sizeOfMetafile({}), std::nullopt);
}

} // namespace
