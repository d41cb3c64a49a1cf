#include "tests/txtEdit/EditorTest.h"

#include <QColorDialog>
#include <QFile>
#include <QLineEdit>
#include <QTemporaryDir>

#include <array>
#include <stdexcept>

namespace {

const QString rtfFormat = QStringLiteral("text/rtf");

class EditCommands : public EditorTest
{
};
class FormatCommands : public EditorTest
{
};
class FormatState : public EditorTest
{
};

const QMimeData &clipboard()
{
    return *QGuiApplication::clipboard()->mimeData();
}

// Cut, copy and paste.

TEST_F(EditCommands, CopyPutsRichTextAndNothingElseOnTheClipboard)
{
    show("one \\b two\\b0  three");
    select(2, 6);
    clickOn(EditButton::Copy);
    EXPECT_EQ(clipboard().formats(), (QStringList{rtfFormat, QStringLiteral("application/rtf")}));
    EXPECT_EQ(QString::fromLatin1(clipboard().data(rtfFormat)), box->selRtf());
    EXPECT_TRUE(clipboard().data(rtfFormat).startsWith("{\\rtf1"));
    EXPECT_EQ(clipboard().data(QStringLiteral("application/rtf")), clipboard().data(rtfFormat));
    EXPECT_EQ(text(), QStringLiteral("one two three"));
    EXPECT_FALSE(box->canUndo());
}

TEST_F(EditCommands, CutTakesTheSelectionOutInOneStep)
{
    show("one \\b two\\b0  three");
    const std::string before = box->rtf();
    select(4, 8);
    const QString selected = box->selRtf();
    clickOn(EditButton::Cut);
    EXPECT_EQ(text(), QStringLiteral("one three"));
    EXPECT_EQ(clipboard().formats(), (QStringList{rtfFormat, QStringLiteral("application/rtf")}));
    EXPECT_EQ(QString::fromLatin1(clipboard().data(rtfFormat)), selected);
    EXPECT_FALSE(isEnabled(EditButton::Cut)) << "nothing is selected any more";
    EXPECT_TRUE(isEnabled(EditButton::Undo));
    expectOneStepBackTo(before);
}

TEST_F(EditCommands, WithoutASelectionCuttingAndCopyingLeaveTheClipboard)
{
    putRtfOnClipboard("kept");
    edit.ToolbarEditCommand(EditButton::Copy);
    edit.ToolbarEditCommand(EditButton::Cut);
    EXPECT_EQ(clipboard().data(rtfFormat), "{\\rtf1 kept}");
    EXPECT_FALSE(box->canUndo());
}

TEST_F(EditCommands, PasteReplacesTheSelectionByRichTextInOneStep)
{
    const std::string before = box->rtf();
    putRtfOnClipboard("\\b zwei");
    select(4, 7);
    clickOn(EditButton::Paste);
    EXPECT_EQ(text(), QStringLiteral("one zwei three"));
    select(4, 8);
    EXPECT_EQ(box->selBold(), true);
    select(8, 14);
    EXPECT_EQ(box->selBold(), false);
    expectOneStepBackTo(before);
}

TEST_F(EditCommands, PasteTakesRichTextWithLettersBeyondAscii)
{
    putOnClipboard(rtfFormat, QByteArrayLiteral("{\\rtf1\\ansi\\ansicpg1252 caf\xe9}"));
    clickOn(EditButton::Paste);
    EXPECT_EQ(text(), QStringLiteral("caf\u00e9one two three"));
}

TEST_F(EditCommands, WhatWasCutInOneBoxIsPastedInTheOther)
{
    show("one \\b two\\b0  three");
    select(4, 7);
    clickOn(EditButton::Cut);
    other->setFocus();
    clickOn(EditButton::Paste);
    EXPECT_EQ(other->plainText(), QStringLiteral("two"));
    EXPECT_EQ(other->selBold(), true);
}

TEST_F(EditCommands, PlainTextIsNotPasted)
{
    QGuiApplication::clipboard()->setText(QStringLiteral("plain"));
    EXPECT_FALSE(isEnabled(EditButton::Paste));
    edit.ToolbarEditCommand(EditButton::Paste);
    EXPECT_EQ(text(), QStringLiteral("one two three"));
}

TEST_F(EditCommands, WhatOnlyClaimsToBeRichTextIsNotPasted)
{
    auto *data = new QMimeData;
    data->setData(rtfFormat, "not at all");
    data->setText(QStringLiteral("plain"));
    QGuiApplication::clipboard()->setMimeData(data);
    clickOn(EditButton::Paste);
    EXPECT_EQ(text(), QStringLiteral("one two three"));
    EXPECT_FALSE(box->canUndo());
}

// Undo, object, help.

TEST_F(EditCommands, UndoTakesTheLastEditBack)
{
    const std::string before = box->rtf();
    select(0, 3);
    clickOn(FormatButton::Bold);
    clickOn(FormatButton::Italic);
    clickOn(EditButton::Undo);
    EXPECT_EQ(box->selBold(), true);
    EXPECT_EQ(box->selItalic(), false);
    EXPECT_FALSE(isPressed(FormatButton::Italic));
    clickOn(EditButton::Undo);
    EXPECT_EQ(box->rtf(), before);
    EXPECT_FALSE(isPressed(FormatButton::Bold));
    EXPECT_FALSE(isEnabled(EditButton::Undo));
}

TEST_F(EditCommands, HelpIsTheWindows)
{
    clickOn(EditButton::Help);
    EXPECT_EQ(helps, 1);
}

TEST_F(EditCommands, InsertObjectPutsTheChosenFileIntoTheText)
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("table.txt"));
    QFile file(path);
    ASSERT_TRUE(file.open(QFile::WriteOnly));
    file.write("1 2 3");
    file.close();
    const std::string before = box->rtf();
    select(4, 7);
    DialogAnswers answers;
    answers.act([&](QWidget &dialog) {
        EXPECT_EQ(dialog.parentWidget(), &window);
        EXPECT_TRUE(QTest::qWaitForWindowActive(&dialog));
        click(dialog, "optCreateFromFile");
        control<QLineEdit>(dialog, "txtFile").setText(path);
        click(dialog, "cmdOK");
    });
    clickOn(EditButton::InsertObject);
    EXPECT_EQ(box->toPlainText(), QStringLiteral("one \ufffc three"));
    EXPECT_TRUE(isBackInTheText());
    EXPECT_TRUE(isEnabled(EditButton::Undo));
    expectOneStepBackTo(before);
}

