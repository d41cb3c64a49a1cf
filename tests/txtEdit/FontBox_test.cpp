#include "tests/txtEdit/EditorTest.h"

#include <QAbstractItemView>
#include <QSignalSpy>
#include <QWheelEvent>

namespace {

class FontBoxes : public EditorTest
{
protected:
    static void turnWheel(QWidget *over, int eighths)
    {
        const QPointF at = over->rect().center();
        QWheelEvent event(at, over->mapToGlobal(at), {}, {0, eighths}, Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase,
                          false);
        QApplication::sendEvent(over, &event);
    }

    /// Opens the list and clicks on an entry.
    static void choose(FontBox *fontBox, int entry)
    {
        fontBox->setFocus();
        press(Qt::Key_Down, Qt::AltModifier);
        QAbstractItemView *list = fontBox->view();
        ASSERT_TRUE(list->isVisible());
        list->scrollTo(fontBox->model()->index(entry, 0));
        const QPoint place = list->visualRect(fontBox->model()->index(entry, 0)).center();
        QTest::mouseMove(list->viewport(), place);
        QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, place);
    }
};

// What they show.

TEST_F(FontBoxes, ShowTheSelectionsFontAndSize)
{
    EXPECT_EQ(fonts->currentText(), listedFont());
    EXPECT_EQ(sizes->currentText(), QStringLiteral("10"));
    show("\\fs48 one");
    select(0, 3);
    EXPECT_EQ(sizes->currentText(), QStringLiteral("24"));
    EXPECT_FALSE(box->canUndo());
}

TEST_F(FontBoxes, ShowTheEmptyEntryForAMixedSelection)
{
    show("one \\f1\\fs40 two");
    select(0, 7);
    EXPECT_EQ(fonts->currentIndex(), 0);
    EXPECT_EQ(sizes->currentIndex(), 0);
    select(0, 3);
    EXPECT_EQ(fonts->currentText(), listedFont());
    EXPECT_EQ(sizes->currentText(), QStringLiteral("10"));
}

TEST_F(FontBoxes, ShowWhatIsNotInTheListAsItIs)
{
    show("\\f1\\fs26 one\\f0\\fs20  two \\f1\\fs21 three");
    const std::string before = box->rtf();
    const QSignalSpy chosen(fonts, &FontBox::chosen);
    select(0, 3);
    EXPECT_EQ(fonts->currentIndex(), -1);
    EXPECT_EQ(fonts->placeholderText(), QStringLiteral("No Such Font"));
    EXPECT_EQ(sizes->currentIndex(), -1);
    EXPECT_EQ(sizes->placeholderText(), QStringLiteral("13"));
    select(9, 12);
    EXPECT_EQ(sizes->placeholderText(), QStringLiteral("10.5"));
    select(4, 6);
    EXPECT_EQ(fonts->currentText(), listedFont());
    EXPECT_EQ(sizes->currentText(), QStringLiteral("10"));
    select(0, 12);
    EXPECT_EQ(fonts->currentIndex(), 0);
    EXPECT_EQ(sizes->currentIndex(), 0);
    EXPECT_EQ(chosen.count(), 0);
    EXPECT_EQ(box->rtf(), before);
}

TEST_F(FontBoxes, WhatIsNotInTheListIsInTheSameInk)
{
    sizes->display(QStringLiteral("72"));
    const QImage listed = sizes->grab().toImage();
    sizes->setValues({QStringLiteral("8")});
    sizes->display(QStringLiteral("72"));
    ASSERT_EQ(sizes->currentIndex(), -1);
    EXPECT_EQ(sizes->grab().toImage(), listed);
}

TEST_F(FontBoxes, ANameInOtherLettersIsTheSameFont)
{
    fonts->display(listedFont().toUpper());
    EXPECT_EQ(fonts->currentText(), listedFont());
    fonts->display(listedFont().toLower());
    EXPECT_EQ(fonts->currentText(), listedFont());
}

// Choosing.

TEST_F(FontBoxes, AChoiceFromTheListIsAppliedAndTheFocusGoesBack)
{
    select(4, 7);
    const std::string before = box->rtf();
    choose(fonts, 2);
    EXPECT_EQ(box->selFontName(), nextFont());
    EXPECT_TRUE(box->hasFocus());
    EXPECT_FALSE(fonts->view()->isVisible());
    expectOneStepBackTo(before);
    choose(sizes, 16);
    EXPECT_EQ(box->selFontSize(), 72.0);
    EXPECT_TRUE(box->hasFocus());
}

TEST_F(FontBoxes, WithoutASelectionTheChoiceIsForWhatIsTypedNext)
{
    choose(sizes, 16);
    choose(fonts, 2);
    press(Qt::Key_X);
    EXPECT_EQ(text(), QStringLiteral("xone two three"));
    select(0, 1);
    EXPECT_EQ(box->selFontSize(), 72.0);
    EXPECT_EQ(box->selFontName(), nextFont());
    EXPECT_EQ(sizes->currentText(), QStringLiteral("72"));
}

