#include "RecordSetTest.h"

#include <limits>

namespace {

using RecordSetMoves = RecordSetTest;

TEST_F(RecordSetMoves, TheFirstRowIsCurrentAfterOpening)
{
    const RecordSet set = cardsABC();
    EXPECT_EQ(set.absolutePosition(), 0);
    EXPECT_FALSE(set.isBeginOfSet());
    EXPECT_FALSE(set.isEndOfSet());
    EXPECT_EQ(set.recordCount(), 3);
    EXPECT_EQ(set.text("Front"), "A");
}

TEST_F(RecordSetMoves, AnEmptySetIsAtItsBeginAndItsEnd)
{
    const RecordSet set = noCards();
    EXPECT_TRUE(set.isBeginOfSet());
    EXPECT_TRUE(set.isEndOfSet());
    EXPECT_EQ(set.recordCount(), 0);
    EXPECT_EQ(set.absolutePosition(), -1);
}

TEST_F(RecordSetMoves, FirstAndLastDoNothingOnAnEmptySet)
{
    RecordSet set = noCards();
    set.moveLast();
    set.moveFirst();
    EXPECT_TRUE(set.isBeginOfSet());
    EXPECT_TRUE(set.isEndOfSet());
    EXPECT_EQ(set.recordCount(), 0);
}

TEST_F(RecordSetMoves, NextAndPreviousAreErrorsOnAnEmptySet)
{
    RecordSet set = noCards();
    EXPECT_STORE_ERROR(NoCurrentRow, set.moveNext());
    EXPECT_STORE_ERROR(NoCurrentRow, set.movePrevious());
}

TEST_F(RecordSetMoves, NextGoesFromTheLastRowToTheEnd)
{
    RecordSet set = cardsABC();
    set.moveLast();
    EXPECT_EQ(set.absolutePosition(), 2);
    EXPECT_FALSE(set.isEndOfSet());
    set.moveNext();
    EXPECT_TRUE(set.isEndOfSet());
    EXPECT_FALSE(set.isBeginOfSet());
    EXPECT_EQ(set.absolutePosition(), -1);
    EXPECT_STORE_ERROR(NoCurrentRow, set.text("Front"));
}

TEST_F(RecordSetMoves, NextIsAnErrorAtTheEndAndStaysThere)
{
    RecordSet set = cardsABC();
    set.moveLast();
    set.moveNext();
    EXPECT_STORE_ERROR(NoCurrentRow, set.moveNext());
    EXPECT_TRUE(set.isEndOfSet());
    set.movePrevious();
    EXPECT_EQ(set.text("Front"), "C");
}

TEST_F(RecordSetMoves, PreviousGoesFromTheFirstRowToTheBegin)
{
    RecordSet set = cardsABC();
    set.movePrevious();
    EXPECT_TRUE(set.isBeginOfSet());
    EXPECT_FALSE(set.isEndOfSet());
    EXPECT_EQ(set.absolutePosition(), -1);
    EXPECT_STORE_ERROR(NoCurrentRow, set.text("Front"));
}

TEST_F(RecordSetMoves, PreviousIsAnErrorAtTheBeginAndStaysThere)
{
    RecordSet set = cardsABC();
    set.movePrevious();
    EXPECT_STORE_ERROR(NoCurrentRow, set.movePrevious());
    EXPECT_TRUE(set.isBeginOfSet());
    set.moveNext();
    EXPECT_EQ(set.text("Front"), "A");
}

TEST_F(RecordSetMoves, AWalkMeetsEveryRowBothWays)
{
    RecordSet set = cardsABC();
    EXPECT_EQ(fronts(set), "ABC");
    std::string backwards;
    for (set.moveLast(); !set.isBeginOfSet(); set.movePrevious()) {
        backwards += set.text("Front");
    }
    EXPECT_EQ(backwards, "CBA");
}

TEST_F(RecordSetMoves, APositionJumpsToItsRow)
{
    RecordSet set = cardsABC();
    set.setAbsolutePosition(2);
    EXPECT_EQ(set.text("Front"), "C");
    set.setAbsolutePosition(0);
    EXPECT_EQ(set.text("Front"), "A");
}

TEST_F(RecordSetMoves, APositionOutsideTheSetIsOutOfRangeAndMovesNothing)
{
    RecordSet set = cardsABC();
    set.setAbsolutePosition(1);
    for (const int position : {-1, 3, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()}) {
        EXPECT_STORE_ERROR(OutOfRange, set.setAbsolutePosition(position));
    }
    EXPECT_EQ(set.absolutePosition(), 1);
    EXPECT_EQ(set.text("Front"), "B");
}

TEST_F(RecordSetMoves, NoPositionIsInTheRangeOfAnEmptySet)
{
    RecordSet set = noCards();
    EXPECT_STORE_ERROR(OutOfRange, set.setAbsolutePosition(0));
}

TEST_F(RecordSetMoves, ASetCanBeMoved)
{
    RecordSet set = cardsABC();
    set.moveNext();
    RecordSet other = std::move(set);
    EXPECT_EQ(other.text("Front"), "B");
    other = store->openRecordSet(cardsOfTopic(1));
    EXPECT_EQ(other.text("Front"), "A");
}

using RecordSetRemoval = RecordSetTest;

TEST_F(RecordSetRemoval, OfTheFirstRowLeavesAGapBeforeTheSecond)
{
    RecordSet set = cardsABC();
    set.remove();
    EXPECT_EQ(set.recordCount(), 2);
    EXPECT_EQ(set.absolutePosition(), 0);
    EXPECT_FALSE(set.isBeginOfSet());
    EXPECT_FALSE(set.isEndOfSet());
    set.moveNext();
    EXPECT_EQ(set.text("Front"), "B");
    EXPECT_EQ(set.absolutePosition(), 0);
}

TEST_F(RecordSetRemoval, OfTheFirstRowLeavesTheBeginBeforeTheGap)
{
    RecordSet set = cardsABC();
    set.remove();
    set.movePrevious();
    EXPECT_TRUE(set.isBeginOfSet());
    EXPECT_FALSE(set.isEndOfSet());
}

TEST_F(RecordSetRemoval, OfAMiddleRowLeavesAGapBetweenItsNeighbours)
{
    RecordSet set = cardsABC();
    set.moveNext();
    set.remove();
    EXPECT_EQ(set.absolutePosition(), 1);
    EXPECT_STORE_ERROR(NoCurrentRow, set.text("Front"));
    set.movePrevious();
    EXPECT_EQ(set.text("Front"), "A");
    set.moveNext();
    EXPECT_EQ(set.text("Front"), "C");
}

TEST_F(RecordSetRemoval, OfAMiddleRowLetsNextReachTheRowAfterIt)
{
    RecordSet set = cardsABC();
    set.moveNext();
    set.remove();
    set.moveNext();
    EXPECT_EQ(set.text("Front"), "C");
    EXPECT_EQ(set.absolutePosition(), 1);
}

TEST_F(RecordSetRemoval, OfTheLastRowLeavesAGapBeforeTheEnd)
{
    RecordSet set = cardsABC();
    set.moveLast();
    set.remove();
    EXPECT_FALSE(set.isEndOfSet());
    EXPECT_EQ(set.absolutePosition(), set.recordCount());
    set.moveNext();
    EXPECT_TRUE(set.isEndOfSet());
    set.movePrevious();
    EXPECT_EQ(set.text("Front"), "B");
}

TEST_F(RecordSetRemoval, OfTheLastRowLetsPreviousReachTheRowBeforeIt)
{
    RecordSet set = cardsABC();
    set.moveLast();
    set.remove();
    set.movePrevious();
    EXPECT_EQ(set.text("Front"), "B");
    EXPECT_EQ(set.absolutePosition(), 1);
}

TEST_F(RecordSetRemoval, OfTheOnlyRowLeavesAnEmptySet)
{
    RecordSet set = openCards(1).openRecordSet(cardsOfTopic(1));
    set.remove();
    EXPECT_EQ(set.recordCount(), 0);
    EXPECT_TRUE(set.isBeginOfSet());
    EXPECT_TRUE(set.isEndOfSet());
    EXPECT_EQ(set.absolutePosition(), -1);
    set.moveFirst();
    EXPECT_STORE_ERROR(NoCurrentRow, set.moveNext());
}

TEST_F(RecordSetRemoval, TakesTheRowOutOfTheFileAtOnce)
{
    RecordSet set = cardsABC();
    set.moveNext();
    set.remove();
    EXPECT_EQ(askOther("SELECT group_concat(Front, '') FROM FlashCards"), "AC");
}

TEST_F(RecordSetRemoval, InAGapOrOutsideTheRowsIsAnError)
{
    RecordSet set = cardsABC();
    set.remove();
    EXPECT_STORE_ERROR(NoCurrentRow, set.remove());
    EXPECT_STORE_ERROR(NoCurrentRow, set.edit());
    set.movePrevious();
    EXPECT_STORE_ERROR(NoCurrentRow, set.remove());
    set.moveLast();
    set.moveNext();
    EXPECT_STORE_ERROR(NoCurrentRow, set.remove());
    EXPECT_EQ(set.recordCount(), 2);
}

TEST_F(RecordSetRemoval, DropsAnEditOfTheRow)
{
    RecordSet set = cardsABC();
    set.edit();
    set.setText("Front", "Z");
    set.remove();
    EXPECT_STORE_ERROR(NotNow, set.update());
    EXPECT_EQ(fronts(set), "BC");
}

TEST_F(RecordSetRemoval, InAGapAfterTheLastRowANewRowComesNext)
{
    RecordSet set = cardsABC();
    set.moveLast();
    set.remove();
    set.addNew();
    set.setText("Front", "D");
    set.update();
    EXPECT_EQ(set.absolutePosition(), 2);
    EXPECT_STORE_ERROR(NoCurrentRow, set.text("Front"));
    set.moveNext();
    EXPECT_EQ(set.text("Front"), "D");
}

} // namespace
