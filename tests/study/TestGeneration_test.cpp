#include "NoDiskWaits.h"
#include "StoredTest.h"
#include "store/StoreError.h"
#include "store/WorkSignal.h"
#include "study/TestGeneration.h"
#include "tests/support/TestSubject.h"

#include <SQLiteCpp/Database.h>
#include <algorithm>
#include <array>
#include <cmath>
#include <functional>
#include <gtest/gtest.h>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

using Reason = StoreError::Reason;
using Type = QuestionType;

/// The numbers of a test of five cards at 60 percent, and what it must store in the cards 1 to 5. The new
/// order is 4, 2, 5, 3, 1.
const std::vector<float> fiveCards = {
    0.5F,  0.125F, 0.75F, 0.375F, 0.875F,              // the keys of the cards 5, 4, 3, 2, 1
    0.59F, 0.5F,   0.34F, 0.99F,  0.99F,  0.75F, 0.1F, // card 1: the second wrong choice is the first again, twice
    0.6F,  0.49F,  0.49F, 0.75F,  0.25F,  0.3F,  0.8F,  0.5F, // card 3: is both, the first and the card
    0.0F,  0.99F,  0.9F,  0.5F,   0.5F,   0.0F,  0.99F,       // card 5: the first wrong choice is the card twice
    0.99F, 0.0F,   0.5F,  0.0F,   0.74F,                      // card 2
    0.6F,  0.5F,   0.99F, 0.24F,  0.26F,  0.0F,  0.3F,  0.75F // card 4
};

std::vector<StoredCard> storedOfFiveCards()
{
    return {{1, 0.875, {Type::MultipleChoice, Side::Front, 2, 3, 0}},
            {2, 0.375, {Type::TrueOrFalse, Side::Back, 2, 0, 2}},
            {3, 0.75, {Type::TrueOrFalse, Side::Back, 1, 1, 2}},
            {4, 0.125, {Type::TrueOrFalse, Side::Front, 2, 1, 3}},
            {5, 0.5, {Type::MultipleChoice, Side::Front, 3, 0, 3}}};
}

/// What a test must store, told by other means: \p cards in the order of the file; a key is drawn
/// for each of them, \p gone included. Cards with the same key follow each other in the order of entry.
std::vector<StoredCard> expectedTest(std::vector<int> cards, int percent, const RandomDraw &draw, int gone = 0)
{
    std::vector<StoredCard> stored;
    for (auto card = cards.rbegin(); card != cards.rend(); ++card) {
        const float key = draw();
        if (*card != gone) {
            stored.push_back({*card, static_cast<double>(key), {}});
        }
    }
    const auto byCard = [](const StoredCard &one, const StoredCard &other) { return one.card < other.card; };
    std::ranges::sort(stored, byCard);
    std::ranges::stable_sort(stored, std::less(), &StoredCard::shuffle);
    const int count = static_cast<int>(stored.size());
    const auto position = [&] { return static_cast<int>(static_cast<double>(draw()) * (count - 1)); };
    for (int own = count - 1; own >= 0; --own) {
        TestQuestion &question = stored[static_cast<std::size_t>(own)].question;
        const int type = static_cast<int>(draw() * 100);
        const int side = static_cast<int>(draw() * 100);
        question.type = type < percent ? Type::MultipleChoice : Type::TrueOrFalse;
        question.asked = side < 50 ? Side::Back : Side::Front;
        question.answer = 1 + static_cast<int>(draw() * (type < percent ? 3 : 2));
        for (question.wrong1 = own; question.wrong1 == own;) {
            question.wrong1 = position();
        }
        for (question.wrong2 = own; question.wrong2 == own || question.wrong2 == question.wrong1;) {
            question.wrong2 = position();
        }
    }
    std::ranges::sort(stored, byCard);
    return stored;
}

/// A topic with the cards 1 to 5, and another with the cards 6 and 7; all with the fields of a test before.
class TestGeneration : public testing::Test
{
protected:
    TestGeneration() { makeSubject(5); }

    void makeSubject(int cardCount)
    {
        SubjectStore::create(subject);
        topic = addTopic(subject, "Topic");
        addCards(subject, topic, cardCount);
        addCards(subject, addTopic(subject, "Other"), 2);
        reset();
    }
    void reset() const
    {
        otherProgram().exec("UPDATE FlashCards SET Shuffle = 0.25, isTrueFalse = 1, isFront = 0, Answer = 9, "
                            "Wrong1 = 9, Wrong2 = 9, Marked = \"Index\" % 2");
    }

