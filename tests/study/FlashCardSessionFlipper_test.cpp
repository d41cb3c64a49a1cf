#include "study/FlashCardSession.h"
#include "tests/support/TestSubject.h"

#include <array>
#include <functional>
#include <gtest/gtest.h>

namespace {

using enum AutoFlipper::State;

/// A session of three cards with its flipper at 5 seconds.
class FlashCardSessionFlipper : public testing::Test
{
protected:
    FlashCardSessionFlipper()
    {
        SubjectStore::create(subject);
        const int topic = addTopic(subject, "Topic");
        addCards(subject, topic, 3);
        settings.cardQuery = cardQuery(std::array{topic});
        settings.timeSetting = 5;
    }

    FlashCardSession open(RandomDraw draw = [] { return 0.0F; }) { return {subject, settings, std::move(draw)}; }

    static void expectFlipper(const FlashCardSession &session, AutoFlipper::State state, int secondsLeft)
    {
        EXPECT_EQ(session.flipper().state(), state);
        EXPECT_EQ(session.flipper().secondsLeft(), secondsLeft);
    }
    static void passSeconds(FlashCardSession &session, int seconds)
    {
        for (int second = 0; second < seconds; ++second) {
            session.tick();
        }
    }
    /// On the card at \p position, with 4 seconds left (Off: none) of the flipper's.
    FlashCardSession openWith(AutoFlipper::State state, int position = 0)
    {
        settings.timeSetting = state == Off ? 0 : 5;
        FlashCardSession session = open();
        while (session.position() < position) {
            EXPECT_TRUE(session.next());
        }
        session.armFlipper();
        session.tick();
        if (state == Paused) {
            session.toggleFlipperPause();
        } else if (state == Ended) {
            session.showSide(session.side());
        }
        expectAsOpenedWith(session, state);
        return session;
    }
    static void expectAsOpenedWith(const FlashCardSession &session, AutoFlipper::State state)
    {
        expectFlipper(session, state, state == Off ? 0 : 4);
    }

