#include "platform/ContrastRatio.h"
#include "platform/NotebookPage.h"
#include "platform/RichTextBox.h"
#include "platform/rtf/RtfWriter.h"
#include "tests/support/KeyWindow.h"
#include "tests/support/Pictures.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QImage>
#include <QKeyEvent>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTest>
#include <QTextBlock>
#include <QTextDocument>
#include <QTextList>
#include <QWheelEvent>
#include <QtMath>

#include <array>
#include <functional>
#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace {

const QString redRtf = QStringLiteral(
    "{\\rtf1\\ansi{\\colortbl ;\\red192\\green0\\blue0;}\\pard plain \\cf1 red\\cf0  \\b bold\\b0\\par}");

class RichTextBoxTest : public testing::Test
{
protected:
    RichTextBoxTest()
    {
        m_window.resize(300, 200);
        m_box->resize(300, 120);
        m_window.show();
        m_window.activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&m_window));
        m_box->setFocus();
    }

    void showManyLines() const { m_box->setPlainText(QStringLiteral("a line of text\n").repeated(100)); }

    KeyWindow m_window;
    RichTextBox *m_box = new RichTextBox(&m_window);
};

TEST_F(RichTextBoxTest, RtfThatWasSetIsHandedBackToTheLetter)
{
    m_box->setTextRtf(redRtf);
    EXPECT_EQ(m_box->textRtf(), redRtf);
    EXPECT_EQ(m_box->toPlainText(), QStringLiteral("plain red bold"));
    m_box->selectAll();
    m_box->setLocked(true);
    m_box->setLocked(false);
    EXPECT_EQ(m_box->textRtf(), redRtf);
}

TEST_F(RichTextBoxTest, TheBytesThatWereSetComeBackWhateverTheyAre)
{
    using namespace std::string_literals;
    for (const std::string &rtf : {"{\\rtf1\\ansi caf\xe9 \\'e9\\par}\r\n\0"s, "\xef\xbb\xbf{\\rtf1 marked\\par}"s,
                                   " \n{\\rtf not closed"s, "{\\urtf1 \xc3\xa9}"s}) {
        m_box->setRtf(rtf);
        EXPECT_EQ(m_box->rtf(), rtf);
    }
}

TEST_F(RichTextBoxTest, BytesThatAreNotUtf8AreWrittenAnewForTheProperty)
{
    m_box->setRtf("{\\rtf1\\ansi caf\xe9\\par}");
    EXPECT_EQ(m_box->plainText(), QStringLiteral("caf\u00e9"));
    EXPECT_TRUE(m_box->textRtf().contains(QStringLiteral("caf\\'e9")));
    m_box->setRtf("\xef\xbb\xbf{\\rtf1 caf\xc3\xa9\\par}");
    EXPECT_EQ(m_box->textRtf(), QStringLiteral("\ufeff{\\rtf1 caf\u00e9\\par}"));
    EXPECT_EQ(m_box->plainText(), QStringLiteral("caf\u00e9"));
}

