#include "tests/forms/EditCardsTest.h"
#include "tests/support/Pictures.h"

#include <algorithm>

namespace {

using frmEditCardsBlankCards = EditCardsTest;

TEST_F(frmEditCardsBlankCards, ACardWithOnlySpacesOnTheFrontAndNothingOnTheBackIsDeletedWhenItIsLeft)
{
    open(small);
    goTo(2);
    typeBoth("   ", "");
    run(Next);
    EXPECT_EQ(stored(small), without(untouched(4), 2));
    EXPECT_EQ(place(), "Card 2 of 3");
    EXPECT_EQ(shown(), "front 3|back 3");
}

TEST_F(frmEditCardsBlankCards, ACardWithTextOnEitherSideIsKept)
{
    open(small);
    type(Front, "");
    run(Next);
    type(Back, " ");
    run(Next);
    EXPECT_EQ(stored(small), (Texts{"|back 1", "front 2| ", "front 3|back 3", "front 4|back 4"}));
    EXPECT_EQ(place(), "Card 3 of 4");
}

TEST_F(frmEditCardsBlankCards, ACardWithOnlyALineBreakIsKept)
{
    open(small);
    typeBoth("\n", "");
    run(Next);
    EXPECT_EQ(place(), "Card 2 of 4");
    EXPECT_EQ(stored(small), with(untouched(4), 1, "\n|"));
}

TEST_F(frmEditCardsBlankCards, ACardWithOnlyAPictureOnASideIsKept)
{
    open(empty);
    box(Front).insertPicture(redPicture());
    run(Next);
    box(Back).insertPicture(redPicture());
    run(Next);
    EXPECT_EQ(place(), "Card 3 of 3");
    run(Exit);
    const std::vector<StoredCard> cards = storedCards(empty);
    ASSERT_EQ(cards.size(), 2U);
    EXPECT_NE(cards[0].front.find("\\pict"), std::string::npos);
    EXPECT_EQ(cards[0].back.find("\\pict"), std::string::npos);
    EXPECT_EQ(cards[1].front.find("\\pict"), std::string::npos);
    EXPECT_NE(cards[1].back.find("\\pict"), std::string::npos);
}

TEST_F(frmEditCardsBlankCards, ABlankLastCardIsReplacedByAnotherWhenNextIsPressed)
{
    open(small);
    run(New);
    run(Next);
    run(Next);
    EXPECT_EQ(place(), "Card 5 of 5");
    EXPECT_EQ(shown(), "|");
    run(Exit);
    EXPECT_EQ(stored(small), untouched(4));
}

TEST_F(frmEditCardsBlankCards, FirstOnABlankFirstCardGoesToTheNewFirstAndSaysSo)
{
    open(small);
    typeBoth("", "");
    dialogs.act([this](QWidget &dialog) {
        EXPECT_EQ(shown(), "front 2|back 2") << "while the message stands";
        EXPECT_EQ(place(), "Card 1 of 3") << "while the message stands";
        QTest::keyClick(&dialog, Qt::Key_Return);
    });
    run(First);
    expectFirstCardMessage(dialogs.last());
    run(Next);
    EXPECT_EQ(shown(), "front 3|back 3");
    EXPECT_EQ(stored(small), without(untouched(4), 1)) << "no other card vanished";
}

TEST_F(frmEditCardsBlankCards, ABlankCardThatVanishesNeverTakesAnotherWithItAndNoTextGoesToAnotherCard)
{
    for (const Command command : {First, Previous, New, Next, Last}) {
        for (int blank = 1; blank <= 4; ++blank) {
            SCOPED_TRACE(nameOf(command) + " on blank card " + std::to_string(blank));
            const int topic = addTopic(file, "Fresh");
            addCards(file, topic, 4);
            open(topic);
            goTo(blank);
            typeBoth("", "  ");

            const bool stays = (command == Previous && blank == 1) || (command == Last && blank == 4);
            if (stays || (command == First && blank <= 2)) { // the blank card goes back by one when it vanishes
                heard([&] { run(command); });
            } else {
                run(command);
            }
            const std::string before = shown();
            type(Front, "mine");
            const std::string after = shown();
            run(Exit);

            Texts expected = untouched(4);
            if (stays) {
                expected.at(blank - 1) = after;
            } else {
                expected = without(expected, blank);
                const auto found = std::ranges::find(expected, before);
                if (found == expected.end()) {
                    EXPECT_EQ(before, "|") << "neither a card nor a new one";
                    expected.push_back(after);
                } else {
                    *found = after;
                }
            }
            EXPECT_EQ(stored(topic), expected);
            settle();
        }
    }
}

// The only card vanishes.

class frmEditCardsWithoutACard : public EditCardsTest
{
protected:
    void SetUp() override
    {
        EditCardsTest::SetUp();
        open(empty);
        expectFirstCardMessage(heard([this] { run(First); }));
        ASSERT_EQ(place(), "Card 0 of 0");
        ASSERT_EQ(stored(empty), Texts{});
        ASSERT_EQ(shown(), "|");
    }
};

TEST_F(frmEditCardsWithoutACard, NewStoresWhatIsTypedAsACardAndAddsAnother)
{
    typeBoth("typed", "");
    run(New);
    EXPECT_EQ(place(), "Card 2 of 2");
    EXPECT_EQ(stored(empty), (Texts{"typed|", "|"}));
    EXPECT_EQ(storedCards(empty).front().topic, empty);
}

TEST_F(frmEditCardsWithoutACard, NextStoresWhatIsTypedAsACardAndAddsAnother)
{
    typeBoth("", "typed");
    run(Next);
    EXPECT_EQ(place(), "Card 2 of 2");
    EXPECT_EQ(stored(empty), (Texts{"|typed", "|"}));
}

TEST_F(frmEditCardsWithoutACard, ExitStoresWhatIsTypedAsACard)
{
    type(Front, "typed");
    run(Exit);
    EXPECT_FALSE(isOpen());
    EXPECT_EQ(stored(empty), Texts{"typed|"});
}

TEST_F(frmEditCardsWithoutACard, FirstStoresWhatIsTypedAndLeavesItInTheEditor)
{
    type(Front, "typed");
    expectFirstCardMessage(heard([this] { run(First); }));
    EXPECT_EQ(stored(empty), Texts{"typed|"});
    EXPECT_EQ(shown(), "typed|");
    EXPECT_EQ(place(), "Card 1 of 1");
}

TEST_F(frmEditCardsWithoutACard, PreviousAndLastSaySoAndStoreNothing)
{
    type(Front, "typed");
    expectFirstCardMessage(heard([this] { run(Previous); }));
    expectLastCardMessage(heard([this] { run(Last); }));
    EXPECT_EQ(stored(empty), Texts{});
    EXPECT_EQ(shown(), "typed|");
    EXPECT_EQ(place(), "Card 0 of 0");
}

TEST_F(frmEditCardsWithoutACard, DeleteAsksAndLeavesANewBlankCard)
{
    type(Front, "typed");
    deleteCard();
    EXPECT_EQ(place(), "Card 1 of 1");
    EXPECT_EQ(shown(), "|");
    EXPECT_EQ(stored(empty), Texts{"|"});
}

TEST_F(frmEditCardsWithoutACard, ExitWithoutTypingLeavesTheTopicEmpty)
{
    run(Exit);
    EXPECT_FALSE(isOpen());
    EXPECT_EQ(stored(empty), Texts{});
}

} // namespace