    [[nodiscard]] SQLite::Database otherProgram() const { return {subject.string(), SQLite::OPEN_READWRITE}; }
    [[nodiscard]] std::vector<StoredCard> inFile() const { return storedCards(otherProgram()); }
    /// All of the cards that no test changes.
    [[nodiscard]] std::string contents() const
    {
        return otherProgram()
            .execAndGet("SELECT group_concat(\"Index\" || NIndex || Front || Back || Marked) FROM FlashCards")
            .getString();
    }

    static StoredCard untouched(int card) { return {card, 0.25, {Type::TrueOrFalse, Side::Back, 9, 9, 9}}; }
    static std::vector<StoredCard> withOtherTopic(std::vector<StoredCard> stored)
    {
        const int last = static_cast<int>(stored.size());
        stored.push_back(untouched(last + 1));
        stored.push_back(untouched(last + 2));
        return stored;
    }
    [[nodiscard]] std::vector<StoredCard> allUntouched() const
    {
        std::vector<StoredCard> expected = inFile();
        for (StoredCard &stored : expected) {
            stored = untouched(stored.card);
        }
        return expected;
    }

    void open() { open(cardQuery(std::array{topic})); }
    void open(const std::string &statement)
    {
        query = statement;
        store.emplace(subject);
        cards.emplace(store->openRecordSet(cardQueryCheck(query)));
    }

    CardSet generateBy(const RandomDraw &draw, int percent = 60)
    {
        return generateTest(*store, *cards, query, percent, draw);
    }

