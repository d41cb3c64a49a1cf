#include "platform/ContrastRatio.h"
#include "platform/help/HelpPage.h"
#include "platform/help/InkContrast.h"
#include "tests/platform/help/GardenBook.h"

#include <QAbstractTextDocumentLayout>
#include <QApplication>
#include <QFile>
#include <QPrinter>
#include <QRegularExpression>
#include <QScrollBar>
#include <QTemporaryDir>
#include <QTest>
#include <QTextBlock>
#include <QWheelEvent>

#include <gtest/gtest.h>

namespace {

class HelpPageTest : public testing::Test
{
protected:
    void SetUp() override
    {
        page.resize(400, 300);
        page.show();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(&page));
    }

    /// Where the text \p text stands in the window.
    [[nodiscard]] QPoint placeOf(const char *text) const
    {
        const QTextCursor found = page.document()->find(QString::fromLatin1(text));
        EXPECT_FALSE(found.isNull()) << text;
        return page.cursorRect(found).center() - QPoint(3, 0);
    }
    void clickOn(const char *text) { QTest::mouseClick(page.viewport(), Qt::LeftButton, {}, placeOf(text)); }

    /// The area of the page's one picture, in the document's units.
    [[nodiscard]] QRectF picture() const
    {
        const QTextCursor found = page.document()->find(QString(QChar::ObjectReplacementCharacter));
        EXPECT_FALSE(found.isNull());
        const QTextBlock block = found.block();
        const QTextLine line = block.layout()->lineForTextPosition(found.anchor() - block.position());
        const double left = line.cursorToX(found.selectionStart() - block.position());
        const double right = line.cursorToX(found.selectionEnd() - block.position());
        return {block.layout()->position() + QPointF(left, line.y()), QSizeF(right - left, line.ascent())};
    }

    /// The colour in which the word \p text is written.
    [[nodiscard]] QColor inkOf(const char *text) const
    {
        const QTextCursor found = page.document()->find(QString::fromLatin1(text));
        EXPECT_FALSE(found.isNull()) << text;
        return found.charFormat().foreground().color();
    }

    void turn(int delta, Qt::KeyboardModifiers keys)
    {
        const QPointF place = page.viewport()->rect().center();
        QWheelEvent event(place, page.viewport()->mapToGlobal(place), {}, QPoint(0, delta), Qt::NoButton, keys,
                          Qt::NoScrollPhase, false);
        QApplication::sendEvent(page.viewport(), &event);
    }

    HelpBook book{gardenBook()};
    HelpPage page{book, nullptr};
};

TEST_F(HelpPageTest, ShowsAPageWithItsTitle)
{
    page.openPlace(gardenPage("trees.html"));
    EXPECT_EQ(page.documentTitle(), QStringLiteral("Trees"));
    EXPECT_TRUE(page.toPlainText().contains(QStringLiteral("They stand by the shed.")));
}

TEST_F(HelpPageTest, AClickedLinkLeadsToItsPlace)
{
    page.openPlace(gardenPage("garden.html"));
    clickOn("carp");
    EXPECT_EQ(page.source(), gardenPage("ponds.html#carp"));
}

TEST_F(HelpPageTest, ALinkFollowedByKeysLeadsToItsPlace)
{
    page.openPlace(gardenPage("garden.html"));
    page.setFocus();
    QTest::keyClick(&page, Qt::Key_Tab);
    QTest::keyClick(&page, Qt::Key_Return);
    EXPECT_EQ(page.source(), gardenPage("trees.html"));
}

TEST_F(HelpPageTest, ALinkOutOfTheBookLeadsNowhere)
{
    page.openPlace(gardenPage("garden.html"));
    clickOn("the street");
    EXPECT_EQ(page.source(), gardenPage("garden.html"));
    EXPECT_TRUE(page.toPlainText().contains(QStringLiteral("A rake lies")));
}

TEST_F(HelpPageTest, APlaceThatIsNotInTheBookLeavesThePageAsItIs)
{
    page.openPlace(gardenPage("shed.html"));
    page.openPlace(gardenPage("roses.html"));
    EXPECT_EQ(page.source(), gardenPage("shed.html"));
}

TEST_F(HelpPageTest, AWidePictureShrinksToThePageAndFollowsIt)
{
    page.openPlace(gardenPage("trees.html"));
    const double margin = page.document()->documentMargin();
    for (const int width : {400, 700, 260}) {
        page.resize(width, 300);
        EXPECT_NEAR(picture().width(), page.viewport()->width() - 2 * margin, 1) << width;
        EXPECT_EQ(page.horizontalScrollBar()->maximum(), 0) << width;
    }
}

TEST_F(HelpPageTest, ASmallPictureKeepsItsSizeAndGrowsWithTheLetters)
{
    page.openPlace(gardenPage("garden.html"));
    EXPECT_EQ(picture().size(), QSizeF(32, 16));
    const double points = page.font().pointSizeF();
    page.enlarge(5);
    EXPECT_NEAR(picture().width(), 32 * (points + 5) / points, 0.6);
    EXPECT_NEAR(picture().height(), 16 * (points + 5) / points, 0.6);
}

