#include "platform/ImageButton.h"
#include "platform/Twips.h"
#include "tests/forms/EditCardsTest.h"
#include "tests/support/HelpWindows.h"

#include <QAbstractItemView>
#include <QComboBox>
#include <QLabel>

#include <optional>
#include <ostream>

namespace {

class frmEditCardsControls : public EditCardsTest
{
protected:
    QComboBox &fontBox() { return control<QComboBox>(*window, "Combo1"); }
    QComboBox &sizeBox() { return control<QComboBox>(*window, "Combo2"); }

    /// Chooses a size from the opened list by the mouse.
    void chooseSize(const QString &points)
    {
        sizeBox().showPopup();
        QAbstractItemView *list = sizeBox().view();
        const QModelIndex entry = list->model()->index(sizeBox().findText(points), 0);
        ASSERT_TRUE(entry.isValid());
        list->scrollTo(entry);
        const QPoint middle = list->visualRect(entry).center();
        QTest::mouseMove(list->viewport(), middle);
        QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, middle);
        settle();
    }

    QRect placeOf(const QWidget &made) { return {made.mapTo(window, QPoint(0, 0)), made.size()}; }
};

// The keys of the commands.

/// A command's key does on the third of twelve cards what its button does.
struct CommandKey
{
    const char *name;
    int button;
    Qt::Key key;
    Qt::KeyboardModifiers modifiers;
    const char *place;
    const char *shown;
};

void PrintTo(const CommandKey &command, std::ostream *out)
{
    *out << command.name;
}

class CommandKeys : public frmEditCardsControls, public testing::WithParamInterface<CommandKey>
{
protected:
    void SetUp() override
    {
        frmEditCardsControls::SetUp();
        open(large);
        goTo(3);
    }

    void expectQuestion()
    {
        if (GetParam().button == Delete) {
            dialogs.press(QMessageBox::Yes);
        }
    }

    void press()
    {
        expectQuestion();
        key(GetParam().key, GetParam().modifiers);
    }

    void expectDone()
    {
        const CommandKey &command = GetParam();
        if (command.button == Exit) {
            EXPECT_FALSE(isOpen());
        } else {
            EXPECT_EQ(place(), command.place);
            EXPECT_EQ(shown(), command.shown);
            EXPECT_TRUE(hasFocus(Front));
            run(Exit);
        }
        EXPECT_EQ(stored(large), command.button == Delete ? without(untouched(12), 3) : untouched(12))
            << "the key typed or erased something";
    }
};

TEST_P(CommandKeys, RunTheCommandOfTheirButton)
{
    expectQuestion();
    run(static_cast<Command>(GetParam().button));
    expectDone();
}

TEST_P(CommandKeys, WorkInTheFront)
{
    enter(Front);
    press();
    expectDone();
}

TEST_P(CommandKeys, WorkInTheBack)
{
    enter(Back);
    press();
    expectDone();
}

TEST_P(CommandKeys, WorkInTheFontBox)
{
    key(Qt::Key_F, Qt::ControlModifier);
    ASSERT_TRUE(fontBox().hasFocus());
    press();
    expectDone();
}

TEST_P(CommandKeys, WorkInTheSizeBox)
{
    enter(Back);
    sizeBox().setFocus();
    press();
    expectDone();
}

TEST_P(CommandKeys, WorkOnAButtonThatHasTheFocus)
{
    control<ImageButton>(*window, "Image1(6)").setFocus(Qt::TabFocusReason);
    press();
    expectDone();
}

TEST_P(CommandKeys, AreOthersWithShiftOrCtrl)
{
    for (const Qt::KeyboardModifier more : {Qt::ShiftModifier, Qt::ControlModifier}) {
        key(GetParam().key, GetParam().modifiers | more);
        ASSERT_TRUE(isOpen());
        EXPECT_EQ(place(), "Card 3 of 12");
    }
}

INSTANTIATE_TEST_SUITE_P(
    frmEditCards, CommandKeys,
    testing::Values(CommandKey{"First", 0, Qt::Key_Home, Qt::AltModifier, "Card 1 of 12", "front 1|back 1"},
                    CommandKey{"Previous", 1, Qt::Key_Left, Qt::AltModifier, "Card 2 of 12", "front 2|back 2"},
                    CommandKey{"New", 2, Qt::Key_Insert, Qt::AltModifier, "Card 13 of 13", "|"},
                    CommandKey{"Exit", 3, Qt::Key_Escape, Qt::NoModifier, "", ""},
                    CommandKey{"Delete", 4, Qt::Key_Delete, Qt::AltModifier, "Card 2 of 11", "front 2|back 2"},
                    CommandKey{"Next", 5, Qt::Key_Right, Qt::AltModifier, "Card 4 of 12", "front 4|back 4"},
                    CommandKey{"Last", 6, Qt::Key_End, Qt::AltModifier, "Card 12 of 12", "front 12|back 12"}),
    [](const auto &row) { return std::string(row.param.name); });

