#include "store/StoreError.h"
#include "study/Shuffling.h"
#include "tests/support/TestSubject.h"

#include <SQLiteCpp/Database.h>
#include <SQLiteCpp/Statement.h>
#include <algorithm>
#include <array>
#include <gtest/gtest.h>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

using Reason = StoreError::Reason;
using Keys = std::vector<double>;

/// Gives the numbers of a script, and fails the test when more are asked for.
class ScriptedDraw
{
public:
    explicit ScriptedDraw(std::vector<float> numbers)
        : m_numbers(std::move(numbers))
    {
    }

    RandomDraw draw()
    {
        return [this] { return m_numbers.at(static_cast<std::size_t>(m_draws++)); };
    }
    [[nodiscard]] int draws() const { return m_draws; }

private:
    std::vector<float> m_numbers;
    int m_draws = 0;
};

/// A topic with the cards 1 to 5, and another with the cards 6 and 7; all with a key of 0.25.
class Shuffling : public testing::Test
{
protected:
    Shuffling()
    {
        SubjectStore::create(subject);
        topic = addTopic(subject, "Topic");
        addCards(subject, topic, 5);
        addCards(subject, addTopic(subject, "Other"), 2);
        otherProgram().exec("UPDATE FlashCards SET Shuffle = 0.25");
    }

    [[nodiscard]] SQLite::Database otherProgram() const { return {subject.string(), SQLite::OPEN_READWRITE}; }

    /// The shuffle keys of all cards in the order of entry, as the engine holds them.
    [[nodiscard]] Keys keysInFile() const
    {
        Keys keys;
        const SQLite::Database other = otherProgram();
        SQLite::Statement select(other, "SELECT Shuffle FROM FlashCards ORDER BY \"Index\"");
        while (select.executeStep()) {
            keys.push_back(select.getColumn(0));
        }
        return keys;
    }

    void open() { open(cardQuery(std::array{topic})); }
    void open(const std::string &statement)
    {
        query = statement;
        store.emplace(subject);
        cards.emplace(store->openRecordSet(cardsInOrder(query)));
    }

    /// The card keys of \p set, in its order.
    static std::vector<int> order(CardSet &set)
    {
        std::vector<int> found;
        for (set.moveFirst(); !set.isEndOfSet(); set.moveNext()) {
            found.push_back(set.number(CardField::Index));
        }
        set.moveFirst();
        return found;
    }

    std::optional<CardSet> shuffleBy(const RandomDraw &draw) { return shuffle(*store, *cards, query, draw); }
    std::optional<CardSet> shuffleBy(std::vector<float> numbers)
    {
        return shuffleBy(ScriptedDraw(std::move(numbers)).draw());
    }

    std::optional<Reason> failureOfShuffling(const RandomDraw &draw)
    {
        try {
            EXPECT_TRUE(shuffleBy(draw));
            return std::nullopt;
        } catch (const StoreError &failure) {
            return failure.reason();
        }
    }

    /// That a shuffle failed and left no trace, in the file nor in the set.
    void expectUntouched(int position)
    {
        EXPECT_EQ(keysInFile(), Keys(7, 0.25));
        EXPECT_EQ(cards->absolutePosition(), position);
        EXPECT_FLOAT_EQ(cards->single(CardField::Shuffle), 0.25F);
        EXPECT_THROW(cards->update(), StoreError) << "no edit is left behind";
        EXPECT_FALSE(std::filesystem::exists(subject.string() + "-journal"));
        otherProgram().exec("UPDATE FlashCards SET Answer = 1"); // there is no lock
    }

    TestFolder folder;
    std::filesystem::path subject = folder.file("subject.crl");
    int topic = 0;
    std::string query;
    std::optional<SubjectStore> store;
    std::optional<CardSet> cards;
};

constexpr float any()
{
    return 0.5F;
}

TEST_F(Shuffling, GivesNumbersFromTheLastCardToTheFirstAndTheLastCardKeepsItsSecond)
{
    open();
    ScriptedDraw script({0.0625F, 0.5F, 0.125F, 0.75F, 0.375F, 0.875F});
    EXPECT_TRUE(shuffleBy(script.draw()));
    EXPECT_EQ(keysInFile(), (Keys{0.875, 0.375, 0.75, 0.125, 0.5, 0.25, 0.25}));
    EXPECT_EQ(script.draws(), 6);
}