TEST_F(FontBoxes, TheEmptyEntryAppliesNothingAndTheTruthIsShownAgain)
{
    const std::string before = box->rtf();
    select(0, 3);
    choose(fonts, 0);
    choose(sizes, 0);
    EXPECT_EQ(box->rtf(), before);
    EXPECT_FALSE(box->canUndo());
    EXPECT_EQ(fonts->currentText(), listedFont());
    EXPECT_EQ(sizes->currentText(), QStringLiteral("10"));
    fonts->setCurrentIndex(0);
    edit.ApplyFontName();
    sizes->setCurrentIndex(0);
    edit.ApplyFontSize();
    EXPECT_FALSE(box->canUndo());
}

TEST_F(FontBoxes, AnUnlistedValueIsNotApplied)
{
    show("\\f1\\fs26 one");
    select(0, 3);
    edit.ApplyFontName();
    edit.ApplyFontSize();
    EXPECT_FALSE(box->canUndo());
}

TEST_F(FontBoxes, ArrowKeysApplyEachEntryAndKeepTheFocus)
{
    select(0, 3);
    sizes->setFocus();
    press(Qt::Key_Down);
    EXPECT_EQ(box->selFontSize(), 11.0);
    press(Qt::Key_Down);
    EXPECT_EQ(box->selFontSize(), 12.0);
    press(Qt::Key_Up);
    EXPECT_EQ(box->selFontSize(), 11.0);
    EXPECT_TRUE(sizes->hasFocus());
    fonts->setFocus();
    press(Qt::Key_Down);
    EXPECT_EQ(box->selFontName(), nextFont());
    EXPECT_TRUE(fonts->hasFocus());
}

TEST_F(FontBoxes, ArrowKeysGoOnFromAnUnlistedValue)
{
    show("\\f1\\fs26 one");
    select(0, 3);
    sizes->setFocus();
    press(Qt::Key_Down);
    EXPECT_EQ(box->selFontSize(), 14.0);
    fonts->setValues({QStringLiteral("Abc"), QStringLiteral("Xyz")});
    fonts->display(QStringLiteral("no such font"));
    fonts->setFocus();
    press(Qt::Key_Up);
    EXPECT_EQ(box->selFontName(), QStringLiteral("Abc"));
    press(Qt::Key_Down);
    EXPECT_EQ(box->selFontName(), QStringLiteral("Xyz"));
}

TEST_F(FontBoxes, TypingTheBeginningOfAnEntryAppliesItAndKeepsTheFocus)
{
    select(0, 3);
    sizes->setFocus();
    QTest::keyClicks(sizes, QStringLiteral("7"));
    EXPECT_EQ(box->selFontSize(), 72.0);
    EXPECT_TRUE(sizes->hasFocus());
    EXPECT_EQ(text(), QStringLiteral("one two three"));
}

TEST_F(FontBoxes, ReturnGoesBackToTheText)
{
    for (FontBox *fontBox : {fonts, sizes}) {
        for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Enter}) {
            fontBox->setFocus();
            press(key);
            EXPECT_TRUE(box->hasFocus());
        }
    }
    EXPECT_EQ(text(), QStringLiteral("one two three"));
    EXPECT_TRUE(window.keys.isEmpty());
}

TEST_F(FontBoxes, EscapeIsTheWindows)
{
    takesKeys = true;
    fonts->setFocus();
    press(Qt::Key_Escape);
    EXPECT_EQ(askedKeys, QVector<int>{Qt::Key_Escape});
}

TEST_F(FontBoxes, ReturnInTheOpenedListChoosesAndEscapeDoesNot)
{
    select(0, 3);
    sizes->setFocus();
    press(Qt::Key_Down, Qt::AltModifier);
    ASSERT_TRUE(sizes->view()->isVisible());
    QTest::keyClick(sizes->view(), Qt::Key_Down);
    EXPECT_EQ(box->selFontSize(), 10.0) << "not yet chosen";
    QTest::keyClick(sizes->view(), Qt::Key_Escape);
    EXPECT_FALSE(sizes->view()->isVisible());
    EXPECT_EQ(box->selFontSize(), 10.0);
    EXPECT_TRUE(sizes->hasFocus());
    press(Qt::Key_Down, Qt::AltModifier);
    QTest::keyClick(sizes->view(), Qt::Key_Down);
    QTest::keyClick(sizes->view(), Qt::Key_Return);
    EXPECT_EQ(box->selFontSize(), 11.0);
    EXPECT_TRUE(box->hasFocus());
}

TEST_F(FontBoxes, TheWheelTurnsABoxOnlyWhileItHasTheFocus)
{
    select(0, 3);
    turnWheel(sizes, -120);
    EXPECT_EQ(box->selFontSize(), 10.0);
    EXPECT_TRUE(box->hasFocus()) << "nor does it give the focus";
    sizes->setFocus();
    turnWheel(sizes, -120);
    EXPECT_EQ(box->selFontSize(), 11.0);
    turnWheel(sizes, 240);
    EXPECT_EQ(box->selFontSize(), 9.0);
    turnWheel(sizes, -60);
    EXPECT_EQ(box->selFontSize(), 9.0) << "half a step";
    turnWheel(sizes, -60);
    EXPECT_EQ(box->selFontSize(), 10.0);
    EXPECT_TRUE(sizes->hasFocus());
}

} // namespace
