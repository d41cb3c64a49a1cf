#include "StoreTest.h"
#include "store/Schema.h"
#include "store/SubjectReading.h"
#include "store/SubjectWriting.h"

#include <sqlite3.h>

namespace {

TEST(TheNotesOfANewTopic, AreTheTemplateWithTheName)
{
    EXPECT_EQ(newTopicNotes("Birds"),
              "{\\rtf1\\ansi\\deff0\\deflang1033{\\fonttbl{\\f0\\fscript\\fprq2\\fcharset0 Comic Sans MS;}}"
              "\\pard\\f0\\fs20 Birds notes...\\f1\\par}");
}

TEST(TheNotesOfANewTopic, HoldBracesAndBackslashesOfTheNameAsTheyAre)
{
    EXPECT_EQ(newTopicNotes("A{b}\\c"),
              "{\\rtf1\\ansi\\deff0\\deflang1033{\\fonttbl{\\f0\\fscript\\fprq2\\fcharset0 Comic Sans MS;}}"
              "\\pard\\f0\\fs20 A{b}\\c notes...\\f1\\par}");
}

class WritingASubject : public StoreTest
{
protected:
    WritingASubject() { SubjectStore::create(path); }

    /// Topics a and b with the cards x, z and y.
    void fill() const
    {
        otherProgram().exec("INSERT INTO Topics (Name, Notes) VALUES ('a', 'notes of a'), ('b', 'notes of b');"
                            "INSERT INTO FlashCards (NIndex, Front) VALUES (1, 'x'), (2, 'y'), (1, 'z')");
    }

    [[nodiscard]] std::string topics() const
    {
        return askOther("SELECT coalesce(group_concat(\"Index\" || ':' || Name || ':' || Notes, ' '), '') FROM Topics");
    }
    [[nodiscard]] std::string cards() const
    {
        return askOther("SELECT coalesce(group_concat(NIndex || ':' || Front, ' '), '') FROM FlashCards");
    }

