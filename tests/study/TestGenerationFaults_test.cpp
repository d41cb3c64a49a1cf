#include "FaultyEngine.h"
#include "NoDiskWaits.h"
#include "StoredTest.h"
#include "store/StoreError.h"
#include "study/TestGeneration.h"
#include "study/TestSession.h"
#include "tests/support/TestSubject.h"

#include <SQLiteCpp/Database.h>
#include <array>
#include <functional>
#include <gtest/gtest.h>
#include <optional>
#include <string>
#include <vector>

namespace {

constexpr int cardCount = 6;
constexpr int current = 2;

/// A subject of six cards with the fields of a test before, whose engine can fail.
class TestFaults : public testing::Test
{
protected:
    TestFaults()
    {
        SubjectStore::create(subject);
        addCards(subject, addTopic(subject, "Topic"), cardCount);
        otherProgram().exec("UPDATE FlashCards SET Shuffle = 0.25, Answer = 9, Marked = \"Index\" = 6");
        std::filesystem::copy_file(subject, before);
        settings.cardQuery = query;
        settings.questionCount = 5;
    }

    [[nodiscard]] SQLite::Database otherProgram() const { return {subject.string(), SQLite::OPEN_READWRITE}; }
    [[nodiscard]] std::vector<StoredCard> inFile() const { return storedCards(otherProgram()); }
    [[nodiscard]] std::string marks() const
    {
        return otherProgram().execAndGet("SELECT group_concat(Marked, ' ') FROM FlashCards").getString();
    }

    void restore() const
    {
        std::filesystem::copy_file(before, subject, std::filesystem::copy_options::overwrite_existing);
    }

    /// Runs \p command, one statement of which may fail. Returns whether it did.
    static bool fails(const std::function<void()> &command)
    {
        try {
            command();
            return false;
        } catch (const StoreError &failure) {
            EXPECT_EQ(failure.reason(), StoreError::Reason::Engine) << failure.what();
            return true;
        }
    }

