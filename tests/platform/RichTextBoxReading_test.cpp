#include "platform/LongWork.h"
#include "platform/RichTextBox.h"
#include "platform/rtf/OleObject.h"
#include "platform/rtf/RtfObject.h"
#include "tests/support/Pictures.h"
#include "tests/support/Windows.h"

#include <QAbstractTextDocumentLayout>
#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>
#include <QPaintDevice>
#include <QScrollBar>
#include <QTest>
#include <QTextBlock>
#include <QTextDocument>
#include <QTextLayout>
#include <QTransform>
#include <QWheelEvent>
#include <QtMath>

#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <utility>

namespace {

constexpr double readable = 18;
constexpr double factor = 1.8; ///< of writing of 10 points; dots per inch are whole, so that it is a little more
constexpr double near = 0.01;  ///< part of a length

std::string ofSize(int points, const std::string &text)
{
    return "{\\rtf1\\ansi\\fs" + std::to_string(2 * points) + " " + text + "\\par}";
}

/// A locked box, as wide as several words, that shows a text at its own size until it is told otherwise.
class Reading : public testing::Test
{
protected:
    Reading()
    {
        for (RichTextBox *box : {&m_plain, &m_large}) {
            box->setFrameShape(QFrame::NoFrame);
            box->setLocked(true);
            box->resize(700, 400);
            box->show();
        }
        m_large.setLeastTextSize(readable);
    }

    void show(const std::string &rtf)
    {
        m_plain.setRtf(rtf);
        m_large.setRtf(rtf);
    }

    static const QTextDocument &documentOf(const RichTextBox &box) { return *box.document(); }

    /// Where the character at \p position begins, and the height of its line.
    static QRectF placeOf(const RichTextBox &box, int position)
    {
        const QTextBlock block = documentOf(box).findBlock(position);
        static_cast<void>(documentOf(box).size()); // all is laid out
        const QTextLine line = block.layout()->lineForTextPosition(position - block.position());
        const QPointF origin = block.layout()->position();
        return {origin.x() + line.cursorToX(position - block.position()), origin.y() + line.y(), 0, line.height()};
    }

    /// How many times larger than in the box that magnifies nothing.
    template <typename Measure>
    double ratio(Measure measure) const
    {
        return measure(m_large) / measure(m_plain);
    }

    /// The line with the character at \p position is \p times as high as in the other box. A font has whole pixels
    /// above and below its base line.
    void expectLine(int position, double times) const
    {
        const double large = placeOf(m_large, position).height();
        EXPECT_NEAR(large, times * placeOf(m_plain, position).height(), 1 + times) << position;
    }

    static double textLeft(const RichTextBox &box, int position)
    {
        return placeOf(box, position).left() - documentOf(box).findBlock(position).layout()->position().x();
    }

