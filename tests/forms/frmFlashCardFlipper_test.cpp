#include "forms/frmCardOptions/frmCardOptions.h"
#include "tests/forms/FlashCardTest.h"
#include "tests/support/HelpWindows.h"

#include <functional>
#include <ostream>
#include <set>

namespace {

class frmFlashCardFlipper : public FlashCardTest
{
};

TEST_F(frmFlashCardFlipper, TurnsTheCardAfterOneSecond)
{
    open(1);
    EXPECT_EQ(scene(), "1 of 12, front 1, 1 running");
    passSecond();
    EXPECT_EQ(scene(), "1 of 12, back 1, 0 ended");
    EXPECT_EQ(countdown().text(), QStringLiteral("0"));
    EXPECT_TRUE(button(Flipper).isVisible());
    EXPECT_FALSE(button(Flipper).isEnabled());
    EXPECT_EQ(picture(Flipper), QStringLiteral("flipper-stopped"));
}

TEST_F(frmFlashCardFlipper, CountsEverySecondDownAndTurnsTheCardOnce)
{
    open(3);
    EXPECT_EQ(scene(), "1 of 12, front 1, 3 running");
    EXPECT_EQ(picture(Flipper), QStringLiteral("flipper-running"));
    passSecond();
    EXPECT_EQ(scene(), "1 of 12, front 1, 2 running");
    passSecond();
    EXPECT_EQ(scene(), "1 of 12, front 1, 1 running");
    passSecond();
    EXPECT_EQ(scene(), "1 of 12, back 1, 0 ended");
    passSeconds(3);
    EXPECT_EQ(scene(), "1 of 12, back 1, 0 ended");
}

TEST_F(frmFlashCardFlipper, TicksOnceASecond)
{
    open(20);
    EXPECT_TRUE(clock().isActive());
    EXPECT_EQ(clock().interval(), 1000);
    EXPECT_EQ(clock().timerType(), Qt::PreciseTimer);
    passSeconds(19);
    EXPECT_EQ(scene(), "1 of 12, front 1, 1 running");
    passSecond();
    EXPECT_EQ(scene(), "1 of 12, back 1, 0 ended");
}

TEST_F(frmFlashCardFlipper, NothingMovesWhenTheCountdownGetsShorter)
{
    open(10);
    QCoreApplication::processEvents();
    const QPoint before = button(Flipper).pos();
    const QRect digits = countdown().geometry();
    passSecond();
    QCoreApplication::processEvents();
    EXPECT_EQ(button(Flipper).pos(), before);
    EXPECT_EQ(countdown().geometry(), digits);
}

TEST_F(frmFlashCardFlipper, TurnsACardThatStartsOnItsBackToTheFront)
{
    module->study.viewOrder = ViewOrder::back;
    open(2);
    passSeconds(2);
    EXPECT_EQ(scene(), "1 of 12, front 1, 0 ended");
    key(Qt::Key_Right);
    EXPECT_EQ(scene(), "2 of 12, back 2, 2 running");
}

TEST_F(frmFlashCardFlipper, SwitchedOffItShowsNothingAndDoesNothing)
{
    open(0);
    EXPECT_FALSE(countdown().isVisible());
    EXPECT_FALSE(button(Flipper).isVisible());
    EXPECT_FALSE(button(Flipper).isEnabled());
    EXPECT_FALSE(clock().isActive());
    key(Qt::Key_P);
    passSeconds(2);
    EXPECT_EQ(scene(), "1 of 12, front 1");
    key(Qt::Key_Right);
    key(Qt::Key_Down);
    key(Qt::Key_P);
    EXPECT_EQ(scene(), "2 of 12, back 2");
}

TEST_F(frmFlashCardFlipper, APauseKeepsTheCountdownWhereItIs)
{
    open(5);
    passSecond();
    run(Flipper);
    EXPECT_EQ(scene(), "1 of 12, front 1, 4 paused");
    passSeconds(3);
    EXPECT_EQ(scene(), "1 of 12, front 1, 4 paused");
    key(Qt::Key_P);
    EXPECT_EQ(scene(), "1 of 12, front 1, 4 running");
    passSecond();
    key(Qt::Key_P);
    EXPECT_EQ(scene(), "1 of 12, front 1, 3 paused");
    run(Flipper);
    passSecond();
    EXPECT_EQ(scene(), "1 of 12, front 1, 2 running");
}

TEST_F(frmFlashCardFlipper, AKeyThatIsHeldDownPausesOnce)
{
    open(5);
    key(Qt::Key_P);
    repeatKey(Qt::Key_P, QStringLiteral("p"));
    EXPECT_EQ(scene(), "1 of 12, front 1, 5 paused");
}

TEST_F(frmFlashCardFlipper, AfterTheTurnItCannotBeStartedAgainOnThisCard)
{
    open(1);
    passSecond();
    key(Qt::Key_P);
    run(Flipper);
    EXPECT_EQ(scene(), "1 of 12, back 1, 0 ended");
    key(Qt::Key_Up);
    key(Qt::Key_P);
    EXPECT_EQ(scene(), "1 of 12, front 1, 0 ended");
}

// Moves.

TEST_F(frmFlashCardFlipper, AMoveBeginsTheWholeTimeAndAWholeSecondAnew)
{
    open(4);
    int before = secondsBegun();
    const auto expectAnew = [&](const char *wanted) {
        EXPECT_EQ(scene(), wanted);
        EXPECT_GT(secondsBegun(), before) << "the second that had begun goes on";
        EXPECT_EQ(clock().interval(), 1000);
        before = secondsBegun();
    };
    passSeconds(2);
    run(Next);
    expectAnew("2 of 12, front 2, 4 running");
    run(Next);
    expectAnew("3 of 12, front 3, 4 running");
    passSecond();
    key(Qt::Key_Left);
    expectAnew("2 of 12, front 2, 4 running");
    run(Flipper);
    key(Qt::Key_Right);
    expectAnew("3 of 12, front 3, 4 running");
    passSeconds(4);
    run(Previous);
    expectAnew("2 of 12, front 2, 4 running");
}

TEST_F(frmFlashCardFlipper, ASecondThatPassesStartsNoOtherOne)
{
    open(4);
    const int before = secondsBegun();
    passSeconds(2);
    key(Qt::Key_Up);
    EXPECT_EQ(secondsBegun(), before);
}

TEST_F(frmFlashCardFlipper, TheMessageOnTheLastCardChangesNothing)
{
    open(7);
    goTo(12);
    passSeconds(2);
    const int before = secondsBegun();
    heard([this] { key(Qt::Key_Right); });
    EXPECT_EQ(scene(), "12 of 12, front 12, 5 running");
    EXPECT_EQ(secondsBegun(), before);
    key(Qt::Key_P);
    heard([this] { run(Next); });
    EXPECT_EQ(scene(), "12 of 12, front 12, 5 paused");
    key(Qt::Key_Down);
    heard([this] { run(Next); });
    EXPECT_EQ(scene(), "12 of 12, back 12, 5 ended");
}

TEST_F(frmFlashCardFlipper, TheMessageOnTheFirstCardChangesNothing)
{
    open(7);
    passSeconds(2);
    const int before = secondsBegun();
    heard([this] { run(Previous); });
    EXPECT_EQ(scene(), "1 of 12, front 1, 5 running");
    EXPECT_EQ(secondsBegun(), before);
}

// A turn by the learner.

struct Turn
{
    const char *name;
    std::function<void(frmFlashCard &)> turn;
};

void PrintTo(const Turn &row, std::ostream *out)
{
    *out << row.name;
}

class ATurnByTheLearner : public frmFlashCardFlipper, public testing::WithParamInterface<Turn>
{
protected:
    void turn() { GetParam().turn(*window); }
    void expectEnded(const char *wanted)
    {
        EXPECT_EQ(scene(), wanted);
        key(Qt::Key_P);
        run(Flipper);
        passSeconds(3);
        EXPECT_EQ(scene(), wanted) << "nothing starts it again on this card";
    }
};

TEST_P(ATurnByTheLearner, EndsTheCountdownForThisCard)
{
    open(6);
    passSeconds(2);
    turn();
    expectEnded("1 of 12, back 1, 4 ended");
    key(Qt::Key_Right);
    EXPECT_EQ(scene(), "2 of 12, front 2, 6 running");
}

TEST_P(ATurnByTheLearner, EndsAPauseToo)
{
    open(6);
    passSecond();
    key(Qt::Key_P);
    turn();
    expectEnded("1 of 12, back 1, 5 ended");
}

INSTANTIATE_TEST_SUITE_P(
    frmFlashCard, ATurnByTheLearner,
    testing::Values(Turn{"TheUpperButton", [](frmFlashCard &window) { click(window, "Image1(9)"); }},
                    Turn{"TheLowerButton", [](frmFlashCard &window) { click(window, "Image1(10)"); }},
                    Turn{"Down", [](frmFlashCard &window) { QTest::keyClick(window.focusWidget(), Qt::Key_Down); }}),
    [](const auto &row) { return std::string(row.param.name); });

TEST_F(frmFlashCardFlipper, UpOnABackEndsTheCountdownToo)
{
    module->study.viewOrder = ViewOrder::back;
    open(6);
    key(Qt::Key_Up);
    EXPECT_EQ(scene(), "1 of 12, front 1, 6 ended");
}

TEST_F(frmFlashCardFlipper, AnArrowThatTurnsNothingLeavesTheCountdownAlone)
{
    open(6);
    key(Qt::Key_Up);
    passSecond();
    EXPECT_EQ(scene(), "1 of 12, front 1, 5 running");
}

// Seconds behind a dialog.

TEST_F(frmFlashCardFlipper, NoSecondPassesBehindAMessage)
{
    open(3);
    passSecond();
    const auto wait = [this](QMessageBox &box) {
        passSeconds(5);
        EXPECT_EQ(countdown().text(), QStringLiteral("2"));
        EXPECT_EQ(shown(), QStringLiteral("front 1"));
        QTest::keyClick(&box, Qt::Key_Escape);
    };
    within<QMessageBox>([this] { run(Previous); }, wait);
    within<QMessageBox>([this] { run(Shuffle); }, wait);
    EXPECT_EQ(scene(), "1 of 12, front 1, 2 running");
    passSecond();
    EXPECT_EQ(scene(), "1 of 12, front 1, 1 running");
}

TEST_F(frmFlashCardFlipper, TheSecondsGoOnBesideTheHelpWhichLeavesTheCardToBeRead)
{
    open(3);
    run(Help);
    passSeconds(2);
    expectHelp(HelpContext::FlashCardSession);
    EXPECT_EQ(scene(), "1 of 12, front 1, 1 running");
}

TEST_F(frmFlashCardFlipper, NoSecondPassesBehindTheOptions)
{
    open(3);
    within<frmCardOptions>([this] { run(Options); },
                           [this](frmCardOptions &options) {
                               passSeconds(5);
                               EXPECT_EQ(countdown().text(), QStringLiteral("3"));
                               click(options, "Command1(1)");
                           });
    passSecond();
    EXPECT_EQ(scene(), "1 of 12, front 1, 2 running");
}

// The focus on the flipper's button.

TEST_F(frmFlashCardFlipper, SpaceOnItsButtonPausesAndResumesAndTheFocusStays)
{
    open(5);
    tabTo(Flipper);
    key(Qt::Key_Space);
    EXPECT_EQ(scene(), "1 of 12, front 1, 5 paused");
    key(Qt::Key_Space);
    EXPECT_EQ(scene(), "1 of 12, front 1, 5 running");
    passSecond();
    EXPECT_TRUE(button(Flipper).hasFocus());
}

TEST_F(frmFlashCardFlipper, TheFocusGoesBackToTheCardWhenTheLastSecondDisablesIt)
{
    open(1);
    tabTo(Flipper);
    passSecond();
    EXPECT_TRUE(hasSinkFocus());
    key(Qt::Key_Space);
    EXPECT_EQ(scene(), "1 of 12, back 1, 0 ended");
    EXPECT_TRUE(isOpen());
}

TEST_F(frmFlashCardFlipper, TheFocusGoesBackToTheCardWhenATurnDisablesIt)
{
    open(5);
    tabTo(Flipper);
    key(Qt::Key_Down);
    EXPECT_TRUE(hasSinkFocus());
}

TEST_F(frmFlashCardFlipper, TheFocusStaysOnItsButtonFromCardToCard)
{
    open(5);
    tabTo(Flipper);
    key(Qt::Key_Right);
    EXPECT_EQ(scene(), "2 of 12, front 2, 5 running");
    EXPECT_TRUE(button(Flipper).hasFocus());
}

TEST_F(frmFlashCardFlipper, TheFocusOnAnotherButtonStaysThere)
{
    open(1);
    tabTo(Next);
    passSecond();
    EXPECT_TRUE(button(Next).hasFocus());
}

// The viewing order.

class ARandomOrder : public frmFlashCardFlipper, public testing::WithParamInterface<std::int16_t>
{
};

TEST_P(ARandomOrder, ShowsBothSidesFirstOverManyCards)
{
    module->study.viewOrder = GetParam();
    open(2);
    std::set<QString> sides{sideShown()};
    for (int draw = 0; draw < manyDraws && sides.size() < 2; ++draw) {
        run(draw % 2 == 0 ? Next : Previous);
        EXPECT_TRUE(scene().ends_with(", 2 running")) << scene();
        sides.insert(sideShown());
    }
    EXPECT_EQ(sides.size(), 2U);
}

INSTANTIATE_TEST_SUITE_P(frmFlashCard, ARandomOrder, testing::Values(ViewOrder::random, ViewOrder::randomInDialog),
                         [](const auto &row) {
                             return row.param == ViewOrder::random ? "OfTheWizard" : "OfTheDialog";
                         });

} // namespace