TEST_F(EditCommands, ACancelledObjectInsertsNothing)
{
    fonts->setFocus();
    DialogAnswers answers;
    answers.key(Qt::Key_Escape);
    clickOn(EditButton::InsertObject);
    EXPECT_EQ(text(), QStringLiteral("one two three"));
    EXPECT_FALSE(box->canUndo());
    EXPECT_TRUE(isBackInTheText());
}

// Colour.

TEST_F(FormatCommands, TheColourDialogStartsFromTheSelectionsColour)
{
    show("one \\cf1 two\\cf0  three");
    const std::string before = box->rtf();
    select(4, 7);
    DialogAnswers answers;
    answers.act([&](QWidget &dialog) {
        auto &colors = dynamic_cast<QColorDialog &>(dialog);
        EXPECT_EQ(colors.objectName(), QStringLiteral("CommonDialog1"));
        EXPECT_EQ(colors.parentWidget(), &window);
        EXPECT_EQ(colors.currentColor(), QColor(192, 0, 0));
        EXPECT_FALSE(colors.testOption(QColorDialog::ShowAlphaChannel));
        colors.setCurrentColor(QColor(0, 0, 255));
        QTest::keyClick(&dialog, Qt::Key_Return);
    });
    clickOn(FormatButton::FontColor);
    EXPECT_EQ(box->selColor(), QColor(0, 0, 255));
    EXPECT_TRUE(isBackInTheText());
    expectOneStepBackTo(before);
}

TEST_F(FormatCommands, WithoutOneColourTheDialogStartsFromTheInk)
{
    show("one \\cf1 two\\cf0  three");
    DialogAnswers answers;
    const auto startsFromInk = [&](QWidget &dialog) {
        EXPECT_EQ(dynamic_cast<QColorDialog &>(dialog).currentColor(), box->palette().color(QPalette::Text));
        QTest::keyClick(&dialog, Qt::Key_Escape);
    };
    answers.act(startsFromInk).act(startsFromInk);
    select(0, 3);
    clickOn(FormatButton::FontColor);
    select(0, 7);
    clickOn(FormatButton::FontColor);
}