    TestFolder folder;
    std::filesystem::path subject = folder.file("subject.crl");
    std::filesystem::path before = folder.file("before");
    std::string query = cardQuery(std::array{1});
    StudySettings settings;
};

TEST_F(TestFaults, AGenerationWithAFaultChangesNothingAndSucceedsTheSecondTime)
{
    const std::vector<StoredCard> old = inFile();
    std::vector<StoredCard> generated;
    int failures = 0;
    bool isDue = true;
    for (int statement = 1; isDue; ++statement) {
        SCOPED_TRACE("statement " + std::to_string(statement));
        restore();
        FaultyEngine engine;
        SubjectStore store(subject);
        CardSet cards = store.openRecordSet(cardsInOrder(query));
        cards.setAbsolutePosition(current);
        std::optional<CardSet> test;
        const auto generate = [&] { test = generateTest(store, cards, query, 60, drawSeededBy(4)); };

        engine.failAt(statement);
        const bool failed = fails(generate);
        isDue = engine.hasFailed();
        EXPECT_EQ(failed, isDue);
        if (failed) {
            ++failures;
            EXPECT_FALSE(test);
            EXPECT_EQ(inFile(), old);
            EXPECT_EQ(cards.absolutePosition(), current);
            EXPECT_EQ(cards.number(CardField::Index), current + 1);
            EXPECT_THROW(cards.update(), StoreError) << "no edit is left behind";
            EXPECT_FALSE(std::filesystem::exists(subject.string() + "-journal"));
            generate();
        }
        ASSERT_TRUE(test);
        EXPECT_EQ(test->absolutePosition(), 0);
        EXPECT_NE(inFile(), old);
        EXPECT_TRUE(generated.empty() || inFile() == generated);
        generated = inFile();
    }
    EXPECT_EQ(failures, 2 * cardCount + 3); // begin, select, commit
}

TEST_F(TestFaults, ASessionThatDoesNotBeginLeavesTheFileAsItWasOrAWholeTestAndBeginsTheSecondTime)
{
    const std::vector<StoredCard> old = inFile();
    const auto open = [&] { return TestSession(subject, settings, drawSeededBy(4)); };
    (void)open();
    const std::vector<StoredCard> generated = inFile();
    int failuresBefore = 0;
    int failuresAfter = 0;
    bool isDue = true;
    for (int statement = 1; isDue; ++statement) {
        SCOPED_TRACE("statement " + std::to_string(statement));
        restore();
        FaultyEngine engine;
        engine.failAt(statement);
        const bool failed = fails([&] { (void)open(); });
        isDue = engine.hasFailed();
        EXPECT_EQ(failed, isDue);
        if (failed) {
            const bool isBefore = inFile() == old;
            EXPECT_TRUE(isBefore || inFile() == generated);
            EXPECT_TRUE(!isBefore || failuresAfter == 0) << "all or nothing";
            ++(isBefore ? failuresBefore : failuresAfter);
        }
        EXPECT_FALSE(std::filesystem::exists(subject.string() + "-journal"));
        EXPECT_EQ(open().questionCount(), 5);
        EXPECT_EQ(inFile(), generated);
    }
    EXPECT_GT(failuresBefore, 2 * cardCount + 3);
    EXPECT_EQ(failuresAfter, settings.questionCount) << "the reading of the right answers";
}

TEST_F(TestFaults, MarkingWithAFaultMarksNoneAndSucceedsTheSecondTime)
{
    (void)TestSession(subject, settings, drawSeededBy(4));
    std::filesystem::copy_file(subject, before, std::filesystem::copy_options::overwrite_existing);
    const std::string old = marks();
    const std::vector<int> wrong{0, 1, 3, 4};
    std::string marked;
    int failures = 0;
    bool isDue = true;
    for (int statement = 1; isDue; ++statement) {
        SCOPED_TRACE("statement " + std::to_string(statement));
        restore();
        FaultyEngine engine;
        TestSession session(subject, settings, drawSeededBy(4));
        session.goTo(current);
        const std::string text = session.shown(false).text;

        engine.failAt(statement);
        const bool failed = fails([&] { session.markCards(wrong); });
        isDue = engine.hasFailed();
        EXPECT_EQ(failed, isDue);
        if (failed) {
            ++failures;
            EXPECT_EQ(marks(), old);
            EXPECT_EQ(session.current(), current);
            EXPECT_EQ(session.shown(false).text, text);
            session.markCards(wrong);
        }
        EXPECT_NE(marks(), old);
        EXPECT_TRUE(marked.empty() || marks() == marked);
        marked = marks();
        EXPECT_EQ(session.current(), current);
    }
    EXPECT_EQ(failures, static_cast<int>(wrong.size()) + 2); // begin, commit
}

TEST_F(TestFaults, AQuestionShownWithAFaultStaysCurrentAndIsShownTheSecondTime)
{
    int failures = 0;
    bool isDue = true;
    for (int statement = 1; isDue; ++statement) {
        SCOPED_TRACE("statement " + std::to_string(statement));
        FaultyEngine engine;
        TestSession session(subject, settings, drawSeededBy(4));
        session.goTo(current);
        const ShownQuestion expected = session.shown(true);
        session.goTo(current);

        engine.failAt(statement);
        const bool failed = fails([&] { (void)session.shown(true); });
        isDue = engine.hasFailed();
        EXPECT_EQ(failed, isDue) << "a text that cannot be read is no empty one";
        failures += failed ? 1 : 0;
        EXPECT_EQ(session.current(), current);
        const ShownQuestion again = session.shown(true);
        EXPECT_EQ(again.text, expected.text);
        EXPECT_EQ(again.choices, expected.choices);
        EXPECT_EQ(session.current(), current);
    }
    EXPECT_GE(failures, 3); // the card, and those of the wrong choices
}

} // namespace