    /// Every command, on topic 1.
    [[nodiscard]] std::vector<std::function<void()>> commands() const
    {
        return {
            [this] { static_cast<void>(createTopic(path, "new")); },
            [this] { renameTopic(path, 1, "renamed"); },
            [this] { saveNotes(path, 1, "saved"); },
            [this] { deleteTopic(path, 1); },
        };
    }
};

TEST_F(WritingASubject, CreatesTopicsWithTheirNotesAndTellsTheirKeys)
{
    EXPECT_EQ(createTopic(path, "Birds"), 1);
    EXPECT_EQ(createTopic(path, "Birds"), 2);
    for (const int topic : {1, 2}) {
        const TopicContents contents = readTopic(path, topic);
        EXPECT_EQ(contents.name, "Birds");
        EXPECT_EQ(contents.notes, newTopicNotes("Birds"));
        EXPECT_EQ(contents.cardCount, 0);
    }
    EXPECT_EQ(listTopics(path).size(), 2);
}

TEST_F(WritingASubject, NeverGivesTheKeyOfADeletedTopicAgain)
{
    EXPECT_EQ(createTopic(path, "a"), 1);
    EXPECT_EQ(createTopic(path, "b"), 2);
    deleteTopic(path, 2);
    EXPECT_EQ(createTopic(path, "c"), 3);
}

TEST_F(WritingASubject, StoresANameWithBracesAndBackslashesAsItWasTyped)
{
    const int topic = createTopic(path, "A{b}\\c");
    const TopicContents contents = readTopic(path, topic);
    EXPECT_EQ(contents.name, "A{b}\\c");
    EXPECT_EQ(contents.notes, newTopicNotes("A{b}\\c"));
}

TEST_F(WritingASubject, CountsTheLengthOfANameInCharacters)
{
    std::string longest;
    for (int character = 0; character < maxTopicNameLength; ++character) {
        longest += "ä";
    }
    const int topic = createTopic(path, longest);
    EXPECT_EQ(readTopic(path, topic).name, longest);
    renameTopic(path, topic, "short");
    renameTopic(path, topic, longest);
    EXPECT_EQ(readTopic(path, topic).name, longest);
}

TEST_F(WritingASubject, RefusesANameThatIsTooLongAndStoresNothing)
{
    fill();
    const std::string before = topics();
    const std::string tooLong(maxTopicNameLength + 1, 'n');
    EXPECT_STORE_ERROR(Refused, createTopic(path, tooLong));
    EXPECT_STORE_ERROR(Refused, renameTopic(path, 1, tooLong));
    EXPECT_EQ(topics(), before);
}

TEST_F(WritingASubject, RenamesOneTopicAndLeavesItsNotes)
{
    fill();
    renameTopic(path, 2, "it's \"new\"");
    EXPECT_EQ(topics(), "1:a:notes of a 2:it's \"new\":notes of b");
}

TEST_F(WritingASubject, SavesTheNotesOfOneTopicAndLeavesItsName)
{
    fill();
    saveNotes(path, 1, "{\\rtf1 new}");
    EXPECT_EQ(topics(), "1:a:{\\rtf1 new} 2:b:notes of b");
}

TEST_F(WritingASubject, SavesNotesOfAnyLengthAndAnyBytes)
{
    fill();
    std::string notes(3'000'000, 'n');
    notes[1000] = '\0';
    notes[2000] = '\xff';
    saveNotes(path, 2, notes);
    EXPECT_TRUE(readTopic(path, 2).notes == notes);
    saveNotes(path, 2, "");
    EXPECT_EQ(readTopic(path, 2).notes, "");
}

TEST_F(WritingASubject, DeletesATopicWithItsCardsAndNoOthers)
{
    fill();
    deleteTopic(path, 1);
    EXPECT_EQ(topics(), "2:b:notes of b");
    EXPECT_EQ(cards(), "2:y");
}

TEST_F(WritingASubject, SaysThatATopicIsGone)
{
    fill();
    deleteTopic(path, 1);
    const auto error = errorOf([&] { renameTopic(path, 1, "new"); });
    ASSERT_TRUE(error);
    EXPECT_EQ(error->reason(), Reason::RowGone);
    EXPECT_EQ(error->path(), path.string());
    EXPECT_STORE_ERROR(RowGone, saveNotes(path, 1, "new"));
    EXPECT_STORE_ERROR(RowGone, readTopic(path, 1));
    EXPECT_EQ(topics(), "2:b:notes of b");
}

TEST_F(WritingASubject, DeletesTheTopicFirstAndFinishesADeletionThatFailedOnTheWay)
{
    fill();
    otherProgram().exec("CREATE TRIGGER kept BEFORE DELETE ON FlashCards BEGIN SELECT raise(ABORT, 'no'); END");
    EXPECT_STORE_ERROR(Refused, deleteTopic(path, 1));
    EXPECT_EQ(topics(), "2:b:notes of b");
    EXPECT_EQ(cards(), "1:x 2:y 1:z");

    otherProgram().exec("DROP TRIGGER kept");
    deleteTopic(path, 1);
    EXPECT_EQ(topics(), "2:b:notes of b");
    EXPECT_EQ(cards(), "2:y");
}

TEST_F(WritingASubject, LeavesNoTopicBehindWhoseKeyCannotBeRead)
{
    otherProgram().exec("CREATE TRIGGER gone AFTER INSERT ON Topics BEGIN DELETE FROM Topics; END");
    EXPECT_STORE_ERROR(RowGone, createTopic(path, "a"));
    otherProgram().exec("DROP TRIGGER gone");
    EXPECT_EQ(createTopic(path, "b"), 1) << "the failed addition was undone, its key included";
}

TEST_F(WritingASubject, ReportsALockAndWorksWhenItIsReleased)
{
    fill();
    SQLite::Database other = otherProgram();
    for (const auto &command : commands()) {
        const std::string before = topics() + cards();
        other.exec("BEGIN IMMEDIATE");
        EXPECT_STORE_ERROR(Locked, command());
        other.exec("COMMIT");
        EXPECT_EQ(topics() + cards(), before);
        command();
        EXPECT_NE(topics() + cards(), before);
    }
    EXPECT_EQ(topics(), "2:b:notes of b 3:new:" + newTopicNotes("new"));
}

TEST_F(WritingASubject, CreatesNoFileWhereNoneIs)
{
    std::filesystem::remove(path);
    for (const auto &command : commands()) {
        EXPECT_STORE_ERROR(NotFound, command());
    }
    EXPECT_EQ(filesInFolder(), std::vector<std::string>());
}

TEST_F(WritingASubject, LeavesOneFileThatIsFreeForOthers)
{
    fill();
    for (const auto &command : commands()) {
        command();
        EXPECT_EQ(filesInFolder(), std::vector<std::string>{"Subject.crl"});
        otherProgram().exec("BEGIN EXCLUSIVE; COMMIT");
    }
}

} // namespace
