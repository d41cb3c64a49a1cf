#include "CardEditingTest.h"
#include "FaultyEngine.h"

#include <csignal>
#include <fstream>
#include <sys/resource.h>
#include <utility>

namespace fs = std::filesystem;

namespace {

using enum Command;
using enum CardEditing::Outcome;

class CardEditingFailures : public CardEditingTest
{
};

TEST_F(CardEditingFailures, ALockEndsTheCommandAndNothingElse)
{
    addCardsNamed("abc");
    Boxes boxes = open();
    SQLite::Database other = otherProgram();
    const auto failsWhileLocked = [&](Command command) {
        const std::string shown = boxes.shown();
        const int position = boxes.editing.position();
        const Cards before = cards();
        other.exec("BEGIN EXCLUSIVE");
        EXPECT_EQ(boxes.failureOf(command), Reason::Locked);
        other.exec("COMMIT");
        EXPECT_EQ(boxes.shown(), shown);
        EXPECT_EQ(boxes.editing.position(), position);
        EXPECT_EQ(cards(), before);
    };

    boxes.type("x", "X");
    failsWhileLocked(Next);
    EXPECT_EQ(boxes.give(Next), Moved);
    EXPECT_EQ(boxes.shown(), "b/B");
    boxes.clear();
    failsWhileLocked(Previous);
    EXPECT_EQ(boxes.give(Previous), Moved);
    EXPECT_EQ(boxes.shown(), "x/X");
    failsWhileLocked(Remove);
    EXPECT_EQ(boxes.give(Remove), Moved);
    EXPECT_EQ(boxes.shown(), "c/C");
    EXPECT_EQ(cards(), Cards{"c/C"});
}

TEST_F(CardEditingFailures, AFullDiskEndsTheCommandAndNothingElse)
{
    addCardsNamed("ab");
    Boxes boxes = open();
    const std::string text(100'000, 'x');
    boxes.type(text, "X");

    rlimit before{};
    ASSERT_EQ(::getrlimit(RLIMIT_FSIZE, &before), 0);
    auto *const handler = std::signal(SIGXFSZ, SIG_IGN);
    const rlimit full{fs::file_size(subject), before.rlim_max};
    ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &full), 0);
    const bool didFail = boxes.failureOf(Next).has_value();
    ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &before), 0);
    std::signal(SIGXFSZ, handler);

    EXPECT_TRUE(didFail);
    EXPECT_EQ(cards(), (Cards{"a/A", "b/B"}));
    EXPECT_TRUE(boxes.shown() == text + "/X");
    EXPECT_EQ(boxes.editing.position(), 0);
    EXPECT_EQ(boxes.give(Next), Moved);
    EXPECT_TRUE(cards() == (Cards{text + "/X", "b/B"}));
    EXPECT_EQ(boxes.shown(), "b/B");
}

TEST_F(CardEditingFailures, AFileThatWasMovedAwayIsWaitedFor)
{
    addCardsNamed("abc");
    Boxes boxes = open();
    boxes.type("x", "X");
    for (const Command command : {First, Next, Last, Add, Remove, Save}) {
        fs::rename(subject, folder.file("elsewhere"));
        EXPECT_EQ(boxes.failureOf(command), Reason::NotFound);
        EXPECT_FALSE(fs::exists(subject));
        EXPECT_EQ(boxes.shown(), "x/X");
        EXPECT_EQ(boxes.editing.position(), 0);
        fs::rename(folder.file("elsewhere"), subject);
        EXPECT_EQ(cards(), (Cards{"a/A", "b/B", "c/C"}));
    }
    EXPECT_EQ(boxes.give(Next), Moved);
    EXPECT_EQ(boxes.shown(), "b/B");
    EXPECT_EQ(cards(), (Cards{"x/X", "b/B", "c/C"}));
}

TEST_F(CardEditingFailures, AMovedFileDoesNotConcernACommandThatDoesNotNeedIt)
{
    addCardsNamed("a");
    Boxes boxes = open();
    boxes.type("x", "X");
    fs::rename(subject, folder.file("elsewhere"));
    EXPECT_EQ(boxes.give(Previous), AtFirst);
    EXPECT_EQ(boxes.give(Last), AtLast);
    EXPECT_EQ(boxes.shown(), "x/X");
}