TEST_F(Shuffling, WritesTheFirstNumberOfTheLastCardToo)
{
    otherProgram().exec("CREATE TABLE Written (card, key); CREATE TRIGGER Watch AFTER UPDATE OF Shuffle ON FlashCards "
                        "BEGIN INSERT INTO Written VALUES (new.\"Index\", new.Shuffle); END");
    open();
    EXPECT_TRUE(shuffleBy({0.0625F, 0.5F, 0.125F, 0.75F, 0.375F, 0.875F}));
    EXPECT_EQ(otherProgram().execAndGet("SELECT group_concat(card || '=' || key, ' ') FROM Written").getString(),
              "5=0.0625 5=0.5 4=0.125 3=0.75 2=0.375 1=0.875");
}

TEST_F(Shuffling, StoresNumbersUnscaledAndInSinglePrecision)
{
    open();
    const std::vector<float> numbers = {0.5F, 0.1F, 0.99999994F, 0.0F, 1e-30F, 0.3333333F};
    EXPECT_TRUE(shuffleBy(numbers));
    const Keys keys = keysInFile();
    for (std::size_t card = 0; card < 5; ++card) {
        EXPECT_EQ(keys[card], static_cast<double>(numbers[5 - card])) << card;
    }
    EXPECT_NE(keys[4], 0.1) << "which no single can hold";
    EXPECT_EQ(otherProgram().execAndGet("SELECT count(*) FROM FlashCards WHERE typeof(Shuffle) = 'real'").getInt(), 7);
}

TEST_F(Shuffling, ReturnsTheCardsInTheOrderOfTheirKeysOnTheFirst)
{
    open();
    std::optional<CardSet> shuffled = shuffleBy({0.0625F, 0.5F, 0.125F, 0.75F, 0.375F, 0.875F});
    ASSERT_TRUE(shuffled);
    EXPECT_EQ(shuffled->absolutePosition(), 0);
    EXPECT_EQ(shuffled->number(CardField::Index), 4);
    EXPECT_EQ(shuffled->recordCount(), 5);
    EXPECT_EQ(order(*shuffled), (std::vector{4, 2, 5, 3, 1}));
}

TEST_F(Shuffling, AShuffledSetCanBeShuffledAgain)
{
    open();
    cards = shuffleBy({0.0625F, 0.5F, 0.125F, 0.75F, 0.375F, 0.875F});
    ASSERT_TRUE(cards);
    cards = shuffleBy({0.9F, 0.5F, 0.625F, 0.75F, 0.125F, 0.25F}); // to 1, 3, 5, 2, 4
    ASSERT_TRUE(cards);
    EXPECT_EQ(keysInFile(), (Keys{0.5, 0.125, 0.625, 0.25, 0.75, 0.25, 0.25}));
    EXPECT_EQ(order(*cards), (std::vector{2, 4, 1, 3, 5}));
}

TEST_F(Shuffling, KeepsEveryCardOnceWhenAllKeysAreEqual)
{
    open();
    std::optional<CardSet> shuffled = shuffleBy(any);
    ASSERT_TRUE(shuffled);
    std::vector<int> found = order(*shuffled);
    std::ranges::sort(found);
    EXPECT_EQ(found, (std::vector{1, 2, 3, 4, 5}));
    EXPECT_EQ(keysInFile(), (Keys{0.5, 0.5, 0.5, 0.5, 0.5, 0.25, 0.25}));
}

TEST_F(Shuffling, OfOneCardDrawsTwoNumbersAndKeepsTheSecond)
{
    otherProgram().exec("DELETE FROM FlashCards WHERE \"Index\" BETWEEN 2 AND 5");
    open();
    ScriptedDraw script({0.0625F, 0.5F});
    std::optional<CardSet> shuffled = shuffleBy(script.draw());
    ASSERT_TRUE(shuffled);
    EXPECT_EQ(keysInFile(), (Keys{0.5, 0.25, 0.25}));
    EXPECT_EQ(script.draws(), 2);
    EXPECT_EQ(order(*shuffled), std::vector{1});
}

TEST_F(Shuffling, KeepsTheCurrentCardOfTheOldSet)
{
    open();
    for (int position = 0; position < 5; ++position) {
        cards->setAbsolutePosition(position);
        EXPECT_TRUE(shuffleBy(any));
        EXPECT_EQ(cards->absolutePosition(), position);
        EXPECT_EQ(cards->number(CardField::Index), position + 1);
        EXPECT_FLOAT_EQ(cards->single(CardField::Shuffle), 0.5F);
        EXPECT_THROW(cards->update(), StoreError) << "no edit is left behind";
    }
}

