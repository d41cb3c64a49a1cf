#include "platform/ContrastRatio.h"
#include "platform/ObjectPainter.h"
#include "platform/PaperPalette.h"
#include "platform/rtf/OleObject.h"
#include "platform/rtf/RtfObject.h"
#include "platform/rtf/RtfObjectFormat.h"

#include <QAbstractTextDocumentLayout>
#include <QApplication>
#include <QBuffer>
#include <QImage>
#include <QPainter>
#include <QScrollBar>
#include <QTextBlock>
#include <QTextEdit>
#include <QTextLayout>
#include <QtEndian>

#include <functional>
#include <gtest/gtest.h>
#include <string>

namespace {

constexpr int twipsPerUnit = 15;
constexpr int margin = 4; ///< of a document, where its first object stands
const QColor paper(0xff, 0xff, 0xcc);

QByteArray fileOf(const QImage &image, const char *format)
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    EXPECT_TRUE(image.save(&buffer, format));
    return buffer.data();
}

QImage plain(const QSize &pixels, const QColor &color)
{
    QImage image(pixels, QImage::Format_ARGB32);
    image.fill(color);
    return image;
}

/// Every pixel another colour than its neighbours.
QImage chequered(const QSize &pixels)
{
    QImage image(pixels, QImage::Format_RGB32);
    for (int y = 0; y < pixels.height(); ++y) {
        for (int x = 0; x < pixels.width(); ++x) {
            image.setPixelColor(x, y, (x + y) % 2 == 0 ? QColor(Qt::blue) : QColor(x % 256, 255, y % 256));
        }
    }
    return image;
}

QByteArray shownIn(const QByteArray &file, const QSize &units)
{
    return pictureSource(file, {1, 1}, units * twipsPerUnit);
}

QByteArray png(const QImage &image, const QSize &units)
{
    return shownIn(fileOf(image, "png"), units);
}

/// A picture that no reader of picture files knows.
QByteArray undrawable(const QSize &units, const QByteArray &word = "wmetafile8")
{
    const QSize twips = units * twipsPerUnit;
    return "{\\pict\\" + word + "\\picwgoal" + QByteArray::number(twips.width()) + "\\pichgoal" +
           QByteArray::number(twips.height()) + " 00112233}";
}

QByteArray fileObject(const QString &name, const QSize &units)
{
    return objectSource(QStringLiteral("Package"), writeOlePackage(name, "contents"), {}, {1, 1}, units * twipsPerUnit);
}

class Box : public QTextEdit
{
public:
    explicit Box(const QSize &size = {300, 200})
        : m_painter(new ObjectPainter(*this))
    {
        setFrameStyle(QFrame::NoFrame);
        setPalette(paperPalette(paper));
        resize(size);
        show();
    }

    void insert(const QByteArray &source)
    {
        QTextCursor cursor = textCursor();
        insertObject(cursor, source);
        setTextCursor(cursor);
    }

    /// What stands in the box, on a screen with this many device pixels to a pixel.
    [[nodiscard]] QImage picture(double scale = 1)
    {
        const QSize size = viewport()->size();
        QImage image((size.toSizeF() * scale).toSize(), QImage::Format_ARGB32);
        image.setDevicePixelRatio(scale);
        image.fill(Qt::magenta);
        viewport()->render(&image);
        image.setDevicePixelRatio(1);
        return image;
    }

    /// Of the first line, which holds nothing but an object.
    [[nodiscard]] QSizeF objectSize()
    {
        document()->documentLayout()->documentSize();
        const QTextLine line = document()->firstBlock().layout()->lineAt(0);
        return {line.naturalTextWidth(), line.ascent()};
    }

    [[nodiscard]] qsizetype bytesKept() const { return m_painter->bytesKept(); }
    [[nodiscard]] QColor base() const { return palette().color(QPalette::Base); }

private:
    ObjectPainter *m_painter;
};

/// Pixels of \p area that are not of colour \p ground.
int countOthers(const QImage &image, const QRect &area, const QColor &ground)
{
    int others = 0;
    for (int y = area.top(); y <= area.bottom(); ++y) {
        for (int x = area.left(); x <= area.right(); ++x) {
            others += image.pixelColor(x, y) != ground ? 1 : 0;
        }
    }
    return others;
}