TEST_F(CardEditingFailures, ADeletedFileIsFollowedByTheCopyThatIsPutBack)
{
    addCardsNamed("abc");
    Boxes boxes = open();
    boxes.give(Next);
    boxes.type("x", "X");
    fs::copy_file(subject, folder.file("backup"));
    fs::remove(subject);
    EXPECT_EQ(boxes.failureOf(Next), Reason::NotFound);
    fs::rename(folder.file("backup"), subject);
    EXPECT_EQ(boxes.give(Next), Moved);
    EXPECT_EQ(boxes.shown(), "c/C");
    EXPECT_EQ(boxes.editing.position(), 2);
    EXPECT_EQ(cards(), (Cards{"a/A", "x/X", "c/C"}));
}

TEST_F(CardEditingFailures, AFileThatIsNoSubjectIsLeftAlone)
{
    addCardsNamed("ab");
    Boxes boxes = open();
    boxes.type("x", "X");
    fs::rename(subject, folder.file("elsewhere"));
    std::ofstream(subject) << "no subject at all";
    EXPECT_EQ(boxes.failureOf(Next), Reason::NotASubject);
    EXPECT_EQ(fs::file_size(subject), 17);
    fs::rename(folder.file("elsewhere"), subject);
    EXPECT_EQ(boxes.give(Next), Moved);
    EXPECT_EQ(cards(), (Cards{"x/X", "b/B"}));
}

TEST_F(CardEditingFailures, ACopyIsRecognizedAfterEveryKindOfChange)
{
    addCardsNamed("abc");
    Boxes boxes = open();
    replaceByCopyOf(subject); // after reading
    boxes.type("x", "X");
    boxes.give(Save);
    replaceByCopyOf(subject); // after storing
    boxes.type("y", "Y");
    boxes.give(Add);
    replaceByCopyOf(subject); // after adding
    boxes.type("z", "Z");
    boxes.give(Previous);
    EXPECT_EQ(boxes.shown(), "c/C");
    EXPECT_EQ(boxes.editing.position(), 2);
    EXPECT_EQ(cards(), (Cards{"y/Y", "b/B", "c/C", "z/Z"}));
}

TEST_F(CardEditingFailures, ACopyWithFewerCardsIsGoneOnWithAtTheNewPosition)
{
    addCardsNamed("abcd");
    Boxes boxes = open();
    boxes.goTo(2);
    boxes.type("x", "X");
    replaceByCopyOf(subject);
    deleteInFile("a");
    deleteInFile("b");
    EXPECT_EQ(boxes.give(Previous), Moved);
    EXPECT_EQ(boxes.editing.position(), 0) << "no card is before it any more";
    EXPECT_EQ(boxes.shown(), "x/X");
    EXPECT_EQ(cards(), (Cards{"x/X", "d/D"}));
}

TEST_F(CardEditingFailures, AnotherSubjectsCardIsNeverOverwritten)
{
    addCardsNamed("ab");
    Boxes boxes = open();
    boxes.type("x", "X");
    replaceByCopyOf(subject);
    otherProgram().exec("UPDATE FlashCards SET Front = '" + rtfOf("s") + "', Back = '" + rtfOf("S") +
                        "' WHERE NIndex = " + std::to_string(topic));
    EXPECT_EQ(boxes.give(Save), std::nullopt);
    EXPECT_EQ(boxes.shown(), "x/X");
    EXPECT_EQ(boxes.editing.position(), 2);
    EXPECT_EQ(cards(), (Cards{"s/S", "s/S", "x/X"}));
}

TEST_F(CardEditingFailures, ACardThatDiffersOnlyOnItsBackIsAStrangersToo)
{
    addCardsNamed("ab");
    Boxes boxes = open();
    boxes.type("x", "X");
    replaceByCopyOf(subject);
    otherProgram().exec("UPDATE FlashCards SET Back = '" + rtfOf("S") + "' WHERE NIndex = " + std::to_string(topic));
    EXPECT_EQ(boxes.give(Remove), Moved);
    EXPECT_EQ(boxes.shown(), "a/S");
    EXPECT_EQ(cards(), (Cards{"a/S", "b/S"}));
}