TEST_F(FormatCommands, ACancelledColourChangesNothing)
{
    select(0, 3);
    DialogAnswers answers;
    answers.act([](QWidget &dialog) {
        dynamic_cast<QColorDialog &>(dialog).setCurrentColor(Qt::red);
        QTest::keyClick(&dialog, Qt::Key_Escape);
    });
    clickOn(FormatButton::FontColor);
    EXPECT_EQ(box->selColor(), QColor());
    EXPECT_FALSE(box->canUndo());
    EXPECT_TRUE(isBackInTheText());
}

TEST_F(FormatCommands, WithoutASelectionTheColourIsThatOfWhatIsTypedNext)
{
    DialogAnswers answers;
    answers.act([](QWidget &dialog) {
        dynamic_cast<QColorDialog &>(dialog).setCurrentColor(Qt::red);
        QTest::keyClick(&dialog, Qt::Key_Return);
    });
    clickOn(FormatButton::FontColor);
    QTest::keyClick(box, Qt::Key_X);
    select(0, 1);
    EXPECT_EQ(text().at(0), QLatin1Char('x'));
    EXPECT_EQ(box->selColor(), QColor(Qt::red));
}

// Check buttons.

struct Check
{
    FormatButton button;
    std::optional<bool> (RichTextBox::*value)() const;
    QByteArray mixed; ///< 13 characters of which the first 7 are mixed, the first 3 are on
};

const std::array<Check, 4> checks{{
    {FormatButton::Bold, &RichTextBox::selBold, "\\b one\\b0  two three"},
    {FormatButton::Italic, &RichTextBox::selItalic, "\\i one\\i0  two three"},
    {FormatButton::Underline, &RichTextBox::selUnderline, "\\ul one\\ulnone  two three"},
    {FormatButton::Bullet, &RichTextBox::selBullet,
     "\\pard\\li200\\fi-200{\\*\\pn\\pnlvlblt{\\pntxtb\\'b7}}one\\par\\pard two\\par three"},
}};

TEST_F(FormatCommands, EachCheckButtonSwitchesItsPropertyOnAndOff)
{
    for (const Check &check : checks) {
        show("one two three");
        const std::string before = box->rtf();
        select(0, 3);
        clickOn(check.button);
        EXPECT_EQ((box->*check.value)(), true) << check.mixed.constData();
        EXPECT_TRUE(isPressed(check.button));
        clickOn(check.button);
        EXPECT_EQ((box->*check.value)(), false) << check.mixed.constData();
        EXPECT_FALSE(isPressed(check.button));
        box->undo();
        EXPECT_EQ((box->*check.value)(), true);
        EXPECT_TRUE(isPressed(check.button)) << "the state follows an undo";
        box->undo();
        EXPECT_EQ(box->rtf(), before);
        EXPECT_FALSE(isPressed(check.button));
    }
}

TEST_F(FormatCommands, AMixedSelectionIsShownAsOffAndSwitchedOn)
{
    for (const Check &check : checks) {
        show(check.mixed);
        select(0, 3);
        EXPECT_TRUE(isPressed(check.button)) << check.mixed.constData();
        select(0, 7);
        EXPECT_EQ((box->*check.value)(), std::nullopt);
        EXPECT_FALSE(isPressed(check.button));
        clickOn(check.button);
        EXPECT_EQ((box->*check.value)(), true) << check.mixed.constData();
        EXPECT_TRUE(isPressed(check.button));
    }
}

TEST_F(FormatCommands, WithoutASelectionAButtonIsForWhatIsTypedNext)
{
    clickOn(FormatButton::Bold);
    EXPECT_TRUE(isPressed(FormatButton::Bold));
    press(Qt::Key_X);
    EXPECT_TRUE(isPressed(FormatButton::Bold));
    clickOn(FormatButton::Bold);
    press(Qt::Key_Y);
    EXPECT_EQ(text(), QStringLiteral("xyone two three"));
    select(0, 1);
    EXPECT_EQ(box->selBold(), true);
    select(1, 2);
    EXPECT_EQ(box->selBold(), false);
}

// Paragraphs.

TEST_F(FormatCommands, ThreeClicksOnAlignmentGoRound)
{
    EXPECT_EQ(alignmentShown(), QStringLiteral("align-left"));
    clickOn(FormatButton::Alignment);
    EXPECT_EQ(box->selAlignment(), TextAlignment::Center);
    EXPECT_EQ(alignmentShown(), QStringLiteral("align-center"));
    clickOn(FormatButton::Alignment);
    EXPECT_EQ(box->selAlignment(), TextAlignment::Right);
    EXPECT_EQ(alignmentShown(), QStringLiteral("align-right"));
    clickOn(FormatButton::Alignment);
    EXPECT_EQ(box->selAlignment(), TextAlignment::Left);
    EXPECT_EQ(alignmentShown(), QStringLiteral("align-left"));
}