TEST_F(HelpPageTest, APictureIsDrawnSharpOnAFineScreen)
{
    page.openPlace(gardenPage("garden.html"));
    const QRectF area = picture();
    constexpr int scale = 4;
    QImage screen(page.viewport()->size() * scale, QImage::Format_RGB32);
    screen.setDevicePixelRatio(scale);
    page.viewport()->render(&screen);
    // Red on the left, blue on the right, and nothing mixed between them.
    const int middle = qRound((area.left() + 16) * scale);
    const int y = qRound((area.top() + 8) * scale) - page.verticalScrollBar()->value() * scale;
    EXPECT_EQ(QColor(screen.pixel(middle - 2, y)).name().toStdString(), "#ff0000");
    EXPECT_EQ(QColor(screen.pixel(middle + 2, y)).name().toStdString(), "#0000ff");
}

TEST_F(HelpPageTest, LinksCanBeReadOnALightAndOnADarkDesktop)
{
    page.openPlace(gardenPage("garden.html"));
    EXPECT_GE(contrastRatio(page.palette().color(QPalette::Base), inkOf("trees")), 4.5);

    QPalette dark = page.palette();
    dark.setColor(QPalette::Base, QColor(35, 35, 35));
    dark.setColor(QPalette::Text, Qt::white);
    dark.setColor(QPalette::Link, Qt::blue);
    page.setPalette(dark);
    EXPECT_EQ(page.source(), gardenPage("garden.html"));
    EXPECT_GE(contrastRatio(QColor(35, 35, 35), inkOf("trees")), 4.5);
}

TEST_F(HelpPageTest, LettersStayBetweenTheSmallestAndTheLargest)
{
    for (int step = 0; step < 60; ++step) {
        page.enlarge(1);
    }
    EXPECT_LE(page.font().pointSizeF(), HelpPage::largestLetters);
    EXPECT_GT(page.font().pointSizeF(), HelpPage::largestLetters - 1.5);
    for (int step = 0; step < 60; ++step) {
        page.enlarge(-1);
    }
    EXPECT_GE(page.font().pointSizeF(), HelpPage::smallestLetters - 0.1);
    page.resetLetters();
    EXPECT_EQ(page.font().pointSizeF(), QApplication::font().pointSizeF());
}

TEST_F(HelpPageTest, TheWheelWithCtrlChangesTheLettersAndAloneScrolls)
{
    page.openPlace(gardenPage("trees.html"));
    const double points = page.font().pointSizeF();
    turn(120, Qt::ControlModifier);
    EXPECT_NEAR(page.font().pointSizeF(), points + 1, 0.1);
    page.resize(400, 100);
    turn(-120, Qt::NoModifier);
    EXPECT_GT(page.verticalScrollBar()->value(), 0);
    EXPECT_NEAR(page.font().pointSizeF(), points + 1, 0.1);
}

TEST_F(HelpPageTest, MarksWordsAndWordsThatBeginWithThemUntilAnotherPageIsOpened)
{
    page.openPlace(gardenPage("trees.html"));
    page.mark({QStringLiteral("RAK"), QStringLiteral("apple")});
    QStringList marked;
    for (const QTextEdit::ExtraSelection &selection : page.extraSelections()) {
        marked.append(selection.cursor.selectedText());
    }
    EXPECT_EQ(marked, (QStringList{QStringLiteral("raking"), QStringLiteral("Apple")}));
    page.openPlace(gardenPage("shed.html"));
    EXPECT_TRUE(page.extraSelections().isEmpty());
}

TEST_F(HelpPageTest, ScrollsToTheFirstMark)
{
    page.resize(400, 60);
    page.openPlace(gardenPage("ponds.html"));
    page.mark({QStringLiteral("slow")});
    EXPECT_GT(page.verticalScrollBar()->value(), 0);
    EXPECT_TRUE(page.viewport()->rect().contains(placeOf("slow")));
}

TEST_F(HelpPageTest, PrintsOnPaperWhateverTheDesktopsColors)
{
    QPalette dark = page.palette();
    dark.setColor(QPalette::Base, Qt::black);
    dark.setColor(QPalette::Text, Qt::white);
    page.setPalette(dark);
    page.openPlace(gardenPage("trees.html"));

    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("page.pdf"));
    QPrinter printer(QPrinter::HighResolution);
    printer.setOutputFormat(QPrinter::PdfFormat);
    printer.setOutputFileName(path);
    page.printOn(printer);

    QFile file(path);
    ASSERT_TRUE(file.open(QFile::ReadOnly));
    const QByteArray pdf = file.readAll();
    EXPECT_TRUE(pdf.startsWith("%PDF"));
    static const QRegularExpression count(QStringLiteral("/Count (\\d+)"));
    EXPECT_GT(count.match(QString::fromLatin1(pdf)).captured(1).toInt(), 0);
    EXPECT_TRUE(pdf.contains("/Subtype /Image")) << "the picture is missing";
    EXPECT_EQ(page.source(), gardenPage("trees.html"));
}

} // namespace