TEST_F(CardEditingFailures, AnotherSubjectWithoutCardsTakesWhatWasTyped)
{
    addCardsNamed("ab");
    Boxes boxes = open();
    boxes.goTo(1);
    boxes.type("x", "X");
    replaceByCopyOf(subject);
    deleteInFile("a");
    deleteInFile("b");
    EXPECT_EQ(boxes.give(Next), Added);
    EXPECT_EQ(boxes.editing.position(), 1);
    EXPECT_EQ(cards(), (Cards{"x/X", "/"}));
}

struct DeletedByOthers
{
    const char *name;
    bool isBlank; ///< the text in the boxes, else "x/X"
    Command command;
    std::optional<Outcome> outcome; ///< of the second time
    int position;
    const char *shown;
    Cards cards;
};

class ACardThatOthersDeleted : public CardEditingFailures, public testing::WithParamInterface<DeletedByOthers>
{
};

TEST_P(ACardThatOthersDeleted, IsReportedOnceAndTheTextBecomesANewCard)
{
    const DeletedByOthers &row = GetParam();
    addCardsNamed("abcd");
    Boxes boxes = open();
    boxes.goTo(2);
    boxes.type(row.isBlank ? " " : "x", row.isBlank ? "" : "X");
    const std::string typed = boxes.shown();
    deleteInFile("c");
    EXPECT_EQ(boxes.failureOf(row.command), Reason::RowGone);
    EXPECT_EQ(boxes.shown(), typed) << "what was typed stays";
    EXPECT_EQ(boxes.editing.position(), -1);
    EXPECT_EQ(boxes.editing.count(), 3);
    EXPECT_EQ(boxes.editing.sides(), CardSides());
    EXPECT_EQ(cards(), (Cards{"a/A", "b/B", "d/D"}));

    EXPECT_EQ(boxes.give(row.command), row.outcome);
    EXPECT_EQ(boxes.editing.position(), row.position);
    EXPECT_EQ(boxes.shown(), row.shown);
    EXPECT_EQ(cards(), row.cards);
}

const DeletedByOthers deletedByOthers[] = {
    {"FirstTyped", false, First, Moved, 0, "a/A", {"a/A", "b/B", "d/D", "x/X"}},
    {"FirstBlank", true, First, Moved, 0, "a/A", {"a/A", "b/B", "d/D"}},
    {"PreviousTyped", false, Previous, Moved, 2, "d/D", {"a/A", "b/B", "d/D", "x/X"}},
    {"PreviousBlank", true, Previous, Moved, 1, "b/B", {"a/A", "b/B", "d/D"}},
    {"NextTyped", false, Next, Added, 4, "/", {"a/A", "b/B", "d/D", "x/X", "/"}},
    {"NextBlank", true, Next, Moved, 2, "d/D", {"a/A", "b/B", "d/D"}},
    {"LastTyped", false, Last, Moved, 3, "x/X", {"a/A", "b/B", "d/D", "x/X"}},
    {"LastBlank", true, Last, Moved, 2, "d/D", {"a/A", "b/B", "d/D"}},
    {"AddTyped", false, Add, Added, 4, "/", {"a/A", "b/B", "d/D", "x/X", "/"}},
    {"AddBlank", true, Add, Added, 3, "/", {"a/A", "b/B", "d/D", "/"}},
    {"Remove", false, Remove, Moved, 1, "b/B", {"a/A", "b/B", "d/D"}},
    {"SaveTyped", false, Save, {}, 3, "x/X", {"a/A", "b/B", "d/D", "x/X"}},
    {"SaveBlank", true, Save, {}, -1, " /", {"a/A", "b/B", "d/D"}},
};

INSTANTIATE_TEST_SUITE_P(Table, ACardThatOthersDeleted, testing::ValuesIn(deletedByOthers),
                         [](const auto &row) { return row.param.name; });