TEST_F(RichTextBoxTest, ChangesThatAreUndoneGiveTheSameBytesAgain)
{
    const std::string rtf = "{\\rtf1\\ansi caf\xe9 \\b bold\\b0\\par}";
    m_box->setRtf(rtf);
    QTest::keyClicks(m_box, QStringLiteral("X"));
    m_box->selectAll();
    m_box->setSelItalic(true);
    EXPECT_NE(m_box->rtf(), rtf);
    QTest::keyClick(m_box, Qt::Key_Z, Qt::ControlModifier);
    EXPECT_NE(m_box->rtf(), rtf);
    QTest::keyClick(m_box, Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(m_box->rtf(), rtf);
    m_box->redo();
    EXPECT_NE(m_box->rtf(), rtf);
    m_box->undo();
    EXPECT_EQ(m_box->rtf(), rtf);
    QTest::keyClicks(m_box, QStringLiteral("Y"));
    EXPECT_NE(m_box->rtf(), rtf);
    EXPECT_NE(m_box->rtf().find('Y'), std::string::npos);
}

TEST_F(RichTextBoxTest, NewContentsOfAnyKindForgetTheBytes)
{
    const std::vector<std::function<void()>> replacements = {
        [this] { m_box->setPlainText(QStringLiteral("other")); },
        [this] { m_box->resetText(QStringLiteral("other")); },
        [this] { m_box->clear(); },
        [this] { m_box->setHtml(QStringLiteral("<b>other</b>")); },
        [this] { m_box->setRtf("other"); },
        [this] { m_box->setRtf({}); },
    };
    for (const auto &replace : replacements) {
        m_box->setTextRtf(redRtf);
        replace();
        EXPECT_EQ(m_box->rtf().find("plain red"), std::string::npos);
        EXPECT_EQ(m_box->rtf().rfind("{\\rtf1", 0), 0U);
        EXPECT_FALSE(m_box->canUndo());
    }
}

TEST_F(RichTextBoxTest, PlainTextComesInTheBoxsOwnFontWhateverStoodThere)
{
    m_box->setTextRtf(QStringLiteral("{\\rtf1{\\colortbl ;\\red255\\green0\\blue0;}\\qc\\cf1\\b\\fs60 loud\\par}"));
    m_box->setProperty("Text", QStringLiteral("quiet"));
    m_box->selectAll();
    EXPECT_EQ(m_box->selBold(), false);
    EXPECT_EQ(m_box->selFontSize(), 10.0);
    EXPECT_EQ(m_box->selColor(), QColor());
    EXPECT_EQ(m_box->selAlignment(), TextAlignment::Left);
    m_box->setTextRtf(QStringLiteral("{\\rtf1\\b loud\\par}"));
    m_box->resetText({});
    QTest::keyClicks(m_box, QStringLiteral("quiet"));
    m_box->selectAll();
    EXPECT_EQ(m_box->selBold(), false);
}

TEST_F(RichTextBoxTest, PicturesAreBlanksInThePlainText)
{
    m_box->setPlainText(QStringLiteral("ab\ncd"));
    m_box->moveCursor(QTextCursor::Right);
    m_box->insertPicture(redPicture());
    EXPECT_EQ(m_box->plainText(), QStringLiteral("a b\ncd"));
    EXPECT_EQ(m_box->property("Text").toString(), QStringLiteral("a b\ncd"));
}

TEST_F(RichTextBoxTest, AfterAChangeTheRtfIsThatOfTheNewText)
{
    m_box->setTextRtf(redRtf);
    QTest::keyClicks(m_box, QStringLiteral("X"));
    const QString rtf = m_box->textRtf();
    EXPECT_NE(rtf, redRtf);
    RichTextBox other;
    other.setTextRtf(rtf);
    EXPECT_EQ(other.toPlainText(), QStringLiteral("Xplain red bold"));
}

TEST_F(RichTextBoxTest, AChangeOfFormatAloneIsAChangeToo)
{
    m_box->setTextRtf(redRtf);
    m_box->selectAll();
    m_box->setFontItalic(true);
    EXPECT_NE(m_box->textRtf(), redRtf);
    EXPECT_TRUE(m_box->textRtf().contains(QStringLiteral("\\i")));
}

TEST_F(RichTextBoxTest, SettingRtfPutsTheCaretAtTheStartAndForgetsUndo)
{
    showManyLines();
    m_box->moveCursor(QTextCursor::End);
    QTest::keyClicks(m_box, QStringLiteral("typed"));
    m_box->setTextRtf(redRtf);
    EXPECT_EQ(m_box->textCursor().position(), 0);
    EXPECT_EQ(m_box->verticalScrollBar()->value(), 0);
    EXPECT_FALSE(m_box->document()->isUndoAvailable());
    QTest::keyClick(m_box, Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(m_box->toPlainText(), QStringLiteral("plain red bold"));
}

TEST_F(RichTextBoxTest, WhatIsNotRtfIsShownAsPlainText)
{
    const QString text = QStringLiteral("No <b>RTF</b> {at} \\all, \u00e9\u65e5");
    m_box->setTextRtf(text);
    EXPECT_EQ(m_box->toPlainText(), text);
    EXPECT_TRUE(m_box->textRtf().startsWith(QStringLiteral("{\\rtf1")));
    m_box->setTextRtf(QString());
    EXPECT_EQ(m_box->toPlainText(), QString());
}

TEST_F(RichTextBoxTest, LettersBeyondAsciiInsideRtfAreKept)
{
    const QString name = QStringLiteral("\u00dcbung \u65e5\u672c \U0001F393 \u2013");
    m_box->setTextRtf(
        QStringLiteral("{\\rtf1\\ansi\\deff0{\\fonttbl{\\f0 Comic Sans MS;}}\\pard\\f0\\fs20 %1 notes...\\par}")
            .arg(name));
    EXPECT_EQ(m_box->toPlainText(), name + QStringLiteral(" notes..."));
}

TEST_F(RichTextBoxTest, TheRtfIsSevenBit)
{
    m_box->setPlainText(QStringLiteral("\u00dcbung \u65e5\u672c"));
    for (const QChar letter : m_box->textRtf()) {
        EXPECT_LT(letter.unicode(), 128);
    }
    RichTextBox other;
    other.setTextRtf(m_box->textRtf());
    EXPECT_EQ(other.toPlainText(), m_box->toPlainText());
}

TEST_F(RichTextBoxTest, ItsTextsAreProperties)
{
    ASSERT_TRUE(m_box->setProperty("TextRTF", redRtf));
    EXPECT_EQ(m_box->property("TextRTF").toString(), redRtf);
    EXPECT_EQ(m_box->property("Text").toString(), QStringLiteral("plain red bold"));

    QTextCursor cursor = m_box->textCursor();
    cursor.setPosition(6);
    cursor.setPosition(9, QTextCursor::KeepAnchor);
    m_box->setTextCursor(cursor);
    EXPECT_TRUE(m_box->property("SelRTF").toString().contains(QStringLiteral("red")));
    EXPECT_FALSE(m_box->property("SelRTF").toString().contains(QStringLiteral("plain")));
    ASSERT_TRUE(m_box->setProperty("SelRTF", QStringLiteral("{\\rtf1 \\i green}")));
    EXPECT_EQ(m_box->property("Text").toString(), QStringLiteral("plain green bold"));

    ASSERT_TRUE(m_box->setProperty("Text", QStringLiteral("anew")));
    EXPECT_EQ(m_box->property("Text").toString(), QStringLiteral("anew"));
    EXPECT_TRUE(m_box->property("TextRTF").toString().contains(QStringLiteral("anew")));
}

TEST_F(RichTextBoxTest, AnEmptySelRtfRemovesTheSelectionAsOneUndoStep)
{
    m_box->setTextRtf(redRtf);
    QTextCursor cursor = m_box->textCursor();
    cursor.setPosition(6, QTextCursor::KeepAnchor);
    m_box->setTextCursor(cursor);
    m_box->setSelRtf(QString());
    EXPECT_EQ(m_box->toPlainText(), QStringLiteral("red bold"));
    m_box->undo();
    EXPECT_EQ(m_box->toPlainText(), QStringLiteral("plain red bold"));
}

TEST_F(RichTextBoxTest, SelRtfThatIsNoRtfIsPutInAsPlainText)
{
    m_box->setPlainText(QStringLiteral("ab"));
    m_box->moveCursor(QTextCursor::End);
    m_box->setSelRtf(QStringLiteral(" {c} \u00e9"));
    EXPECT_EQ(m_box->toPlainText(), QStringLiteral("ab {c} \u00e9"));
}

TEST_F(RichTextBoxTest, TheSelectionsRtfGoesIntoAnotherBoxWithItsFormat)
{
    m_box->setTextRtf(redRtf);
    m_box->selectAll();
    RichTextBox other;
    other.setSelRtf(m_box->selRtf());
    EXPECT_EQ(other.toPlainText(), QStringLiteral("plain red bold"));
    QTextCursor cursor(other.document());
    cursor.setPosition(8);
    EXPECT_EQ(cursor.charFormat().foreground().color(), QColor(192, 0, 0));
    cursor.setPosition(12);
    EXPECT_EQ(cursor.charFormat().fontWeight(), QFont::Bold);
}

TEST_F(RichTextBoxTest, TheFormatOfTheSelectionIsAskedAndSet)
{
    m_box->setTextRtf(redRtf);
    m_box->selectAll();
    EXPECT_EQ(m_box->selBold(), std::nullopt);
    m_box->setSelBold(true);
    EXPECT_EQ(m_box->selBold(), true);
    EXPECT_EQ(m_box->textCursor().selectedText(), QStringLiteral("plain red bold")) << "the selection stays";
    m_box->setSelItalic(true);
    m_box->setSelUnderline(true);
    m_box->setSelColor(Qt::blue);
    m_box->setSelFontName(QStringLiteral("Courier New"));
    m_box->setSelFontSize(24);
    m_box->setSelBullet(true);
    m_box->setSelAlignment(TextAlignment::Right);
    m_box->setSelIndent(500);
    RichTextBox other;
    other.setRtf(m_box->rtf());
    other.selectAll();
    EXPECT_EQ(other.selItalic(), true);
    EXPECT_EQ(other.selUnderline(), true);
    EXPECT_EQ(other.selColor(), QColor(Qt::blue));
    EXPECT_EQ(other.selFontName(), QStringLiteral("Courier New"));
    EXPECT_EQ(other.selFontSize(), 24.0);
    EXPECT_EQ(other.selBullet(), true);
    EXPECT_EQ(other.selAlignment(), TextAlignment::Right);
    EXPECT_EQ(other.selIndent(), 500);
}

TEST_F(RichTextBoxTest, AFormatSetAtTheCaretIsThatOfWhatIsTyped)
{
    m_box->setPlainText(QStringLiteral("ab"));
    m_box->moveCursor(QTextCursor::Right);
    m_box->setSelBold(true);
    m_box->setSelFontSize(20);
    EXPECT_EQ(m_box->selBold(), true);
    QTest::keyClicks(m_box, QStringLiteral("xy"));
    m_box->moveCursor(QTextCursor::Left, QTextCursor::KeepAnchor);
    EXPECT_EQ(m_box->textCursor().selectedText(), QStringLiteral("y"));
    EXPECT_EQ(m_box->selBold(), true);
    EXPECT_EQ(m_box->selFontSize(), 20.0);
    m_box->moveCursor(QTextCursor::End);
    EXPECT_EQ(m_box->selBold(), false);
}

TEST_F(RichTextBoxTest, TypingBehindAPictureIsText)
{
    m_box->insertPicture(redPicture());
    EXPECT_EQ(m_box->textCursor().position(), 1) << "the caret is behind it";
    QTest::keyClicks(m_box, QStringLiteral("a"));
    QTest::keyClick(m_box, Qt::Key_Return);
    QTest::keyClicks(m_box, QStringLiteral("b"));
    EXPECT_EQ(m_box->plainText(), QStringLiteral(" a\nb"));
    const std::string rtf = m_box->rtf();
    EXPECT_NE(rtf.find("\\pict"), std::string::npos);
    EXPECT_EQ(rtf.find("\\pict"), rtf.rfind("\\pict"));
}

TEST_F(RichTextBoxTest, AnEmptySourceInsertsNothing)
{
    m_box->setPlainText(QStringLiteral("ab"));
    m_box->selectAll();
    m_box->insertObjectSource({});
    m_box->insertPicture({});
    EXPECT_EQ(m_box->plainText(), QStringLiteral("ab"));
    EXPECT_FALSE(m_box->canUndo());
}

TEST_F(RichTextBoxTest, BackspaceAtTheStartOfABulletTakesTheBulletAndNoLetter)
{
    m_box->setTextRtf(
        QStringLiteral("{\\rtf1 first\\par\\pard\\li200\\fi-200{\\*\\pn\\pnlvlblt{\\pntxtb\\'b7}}item\\par}"));
    m_box->moveCursor(QTextCursor::Down);
    ASSERT_EQ(m_box->selBullet(), true);
    QTest::keyClick(m_box, Qt::Key_Backspace);
    EXPECT_EQ(m_box->selBullet(), false);
    EXPECT_EQ(m_box->selIndent(), 0);
    EXPECT_EQ(m_box->plainText(), QStringLiteral("first\nitem"));
    QTest::keyClick(m_box, Qt::Key_Backspace);
    EXPECT_EQ(m_box->plainText(), QStringLiteral("firstitem"));
    m_box->undo();
    m_box->undo();
    EXPECT_EQ(m_box->selBullet(), true);
}

/// A change that a learner or a toolbar makes with one command.
struct Edit
{
    const char *name;
    void (*act)(RichTextBox &box);
};

constexpr auto edits = std::to_array<Edit>({
    {"SelRTF", [](RichTextBox &box) { box.setSelRtf(QStringLiteral("{\\rtf1 \\b x\\b0\\par\\i y\\i0\\par z}")); }},
    {"SelRTFWithNumbers",
     [](RichTextBox &box) {
         box.setSelRtf(QStringLiteral("{\\rtf1\\pard{\\*\\pn\\pnlvlbody\\pndec\\pnstart1{\\pntxta.}}x\\par y\\par}"));
     }},
    {"SelRTFOfPlainText", [](RichTextBox &box) { box.setSelRtf(QStringLiteral("plain\ntext")); }},
    {"Picture", [](RichTextBox &box) { box.insertPicture(redPicture()); }},
    {"Paste",
     [](RichTextBox &box) {
         RichTextBox source;
         source.setTextRtf(redRtf);
         source.selectAll();
         source.copy();
         box.paste();
     }},
    {"PasteText",
     [](RichTextBox &box) {
         QGuiApplication::clipboard()->setText(QStringLiteral("some\ntext"));
         QTest::keyClick(&box, Qt::Key_V, Qt::ControlModifier | Qt::ShiftModifier);
     }},
    {"Cut", [](RichTextBox &box) { QTest::keyClick(&box, Qt::Key_X, Qt::ControlModifier); }},
    {"Bold", [](RichTextBox &box) { box.setSelBold(true); }},
    {"Color", [](RichTextBox &box) { box.setSelColor(Qt::red); }},
    {"FontName", [](RichTextBox &box) { box.setSelFontName(QStringLiteral("Courier New")); }},
    {"FontSize", [](RichTextBox &box) { box.setSelFontSize(30); }},
    {"Bullet", [](RichTextBox &box) { box.setSelBullet(true); }},
    {"Alignment", [](RichTextBox &box) { box.setSelAlignment(TextAlignment::Center); }},
    {"Indent", [](RichTextBox &box) { box.setSelIndent(-500); }},
});

class EveryEdit : public RichTextBoxTest, public testing::WithParamInterface<Edit>
{
};

TEST_P(EveryEdit, IsOneUndoStepOfItsOwn)
{
    const std::string rtf = "{\\rtf1 text\\par\\pard\\li400\\fi-400{\\*\\pn\\pnlvlbody\\pndec\\pnstart1{\\pntxta.}}"
                            "one\\par two\\par \\b three\\b0\\par four\\par\\pard end\\par}";
    m_box->setRtf(rtf);
    m_box->moveCursor(QTextCursor::End);
    QTest::keyClicks(m_box, QStringLiteral("typed"));
    const std::string typed = writeRtf(*m_box->document());
    QTextCursor cursor = m_box->textCursor();
    cursor.setPosition(10); // within "two", to within "three"
    cursor.setPosition(15, QTextCursor::KeepAnchor);
    m_box->setTextCursor(cursor);

    GetParam().act(*m_box);
    const std::string edited = writeRtf(*m_box->document());
    EXPECT_NE(edited, typed);
    m_box->moveCursor(QTextCursor::End);
    QTest::keyClicks(m_box, QStringLiteral("more"));

    m_box->undo();
    EXPECT_EQ(writeRtf(*m_box->document()), edited) << "typing on is a step of its own";
    m_box->undo();
    EXPECT_EQ(writeRtf(*m_box->document()), typed);
    const QTextBlock last = m_box->document()->findBlockByNumber(4);
    ASSERT_NE(last.textList(), nullptr);
    EXPECT_EQ(last.textList()->itemText(last), QStringLiteral("4."));
    m_box->redo();
    EXPECT_EQ(writeRtf(*m_box->document()), edited);
    m_box->undo();
    m_box->undo();
    EXPECT_EQ(m_box->rtf(), rtf);
    EXPECT_FALSE(m_box->canUndo());
}

INSTANTIATE_TEST_SUITE_P(Of, EveryEdit, testing::ValuesIn(edits),
                         [](const auto &edit) { return std::string(edit.param.name); });

TEST_F(RichTextBoxTest, ALockedBoxTakesNoChange)
{
    m_box->setTextRtf(redRtf);
    m_box->setLocked(true);
    EXPECT_TRUE(m_box->isLocked());
    QTest::keyClicks(m_box, QStringLiteral("abc"));
    QTest::keyClick(m_box, Qt::Key_Delete);
    QTest::keyClick(m_box, Qt::Key_Backspace);
    QTest::keyClick(m_box, Qt::Key_V, Qt::ControlModifier);
    EXPECT_EQ(m_box->textRtf(), redRtf);
    m_box->setLocked(false);
    EXPECT_FALSE(m_box->isLocked());
    QTest::keyClicks(m_box, QStringLiteral("a"));
    EXPECT_EQ(m_box->toPlainText(), QStringLiteral("aplain red bold"));
}

TEST_F(RichTextBoxTest, ALockedBoxIsSelectedByMouseAndHasNoCaret)
{
    m_box->setPlainText(QStringLiteral("several words"));
    m_box->setLocked(true);
    QTest::mouseDClick(m_box->viewport(), Qt::LeftButton, {}, m_box->cursorRect().center() + QPoint(4, 0));
    EXPECT_EQ(m_box->textCursor().selectedText(), QStringLiteral("several"));
    EXPECT_FALSE(m_box->textInteractionFlags().testFlag(Qt::TextSelectableByKeyboard)) << "which would show a caret";
}

TEST_F(RichTextBoxTest, ALockedBoxIsScrolledByKeys)
{
    showManyLines();
    m_box->setLocked(true);
    const QScrollBar *bar = m_box->verticalScrollBar();
    QTest::keyClick(m_box, Qt::Key_Down);
    const int aLine = bar->value();
    EXPECT_GT(aLine, 0);
    QTest::keyClick(m_box, Qt::Key_PageDown);
    EXPECT_GT(bar->value(), aLine + 50);
    QTest::keyClick(m_box, Qt::Key_Up);
    QTest::keyClick(m_box, Qt::Key_Home);
    EXPECT_EQ(bar->value(), 0);
    QTest::keyClick(m_box, Qt::Key_End);
    EXPECT_EQ(bar->value(), bar->maximum());
}

TEST_F(RichTextBoxTest, ALockedBoxLeavesTheCommandKeysToItsWindow)
{
    m_box->setTextRtf(redRtf);
    m_box->setLocked(true);
    QTest::keyClick(m_box, Qt::Key_Escape);
    QTest::keyClick(m_box, Qt::Key_N, Qt::AltModifier);
    QTest::keyClick(m_box, Qt::Key_E, Qt::AltModifier);
    QTest::keyClick(m_box, Qt::Key_M);
    EXPECT_EQ(m_window.keys, (QVector<int>{Qt::Key_Escape, Qt::Key_N, Qt::Key_E, Qt::Key_M}));
}

TEST_F(RichTextBoxTest, AltWithALetterTypesNothing)
{
    QTest::keyClick(m_box, 'n', Qt::AltModifier);
    EXPECT_EQ(m_box->toPlainText(), QString());
    EXPECT_TRUE(m_window.keys.isEmpty());
}

TEST_F(RichTextBoxTest, ItSaysWhenTheMouseIsPressedInTheText)
{
    const QSignalSpy clicked(m_box, &RichTextBox::clicked);
    QTest::mousePress(m_box->viewport(), Qt::LeftButton, {}, {20, 20});
    EXPECT_EQ(clicked.count(), 1);
    QTest::mouseRelease(m_box->viewport(), Qt::LeftButton, {}, {20, 20});
    EXPECT_EQ(clicked.count(), 1);
}

TEST_F(RichTextBoxTest, TheWheelWithControlDoesNotChangeTheFont)
{
    showManyLines();
    m_box->setLocked(true);
    const double before = m_box->font().pointSizeF();
    QWheelEvent turn({50, 10}, m_box->viewport()->mapToGlobal(QPointF(50, 10)), {}, {0, 120}, Qt::NoButton,
                     Qt::ControlModifier, Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(m_box->viewport(), &turn);
    EXPECT_EQ(m_box->font().pointSizeF(), before);
}

TEST(RichTextBoxLook, TheDefaultFontIsTheNotebooksAtTenPoints)
{
    const RichTextBox box;
    EXPECT_EQ(box.document()->defaultFont().family(), QStringLiteral("Comic Sans MS"));
    EXPECT_EQ(box.document()->defaultFont().pointSizeF(), 10);
    EXPECT_TRUE(box.acceptRichText());
}

/// The colour that stands out most against the ground, in the part of the box where \p position stands.
QColor inkAt(RichTextBox &box, int position)
{
    QTextCursor cursor(box.document());
    cursor.setPosition(position);
    const QRect around = box.cursorRect(cursor).adjusted(-2, 0, 8, 0);
    const QColor ground = box.palette().color(QPalette::Base);
    const QImage image = box.viewport()->grab(around).toImage();
    QColor ink = ground;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const QColor color = image.pixelColor(x, y);
            if (contrastRatio(color, ground) > contrastRatio(ink, ground)) {
                ink = color;
            }
        }
    }
    return ink;
}

TEST(RichTextBoxLook, TextWithoutAColourTakesThePapersInkAndColouredTextKeepsItsOwn)
{
    NotebookPage page(PageRuling{});
    auto *box = new RichTextBox(&page);
    box->setTextRtf(QStringLiteral("{\\rtf1{\\colortbl ;\\red240\\green160\\blue32;}\\fs72 HHH \\cf1 HHH\\par}"));
    page.resize(600, 200);
    box->resize(600, 200);
    page.show();
    for (const QColor &paper : {QColor(Qt::white), QColor(0x20, 0x24, 0x2c)}) {
        page.setPaperColor(paper);
        EXPECT_GE(contrastRatio(inkAt(*box, 1), page.palette().color(QPalette::Base)), 7.0);
        EXPECT_NEAR(inkAt(*box, 6).hue(), QColor(240, 160, 32).hue(), 3);
    }
}

/// Where the first line of the text begins, in the box's own pixels.
int topOfText(const RichTextBox &box)
{
    return box.viewport()->geometry().top() + box.cursorRect(QTextCursor(box.document())).top();
}

class CenteredBox : public testing::Test
{
protected:
    CenteredBox()
    {
        box.setCentered(Qt::Horizontal | Qt::Vertical);
        box.resize(300, 200);
        box.show();
    }

    RichTextBox box;
};

TEST_F(CenteredBox, AShortTextStandsInTheMiddleAlsoAfterResizing)
{
    box.setTextRtf(QStringLiteral("{\\rtf1 one\\par two\\par}"));
    for (const int height : {200, 320, 120}) {
        box.resize(300, height);
        const int above = topOfText(box);
        const int below = box.height() - above - qRound(box.document()->size().height());
        EXPECT_NEAR(above, below, 8) << height;
        EXPECT_GT(above, 10) << height;
    }
}

TEST_F(CenteredBox, ALongTextBeginsAtTheTopAndScrolls)
{
    QString lines;
    for (int line = 0; line < 100; ++line) {
        lines += QStringLiteral("line\\par ");
    }
    box.setTextRtf(QStringLiteral("{\\rtf1 %1}").arg(lines));
    EXPECT_LT(topOfText(box), 12);
    EXPECT_GT(box.verticalScrollBar()->maximum(), 0);
    box.setTextRtf(QStringLiteral("{\\rtf1 short\\par}"));
    EXPECT_GT(topOfText(box), 60) << "and the next short text is in the middle again";
    EXPECT_EQ(box.verticalScrollBar()->maximum(), 0);
}

/// What is written of the box, in its own pixels.
QRect inkOf(RichTextBox &box)
{
    const QImage picture = box.grab().toImage();
    const QRgb paper = picture.pixel(box.contentsRect().topLeft());
    QRect ink;
    for (int y = 4; y < picture.height() - 4; ++y) {
        for (int x = 4; x < picture.width() - 4; ++x) {
            if (picture.pixel(x, y) != paper) {
                ink |= QRect(x, y, 1, 1);
            }
        }
    }
    return ink;
}

int linesIn(const RichTextBox &box)
{
    int lines = 0;
    for (QTextBlock block = box.document()->begin(); block.isValid(); block = block.next()) {
        lines += block.layout()->lineCount();
    }
    return lines;
}

TEST_F(CenteredBox, AShortLineStandsInTheMiddleFromSideToSideToo)
{
    box.setTextRtf(QStringLiteral("{\\rtf1 Paris\\par}"));
    for (const int width : {300, 500, 200}) {
        box.resize(width, 200);
        const QRect ink = inkOf(box);
        EXPECT_NEAR(ink.left(), box.width() - ink.right(), 4) << width;
    }
}

TEST_F(CenteredBox, TheLinesOfAShortTextKeepTheirAlignmentToOneAnother)
{
    box.resize(600, 200);
    box.setTextRtf(QStringLiteral("{\\rtf1 i\\par a line that is longer\\par\\qr i\\par}"));
    const QRect ink = inkOf(box);
    EXPECT_NEAR(ink.left(), box.width() - ink.right(), 4);
    EXPECT_LT(ink.width(), 300);
    const auto startOf = [this](int block) {
        QTextCursor cursor(box.document()->findBlockByNumber(block));
        return box.viewport()->x() + box.cursorRect(cursor).left();
    };
    EXPECT_EQ(startOf(0), startOf(1));
    EXPECT_NEAR(startOf(2), ink.right(), 6) << "at the right end of the longest line, not of the box";
}

TEST_F(CenteredBox, ATextAsWideAsTheBoxIsBrokenAsInAnyBox)
{
    const QString words = QStringLiteral("{\\rtf1 %1\\par short\\par}").arg(QStringLiteral("word ").repeated(40));
    RichTextBox plain;
    plain.resize(box.size());
    plain.show();
    plain.setTextRtf(words);
    box.setTextRtf(words);
    EXPECT_EQ(linesIn(box), linesIn(plain));
    box.setTextRtf(QStringLiteral("{\\rtf1 Paris\\par}"));
    box.setTextRtf(words);
    EXPECT_EQ(linesIn(box), linesIn(plain)) << "also after a short text";
    for (const int width : {500, 900, 300}) {
        box.resize(width, 200);
        plain.resize(width, 200);
        EXPECT_EQ(linesIn(box), linesIn(plain)) << "width " << width;
    }
}

TEST_F(CenteredBox, StandsInTheMiddleWhenItWasFilledBeforeItWasSeen)
{
    RichTextBox hidden;
    hidden.setCentered(Qt::Horizontal | Qt::Vertical);
    hidden.resize(500, 300);
    hidden.setTextRtf(QStringLiteral("{\\rtf1 Paris\\par}"));
    hidden.show();
    const QRect ink = inkOf(hidden);
    EXPECT_NEAR(ink.left(), hidden.width() - ink.right(), 4);
    EXPECT_NEAR(ink.top(), hidden.height() - ink.bottom(), 14);
    hidden.hide();
    hidden.setTextRtf(QStringLiteral("{\\rtf1 a somewhat longer line\\par}"));
    hidden.show();
    const QRect longer = inkOf(hidden);
    EXPECT_NEAR(longer.left(), hidden.width() - longer.right(), 4);
    EXPECT_GT(longer.width(), ink.width());
    EXPECT_EQ(hidden.horizontalScrollBar()->maximum(), 0);
}

TEST_F(CenteredBox, NeedsNoScrollBarFromSideToSideForATextThatIsBroken)
{
    for (int width = 200; width < 500; width += 3) {
        RichTextBox hidden;
        hidden.setCentered(Qt::Horizontal | Qt::Vertical);
        hidden.resize(50, 30);
        hidden.setTextRtf(
            QStringLiteral("{\\rtf1 In which year did this happen, and who was responsible for it?\\par}"));
        hidden.resize(width, 200);
        hidden.show();
        EXPECT_EQ(hidden.horizontalScrollBar()->maximum(), 0) << width;
        const QRect ink = inkOf(hidden);
        EXPECT_NEAR(ink.left(), hidden.width() - ink.right(), 8) << width;
    }
}

TEST_F(CenteredBox, CanStandInTheMiddleInOneDirectionOnly)
{
    box.setTextRtf(QStringLiteral("{\\rtf1 Paris\\par}"));
    box.setCentered(Qt::Vertical);
    EXPECT_LT(inkOf(box).left(), 12);
    EXPECT_NEAR(inkOf(box).top(), box.height() - inkOf(box).bottom(), 14);
    box.setCentered(Qt::Horizontal);
    EXPECT_NEAR(inkOf(box).left(), box.width() - inkOf(box).right(), 4);
    EXPECT_LT(inkOf(box).top(), 20);
}

TEST_F(CenteredBox, HasNoScrollBarThatIsNeededOnlyForItself)
{
    box.setTextRtf(QStringLiteral("{\\rtf1 In which year did this happen, and who was responsible for it?\\par}"));
    for (int width = 200; width < 500; ++width) {
        box.resize(width, 300);
        const int lines = linesIn(box);
        box.resize(width, qCeil(box.document()->size().height()) + 2 * box.frameWidth());
        EXPECT_EQ(box.verticalScrollBar()->maximum(), 0) << width;
        EXPECT_EQ(linesIn(box), lines) << width;
    }
}

} // namespace