    RichTextBox m_plain;
    RichTextBox m_large;
};

TEST_F(Reading, SmallWritingIsAsLargeAsAskedFor)
{
    show(ofSize(10, "two\\par lines"));
    RichTextBox asTyped;
    asTyped.show();
    asTyped.setRtf(ofSize(18, "two\\par lines"));
    EXPECT_NEAR(placeOf(m_large, 0).height(), placeOf(asTyped, 0).height(), 1);
    EXPECT_GE(placeOf(m_large, 0).height(), placeOf(asTyped, 0).height());
    expectLine(0, factor);
    EXPECT_GT(documentOf(m_large).size().height(), 1.6 * documentOf(m_plain).size().height());
    EXPECT_GT(m_large.cursorRect().height(), 1.6 * m_plain.cursorRect().height());
}

TEST_F(Reading, WritingThatIsLargeEnoughIsShownAsItIs)
{
    for (const int points : {18, 19, 40}) {
        show(ofSize(points, "large \\fs16 and a small word\\fs80  and a word of many letters"));
        if (points == 18) {
            show(ofSize(points, "large"));
        }
        EXPECT_EQ(documentOf(m_large).size(), documentOf(m_plain).size()) << points;
        EXPECT_EQ(m_large.viewport()->grab().toImage(), m_plain.viewport()->grab().toImage()) << points;
    }
}

TEST_F(Reading, TheSizeOfMostLettersDecidesAndTheOthersKeepTheirProportion)
{
    show("{\\rtf1\\fs48 Heading\\par\\fs20 a text of many more letters\\par\\fs12 a foot note\\par}");
    for (const int position : {0, 10, 36}) {
        expectLine(position, factor);
    }
    show("{\\rtf1\\fs48 A long heading of many letters\\par\\fs20 short\\par}");
    EXPECT_EQ(placeOf(m_large, 0), placeOf(m_plain, 0));
}

TEST_F(Reading, BlanksAreNoLetters)
{
    show("{\\rtf1\\fs20 ab\\fs80         \\par}");
    expectLine(0, factor);
}

TEST_F(Reading, OfTwoSizesWithAsManyLettersTheSmallerCounts)
{
    show("{\\rtf1\\fs48 abc\\fs20 abc\\par}");
    expectLine(0, factor);
}

TEST_F(Reading, TextWithoutASizeCountsAsItIsShown)
{
    m_large.resetText(QStringLiteral("plain text"));
    m_plain.resetText(QStringLiteral("plain text"));
    expectLine(0, factor);
    show("{\\rtf1 without a size\\par}");
    expectLine(0, factor);
    show("{\\rtf1\\plain of the size that RTF has without a word\\par}");
    expectLine(0, 1.5);
    show("no RTF at all");
    expectLine(0, factor);
}

TEST_F(Reading, TextWithoutLettersIsShownAsItIs)
{
    const QByteArray picture = pictureSource(pngFile({40, 20}), {40, 20}, {600, 300});
    for (const std::string &rtf : {std::string(), std::string("{\\rtf1\\fs10  \\par\\par}"),
                                   "{\\rtf1\\fs10 " + picture.toStdString() + "\\par}"}) {
        m_large.setRtf(ofSize(10, "small"));
        show(rtf);
        EXPECT_EQ(documentOf(m_large).size(), documentOf(m_plain).size()) << rtf.substr(0, 30);
    }
}

TEST_F(Reading, EveryTextIsMagnifiedByWhatItNeeds)
{
    for (const auto &[points, times] : {std::pair(10, 1.8), {9, 2.0}, {30, 1.0}, {10, 1.8}, {6, 3.0}}) {
        show(ofSize(points, "\\li600 text with a margin"));
        expectLine(0, times);
        EXPECT_NEAR(ratio([](const RichTextBox &box) { return textLeft(box, 0); }), times, near * times) << points;
    }
}

TEST_F(Reading, ItIsTurnedOnAndOffForATextThatIsShown)
{
    const std::string rtf = ofSize(10, "\\li600\\fi-300\\ri900 some text");
    show(rtf);
    const QImage large = m_large.viewport()->grab().toImage();
    m_large.setLeastTextSize(0);
    EXPECT_EQ(m_large.viewport()->grab().toImage(), m_plain.viewport()->grab().toImage());
    EXPECT_EQ(m_large.rtf(), rtf);
    m_large.setLeastTextSize(readable);
    EXPECT_EQ(m_large.viewport()->grab().toImage(), large);
    EXPECT_EQ(m_large.rtf(), rtf);
    EXPECT_FALSE(m_large.document()->isModified());
}

TEST_F(Reading, MarginsAndTabStopsAreMagnifiedToo)
{
    show(ofSize(10,
                "\\li600\\ri1500 margin\\par\\pard\\li900\\fi-450 hanging\\par\\pard\\tx1500\\tx3000 a\\tab b\\tab c"
                "\\par\\pard\\sb600 below\\par\\pard\\sl-900 exact\\par next"));
    const double times = ratio([](const RichTextBox &box) { return textLeft(box, 0); });
    EXPECT_NEAR(times, factor, near * factor);
    const int tabs = 15;
    for (const int position : {7, tabs + 2, tabs + 4}) {
        EXPECT_NEAR(ratio([position](const RichTextBox &box) { return textLeft(box, position); }), times, near)
            << position;
    }
    const auto rightMargin = [](const RichTextBox &box) {
        const double page = documentOf(box).size().width();
        const QTextLayout &layout = *documentOf(box).firstBlock().layout();
        return page - 2 * layout.position().x() - layout.lineAt(0).x() - layout.lineAt(0).width();
    };
    EXPECT_NEAR(ratio(rightMargin), times, near);
    const auto above = [](const RichTextBox &box) { return placeOf(box, 21).top() - placeOf(box, 20).bottom(); };
    EXPECT_NEAR(ratio(above), times, 0.05);
    const auto exact = [](const RichTextBox &box) { return placeOf(box, 33).top() - placeOf(box, 26).top(); };
    EXPECT_NEAR(ratio(exact), times, 0.05);
}

TEST_F(Reading, TheCellsOfATableKeepTheirPlaces)
{
    show(ofSize(10, "\\trowd\\cellx2000\\cellx4000\\pard\\intbl Country\\cell Capital\\cell\\row"
                    "\\trowd\\cellx2000\\cellx4000\\pard\\intbl France\\cell Paris\\cell\\row\\pard after"));
    const auto placeOfWord = [this](const char *word) {
        return static_cast<int>(m_large.plainText().indexOf(QLatin1String(word)));
    };
    const int first = placeOfWord("Capital");
    const int second = placeOfWord("Paris");
    ASSERT_GT(second, first);
    EXPECT_DOUBLE_EQ(textLeft(m_large, first), textLeft(m_large, second));
    EXPECT_NEAR(ratio([first](const RichTextBox &box) { return textLeft(box, first); }), factor, near * factor);
}

TEST_F(Reading, RightToLeftWritingKeepsItsMarginOnTheRight)
{
    show(ofSize(10, "\\rtlpar\\qr\\ri600\\u1488?\\u1489?\\u1490?"));
    const auto rightMargin = [](const RichTextBox &box) {
        const QTextLine line = documentOf(box).firstBlock().layout()->lineAt(0);
        return documentOf(box).size().width() - 2 * documentOf(box).firstBlock().layout()->position().x() -
               line.naturalTextRect().right();
    };
    EXPECT_NEAR(ratio(rightMargin), factor, 0.05);
    expectLine(0, factor);
}

const std::string allKinds =
    "{\\rtf1\\ansi{\\fonttbl{\\f0 Comic Sans MS;}}\\f0\\fs20 plain \\b bold\\b0\\fs32  larger\\fs20\\par"
    "\\pard\\li600\\fi-300\\ri450\\sb120\\sa60\\sl-400\\tx1500 margins\\tab tab\\par"
    "\\pard\\li400\\fi-200{\\*\\pn\\pnlvlblt{\\pntxtb\\'b7}}bullet\\par"
    "\\pard\\li700\\fi-200{\\*\\pn\\pnlvlbody\\pndec\\pnstart3{\\pntxta.}}third\\par fourth\\par"
    "\\pard\\rtlpar\\qr\\ri300\\li100 right\\par}";

TEST_F(Reading, ContentsAndCopiesKeepTheirFormats)
{
    show(allKinds);
    EXPECT_EQ(m_large.rtf(), allKinds);
    EXPECT_EQ(m_large.textRtf(), m_plain.textRtf());
    EXPECT_EQ(m_large.plainText(), m_plain.plainText());
    EXPECT_FALSE(m_large.document()->isModified());
    m_large.selectAll();
    m_plain.selectAll();
    EXPECT_EQ(m_large.selRtf(), m_plain.selRtf());
    EXPECT_EQ(m_large.selFontSize(), m_plain.selFontSize());

    QClipboard &clipboard = *QGuiApplication::clipboard();
    for (const QString &kind :
         {QStringLiteral("text/rtf"), QStringLiteral("text/html"), QStringLiteral("text/plain")}) {
        m_plain.copy();
        const QByteArray plain = clipboard.mimeData()->data(kind);
        m_large.copy();
        EXPECT_EQ(clipboard.mimeData()->data(kind), plain) << kind.toStdString();
        EXPECT_FALSE(plain.isEmpty()) << kind.toStdString();
    }
}

TEST_F(Reading, WhatIsPutInIsShownAndWrittenInTheTextsOwnSizes)
{
    show(ofSize(10, "before"));
    for (RichTextBox *box : {&m_plain, &m_large}) {
        box->setLocked(false);
        box->moveCursor(QTextCursor::End);
        box->setSelRtf(QString::fromStdString(allKinds));
        box->moveCursor(QTextCursor::Start);
        box->setSelIndent(700);
        EXPECT_EQ(box->selIndent(), 700);
    }
    EXPECT_EQ(m_large.rtf(), m_plain.rtf());
    EXPECT_NEAR(ratio([](const RichTextBox &box) { return textLeft(box, 0); }), factor, near * factor);
    m_large.setLeastTextSize(0);
    EXPECT_EQ(m_large.rtf(), m_plain.rtf());
}

/// The part of a picture of \p box that is left of its first paragraph's text.
QImage marksIn(RichTextBox &box)
{
    const QTextLayout &layout = *box.document()->firstBlock().layout();
    const int left = qFloor(layout.position().x() + layout.lineAt(0).naturalTextRect().left());
    return box.viewport()->grab({0, 0, left, qFloor(box.document()->size().height())}).toImage();
}

/// The smallest rectangle with all that \p image shows.
QRect inkOf(const QImage &image)
{
    QRect ink;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            ink = image.pixelColor(x, y).lightness() < 128 ? ink.united({x, y, 1, 1}) : ink;
        }
    }
    return ink;
}