TEST_F(CardEditingFailures, ANeighbourThatOthersDeletedIsReportedOnceAndThenSkipped)
{
    struct Move
    {
        Command command;
        const char *gone;
        int position;
        const char *reached;
    };
    for (const Move &move : {Move{First, "a", 1, "b/B"}, Move{Previous, "b", 1, "a/A"}, Move{Next, "d", 2, "e/E"},
                             Move{Last, "e", 2, "d/D"}}) {
        otherProgram().exec("DELETE FROM FlashCards WHERE NIndex = " + std::to_string(topic));
        addCardsNamed("abcde");
        Boxes boxes = open();
        boxes.goTo(2);
        boxes.type("x", "X");
        deleteInFile(move.gone);
        EXPECT_EQ(boxes.failureOf(move.command), Reason::RowGone);
        EXPECT_EQ(boxes.editing.position(), move.position);
        EXPECT_EQ(boxes.editing.count(), 4);
        EXPECT_EQ(boxes.shown(), "x/X");
        EXPECT_TRUE(isInFile("x/X"));
        EXPECT_EQ(boxes.give(move.command), Moved);
        EXPECT_EQ(boxes.shown(), move.reached);
    }
}

TEST_F(CardEditingFailures, ADeletionStandsThoughOthersDeletedTheNeighbourToo)
{
    addCardsNamed("abc");
    Boxes boxes = open();
    boxes.goTo(2);
    deleteInFile("b");
    EXPECT_EQ(boxes.failureOf(Remove), Reason::RowGone);
    EXPECT_EQ(boxes.editing.position(), -1);
    EXPECT_EQ(boxes.editing.count(), 1);
    EXPECT_EQ(boxes.shown(), "/");
    EXPECT_EQ(boxes.give(Remove), Moved);
    EXPECT_EQ(boxes.shown(), "a/A");
    EXPECT_EQ(cards(), Cards{"a/A"});
}

TEST_F(CardEditingFailures, AllCardsDeletedByOthersMakeRoomForANewOne)
{
    addCardsNamed("ab");
    Boxes boxes = open();
    boxes.give(Next);
    otherProgram().exec("DELETE FROM FlashCards WHERE NIndex = " + std::to_string(topic));
    EXPECT_EQ(boxes.failureOf(Remove), Reason::RowGone);
    EXPECT_EQ(boxes.editing.count(), 0);
    EXPECT_EQ(boxes.give(Remove), Added);
    EXPECT_EQ(boxes.shown(), "/");
    EXPECT_EQ(cards(), Cards{"/"});
}

TEST_F(CardEditingFailures, ADeletedCardIsNotShownWhenItsNeighbourCannotBe)
{
    addCardsNamed("abc");
    FaultyEngine engine;
    Boxes boxes = open();
    boxes.goTo(1);
    engine.failAt(2); // the deletion is the first
    EXPECT_EQ(boxes.failureOf(Remove), Reason::Engine);
    EXPECT_TRUE(engine.hasFailed());
    EXPECT_EQ(boxes.editing.position(), -1);
    EXPECT_EQ(boxes.editing.count(), 2);
    EXPECT_EQ(boxes.shown(), "/");
    EXPECT_EQ(cards(), (Cards{"a/A", "c/C"}));
    boxes.type("x", "X");
    boxes.give(Save);
    EXPECT_EQ(cards(), (Cards{"a/A", "c/C", "x/X"}));
}

TEST_F(CardEditingFailures, FirstAndLastLeaveTheGapOfAVanishedCardForItsOnlyNeighbour)
{
    for (const Command command : {First, Last}) {
        otherProgram().exec("DELETE FROM FlashCards WHERE NIndex = " + std::to_string(topic));
        addCardsNamed("ab");
        Boxes boxes = open();
        deleteInFile("a");
        EXPECT_EQ(boxes.failureOf(Save), Reason::RowGone);
        boxes.clear();
        EXPECT_EQ(boxes.give(command), Moved);
        EXPECT_EQ(boxes.editing.position(), 0);
        EXPECT_EQ(boxes.shown(), "b/B");
    }
}