TEST_F(Shuffling, ChangesNothingButTheKeys)
{
    otherProgram().exec("UPDATE FlashCards SET Marked = \"Index\" % 2, isTrueFalse = 1, isFront = 1, Answer = 3, "
                        "Wrong1 = 4, Wrong2 = 5");
    const std::string others = "SELECT group_concat(\"Index\" || NIndex || Front || Back || Marked || isTrueFalse || "
                               "isFront || Answer || Wrong1 || Wrong2) FROM FlashCards";
    const std::string before = otherProgram().execAndGet(others).getString();
    open();
    EXPECT_TRUE(shuffleBy(any));
    EXPECT_EQ(otherProgram().execAndGet(others).getString(), before);
}

TEST_F(Shuffling, LeavesOneFileWithoutALock)
{
    open();
    EXPECT_TRUE(shuffleBy(any));
    EXPECT_FALSE(std::filesystem::exists(subject.string() + "-journal"));
    otherProgram().exec("UPDATE FlashCards SET Answer = 1");
}

TEST_F(Shuffling, ShowsOthersNothingUntilItIsDone)
{
    open();
    const Keys before = keysInFile();
    EXPECT_TRUE(shuffleBy([&] {
        EXPECT_EQ(keysInFile(), before);
        return 0.5F;
    }));
    EXPECT_NE(keysInFile(), before);
}

TEST_F(Shuffling, PassesOverACardDeletedMeanwhileAndTheOthersKeepTheirNumbers)
{
    for (int gone = 1; gone <= 5; ++gone) {
        std::filesystem::copy_file(subject, folder.file("whole"));
        open();
        otherProgram().exec("DELETE FROM FlashCards WHERE \"Index\" = " + std::to_string(gone));
        ScriptedDraw script({0.0625F, 0.5F, 0.125F, 0.75F, 0.375F, 0.875F});
        std::optional<CardSet> shuffled = shuffleBy(script.draw());
        ASSERT_TRUE(shuffled);
        EXPECT_EQ(script.draws(), 6);
        Keys expected{0.875, 0.375, 0.75, 0.125, 0.5, 0.25, 0.25};
        expected.erase(expected.begin() + gone - 1);
        EXPECT_EQ(keysInFile(), expected);
        std::vector<int> expectedOrder{4, 2, 5, 3, 1};
        std::erase(expectedOrder, gone);
        EXPECT_EQ(order(*shuffled), expectedOrder);
        store.reset();
        std::filesystem::rename(folder.file("whole"), subject);
    }
}

TEST_F(Shuffling, ReturnsNothingAndWritesNothingWhenAllCardsAreDeleted)
{
    open();
    cards->setAbsolutePosition(2);
    otherProgram().exec("DELETE FROM FlashCards WHERE \"Index\" < 6");
    EXPECT_FALSE(shuffleBy(any));
    EXPECT_EQ(keysInFile(), Keys(2, 0.25));
    EXPECT_EQ(cards->absolutePosition(), 2);
    otherProgram().exec("UPDATE FlashCards SET Answer = 1"); // there is no lock
}

TEST_F(Shuffling, TakesInACardThatTheQuerySelectsSinceThen)
{
    open();
    otherProgram().exec("INSERT INTO FlashCards (NIndex, Shuffle) VALUES (" + std::to_string(topic) + ", 0.4375)");
    std::optional<CardSet> shuffled = shuffleBy({0.0625F, 0.5F, 0.125F, 0.75F, 0.375F, 0.875F});
    ASSERT_TRUE(shuffled);
    EXPECT_EQ(order(*shuffled), (std::vector{4, 2, 8, 5, 3, 1})) << "with the key that it has";
}

TEST_F(Shuffling, ACardWithoutItsMarkIsWrittenButNoLongerAmongTheMarkedOnes)
{
    otherProgram().exec("UPDATE FlashCards SET Marked = 1 WHERE \"Index\" IN (1, 3, 4, 6)");
    open(markedCardQuery());
    otherProgram().exec("UPDATE FlashCards SET Marked = 0 WHERE \"Index\" = 3");
    std::optional<CardSet> shuffled = shuffleBy({0.9F, 0.125F, 0.5F, 0.375F, 0.75F});
    ASSERT_TRUE(shuffled);
    EXPECT_EQ(keysInFile(), (Keys{0.75, 0.25, 0.375, 0.5, 0.25, 0.125, 0.25}));
    EXPECT_EQ(order(*shuffled), (std::vector{6, 4, 1}));
}

TEST_F(Shuffling, ReturnsNothingAndWritesNothingWhenNoCardIsMarkedAnyMore)
{
    otherProgram().exec("UPDATE FlashCards SET Marked = 1 WHERE \"Index\" < 6");
    open(markedCardQuery());
    cards->setAbsolutePosition(3);
    otherProgram().exec("UPDATE FlashCards SET Marked = 0");
    EXPECT_FALSE(shuffleBy(any));
    expectUntouched(3);
}

