#include "platform/SelectionFormat.h"
#include "platform/rtf/RtfFormats.h"
#include "platform/rtf/RtfObjectFormat.h"
#include "platform/rtf/RtfReader.h"
#include "platform/rtf/RtfWriter.h"

#include <QTextBlock>
#include <QTextDocument>
#include <QTextList>

#include <array>
#include <gtest/gtest.h>
#include <string>

namespace {

const QByteArray objectSource = QByteArrayLiteral("{\\object\\objemb\\objw600\\objh400}");

class SelectionFormatTest : public testing::Test
{
protected:
    void show(const char *rtf) { readRtf(rtf, m_document); }

    void select(int from, int to)
    {
        m_cursor.setPosition(from);
        m_cursor.setPosition(to, QTextCursor::KeepAnchor);
    }
    void selectAll() { m_cursor.select(QTextCursor::Document); }

    [[nodiscard]] QTextCharFormat formatAt(int position)
    {
        QTextCursor cursor(&m_document);
        cursor.setPosition(position + 1);
        return cursor.charFormat();
    }
    [[nodiscard]] RtfParagraph paragraph(int number) const
    {
        return paragraphOf(m_document.findBlockByNumber(number), RtfUnits(m_document));
    }
    [[nodiscard]] std::string rtf() const { return writeRtf(m_document); }

    /// Expects that one step of undo brings back \p before, and redo what there is now.
    void expectOneStepBackTo(const std::string &before)
    {
        const std::string after = rtf();
        EXPECT_NE(after, before) << "nothing was changed";
        m_document.undo();
        EXPECT_EQ(rtf(), before);
        m_document.redo();
        EXPECT_EQ(rtf(), after);
    }