TEST_F(CardEditingFailures, AFailedMoveLeavesTheCardInTheBoxesTheOneThatIsStoredOrDeleted)
{
    for (const Command command : {First, Previous, Next, Last}) {
        otherProgram().exec("DELETE FROM FlashCards WHERE NIndex = " + std::to_string(topic));
        addCardsNamed("abcde");
        FaultyEngine engine;
        Boxes boxes = open();
        boxes.goTo(2);
        engine.failAt(2); // the storing is the first
        EXPECT_EQ(boxes.failureOf(command), Reason::Engine);
        boxes.type("x", "X");
        boxes.give(Save);
        EXPECT_EQ(cards(), (Cards{"a/A", "b/B", "x/X", "d/D", "e/E"}));
        engine.failAt(2);
        EXPECT_EQ(boxes.failureOf(command), Reason::Engine);
        EXPECT_EQ(boxes.give(Remove), Moved);
        EXPECT_EQ(cards(), (Cards{"a/A", "b/B", "d/D", "e/E"}));
    }
}

TEST_F(CardEditingFailures, WhatIsStoredAsANewCardIsNotShownAfresh)
{
    addCardsNamed("ab");
    Boxes boxes = open();
    boxes.type("x", "X");
    deleteInFile("a");
    EXPECT_EQ(boxes.failureOf(Last), Reason::RowGone);
    const int changes = boxes.editing.changes();
    EXPECT_EQ(boxes.give(Last), Moved);
    EXPECT_EQ(boxes.editing.position(), 1);
    EXPECT_EQ(boxes.editing.sides(), (CardSides{rtfOf("x"), rtfOf("X")}));
    EXPECT_EQ(boxes.editing.changes(), changes);
}

TEST_F(CardEditingFailures, TheOldCardStaysCurrentWhenANewOneCannotBeAdded)
{
    addCardsNamed("ab");
    otherProgram().exec("CREATE TRIGGER full BEFORE INSERT ON FlashCards BEGIN SELECT raise(ABORT, 'no'); END");
    Boxes boxes = open();
    boxes.type("x", "X");
    EXPECT_EQ(boxes.failureOf(Add), Reason::Refused);
    EXPECT_EQ(boxes.editing.position(), 0);
    EXPECT_EQ(boxes.editing.sides(), (CardSides{rtfOf("x"), rtfOf("X")}));
    boxes.type("y", "Y");
    boxes.give(Save);
    EXPECT_EQ(cards(), (Cards{"y/Y", "b/B"}));
    otherProgram().exec("DROP TRIGGER full");
    EXPECT_EQ(boxes.give(Add), Added);
    EXPECT_EQ(cards(), (Cards{"y/Y", "b/B", "/"}));
}

TEST_F(CardEditingFailures, AVanishedCardIsReportedAgainIfTheCardsCannotBeReadAnew)
{
    addCardsNamed("ab");
    FaultyEngine engine;
    Boxes boxes = open();
    boxes.type("x", "X");
    deleteInFile("a");
    engine.failAt(2); // the storing is the first
    EXPECT_EQ(boxes.failureOf(Next), Reason::RowGone);
    EXPECT_TRUE(engine.hasFailed());
    EXPECT_EQ(boxes.editing.position(), 0) << "as it was";
    EXPECT_EQ(boxes.failureOf(Next), Reason::RowGone);
    EXPECT_EQ(boxes.editing.position(), -1);
    EXPECT_EQ(boxes.give(Next), Added);
    EXPECT_EQ(cards(), (Cards{"b/B", "x/X", "/"}));
}

// A topic that another program deletes.

class ATopicThatOthersDeleted : public CardEditingFailures
{
protected:
    void deleteTopicInFile() const
    {
        deleteTopicRowInFile();
        otherProgram().exec("DELETE FROM FlashCards WHERE NIndex = " + std::to_string(topic));
    }
    void deleteTopicRowInFile() const
    {
        otherProgram().exec("DELETE FROM Topics WHERE \"Index\" = " + std::to_string(topic));
    }
};