/// The smallest area with all that is not of the box's own colour.
QRect painted(const QImage &image, const QColor &ground)
{
    QRect area;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (image.pixelColor(x, y) != ground) {
                area |= QRect(x, y, 1, 1);
            }
        }
    }
    return area;
}

TEST(ObjectPainter, APictureIsDrawnInTheSizeThatItHasInTheText)
{
    Box box;
    box.insert(png(plain({7, 5}, Qt::red), {40, 20}));
    box.setTextCursor(QTextCursor(box.document()));
    const QImage image = box.picture();
    const QRect place(margin, margin, 40, 20);
    EXPECT_EQ(countOthers(image, place, Qt::red), 0);
    EXPECT_EQ(painted(image, box.base()), place);
}

TEST(ObjectPainter, PngJpegAndBitmapAreDrawn)
{
    for (const char *format : {"png", "jpg", "bmp"}) {
        Box box;
        box.insert(shownIn(fileOf(plain({40, 20}, Qt::blue).convertToFormat(QImage::Format_RGB32), format), {40, 20}));
        const QColor color = box.picture().pixelColor(margin + 20, margin + 10);
        EXPECT_GT(color.blue(), 250) << format;
        EXPECT_LT(color.red(), 5) << format;
    }
}

TEST(ObjectPainter, ABitmapWhoseRowsRunFromTheTopIsDrawn)
{
    QByteArray file = fileOf(plain({4, 2}, Qt::blue).convertToFormat(QImage::Format_RGB32), "bmp");
    qToLittleEndian<qint32>(-2, file.data() + 22);
    Box box;
    box.insert(shownIn(file, {40, 20}));
    EXPECT_EQ(box.picture().pixelColor(margin + 20, margin + 10), QColor(Qt::blue));
}

/// Between device pixels at 125 and 150 %.
constexpr int oddMargin = 3;

class Scales : public testing::TestWithParam<double>
{
};

TEST_P(Scales, APictureOfAsManyPixelsAsTheScreenKeepsEachOfThem)
{
    const QSize units(41, 21);
    const QImage original = chequered((units.toSizeF() * GetParam()).toSize());
    Box box;
    box.document()->setDocumentMargin(oddMargin);
    box.insert(png(original, units));
    const QImage image = box.picture(GetParam());
    const int start = qRound(oddMargin * GetParam());
    EXPECT_EQ(image.copy(QRect({start, start}, original.size())).convertToFormat(QImage::Format_RGB32), original);
}

TEST_P(Scales, AFramesEdgesAreCrispAndExactlyWhereTheObjectIs)
{
    Box box;
    box.document()->setDocumentMargin(oddMargin);
    box.insert(undrawable({81, 61}));
    box.setTextCursor(QTextCursor(box.document()));
    const QImage image = box.picture(GetParam());
    const int start = qRound(oddMargin * GetParam());
    const QRect place(QPoint(start, start), (QSizeF(81, 61) * GetParam()).toSize());
    EXPECT_EQ(painted(image, box.base()), place);

    const QColor edge = image.pixelColor(place.topLeft());
    EXPECT_GE(contrastRatio(edge, box.base()), 3);
    for (const QRect &side :
         {QRect(place.left(), place.top(), place.width(), 1), QRect(place.left(), place.bottom(), place.width(), 1),
          QRect(place.left(), place.top(), 1, place.height()), QRect(place.right(), place.top(), 1, place.height())}) {
        EXPECT_EQ(countOthers(image, side, edge), 0);
    }
    const QColor fill = image.pixelColor(place.topLeft() + QPoint(2, 2) * GetParam());
    EXPECT_NE(fill, box.base());
    EXPECT_GE(contrastRatio(fill, box.palette().color(QPalette::Text)), 4.5);
}

INSTANTIATE_TEST_SUITE_P(ObjectPainter, Scales, testing::Values(1.0, 1.25, 1.5, 2.0),
                         [](const auto &row) { return "At" + std::to_string(qRound(row.param * 100)) + "Percent"; });

TEST(ObjectPainter, ATransparentPictureShowsThePaper)
{
    Box box;
    box.insert(png(plain({40, 20}, Qt::transparent), {40, 20}));
    EXPECT_EQ(box.picture().pixelColor(margin + 20, margin + 10), box.base());
}