    std::optional<Reason> failureOfGenerating(const RandomDraw &draw)
    {
        try {
            (void)generateBy(draw);
            return std::nullopt;
        } catch (const StoreError &failure) {
            return failure.reason();
        }
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

    /// That a failure left no trace, in the file nor in the set.
    void expectUntouched(int position)
    {
        EXPECT_EQ(inFile(), allUntouched());
        EXPECT_EQ(cards->absolutePosition(), position);
        EXPECT_FLOAT_EQ(cards->single(CardField::Shuffle), 0.25F);
        EXPECT_THROW(cards->update(), StoreError) << "no edit is left behind";
        EXPECT_FALSE(std::filesystem::exists(subject.string() + "-journal"));
        otherProgram().exec("UPDATE FlashCards SET Marked = 1"); // there is no lock
    }

    TestFolder folder;
    std::filesystem::path subject = folder.file("subject.crl");
    int topic = 0;
    std::string query;
    std::optional<SubjectStore> store;
    std::optional<CardSet> cards;
};

TEST_F(TestGeneration, DrawsAKeyForEachCardAndThenTheQuestionsFromTheLastCardToTheFirstOfTheNewOrder)
{
    open();
    ScriptedDraw script(fiveCards);
    (void)generateBy(script.draw());
    EXPECT_TRUE(script.isAtEnd()) << "only " << script.draws() << " numbers were drawn";
    EXPECT_EQ(inFile(), withOtherTopic(storedOfFiveCards()));
}

TEST_F(TestGeneration, ReturnsTheCardsInTheOrderOfTheirKeysOnTheFirst)
{
    open();
    CardSet test = generateBy(ScriptedDraw(fiveCards).draw());
    EXPECT_EQ(test.absolutePosition(), 0);
    EXPECT_EQ(test.recordCount(), 5);
    EXPECT_EQ(test.number(CardField::Index), 4);
    EXPECT_EQ(questionOf(test), storedOfFiveCards().at(3).question);
    EXPECT_EQ(order(test), (std::vector{4, 2, 5, 3, 1}));
}

TEST_F(TestGeneration, StoresWhatTheRulesSayForAllSizesAndShares)
{
    unsigned seed = 0;
    for (int count = 5; count <= 40; count += count < 12 ? 1 : 7) {
        makeSubject(count);
        open();
        std::vector<int> fileOrder = order(*cards);
        for (const int percent : {0, 1, 37, 60, 99, 100}) {
            SCOPED_TRACE(std::to_string(count) + " cards at " + std::to_string(percent) + " percent");
            CardSet test = generateBy(drawSeededBy(++seed), percent);
            EXPECT_EQ(inFile(), withOtherTopic(expectedTest(fileOrder, percent, drawSeededBy(seed))));
            EXPECT_EQ(test.recordCount(), count);
        }
    }
}

TEST_F(TestGeneration, NamesThePositionsOfTheReturnedSetThoughManyKeysAreEqual)
{
    makeSubject(12);
    for (unsigned seed = 1; seed <= 30; ++seed) {
        SCOPED_TRACE(seed);
        open();
        const std::vector<int> fileOrder = order(*cards);
        // Four keys for twelve cards; the numbers after the keys are as fine as ever.
        const auto fewKeys = [&] {
            return [draw = drawSeededBy(seed), draws = 0]() mutable {
                return ++draws <= 12 ? std::floor(draw() * 4) / 4 : draw();
            };
        };
        CardSet test = generateBy(fewKeys());
        EXPECT_EQ(inFile(), withOtherTopic(expectedTest(fileOrder, 60, fewKeys())));

        const std::vector<int> found = order(test);
        EXPECT_EQ(found.size(), 12U);
        SubjectStore another(subject);
        CardSet again = another.openRecordSet(cardsShuffled(query));
        EXPECT_EQ(order(again), found) << "another program sees the same positions";
        for (int own = 0; own < 12; ++own) {
            test.setAbsolutePosition(own);
            const TestQuestion question = questionOf(test);
            EXPECT_NE(question.wrong1, own);
            EXPECT_NE(question.wrong2, own);
            const auto answerSide = question.asked == Side::Front ? CardField::Back : CardField::Front;
            again.setAbsolutePosition(question.wrong1);
            EXPECT_EQ(composeQuestion(test, question, false).choices.at(question.answer == 1 ? 1 : 0),
                      again.text(answerSide));
        }
    }
}

TEST_F(TestGeneration, KeepsTheOrderOfEntryWhenAllKeysAreEqual)
{
    open();
    std::vector<float> numbers = fiveCards;
    std::fill_n(numbers.begin(), 5, 0.5F);
    CardSet test = generateBy(ScriptedDraw(numbers).draw());
    EXPECT_EQ(order(test), (std::vector{1, 2, 3, 4, 5}));
    EXPECT_EQ(inFile().at(4).question, storedOfFiveCards().at(0).question) << "the last of the new order is first";
}

TEST_F(TestGeneration, ATestCanBeMadeAgainFromTheOrderOfTheLast)
{
    open();
    cards = generateBy(ScriptedDraw(fiveCards).draw());
    ScriptedDraw script(fiveCards);
    CardSet test = generateBy(script.draw());
    EXPECT_TRUE(script.isAtEnd());
    EXPECT_EQ(order(test), (std::vector{3, 2, 1, 5, 4})) << "the fourth card, the second...";
    EXPECT_EQ(inFile().at(3).question, storedOfFiveCards().at(0).question);
    EXPECT_EQ(inFile().at(2).question, storedOfFiveCards().at(3).question);
}

TEST_F(TestGeneration, WithoutMultipleChoiceAllAreStatementsAndWithNothingElseNoneIs)
{
    makeSubject(200);
    open();
    (void)generateBy(drawSeededBy(1), 0);
    EXPECT_EQ(otherProgram().execAndGet("SELECT min(isTrueFalse) FROM FlashCards WHERE NIndex = 1").getInt(), 1);
    (void)generateBy(drawSeededBy(1), 100);
    EXPECT_EQ(otherProgram().execAndGet("SELECT max(isTrueFalse) FROM FlashCards WHERE NIndex = 1").getInt(), 0);
}

TEST_F(TestGeneration, StoresKeysInSinglePrecisionAndTheRestAsWholeNumbers)
{
    open();
    const std::array keys{0.1F, 0.99999994F, 0.0F, 1e-30F, 0.3333333F};
    std::vector<float> numbers = fiveCards;
    numbers.erase(numbers.begin(), numbers.begin() + 5);
    numbers.insert(numbers.begin(), keys.begin(), keys.end());
    (void)generateBy(ScriptedDraw(numbers).draw());
    const std::vector<StoredCard> stored = inFile();
    for (std::size_t card = 0; card < 5; ++card) {
        EXPECT_EQ(stored[card].shuffle, static_cast<double>(keys[4 - card])) << card;
    }
    EXPECT_EQ(otherProgram().execAndGet("SELECT count(*) FROM FlashCards WHERE typeof(Shuffle) = 'real'").getInt(), 7);
    EXPECT_EQ(
        otherProgram()
            .execAndGet("SELECT group_concat(DISTINCT typeof(isTrueFalse) || typeof(isFront) || typeof(Answer) || "
                        "typeof(Wrong1) || typeof(Wrong2)) FROM FlashCards")
            .getString(),
        "integerintegerintegerintegerinteger");
}

TEST_F(TestGeneration, ChangesNeitherTextsNorMarksNorTopics)
{
    const std::string before = contents();
    open();
    (void)generateBy(ScriptedDraw(fiveCards).draw());
    EXPECT_EQ(contents(), before);
}

TEST_F(TestGeneration, TakesTheMarkedCardsOfAllTopicsToo)
{
    otherProgram().exec("UPDATE FlashCards SET Marked = 1");
    open(withMarkedCards(cardQuery(std::array{topic})));
    CardSet test = generateBy(drawSeededBy(5));
    EXPECT_EQ(test.recordCount(), 7);
    EXPECT_EQ(inFile(), expectedTest({1, 2, 3, 4, 5, 6, 7}, 60, drawSeededBy(5)));
}

TEST_F(TestGeneration, KeepsTheCurrentCardOfTheOldSet)
{
    open();
    for (int position = 0; position < 5; ++position) {
        cards->setAbsolutePosition(position);
        (void)generateBy(drawSeededBy(7));
        EXPECT_EQ(cards->absolutePosition(), position);
        EXPECT_EQ(cards->number(CardField::Index), position + 1);
    }
}

TEST_F(TestGeneration, LeavesOneFileWithoutALock)
{
    open();
    const CardSet test = generateBy(drawSeededBy(1));
    EXPECT_FALSE(std::filesystem::exists(subject.string() + "-journal"));
    otherProgram().exec("UPDATE FlashCards SET Marked = 1");
}

TEST_F(TestGeneration, ShowsOthersNothingUntilItIsDone)
{
    open();
    int draws = 0;
    (void)generateBy([&, draw = drawSeededBy(3)] {
        ++draws;
        EXPECT_EQ(inFile(), allUntouched());
        return draw();
    });
    EXPECT_GE(draws, 30);
    EXPECT_NE(inFile(), allUntouched());
}

TEST_F(TestGeneration, PassesOverACardDeletedMeanwhileAndTheOthersKeepTheirKeys)
{
    for (int gone = 1; gone <= 6; ++gone) {
        SCOPED_TRACE(gone);
        makeSubject(6);
        open();
        otherProgram().exec("DELETE FROM FlashCards WHERE \"Index\" = " + std::to_string(gone));
        CardSet test = generateBy(drawSeededBy(11));
        EXPECT_EQ(test.recordCount(), 5);
        std::vector<StoredCard> expected = expectedTest({1, 2, 3, 4, 5, 6}, 60, drawSeededBy(11), gone);
        expected.push_back(untouched(7));
        expected.push_back(untouched(8));
        EXPECT_EQ(inFile(), expected);
    }
}

TEST_F(TestGeneration, TakesInACardThatTheQuerySelectsSinceThen)
{
    open();
    otherProgram().exec("INSERT INTO FlashCards (NIndex, Shuffle) VALUES (" + std::to_string(topic) + ", 0.4375)");
    CardSet test = generateBy(
        [draw = drawSeededBy(3), draws = 0U]() mutable { return draws < 5 ? fiveCards.at(draws++) : draw(); });
    EXPECT_EQ(order(test), (std::vector{4, 2, 8, 5, 3, 1})) << "with the key that it has";
    test.setAbsolutePosition(2);
    EXPECT_TRUE(test.number(CardField::Answer) >= 1 && test.number(CardField::Answer) <= 3) << "and a question";
    EXPECT_NE(test.number(CardField::Wrong1), test.number(CardField::Wrong2));
}

TEST_F(TestGeneration, FailsAndChangesNothingIfFewerThanFiveCardsAreLeft)
{
    for (int gone = 1; gone <= 5; ++gone) {
        makeSubject(5);
        open();
        cards->setAbsolutePosition(4);
        otherProgram().exec("DELETE FROM FlashCards WHERE \"Index\" <= " + std::to_string(gone));
        int draws = 0;
        EXPECT_THROW((void)generateBy([&, draw = drawSeededBy(1)] {
                         ++draws;
                         return draw();
                     }),
                     std::runtime_error);
        EXPECT_EQ(draws, 5) << "a question was drawn";
        EXPECT_EQ(inFile(), allUntouched());
        EXPECT_EQ(cards->absolutePosition(), 4);
        otherProgram().exec("UPDATE FlashCards SET Marked = 1"); // there is no lock
    }
}

TEST_F(TestGeneration, OfFewerThanFiveCardsSaysSoInWordsThatAreNoEnginesError)
{
    open();
    otherProgram().exec("DELETE FROM FlashCards WHERE \"Index\" = 3");
    try {
        (void)generateBy(drawSeededBy(1));
        FAIL() << "a test of four cards";
    } catch (const StoreError &) {
        FAIL() << "the engine is not at fault";
    } catch (const std::runtime_error &failure) {
        EXPECT_NE(std::string(failure.what()).find("5"), std::string::npos);
    }
}

TEST_F(TestGeneration, OfASelectionThatIsEmptyFailsToo)
{
    otherProgram().exec("UPDATE FlashCards SET Marked = 0");
    open(markedCardQuery());
    EXPECT_THROW((void)generateBy(drawSeededBy(1)), std::runtime_error);
    EXPECT_EQ(inFile(), allUntouched());
}

TEST_F(TestGeneration, ADrawThatFailsLeavesEverythingAsItWas)
{
    const int draws = static_cast<int>(fiveCards.size());
    for (int last = 0; last < draws; ++last) {
        SCOPED_TRACE(last);
        reset();
        open();
        cards->setAbsolutePosition(last % 5);
        ScriptedDraw tooShort({fiveCards.begin(), fiveCards.begin() + last});
        EXPECT_THROW((void)generateBy(tooShort.draw()), std::out_of_range);
        expectUntouched(last % 5);
        (void)generateBy(ScriptedDraw(fiveCards).draw());
        EXPECT_EQ(inFile(), withOtherTopic(storedOfFiveCards()));
    }
}

TEST_F(TestGeneration, InAFileThatAnotherProgramWritesFailsBeforeANumberIsDrawn)
{
    for (const char *lock : {"BEGIN IMMEDIATE", "BEGIN EXCLUSIVE"}) {
        open();
        cards->setAbsolutePosition(3);
        SQLite::Database other = otherProgram();
        other.exec(lock);
        EXPECT_EQ(failureOfGenerating([] {
                      ADD_FAILURE() << "a number was drawn";
                      return 0.5F;
                  }),
                  Reason::Locked);
        other.exec("COMMIT");
        expectUntouched(3);
    }
    (void)generateBy(ScriptedDraw(fiveCards).draw());
    EXPECT_EQ(inFile(), withOtherTopic(storedOfFiveCards()));
}

TEST_F(TestGeneration, InAFileThatAnotherProgramReadsFailsAndLeavesEverythingAsItWas)
{
    open();
    cards->setAbsolutePosition(3);
    {
        SQLite::Database reader = otherProgram();
        reader.exec("BEGIN");
        static_cast<void>(reader.execAndGet("SELECT count(*) FROM Topics"));
        EXPECT_EQ(failureOfGenerating(drawSeededBy(1)), Reason::Locked);
    }
    expectUntouched(3);
    (void)generateBy(ScriptedDraw(fiveCards).draw());
    EXPECT_EQ(inFile(), withOtherTopic(storedOfFiveCards()));
}

TEST_F(TestGeneration, ThatTheEngineUndoesByItselfLeavesEverythingAsItWas)
{
    for (const std::string field : {"Shuffle", "Answer"}) {
        otherProgram().exec("CREATE TRIGGER Fail BEFORE UPDATE OF " + field +
                            " ON FlashCards WHEN old.\"Index\" = 2 BEGIN SELECT raise(ROLLBACK, 'the disk failed'); "
                            "END");
        open();
        cards->setAbsolutePosition(2);
        EXPECT_EQ(failureOfGenerating(drawSeededBy(1)), Reason::Refused);
        expectUntouched(2);
        otherProgram().exec("DROP TRIGGER Fail");
    }
    (void)generateBy(ScriptedDraw(fiveCards).draw());
    EXPECT_EQ(inFile(), withOtherTopic(storedOfFiveCards()));
}

TEST_F(TestGeneration, InAFileThatWasMovedFailsAndWritesIntoNeither)
{
    open();
    std::filesystem::rename(subject, folder.file("elsewhere"));
    EXPECT_EQ(failureOfGenerating(drawSeededBy(1)), Reason::NotFound);
    EXPECT_FALSE(std::filesystem::exists(subject));
    std::filesystem::rename(folder.file("elsewhere"), subject);
    expectUntouched(0);
}

TEST_F(TestGeneration, OfManyCardsTellsHowFarItIs)
{
    addCards(subject, topic, 1000);
    open();
    std::vector<WorkState> told;
    observeWork([&](const WorkState &work) { told.push_back(work); });
    (void)generateBy(drawSeededBy(1));
    observeWork({});
    ASSERT_FALSE(told.empty());
    EXPECT_TRUE(std::ranges::is_sorted(told, {}, &WorkState::done));
    for (const WorkState &work : told) {
        EXPECT_EQ(work.what, "Making the test...");
        EXPECT_EQ(work.total, 2010) << "a key and a question for each card";
        EXPECT_LE(work.done, work.total);
    }
    EXPECT_GT(told.back().done, 1005);
}

} // namespace