TEST_F(Reading, NumbersOfListsHaveTheSizeAndThePlaceThatADocumentsOwnWouldHave)
{
    const auto numbered = [](const std::string &start) {
        return "{\\rtf1\\ansi\\pard\\li900\\fi-300{\\*\\pn\\pnlvlbody\\pndec\\pnstart" + start +
               "{\\pntxta.}}\\fs20 one\\par two\\par}";
    };
    show(numbered("1"));
    const QRect ofDocument = inkOf(marksIn(m_large));
    show(numbered("7"));
    const QRect painted = inkOf(marksIn(m_large));
    const QRect small = inkOf(marksIn(m_plain));
    EXPECT_NEAR(painted.right(), ofDocument.right(), 1);
    EXPECT_NEAR(painted.top(), ofDocument.top(), 1);
    EXPECT_NEAR(painted.bottom(), ofDocument.bottom(), 2);
    EXPECT_NEAR(painted.height(), factor * small.height(), 4);
    EXPECT_GT(painted.width(), 1.5 * small.width());
}

TEST_F(Reading, BulletsGrowWithTheText)
{
    show(ofSize(10, "\\pard\\li900\\fi-300{\\*\\pn\\pnlvlblt{\\pntxtb\\'b7}}one\\par two"));
    const QRect large = inkOf(marksIn(m_large));
    const QRect small = inkOf(marksIn(m_plain));
    EXPECT_GT(large.width(), 1.4 * small.width());
    EXPECT_NEAR(large.height(), factor * small.height(), 4);
}

