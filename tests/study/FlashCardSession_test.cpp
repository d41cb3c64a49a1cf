#include "store/StoreError.h"
#include "study/FlashCardSession.h"
#include "tests/support/TestSubject.h"

#include <SQLiteCpp/Database.h>
#include <array>
#include <gtest/gtest.h>
#include <random>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

class FlashCardSessionTest : public testing::Test
{
protected:
    void SetUp() override
    {
        SubjectStore::create(subject);
        topic = addTopic(subject, "Topic");
        addCards(subject, topic, 5);
        settings.cardQuery = cardQuery(std::array{topic});
    }

    FlashCardSession open(RandomDraw draw = [] { return 0.0F; }) { return {subject, settings, std::move(draw)}; }

    [[nodiscard]] SQLite::Database otherProgram() const { return {subject.string(), SQLite::OPEN_READWRITE}; }
    [[nodiscard]] std::string inFile(const std::string &field) const
    {
        return otherProgram().execAndGet("SELECT group_concat(" + field + ", ' ') FROM FlashCards").getString();
    }

    /// Gives the cards in the order of \p session, by their numbers in the order of entry, from the current one on.
    static std::string cardsAhead(FlashCardSession &session)
    {
        std::string cards;
        do {
            const std::string front = session.text(Side::Front);
            cards += front.at(front.find("\\par") - 1);
        } while (session.next());
        return cards;
    }

    /// With these the cards 1 to 5 come in the order 42531.
    static RandomDraw drawFor42531()
    {
        return [draws = 0]() mutable {
            return std::array{0.0625F, 0.5F, 0.125F, 0.75F, 0.375F, 0.875F}.at(static_cast<std::size_t>(draws++));
        };
    }

    TestFolder folder;
    std::filesystem::path subject = folder.file("subject.crl");
    int topic = 0;
    StudySettings settings;
};

TEST_F(FlashCardSessionTest, OpensOnTheFirstCardInTheOrderOfEntry)
{
    const FlashCardSession session = open();
    EXPECT_EQ(session.position(), 0);
    EXPECT_EQ(session.count(), 5);
    EXPECT_EQ(session.side(), Side::Front);
    EXPECT_EQ(session.text(Side::Front), rtfOf("front 1"));
    EXPECT_EQ(session.text(Side::Back), rtfOf("back 1"));
    EXPECT_FALSE(session.isMarked());
}

TEST_F(FlashCardSessionTest, KeepsTheOrderOfEntryWhateverTheShuffleKeysSay)
{
    {
        SubjectStore store(subject);
        CardSet cards = store.openRecordSet(cardsOfTopic(topic));
        for (float key = 0.9F; !cards.isEndOfSet(); cards.moveNext(), key -= 0.1F) {
            cards.edit();
            cards.setSingle(CardField::Shuffle, key);
            cards.update();
        }
    }
    EXPECT_EQ(open().text(Side::Front), rtfOf("front 1"));
}

TEST_F(FlashCardSessionTest, GoesToTheLastCardAndNoFurther)
{
    FlashCardSession session = open();
    for (int position = 1; position < 5; ++position) {
        ASSERT_TRUE(session.next());
        EXPECT_EQ(session.position(), position);
    }
    session.showSide(Side::Back);
    EXPECT_FALSE(session.next());
    EXPECT_EQ(session.position(), 4);
    EXPECT_EQ(session.side(), Side::Back) << "the side must stay as it was";
    EXPECT_EQ(session.text(Side::Front), rtfOf("front 5"));
}

TEST_F(FlashCardSessionTest, GoesBackToTheFirstCardAndNoFurther)
{
    FlashCardSession session = open();
    ASSERT_TRUE(session.next());
    ASSERT_TRUE(session.previous());
    session.showSide(Side::Back);
    EXPECT_FALSE(session.previous());
    EXPECT_EQ(session.position(), 0);
    EXPECT_EQ(session.side(), Side::Back);
}

TEST_F(FlashCardSessionTest, StartsEveryCardOnTheBackWhenTheBackComesFirst)
{
    settings.viewOrder = ViewOrder::back;
    FlashCardSession session = open();
    EXPECT_EQ(session.side(), Side::Back);
    session.showSide(Side::Front);
    ASSERT_TRUE(session.next());
    EXPECT_EQ(session.side(), Side::Back);
    session.showSide(Side::Front);
    ASSERT_TRUE(session.previous());
    EXPECT_EQ(session.side(), Side::Back);
}