TEST_F(ATopicThatOthersDeleted, GetsNoCardByAnyCommandAndTheTextStays)
{
    for (const Command command : {First, Next, Add, Save}) {
        addCardsNamed("abc");
        Boxes boxes = open();
        boxes.goTo(1);
        boxes.type("x", "X");
        deleteTopicInFile();
        for (int times = 0; times < 3; ++times) {
            EXPECT_EQ(boxes.failureOf(command), Reason::RowGone);
            EXPECT_EQ(boxes.shown(), "x/X");
            EXPECT_EQ(boxes.editing.position(), -1);
            EXPECT_EQ(boxes.editing.count(), 0);
            EXPECT_EQ(cards(), Cards());
        }
        boxes.clear();
        EXPECT_FALSE(boxes.failureOf(Save)) << "nothing is left to store";
        EXPECT_EQ(cards(), Cards());
        otherProgram().exec("INSERT INTO Topics (\"Index\", Name) VALUES (" + std::to_string(topic) + ", 'Topic')");
    }
}

TEST_F(ATopicThatOthersDeleted, SaysThatItIsTheTopic)
{
    Boxes boxes = open();
    boxes.type("x", "X");
    deleteTopicInFile();
    EXPECT_EQ(boxes.failureOf(Save), Reason::RowGone) << "the card";
    try {
        boxes.give(Save);
        FAIL() << "a card without its topic was stored";
    } catch (const StoreError &failure) {
        EXPECT_EQ(failure.reason(), Reason::RowGone);
        EXPECT_EQ(failure.path(), subject.string());
        EXPECT_NE(std::string(failure.what()).find("the topic was deleted"), std::string::npos) << failure.what();
    }
}

TEST_F(ATopicThatOthersDeleted, IsNotOpenedOnANewCard)
{
    deleteTopicInFile();
    EXPECT_THROW(static_cast<void>(open()), StoreError);
    EXPECT_EQ(cards(), Cards());
}

TEST_F(ATopicThatOthersDeleted, WithItsLastCardDeletedHereGetsNoNewOne)
{
    addCardsNamed("a");
    Boxes boxes = open();
    deleteTopicRowInFile(); // its cards are about to follow
    EXPECT_EQ(boxes.failureOf(Remove), Reason::RowGone);
    EXPECT_EQ(boxes.shown(), "/");
    EXPECT_EQ(boxes.editing.position(), -1);
    EXPECT_EQ(cards(), Cards());
    EXPECT_FALSE(boxes.failureOf(Save));
}

TEST_F(ATopicThatOthersDeleted, KeepsTheCardInTheBoxesIfItIsStillThere)
{
    addCardsNamed("ab");
    Boxes boxes = open();
    boxes.goTo(1);
    boxes.type("x", "X");
    deleteTopicRowInFile();
    for (const Command command : {Next, Add}) {
        EXPECT_EQ(boxes.failureOf(command), Reason::RowGone);
        EXPECT_EQ(boxes.shown(), "x/X");
        EXPECT_EQ(boxes.editing.position(), 1);
        EXPECT_EQ(boxes.editing.count(), 2);
    }
    EXPECT_EQ(cards(), (Cards{"a/A", "x/X"}));
    EXPECT_EQ(boxes.give(First), Moved);
    EXPECT_EQ(boxes.shown(), "a/A");
}

TEST_F(ATopicThatOthersDeleted, TakesCardsAgainWhenItIsThereAgain)
{
    addCardsNamed("a");
    Boxes boxes = open();
    boxes.type("x", "X");
    fs::copy_file(subject, folder.file("backup"));
    deleteTopicInFile();
    EXPECT_EQ(boxes.failureOf(Next), Reason::RowGone);
    EXPECT_EQ(boxes.failureOf(Next), Reason::RowGone);
    fs::rename(folder.file("backup"), subject);
    EXPECT_EQ(boxes.give(Next), Added);
    EXPECT_EQ(cards(), (Cards{"a/A", "x/X", "/"}));
}