// Pictures and objects.

/// In the box's own units.
QRectF redIn(RichTextBox &box)
{
    const QImage image = box.viewport()->grab().toImage();
    QRect red;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            red = image.pixelColor(x, y) == QColor(Qt::red) ? red.united({x, y, 1, 1}) : red;
        }
    }
    return QTransform::fromScale(1 / image.devicePixelRatio(), 1 / image.devicePixelRatio()).mapRect(QRectF(red));
}

std::string withPicture(QSize size, const std::string &paragraph)
{
    const std::string picture = pictureSource(pngFile(size), size, size * 15).toStdString();
    return ofSize(10, "letters\\par" + paragraph + " " + picture);
}

TEST_F(Reading, PicturesGrowWithTheText)
{
    show(withPicture({100, 50}, {}));
    const QRectF small = redIn(m_plain);
    EXPECT_NEAR(small.width(), 2 * small.height(), 1);
    EXPECT_GT(small.width(), 90);
    EXPECT_NEAR(redIn(m_large).width(), small.width() * factor, 1);
    EXPECT_NEAR(redIn(m_large).height(), small.height() * factor, 1);
}

TEST_F(Reading, PicturesStayWithinThePaneAndItsMargins)
{
    show(withPicture({600, 100}, "\\pard\\li300\\ri600"));
    const double inch = documentOf(m_large).documentLayout()->paintDevice()->logicalDpiX();
    const double side = documentOf(m_large).documentMargin() * inch / m_large.logicalDpiX();
    const double left = side + inch * 300 / 1440;
    const double right = side + inch * 600 / 1440;
    const QRectF red = redIn(m_large);
    EXPECT_NEAR(red.left(), left, 1);
    EXPECT_NEAR(red.right(), m_large.viewport()->width() - right, 3);
    EXPECT_LT(red.right(), m_large.viewport()->width() - right + 1);
    EXPECT_NEAR(red.height(), red.width() / 6, 1.5);
    EXPECT_EQ(m_large.horizontalScrollBar()->maximum(), 0);
    m_large.resize(400, 400);
    EXPECT_NEAR(redIn(m_large).right(), 400 - right, 3);
    EXPECT_EQ(m_large.horizontalScrollBar()->maximum(), 0);
}

/// The text "name", an object that holds the file "list.txt" and the text "behind".
std::string withObject()
{
    const QByteArray stream = writeOlePackage(QStringLiteral("list.txt"), QByteArrayLiteral("eggs"));
    const QByteArray object = objectSource(QStringLiteral("Package"), stream, {}, {80, 60}, {1200, 900});
    return ofSize(10, "name" + object.toStdString() + " behind");
}