TEST(ObjectPainter, APictureWiderThanTheBoxIsScaledDownInProportion)
{
    Box box({300, 400});
    box.insert(png(plain({100, 50}, Qt::red), {1000, 500}));
    EXPECT_EQ(box.objectSize(), QSizeF(292, 146));
    EXPECT_EQ(countOthers(box.picture(), QRect(margin, margin, 292, 146), Qt::red), 0);
}

TEST(ObjectPainter, AResizedBoxScalesItsPicturesAgain)
{
    Box box({300, 800});
    box.insert(png(plain({100, 50}, Qt::red), {1000, 500}));
    EXPECT_EQ(box.objectSize(), QSizeF(292, 146));
    box.resize(200, 800);
    EXPECT_EQ(box.objectSize(), QSizeF(192, 96));
    box.resize(1200, 800);
    EXPECT_EQ(box.objectSize(), QSizeF(1000, 500)) << "never larger than in the text";
}

TEST(ObjectPainter, APictureThatFitsKeepsItsSizeInABoxOfAnyWidth)
{
    Box box({300, 200});
    box.insert(png(plain({10, 10}, Qt::red), {100, 50}));
    EXPECT_EQ(box.objectSize(), QSizeF(100, 50));
    box.resize(500, 200);
    EXPECT_EQ(box.objectSize(), QSizeF(100, 50));
}

TEST(ObjectPainter, TheScrollBarOfAHighPictureTakesItsWidthFromThePicture)
{
    Box box({300, 100});
    box.insert(png(plain({10, 10}, Qt::red), {1000, 1000}));
    ASSERT_TRUE(box.verticalScrollBar()->isVisible());
    EXPECT_EQ(box.objectSize().width(), box.viewport()->width() - 2 * margin);
    EXPECT_FALSE(box.horizontalScrollBar()->isVisible());
}

TEST(ObjectPainter, APictureInAnIndentedParagraphOrAListStaysOnThePage)
{
    Box box({300, 400});
    QTextBlockFormat indented;
    indented.setLeftMargin(60);
    indented.setRightMargin(30);
    indented.setTextIndent(10);
    box.textCursor().setBlockFormat(indented);
    box.insert(png(plain({10, 10}, Qt::red), {1000, 500}));
    EXPECT_EQ(box.objectSize(), QSizeF(192, 96));

    box.textCursor().setBlockFormat({});
    EXPECT_EQ(box.objectSize(), QSizeF(292, 146));
    box.textCursor().createList(QTextListFormat::ListDisc);
    EXPECT_EQ(box.objectSize().width(), 292 - box.document()->indentWidth());
    EXPECT_FALSE(box.horizontalScrollBar()->isVisible());
}

TEST(ObjectPainter, NothingIsDecodedBeforeItIsPainted)
{
    Box box;
    box.insert(png(plain({100, 100}, Qt::red), {100, 100}));
    EXPECT_EQ(box.objectSize(), QSizeF(100, 100));
    EXPECT_EQ(box.bytesKept(), 0);
    (void)box.picture();
    EXPECT_GE(box.bytesKept(), qsizetype{100} * 100 * 4);
}

TEST(ObjectPainter, APictureIsKeptInThePixelsThatItIsShownIn)
{
    const QByteArray source = png(plain({2000, 2000}, Qt::red), {50, 50});
    Box box;
    box.insert(source);
    (void)box.picture();
    EXPECT_EQ(box.bytesKept(), qsizetype{50} * 50 * 4 + source.size());
    (void)box.picture();
    EXPECT_EQ(box.bytesKept(), qsizetype{50} * 50 * 4 + source.size()) << "painted again from what is kept";
}