TEST_F(FlashCardSessionTest, DrawsASideForEveryCardReachedWhenTheOrderIsRandom)
{
    settings.viewOrder = ViewOrder::random;
    int draws = 0;
    FlashCardSession session = open([&] { return draws++ % 2 == 0 ? 0.1F : 0.9F; });
    EXPECT_EQ(session.side(), Side::Front);
    ASSERT_TRUE(session.next());
    EXPECT_EQ(session.side(), Side::Back);
    ASSERT_TRUE(session.previous());
    EXPECT_EQ(session.side(), Side::Front);
    EXPECT_FALSE(session.previous());
    EXPECT_EQ(draws, 3) << "a move that is refused draws nothing";
}

TEST_F(FlashCardSessionTest, BothSidesComeFirstOverManyCardsThoughEachDrawIsSeededAnew)
{
    for (const std::int16_t order : {ViewOrder::random, ViewOrder::randomInDialog}) {
        settings.viewOrder = order;
        FlashCardSession session = open([clock = 0U]() mutable {
            std::mt19937 generator(clock += 1000);
            return std::uniform_real_distribution<float>(0, 1)(generator);
        });
        int fronts = 0;
        for (int card = 0; card < 1000; ++card) {
            ASSERT_TRUE(card % 2 == 0 ? session.next() : session.previous());
            fronts += session.side() == Side::Front ? 1 : 0;
        }
        EXPECT_GT(fronts, 400);
        EXPECT_LT(fronts, 600);
    }
}

TEST_F(FlashCardSessionTest, ShowsAnEmptySideAsEmpty)
{
    {
        SubjectStore store(subject);
        CardSet cards = store.openRecordSet(cardsOfTopic(topic));
        cards.edit();
        cards.setText(CardField::Back, "");
        cards.update();
    }
    EXPECT_EQ(open().text(Side::Back), "");
}

TEST_F(FlashCardSessionTest, SaysThatACardIsGoneAndGoesOnFromThere)
{
    FlashCardSession session = open();
    {
        SubjectStore other(subject);
        CardSet cards = other.openRecordSet(cardsOfTopic(topic));
        cards.setAbsolutePosition(1);
        cards.remove();
    }
    ASSERT_TRUE(session.next());
    try {
        (void)session.text(Side::Front);
        FAIL() << "a deleted card was read";
    } catch (const StoreError &error) {
        EXPECT_EQ(error.reason(), StoreError::Reason::RowGone);
    }
    ASSERT_TRUE(session.next());
    EXPECT_EQ(session.text(Side::Front), rtfOf("front 3"));
}

TEST_F(FlashCardSessionTest, LeavesTheFileFreeForOthersWhileACardIsShown)
{
    const FlashCardSession session = open();
    (void)session.text(Side::Front);
    SubjectStore other(subject);
    EXPECT_EQ(other.execute(deleteTopicCards(topic)), 5);
}

TEST_F(FlashCardSessionTest, ClosedItAnswersWithAnErrorAndLeavesOneFile)
{
    FlashCardSession session = open();
    session.close();
    EXPECT_THROW((void)session.text(Side::Front), StoreError);
    EXPECT_FALSE(std::filesystem::exists(subject.string() + "-journal"));
}

TEST_F(FlashCardSessionTest, AMarkIsStoredAtOnceAndShownAgainWhenTheCardIsReachedAgain)
{
    FlashCardSession session = open();
    ASSERT_TRUE(session.next());
    session.toggleMark();
    EXPECT_TRUE(session.isMarked());
    EXPECT_EQ(inFile("Marked"), "0 1 0 0 0");
    ASSERT_TRUE(session.next());
    EXPECT_FALSE(session.isMarked());
    ASSERT_TRUE(session.previous());
    EXPECT_TRUE(session.isMarked());
    session.toggleMark();
    EXPECT_FALSE(session.isMarked());
    EXPECT_EQ(inFile("Marked"), "0 0 0 0 0");
}

TEST_F(FlashCardSessionTest, AMarkedCardIsAmongTheMarkedOnesOfTheNextSession)
{
    {
        FlashCardSession session = open();
        ASSERT_TRUE(session.next());
        session.toggleMark();
    }
    settings.cardQuery = markedCardQuery();
    FlashCardSession session = open();
    EXPECT_EQ(cardsAhead(session), "2");
    EXPECT_TRUE(session.isMarked());
}

TEST_F(FlashCardSessionTest, AShuffleLeadsToTheFirstCardOfTheNewOrder)
{
    FlashCardSession session = open();
    ASSERT_TRUE(session.next());
    ASSERT_TRUE(session.shuffle(drawFor42531()));
    EXPECT_EQ(session.position(), 0);
    EXPECT_EQ(session.count(), 5);
    EXPECT_EQ(session.text(Side::Front), rtfOf("front 4"));
    EXPECT_FALSE(session.previous());
    EXPECT_EQ(cardsAhead(session), "42531");
}

