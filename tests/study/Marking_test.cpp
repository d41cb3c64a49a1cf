#include "store/StoreError.h"
#include "study/Marking.h"
#include "tests/support/TestSubject.h"

#include <SQLiteCpp/Database.h>
#include <gtest/gtest.h>
#include <optional>
#include <string>

namespace {

using Reason = StoreError::Reason;

/// Three cards, whose keys are 1 to 3; the second is current.
class Marking : public testing::Test
{
protected:
    Marking()
    {
        SubjectStore::create(subject);
        topic = addTopic(subject, "Topic");
        addCards(subject, topic, 3);
        store.emplace(subject);
        cards.emplace(store->openRecordSet(cardsOfTopic(topic)));
        cards->setAbsolutePosition(1);
    }

    [[nodiscard]] SQLite::Database otherProgram() const { return {subject.string(), SQLite::OPEN_READWRITE}; }
    /// The cards with all their fields.
    [[nodiscard]] std::string inFile(const std::string &fields) const
    {
        return otherProgram().execAndGet("SELECT group_concat(" + fields + ", ';') FROM FlashCards").getString();
    }
    [[nodiscard]] std::string marksInFile() const { return inFile("Marked"); }

    std::optional<Reason> failureOfToggling()
    {
        try {
            toggleMark(*cards);
            return std::nullopt;
        } catch (const StoreError &failure) {
            return failure.reason();
        }
    }

    TestFolder folder;
    std::filesystem::path subject = folder.file("subject.crl");
    int topic = 0;
    std::optional<SubjectStore> store;
    std::optional<CardSet> cards;
};

TEST_F(Marking, IsStoredAtOnceAndUndoneByTheSecondTime)
{
    EXPECT_TRUE(toggleMark(*cards));
    EXPECT_TRUE(cards->flag(CardField::Marked));
    EXPECT_EQ(marksInFile(), "0;1;0");
    EXPECT_FALSE(toggleMark(*cards));
    EXPECT_FALSE(cards->flag(CardField::Marked));
    EXPECT_EQ(marksInFile(), "0;0;0");
}

TEST_F(Marking, TakesAMarkAwayAndGivesItBack)
{
    otherProgram().exec("UPDATE FlashCards SET Marked = 1");
    toggleMark(*cards);
    EXPECT_EQ(marksInFile(), "1;0;1");
    toggleMark(*cards);
    EXPECT_EQ(marksInFile(), "1;1;1");
}

TEST_F(Marking, TakesEveryValueButZeroForAMark)
{
    for (const char *marked : {"-1", "2", "'1'"}) {
        otherProgram().exec(std::string("UPDATE FlashCards SET Marked = ") + marked);
        toggleMark(*cards);
        EXPECT_FALSE(cards->flag(CardField::Marked)) << marked;
        EXPECT_EQ(otherProgram().execAndGet("SELECT Marked FROM FlashCards WHERE \"Index\" = 2").getInt(), 0);
    }
}

TEST_F(Marking, ChangesNothingElse)
{
    otherProgram().exec("UPDATE FlashCards SET Shuffle = \"Index\" / 8.0, isTrueFalse = 1, isFront = 1, Answer = 3, "
                        "Wrong1 = 4, Wrong2 = 5");
    const std::string others = "\"Index\" || NIndex || Front || Back || Shuffle || isTrueFalse || isFront || Answer || "
                               "Wrong1 || Wrong2";
    const std::string before = inFile(others);
    toggleMark(*cards);
    EXPECT_EQ(inFile(others), before);
    EXPECT_EQ(cards->absolutePosition(), 1);
    EXPECT_EQ(cards->recordCount(), 3);
}

TEST_F(Marking, LeavesNoEditAndNoLockBehind)
{
    toggleMark(*cards);
    EXPECT_THROW(cards->update(), StoreError);
    otherProgram().exec("UPDATE FlashCards SET Front = 'x'");
    EXPECT_FALSE(std::filesystem::exists(subject.string() + "-journal"));
}

TEST_F(Marking, IsTheOppositeOfWhatTheFileHoldsNow)
{
    EXPECT_FALSE(cards->flag(CardField::Marked));
    otherProgram().exec("UPDATE FlashCards SET Marked = 1");
    toggleMark(*cards);
    EXPECT_FALSE(cards->flag(CardField::Marked));
    EXPECT_EQ(marksInFile(), "1;0;1");
}

struct Lock
{
    const char *name;
    const char *begin;
};

class MarkingInALockedFile : public Marking, public testing::WithParamInterface<Lock>
{
};

TEST_P(MarkingInALockedFile, FailsAndTheCardShowsTheMarkThatTheFileHolds)
{
    otherProgram().exec("UPDATE FlashCards SET Marked = 1");
    {
        SQLite::Database other = otherProgram();
        other.exec(GetParam().begin);
        static_cast<void>(other.execAndGet("SELECT count(*) FROM FlashCards"));
        EXPECT_EQ(failureOfToggling(), Reason::Locked);
    }
    EXPECT_TRUE(cards->flag(CardField::Marked));
    EXPECT_EQ(marksInFile(), "1;1;1");
    EXPECT_EQ(cards->absolutePosition(), 1);
    EXPECT_THROW(cards->update(), StoreError) << "no edit is left behind";
    EXPECT_EQ(failureOfToggling(), std::nullopt);
    EXPECT_FALSE(cards->flag(CardField::Marked));
    EXPECT_EQ(marksInFile(), "1;0;1");
}

constexpr Lock locks[] = {
    {"AReader", "BEGIN"},
    {"AWriter", "BEGIN IMMEDIATE"},
    {"AWriterThatKeepsReadersOut", "BEGIN EXCLUSIVE"},
};

INSTANTIATE_TEST_SUITE_P(By, MarkingInALockedFile, testing::ValuesIn(locks),
                         [](const auto &row) { return row.param.name; });

TEST_F(Marking, ShowsTheMarkOfTheFileEvenWhileAWriterHoldsIt)
{
    EXPECT_FALSE(cards->flag(CardField::Marked));
    SQLite::Database other = otherProgram();
    other.exec("BEGIN IMMEDIATE");
    EXPECT_EQ(failureOfToggling(), Reason::Locked);
    EXPECT_FALSE(cards->flag(CardField::Marked));
}

TEST_F(Marking, OfACardDeletedMeanwhileFailsAndTouchesNoOther)
{
    otherProgram().exec("DELETE FROM FlashCards WHERE \"Index\" = 2");
    EXPECT_EQ(failureOfToggling(), Reason::RowGone);
    EXPECT_EQ(marksInFile(), "0;0");
    EXPECT_EQ(cards->absolutePosition(), 1);
    cards->moveNext();
    toggleMark(*cards);
    EXPECT_EQ(inFile("\"Index\" || ':' || Marked"), "1:0;3:1");
}

TEST_F(Marking, WithoutACurrentCardFails)
{
    cards->moveLast();
    cards->moveNext();
    EXPECT_EQ(failureOfToggling(), Reason::NoCurrentRow);
    EXPECT_EQ(marksInFile(), "0;0;0");
}

} // namespace
