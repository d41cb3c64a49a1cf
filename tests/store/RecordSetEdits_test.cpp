#include "RecordSetTest.h"

#include <cmath>
#include <limits>
#include <sqlite3.h>

namespace {

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
              "INSERT INTO FlashCards VALUES (1, 1, 'Front', 'Back', 1, 0.5, 1, 1, 3, 4, 5);"
              "INSERT INTO FlashCards (NIndex) VALUES (1)");
    SubjectStore foreign(path);
    RecordSet set = foreign.openRecordSet(cardsOfTopic(1));
    EXPECT_EQ(set.text("Front"), "Front");
    set.moveNext();
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
    EXPECT_EQ(set.number("Front"), 42);
    EXPECT_EQ(set.single("Back"), 0.5F);
}

TEST_F(RecordSetFields, ReadRealNumbersAsTheNearestWholeOneAndWhatIsNoneAsZero)
{
    RecordSet set = cardsABC();
    otherProgram().exec("UPDATE FlashCards SET Answer = 1e300, Wrong1 = -1e300, Wrong2 = 'nan' WHERE \"Index\" = 1");
    EXPECT_EQ(set.number("Answer"), std::numeric_limits<int>::max());
    EXPECT_EQ(set.number("Wrong1"), std::numeric_limits<int>::min());
    EXPECT_EQ(set.number("Wrong2"), 0);
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

TEST_F(RecordSetEdits, WriteTheirOwnFieldsWhateverWasWrittenBefore)
{
    RecordSet set = cardsABC();
    set.edit();
    set.setText("Front", "Z");
    set.setText("Back", "z");
    set.update();
    set.moveNext();
    set.edit();
    set.setText("Front", "Y");
    set.update();
    set.moveNext();
    set.edit();
    set.setText("Back", "x");
    set.update();
    EXPECT_EQ(askOther("SELECT group_concat(Front || '/' || Back) FROM FlashCards"), "Z/z,Y/,C/x");
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
    const std::optional<StoreError> refusal = errorOf([&] { topics.update(); });
    ASSERT_TRUE(refusal);
    EXPECT_EQ(refusal->reason(), Reason::Refused);
    EXPECT_EQ(refusal->engineCode(), SQLITE_CONSTRAINT_CHECK);
    EXPECT_EQ(topics.text("Name"), name + "x");
    topics.cancelUpdate();
    EXPECT_EQ(topics.text("Name"), name);
}

TEST_F(RecordSetEdits, RefuseATextThatIsTooLongForTheEngine)
{
    const auto takeShortTextsOnly = [](sqlite3 *engine, char ** /*error*/, const sqlite3_api_routines * /*api*/) {
        sqlite3_limit(engine, SQLITE_LIMIT_LENGTH, 1000);
        return SQLITE_OK;
    };
    createCards(1);
    const auto extension = reinterpret_cast<void (*)()>(+takeShortTextsOnly);
    sqlite3_auto_extension(extension);
    SubjectStore subject(path);
    sqlite3_cancel_auto_extension(extension);

    RecordSet set = subject.openRecordSet(cardsOfTopic(1));
    set.edit();
    set.setText("Front", std::string(1001, 'x'));
    EXPECT_STORE_ERROR(Refused, set.update());
    set.cancelUpdate();
    EXPECT_EQ(set.text("Front"), "A");
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

} // namespace