TEST_F(CardEditingFailures, ACardThatCannotBeCommittedIsNotCounted)
{
    addCardsNamed("abc");
    Boxes boxes = open();
    boxes.goTo(2);
    boxes.type("x", "X");
    deleteInFile("c");
    EXPECT_EQ(boxes.failureOf(Save), Reason::RowGone);
    {
        SQLite::Database other = otherProgram();
        SQLite::Statement reading(other, "SELECT * FROM FlashCards");
        reading.executeStep(); // who reads keeps others from committing
        EXPECT_EQ(boxes.failureOf(Save), Reason::Locked);
    }
    EXPECT_EQ(boxes.editing.count(), 2);
    EXPECT_EQ(boxes.editing.position(), -1);
    EXPECT_EQ(boxes.shown(), "x/X");
    EXPECT_EQ(cards(), (Cards{"a/A", "b/B"}));
    EXPECT_EQ(boxes.give(Next), Added);
    EXPECT_EQ(boxes.editing.count(), 4);
    boxes.type("y", "Y");
    EXPECT_EQ(boxes.give(Previous), Moved);
    EXPECT_EQ(boxes.shown(), "x/X");
    EXPECT_EQ(cards(), (Cards{"a/A", "b/B", "x/X", "y/Y"}));
}

/// A file made by others, in which the keys of the cards are a plain column.
class CardEditingInAForeignFile : public CardEditingFailures
{
protected:
    CardEditingInAForeignFile()
    {
        otherProgram().exec("ALTER TABLE FlashCards RENAME TO Old; CREATE TABLE FlashCards AS SELECT * FROM Old; "
                            "DROP TABLE Old");
        addCardsNamed("abc");
        otherProgram().exec("UPDATE FlashCards SET \"Index\" = rowid - 1"); // b's key finds the row of a
    }
};

TEST_F(CardEditingInAForeignFile, GoesFromCardToCardAndStoresThem)
{
    Boxes boxes = open();
    boxes.type("x", "X");
    EXPECT_EQ(boxes.give(Next), Moved);
    EXPECT_EQ(boxes.give(Next), Moved);
    EXPECT_EQ(boxes.give(Next), Added);
    boxes.type("y", "Y");
    EXPECT_EQ(boxes.give(Previous), Moved);
    EXPECT_EQ(boxes.give(Remove), Moved);
    EXPECT_EQ(boxes.shown(), "b/B");
    EXPECT_EQ(cards(), (Cards{"x/X", "b/B", "y/Y"}));
}

TEST_F(CardEditingInAForeignFile, AddsNoCardToATopicThatIsGoneByItsKeyAndNotByItsRow)
{
    otherProgram().exec("ALTER TABLE Topics RENAME TO OldTopics; CREATE TABLE Topics AS SELECT * FROM OldTopics; "
                        "DROP TABLE OldTopics; UPDATE Topics SET \"Index\" = \"Index\" + 5; "
                        "UPDATE FlashCards SET NIndex = NIndex + 5");
    const int row = std::exchange(topic, topic + 5);
    EXPECT_THROW(CardEditing(subject, cardsOfTopic(row), row, {}), StoreError);
    Boxes boxes = open();
    boxes.goTo(2);
    EXPECT_EQ(boxes.give(Next), Added);
    EXPECT_EQ(cards(), (Cards{"a/A", "b/B", "c/C", "/"}));
    otherProgram().exec("DELETE FROM Topics WHERE Name = 'Topic'");
    boxes.type("x", "X");
    EXPECT_EQ(boxes.failureOf(Next), Reason::RowGone);
    EXPECT_EQ(cards(), (Cards{"a/A", "b/B", "c/C", "x/X"}));
}

TEST_F(CardEditingInAForeignFile, TakesNoOtherCardForTheOneInTheBoxes)
{
    Boxes boxes = open();
    boxes.goTo(1);
    deleteInFile("c");
    EXPECT_EQ(boxes.failureOf(Last), Reason::RowGone);
    boxes.type("x", "X");
    boxes.give(Save);
    EXPECT_TRUE(isInFile("a/A"));
    EXPECT_TRUE(isInFile("x/X"));
}

} // namespace
