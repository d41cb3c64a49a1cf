#include "store/WorkSignal.h"
#include "tests/support/TestSubject.h"

#include <SQLiteCpp/Database.h>
#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace {

/// Notes every state that the observer is told.
class WorkSignal : public testing::Test
{
protected:
    WorkSignal()
    {
        observeWork([this](const WorkState &work) { seen.push_back(work); });
    }
    ~WorkSignal() override { observeWork({}); }

    TestFolder folder;
    const std::filesystem::path subject = folder.file("Subject.crl");
    std::vector<WorkState> seen;
};

TEST_F(WorkSignal, AnObserverHearsNothingOfShortWork)
{
    SubjectStore::create(subject);
    const int topic = addTopic(subject, "Topic");
    SubjectStore store(subject);
    EXPECT_EQ(store.openRecordSet(cardsOfTopic(topic)).recordCount(), 0);
    EXPECT_TRUE(seen.empty());
}

TEST_F(WorkSignal, SelectingManyRowsSignalsOnTheWay)
{
    SubjectStore::create(subject);
    addCards(subject, addTopic(subject, "Topic"), 5000);
    seen.clear();
    SubjectStore store(subject);
    EXPECT_EQ(store.openRecordSet(cardsOfTopic(1)).recordCount(), 5000);
    ASSERT_FALSE(seen.empty());
    EXPECT_TRUE(seen.back().what.empty());
    EXPECT_EQ(seen.back().total, 0);
    EXPECT_FALSE(seen.back().willTakeLong);
}

TEST_F(WorkSignal, ManyShortStatementsSignalTogether)
{
    SubjectStore::create(subject);
    addCards(subject, addTopic(subject, "Topic"), 600);
    seen.clear();
    SubjectStore store(subject);
    CardSet cards = store.openRecordSet(cardsOfTopic(1));
    Transaction pass(store);
    for (; !cards.isEndOfSet(); cards.moveNext()) {
        cards.edit();
        cards.setFlag(CardField::Marked, true);
        cards.update();
    }
    pass.commit();
    EXPECT_FALSE(seen.empty());
}

TEST_F(WorkSignal, DeletingManyRowsSignalsOnTheWay)
{
    SubjectStore::create(subject);
    addCards(subject, addTopic(subject, "Topic"), 5000);
    seen.clear();
    EXPECT_EQ(SubjectStore(subject).execute(deleteTopicCards(1)), 5000);
    EXPECT_FALSE(seen.empty());
}

TEST_F(WorkSignal, SignalsCarryThePassAndItsSteps)
{
    WorkPass pass("Counting...", 3);
    pass.step();
    pass.step();
    signalWork();
    ASSERT_EQ(seen.size(), 1U);
    EXPECT_EQ(seen.back().what, "Counting...");
    EXPECT_EQ(seen.back().done, 2);
    EXPECT_EQ(seen.back().total, 3);
}

TEST_F(WorkSignal, APassWithinAPassIsTheOneToldUntilItEnds)
{
    const WorkPass outer("Outer", 1);
    {
        const WorkPass inner("Inner", 2);
        signalWork();
        EXPECT_EQ(seen.back().what, "Inner");
    }
    signalWork();
    EXPECT_EQ(seen.back().what, "Outer");
}

TEST_F(WorkSignal, AfterAPassNobodyKnowsWhatTheWorkIs)
{
    {
        const WorkPass pass("Counting...", 3);
    }
    signalWork();
    EXPECT_TRUE(seen.back().what.empty());
}

TEST_F(WorkSignal, WithoutAnObserverNothingIsTold)
{
    observeWork({});
    signalWork();
    signalLongWork("Long");
    EXPECT_TRUE(seen.empty());
}

/// A subject with \p bytes of notes, whose writer was killed between writing them anew and its commit.
void leaveHotJournal(const std::filesystem::path &subject, int bytes)
{
    const std::filesystem::path original = subject.string() + ".original";
    SubjectStore::create(original);
    addTopic(original, "Topic", std::string(static_cast<std::size_t>(bytes), 'a'));
    SQLite::Database writer(original.string(), SQLite::OPEN_READWRITE);
    writer.exec("PRAGMA cache_size = 200");  // so that it writes to the file before its commit
    writer.exec("PRAGMA synchronous = OFF"); // nobody pulls the plug here
    writer.exec("BEGIN IMMEDIATE");
    writer.exec("UPDATE Topics SET Notes = replace(Notes, 'a', 'b')");
    std::filesystem::copy_file(original, subject);
    std::filesystem::copy_file(original.string() + "-journal", subject.string() + "-journal");
    writer.exec("ROLLBACK");
}

TEST_F(WorkSignal, UndoingALargeInterruptedChangeIsAnnounced)
{
    leaveHotJournal(subject, 65 << 20);
    seen.clear();
    SubjectStore store(subject);
    ASSERT_FALSE(seen.empty());
    EXPECT_TRUE(seen.front().willTakeLong);
    EXPECT_EQ(seen.front().what, "Undoing an interrupted change of the subject...");
    EXPECT_EQ(store.openRecordSet(allTopics()).text(TopicField::Notes).front(), 'a');
}

TEST_F(WorkSignal, UndoingASmallInterruptedChangeIsNot)
{
    leaveHotJournal(subject, 1 << 20);
    seen.clear();
    const SubjectStore store(subject);
    for (const WorkState &work : seen) {
        EXPECT_FALSE(work.willTakeLong);
    }
}

} // namespace