TEST_F(frmEditCardsControls, TheKeypadsKeysAreTheSameKeys)
{
    open(small);
    key(Qt::Key_End, Qt::AltModifier | Qt::KeypadModifier);
    EXPECT_EQ(place(), "Card 4 of 4");
    key(Qt::Key_Home, Qt::AltModifier | Qt::KeypadModifier);
    EXPECT_EQ(place(), "Card 1 of 4");
}

TEST_F(frmEditCardsControls, TheSameKeysWithoutAltMoveTheCaretOnly)
{
    open(small);
    key(Qt::Key_Right);
    key(Qt::Key_End);
    EXPECT_EQ(box(Front).textCursor().position(), 7);
    key(Qt::Key_Left);
    key(Qt::Key_Home);
    EXPECT_EQ(box(Front).textCursor().position(), 0);
    EXPECT_EQ(place(), "Card 1 of 4");
    key(Qt::Key_Delete);
    EXPECT_EQ(shown(), "ront 1|back 1");
}

TEST_F(frmEditCardsControls, ACommandKeyChangesNeitherTextNorSelection)
{
    open(small);
    deleteCard();
    deleteCard();
    deleteCard();
    for (const Side side : {Front, Back}) {
        type(side, "one two");
        key(Qt::Key_Left, Qt::ControlModifier | Qt::ShiftModifier);
        for (const Qt::Key command : {Qt::Key_Home, Qt::Key_Left, Qt::Key_End, Qt::Key_Delete}) {
            heard([&] { key(command, Qt::AltModifier); },
                  command == Qt::Key_Delete ? QMessageBox::No : QMessageBox::Ok);
            EXPECT_EQ(box(side).toPlainText(), QStringLiteral("one two"));
            EXPECT_EQ(box(side).textCursor().selectedText(), QStringLiteral("two"));
            EXPECT_TRUE(hasFocus(side));
        }
    }
}

TEST_F(frmEditCardsControls, AltDownGoesFromTheFrontToTheBackAndAltUpReturns)
{
    open(small);
    key(Qt::Key_Up, Qt::AltModifier);
    EXPECT_TRUE(hasFocus(Front)) << "nothing is above the front";
    key(Qt::Key_Down, Qt::AltModifier);
    EXPECT_TRUE(hasFocus(Back));
    key(Qt::Key_Down, Qt::AltModifier);
    EXPECT_TRUE(hasFocus(Back)) << "nothing is below the back";
    key(Qt::Key_Up, Qt::AltModifier);
    EXPECT_TRUE(hasFocus(Front));
    EXPECT_EQ(shown(), "front 1|back 1");
    EXPECT_EQ(place(), "Card 1 of 4");
}

TEST_F(frmEditCardsControls, AltUpAndAltDownLeaveTheCaretOfTheOtherBoxWhereItIs)
{
    open(small);
    type(Front, "one\ntwo");
    key(Qt::Key_Up, Qt::AltModifier);
    EXPECT_EQ(box(Front).textCursor().position(), 7);
    type(Back, "one\ntwo");
    key(Qt::Key_Home, Qt::ControlModifier);
    key(Qt::Key_Down, Qt::AltModifier);
    EXPECT_EQ(box(Back).textCursor().position(), 0);
}

TEST_F(frmEditCardsControls, AltDownInAFontBoxGoesToTheBackAndOpensNoList)
{
    open(small);
    for (QComboBox *fonts : {&fontBox(), &sizeBox()}) {
        enter(Front);
        fonts->setFocus();
        key(Qt::Key_Down, Qt::AltModifier);
        EXPECT_TRUE(hasFocus(Back));
        EXPECT_FALSE(fonts->view()->isVisible());
        fonts->setFocus();
        key(Qt::Key_Up, Qt::AltModifier);
        EXPECT_TRUE(hasFocus(Front));
    }
}

TEST_F(frmEditCardsControls, EveryOtherKeyIsTyped)
{
    open(small);
    type(Front, "Streets, 5 < 6 & \"x\"\nnext");
    EXPECT_EQ(shown(), "Streets, 5 < 6 & \"x\"\nnext|back 1");
    run(Next);
    EXPECT_EQ(stored(small).front(), "Streets, 5 < 6 & \"x\"\nnext|back 1");
}

// The tools.

