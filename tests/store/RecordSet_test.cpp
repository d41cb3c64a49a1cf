#include "StoreTest.h"
#include "store/RecordSet.h"
#include "store/Schema.h"

#include <cmath>
#include <limits>

namespace {

// Most tests look at a subject whose topic 1 has the cards A, B, C with the keys 1, 2, 3.
class RecordSetTest : public StoreTest
{
protected:
    SubjectStore &openCards(int count)
    {
        createCards(count);
        return store.emplace(path);
    }

    [[nodiscard]] RecordSet cardsABC() { return openCards(3).openRecordSet(cardsOfTopic(1)); }
    [[nodiscard]] RecordSet noCards() { return openCards(0).openRecordSet(cardsOfTopic(1)); }

    static std::string fronts(RecordSet &set)
    {
        std::string all;
        for (set.moveFirst(); !set.isEndOfSet(); set.moveNext()) {
            all += set.text(CardField::Front);
        }
        return all;
    }

    void deleteElsewhere(int key) const
    {
        otherProgram().exec("DELETE FROM FlashCards WHERE \"Index\" = " + std::to_string(key));
    }

    std::optional<SubjectStore> store;
};

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

using RecordSetFields = RecordSetTest;

TEST_F(RecordSetFields, AreNamedByPositionOrByNameInAnyCase)
{
    const RecordSet set = cardsABC();
    EXPECT_EQ(set.text(CardField::Front), "A");
    EXPECT_EQ(set.text("front"), "A");
    EXPECT_EQ(set.text(std::string_view("FRONT")), "A");
    EXPECT_EQ(set.number(CardField::NIndex), 1);
    EXPECT_EQ(set.number("nINDEX"), 1);
}

TEST_F(RecordSetFields, ThatDoNotExistAreOutOfRange)
{
    RecordSet set = cardsABC();
    EXPECT_STORE_ERROR(OutOfRange, set.text(11));
    EXPECT_STORE_ERROR(OutOfRange, set.text(-1));
    EXPECT_STORE_ERROR(OutOfRange, set.text("Fron"));
    EXPECT_STORE_ERROR(OutOfRange, set.text(""));
    set.edit();
    EXPECT_STORE_ERROR(OutOfRange, set.setText("Notes", "x"));
    const RecordSet topics = store->openRecordSet(allTopics());
    EXPECT_STORE_ERROR(OutOfRange, topics.text(3));
}

TEST_F(RecordSetFields, OfANewRowAreEmptyUnlessSet)
{
    RecordSet set = noCards();
    set.addNew();
    set.update();
    set.setBookmark(set.lastModified());
    EXPECT_EQ(set.number("Index"), 1);
    EXPECT_EQ(set.number("NIndex"), 0);
    EXPECT_EQ(set.text("Front"), "");
    EXPECT_EQ(set.text("Back"), "");
    EXPECT_FALSE(set.flag("Marked"));
    EXPECT_EQ(set.single("Shuffle"), 0.0F);
    EXPECT_FALSE(set.flag("isTrueFalse"));
    EXPECT_FALSE(set.flag("isFront"));
    EXPECT_EQ(set.number("Answer"), 0);
    EXPECT_EQ(set.number("Wrong1"), 0);
    EXPECT_EQ(set.number("Wrong2"), 0);
}

TEST_F(RecordSetFields, KeepEveryValueOfTheirKind)
{
    RecordSet set = cardsABC();
    for (const int value : {0, 1, -1, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()}) {
        set.edit();
        set.setNumber("Answer", value);
        set.setFlag("Marked", value != 0);
        set.update();
        EXPECT_EQ(set.number("Answer"), value);
        EXPECT_EQ(set.flag("Marked"), value != 0);
    }
}

TEST_F(RecordSetFields, KeepTheExactSingleValue)
{
    RecordSet set = cardsABC();
    const float values[] = {0.0F,
                            0.1F,
                            1.0F / 3,
                            std::nextafter(1.0F, 0.0F),
                            std::numeric_limits<float>::min(),
                            std::numeric_limits<float>::denorm_min(),
                            16777216.0F,
                            -2.5F};
    for (const float value : values) {
        set.edit();
        set.setSingle(CardField::Shuffle, value);
        set.update();
        EXPECT_EQ(set.single(CardField::Shuffle), value);
        EXPECT_EQ(otherProgram().execAndGet("SELECT Shuffle FROM FlashCards WHERE \"Index\" = 1").getDouble(),
                  static_cast<double>(value));
    }
}

TEST_F(RecordSetFields, KeepEveryByteOfATextThatWasWritten)
{
    RecordSet set = cardsABC();
    using namespace std::string_literals;
    const std::string texts[] = {""s,
                                 "\0"s,
                                 "before\0after"s,
                                 "Grüße, 世界 \xf0\x9f\x83\x8f"s,
                                 "it's \"quoted\"; --"s,
                                 "\xff\xfe not UTF-8"s,
                                 std::string(1 << 20, 'x')};
    for (const std::string &text : texts) {
        set.edit();
        set.setText("Front", text);
        set.update();
        EXPECT_TRUE(set.text("Front") == text) << text.substr(0, 40);
        RecordSet again = store->openRecordSet(cardsOfTopic(1));
        EXPECT_TRUE(again.text("Front") == text) << text.substr(0, 40);
    }
}

TEST_F(RecordSetFields, ReadNullAsEmpty)
{
    otherProgram(SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE)
        .exec("CREATE TABLE Topics (\"Index\" INTEGER PRIMARY KEY, Name, Notes);"
              "CREATE TABLE FlashCards (\"Index\" INTEGER PRIMARY KEY, NIndex, Front, Back, Marked, Shuffle,"
              " isTrueFalse, isFront, Answer, Wrong1, Wrong2);"
              "INSERT INTO FlashCards (NIndex) VALUES (1)");
    SubjectStore foreign(path);
    const RecordSet set = foreign.openRecordSet(cardsOfTopic(1));
    EXPECT_EQ(set.text("Front"), "");
    EXPECT_EQ(set.number("Answer"), 0);
    EXPECT_EQ(set.single("Shuffle"), 0.0F);
    EXPECT_FALSE(set.flag("Marked"));
}

TEST_F(RecordSetFields, ReadWhatAnotherProgramStoredInAnotherKind)
{
    RecordSet set = cardsABC();
    otherProgram().exec("UPDATE FlashCards SET Front = 42, Back = 0.5, Marked = -1, Answer = '7', Wrong1 = 99999999999,"
                        " Wrong2 = 'none', Shuffle = 1 WHERE \"Index\" = 1");
    EXPECT_EQ(set.text("Front"), "42");
    EXPECT_EQ(set.text("Back"), "0.5");
    EXPECT_TRUE(set.flag("Marked"));
    EXPECT_EQ(set.number("Answer"), 7);
    EXPECT_EQ(set.number("Wrong1"), std::numeric_limits<int>::max());
    EXPECT_EQ(set.number("Wrong2"), 0);
    EXPECT_EQ(set.single("Shuffle"), 1.0F);
    EXPECT_EQ(set.text("Answer"), "7");
}

TEST_F(RecordSetFields, AreReadWhenTheyAreAskedForFirst)
{
    RecordSet set = cardsABC();
    otherProgram().exec("UPDATE FlashCards SET Front = 'changed'");
    EXPECT_EQ(set.text("Front"), "changed");
    otherProgram().exec("UPDATE FlashCards SET Back = 'changed too'");
    EXPECT_EQ(set.text("Back"), "");
    set.moveFirst();
    EXPECT_EQ(set.text("Back"), "changed too");
}

using RecordSetEdits = RecordSetTest;

TEST_F(RecordSetEdits, AreStoredByUpdate)
{
    RecordSet set = cardsABC();
    set.edit();
    set.setText("Front", "Z");
    EXPECT_EQ(askOther("SELECT Front FROM FlashCards"), "A");
    set.update();
    EXPECT_EQ(askOther("SELECT Front FROM FlashCards"), "Z");
    EXPECT_EQ(set.text("Front"), "Z");
    EXPECT_EQ(set.absolutePosition(), 0);
}

TEST_F(RecordSetEdits, WriteTheFieldsThatWereSetAndNothingElse)
{
    RecordSet set = cardsABC();
    set.edit();
    EXPECT_EQ(set.text("Back"), "");
    set.setText("Front", "Z");
    otherProgram().exec("UPDATE FlashCards SET Back = 'theirs'");
    set.update();
    EXPECT_EQ(set.text("Front"), "Z");
    EXPECT_EQ(set.text("Back"), "theirs");
}

TEST_F(RecordSetEdits, ShowTheBufferWhileEditing)
{
    RecordSet set = cardsABC();
    set.edit();
    EXPECT_EQ(set.text("Front"), "A");
    set.setText("Front", "Z");
    set.setNumber("Answer", 3);
    EXPECT_EQ(set.text("Front"), "Z");
    EXPECT_EQ(set.number("Answer"), 3);
    EXPECT_EQ(set.number("NIndex"), 1);
}

TEST_F(RecordSetEdits, CanSetAFieldTwice)
{
    RecordSet set = cardsABC();
    set.edit();
    set.setText("Front", "Y");
    set.setText("front", "Z");
    set.update();
    EXPECT_EQ(set.text("Front"), "Z");
}

TEST_F(RecordSetEdits, StartFromWhatTheFileHoldsNow)
{
    RecordSet set = cardsABC();
    EXPECT_FALSE(set.flag("Marked"));
    otherProgram().exec("UPDATE FlashCards SET Marked = 1");
    set.edit();
    set.setFlag("Marked", !set.flag("Marked"));
    set.update();
    EXPECT_FALSE(set.flag("Marked"));
}

TEST_F(RecordSetEdits, AreDroppedByEveryMove)
{
    RecordSet set = cardsABC();
    const std::function<void()> moves[] = {[&] { set.moveFirst(); },
                                           [&] { set.moveLast(); },
                                           [&] { set.movePrevious(); },
                                           [&] { set.moveNext(); },
                                           [&] { set.setAbsolutePosition(1); },
                                           [&] { set.setBookmark(2); }};
    for (const auto &move : moves) {
        set.setAbsolutePosition(1);
        set.edit();
        set.setText("Front", "Z");
        move();
        EXPECT_STORE_ERROR(NotNow, set.update());
    }
    EXPECT_EQ(fronts(set), "ABC");
}

TEST_F(RecordSetEdits, AreKeptByAMoveThatFails)
{
    RecordSet set = cardsABC();
    set.edit();
    set.setText("Front", "Z");
    EXPECT_STORE_ERROR(OutOfRange, set.setAbsolutePosition(3));
    EXPECT_STORE_ERROR(RowGone, set.setBookmark(77));
    set.update();
    EXPECT_EQ(fronts(set), "ZBC");
}

TEST_F(RecordSetEdits, AreDroppedByCancel)
{
    RecordSet set = cardsABC();
    set.edit();
    set.setText("Front", "Z");
    set.cancelUpdate();
    EXPECT_EQ(set.text("Front"), "A");
    EXPECT_STORE_ERROR(NotNow, set.update());
    set.cancelUpdate();
}

TEST_F(RecordSetEdits, ReplaceAnEditBefore)
{
    RecordSet set = cardsABC();
    set.edit();
    set.setText("Front", "Z");
    set.edit();
    set.setText("Back", "Y");
    set.update();
    EXPECT_EQ(set.text("Front"), "A");
    EXPECT_EQ(set.text("Back"), "Y");
}

TEST_F(RecordSetEdits, NeedACurrentRow)
{
    RecordSet empty = noCards();
    EXPECT_STORE_ERROR(NoCurrentRow, empty.edit());
    RecordSet set = cardsABC();
    set.moveLast();
    set.moveNext();
    EXPECT_STORE_ERROR(NoCurrentRow, set.edit());
    EXPECT_STORE_ERROR(NotNow, set.update());
}

TEST_F(RecordSetEdits, AreNeededBeforeSettingAndUpdating)
{
    RecordSet set = cardsABC();
    EXPECT_STORE_ERROR(NotNow, set.setText("Front", "Z"));
    EXPECT_STORE_ERROR(NotNow, set.setNumber("Answer", 1));
    EXPECT_STORE_ERROR(NotNow, set.setSingle("Shuffle", 1));
    EXPECT_STORE_ERROR(NotNow, set.setFlag("Marked", true));
    EXPECT_STORE_ERROR(NotNow, set.update());
    EXPECT_STORE_ERROR(NotNow, set.lastModified());
}

TEST_F(RecordSetEdits, OfNothingWriteNothing)
{
    RecordSet set = cardsABC();
    const std::string before = bytesOf(path);
    set.edit();
    set.update();
    EXPECT_EQ(set.lastModified(), 1);
    EXPECT_TRUE(bytesOf(path) == before);
}

TEST_F(RecordSetEdits, ShowInTheOtherSetsOfTheStore)
{
    RecordSet set = cardsABC();
    const RecordSet other = store->openRecordSet(cardsOfTopic(1));
    EXPECT_EQ(other.text("Front"), "A");
    set.edit();
    set.setText("Front", "Z");
    set.update();
    EXPECT_EQ(other.text("Front"), "Z");
}

TEST_F(RecordSetEdits, RefuseValuesOfTheWrongKind)
{
    RecordSet set = cardsABC();
    set.edit();
    EXPECT_STORE_ERROR(Refused, set.setNumber("Index", 9));
    EXPECT_STORE_ERROR(Refused, set.setNumber("Front", 9));
    EXPECT_STORE_ERROR(Refused, set.setText("Answer", "9"));
    EXPECT_STORE_ERROR(Refused, set.setSingle("Answer", 9));
    EXPECT_STORE_ERROR(Refused, set.setNumber("Shuffle", 9));
    EXPECT_STORE_ERROR(Refused, set.setFlag("Shuffle", true));
    set.setText("Back", "kept");
    set.update();
    EXPECT_EQ(set.text("Back"), "kept");
    EXPECT_EQ(fronts(set), "ABC");
}

TEST_F(RecordSetEdits, RefuseANumberThatIsNone)
{
    RecordSet set = cardsABC();
    set.edit();
    set.setSingle("Shuffle", std::numeric_limits<float>::quiet_NaN());
    EXPECT_STORE_ERROR(Refused, set.update());
    set.setSingle("Shuffle", 0.5F);
    set.update();
    EXPECT_EQ(set.single("Shuffle"), 0.5F);
}

TEST_F(RecordSetEdits, RefuseATopicNameOfMoreThan255Characters)
{
    SubjectStore::create(path);
    SubjectStore subject(path);
    RecordSet topics = subject.openRecordSet(allTopics());
    std::string name;
    for (int i = 0; i < 255; ++i) {
        name += "ü";
    }
    topics.addNew();
    topics.setText("Name", name);
    topics.update();

    topics.moveFirst();
    topics.edit();
    topics.setText("Name", name + "x");
    EXPECT_STORE_ERROR(Refused, topics.update());
    EXPECT_EQ(topics.text("Name"), name + "x");
    topics.cancelUpdate();
    EXPECT_EQ(topics.text("Name"), name);
}

TEST_F(RecordSetEdits, ThatFailStayInTheBufferForAnotherTry)
{
    RecordSet set = cardsABC();
    set.edit();
    set.setText("Front", "Z");
    {
        SQLite::Database other = otherProgram();
        other.exec("BEGIN EXCLUSIVE");
        EXPECT_STORE_ERROR(Locked, set.update());
        EXPECT_EQ(set.text("Front"), "Z");
        other.exec("COMMIT");
    }
    set.update();
    EXPECT_EQ(askOther("SELECT Front FROM FlashCards"), "Z");
}

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
