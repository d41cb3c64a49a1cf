#include "study/CardSelection.h"

#include <array>
#include <gtest/gtest.h>

namespace {

TEST(CardSelection, OneTopicIsOneCondition)
{
    EXPECT_EQ(selectionQuery(std::array{3}, false), "SELECT * FROM Flashcards WHERE NIndex = 3");
}

TEST(CardSelection, SeveralTopicsAreAnOrChainInListOrder)
{
    EXPECT_EQ(selectionQuery(std::array{3, 7, 12}, false),
              "SELECT * FROM Flashcards WHERE NIndex = 3 OR NIndex = 7 OR NIndex = 12");
}

TEST(CardSelection, MarkedCardsJoinTheTopicsAfterOneBlank)
{
    EXPECT_EQ(selectionQuery(std::array{3, 7}, true),
              "SELECT * FROM Flashcards WHERE NIndex = 3 OR NIndex = 7 OR Marked = Yes");
    EXPECT_EQ(selectionQuery(std::array{3}, true), "SELECT * FROM Flashcards WHERE NIndex = 3 OR Marked = Yes");
}

TEST(CardSelection, MarkedCardsAloneHaveAQueryOfTheirOwn)
{
    EXPECT_EQ(selectionQuery({}, true), "Select * FROM Flashcards WHERE Marked = Yes");
}

TEST(CardSelection, FiveCardsAreTheLeast)
{
    EXPECT_EQ(checkCardCount(0), SelectionRefusal::NoCards);
    EXPECT_EQ(checkCardCount(1), SelectionRefusal::UnderFiveCards);
    EXPECT_EQ(checkCardCount(4), SelectionRefusal::UnderFiveCards);
    EXPECT_EQ(checkCardCount(5), std::nullopt);
    EXPECT_EQ(checkCardCount(100'000), std::nullopt);
}

} // namespace
