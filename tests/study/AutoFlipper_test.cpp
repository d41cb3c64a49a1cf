#include "study/AutoFlipper.h"

#include <gtest/gtest.h>

namespace {

using enum AutoFlipper::State;
using State = AutoFlipper::State;

enum class Event : std::uint8_t { Arm, ArmPaused, End, TogglePause, Tick };

struct Transition
{
    const char *name;
    State from;
    int left; ///< seconds, before
    Event event;
    int seconds; ///< of Arm and ArmPaused
    State to;
    int leftThen;
    bool turns = false;
};

/// Armed with one second more, which has passed: so that a countdown that begins anew shows.
AutoFlipper flipperIn(State state, int left)
{
    AutoFlipper flipper;
    flipper.arm(left + 1);
    EXPECT_EQ(flipper.tick(), left == 0);
    switch (state) {
    case Off: flipper.arm(0); break;
    case Running: break;
    case Paused: flipper.togglePause(); break;
    case Ended: flipper.end(); break;
    }
    EXPECT_EQ(flipper.state(), state);
    EXPECT_EQ(flipper.secondsLeft(), left);
    return flipper;
}

class EveryStateAndEvent : public testing::TestWithParam<Transition>
{
};

TEST_P(EveryStateAndEvent, HasOneOutcome)
{
    const Transition &row = GetParam();
    AutoFlipper flipper = flipperIn(row.from, row.left);
    bool turns = false;
    switch (row.event) {
    case Event::Arm: flipper.arm(row.seconds); break;
    case Event::ArmPaused: flipper.armPaused(row.seconds); break;
    case Event::End: flipper.end(); break;
    case Event::TogglePause: flipper.togglePause(); break;
    case Event::Tick: turns = flipper.tick(); break;
    }
    EXPECT_EQ(flipper.state(), row.to);
    EXPECT_EQ(flipper.secondsLeft(), row.leftThen);
    EXPECT_EQ(turns, row.turns);
    EXPECT_EQ(flipper.isOn(), row.to != Off);
    EXPECT_EQ(flipper.isRunning(), row.to == Running);
    EXPECT_EQ(flipper.canTogglePause(), row.to == Running || row.to == Paused);
}

constexpr Transition transitions[] = {
    {"OffArmedStarts", Off, 0, Event::Arm, 5, Running, 5},
    {"OffArmedForOneSecondStarts", Off, 0, Event::Arm, 1, Running, 1},
    {"OffArmedForTwentySecondsStarts", Off, 0, Event::Arm, 20, Running, 20},
    {"OffArmedForNoSecondsStaysOff", Off, 0, Event::Arm, 0, Off, 0},
    {"OffArmedForLessThanNoSecondsStaysOff", Off, 0, Event::Arm, -1, Off, 0},
    {"OffArmedPausedWaits", Off, 0, Event::ArmPaused, 5, Paused, 5},
    {"OffArmedPausedForOneSecondWaits", Off, 0, Event::ArmPaused, 1, Paused, 1},
    {"OffArmedPausedForTwentySecondsWaits", Off, 0, Event::ArmPaused, 20, Paused, 20},
    {"OffArmedPausedForNoSecondsStaysOff", Off, 0, Event::ArmPaused, 0, Off, 0},
    {"OffArmedPausedForLessThanNoSecondsStaysOff", Off, 0, Event::ArmPaused, -7, Off, 0},
    {"OffEndedStaysOff", Off, 0, Event::End, 0, Off, 0},
    {"OffCannotBePaused", Off, 0, Event::TogglePause, 0, Off, 0},
    {"OffTakesNoNoticeOfTime", Off, 0, Event::Tick, 0, Off, 0},

    {"RunningArmedBeginsAnew", Running, 3, Event::Arm, 5, Running, 5},
    {"RunningArmedForNoSecondsIsOff", Running, 3, Event::Arm, 0, Off, 0},
    {"RunningArmedForLessThanNoSecondsIsOff", Running, 3, Event::Arm, -1, Off, 0},
    {"RunningArmedPausedWaitsAnew", Running, 3, Event::ArmPaused, 5, Paused, 5},
    {"RunningArmedPausedForNoSecondsIsOff", Running, 3, Event::ArmPaused, 0, Off, 0},
    {"RunningArmedPausedForLessThanNoSecondsIsOff", Running, 3, Event::ArmPaused, -1, Off, 0},
    {"RunningEndsWhereItIs", Running, 3, Event::End, 0, Ended, 3},
    {"RunningPausesWhereItIs", Running, 3, Event::TogglePause, 0, Paused, 3},
    {"RunningCountsDown", Running, 3, Event::Tick, 0, Running, 2},
    {"RunningCountsDownToTheLastSecond", Running, 2, Event::Tick, 0, Running, 1},
    {"RunningTurnsTheCardAtZero", Running, 1, Event::Tick, 0, Ended, 0, true},

    {"PausedArmedStartsAnew", Paused, 3, Event::Arm, 5, Running, 5},
    {"PausedArmedForNoSecondsIsOff", Paused, 3, Event::Arm, 0, Off, 0},
    {"PausedArmedForLessThanNoSecondsIsOff", Paused, 3, Event::Arm, -1, Off, 0},
    {"PausedArmedPausedWaitsAnew", Paused, 3, Event::ArmPaused, 5, Paused, 5},
    {"PausedArmedPausedForNoSecondsIsOff", Paused, 3, Event::ArmPaused, 0, Off, 0},
    {"PausedArmedPausedForLessThanNoSecondsIsOff", Paused, 3, Event::ArmPaused, -1, Off, 0},
    {"PausedEndsWhereItIs", Paused, 3, Event::End, 0, Ended, 3},
    {"PausedGoesOnWhereItIs", Paused, 3, Event::TogglePause, 0, Running, 3},
    {"PausedTakesNoNoticeOfTime", Paused, 3, Event::Tick, 0, Paused, 3},
    {"PausedInTheLastSecondTakesNoNoticeOfTime", Paused, 1, Event::Tick, 0, Paused, 1},

    {"EndedArmedStartsAnew", Ended, 3, Event::Arm, 5, Running, 5},
    {"EndedArmedForNoSecondsIsOff", Ended, 3, Event::Arm, 0, Off, 0},
    {"EndedArmedForLessThanNoSecondsIsOff", Ended, 3, Event::Arm, -1, Off, 0},
    {"EndedArmedPausedWaitsAnew", Ended, 3, Event::ArmPaused, 5, Paused, 5},
    {"EndedArmedPausedForNoSecondsIsOff", Ended, 3, Event::ArmPaused, 0, Off, 0},
    {"EndedArmedPausedForLessThanNoSecondsIsOff", Ended, 3, Event::ArmPaused, -1, Off, 0},
    {"EndedEndsNoFurther", Ended, 3, Event::End, 0, Ended, 3},
    {"EndedCannotBePaused", Ended, 3, Event::TogglePause, 0, Ended, 3},
    {"EndedTakesNoNoticeOfTime", Ended, 3, Event::Tick, 0, Ended, 3},
    {"EndedInTheLastSecondTurnsNothing", Ended, 1, Event::Tick, 0, Ended, 1},
    {"EndedAtZeroArmedStartsAnew", Ended, 0, Event::Arm, 5, Running, 5},
    {"EndedAtZeroTurnsNothingMore", Ended, 0, Event::Tick, 0, Ended, 0},
    {"EndedAtZeroCannotBePaused", Ended, 0, Event::TogglePause, 0, Ended, 0},
};

INSTANTIATE_TEST_SUITE_P(Table, EveryStateAndEvent, testing::ValuesIn(transitions),
                         [](const auto &row) { return row.param.name; });

TEST(AutoFlipper, IsOffAtFirst)
{
    const AutoFlipper flipper;
    EXPECT_EQ(flipper.state(), Off);
    EXPECT_EQ(flipper.secondsLeft(), 0);
}

TEST(AutoFlipper, TurnsTheCardOnceAfterExactlyTheSecondsThatItWasGiven)
{
    for (int seconds = 1; seconds <= 20; ++seconds) {
        AutoFlipper flipper;
        flipper.arm(seconds);
        for (int second = 1; second <= seconds + 3; ++second) {
            EXPECT_EQ(flipper.tick(), second == seconds) << second << " of " << seconds;
            EXPECT_EQ(flipper.secondsLeft(), second < seconds ? seconds - second : 0);
        }
    }
}

TEST(AutoFlipper, PausingTakesNoSecondAndGivesNoneBack)
{
    AutoFlipper flipper;
    flipper.arm(5);
    for (int left = 5; left > 1; --left) {
        flipper.togglePause();
        EXPECT_FALSE(flipper.tick());
        flipper.togglePause();
        EXPECT_EQ(flipper.secondsLeft(), left);
        EXPECT_FALSE(flipper.tick());
    }
    EXPECT_TRUE(flipper.tick());
}

TEST(AutoFlipper, CountsFromTheStartOnceAPausedArmingIsResumed)
{
    AutoFlipper flipper;
    flipper.armPaused(2);
    flipper.togglePause();
    EXPECT_FALSE(flipper.tick());
    EXPECT_TRUE(flipper.tick());
}

} // namespace