TEST_F(FormatCommands, AlignmentGoesByWhatItsButtonShows)
{
    show("\\qc one\\par\\qr two\\par");
    select(0, 7);
    EXPECT_EQ(alignmentShown(), QStringLiteral("align-left")) << "mixed";
    clickOn(FormatButton::Alignment);
    EXPECT_EQ(box->selAlignment(), TextAlignment::Center);
    EXPECT_EQ(alignmentShown(), QStringLiteral("align-center"));
}

TEST_F(FormatCommands, IndentsMoveBy500TwipsWithoutBounds)
{
    clickOn(FormatButton::DecreaseIndent);
    EXPECT_EQ(box->selIndent(), -500);
    clickOn(FormatButton::IncreaseIndent);
    EXPECT_EQ(box->selIndent(), 0);
    for (int i = 0; i < 50; ++i) {
        clickOn(FormatButton::IncreaseIndent);
    }
    EXPECT_EQ(box->selIndent(), 25000);
}

TEST_F(FormatCommands, ParagraphsOfDifferentIndentsKeepTheirDifference)
{
    show("\\pard\\li300 one\\par\\pard\\li1000 two");
    const std::string before = box->rtf();
    select(0, 7);
    clickOn(FormatButton::DecreaseIndent);
    select(0, 0);
    EXPECT_EQ(box->selIndent(), -200);
    select(5, 5);
    EXPECT_EQ(box->selIndent(), 500);
    expectOneStepBackTo(before);
}

TEST_F(FormatCommands, ActOnTheBoxThatLastHadTheFocus)
{
    EXPECT_EQ(&edit.box(), box);
    other->setFocus();
    EXPECT_EQ(&edit.box(), other);
    fonts->setFocus();
    EXPECT_EQ(&edit.box(), other);
    clickOn(FormatButton::Alignment);
    EXPECT_EQ(other->selAlignment(), TextAlignment::Center);
    EXPECT_EQ(box->selAlignment(), TextAlignment::Left);
    box->setFocus();
    EXPECT_EQ(alignmentShown(), QStringLiteral("align-left"));
    other->setFocus();
    EXPECT_EQ(alignmentShown(), QStringLiteral("align-center"));
}

// The state of the tools.

TEST_F(FormatState, FollowsTheCaret)
{
    show("one \\b\\i\\ul two\\b0\\i0\\ulnone\\par\\qr three\\par");
    for (const int position : {7, 5}) {
        select(position, position);
        for (const FormatButton button : {FormatButton::Bold, FormatButton::Italic, FormatButton::Underline}) {
            EXPECT_TRUE(isPressed(button));
        }
    }
    EXPECT_EQ(alignmentShown(), QStringLiteral("align-left"));
    press(Qt::Key_End, Qt::ControlModifier);
    press(Qt::Key_Left);
    EXPECT_FALSE(isPressed(FormatButton::Bold));
    EXPECT_EQ(alignmentShown(), QStringLiteral("align-right"));
}

TEST_F(FormatState, ABulletTakenByBackspaceIsNoLongerPressed)
{
    clickOn(FormatButton::Bullet);
    ASSERT_TRUE(isPressed(FormatButton::Bullet));
    press(Qt::Key_Backspace);
    EXPECT_EQ(box->selBullet(), false);
    EXPECT_FALSE(isPressed(FormatButton::Bullet));
}

TEST_F(FormatState, CutAndCopyNeedASelection)
{
    EXPECT_FALSE(isEnabled(EditButton::Cut));
    EXPECT_FALSE(isEnabled(EditButton::Copy));
    press(Qt::Key_Right, Qt::ShiftModifier);
    EXPECT_TRUE(isEnabled(EditButton::Cut));
    EXPECT_TRUE(isEnabled(EditButton::Copy));
    press(Qt::Key_Right);
    EXPECT_FALSE(isEnabled(EditButton::Cut));
    EXPECT_FALSE(isEnabled(EditButton::Copy));
}