/// What a stored side is like when all of it is selected.
template <class Answer>
std::optional<Answer> ofAll(const std::string &rtf, std::optional<Answer> (RichTextBox::*property)() const)
{
    RichTextBox box;
    box.setRtf(rtf);
    box.selectAll();
    return (box.*property)();
}

TEST_F(frmEditCardsControls, BoldInTheBackReachesTheStoredBackOnly)
{
    open(small);
    enter(Back);
    key(Qt::Key_A, Qt::ControlModifier);
    key(Qt::Key_B, Qt::ControlModifier);
    run(Next);
    const StoredCard card = storedCards(small).front();
    EXPECT_EQ(ofAll(card.back, &RichTextBox::selBold), true);
    EXPECT_EQ(ofAll(card.front, &RichTextBox::selBold), false);
    EXPECT_EQ(stored(small), untouched(4));
}

TEST_F(frmEditCardsControls, TheToolsActOnTheSideThatLastHadTheFocus)
{
    open(small);
    enter(Back);
    key(Qt::Key_A, Qt::ControlModifier);
    click(*window, "Toolbar2(8)");
    EXPECT_TRUE(hasFocus(Back)) << "a tool takes no focus";
    enter(Front);
    key(Qt::Key_A, Qt::ControlModifier);
    click(*window, "Toolbar2(9)");
    EXPECT_TRUE(hasFocus(Front)) << "a tool takes no focus";
    run(Exit);
    const StoredCard card = storedCards(small).front();
    EXPECT_EQ(ofAll(card.back, &RichTextBox::selItalic), true);
    EXPECT_EQ(ofAll(card.back, &RichTextBox::selUnderline), false);
    EXPECT_EQ(ofAll(card.front, &RichTextBox::selItalic), false);
    EXPECT_EQ(ofAll(card.front, &RichTextBox::selUnderline), true);
}

TEST_F(frmEditCardsControls, ASizeThatIsChosenReachesTheStoredSide)
{
    open(small);
    enter(Back);
    key(Qt::Key_A, Qt::ControlModifier);
    chooseSize(QStringLiteral("28"));
    run(Next);
    const StoredCard card = storedCards(small).front();
    EXPECT_EQ(ofAll(card.back, &RichTextBox::selFontSize), 28);
    EXPECT_NE(ofAll(card.front, &RichTextBox::selFontSize), 28);
    EXPECT_EQ(stored(small), untouched(4));
}

TEST_F(frmEditCardsControls, AFormatAloneIsStored)
{
    open(small);
    enter(Front);
    key(Qt::Key_A, Qt::ControlModifier);
    click(*window, "Toolbar2(11)");
    EXPECT_TRUE(window->close());
    EXPECT_EQ(ofAll(storedCards(small).front().front, &RichTextBox::selAlignment), TextAlignment::Center);
}

TEST_F(frmEditCardsControls, TheToolsShowTheFormatOfTheSideThatIsEntered)
{
    open(small);
    enter(Back);
    key(Qt::Key_A, Qt::ControlModifier);
    key(Qt::Key_B, Qt::ControlModifier);
    const auto &bold = control<QAbstractButton>(*window, "Toolbar2(7)");
    EXPECT_TRUE(bold.isChecked());
    key(Qt::Key_Up, Qt::AltModifier);
    EXPECT_FALSE(bold.isChecked());
    key(Qt::Key_Down, Qt::AltModifier);
    EXPECT_TRUE(bold.isChecked());
    run(Next);
    EXPECT_FALSE(bold.isChecked()) << "the next card is plain";
}

TEST_F(frmEditCardsControls, ANewCardIsPlainWhateverTheCardBeforeWas)
{
    open(small);
    run(New);
    type(Front, "plain");
    run(Exit);
    const std::string plain = storedCards(small).back().front;
    open(small);
    enter(Front);
    key(Qt::Key_A, Qt::ControlModifier);
    key(Qt::Key_B, Qt::ControlModifier);
    run(New);
    type(Front, "plain");
    run(Exit);
    EXPECT_EQ(storedCards(small).back().front, plain);
}

