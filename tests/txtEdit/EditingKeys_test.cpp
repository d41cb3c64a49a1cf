#include "tests/txtEdit/EditorTest.h"

#include <array>

namespace {

class EditingKeys : public EditorTest
{
protected:
    /// Whether the key would be consumed if it were pressed; its command is carried out.
    [[nodiscard]] bool isConsumed(Qt::Key key, Qt::KeyboardModifiers modifiers, const QString &signs = {})
    {
        return edit.EditingKeys(QKeyEvent(QEvent::KeyPress, key, modifiers, signs));
    }
};

TEST_F(EditingKeys, ShiftTabAndCtrlTabMoveTheIndent)
{
    press(Qt::Key_Tab, Qt::ControlModifier);
    EXPECT_EQ(box->selIndent(), 500);
    press(Qt::Key_Backtab, Qt::ShiftModifier);
    press(Qt::Key_Backtab, Qt::ShiftModifier);
    EXPECT_EQ(box->selIndent(), -500);
    EXPECT_TRUE(box->hasFocus());
    EXPECT_EQ(text(), QStringLiteral("one two three"));
    EXPECT_TRUE(isConsumed(Qt::Key_Tab, Qt::ControlModifier));
    EXPECT_TRUE(isConsumed(Qt::Key_Backtab, Qt::ShiftModifier));
}

struct Toggle
{
    Qt::Key key;
    std::optional<bool> (RichTextBox::*value)() const;
    FormatButton button;
    bool isConsumed;
};

constexpr auto toggles = std::to_array<Toggle>({
    {Qt::Key_B, &RichTextBox::selBold, FormatButton::Bold, false},
    {Qt::Key_I, &RichTextBox::selItalic, FormatButton::Italic, true},
    {Qt::Key_U, &RichTextBox::selUnderline, FormatButton::Underline, false},
    {Qt::Key_L, &RichTextBox::selBullet, FormatButton::Bullet, false},
});

TEST_F(EditingKeys, EachToggleSwitchesOnAndOffAndLeavesTheText)
{
    for (const Toggle &toggle : toggles) {
        show("one two three");
        select(4, 7);
        press(toggle.key, Qt::ControlModifier);
        EXPECT_EQ((box->*toggle.value)(), true) << toggle.key;
        EXPECT_TRUE(isPressed(toggle.button)) << toggle.key;
        press(toggle.key, Qt::ControlModifier);
        EXPECT_EQ((box->*toggle.value)(), false) << toggle.key;
        EXPECT_FALSE(isPressed(toggle.button)) << toggle.key;
        EXPECT_EQ(text(), QStringLiteral("one two three"));
        EXPECT_EQ(box->textCursor().selectedText(), QStringLiteral("two"));
    }
}

TEST_F(EditingKeys, OfTheTogglesOnlyCtrlIIsConsumed)
{
    for (const Toggle &toggle : toggles) {
        EXPECT_EQ(isConsumed(toggle.key, Qt::ControlModifier), toggle.isConsumed) << toggle.key;
        EXPECT_EQ((box->*toggle.value)(), true) << "and is carried out";
        press(toggle.key, Qt::ControlModifier);
        EXPECT_EQ(window.keys.contains(toggle.key), !toggle.isConsumed) << toggle.key;
    }
}

TEST_F(EditingKeys, CtrlBMakesAMixedSelectionBold)
{
    show("one \\b two\\b0  three");
    select(0, 13);
    EXPECT_FALSE(isPressed(FormatButton::Bold));
    press(Qt::Key_B, Qt::ControlModifier);
    EXPECT_EQ(box->selBold(), true);
    EXPECT_TRUE(isPressed(FormatButton::Bold));
}

TEST_F(EditingKeys, CtrlOAsksForAnObjectAndTypesNothing)
{
    DialogAnswers answers;
    answers.key(Qt::Key_Escape).key(Qt::Key_Escape);
    press(Qt::Key_O, Qt::ControlModifier);
    EXPECT_FALSE(isConsumed(Qt::Key_O, Qt::ControlModifier));
    EXPECT_EQ(text(), QStringLiteral("one two three"));
}

TEST_F(EditingKeys, CtrlFGoesToTheFonts)
{
    press(Qt::Key_F, Qt::ControlModifier);
    EXPECT_TRUE(fonts->hasFocus());
    EXPECT_EQ(text(), QStringLiteral("one two three"));
    EXPECT_FALSE(isConsumed(Qt::Key_F, Qt::ControlModifier));
}

TEST_F(EditingKeys, AltATurnsTheAlignment)
{
    press(Qt::Key_A, Qt::AltModifier);
    EXPECT_EQ(box->selAlignment(), TextAlignment::Center);
    EXPECT_EQ(alignmentShown(), QStringLiteral("align-center"));
    EXPECT_FALSE(isConsumed(Qt::Key_A, Qt::AltModifier));
    EXPECT_EQ(box->selAlignment(), TextAlignment::Right);
    EXPECT_EQ(text(), QStringLiteral("one two three"));
}

// Sizes.

TEST_F(EditingKeys, CtrlFullStopAndCtrlCommaMoveTheSize)
{
    select(0, 3);
    press(Qt::Key_Period, Qt::ControlModifier);
    EXPECT_EQ(box->selFontSize(), 11.0);
    EXPECT_EQ(sizes->currentText(), QStringLiteral("11"));
    press(Qt::Key_Comma, Qt::ControlModifier);
    press(Qt::Key_Comma, Qt::ControlModifier);
    EXPECT_EQ(box->selFontSize(), 9.0);
    EXPECT_TRUE(box->hasFocus());
    EXPECT_EQ(text(), QStringLiteral("one two three"));
    EXPECT_FALSE(isConsumed(Qt::Key_Comma, Qt::ControlModifier));
    EXPECT_FALSE(isConsumed(Qt::Key_Period, Qt::ControlModifier));
}

TEST_F(EditingKeys, TheSizeStaysBetweenEightAnd72)
{
    show("\\fs16 one");
    select(0, 3);
    press(Qt::Key_Comma, Qt::ControlModifier);
    EXPECT_EQ(box->selFontSize(), 8.0);
    EXPECT_EQ(sizes->currentIndex(), 1);
    EXPECT_FALSE(box->canUndo());
    show("\\fs144 one");
    select(0, 3);
    press(Qt::Key_Period, Qt::ControlModifier);
    EXPECT_EQ(box->selFontSize(), 72.0);
    EXPECT_EQ(sizes->currentIndex(), 16);
    EXPECT_FALSE(box->canUndo());
}

TEST_F(EditingKeys, FromMixedSizesThereIsNoneSmallerAndTheNextIsEight)
{
    show("one \\fs40 two");
    select(0, 7);
    ASSERT_EQ(sizes->currentIndex(), 0);
    press(Qt::Key_Comma, Qt::ControlModifier);
    EXPECT_EQ(box->selFontSize(), std::nullopt);
    press(Qt::Key_Period, Qt::ControlModifier);
    EXPECT_EQ(box->selFontSize(), 8.0);
    EXPECT_EQ(sizes->currentIndex(), 1);
}

struct Unlisted
{
    QByteArray body;
    double smaller;
    double larger;
};

TEST_F(EditingKeys, FromAnUnlistedSizeTheNextListedOneIsTaken)
{
    const std::array<Unlisted, 4> cases{{
        {"\\fs26 one", 12, 14},
        {"\\fs21 one", 10, 11},
        {"\\fs12 one", 6, 8},
        {"\\fs160 one", 72, 80},
    }};
    for (const Unlisted &unlisted : cases) {
        for (const bool up : {false, true}) {
            show(unlisted.body);
            select(0, 3);
            ASSERT_EQ(sizes->currentIndex(), -1);
            press(up ? Qt::Key_Period : Qt::Key_Comma, Qt::ControlModifier);
            EXPECT_EQ(box->selFontSize(), up ? unlisted.larger : unlisted.smaller) << unlisted.body.constData();
        }
    }
}

// Which keys are none of these.

TEST_F(EditingKeys, ModifiersAreExact)
{
    const std::string before = box->rtf();
    for (const Qt::KeyboardModifiers more : {Qt::ShiftModifier, Qt::AltModifier, Qt::MetaModifier}) {
        for (const Qt::Key key : {Qt::Key_B, Qt::Key_I, Qt::Key_U, Qt::Key_L, Qt::Key_O, Qt::Key_F, Qt::Key_Comma,
                                  Qt::Key_Period, Qt::Key_Backtab, Qt::Key_Tab}) {
            EXPECT_FALSE(isConsumed(key, Qt::ControlModifier | more)) << key;
        }
    }
    for (const Qt::KeyboardModifiers modifiers : {Qt::ShiftModifier, Qt::ControlModifier, Qt::NoModifier}) {
        EXPECT_FALSE(isConsumed(Qt::Key_A, modifiers));
    }
    EXPECT_FALSE(isConsumed(Qt::Key_B, Qt::NoModifier));
    EXPECT_FALSE(isConsumed(Qt::Key_Tab, Qt::NoModifier));
    EXPECT_TRUE(box->hasFocus());
    EXPECT_EQ(box->rtf(), before);
    EXPECT_EQ(box->selBold(), false);
    EXPECT_EQ(box->selFontSize(), 10.0);
}

TEST_F(EditingKeys, OnTheKeypadCtrlFullStopMovesTheSizeAndTypesNothing)
{
    select(0, 3);
    QTest::sendKeyEvent(QTest::Click, box, Qt::Key_Period, QStringLiteral("."),
                        Qt::ControlModifier | Qt::KeypadModifier);
    EXPECT_EQ(box->selFontSize(), 11.0);
    EXPECT_EQ(text(), QStringLiteral("one two three"));
}

TEST_F(EditingKeys, EverythingElseIsTyped)
{
    QTest::keyClicks(box, QStringLiteral("abiul,. "));
    press(Qt::Key_Tab);
    EXPECT_EQ(text(), QStringLiteral("abiul,. \tone two three"));
}

// Who gets a key.

TEST_F(EditingKeys, TheWindowIsAskedFirstAndKeepsWhatItTakes)
{
    takesKeys = true;
    press(Qt::Key_B, Qt::ControlModifier);
    press(Qt::Key_X);
    press(Qt::Key_Escape);
    EXPECT_EQ(askedKeys, (QVector<int>{Qt::Key_B, Qt::Key_X, Qt::Key_Escape}));
    EXPECT_EQ(box->selBold(), false);
    EXPECT_EQ(text(), QStringLiteral("one two three"));
    EXPECT_TRUE(window.keys.isEmpty());
}

TEST_F(EditingKeys, KeysInAFontBoxAreHandledAsInTheText)
{
    select(0, 3);
    for (FontBox *fontBox : {fonts, sizes}) {
        fontBox->setFocus();
        askedKeys.clear();
        press(Qt::Key_B, Qt::ControlModifier);
        press(Qt::Key_Tab, Qt::ControlModifier);
        press(Qt::Key_A, Qt::AltModifier);
        press(Qt::Key_Period, Qt::ControlModifier);
        EXPECT_EQ(askedKeys, (QVector<int>{Qt::Key_B, Qt::Key_Tab, Qt::Key_A, Qt::Key_Period}));
        EXPECT_TRUE(fontBox->hasFocus());
    }
    EXPECT_EQ(box->selBold(), false) << "toggled twice";
    EXPECT_EQ(box->selIndent(), 1000);
    EXPECT_EQ(box->selAlignment(), TextAlignment::Right);
    EXPECT_EQ(box->selFontSize(), 12.0);
    EXPECT_EQ(box->selFontName(), listedFont()) << "no name was searched by them";
    press(Qt::Key_Backtab, Qt::ShiftModifier);
    EXPECT_EQ(box->selIndent(), 500);
    EXPECT_TRUE(sizes->hasFocus());
    takesKeys = true;
    press(Qt::Key_Down);
    EXPECT_EQ(box->selFontSize(), 12.0);
}

TEST_F(EditingKeys, KeysGoPastALockedBoxAfterTheWindowWasAsked)
{
    box->setLocked(true);
    const std::string before = box->rtf();
    for (const Qt::Key key : {Qt::Key_B, Qt::Key_I, Qt::Key_U, Qt::Key_L, Qt::Key_O, Qt::Key_F, Qt::Key_Comma,
                              Qt::Key_Period, Qt::Key_Tab}) {
        press(key, Qt::ControlModifier);
    }
    press(Qt::Key_A, Qt::AltModifier);
    EXPECT_EQ(askedKeys.size(), 10);
    EXPECT_TRUE(box->hasFocus());
    EXPECT_EQ(box->rtf(), before);
    EXPECT_FALSE(box->canUndo());
    EXPECT_TRUE(window.keys.contains(Qt::Key_I)) << "nothing is consumed";
}

TEST_F(EditingKeys, GoToTheBoxThatHasTheFocus)
{
    other->setFocus();
    press(Qt::Key_I, Qt::ControlModifier);
    EXPECT_EQ(other->selItalic(), true);
    EXPECT_EQ(box->selItalic(), false);
}

} // namespace