TEST_F(FlashCardSessionTest, AShuffledCardShowsItsStartingSideAndItsMark)
{
    settings.viewOrder = ViewOrder::back;
    FlashCardSession session = open();
    otherProgram().exec("UPDATE FlashCards SET Marked = 1 WHERE \"Index\" = 4");
    session.showSide(Side::Front);
    ASSERT_TRUE(session.shuffle(drawFor42531()));
    EXPECT_EQ(session.side(), Side::Back);
    EXPECT_TRUE(session.isMarked());
}

TEST_F(FlashCardSessionTest, AShuffleDrawsTheSideWhereSidesAreDrawnAndTheKeysWhereItIsTold)
{
    settings.viewOrder = ViewOrder::random;
    int sides = 0;
    int keys = 0;
    FlashCardSession session = open([&] { return sides++ % 2 == 0 ? 0.1F : 0.9F; });
    ASSERT_TRUE(session.shuffle([&] {
        ++keys;
        return 0.5F;
    }));
    EXPECT_EQ(session.side(), Side::Back);
    EXPECT_EQ(sides, 2);
    EXPECT_EQ(keys, 6);
}

TEST_F(FlashCardSessionTest, EveryShuffleStartsFromTheOrderThatIsThere)
{
    FlashCardSession session = open();
    ASSERT_TRUE(session.shuffle(drawFor42531()));
    ASSERT_TRUE(session.shuffle(drawFor42531()));
    EXPECT_EQ(cardsAhead(session), "32154") << "the fourth card, the second...";
}

TEST_F(FlashCardSessionTest, TheOrderOfAShuffleEndsWithTheSessionThoughTheKeysStay)
{
    {
        FlashCardSession session = open();
        ASSERT_TRUE(session.shuffle(drawFor42531()));
    }
    FlashCardSession session = open();
    EXPECT_EQ(session.text(Side::Front), rtfOf("front 1"));
    EXPECT_EQ(cardsAhead(session), "12345");
    EXPECT_EQ(inFile("Shuffle"), "0.875 0.375 0.75 0.125 0.5");
}

TEST_F(FlashCardSessionTest, AMarkGoesToTheCardShownAfterAShuffleToo)
{
    FlashCardSession session = open();
    ASSERT_TRUE(session.shuffle(drawFor42531()));
    session.toggleMark();
    EXPECT_EQ(inFile("Marked"), "0 0 0 1 0");
    EXPECT_EQ(inFile("Shuffle"), "0.875 0.375 0.75 0.125 0.5");
}

TEST_F(FlashCardSessionTest, AShuffleWithoutACardLeftChangesNothing)
{
    otherProgram().exec("UPDATE FlashCards SET Marked = 1");
    settings.cardQuery = markedCardQuery();
    settings.viewOrder = ViewOrder::random;
    settings.timeSetting = 7;
    int sides = 0;
    FlashCardSession session = open([&] { return sides++ % 2 == 0 ? 0.1F : 0.9F; });
    ASSERT_TRUE(session.next());
    session.armFlipper();
    session.tick();
    session.toggleMark();
    otherProgram().exec("UPDATE FlashCards SET Marked = 0");

    EXPECT_FALSE(session.shuffle(drawFor42531()));
    EXPECT_EQ(session.position(), 1);
    EXPECT_EQ(session.count(), 5);
    EXPECT_EQ(session.side(), Side::Back);
    EXPECT_EQ(sides, 2);
    EXPECT_TRUE(session.flipper().isRunning());
    EXPECT_EQ(session.flipper().secondsLeft(), 6);
    EXPECT_EQ(inFile("Shuffle"), "0.0 0.0 0.0 0.0 0.0");
    EXPECT_EQ(cardsAhead(session), "2345");
}

TEST_F(FlashCardSessionTest, TheSameAfterAShuffleThatFails)
{
    settings.timeSetting = 7;
    FlashCardSession session = open();
    ASSERT_TRUE(session.next());
    session.showSide(Side::Back);
    session.armFlipper();
    EXPECT_THROW((void)session.shuffle([]() -> float { throw std::runtime_error("no numbers"); }), std::runtime_error);
    EXPECT_EQ(session.position(), 1);
    EXPECT_EQ(session.side(), Side::Back);
    EXPECT_TRUE(session.flipper().isRunning());
    EXPECT_EQ(inFile("Shuffle"), "0.0 0.0 0.0 0.0 0.0");
    EXPECT_EQ(cardsAhead(session), "2345");
    ASSERT_TRUE(session.shuffle(drawFor42531()));
    EXPECT_EQ(cardsAhead(session), "42531");
}