TEST_F(Reading, TheCaptionOfAnObjectsFrameGrowsWithIt)
{
    show(withObject());
    const auto caption = [](RichTextBox &box) {
        const QPoint from = placeOf(box, 4).topLeft().toPoint();
        const QPoint to = placeOf(box, 5).bottomRight().toPoint();
        // Only the frame's inside.
        const int edge = 3;
        return inkOf(box.viewport()->grab(QRect(from, to).adjusted(edge, edge, -edge, -edge)).toImage());
    };
    const QRect small = caption(m_plain);
    const QRect large = caption(m_large);
    ASSERT_FALSE(small.isEmpty());
    EXPECT_NEAR(large.height(), factor * small.height(), 6);
    EXPECT_NEAR(large.width(), factor * small.width(), 8);
}

TEST_F(Reading, ADoubleClickHitsWhatIsSeen)
{
    show(withObject());
    const QPoint inCorner = placeOf(m_large, 5).bottomLeft().toPoint() - QPoint(10, 20);
    DialogAnswers answers;
    answers.press(QMessageBox::No);
    QTest::mouseDClick(m_large.viewport(), Qt::LeftButton, {}, inCorner);
    ASSERT_EQ(answers.seen().size(), 1U);
    EXPECT_TRUE(answers.last().text.contains(QStringLiteral("list.txt")));
    const QRectF word = placeOf(m_large, 8);
    QTest::mouseDClick(m_large.viewport(), Qt::LeftButton, {}, QPointF(word.left(), word.bottom() - 8).toPoint());
    EXPECT_EQ(m_large.textCursor().selectedText(), QStringLiteral("behind"));
}

TEST_F(Reading, LinksAreWhereTheyAreSeen)
{
    show(ofSize(10, "see {\\field{\\*\\fldinst HYPERLINK \"https://example.org/\"}{\\fldrslt here}} now"));
    const QPoint inLink = placeOf(m_large, 6).center().toPoint();
    EXPECT_EQ(m_large.anchorAt(inLink), QStringLiteral("https://example.org/"));
    EXPECT_EQ(m_large.anchorAt(placeOf(m_large, 2).center().toPoint()), QString());
    EXPECT_EQ(m_plain.anchorAt(inLink), QString()) << "there is nothing in the small text";
}

TEST_F(Reading, TextIsSelectedByTheMouseWhereItIsSeen)
{
    show(ofSize(10, "first line\\par second line"));
    const auto at = [this](int position) { return placeOf(m_large, position).center().toPoint(); };
    QTest::mousePress(m_large.viewport(), Qt::LeftButton, {}, at(11));
    QTest::mouseMove(m_large.viewport(), at(14));
    QTest::mouseMove(m_large.viewport(), at(17));
    QTest::mouseRelease(m_large.viewport(), Qt::LeftButton, {}, at(17));
    EXPECT_EQ(m_large.textCursor().selectedText(), QStringLiteral("second"));
}

// The pane.

TEST_F(Reading, AMagnifiedTextIsCentredToo)
{
    m_large.setCentered(Qt::Horizontal | Qt::Vertical);
    for (const int points : {10, 6, 30, 10}) {
        show(ofSize(points, "one\\par two\\par three"));
        for (const int height : {400, 300, 500}) {
            m_large.resize(700, height);
            const int above = m_large.viewport()->geometry().top();
            const int below = height - above - qCeil(documentOf(m_large).size().height());
            EXPECT_NEAR(above, below, 1) << points << " points, " << height;
            EXPECT_GT(above, 20);
        }
    }
}

