#include "forms/frmCardOptions/frmCardOptions.h"
#include "tests/forms/FlashCardTest.h"

#include <QCheckBox>
#include <QRadioButton>
#include <QSlider>

#include <functional>
#include <set>

namespace {

class frmFlashCardOptions : public FlashCardTest
{
protected:
    using Choose = std::function<void(frmCardOptions &)>;

    /// Opens the dialog, chooses there, and presses OK unless the choice has closed it.
    void change(const Choose &choose)
    {
        within<frmCardOptions>([this] { run(Options); },
                               [choose](frmCardOptions &options) {
                                   choose(options);
                                   if (options.isVisible()) {
                                       click(options, "Command1(0)");
                                   }
                               });
    }

    /// Chooses the flipper's seconds with the keyboard.
    static void choosePause(frmCardOptions &options, int seconds)
    {
        control<QCheckBox>(options, "Check1").setFocus();
        QTest::keyClick(&control<QCheckBox>(options, "Check1"), Qt::Key_Space);
        auto &slider = control<QSlider>(options, "Slider1");
        QTest::keyClick(&slider, Qt::Key_Home);
        for (int second = 1; second < seconds; ++second) {
            QTest::keyClick(&slider, Qt::Key_Right);
        }
        ASSERT_EQ(slider.value(), seconds);
    }
    static void chooseSide(frmCardOptions &options, int option)
    {
        auto &choice = control<QRadioButton>(options, qPrintable(QStringLiteral("Option1(%1)").arg(option)));
        choice.setFocus();
        QTest::keyClick(&choice, Qt::Key_Space);
        ASSERT_TRUE(choice.isChecked());
    }
    static void chooseNothing(frmCardOptions &) {}