TEST(ObjectPainter, ManyPicturesStayWithinTheBudget)
{
    Box box({420, 420});
    box.setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    constexpr int pictures = 32;
    for (int i = 0; i < pictures; ++i) {
        box.insert(png(plain({800, 800}, QColor(i * 8, 255, 0)), {400, 400}));
        box.textCursor().insertBlock();
    }
    for (int i = 0; i < pictures; ++i) {
        box.verticalScrollBar()->setValue(qRound(box.document()->findBlockByNumber(i).layout()->position().y()));
        const QImage image = box.picture(2);
        ASSERT_EQ(image.pixelColor(200, 200), QColor(i * 8, 255, 0));
        ASSERT_LE(box.bytesKept(), ObjectPainter::budget);
    }
    EXPECT_GT(box.bytesKept(), ObjectPainter::budget / 2);
    box.verticalScrollBar()->setValue(0);
    EXPECT_EQ(box.picture(2).pixelColor(200, 200), QColor(0, 255, 0)) << "decoded again";
}

TEST(ObjectPainter, APictureNeverTakesMoreThanHalfOfTheBudget)
{
    Box box({3200, 400});
    const QByteArray source = png(plain({3000, 3000}, Qt::red), {2000, 2000});
    box.insert(source);
    const QImage image = box.picture(3);
    EXPECT_EQ(image.pixelColor(image.rect().center()), QColor(Qt::red));
    EXPECT_GT(box.bytesKept(), ObjectPainter::budget / 3);
    EXPECT_LE(box.bytesKept(), ObjectPainter::budget / 2 + source.size());
}

TEST(ObjectPainter, ASelectedPictureIsTinted)
{
    Box box;
    box.insert(png(plain({40, 20}, Qt::red), {40, 20}));
    const QPoint middle(margin + 20, margin + 10);
    EXPECT_EQ(box.picture().pixelColor(middle), QColor(Qt::red));
    box.selectAll();
    const QColor tinted = box.picture().pixelColor(middle);
    EXPECT_NE(tinted, QColor(Qt::red));
    EXPECT_GT(tinted.blue(), 0x40);
}

TEST(ObjectPainter, SelectedFramesAndTransparentPicturesAreTintedAndCanStillBeRead)
{
    for (const QByteArray &source : {undrawable({80, 60}), png(plain({80, 60}, Qt::transparent), {80, 60})}) {
        Box box;
        box.insert(source);
        const QPoint inside(margin + 3, margin + 3);
        const QColor before = box.picture().pixelColor(inside);
        box.selectAll();
        const QColor tinted = box.picture().pixelColor(inside);
        EXPECT_GT(contrastRatio(before, tinted), 1.5);
        EXPECT_GT(contrastRatio(Qt::black, tinted), 4.5) << "black ink on it";
    }
}

TEST(ObjectPainter, ANewTextInTheBoxIsDrawnToo)
{
    Box box;
    box.insert(png(plain({40, 20}, Qt::red), {40, 20}));
    (void)box.picture();
    box.setPlainText(QStringLiteral("New"));
    box.selectAll();
    box.insert(png(plain({40, 20}, Qt::green), {40, 20}));
    EXPECT_EQ(box.picture().pixelColor(margin + 20, margin + 10), QColor(Qt::green));
    box.undo();
    EXPECT_NE(box.picture().pixelColor(margin + 20, margin + 10), QColor(Qt::green));
    box.redo();
    EXPECT_EQ(box.picture().pixelColor(margin + 20, margin + 10), QColor(Qt::green));
}

/// The words that a frame of this size shows, as pixels.
QImage frameOf(const QByteArray &source)
{
    Box box;
    box.insert(source);
    return box.picture().copy(margin, margin, 160, 120);
}

TEST(ObjectPainter, FramesTellWhatTheyStandFor)
{
    const QSize size(160, 120);
    const QImage wmf = frameOf(undrawable(size));
    EXPECT_NE(wmf, frameOf(undrawable(size, "emfblip")));
    const QImage report = frameOf(fileObject(QStringLiteral("report.pdf"), size));
    EXPECT_NE(report, wmf);
    EXPECT_NE(report, frameOf(fileObject(QStringLiteral("letter.doc"), size)));
    EXPECT_EQ(report, frameOf(fileObject(QStringLiteral("report.pdf"), size)));
}

TEST(ObjectPainter, AnObjectWithAPictureShowsThePicture)
{
    Box box;
    box.insert(objectSource(QStringLiteral("Package"), writeOlePackage(QStringLiteral("a.txt"), "text"),
                            fileOf(plain({32, 32}, Qt::red), "png"), {32, 32}, QSize(32, 32) * twipsPerUnit));
    EXPECT_EQ(countOthers(box.picture(), QRect(margin, margin, 32, 32), Qt::red), 0);
}