TEST_F(Reading, ALongTextScrollsToItsEndByKeysAndWheel)
{
    m_large.setCentered(Qt::Horizontal | Qt::Vertical);
    std::string lines;
    for (int line = 0; line < 60; ++line) {
        lines += "line\\par ";
    }
    show(ofSize(10, lines + "end"));
    const QScrollBar &bar = *m_large.verticalScrollBar();
    EXPECT_EQ(bar.value(), 0);
    EXPECT_EQ(bar.maximum() + bar.pageStep(), qCeil(documentOf(m_large).size().height()));
    QTest::keyClick(&m_large, Qt::Key_PageDown);
    EXPECT_NEAR(bar.value(), bar.pageStep(), 40);
    QTest::keyClick(&m_large, Qt::Key_End);
    EXPECT_EQ(bar.value(), bar.maximum());
    QTest::keyClick(&m_large, Qt::Key_Home);
    QWheelEvent turn({50, 10}, m_large.viewport()->mapToGlobal(QPointF(50, 10)), {}, {0, -120}, Qt::NoButton,
                     Qt::NoModifier, Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(m_large.viewport(), &turn);
    EXPECT_GT(bar.value(), 0);
    show(ofSize(10, "short"));
    EXPECT_EQ(bar.maximum(), 0);
}

TEST_F(Reading, ItStaysSoWhenTheFontOrThePaletteChanges)
{
    show(ofSize(10, "text"));
    const QSizeF size = documentOf(m_large).size();
    QFont font = m_large.font();
    font.setItalic(true);
    m_large.setFont(font);
    QPalette palette = m_large.palette();
    palette.setColor(QPalette::Text, Qt::blue);
    m_large.setPalette(palette);
    m_large.hide();
    m_large.setParent(&m_plain);
    m_large.show();
    expectLine(0, factor);
    EXPECT_NEAR(documentOf(m_large).size().height(), size.height(), 2);
}

TEST_F(Reading, ABoxThatIsShownLaterShowsItsTextSo)
{
    RichTextBox box;
    box.setRtf(ofSize(10, "text"));
    box.setLeastTextSize(readable);
    box.setFrameShape(QFrame::NoFrame);
    box.resize(m_large.size());
    box.setLocked(true);
    box.show();
    show(ofSize(10, "text"));
    EXPECT_EQ(box.viewport()->grab().toImage(), m_large.viewport()->grab().toImage());
}

TEST_F(Reading, PlacesMayBeAskedForWhileATextIsSet)
{
    int asked = 0;
    const auto ask = [this, &asked] {
        ++asked;
        const QRect caret = m_large.cursorRect();
        EXPECT_GE(m_large.cursorForPosition(caret.center()).position(), 0);
        EXPECT_GE(m_large.document()->size().height(), 0);
        EXPECT_GE(m_large.document()->documentLayout()->blockBoundingRect(m_large.document()->lastBlock()).height(), 0);
    };
    QObject::connect(&m_large, &RichTextBox::textChanged, &m_large, ask);
    QObject::connect(&m_large, &RichTextBox::cursorPositionChanged, &m_large, ask);
    std::string longText;
    for (int line = 0; line < 2000; ++line) {
        longText += "\\pard\\li300 many lines of a text\\par ";
    }
    for (const std::string &text : {longText, std::string("short"), longText, longText.substr(0, 4000)}) {
        show(ofSize(10, text));
        m_large.moveCursor(QTextCursor::End);
        RichTextBox fresh;
        fresh.setFrameShape(QFrame::NoFrame);
        fresh.setLeastTextSize(readable);
        fresh.resize(m_large.size());
        fresh.show();
        fresh.setRtf(ofSize(10, text));
        EXPECT_EQ(documentOf(m_large).size(), documentOf(fresh).size());
    }
    EXPECT_GT(asked, 8);
}

TEST_F(Reading, ABoxMayEndWhileItMagnifies)
{
    auto box = std::make_unique<RichTextBox>();
    box->setLeastTextSize(readable);
    box->setCentered(Qt::Horizontal | Qt::Vertical);
    box->setRtf(allKinds);
    box->show();
    box->grab();
    const QTextDocument *document = box->document();
    bool ended = false;
    QObject::connect(document, &QObject::destroyed, [&ended] { ended = true; });
    box.reset();
    EXPECT_TRUE(ended);
}

/// RTF of that many bytes, of which the reader makes little: most of it is in a group that it skips.
std::string rtfOfSize(std::size_t bytes, char filling)
{
    return "{\\rtf1 {\\*\\unknown " + std::string(bytes, filling) + "}text\\par}";
}

/// Whether the pointer is busy after \p rtf was shown, the event loop not having had its turn.
bool isBusyAfter(const std::string &rtf)
{
    const LongWork work(LongWork::steadyTime);
    RichTextBox box;
    box.setRtf(rtf);
    return QApplication::overrideCursor() != nullptr;
}

TEST(RichTextBoxReading, ALongTextIsAnnounced)
{
    EXPECT_TRUE(isBusyAfter(rtfOfSize(1000000, 'x')));
}

TEST(RichTextBoxReading, ATextOfUsualLengthIsNotAnnounced)
{
    EXPECT_FALSE(isBusyAfter(rtfOfSize(900000, 'x')));
}

TEST(RichTextBoxReading, ALargePictureIsNoLongText)
{
    EXPECT_FALSE(isBusyAfter(rtfOfSize(9000000, 'f')));
}

} // namespace
