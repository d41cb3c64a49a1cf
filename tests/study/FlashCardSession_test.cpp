#include "store/StoreError.h"
#include "study/FlashCardSession.h"
#include "tests/support/TestSubject.h"

#include <gtest/gtest.h>

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

} // namespace
