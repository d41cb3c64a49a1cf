#include "platform/rtf/OleObject.h"
#include "platform/rtf/RtfObject.h"
#include "tests/support/Bytes.h"

#include <QBuffer>
#include <QImage>

#include <algorithm>
#include <cstdint>
#include <gtest/gtest.h>
#include <ostream>
#include <string>

namespace {

std::string bigEndian32(std::uint32_t number)
{
    const std::string bytes = u32(number);
    return {bytes.rbegin(), bytes.rend()};
}

std::string hex(const std::string &bytes)
{
    return QByteArray::fromStdString(bytes).toHex().toStdString();
}

std::string_view viewOf(const QByteArray &bytes)
{
    return {bytes.constData(), static_cast<std::size_t>(bytes.size())};
}

std::string fileOf(const QImage &image, const char *format)
{
    QBuffer file;
    file.open(QIODevice::WriteOnly);
    EXPECT_TRUE(image.save(&file, format));
    return file.data().toStdString();
}

QImage redImage()
{
    QImage image(3, 2, QImage::Format_RGB32);
    image.fill(Qt::red);
    return image;
}

const std::string &png()
{
    static const std::string file = fileOf(redImage(), "png");
    return file;
}

const std::string &jpeg()
{
    static const std::string file = fileOf(redImage(), "jpg");
    return file;
}

std::string dib(std::int64_t width = 3, std::int64_t height = 2)
{
    return u32(40) + u32(width) + u32(height) + u16(1) + u16(24) + std::string(24, '\0') + std::string(24, '\x7f');
}

std::string bmp(std::int64_t width = 3, std::int64_t height = 2)
{
    const std::string bitmap = dib(width, height);
    return "BM" + u32(static_cast<std::int64_t>(bitmap.size() + 14)) + u32(0) + u32(54) + bitmap;
}

const std::string wmfHead = u16(1) + u16(9) + u16(0x0300) + std::string(12, '\0');

/// A metafile that stretches \p bitmap.
std::string wmf(const std::string &bitmap)
{
    const std::string parameters =
        u32(0x00cc0020) + u16(0) + u16(2) + u16(3) + u32(0) + u16(2) + u16(3) + u32(0) + bitmap;
    return wmfHead + u32(static_cast<std::int64_t>(parameters.size() / 2 + 3)) + u16(0x0f43) + parameters + u32(3) +
           u16(0);
}

std::string placeableWmf(int width, int height)
{
    return u32(0x9ac6cdd7) + u16(0) + u32(0) + u16(width) + u16(height) + u16(1440) + std::string(6, '\0') + wmfHead;
}

std::string emf()
{
    return u32(1) + u32(88) + std::string(16, '\0') + u32(0) + u32(0) + u32(2540) + u32(1270) + " EMF" +
           std::string(44, '\0');
}

std::uint32_t checksum(const std::string &bytes)
{
    std::uint32_t sum = 0xffffffff;
    for (const char byte : bytes) {
        sum ^= static_cast<unsigned char>(byte);
        for (int bit = 0; bit < 8; ++bit) {
            sum = (sum >> 1U) ^ ((sum & 1U) != 0 ? 0xedb88320U : 0U);
        }
    }
    return ~sum;
}

/// A png file whose head claims another size than its pixels have.
std::string pngClaiming(std::uint32_t width, std::uint32_t height)
{
    std::string file = png();
    file.replace(16, 8, bigEndian32(width) + bigEndian32(height));
    file.replace(29, 4, bigEndian32(checksum(file.substr(12, 17))));
    return file;
}

/// The same of a jpg file.
std::string jpegClaiming(std::uint32_t width, std::uint32_t height)
{
    std::string file = jpeg();
    const std::size_t frame = file.find("\xff\xc0");
    file.replace(frame + 5, 4, bigEndian32(height).substr(2) + bigEndian32(width).substr(2));
    return file;
}

std::string picture(const std::string &words, const std::string &data)
{
    return "{\\pict" + words + " " + hex(data) + "}";
}

std::string block(const std::string &bytes)
{
    return u32(static_cast<std::int64_t>(bytes.size())) + bytes;
}

/// The stream of an embedded object, with what programs hand over of it as \p kind.
std::string stream(const std::string &className, const std::string &native, const std::string &kind = {},
                   const std::string &shown = {})
{
    const std::string presentation =
        kind.empty() ? u32(0) : u32(5) + block(kind + nul) + u32(100) + u32(-100) + block(shown);
    return u32(0x501) + u32(2) + block(className + nul) + u32(0) + u32(0) + block(native) + u32(0x501) + presentation;
}

std::string object(const std::string &className, const std::string &data, const std::string &rest = {})
{
    return "{\\object\\objemb{\\*\\objclass " + className + "}{\\*\\objdata " + hex(data) + "}" + rest + "}";
}

std::string package(const std::string &name, const std::string &file)
{
    return u16(2) + name + nul + name + nul + u16(0) + u16(3) + block(name + nul) + block(file);
}

std::string imageOf(const std::string &source)
{
    return readRtfObject(source).image.toStdString();
}

QString textOf(const std::string &result)
{
    return readRtfObject("{\\object\\objemb{\\result " + result + "}}").text;
}

struct Row
{
    const char *name;
    std::string source;
    QString expected;
};

void PrintTo(const Row &row, std::ostream *out)
{
    *out << row.name;
}

const auto rowName = [](const auto &info) { return info.param.name; };

// The data of pictures.

TEST(RtfPicture, IsTheFileInItsGroup)
{
    const RtfObject read = readRtfObject(picture("\\pngblip\\picwgoal300\\pichgoal200", png()));
    EXPECT_TRUE(read.isPicture);
    EXPECT_EQ(read.image.toStdString(), png());
    EXPECT_EQ(read.kind, QStringLiteral("PNG"));
    EXPECT_EQ(read.size, QSize(300, 200));
    EXPECT_TRUE(read.name.isEmpty());
    EXPECT_TRUE(read.text.isEmpty());
    EXPECT_TRUE(read.native.isEmpty());
}

TEST(RtfPicture, MayHaveItsDigitsInAnyFormAndLines)
{
    std::string digits = QByteArray::fromStdString(png()).toHex(' ').toUpper().toStdString();
    digits.insert(30, "\r\n\t\n");
    EXPECT_EQ(imageOf("{\\pict\\pngblip\r\n" + digits + "\r\n}"), png());
}

TEST(RtfPicture, LosesAHalfByteAtItsEnd)
{
    EXPECT_EQ(imageOf("{\\pict\\pngblip " + hex(png()) + "8}"), png());
}

TEST(RtfPicture, HasNoDataInItsGroups)
{
    const std::string digits = hex(png());
    const std::string groups = "{\\*\\picprop\\shplid1{\\sp{\\sn ab}{\\sv 41}}}{\\*\\blipuid 0123456789abcdef}{cd}";
    EXPECT_EQ(imageOf("{\\pict\\pngblip" + groups + digits.substr(0, 41) + groups + digits.substr(41) + "}"), png());
}

TEST(RtfPicture, MayBeBinary)
{
    const std::string data = "\\bin" + std::to_string(png().size()) + " " + png();
    EXPECT_EQ(imageOf("{\\pict\\pngblip " + data + "}"), png());
    EXPECT_EQ(imageOf("{\\pict\\pngblip {" + data + "}}"), png());
    EXPECT_EQ(imageOf("{\\pict\\pngblip{\\*\\blipuid\\bin2 xx}{\\*\\a{\\bin2 xx}}" + data + "}"), png());
}

TEST(RtfPicture, MayBeBinaryInPart)
{
    const std::string rest = png().substr(10);
    const std::string data = hex(png().substr(0, 10)) + "\\bin" + std::to_string(rest.size()) + " " + rest;
    EXPECT_EQ(imageOf("{\\pict\\pngblip " + data + "}"), png());
}

TEST(RtfPicture, EndsWithItsSourceHoweverLongItClaimsToBe)
{
    EXPECT_EQ(imageOf("{\\pict\\pngblip\\bin2147483647 " + png()), png());
    EXPECT_EQ(imageOf("{\\pict\\pngblip\\bin99999999999999999999 " + png()), png());
    EXPECT_EQ(imageOf("{\\pict\\pngblip " + hex(png())), png());
}

TEST(RtfPicture, OfABitmapIsAFileThatCanBeRead)
{
    const QByteArray file = readRtfObject(picture("\\dibitmap0", dib())).image;
    EXPECT_EQ(QImage::fromData(file, "bmp").size(), QSize(3, 2));
}

TEST(RtfPicture, OfAMetafileIsTheBitmapInIt)
{
    const RtfObject read = readRtfObject(picture("\\wmetafile8", wmf(dib())));
    EXPECT_EQ(read.kind, QStringLiteral("WMF"));
    EXPECT_EQ(QImage::fromData(read.image, "bmp").size(), QSize(3, 2));
}

class PictureKinds : public testing::TestWithParam<Row>
{
};

TEST_P(PictureKinds, AreAsExpected)
{
    EXPECT_EQ(readRtfObject(GetParam().source).kind, GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(
    ByTheirBytes, PictureKinds,
    testing::Values(Row{"PngInAMetafile", picture("\\wmetafile8", png()), QStringLiteral("PNG")},
                    Row{"JpegInAPng", picture("\\pngblip", jpeg()), QStringLiteral("JPEG")},
                    Row{"BitmapInAPng", picture("\\pngblip", dib()), QStringLiteral("bitmap")},
                    Row{"BitmapFileInADib", picture("\\dibitmap0", bmp()), QStringLiteral("bitmap")},
                    Row{"WmfInAnEmf", picture("\\emfblip", wmf(dib())), QStringLiteral("WMF")},
                    Row{"PlaceableWmfInABitmap", picture("\\dibitmap0", placeableWmf(9, 9)), QStringLiteral("WMF")},
                    Row{"EmfInAWmf", picture("\\wmetafile8", emf()), QStringLiteral("EMF")},
                    Row{"PngWithoutAWord", picture("", png()), QStringLiteral("PNG")}),
    rowName);

INSTANTIATE_TEST_SUITE_P(ByTheirWords, PictureKinds,
                         testing::Values(Row{"Png", picture("\\pngblip", "garbage"), QStringLiteral("PNG")},
                                         Row{"Jpeg", picture("\\jpegblip", "garbage"), QStringLiteral("JPEG")},
                                         Row{"Bitmap", picture("\\dibitmap0", "garbage"), QStringLiteral("bitmap")},
                                         Row{"OldBitmap", picture("\\wbitmap0", "garbage"), QStringLiteral("bitmap")},
                                         Row{"Wmf", picture("\\wmetafile8", "garbage"), QStringLiteral("WMF")},
                                         Row{"Emf", picture("\\emfblip", "garbage"), QStringLiteral("EMF")},
                                         Row{"OfAnotherSystem", picture("\\macpict", "garbage"),
                                             QStringLiteral("picture")},
                                         Row{"NoneKnown", picture("", "garbage"), QStringLiteral("picture")}),
                         rowName);

TEST(RtfPicture, ThatCannotBeDrawnHasNoImage)
{
    for (const std::string &data : {std::string("garbage"), std::string(), emf(), wmf("no bitmap"), png().substr(0, 12),
                                    jpeg().substr(0, 9), std::string("BM no bitmap"), dib(0, 2), dib(3, 0)}) {
        const RtfObject read = readRtfObject(picture("\\pngblip", data));
        EXPECT_TRUE(read.image.isEmpty()) << hex(data);
        EXPECT_FALSE(read.kind.isEmpty());
    }
}

TEST(RtfPicture, OfAsManyPixelsAsAllowedHasItsImage)
{
    EXPECT_FALSE(imageOf(picture("\\pngblip", pngClaiming(8000, 8000))).empty());
    EXPECT_FALSE(imageOf(picture("\\jpegblip", jpegClaiming(8000, 8000))).empty());
    EXPECT_FALSE(imageOf(picture("\\dibitmap0", bmp(8000, 8000))).empty());
    EXPECT_FALSE(imageOf(picture("\\dibitmap0", dib(8000, -8000))).empty());
    EXPECT_FALSE(imageOf(picture("\\wmetafile8", wmf(dib(8000, 8000)))).empty());
}

TEST(RtfPicture, OfMorePixelsHasNoneButIsNamed)
{
    const Row rows[] = {
        {"", picture("\\pngblip", pngClaiming(8000, 8001)), QStringLiteral("PNG")},
        {"", picture("\\pngblip", pngClaiming(0x7fffffff, 1)), QStringLiteral("PNG")},
        {"", picture("\\jpegblip", jpegClaiming(8000, 8001)), QStringLiteral("JPEG")},
        {"", picture("\\dibitmap0", bmp(8000, 8001)), QStringLiteral("bitmap")},
        {"", picture("\\dibitmap0", dib(8000, -8001)), QStringLiteral("bitmap")},
        {"", picture("\\dibitmap0", dib(0x7fffffff, -0x7fffffffLL - 1)), QStringLiteral("bitmap")},
        {"", picture("\\wmetafile8", wmf(dib(8000, 8001))), QStringLiteral("WMF")},
    };
    for (const Row &row : rows) {
        const RtfObject read = readRtfObject(row.source);
        EXPECT_TRUE(read.image.isEmpty()) << row.source;
        EXPECT_EQ(read.kind, row.expected);
    }
}

// Which of several pictures.

TEST(RtfPictures, ForNewReadersComeBeforeThoseForOldOnes)
{
    const std::string forNew = "{\\*\\shppict" + picture("\\pngblip\\picwgoal300\\pichgoal200", png()) + "}";
    const std::string forOld = "{\\nonshppict" + picture("\\wmetafile8\\picwgoal900\\pichgoal900", wmf(dib())) + "}";
    for (const std::string &source : {"{" + forNew + forOld + "}", "{" + forOld + forNew + "}", forNew + forOld}) {
        const RtfObject read = readRtfObject(source);
        EXPECT_EQ(read.kind, QStringLiteral("PNG"));
        EXPECT_EQ(read.size, QSize(300, 200));
    }
}

TEST(RtfPictures, ForOldReadersStandInForThoseThatCannotBeDrawn)
{
    const std::string source = "{{\\*\\shppict" + picture("\\emfblip\\picwgoal300\\pichgoal200", emf()) +
                               "}{\\nonshppict" + picture("\\wmetafile8\\picwgoal900\\pichgoal900", wmf(dib())) + "}}";
    const RtfObject read = readRtfObject(source);
    EXPECT_EQ(read.kind, QStringLiteral("WMF"));
    EXPECT_FALSE(read.image.isEmpty());
    EXPECT_EQ(read.size, QSize(300, 200));
}

TEST(RtfPictures, OfOneKindAreShownByTheFirst)
{
    EXPECT_EQ(imageOf("{" + picture("\\pngblip", png()) + picture("\\jpegblip", jpeg()) + "}"), png());
}

// Sizes.

struct SizeRow
{
    const char *name;
    std::string source;
    QSize expected;
};

void PrintTo(const SizeRow &row, std::ostream *out)
{
    *out << row.name;
}

class ObjectSizes : public testing::TestWithParam<SizeRow>
{
};

TEST_P(ObjectSizes, AreToldWithTheObjectAndAlone)
{
    EXPECT_EQ(readRtfObject(GetParam().source).size, GetParam().expected);
    EXPECT_EQ(rtfObjectSize(GetParam().source), GetParam().expected);
}

std::string sized(const std::string &words)
{
    return picture("\\pngblip" + words, png());
}

INSTANTIATE_TEST_SUITE_P(
    OfPictures, ObjectSizes,
    testing::Values(
        SizeRow{"TheGoal", sized("\\picw9\\pich9\\picwgoal300\\pichgoal200"), {300, 200}},
        SizeRow{"TheGoalScaled", sized("\\picwgoal300\\pichgoal200\\picscalex50\\picscaley250"), {150, 500}},
        SizeRow{"OneSideScaled", sized("\\picwgoal300\\pichgoal200\\picscalex50"), {150, 200}},
        SizeRow{"ScaledByNothing", sized("\\picwgoal300\\pichgoal200\\picscalex0\\picscaley-50"), {300, 200}},
        SizeRow{"AWordWithoutANumber", sized("\\picwgoal300\\picwgoal\\pichgoal200\\picscalex"), {300, 200}},
        SizeRow{"WordsBehindTheData", "{\\pict " + hex(png()) + "\\picwgoal300\\pichgoal200}", {300, 200}},
        SizeRow{
            "WordsOfAGroupInIt", sized("\\picwgoal300\\pichgoal200{\\*\\picprop\\picwgoal9\\pichgoal9}"), {300, 200}},
        SizeRow{"PixelsOfAPng", sized("\\picw40\\pich30"), {600, 450}},
        SizeRow{"PixelsScaled", sized("\\picw40\\pich30\\picscalex200\\picscaley200"), {1200, 900}},
        SizeRow{"PixelsOfABitmap", picture("\\dibitmap0\\picw40\\pich30", dib()), {600, 450}},
        SizeRow{"LengthsOfAMetafile", picture("\\wmetafile8\\picw2540\\pich1270", wmf(dib())), {1440, 720}},
        SizeRow{"LengthsOfAnEmf", picture("\\emfblip\\picw2540\\pich1270", emf()), {1440, 720}},
        SizeRow{"OneSideByItsGoal", sized("\\picwgoal300\\picw40\\pich30"), {300, 450}},
        SizeRow{"NegativeGoals", sized("\\picwgoal-300\\pichgoal-200"), {300, 200}},
        SizeRow{"NegativePixels", sized("\\picw-40\\pich-30"), {600, 450}},
        SizeRow{"AsTheDataTells", sized(""), {45, 30}},
        SizeRow{"AsTheDataTellsScaled", sized("\\picscalex200"), {90, 30}},
        SizeRow{"OneSideAsTheDataTells", sized("\\picwgoal300"), {300, 30}},
        SizeRow{"AsABitmapTells", picture("\\dibitmap0", dib()), {45, 30}},
        SizeRow{"AsABitmapFromTheTopTells", picture("\\dibitmap0", dib(3, -2)), {45, 30}},
        SizeRow{"AsAMetafileTells", picture("\\wmetafile8", placeableWmf(400, 300)), {400, 300}},
        SizeRow{"AsTheBitmapOfAMetafileTells", picture("\\wmetafile8", wmf(dib())), {45, 30}},
        SizeRow{"AsAnEmfTells", picture("\\emfblip", emf()), {1440, 720}},
        SizeRow{"OfAPictureTooLargeToDraw", picture("\\pngblip", pngClaiming(8001, 8000)), {31680, 31680}},
        SizeRow{"OfGarbage", picture("\\pngblip", "garbage"), {480, 480}}, SizeRow{"OfNothing", "", {480, 480}},
        SizeRow{"TooSmall", sized("\\picwgoal1\\pichgoal14"), {15, 15}},
        SizeRow{"TooSmallByScale", sized("\\picwgoal300\\pichgoal200\\picscalex1\\picscaley1"), {15, 15}},
        SizeRow{"TooLarge", sized("\\picwgoal31681\\pichgoal99999"), {31680, 31680}},
        SizeRow{"TooLargeByScale",
                sized("\\picwgoal300\\pichgoal200\\picscalex2147483647\\picscaley99999"),
                {31680, 31680}},
        SizeRow{"TheLargestNumbers",
                sized("\\picwgoal2147483647\\pichgoal-2147483648\\picscalex2147483647\\picscaley2147483647"),
                {31680, 31680}},
        SizeRow{"TheLargestPixels", sized("\\picw2147483647\\pich-2147483648"), {31680, 31680}},
        SizeRow{
            "TheLargestLengths", picture("\\wmetafile8\\picw2147483647\\pich-2147483648", wmf(dib())), {31680, 31680}}),
    rowName);

const std::string shownIn900 = "{\\result " + picture("\\pngblip\\picwgoal900\\pichgoal800", png()) + "}";

INSTANTIATE_TEST_SUITE_P(
    OfObjects, ObjectSizes,
    testing::Values(SizeRow{"TheirOwn", "{\\object\\objemb\\objw500\\objh400" + shownIn900 + "}", {500, 400}},
                    SizeRow{"TheirOwnScaled", "{\\object\\objw500\\objh400\\objscalex50\\objscaley200}", {250, 800}},
                    SizeRow{"TheirOwnScaledOnOneSide", "{\\object\\objw500\\objh400\\objscalex50}", {250, 400}},
                    SizeRow{"OfTheirPicture", "{\\object\\objemb" + shownIn900 + "}", {900, 800}},
                    SizeRow{"OneSideOfTheirPicture", "{\\object\\objw500" + shownIn900 + "}", {500, 800}},
                    SizeRow{"Negative", "{\\object\\objw-500\\objh-2147483648}", {500, 31680}},
                    SizeRow{"Zero", "{\\object\\objw0\\objh0}", {1440, 960}},
                    SizeRow{"NotThatOfAnObjectInThem",
                            "{\\object\\objw500\\objh400{\\result{\\object\\objw9\\objh9}}}",
                            {500, 400}},
                    SizeRow{"Untold", "{\\object}", {1440, 960}}),
    rowName);

// Objects.

TEST(RtfObjects, AreToldFromPictures)
{
    EXPECT_FALSE(readRtfObject("{\\object}").isPicture);
    EXPECT_FALSE(readRtfObject("{\\object{\\result " + sized("") + "}}").isPicture);
    EXPECT_TRUE(readRtfObject(sized("")).isPicture);
    EXPECT_TRUE(readRtfObject("{" + sized("") + "{\\object}}").isPicture);
    EXPECT_TRUE(readRtfObject("{}").isPicture);
}

TEST(RtfObjects, AreNamedByTheirClass)
{
    EXPECT_EQ(readRtfObject(object("Word.Document.8", stream("PBrush", "x"))).kind, QStringLiteral("Word.Document.8"));
    EXPECT_EQ(readRtfObject(object("Caf\\'e9 ", stream("PBrush", "x"))).kind, QStringLiteral("Caf\u00e9"));
    EXPECT_EQ(readRtfObject(object("", stream("PBrush", "x"))).kind, QStringLiteral("PBrush"));
    EXPECT_EQ(readRtfObject("{\\object{\\*\\objdata " + hex(stream("PBrush", "x")) + "}}").kind,
              QStringLiteral("PBrush"));
    EXPECT_EQ(readRtfObject(object("", "garbage")).kind, QString());
    EXPECT_LE(readRtfObject(object(std::string(70000, 'x'), {})).kind.size(), 255);
}

TEST(RtfObjects, KeepTheDataOfTheirClass)
{
    const RtfObject read = readRtfObject(object("Word.Document.8", stream("Word.Document.8", "the document")));
    EXPECT_EQ(read.native.toStdString(), "the document");
    EXPECT_TRUE(read.name.isEmpty());
    EXPECT_TRUE(read.image.isEmpty());
}

TEST(RtfObjects, OfTheClassPackageHoldAFile)
{
    for (const char *className : {"Package", "package", "", "Word.Document.8"}) {
        const RtfObject read = readRtfObject(object(className, stream("Package", package("C:\\a\\b.txt", "the file"))));
        EXPECT_EQ(read.name, QStringLiteral("b.txt"));
        EXPECT_EQ(read.native.toStdString(), "the file");
    }
}

TEST(RtfObjects, OfTheClassPackageWithoutAPackageKeepTheirData)
{
    const RtfObject read = readRtfObject(object("Package", stream("Package", "no package")));
    EXPECT_TRUE(read.name.isEmpty());
    EXPECT_EQ(read.native.toStdString(), "no package");
}

TEST(RtfObjects, ThatAreLinkedNameTheirFileWithoutItsFolder)
{
    const std::string linked = u32(0x501) + u32(1) + block("Excel.Sheet.8" + nul) + block("C:\\Sums\\year.xls" + nul) +
                               u32(0) + u32(0) + u32(0) + u32(0);
    const RtfObject read = readRtfObject(object("Excel.Sheet.8", linked));
    EXPECT_EQ(read.name, QStringLiteral("year.xls"));
    EXPECT_TRUE(read.native.isEmpty());
}

TEST(RtfObjects, MayHaveTheirDataInAnyForm)
{
    const std::string data = stream("Word.Document.8", "the document");
    const std::string digits = hex(data);
    const std::string forms[] = {
        digits.substr(0, 31) + "\r\n \t" + digits.substr(31),
        digits.substr(0, 31) + "{\\*\\ignored 0123}{0123}" + digits.substr(31),
        "\\bin" + std::to_string(data.size()) + " " + data,
        hex(data.substr(0, 9)) + "{\\bin" + std::to_string(data.size() - 9) + " " + data.substr(9) + "}",
    };
    for (const std::string &form : forms) {
        EXPECT_EQ(readRtfObject("{\\object{\\*\\objdata " + form + "}}").native.toStdString(), "the document");
    }
}

TEST(RtfObjects, IgnoreTheClassAndDataOfObjectsInThem)
{
    const std::string inner = object("Inner", stream("Inner", "inner"));
    const RtfObject read = readRtfObject("{\\object{\\result " + inner + "}{\\*\\objclass Outer}{\\*\\objdata " +
                                         inner + hex(stream("Outer", "outer")) + inner + "}}");
    EXPECT_EQ(read.kind, QStringLiteral("Outer"));
    EXPECT_EQ(read.native.toStdString(), "outer");
}

TEST(RtfObjects, IgnoreTheNameThatOthersCallThemBy)
{
    const RtfObject read =
        readRtfObject("{\\object{\\*\\objname Name}{\\objname Name}{\\*\\objalias Name}{\\result a}}");
    EXPECT_TRUE(read.name.isEmpty());
    EXPECT_EQ(read.text, QStringLiteral("a"));
}

TEST(RtfObjects, WithGarbageForDataHaveNone)
{
    const RtfObject read = readRtfObject(object("Word.Document.8", "garbage, but long enough"));
    EXPECT_EQ(read.kind, QStringLiteral("Word.Document.8"));
    EXPECT_TRUE(read.native.isEmpty());
}

TEST(RtfObjects, AreShownByThePictureInTheirText)
{
    const std::string data = stream("PBrush", bmp(), "DIB", dib());
    const std::string forBoth = "{\\result{\\fs20{\\*\\shppict" + picture("\\pngblip", png()) + "}{\\nonshppict" +
                                picture("\\wmetafile8", wmf(dib())) + "}}}";
    EXPECT_EQ(imageOf(object("PBrush", data, "{\\result " + picture("\\pngblip", png()) + "}")), png());
    EXPECT_EQ(imageOf(object("PBrush", data, forBoth)), png());
}

TEST(RtfObjects, AreElseShownByWhatTheyHandOver)
{
    const std::string asMetafile = stream("Package", "x", "METAFILEPICT", u16(8) + u32(0) + u16(0) + wmf(dib()));
    EXPECT_EQ(QImage::fromData(readRtfObject(object("Package", asMetafile)).image, "bmp").size(), QSize(3, 2));
    const std::string asBitmap = stream("Package", "x", "DIB", dib());
    EXPECT_EQ(QImage::fromData(readRtfObject(object("Package", asBitmap)).image, "bmp").size(), QSize(3, 2));
    const std::string undrawable = object("Package", asBitmap, "{\\result " + picture("\\emfblip", emf()) + "}");
    EXPECT_EQ(QImage::fromData(readRtfObject(undrawable).image, "bmp").size(), QSize(3, 2));
}

TEST(RtfObjects, OfPaintingProgramsAreElseTheirOwnPicture)
{
    EXPECT_EQ(imageOf(object("PBrush", stream("PBrush", bmp()))), bmp());
    EXPECT_EQ(imageOf(object("Paint.Picture", stream("Paint.Picture", bmp(), "METAFILEPICT", "none"))), bmp());
    EXPECT_EQ(imageOf(object("PBrush", stream("PBrush", "BM but no picture"))), "");
}

TEST(RtfObjects, AreNotShownByPicturesOfTooManyPixels)
{
    EXPECT_EQ(imageOf(object("PBrush", stream("PBrush", bmp(8000, 8001)))), "");
    EXPECT_EQ(imageOf(object("PBrush", stream("PBrush", "x", "DIB", dib(8000, 8001)))), "");
}

class ResultTexts : public testing::TestWithParam<Row>
{
};

TEST_P(ResultTexts, AreOneLine)
{
    EXPECT_EQ(textOf(GetParam().source), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(
    Of, ResultTexts,
    testing::Values(Row{"Words", "two words", QStringLiteral("two words")},
                    Row{"WordsInFormats", "\\pard\\plain {\\b\\fs24 two} {\\i words}", QStringLiteral("two words")},
                    Row{"Paragraphs", "one\\par two\\line three\\tab four\\cell five\\row six",
                        QStringLiteral("one two three four five six")},
                    Row{"ManySpaces", "   a \\par  \\~\t b   ", QStringLiteral("a b")},
                    Row{"BracesAndBackslashes", "\\{a\\\\b\\}", QStringLiteral("{a\\b}")},
                    Row{"WesternLetters", "caf\\'e9 \\'80", QStringLiteral("caf\u00e9 \u20ac")},
                    Row{"RawWesternLetters", "caf\xe9", QStringLiteral("caf\u00e9")},
                    Row{"OtherLetters", "\\u1046?\\u-10179?\\u-8704?\\'21", QStringLiteral("\u0416\U0001f600!")},
                    Row{"LettersWithALongFallback", "\\uc2\\u1046\\'41\\'42c\\uc0\\u1046d\\uc1\\u1046\\emdash e",
                        QStringLiteral("\u0416c\u0416d\u0416e")},
                    Row{"AFallbackThatItsGroupEnds", "{\\u1046}a", QStringLiteral("\u0416a")},
                    Row{"NegativeFallbacks", "\\uc-5\\u1046a", QStringLiteral("\u0416a")},
                    Row{"EndlessFallbacks", "\\uc2147483647\\u1046 all of this {}but this",
                        QStringLiteral("\u0416but this")},
                    Row{"Punctuation", "\\ldblquote a\\emdash b\\rdblquote", QStringLiteral("\u201ca\u2014b\u201d")},
                    Row{"WhatIsNoText", "a{\\*\\unknown b}{\\fldinst c}{\\fonttbl d;}{\\*\\objclass e}{\\pict ff}g",
                        QStringLiteral("ag")},
                    Row{"AFieldsResult", "{\\field{\\*\\fldinst SUM}{\\fldrslt 42}}", QStringLiteral("42")},
                    Row{"TextInTwoForms", "{\\upr{a}{\\*\\ud{b}}}", QStringLiteral("a")},
                    Row{"ControlCharacters",
                        "a\x01\x1f"
                        "b",
                        QStringLiteral("ab")},
                    Row{"Nothing", "", QString()},
                    Row{"TwoHundredLetters", std::string(300, 'x'), QString(200, QLatin1Char('x'))},
                    Row{"AsManySpaces", "a" + std::string(1000, ' ') + "b", QStringLiteral("a b")}),
    rowName);

TEST(RtfObjects, TextIsNotCutWithinACharacter)
{
    const QString text = textOf(std::string(199, 'x') + "\\u-10179?\\u-8704?");
    EXPECT_EQ(text, QString(199, QLatin1Char('x')));
}

TEST(RtfObjects, TextIsThatOfTheResultAlone)
{
    EXPECT_EQ(readRtfObject("a{\\object b{\\*\\objdata c}{\\result d}e}f").text, QStringLiteral("d"));
    EXPECT_EQ(readRtfObject("{\\result d}").text, QString());
    EXPECT_EQ(readRtfObject("{{\\object{\\result d}}{\\result e}}").text, QStringLiteral("d"));
}

// Hostile sources.

TEST(RtfObjectSources, MayBeNoGroupAtAll)
{
    for (const char *source :
         {"", "}", "{", "\\", "}}}{\\pict}", "\\pict", "text", "{\\*}", "{\\*\\pict{}}", "\\object"}) {
        const RtfObject read = readRtfObject(source);
        EXPECT_TRUE(read.image.isEmpty());
        EXPECT_EQ(read.size, read.isPicture ? QSize(480, 480) : QSize(1440, 960));
    }
    EXPECT_EQ(imageOf("\\pict\\pngblip " + hex(png())), png());
}

TEST(RtfObjectSources, MayNestAsDeepAsTheyLike)
{
    constexpr std::size_t depth = 300000;
    std::string objects;
    for (std::size_t level = 0; level < depth; ++level) {
        objects += "{\\object{\\result ";
    }
    EXPECT_EQ(readRtfObject(objects + "a").text, QStringLiteral("a"));
    const std::string groups(depth, '{');
    const std::string ends(depth, '}');
    EXPECT_EQ(imageOf("{\\pict" + groups + ends + hex(png()) + groups + "00"), png());
    EXPECT_EQ(imageOf(groups + "\\*\\shppict" + groups + picture("", png())), png());
}

TEST(RtfObjectSources, MayEndAnywhere)
{
    const std::string whole =
        "{\\object\\objemb\\objw500{\\*\\objclass Package}{\\*\\objdata " +
        hex(stream("Package", package("a.txt", "the file"), "METAFILEPICT", std::string(8, '\0') + wmf(dib()))) +
        "}{\\result{\\u1046?\\'e9}{\\*\\shppict" + picture("\\pngblip\\picwgoal900\\pichgoal800", png()) + "}}}";
    for (std::size_t size = 0; size <= whole.size(); ++size) {
        const std::string cut = whole.substr(0, size);
        const RtfObject read = readRtfObject(cut);
        EXPECT_EQ(rtfObjectSize(cut), read.size);
        EXPECT_TRUE(QByteArrayLiteral("the file").startsWith(read.native) || read.name.isEmpty());
    }
    EXPECT_EQ(readRtfObject(whole).native.toStdString(), "the file");
}

TEST(RtfObjectSources, HaveManyPicturesOfWhichTheFirstCounts)
{
    std::string source = "{" + picture("\\pngblip\\picwgoal300\\pichgoal200", png());
    for (int count = 0; count < 50000; ++count) {
        source += "{\\pict\\picwgoal900}";
    }
    EXPECT_EQ(readRtfObject(source).image.toStdString(), png());
    EXPECT_EQ(rtfObjectSize(source), QSize(300, 200));
}

// Writing.

TEST(PictureSource, IsAGroupWithLinesOfDigits)
{
    const QByteArray file = QByteArray("\x89PNG\r\n\x1a\n", 8) + QByteArray(40, '\xab');
    const std::string digits = file.toHex().toStdString();
    EXPECT_EQ(pictureSource(file, {30, 20}, {450, 300}).toStdString(),
              "{\\pict\\pngblip\\picw30\\pich20\\picwgoal450\\pichgoal300\r\n" + digits.substr(0, 78) + "\r\n" +
                  digits.substr(78) + "\r\n}");
}

TEST(PictureSource, EndsAFullLineOnce)
{
    EXPECT_EQ(pictureSource(QByteArray(39, '\x01'), {1, 1}, {15, 15}).toStdString(),
              "{\\pict\\pngblip\\picw1\\pich1\\picwgoal15\\pichgoal15\r\n" + hex(std::string(39, '\x01')) + "\r\n}");
}

TEST(PictureSource, NamesAJpegSo)
{
    const QByteArray source = pictureSource(QByteArray::fromStdString(jpeg()), {3, 2}, {45, 30});
    EXPECT_TRUE(source.startsWith("{\\pict\\jpegblip\\picw3\\pich2\\picwgoal45\\pichgoal30\r\n"));
    EXPECT_EQ(imageOf(source.toStdString()), jpeg());
}

TEST(PictureSource, ReadsBackAsItWas)
{
    const RtfObject read = readRtfObject(viewOf(pictureSource(QByteArray::fromStdString(png()), {3, 2}, {450, 300})));
    EXPECT_TRUE(read.isPicture);
    EXPECT_EQ(read.image.toStdString(), png());
    EXPECT_EQ(read.size, QSize(450, 300));
}

TEST(ObjectSource, IsAGroupWithItsPicture)
{
    const QByteArray icon = QByteArray::fromStdString(png());
    EXPECT_EQ(objectSource(QStringLiteral("Package"), "stream", icon, {3, 2}, {450, 300}).toStdString(),
              "{\\object\\objemb\\objw450\\objh300{\\*\\objclass Package}{\\*\\objdata\r\n" + hex("stream") +
                  "\r\n}{\\result" + pictureSource(icon, {3, 2}, {450, 300}).toStdString() + "}}");
}

TEST(ObjectSource, ReadsBackAsItWas)
{
    const QByteArray file = QByteArray(1000, '\xfe');
    const QString name = QStringLiteral("\u666e\u6797.zip");
    const QByteArray source = objectSource(QStringLiteral("Package"), writeOlePackage(name, file),
                                           QByteArray::fromStdString(png()), {3, 2}, {450, 300});
    const RtfObject read = readRtfObject(viewOf(source));
    EXPECT_FALSE(read.isPicture);
    EXPECT_EQ(read.kind, QStringLiteral("Package"));
    EXPECT_EQ(read.name, name);
    EXPECT_EQ(read.native, file);
    EXPECT_EQ(read.image.toStdString(), png());
    EXPECT_EQ(read.size, QSize(450, 300));
}

TEST(ObjectSource, StaysAGroupWhateverTheClassIsCalled)
{
    const QString className = QStringLiteral("a}b{c\\d\u00e9");
    const QByteArray source = objectSource(className, "stream", QByteArray::fromStdString(png()), {3, 2}, {450, 300});
    EXPECT_EQ(readRtfObject(viewOf(source)).kind, className);
    EXPECT_EQ(source.count('{'), source.count('}'));
    EXPECT_TRUE(
        std::all_of(source.begin(), source.end(), [](char byte) { return static_cast<signed char>(byte) > 0; }));
}

} // namespace