TEST_F(frmEditCardsControls, UndoDoesNotReachBackToAnotherCard)
{
    open(small);
    type(Front, "typed");
    run(Next);
    key(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(shown(), "front 2|back 2");
    EXPECT_FALSE(control<QAbstractButton>(*window, "Toolbar1(5)").isEnabled());
}

TEST_F(frmEditCardsControls, TheHelpToolShowsTheEditorsHelp)
{
    open(small);
    click(*window, "Toolbar1(9)");
    expectHelp(HelpContext::CardEditor);
    EXPECT_TRUE(isOpen());
}

// The focus.

TEST_F(frmEditCardsControls, ACommandThatMovesNothingLeavesTheFocusWhereItIs)
{
    open(small);
    enter(Back);
    heard([this] { run(Previous); });
    EXPECT_TRUE(hasFocus(Back));
    heard([this] { run(First); });
    EXPECT_TRUE(hasFocus(Back));
    heard([this] { run(Delete); }, QMessageBox::No);
    EXPECT_TRUE(hasFocus(Back));
}

TEST_F(frmEditCardsControls, TheLabelsLeadToTheirBoxes)
{
    open(small);
    EXPECT_EQ(control<QLabel>(*window, "Label1(0)").buddy(), &box(Front));
    EXPECT_EQ(control<QLabel>(*window, "Label1(1)").buddy(), &box(Back));
    EXPECT_EQ(box(Front).accessibleName(), QStringLiteral("Front (Question)"));
    EXPECT_EQ(box(Back).accessibleName(), QStringLiteral("Back (Answer)"));
}

// The window's size.

TEST_F(frmEditCardsControls, OpensTheFirstTimeAtTheSmallestSize)
{
    open(small);
    EXPECT_EQ(window->size(), QSize(toPixels(9315), toPixels(6105)));
}

TEST_F(frmEditCardsControls, CannotBeMadeSmallerThanItsSmallestSize)
{
    open(small);
    window->resize(10, 10);
    EXPECT_EQ(window->size(), QSize(toPixels(9315), toPixels(6105)));
}

TEST_F(frmEditCardsControls, ReopensAtTheSizeItWasClosedAt)
{
    open(small);
    window->resize(700, 560);
    const QSize outer = window->frameGeometry().size();
    run(Exit);
    settle();
    EXPECT_EQ(setting("EditCards", "WindowState"), QStringLiteral("0"));
    EXPECT_EQ(setting("EditCards", "Width"), QString::number(toTwips(outer.width())));
    EXPECT_EQ(setting("EditCards", "Height"), QString::number(toTwips(outer.height())));
    open(small);
    EXPECT_EQ(window->frameGeometry().size(), outer);
}

TEST_F(frmEditCardsControls, ReopensMaximisedAfterClosingMaximised)
{
    open(small);
    window->showMaximized();
    run(Exit);
    settle();
    EXPECT_EQ(setting("EditCards", "WindowState"), QStringLiteral("2"));
    EXPECT_FALSE(setting("EditCards", "Width").isEmpty());
    EXPECT_FALSE(setting("EditCards", "Height").isEmpty());
    open(small);
    EXPECT_TRUE(window->isMaximized());
}

TEST_F(frmEditCardsControls, AnUnreadableWidthIsReportedAndTheEditorOpensAllTheSame)
{
    module->settings.write(QStringLiteral("EditCards"), QStringLiteral("Width"), QStringLiteral("wide"));
    const SeenMessage report = heard([this] { open(small); });
    EXPECT_TRUE(report.text.contains(QStringLiteral("wide")));
    EXPECT_EQ(shown(), "front 1|back 1");
}

TEST_F(frmEditCardsControls, SettingsThatCannotBeWrittenAreReportedAndTheEditorClosesAllTheSame)
{
    open(small);
    type(Back, "typed");
    blockSettings();
    const SeenMessage report = heard([this] { run(Exit); });
    EXPECT_EQ(report.icon, QMessageBox::Critical);
    EXPECT_TRUE(report.text.contains(QStringLiteral("Cramlet.conf")));
    EXPECT_FALSE(isOpen());
    EXPECT_EQ(stored(small), with(untouched(4), 1, "front 1|typed"));
}

TEST_F(frmEditCardsControls, EveryControlHasItsPlaceInTheSmallestWindow)
{
    open(small);
    settle();
    std::vector<QWidget *> controls{&box(Front), &box(Back), &control<QLabel>(*window, "Label1(0)"),
                                    &control<QLabel>(*window, "Label1(1)"), &control<QWidget>(*window, "CoolBar1")};
    for (int button = First; button <= Last; ++button) {
        controls.push_back(&control<ImageButton>(*window, nameOf(static_cast<Command>(button)).c_str()));
    }
    for (const QWidget *one : controls) {
        EXPECT_TRUE(window->rect().contains(placeOf(*one))) << one->objectName().toStdString();
        for (const QWidget *other : controls) {
            EXPECT_FALSE(one != other && placeOf(*one).intersects(placeOf(*other)))
                << one->objectName().toStdString() << " covers " << other->objectName().toStdString();
        }
    }
    EXPECT_GT(box(Front).viewport()->height(), 3 * box(Front).fontMetrics().height());
    EXPECT_NEAR(box(Front).height(), box(Back).height(), 1);
}

} // namespace