    TestFolder folder;
    std::filesystem::path subject = folder.file("subject.crl");
    StudySettings settings;
};

TEST_F(FlashCardSessionFlipper, WaitsForTheCardToBeInView)
{
    FlashCardSession session = open();
    passSeconds(session, 9);
    EXPECT_EQ(session.side(), Side::Front);
    expectFlipper(session, Off, 0);
    session.armFlipper();
    expectFlipper(session, Running, 5);
}

TEST_F(FlashCardSessionFlipper, TurnsTheCardToTheOtherSideOnceAndNeverMovesOn)
{
    for (const std::int16_t order : {ViewOrder::front, ViewOrder::back}) {
        settings.viewOrder = order;
        FlashCardSession session = open();
        const Side first = session.side();
        session.armFlipper();
        for (int left = 4; left > 0; --left) {
            session.tick();
            expectFlipper(session, Running, left);
            EXPECT_EQ(session.side(), first);
        }
        session.tick();
        expectFlipper(session, Ended, 0);
        EXPECT_EQ(session.side(), otherSide(first));
        passSeconds(session, 20);
        expectFlipper(session, Ended, 0);
        EXPECT_EQ(session.side(), otherSide(first));
        EXPECT_EQ(session.position(), 0);
    }
}

TEST_F(FlashCardSessionFlipper, OfOneSecondTurnsTheCardAtTheFirst)
{
    settings.timeSetting = 1;
    FlashCardSession session = open();
    session.armFlipper();
    session.tick();
    EXPECT_EQ(session.side(), Side::Back);
    expectFlipper(session, Ended, 0);
}

TEST_F(FlashCardSessionFlipper, OfNoSecondsIsOffWhateverHappens)
{
    settings.timeSetting = 0;
    FlashCardSession session = open();
    session.armFlipper();
    expectFlipper(session, Off, 0);
    session.armFlipperPaused();
    session.toggleFlipperPause();
    passSeconds(session, 30);
    ASSERT_TRUE(session.next());
    session.showSide(Side::Front);
    expectFlipper(session, Off, 0);
    EXPECT_EQ(session.side(), Side::Front);
}

TEST_F(FlashCardSessionFlipper, ATurnByHandEndsTheCountdownWhereItIs)
{
    for (const AutoFlipper::State state : {Running, Paused}) {
        for (const Side side : {Side::Back, Side::Front}) {
            FlashCardSession session = openWith(state);
            session.showSide(side);
            expectFlipper(session, Ended, 4);
            session.toggleFlipperPause();
            passSeconds(session, 9);
            EXPECT_EQ(session.side(), side);
            expectFlipper(session, Ended, 4);
        }
    }
}

TEST_F(FlashCardSessionFlipper, ReachingACardEndsTheCountdownUntilTheCardIsInView)
{
    const std::function<bool(FlashCardSession &)> moves[] = {
        [](FlashCardSession &session) { return session.next(); },
        [](FlashCardSession &session) { return session.previous(); },
        [](FlashCardSession &session) { return session.shuffle([] { return 0.5F; }); },
    };
    for (const auto &move : moves) {
        for (const AutoFlipper::State state : {Running, Paused, Ended}) {
            FlashCardSession session = openWith(state, 1);
            ASSERT_TRUE(move(session));
            expectFlipper(session, Ended, 4);
            session.tick();
            EXPECT_EQ(session.side(), Side::Front);
            session.armFlipper();
            expectFlipper(session, Running, 5);
        }
    }
}

TEST_F(FlashCardSessionFlipper, APausedOneTurnsNothingAndGoesOnWhereItWas)
{
    FlashCardSession session = openWith(Paused);
    passSeconds(session, 9);
    expectFlipper(session, Paused, 4);
    session.toggleFlipperPause();
    expectFlipper(session, Running, 4);
    passSeconds(session, 3);
    EXPECT_EQ(session.side(), Side::Front);
    session.tick();
    EXPECT_EQ(session.side(), Side::Back);
}

struct StateName
{
    AutoFlipper::State state;
    const char *name;
};

constexpr StateName states[] = {{Off, "Off"}, {Running, "Running"}, {Paused, "Paused"}, {Ended, "Ended"}};

class FlashCardSessionFlipperInEveryState : public FlashCardSessionFlipper,
                                            public testing::WithParamInterface<StateName>
{
};

TEST_P(FlashCardSessionFlipperInEveryState, IsLeftAloneByAMoveThatIsRefused)
{
    FlashCardSession first = openWith(GetParam().state, 0);
    EXPECT_FALSE(first.previous());
    expectAsOpenedWith(first, GetParam().state);
    FlashCardSession last = openWith(GetParam().state, 2);
    EXPECT_FALSE(last.next());
    expectAsOpenedWith(last, GetParam().state);
    EXPECT_EQ(last.position(), 2);
}

TEST_P(FlashCardSessionFlipperInEveryState, IsLeftAloneByAMarkAndSoAreTheCardAndItsSide)
{
    settings.viewOrder = ViewOrder::back;
    FlashCardSession session = openWith(GetParam().state, 1);
    session.toggleMark();
    expectAsOpenedWith(session, GetParam().state);
    session.toggleMark();
    expectAsOpenedWith(session, GetParam().state);
    EXPECT_EQ(session.position(), 1);
    EXPECT_EQ(session.side(), Side::Back);
}

TEST_P(FlashCardSessionFlipperInEveryState, TakesTheSecondsOfTheOptionsAndWaits)
{
    FlashCardSession session = openWith(GetParam().state, 1);
    session.restart({.timeSetting = 2});
    expectFlipper(session, Off, 0);
    session.armFlipperPaused();
    expectFlipper(session, Paused, 2);
    passSeconds(session, 9);
    EXPECT_EQ(session.side(), Side::Front);
    session.toggleFlipperPause();
    passSeconds(session, 2);
    EXPECT_EQ(session.side(), Side::Back);
    ASSERT_TRUE(session.next());
    session.armFlipper();
    expectFlipper(session, Running, 2);
}

TEST_P(FlashCardSessionFlipperInEveryState, IsTurnedOffByOptionsWithoutSeconds)
{
    FlashCardSession session = openWith(GetParam().state);
    session.restart({.timeSetting = 0});
    session.armFlipperPaused();
    expectFlipper(session, Off, 0);
    ASSERT_TRUE(session.next());
    session.armFlipper();
    expectFlipper(session, Off, 0);
}

INSTANTIATE_TEST_SUITE_P(State, FlashCardSessionFlipperInEveryState, testing::ValuesIn(states),
                         [](const auto &row) { return row.param.name; });

} // namespace
