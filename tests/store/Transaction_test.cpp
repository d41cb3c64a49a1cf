#include "StoreTest.h"

#include <csignal>
#include <sqlite3.h>

namespace {

class TransactionTest : public StoreTest
{
protected:
    void openCards(int count)
    {
        createCards(count);
        store.emplace(path);
        cards.emplace(store->openRecordSet(cardsOfTopic(1)));
    }

    void markAll()
    {
        for (cards->moveFirst(); !cards->isEndOfSet(); cards->moveNext()) {
            cards->edit();
            cards->setFlag("Marked", true);
            cards->update();
        }
    }

    [[nodiscard]] int markedInFile() const { return std::stoi(askOther("SELECT sum(Marked) FROM FlashCards")); }

    std::optional<SubjectStore> store;
    std::optional<RecordSet> cards;
};

TEST_F(TransactionTest, IsWholeAfterCommit)
{
    openCards(5);
    Transaction transaction(*store);
    markAll();
    transaction.commit();
    EXPECT_EQ(markedInFile(), 5);
}

TEST_F(TransactionTest, ShowsNothingToOthersBeforeCommit)
{
    openCards(5);
    Transaction transaction(*store);
    markAll();
    EXPECT_EQ(markedInFile(), 0);
    transaction.commit();
}

TEST_F(TransactionTest, IsUndoneWithoutCommit)
{
    openCards(5);
    {
        const Transaction transaction(*store);
        markAll();
        cards->moveFirst();
        EXPECT_TRUE(cards->flag("Marked"));
    }
    EXPECT_EQ(markedInFile(), 0);
    EXPECT_FALSE(cards->flag("Marked"));
}

TEST_F(TransactionTest, IsUndoneByAnException)
{
    openCards(5);
    EXPECT_THROW(
        {
            const Transaction transaction(*store);
            markAll();
            throw std::runtime_error("in the middle");
        },
        std::runtime_error);
    EXPECT_EQ(markedInFile(), 0);
}

TEST_F(TransactionTest, TakesSeveralSetsAndStatements)
{
    openCards(3);
    RecordSet topics = store->openRecordSet(allTopics());
    Transaction transaction(*store);
    topics.addNew();
    topics.setText("Name", "Birds");
    topics.update();
    cards->remove();
    EXPECT_EQ(store->execute("DELETE * FROM FlashCards Where Index = 2;"), 1);
    transaction.commit();
    EXPECT_EQ(askOther("SELECT count(*) FROM Topics"), "1");
    EXPECT_EQ(askOther("SELECT count(*) FROM FlashCards"), "1");
}

TEST_F(TransactionTest, LeavesTheRowsThatItAddedGoneWhenItIsUndone)
{
    openCards(1);
    {
        const Transaction transaction(*store);
        cards->addNew();
        cards->setText("Front", "new");
        cards->update();
        cards->setBookmark(cards->lastModified());
        EXPECT_EQ(cards->text("Front"), "new");
    }
    EXPECT_EQ(cards->recordCount(), 2);
    EXPECT_STORE_ERROR(RowGone, cards->text("Front"));
}

TEST_F(TransactionTest, KeepsASecondOneOutUntilItIsOver)
{
    openCards(1);
    {
        Transaction transaction(*store);
        EXPECT_STORE_ERROR(NotNow, Transaction(*store));
        markAll();
        transaction.commit();
    }
    EXPECT_EQ(markedInFile(), 1);
    Transaction(*store).commit();
    {
        const Transaction undone(*store);
    }
    Transaction(*store).commit();
}

TEST_F(TransactionTest, CommitsOnce)
{
    openCards(1);
    Transaction transaction(*store);
    transaction.commit();
    EXPECT_STORE_ERROR(NotNow, transaction.commit());
}

TEST_F(TransactionTest, IsRefusedWhileTheFileIsLocked)
{
    openCards(1);
    SQLite::Database other = otherProgram();
    other.exec("BEGIN IMMEDIATE");
    EXPECT_STORE_ERROR(Locked, Transaction(*store));
    other.exec("COMMIT");
    Transaction(*store).commit();
}

TEST_F(TransactionTest, CanCommitAgainAfterAReaderHeldItUp)
{
    openCards(3);
    SQLite::Database reader = otherProgram();
    reader.exec("BEGIN");
    static_cast<void>(reader.execAndGet("SELECT count(*) FROM Topics"));
    Transaction transaction(*store);
    markAll();
    EXPECT_STORE_ERROR(Locked, transaction.commit());
    reader.exec("COMMIT");
    transaction.commit();
    EXPECT_EQ(markedInFile(), 3);
}

TEST_F(TransactionTest, IsUndoneWhenItsCommitFails)
{
    openCards(3);
    SQLite::Database reader = otherProgram();
    reader.exec("BEGIN");
    static_cast<void>(reader.execAndGet("SELECT count(*) FROM Topics"));
    {
        Transaction transaction(*store);
        markAll();
        EXPECT_STORE_ERROR(Locked, transaction.commit());
    }
    reader.exec("COMMIT");
    EXPECT_EQ(markedInFile(), 0);
    markAll();
    EXPECT_EQ(markedInFile(), 3);
}

TEST_F(TransactionTest, SurvivesTheClosingOfItsStore)
{
    openCards(2);
    {
        Transaction transaction(*store);
        markAll();
        store->close();
        EXPECT_STORE_ERROR(NotNow, transaction.commit());
    }
    EXPECT_EQ(markedInFile(), 0);
    EXPECT_EQ(filesInFolder(), std::vector<std::string>{"Subject.crl"});
}

// A trigger stands in for a failing disk: it makes the engine end the transaction by itself.
TEST_F(TransactionTest, WritesNothingMoreOnceTheEngineUndidIt)
{
    createCards(3);
    otherProgram().exec("CREATE TRIGGER Fail BEFORE UPDATE OF Marked ON FlashCards WHEN old.Front = 'B' "
                        "BEGIN SELECT raise(ROLLBACK, 'the disk failed'); END");
    store.emplace(path);
    cards.emplace(store->openRecordSet(cardsOfTopic(1)));
    {
        Transaction transaction(*store);
        EXPECT_STORE_ERROR(Refused, markAll());
        cards->moveLast();
        cards->edit();
        cards->setFlag("Marked", true);
        EXPECT_STORE_ERROR(NotNow, cards->update());
        EXPECT_STORE_ERROR(NotNow, cards->remove());
        EXPECT_STORE_ERROR(NotNow, store->execute(deleteTopicCards(1)));
        cards->addNew();
        EXPECT_STORE_ERROR(NotNow, cards->update());
        EXPECT_STORE_ERROR(NotNow, transaction.commit());
        cards->moveFirst();
        EXPECT_FALSE(cards->flag("Marked"));
    }
    EXPECT_EQ(markedInFile(), 0);
    EXPECT_EQ(askOther("SELECT count(*) FROM FlashCards"), "3");
    cards->edit();
    cards->setFlag("Marked", true);
    cards->update();
    EXPECT_EQ(markedInFile(), 1);
}

// Large enough for the engine to write pages into the file before the commit.
TEST_F(TransactionTest, IsUndoneByTheNextOpeningWhenTheProgramIsKilled)
{
    openCards(1);
    store.reset();
    otherProgram().exec("WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 9999) "
                        "INSERT INTO FlashCards (NIndex, Front) SELECT 1, hex(zeroblob(300)) FROM n");
    const ::pid_t child = ::fork();
    if (child == 0) {
        store.emplace(path);
        cards.emplace(store->openRecordSet(cardsOfTopic(1)));
        const Transaction transaction(*store);
        markAll();
        ::raise(SIGKILL);
    }
    int status = 0;
    ::waitpid(child, &status, 0);
    ASSERT_TRUE(WIFSIGNALED(status));
    EXPECT_EQ(filesInFolder(), (std::vector<std::string>{"Subject.crl", "Subject.crl-journal"}));

    store.emplace(path);
    EXPECT_EQ(store->openRecordSet(cardsOfTopic(1)).recordCount(), 10000);
    EXPECT_EQ(store->openRecordSet(cardQueryCheck(markedCardQuery())).recordCount(), 0);
    store.reset();
    EXPECT_EQ(filesInFolder(), std::vector<std::string>{"Subject.crl"});
    EXPECT_EQ(askOther("PRAGMA integrity_check"), "ok");
}

} // namespace