    QTextDocument m_document;
    QTextCursor m_cursor = QTextCursor(&m_document);
    SelectionFormat m_format = SelectionFormat(m_cursor);
};

// Questions about characters.

constexpr auto boldInTheMiddle = "{\\rtf1 plain \\b bold\\b0  plain\\par}";

TEST_F(SelectionFormatTest, ASelectionOfExactlyTheBoldRunIsBold)
{
    show(boldInTheMiddle);
    select(6, 10);
    EXPECT_EQ(m_format.isBold(), true);
    select(10, 6);
    EXPECT_EQ(m_format.isBold(), true) << "whichever end the caret is at";
}

TEST_F(SelectionFormatTest, ASelectionBesideTheBoldRunIsNotBold)
{
    show(boldInTheMiddle);
    select(0, 6);
    EXPECT_EQ(m_format.isBold(), false);
    select(10, 16);
    EXPECT_EQ(m_format.isBold(), false);
}

TEST_F(SelectionFormatTest, OneCharacterOfANeighbourMakesTheSelectionMixed)
{
    show(boldInTheMiddle);
    select(5, 10);
    EXPECT_EQ(m_format.isBold(), std::nullopt);
    select(6, 11);
    EXPECT_EQ(m_format.isBold(), std::nullopt);
}

TEST_F(SelectionFormatTest, WithoutASelectionTheAnswerIsWhatWouldBeTyped)
{
    show(boldInTheMiddle);
    m_cursor.setPosition(8);
    EXPECT_EQ(m_format.isBold(), true);
    m_cursor.setPosition(6);
    EXPECT_EQ(m_format.isBold(), false) << "a caret continues what is before it";
    m_cursor.setPosition(10);
    EXPECT_EQ(m_format.isBold(), true);
    m_format.setBold(false);
    EXPECT_EQ(m_format.isBold(), false);
}

TEST_F(SelectionFormatTest, EachPropertyIsReadByItself)
{
    show("{\\rtf1{\\fonttbl{\\f0 Arial;}{\\f1 Courier New;}}{\\colortbl ;\\red192\\green0\\blue0;}"
         "\\f0\\fs20 aa\\i bb\\i0\\ul cc\\ulnone\\cf1 dd\\cf0\\f1 ee\\f0\\fs33 ff\\par}");
    selectAll();
    EXPECT_EQ(m_format.isBold(), false);
    EXPECT_EQ(m_format.isItalic(), std::nullopt);
    EXPECT_EQ(m_format.isUnderlined(), std::nullopt);
    EXPECT_EQ(m_format.color(), std::nullopt);
    EXPECT_EQ(m_format.fontName(), std::nullopt);
    EXPECT_EQ(m_format.fontSize(), std::nullopt);
    select(2, 4);
    EXPECT_EQ(m_format.isItalic(), true);
    EXPECT_EQ(m_format.isUnderlined(), false);
    EXPECT_EQ(m_format.color(), QColor()) << "the page's ink";
    EXPECT_EQ(m_format.fontName(), QStringLiteral("Arial"));
    EXPECT_EQ(m_format.fontSize(), 10.0);
    select(4, 6);
    EXPECT_EQ(m_format.isUnderlined(), true);
    select(6, 8);
    EXPECT_EQ(m_format.color(), QColor(192, 0, 0));
    select(8, 10);
    EXPECT_EQ(m_format.fontName(), QStringLiteral("Courier New"));
    select(10, 12);
    EXPECT_EQ(m_format.fontSize(), 16.5);
}

TEST_F(SelectionFormatTest, TextWithoutAFontHasTheDocumentsDefaultFont)
{
    QFont font(QStringLiteral("Some Font"));
    font.setPointSizeF(10.5);
    m_document.setDefaultFont(font);
    m_document.setPlainText(QStringLiteral("text"));
    selectAll();
    EXPECT_EQ(m_format.fontName(), QStringLiteral("Some Font"));
    EXPECT_EQ(m_format.fontSize(), 10.5);
}

TEST_F(SelectionFormatTest, EmptyParagraphsDoNotCountBesideText)
{
    show("{\\rtf1 \\b one\\b0\\par\\par\\b two\\b0\\par}");
    selectAll();
    EXPECT_EQ(m_format.isBold(), true);
}

TEST_F(SelectionFormatTest, EmptyParagraphsCountByTheirMarkIfNothingElseIsSelected)
{
    show("{\\rtf1 text\\par\\b\\par\\par\\b0\\par text\\par}");
    select(5, 7);
    EXPECT_EQ(m_format.isBold(), true);
    select(5, 8);
    EXPECT_EQ(m_format.isBold(), std::nullopt);
}

TEST_F(SelectionFormatTest, ObjectsDoNotCountBesideText)
{
    show("{\\rtf1 \\b bold\\par}");
    m_cursor.setPosition(2);
    m_cursor.insertText(QString(QChar::ObjectReplacementCharacter), toObjectFormat({}, objectSource));
    selectAll();
    EXPECT_EQ(m_format.isBold(), true);
    select(2, 3);
    EXPECT_EQ(m_format.isBold(), false) << "an object alone is asked for its own format";
}

// Questions about paragraphs.

constexpr auto threeParagraphs = "{\\rtf1\\pard\\li400\\fi-400 one\\par\\pard\\qc two\\par\\pard\\qr three\\par}";

TEST_F(SelectionFormatTest, ParagraphsAreThoseThatTheSelectionTouches)
{
    show(threeParagraphs);
    select(1, 2);
    EXPECT_EQ(m_format.alignment(), TextAlignment::Left);
    select(1, 5);
    EXPECT_EQ(m_format.alignment(), std::nullopt);
    m_cursor.setPosition(5);
    EXPECT_EQ(m_format.alignment(), TextAlignment::Center);
    m_cursor.setPosition(9);
    EXPECT_EQ(m_format.alignment(), TextAlignment::Right);
}

TEST_F(SelectionFormatTest, AParagraphAtWhoseStartTheSelectionEndsIsNotTouched)
{
    show(threeParagraphs);
    select(0, 4);
    EXPECT_EQ(m_format.alignment(), TextAlignment::Left);
    m_format.setAlignment(TextAlignment::Right);
    EXPECT_EQ(paragraph(1).alignment, RtfAlignment::Center);
}

TEST_F(SelectionFormatTest, SelectingEverythingTakesInAnEmptyLastParagraph)
{
    show("{\\rtf1 one\\par\\par}");
    selectAll();
    m_format.setAlignment(TextAlignment::Center);
    m_format.setBold(true);
    EXPECT_EQ(paragraph(1).alignment, RtfAlignment::Center);
    EXPECT_GE(m_document.lastBlock().charFormat().fontWeight(), QFont::Bold);
}

TEST_F(SelectionFormatTest, TheIndentIsThatOfTheFirstLine)
{
    show(threeParagraphs);
    m_cursor.setPosition(0);
    EXPECT_EQ(m_format.indent(), 0);
    show("{\\rtf1\\pard\\li400\\fi300 one\\par}");
    EXPECT_EQ(m_format.indent(), 700);
}

// Changes of characters.

TEST_F(SelectionFormatTest, BoldGoesToTheSelectionAloneAndLeavesTheRest)
{
    show("{\\rtf1{\\colortbl ;\\red192\\green0\\blue0;}one \\i\\cf1 two\\cf0\\i0  three\\par}");
    const std::string before = rtf();
    select(2, 9);
    m_format.setBold(true);
    EXPECT_EQ(m_format.isBold(), true);
    EXPECT_EQ(m_format.isItalic(), std::nullopt) << "which was mixed before";
    select(4, 7);
    EXPECT_EQ(m_format.isItalic(), true);
    EXPECT_EQ(m_format.color(), QColor(192, 0, 0));
    select(0, 2);
    EXPECT_EQ(m_format.isBold(), false);
    select(9, 13);
    EXPECT_EQ(m_format.isBold(), false);
    expectOneStepBackTo(before);
}

TEST_F(SelectionFormatTest, EveryPropertyIsSetInOneStepOverSeveralParagraphs)
{
    using Change = void (*)(SelectionFormat &);
    const auto changes = std::to_array<Change>({
        [](SelectionFormat &format) { format.setBold(true); },
        [](SelectionFormat &format) { format.setItalic(true); },
        [](SelectionFormat &format) { format.setUnderlined(true); },
        [](SelectionFormat &format) { format.setColor(Qt::blue); },
        [](SelectionFormat &format) { format.setFontName(QStringLiteral("Courier New")); },
        [](SelectionFormat &format) { format.setFontSize(24); },
        [](SelectionFormat &format) { format.setBullet(true); },
        [](SelectionFormat &format) { format.setAlignment(TextAlignment::Right); },
        [](SelectionFormat &format) { format.setIndent(500); },
    });
    for (const Change change : changes) {
        show(threeParagraphs);
        const std::string before = rtf();
        select(1, 9);
        change(m_format);
        EXPECT_EQ(m_cursor.selectionStart(), 1) << "the selection stays";
        EXPECT_EQ(m_cursor.selectionEnd(), 9);
        expectOneStepBackTo(before);
        EXPECT_EQ(m_document.availableUndoSteps() > 0, true);
        m_document.undo();
        EXPECT_FALSE(m_document.isUndoAvailable());
    }
}

TEST_F(SelectionFormatTest, WithoutASelectionOnlyWhatIsTypedNextIsChanged)
{
    show(boldInTheMiddle);
    const std::string before = rtf();
    m_cursor.setPosition(3);
    m_format.setItalic(true);
    EXPECT_EQ(rtf(), before);
    EXPECT_FALSE(m_document.isUndoAvailable());
    m_cursor.insertText(QStringLiteral("X"));
    EXPECT_TRUE(formatAt(3).fontItalic());
    EXPECT_FALSE(formatAt(4).fontItalic());
}

TEST_F(SelectionFormatTest, AnInvalidColourIsThePagesInkAgain)
{
    show("{\\rtf1{\\colortbl ;\\red192\\green0\\blue0;}\\cf1 red \\b bold\\par}");
    selectAll();
    m_format.setColor({});
    EXPECT_EQ(m_format.color(), QColor());
    EXPECT_FALSE(formatAt(0).hasProperty(QTextFormat::ForegroundBrush));
    EXPECT_EQ(rtf().find("\\colortbl"), std::string::npos);
    EXPECT_EQ(m_format.isBold(), std::nullopt) << "and nothing else changed";
}

TEST_F(SelectionFormatTest, ANewFontComesWithoutTheOldOnesCharacterSet)
{
    show("{\\rtf1{\\fonttbl{\\f0\\fcharset204 Arial;}}\\f0 \\'cf\\par}");
    ASSERT_EQ(fontOf(formatAt(0), {}).charset, 204);
    selectAll();
    m_format.setFontName(QStringLiteral("Courier New"));
    EXPECT_EQ(fontOf(formatAt(0), {}).family, QStringLiteral("Courier New"));
    EXPECT_EQ(fontOf(formatAt(0), {}).charset, 0);
    m_format.setFontName(QStringLiteral("Arial"));
    EXPECT_EQ(fontOf(formatAt(0), {}).charset, 0) << "the first font does not remember its own";
    EXPECT_EQ(m_document.toPlainText(), QStringLiteral("\u041f"));
}

TEST_F(SelectionFormatTest, TheSizeReplacesOneInPixels)
{
    QTextCharFormat pixels;
    pixels.setProperty(QTextFormat::FontPixelSize, 40);
    m_cursor.insertText(QStringLiteral("text"), pixels);
    selectAll();
    EXPECT_EQ(m_format.fontSize(), 30.0);
    m_format.setFontSize(12);
    EXPECT_EQ(m_format.fontSize(), 12.0);
    EXPECT_EQ(formatAt(0).font().pointSizeF(), 12.0);
}

TEST_F(SelectionFormatTest, AnObjectInTheSelectionStaysAnObject)
{
    show("{\\rtf1 text\\par}");
    m_cursor.setPosition(2);
    insertObject(m_cursor, objectSource);
    selectAll();
    m_format.setBold(true);
    m_format.setColor(Qt::blue);
    m_format.setColor({});
    m_format.setFontName(QStringLiteral("Arial"));
    EXPECT_EQ(objectSourceOf(formatAt(2)), objectSource);
    EXPECT_EQ(objectSizeOf(formatAt(2)), QSize(600, 400));
    EXPECT_TRUE(formatAt(2).fontWeight() >= QFont::Bold);
}

TEST_F(SelectionFormatTest, WhatIsTypedBehindAnObjectInAFormatOfItsOwnIsNoObject)
{
    insertObject(m_cursor, objectSource);
    m_format.setBold(true);
    m_cursor.insertText(QStringLiteral("x"));
    EXPECT_TRUE(objectSourceOf(formatAt(1)).isEmpty());
    EXPECT_FALSE(formatAt(1).hasProperty(RtfObjectSource));
}

TEST_F(SelectionFormatTest, TheMarkOfAParagraphFollowsWhenAllOfItIsSelected)
{
    show("{\\rtf1 one\\par\\par three\\par}");
    select(0, 6);
    m_format.setFontSize(40);
    EXPECT_EQ(m_document.findBlockByNumber(0).charFormat().fontPointSize(), 40);
    EXPECT_EQ(m_document.findBlockByNumber(1).charFormat().fontPointSize(), 40);
    EXPECT_NE(m_document.findBlockByNumber(2).charFormat().fontPointSize(), 40) << "only its beginning is selected";
}

TEST_F(SelectionFormatTest, TheMarkStaysWhenAPartOfAParagraphIsSelected)
{
    show("{\\rtf1 one two\\par}");
    select(0, 3);
    m_format.setBold(true);
    EXPECT_LT(m_document.firstBlock().charFormat().fontWeight(), QFont::Bold);
}

TEST_F(SelectionFormatTest, ASelectionOfNothingButAMarkChangesTheMark)
{
    show("{\\rtf1 one\\par two\\par}");
    select(3, 4);
    EXPECT_EQ(m_format.isBold(), false);
    m_format.setBold(true);
    EXPECT_EQ(m_format.isBold(), true);
}

// Changes of paragraphs.

TEST_F(SelectionFormatTest, TheIndentMovesAllLinesOfEachParagraph)
{
    show("{\\rtf1\\pard\\li900\\fi-400 one\\par\\pard\\fi300 two\\par}");
    selectAll();
    EXPECT_EQ(m_format.indent(), std::nullopt);
    m_format.setIndent(1000);
    EXPECT_EQ(m_format.indent(), 1000);
    EXPECT_EQ(paragraph(0).leftIndent, 1400);
    EXPECT_EQ(paragraph(0).firstLineIndent, -400);
    EXPECT_EQ(paragraph(1).leftIndent, 700);
    EXPECT_EQ(paragraph(1).firstLineIndent, 300);
}

TEST_F(SelectionFormatTest, ShiftingTheIndentKeepsTheParagraphsDifferences)
{
    show("{\\rtf1\\pard\\li900\\fi-400 one\\par\\pard\\fi300 two\\par\\pard three\\par}");
    const std::string before = rtf();
    select(1, 6);
    m_format.shiftIndent(-500);
    EXPECT_EQ(paragraph(0).leftIndent, 400);
    EXPECT_EQ(paragraph(0).firstLineIndent, -400);
    EXPECT_EQ(paragraph(1).leftIndent, -500);
    EXPECT_EQ(paragraph(1).firstLineIndent, 300);
    EXPECT_EQ(paragraph(2).leftIndent, 0) << "which is not selected";
    EXPECT_EQ(m_cursor.selectedText().size(), 5) << "the selection stays";
    expectOneStepBackTo(before);
    m_format.shiftIndent(500);
    EXPECT_EQ(rtf(), before);
}

TEST_F(SelectionFormatTest, ShiftingTheIndentOfABulletLeavesTheBullet)
{
    show("{\\rtf1\\pard\\li200\\fi-200{\\*\\pn\\pnlvlblt{\\pntxtb\\'b7}}one\\par}");
    m_format.shiftIndent(500);
    EXPECT_EQ(m_format.indent(), 500);
    EXPECT_EQ(paragraph(0).firstLineIndent, -200);
    EXPECT_EQ(m_format.isBullet(), true);
}

TEST_F(SelectionFormatTest, ANegativeIndentIsKeptAndComesBack)
{
    show("{\\rtf1 one\\par}");
    m_format.setIndent(-500);
    EXPECT_EQ(m_format.indent(), -500);
    EXPECT_GE(m_document.firstBlock().blockFormat().leftMargin(), 0) << "the text stays on the page";
    m_format.setIndent(*m_format.indent() + 500);
    EXPECT_EQ(m_format.indent(), 0);
    EXPECT_EQ(m_document.firstBlock().blockFormat(), QTextBlockFormat());
}

TEST_F(SelectionFormatTest, BulletsAreIndentedToo)
{
    show("{\\rtf1\\pard\\li200\\fi-200{\\*\\pn\\pnlvlblt{\\pntxtb\\'b7}}one\\par}");
    ASSERT_EQ(m_format.isBullet(), true);
    m_format.setIndent(500);
    EXPECT_EQ(m_format.indent(), 500);
    EXPECT_EQ(paragraph(0).leftIndent, 700);
    EXPECT_EQ(paragraph(0).firstLineIndent, -200);
    EXPECT_EQ(m_format.isBullet(), true);
    m_format.setIndent(-500);
    EXPECT_EQ(m_format.indent(), -500);
}

TEST_F(SelectionFormatTest, AlignmentGoesRoundAndLeavesNoTrace)
{
    show("{\\rtf1\\pard\\li300 one\\par}");
    const QTextBlockFormat before = m_document.firstBlock().blockFormat();
    for (const TextAlignment alignment : {TextAlignment::Center, TextAlignment::Right, TextAlignment::Left}) {
        m_format.setAlignment(alignment);
        EXPECT_EQ(m_format.alignment(), alignment);
        EXPECT_EQ(m_format.indent(), 300);
    }
    EXPECT_EQ(m_document.firstBlock().blockFormat(), before);
}

TEST_F(SelectionFormatTest, InAParagraphFromRightToLeftTheSidesArePhysical)
{
    show("{\\rtf1\\pard\\rtlpar\\qr one\\par}");
    EXPECT_EQ(m_format.alignment(), TextAlignment::Right);
    m_format.setAlignment(TextAlignment::Left);
    EXPECT_EQ(m_format.alignment(), TextAlignment::Left);
    EXPECT_TRUE(paragraph(0).rightToLeft);
}

TEST_F(SelectionFormatTest, NeighbouringParagraphsBecomeOneListOfBullets)
{
    show(threeParagraphs);
    selectAll();
    EXPECT_EQ(m_format.isBullet(), false);
    m_format.setBullet(true);
    EXPECT_EQ(m_format.isBullet(), true);
    const QTextList *list = m_document.firstBlock().textList();
    ASSERT_NE(list, nullptr);
    EXPECT_EQ(list->count(), 3);
    EXPECT_EQ(list->format().style(), QTextListFormat::ListDisc);
    EXPECT_EQ(m_format.alignment(), std::nullopt) << "alignment stays as it was";
}

TEST_F(SelectionFormatTest, ABulletJoinsTheListBeforeIt)
{
    show(threeParagraphs);
    m_cursor.setPosition(0);
    m_format.setBullet(true);
    m_cursor.setPosition(5);
    m_format.setBullet(true);
    EXPECT_EQ(m_document.findBlockByNumber(0).textList(), m_document.findBlockByNumber(1).textList());
}

TEST_F(SelectionFormatTest, TogglingABulletLeavesTheIndents)
{
    for (const char *indents : {"", "\\li300", "\\li300\\fi-200", "\\fi250", "\\li-200", "\\li100\\fi-400"}) {
        show((std::string("{\\rtf1\\pard") + indents + " one\\par}").c_str());
        const RtfParagraph before = paragraph(0);
        const QTextBlockFormat formatBefore = m_document.firstBlock().blockFormat();
        m_format.setBullet(true);
        EXPECT_EQ(paragraph(0).list.style, RtfListStyle::Bullet);
        EXPECT_EQ(paragraph(0).leftIndent, before.leftIndent) << indents;
        EXPECT_EQ(paragraph(0).firstLineIndent, before.firstLineIndent) << indents;
        m_format.setBullet(false);
        EXPECT_EQ(paragraph(0), before) << indents;
        EXPECT_EQ(m_document.firstBlock().blockFormat(), formatBefore) << indents;
    }
}

TEST_F(SelectionFormatTest, AMixtureOfBulletsAndTextIsMixedAndAllBecomesBullets)
{
    show(threeParagraphs);
    m_cursor.setPosition(5);
    m_format.setBullet(true);
    selectAll();
    EXPECT_EQ(m_format.isBullet(), std::nullopt);
    m_format.setBullet(true);
    EXPECT_EQ(m_format.isBullet(), true);
    m_format.setBullet(false);
    EXPECT_EQ(m_format.isBullet(), false);
    EXPECT_EQ(m_document.firstBlock().textList(), nullptr);
}

constexpr auto numbered = "{\\rtf1\\pard\\li400\\fi-400{\\*\\pn\\pnlvlbody\\pndec\\pnstart1{\\pntxta.}}"
                          "one\\par two\\par three\\par\\pard end\\par}";

TEST_F(SelectionFormatTest, NumberedParagraphsBecomeBulletsOrPlain)
{
    show(numbered);
    m_cursor.setPosition(5);
    EXPECT_EQ(m_format.isBullet(), false);
    m_format.setBullet(true);
    EXPECT_EQ(m_format.isBullet(), true);
    EXPECT_EQ(paragraph(1).leftIndent, 400);
    EXPECT_EQ(m_document.firstBlock().textList()->count(), 2) << "the others keep their numbers";
    m_cursor.setPosition(0);
    m_format.setBullet(false);
    EXPECT_EQ(paragraph(0).list.style, RtfListStyle::None);
    EXPECT_EQ(paragraph(0).firstLineIndent, -400);
}

TEST_F(SelectionFormatTest, UndoingBulletsBringsTheNumbersBack)
{
    show(numbered);
    const std::string before = rtf();
    selectAll();
    m_format.setBullet(true);
    EXPECT_EQ(m_document.findBlockByNumber(2).textList()->format().style(), QTextListFormat::ListDisc);
    expectOneStepBackTo(before);
    m_document.undo();
    const QTextBlock third = m_document.findBlockByNumber(2);
    EXPECT_EQ(third.textList()->itemText(third), QStringLiteral("3."));
}

TEST_F(SelectionFormatTest, ALongSelectionOfBulletsIsManyShortLists)
{
    m_document.setPlainText(QStringLiteral("line\n").repeated(1000));
    selectAll();
    m_format.setBullet(true);
    EXPECT_EQ(m_format.isBullet(), true);
    EXPECT_LE(m_document.firstBlock().textList()->count(), 64);
}

} // namespace