    /// The third card, turned over, while others are as they were.
    void openOnThird(std::int16_t seconds)
    {
        open(seconds);
        goTo(3);
        passSeconds(2);
    }
};

TEST_F(frmFlashCardOptions, OpensWithTheSameChoicesWhateverTheSessionUses)
{
    module->study.viewOrder = ViewOrder::back;
    open(12);
    change([](frmCardOptions &options) {
        EXPECT_TRUE(control<QRadioButton>(options, "Option1(0)").isChecked());
        EXPECT_FALSE(control<QCheckBox>(options, "Check1").isChecked());
        EXPECT_EQ(control<QSlider>(options, "Slider1").value(), 5);
        EXPECT_EQ(options.parentWidget()->window()->objectName(), QStringLiteral("frmFlashCard"));
        EXPECT_TRUE(options.isModal());
    });
}

TEST_F(frmFlashCardOptions, OkWithoutAChangeTurnsTheFlipperOffAndBeginsAgain)
{
    openOnThird(12);
    EXPECT_EQ(scene(), "3 of 12, front 3, 10 running");
    change(chooseNothing);
    EXPECT_EQ(scene(), "1 of 12, front 1");
    EXPECT_EQ(module->study.timeSetting, 0);
    EXPECT_EQ(module->study.viewOrder, ViewOrder::front);
    key(Qt::Key_P);
    key(Qt::Key_Right);
    EXPECT_EQ(scene(), "2 of 12, front 2");
}

TEST_F(frmFlashCardOptions, TheFlipperWaitsOnTheFirstCardWithItsNewTime)
{
    openOnThird(12);
    change([](frmCardOptions &options) { choosePause(options, 7); });
    EXPECT_EQ(scene(), "1 of 12, front 1, 7 paused");
    EXPECT_FALSE(clock().isActive());
    EXPECT_EQ(picture(Flipper), QStringLiteral("flipper-stopped"));
    EXPECT_TRUE(button(Flipper).isEnabled());
    passSeconds(2);
    EXPECT_EQ(countdown().text(), QStringLiteral("7"));
    key(Qt::Key_P);
    passSecond();
    EXPECT_EQ(scene(), "1 of 12, front 1, 6 running");
    key(Qt::Key_Right);
    EXPECT_EQ(scene(), "2 of 12, front 2, 7 running") << "the next card counts at once";
}

TEST_F(frmFlashCardOptions, TurnTheFlipperOnInASessionWithoutIt)
{
    open(0);
    goTo(2);
    change([](frmCardOptions &options) { choosePause(options, 1); });
    EXPECT_EQ(scene(), "1 of 12, front 1, 1 paused");
    run(Flipper);
    passSecond();
    EXPECT_EQ(scene(), "1 of 12, back 1, 0 ended");
}

TEST_F(frmFlashCardOptions, BackFirstBeginsOnTheBackOfTheFirstCard)
{
    openOnThird(12);
    change([](frmCardOptions &options) { chooseSide(options, 1); });
    EXPECT_EQ(scene(), "1 of 12, back 1");
    key(Qt::Key_Right);
    EXPECT_EQ(scene(), "2 of 12, back 2");
}

TEST_F(frmFlashCardOptions, RandomIsStoredAsItsOwnNumberAndShowsBothSides)
{
    open(0);
    std::set<QString> first;
    for (int draw = 0; draw < manyDraws && first.size() < 2; ++draw) {
        change([](frmCardOptions &options) { chooseSide(options, 2); });
        EXPECT_EQ(place(), QStringLiteral("1 of 12"));
        first.insert(sideShown());
    }
    EXPECT_EQ(first.size(), 2U) << "of the first card";
    EXPECT_EQ(module->study.viewOrder, 0);

    std::set<QString> reached;
    for (int draw = 0; draw < manyDraws && reached.size() < 2; ++draw) {
        run(draw % 2 == 0 ? Next : Previous);
        reached.insert(sideShown());
    }
    EXPECT_EQ(reached.size(), 2U) << "of the cards after it";
}

TEST_F(frmFlashCardOptions, TheMarkShownAfterwardsIsThatOfTheFirstCard)
{
    markElsewhere(3);
    open(0);
    goTo(3);
    change(chooseNothing);
    EXPECT_EQ(scene(), "1 of 12, front 1");
    markElsewhere(1);
    goTo(2);
    change(chooseNothing);
    EXPECT_EQ(scene(), "1 of 12, front 1, marked");
}

TEST_F(frmFlashCardOptions, CancelAndEscapeKeepCardSideAndCountdown)
{
    openOnThird(9);
    module->study.viewOrder = ViewOrder::back; // must not reach the session either
    const int before = secondsBegun();
    const auto expectKept = [&] {
        EXPECT_EQ(scene(), "3 of 12, front 3, 7 running");
        EXPECT_EQ(secondsBegun(), before);
        EXPECT_TRUE(module->study.cancelled);
        EXPECT_EQ(module->study.timeSetting, 9);
    };
    const auto chooseMuch = [](frmCardOptions &options) {
        chooseSide(options, 1);
        choosePause(options, 2);
    };
    change([&](frmCardOptions &options) {
        chooseMuch(options);
        click(options, "Command1(1)");
    });
    expectKept();
    change([&](frmCardOptions &options) {
        chooseMuch(options);
        QTest::keyClick(options.focusWidget(), Qt::Key_Escape);
    });
    expectKept();
    EXPECT_TRUE(isOpen());
    passSecond();
    EXPECT_EQ(scene(), "3 of 12, front 3, 6 running");
    key(Qt::Key_Right);
    EXPECT_EQ(scene(), "4 of 12, front 4, 9 running") << "the session goes on";
    change([](frmCardOptions &options) { choosePause(options, 4); });
    EXPECT_FALSE(module->study.cancelled);
    EXPECT_EQ(scene(), "1 of 12, front 1, 4 paused") << "a later OK counts";
}

TEST_F(frmFlashCardOptions, CancelKeepsAnEndedCountdownAndThePause)
{
    openOnThird(9);
    const auto cancel = [](frmCardOptions &options) { click(options, "Command1(1)"); };
    key(Qt::Key_P);
    change(cancel);
    EXPECT_EQ(scene(), "3 of 12, front 3, 7 paused");
    key(Qt::Key_Down);
    change(cancel);
    EXPECT_EQ(scene(), "3 of 12, back 3, 7 ended");
}

TEST_F(frmFlashCardOptions, TheCloseBoxBeginsAgainWithTheSettingsAsTheyWere)
{
    module->study.viewOrder = ViewOrder::back;
    openOnThird(9);
    change([](frmCardOptions &options) {
        chooseSide(options, 0);
        choosePause(options, 2);
        options.close();
    });
    EXPECT_EQ(scene(), "1 of 12, back 1, 9 paused");
    EXPECT_FALSE(module->study.cancelled);
    EXPECT_EQ(module->study.timeSetting, 9);
    EXPECT_EQ(module->study.viewOrder, ViewOrder::back);
    run(Flipper);
    passSecond();
    EXPECT_EQ(scene(), "1 of 12, back 1, 8 running");
}

TEST_F(frmFlashCardOptions, KeepAShuffledOrder)
{
    open(0);
    heard([this] { run(Shuffle); }, QMessageBox::Yes);
    const QString first = shown();
    goTo(5);
    const QString fifth = shown();
    change(chooseNothing);
    EXPECT_EQ(shown(), first);
    goTo(5);
    EXPECT_EQ(shown(), fifth);
}

} // namespace