TEST_F(FormatState, PasteNeedsRichTextOnTheClipboard)
{
    EXPECT_FALSE(isEnabled(EditButton::Paste));
    putRtfOnClipboard("text");
    EXPECT_TRUE(isEnabled(EditButton::Paste));
    QGuiApplication::clipboard()->setText(QStringLiteral("plain"));
    EXPECT_FALSE(isEnabled(EditButton::Paste));
    select(0, 3);
    press(Qt::Key_C, Qt::ControlModifier);
    EXPECT_TRUE(isEnabled(EditButton::Paste));
    EXPECT_EQ(clipboard().text(), QStringLiteral("one")) << "the box's own copying is plain text too";
}

TEST_F(FormatState, CopyingEnablesPasteInEveryWindow)
{
    QWidget another;
    EditTools itsTools(&another);
    RichTextBox itsBox(&another);
    txtEdit itsEdit(itsTools, {&another, [] {}, [](const QKeyEvent &) { return false; }});
    itsEdit.addBox(itsBox);
    another.show();
    EXPECT_FALSE(itsTools.button(EditButton::Paste).isEnabled());
    select(0, 3);
    clickOn(EditButton::Copy);
    EXPECT_TRUE(isEnabled(EditButton::Paste));
    EXPECT_TRUE(itsTools.button(EditButton::Paste).isEnabled());
}

TEST_F(FormatState, UndoNeedsAnEdit)
{
    EXPECT_FALSE(isEnabled(EditButton::Undo));
    EXPECT_FALSE(edit.CanUndo());
    press(Qt::Key_X);
    EXPECT_TRUE(isEnabled(EditButton::Undo));
    EXPECT_TRUE(edit.CanUndo());
    press(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_FALSE(isEnabled(EditButton::Undo));
    press(Qt::Key_Y);
    EXPECT_TRUE(isEnabled(EditButton::Undo));
    other->setFocus();
    EXPECT_FALSE(isEnabled(EditButton::Undo)) << "the other box has its own edits";
}

TEST_F(FormatState, IsNotFollowedWhileTheToolsAreHiddenAndIsRightWhenTheyAreShown)
{
    show("\\qc\\b one\\b0\\par\\ql two");
    select(5, 5);
    tools->hide();
    select(0, 3);
    putRtfOnClipboard("text");
    EXPECT_FALSE(isPressed(FormatButton::Bold));
    EXPECT_EQ(alignmentShown(), QStringLiteral("align-left"));
    EXPECT_FALSE(isEnabled(EditButton::Paste));
    tools->show();
    EXPECT_TRUE(isPressed(FormatButton::Bold));
    EXPECT_EQ(alignmentShown(), QStringLiteral("align-center"));
    EXPECT_TRUE(isEnabled(EditButton::Paste));
    EXPECT_TRUE(isEnabled(EditButton::Cut));
    EXPECT_EQ(fonts->currentText(), listedFont());
    EXPECT_EQ(sizes->currentText(), QStringLiteral("10"));
}

TEST_F(FormatState, ChangesNothingInTheText)
{
    show("one \\b\\f1\\fs26 two\\b0\\f0\\fs20\\par\\qc three");
    const std::string before = box->rtf();
    for (int from = 0; from < 10; ++from) {
        for (int to = 0; to < 10; ++to) {
            select(from, to);
            edit.UpdateFormatState();
        }
    }
    EXPECT_EQ(box->rtf(), before);
    EXPECT_FALSE(box->canUndo());
}

TEST(EditorFailures, AFailedCommandIsReportedAndEndsAlone)
{
    QWidget window;
    auto *tools = new EditTools(&window);
    auto *box = new RichTextBox(&window);
    txtEdit edit(*tools, {&window, [] { throw std::runtime_error("no help"); },
                          [](const QKeyEvent &key) -> bool {
                              if (key.key() == Qt::Key_Escape) {
                                  throw std::runtime_error("not saved");
                              }
                              return false;
                          }});
    edit.addBox(*box);
    window.show();
    DialogAnswers answers;
    answers.press(QMessageBox::Ok);
    edit.ToolbarEditCommand(EditButton::Help);
    EXPECT_TRUE(answers.last().text.contains(QStringLiteral("no help")));
    answers.press(QMessageBox::Ok);
    QTest::keyClick(box, Qt::Key_Escape);
    EXPECT_TRUE(answers.last().text.contains(QStringLiteral("not saved")));
    QTest::keyClick(box, Qt::Key_X);
    EXPECT_EQ(box->plainText(), QStringLiteral("x"));
}

} // namespace