TEST_F(FlashCardSessionTest, CardsThatAreNoLongerSelectedLeaveWithAShuffle)
{
    otherProgram().exec("UPDATE FlashCards SET Marked = 1");
    settings.cardQuery = markedCardQuery();
    FlashCardSession session = open();
    session.toggleMark();
    EXPECT_EQ(session.count(), 5) << "not before";
    ASSERT_TRUE(session.shuffle(drawFor42531()));
    EXPECT_EQ(session.count(), 4);
    EXPECT_EQ(cardsAhead(session), "4253");
}

TEST_F(FlashCardSessionTest, ARestartLeadsToTheFirstCardOnTheSideThatTheOptionsSay)
{
    FlashCardSession session = open([] { return 0.9F; });
    struct Choice
    {
        std::int16_t viewOrder;
        Side first;
    };
    for (const Choice &choice : {Choice{ViewOrder::back, Side::Back}, Choice{ViewOrder::front, Side::Front},
                                 Choice{ViewOrder::randomInDialog, Side::Back}, Choice{ViewOrder::front, Side::Front},
                                 Choice{ViewOrder::random, Side::Back}}) {
        ASSERT_TRUE(session.next());
        session.restart({.viewOrder = choice.viewOrder});
        EXPECT_EQ(session.position(), 0);
        EXPECT_EQ(session.side(), choice.first);
        ASSERT_TRUE(session.next());
        EXPECT_EQ(session.side(), choice.first) << "and so do the cards after it";
    }
}

TEST_F(FlashCardSessionTest, ARestartKeepsTheCardsAndTheirOrder)
{
    FlashCardSession session = open();
    ASSERT_TRUE(session.shuffle(drawFor42531()));
    ASSERT_TRUE(session.next());
    session.restart({.cardQuery = "SELECT * FROM Nothing"});
    EXPECT_EQ(cardsAhead(session), "42531");
    ASSERT_TRUE(session.shuffle(drawFor42531())) << "of the cards with which the session opened";
    EXPECT_EQ(session.count(), 5);
}

// The file is replaced by another one while the session is open.

class AReplacedFile : public FlashCardSessionTest
{
protected:
    /// A copy of the subject takes its place, after another program has run \p statements on it.
    void replaceBy(const std::string &statements) const
    {
        const std::filesystem::path copy = folder.file("copy.crl");
        std::filesystem::copy_file(subject, copy);
        SQLite::Database(copy.string(), SQLite::OPEN_READWRITE).exec(statements);
        std::filesystem::rename(copy, subject);
    }
};

TEST_F(AReplacedFile, IsMarkedAndShuffledIfItHasTheCard)
{
    FlashCardSession session = open();
    ASSERT_TRUE(session.next());
    replaceBy("DELETE FROM FlashCards WHERE \"Index\" = 5");
    session.toggleMark();
    EXPECT_TRUE(session.isMarked());
    EXPECT_EQ(inFile("Marked"), "0 1 0 0");
    EXPECT_EQ(session.position(), 1);
    EXPECT_EQ(session.count(), 4) << "it goes on with the cards of that file";
    ASSERT_TRUE(session.shuffle(drawFor42531()));
    EXPECT_EQ(session.count(), 4);
    EXPECT_NE(inFile("Shuffle"), "0.0 0.0 0.0 0.0");
}

TEST_F(AReplacedFile, KeepsTheOrderOfAShuffle)
{
    FlashCardSession session = open();
    ASSERT_TRUE(session.shuffle(drawFor42531()));
    ASSERT_TRUE(session.next());
    replaceBy("UPDATE FlashCards SET Marked = 0");
    session.toggleMark();
    EXPECT_EQ(inFile("Marked"), "0 1 0 0 0");
    EXPECT_EQ(cardsAhead(session), "2531");
}

TEST_F(AReplacedFile, IsNotWrittenIfItHasAnotherCardInItsPlace)
{
    for (const char *change :
         {"UPDATE FlashCards SET Front = 'other' WHERE \"Index\" = 1",
          "UPDATE FlashCards SET Back = 'other' WHERE \"Index\" = 1", "DELETE FROM FlashCards WHERE \"Index\" = 1"}) {
        FlashCardSession session = open();
        replaceBy(change);
        for (int command = 0; command < 2; ++command) {
            try {
                static_cast<void>(command == 0 ? session.toggleMark() : session.shuffle([] { return 0.5F; }));
                ADD_FAILURE() << "written after " << change;
            } catch (const StoreError &failure) {
                EXPECT_EQ(failure.reason(), StoreError::Reason::RowGone) << change;
            }
        }
        EXPECT_EQ(inFile("Marked").find('1'), std::string::npos) << change;
        EXPECT_EQ(inFile("Shuffle").find('5'), std::string::npos) << change;
        EXPECT_EQ(session.count(), 5) << "the cards can be read on";
        EXPECT_EQ(session.text(Side::Front), rtfOf("front 1")) << change;
        std::filesystem::remove(subject);
        SetUp();
    }
}

} // namespace
