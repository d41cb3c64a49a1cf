#include "RecordSetTest.h"

namespace {

// Row B is deleted by another program while the set has it.
using RowsDeletedElsewhere = RecordSetTest;

TEST_F(RowsDeletedElsewhere, StayCountedAndReadAsGone)
{
    RecordSet set = cardsABC();
    deleteElsewhere(2);
    set.moveNext();
    EXPECT_EQ(set.absolutePosition(), 1);
    EXPECT_EQ(set.recordCount(), 3);
    EXPECT_STORE_ERROR(RowGone, set.text("Front"));
    EXPECT_STORE_ERROR(RowGone, set.number("Index"));
    EXPECT_STORE_ERROR(RowGone, set.single("Shuffle"));
    EXPECT_STORE_ERROR(RowGone, set.flag("Marked"));
    set.moveNext();
    EXPECT_EQ(set.text("Front"), "C");
}

TEST_F(RowsDeletedElsewhere, CannotBeUpdated)
{
    RecordSet set = cardsABC();
    set.moveNext();
    set.edit();
    set.setText("Front", "Z");
    deleteElsewhere(2);
    EXPECT_STORE_ERROR(RowGone, set.update());
    EXPECT_EQ(set.absolutePosition(), 1);
    EXPECT_EQ(set.text("Front"), "Z");
    EXPECT_EQ(askOther("SELECT group_concat(Front, '') FROM FlashCards"), "AC");
}

TEST_F(RowsDeletedElsewhere, AreFoundGoneByAnEditWhenItReadsOrWrites)
{
    RecordSet set = cardsABC();
    deleteElsewhere(2);
    set.moveNext();
    set.edit();
    EXPECT_STORE_ERROR(RowGone, set.flag("Marked"));
    set.setFlag("Marked", true);
    EXPECT_STORE_ERROR(RowGone, set.update());
}

TEST_F(RowsDeletedElsewhere, CannotBeRemoved)
{
    RecordSet set = cardsABC();
    set.moveNext();
    deleteElsewhere(2);
    EXPECT_STORE_ERROR(RowGone, set.remove());
    EXPECT_EQ(set.recordCount(), 3);
    EXPECT_EQ(set.absolutePosition(), 1);
}

TEST_F(RowsDeletedElsewhere, KeepTheirBookmark)
{
    RecordSet set = cardsABC();
    deleteElsewhere(2);
    set.setBookmark(2);
    EXPECT_EQ(set.absolutePosition(), 1);
    EXPECT_STORE_ERROR(RowGone, set.text("Front"));
}

TEST_F(RowsDeletedElsewhere, AreGoneWhenTheSameStoreDeletedThem)
{
    RecordSet set = cardsABC();
    EXPECT_EQ(set.text("Front"), "A");
    EXPECT_EQ(store->execute(deleteTopicCards(1)), 3);
    EXPECT_STORE_ERROR(RowGone, set.text("Front"));
}

TEST_F(RecordSetTest, ErrorsNameTheSubject)
{
    RecordSet set = cardsABC();
    const auto error = errorOf([&] { set.setAbsolutePosition(9); });
    ASSERT_TRUE(error);
    EXPECT_EQ(error->path(), path.string());
    EXPECT_EQ(error->engineCode(), 0);
    EXPECT_STRNE(error->what(), "");
}

TEST_F(RecordSetTest, AnswersNotNowOnceItsStoreIsClosed)
{
    RecordSet set = cardsABC();
    EXPECT_EQ(set.text("Front"), "A");
    set.edit();
    store->close();
    const std::function<void()> operations[] = {[&] { set.moveFirst(); },
                                                [&] { set.moveLast(); },
                                                [&] { set.moveNext(); },
                                                [&] { set.movePrevious(); },
                                                [&] { set.setAbsolutePosition(0); },
                                                [&] { static_cast<void>(set.text("Front")); },
                                                [&] { static_cast<void>(set.number("Index")); },
                                                [&] { static_cast<void>(set.single("Shuffle")); },
                                                [&] { static_cast<void>(set.flag("Marked")); },
                                                [&] { set.edit(); },
                                                [&] { set.addNew(); },
                                                [&] { set.setText("Front", "Z"); },
                                                [&] { set.setNumber("Answer", 1); },
                                                [&] { set.setSingle("Shuffle", 1); },
                                                [&] { set.setFlag("Marked", true); },
                                                [&] { set.update(); },
                                                [&] { static_cast<void>(set.lastModified()); },
                                                [&] { set.setBookmark(1); },
                                                [&] { set.remove(); }};
    for (const auto &operation : operations) {
        EXPECT_STORE_ERROR(NotNow, operation());
    }
    set.cancelUpdate();
    EXPECT_EQ(set.recordCount(), 0);
    EXPECT_EQ(set.absolutePosition(), -1);
    EXPECT_TRUE(set.isBeginOfSet());
    EXPECT_TRUE(set.isEndOfSet());
}

TEST_F(RecordSetTest, MayOutliveItsStore)
{
    RecordSet set = cardsABC();
    store.reset();
    EXPECT_STORE_ERROR(NotNow, set.text("Front"));
}

} // namespace