TEST_F(Shuffling, TakesAllCardsOfSeveralTopicsAndTheMarkedOnes)
{
    otherProgram().exec("UPDATE FlashCards SET Marked = 1 WHERE \"Index\" = 7");
    open(withMarkedCards(cardQuery(std::array{topic})));
    std::optional<CardSet> shuffled = shuffleBy({0.0F, 0.5F, 0.125F, 0.75F, 0.375F, 0.875F, 0.0625F});
    ASSERT_TRUE(shuffled);
    EXPECT_EQ(keysInFile(), (Keys{0.0625, 0.875, 0.375, 0.75, 0.125, 0.25, 0.5}));
    EXPECT_EQ(order(*shuffled), (std::vector{1, 5, 3, 7, 4, 2}));
}

TEST_F(Shuffling, ADrawThatFailsLeavesEverythingAsItWas)
{
    for (int last = 1; last <= 6; ++last) {
        open();
        cards->setAbsolutePosition(last % 5);
        int draws = 0;
        EXPECT_THROW((void)shuffleBy([&] {
                         if (++draws == last) {
                             throw std::runtime_error("no numbers left");
                         }
                         return 0.5F;
                     }),
                     std::runtime_error);
        EXPECT_EQ(draws, last);
        expectUntouched(last % 5);
        EXPECT_EQ(failureOfShuffling(any), std::nullopt);
        otherProgram().exec("UPDATE FlashCards SET Shuffle = 0.25");
    }
}

TEST_F(Shuffling, InAFileThatAnotherProgramWritesFailsBeforeANumberIsDrawn)
{
    for (const char *lock : {"BEGIN IMMEDIATE", "BEGIN EXCLUSIVE"}) {
        open();
        cards->setAbsolutePosition(3);
        SQLite::Database other = otherProgram();
        other.exec(lock);
        EXPECT_EQ(failureOfShuffling([] {
                      ADD_FAILURE() << "a number was drawn";
                      return 0.5F;
                  }),
                  Reason::Locked);
        other.exec("COMMIT");
        expectUntouched(3);
    }
    EXPECT_EQ(failureOfShuffling(any), std::nullopt);
}

TEST_F(Shuffling, InAFileThatAnotherProgramReadsFailsAndLeavesEverythingAsItWas)
{
    open();
    cards->setAbsolutePosition(3);
    {
        SQLite::Database reader = otherProgram();
        reader.exec("BEGIN");
        static_cast<void>(reader.execAndGet("SELECT count(*) FROM Topics"));
        EXPECT_EQ(failureOfShuffling(any), Reason::Locked);
    }
    expectUntouched(3);
    EXPECT_EQ(failureOfShuffling(any), std::nullopt);
}

TEST_F(Shuffling, ThatTheEngineUndoesByItselfLeavesEverythingAsItWas)
{
    otherProgram().exec("CREATE TRIGGER Fail BEFORE UPDATE OF Shuffle ON FlashCards WHEN old.\"Index\" = 2 "
                        "BEGIN SELECT raise(ROLLBACK, 'the disk failed'); END");
    open();
    EXPECT_EQ(failureOfShuffling(any), Reason::Refused);
    expectUntouched(0);
    otherProgram().exec("DROP TRIGGER Fail");
    EXPECT_EQ(failureOfShuffling(any), std::nullopt);
}

TEST_F(Shuffling, InAFileThatWasMovedFailsAndWritesIntoNeither)
{
    open();
    std::filesystem::rename(subject, folder.file("elsewhere"));
    EXPECT_EQ(failureOfShuffling(any), Reason::NotFound);
    EXPECT_FALSE(std::filesystem::exists(subject));
    std::filesystem::rename(folder.file("elsewhere"), subject);
    expectUntouched(0);
}

TEST_F(Shuffling, OfManyCardsTellsHowFarItIs)
{
    addCards(subject, topic, 1000);
    open();
    std::vector<WorkState> told;
    observeWork([&](const WorkState &work) { told.push_back(work); });
    EXPECT_EQ(failureOfShuffling(any), std::nullopt);
    observeWork({});
    ASSERT_FALSE(told.empty());
    EXPECT_TRUE(std::ranges::is_sorted(told, {}, &WorkState::done));
    for (const WorkState &work : told) {
        EXPECT_EQ(work.what, "Shuffling the flash cards...");
        EXPECT_EQ(work.total, 1005);
        EXPECT_LE(work.done, work.total);
    }
    EXPECT_GT(told.back().done, 500);
}

} // namespace