struct Damage
{
    std::string name;
    std::function<QByteArray()> file;
};

QByteArray bitmapThatClaims(const QSize &pixels)
{
    QByteArray file = fileOf(plain({4, 4}, Qt::red).convertToFormat(QImage::Format_RGB32), "bmp");
    qToLittleEndian<qint32>(pixels.width(), file.data() + 18);
    qToLittleEndian<qint32>(pixels.height(), file.data() + 22);
    return file;
}

const Damage damages[] = {
    {"NoData", [] { return QByteArray(); }},
    {"Noise", [] { return QByteArray(500, 'x'); }},
    {"APngThatIsCutShort",
     [] {
         return fileOf(chequered({50, 50}), "png").left(200);
     }},
    {"APngsHeadAlone",
     [] {
         return fileOf(chequered({50, 50}), "png").left(33);
     }},
    {"ABitmapOfTooManyPixels",
     [] {
         return bitmapThatClaims({8001, 8000});
     }},
    {"ABitmapOfHugeSides",
     [] {
         return bitmapThatClaims({0x7fffffff, 0x7fffffff});
     }},
    {"ABitmapOfNegativeSides",
     [] {
         return bitmapThatClaims({-5, -0x7fffffff - 1});
     }},
};

class DamagedPictures : public testing::TestWithParam<Damage>
{
};

TEST_P(DamagedPictures, AreAFrame)
{
    Box box;
    box.insert(shownIn(GetParam().file(), {160, 120}));
    box.setTextCursor(QTextCursor(box.document()));
    const QImage image = box.picture();
    EXPECT_EQ(painted(image, box.base()), QRect(margin, margin, 160, 120));
    EXPECT_GT(countOthers(image, QRect(margin + 8, margin + 8, 144, 104), image.pixelColor(margin + 2, margin + 2)), 50)
        << "no words in the frame";
    EXPECT_LT(box.bytesKept(), 100'000);
}

INSTANTIATE_TEST_SUITE_P(ObjectPainter, DamagedPictures, testing::ValuesIn(damages),
                         [](const auto &row) { return row.param.name; });

struct SmallFrame
{
    QSize units;
    bool isFramed;
    bool isWritten; ///< words or a glyph
};

TEST(ObjectPainter, SmallFramesShowWhatThereIsRoomFor)
{
    for (const SmallFrame &frame :
         {SmallFrame{{3, 3}, false, false}, SmallFrame{{100, 2}, false, false}, SmallFrame{{8, 8}, true, false},
          SmallFrame{{20, 20}, true, false}, SmallFrame{{24, 60}, true, false}, SmallFrame{{32, 32}, true, true},
          SmallFrame{{100, 24}, true, true}}) {
        Box box;
        box.insert(undrawable(frame.units));
        box.setTextCursor(QTextCursor(box.document()));
        const QImage image = box.picture();
        const QRect place(QPoint(margin, margin), frame.units);
        const std::string size = std::to_string(frame.units.width()) + " x " + std::to_string(frame.units.height());
        EXPECT_EQ(painted(image, box.base()), frame.isFramed ? place : QRect()) << size;
        if (frame.isFramed) {
            const QColor fill = image.pixelColor(place.topLeft() + QPoint(1, 1));
            EXPECT_EQ(countOthers(image, place.adjusted(1, 1, -1, -1), fill) > 10, frame.isWritten) << size;
        }
    }
}

TEST(ObjectPainter, WordsStayInsideTheirFrame)
{
    Box box;
    box.insert(fileObject(QString(70, QLatin1Char('W')) + QStringLiteral(".pdf"), {90, 60}));
    box.setTextCursor(QTextCursor(box.document()));
    const QImage image = box.picture();
    EXPECT_EQ(painted(image, box.base()), QRect(margin, margin, 90, 60));
    const QColor fill = image.pixelColor(margin + 1, margin + 1);
    EXPECT_EQ(countOthers(image, QRect(margin + 1, margin + 1, 2, 58), fill), 0);
    EXPECT_EQ(countOthers(image, QRect(margin + 87, margin + 1, 2, 58), fill), 0);
}

} // namespace
