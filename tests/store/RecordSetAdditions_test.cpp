#include "RecordSetTest.h"

namespace {

using RecordSetAdditions = RecordSetTest;

TEST_F(RecordSetAdditions, AreTheLastRowButNotTheCurrentOne)
{
    RecordSet set = cardsABC();
    set.addNew();
    set.setText("Front", "D");
    set.update();
    EXPECT_EQ(set.recordCount(), 4);
    EXPECT_EQ(set.absolutePosition(), 0);
    EXPECT_EQ(set.text("Front"), "A");
    EXPECT_EQ(fronts(set), "ABCD");
}

TEST_F(RecordSetAdditions, BecomeCurrentByTheirBookmarkSoThatTheirKeyCanBeRead)
{
    RecordSet set = cardsABC();
    set.addNew();
    set.setNumber("NIndex", 1);
    set.setText("Front", "D");
    set.update();
    set.setBookmark(set.lastModified());
    EXPECT_EQ(set.absolutePosition(), 3);
    EXPECT_EQ(set.number("Index"), 4);
    EXPECT_EQ(set.text("Front"), "D");
}

TEST_F(RecordSetAdditions, BelongToTheSetWhateverItsStatementSelects)
{
    RecordSet set = cardsABC();
    set.addNew();
    set.setNumber("NIndex", 99);
    set.update();
    EXPECT_EQ(set.recordCount(), 4);
}

TEST_F(RecordSetAdditions, ToAnEmptySetAreReached)
{
    RecordSet set = noCards();
    set.addNew();
    set.setText("Front", "A");
    set.update();
    EXPECT_EQ(set.recordCount(), 1);
    EXPECT_FALSE(set.isEndOfSet());
    set.moveNext();
    EXPECT_EQ(set.text("Front"), "A");
}

TEST_F(RecordSetAdditions, AtTheEndLeaveTheSetAtItsEnd)
{
    RecordSet set = cardsABC();
    set.moveLast();
    set.moveNext();
    set.addNew();
    set.setText("Front", "D");
    set.update();
    EXPECT_TRUE(set.isEndOfSet());
    set.movePrevious();
    EXPECT_EQ(set.text("Front"), "D");
}

TEST_F(RecordSetAdditions, ShowTheBufferAndEmptyFieldsUntilUpdate)
{
    RecordSet set = cardsABC();
    set.addNew();
    set.setText("Back", "D");
    EXPECT_EQ(set.text("Back"), "D");
    EXPECT_EQ(set.text("Front"), "");
    EXPECT_EQ(set.number("Index"), 0);
}

TEST_F(RecordSetAdditions, AreDroppedByAMoveAndByCancel)
{
    RecordSet set = cardsABC();
    set.addNew();
    set.setText("Front", "D");
    set.moveFirst();
    EXPECT_STORE_ERROR(NotNow, set.update());
    set.addNew();
    set.cancelUpdate();
    EXPECT_STORE_ERROR(NotNow, set.update());
    EXPECT_EQ(set.recordCount(), 3);
    EXPECT_EQ(askOther("SELECT count(*) FROM FlashCards"), "3");
}

TEST_F(RecordSetAdditions, TakeNothingOfAnEditBefore)
{
    RecordSet set = cardsABC();
    set.edit();
    set.setText("Back", "of an edit");
    set.addNew();
    set.setText("Front", "Z");
    set.update();
    EXPECT_EQ(askOther("SELECT group_concat(Front || Back) FROM FlashCards"), "A,B,C,Z");
}

TEST_F(RecordSetAdditions, WriteTheirOwnFieldsWhateverWasAddedBefore)
{
    RecordSet set = noCards();
    set.addNew();
    set.setText("Front", "A");
    set.setText("Back", "a");
    set.update();
    set.addNew();
    set.setText("Back", "b");
    set.update();
    set.addNew();
    set.update();
    EXPECT_EQ(askOther("SELECT group_concat(Front || '/' || Back) FROM FlashCards"), "A/a,/b,/");
}

TEST_F(RecordSetAdditions, AreDroppedByFirstOnAnEmptySet)
{
    RecordSet set = noCards();
    set.addNew();
    set.moveFirst();
    EXPECT_STORE_ERROR(NotNow, set.update());
    set.addNew();
    set.moveLast();
    EXPECT_STORE_ERROR(NotNow, set.update());
}

TEST_F(RecordSetAdditions, CanBeForgottenWhenTheirTransactionIsUndone)
{
    RecordSet set = cardsABC();
    {
        const Transaction undone(*store);
        set.addNew();
        set.update();
    }
    EXPECT_EQ(set.recordCount(), 4);
    for (int times = 0; times < 2; ++times) {
        set.forgetAdded();
        EXPECT_EQ(set.recordCount(), 3);
    }
    EXPECT_EQ(set.absolutePosition(), 0);
    EXPECT_EQ(fronts(set), "ABC");
}

TEST_F(RecordSetAdditions, NeverGetAKeyAgain)
{
    {
        RecordSet set = cardsABC();
        set.moveLast();
        set.remove();
    }
    store.emplace(path);
    RecordSet set = store->openRecordSet(cardsOfTopic(1));
    set.addNew();
    set.update();
    EXPECT_EQ(set.lastModified(), 4);
    set.setBookmark(4);
    set.remove();
    EXPECT_EQ(store->execute(deleteTopicCards(1)), 2);
    set.addNew();
    set.update();
    EXPECT_EQ(set.lastModified(), 5);
}

TEST_F(RecordSetAdditions, EndWhenTheKeysDo)
{
    RecordSet set = noCards();
    otherProgram().exec("INSERT INTO FlashCards (\"Index\") VALUES (2147483646)");
    set.addNew();
    set.update();
    EXPECT_EQ(set.lastModified(), 2147483647);
    set.addNew();
    EXPECT_STORE_ERROR(Refused, set.update());
    EXPECT_EQ(set.recordCount(), 1);
}

using RecordSetBookmarks = RecordSetTest;

TEST_F(RecordSetBookmarks, MakeTheirRowCurrent)
{
    RecordSet set = cardsABC();
    set.setBookmark(3);
    EXPECT_EQ(set.text("Front"), "C");
    EXPECT_EQ(set.absolutePosition(), 2);
    set.setBookmark(1);
    EXPECT_EQ(set.text("Front"), "A");
}

TEST_F(RecordSetBookmarks, OfRowsOutsideTheSetAreGone)
{
    RecordSet set = cardsABC();
    set.moveNext();
    for (const RecordSet::Bookmark row : {RecordSet::Bookmark{0}, RecordSet::Bookmark{4}, RecordSet::Bookmark{-1},
                                          (RecordSet::Bookmark{1} << 32) + 1}) {
        EXPECT_STORE_ERROR(RowGone, set.setBookmark(row));
    }
    EXPECT_EQ(set.absolutePosition(), 1);
}

TEST_F(RecordSetBookmarks, OfRemovedRowsAreGone)
{
    RecordSet set = cardsABC();
    set.remove();
    EXPECT_STORE_ERROR(RowGone, set.setBookmark(1));
    EXPECT_EQ(set.absolutePosition(), 0);
}

TEST_F(RecordSetBookmarks, NameTheRowOfTheLastUpdate)
{
    RecordSet set = cardsABC();
    set.moveNext();
    set.edit();
    set.setFlag("Marked", true);
    set.update();
    EXPECT_EQ(set.lastModified(), 2);
    set.addNew();
    set.update();
    EXPECT_EQ(set.lastModified(), 4);
}

} // namespace
