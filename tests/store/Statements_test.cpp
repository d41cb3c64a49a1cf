#include "StoreTest.h"
#include "store/Statements.h"

#include <array>
#include <cctype>

namespace {

TEST(Statements, HaveTheirExactTexts)
{
    EXPECT_EQ(allTopics(), "SELECT * FROM Topics;");
    EXPECT_EQ(topicByKey(12), "SELECT * FROM Topics WHERE Index = 12;");
    EXPECT_EQ(cardsOfTopic(12), "SELECT * FROM FlashCards WHERE NIndex = 12;");
    EXPECT_EQ(deleteTopicRow(12), "DELETE * FROM Topics Where Index = 12;");
    EXPECT_EQ(deleteTopicCards(12), "DELETE * FROM FlashCards Where NIndex = 12;");
    EXPECT_EQ(markedCardQuery(), "Select * FROM Flashcards WHERE Marked = Yes");
}

TEST(Statements, ACardQueryOfOneTopicHasNoEnding)
{
    EXPECT_EQ(cardQuery(std::array{3}), "SELECT * FROM Flashcards WHERE NIndex = 3");
}

TEST(Statements, ACardQueryOfSeveralTopicsKeepsTheirOrder)
{
    EXPECT_EQ(cardQuery(std::array{3, 7}), "SELECT * FROM Flashcards WHERE NIndex = 3 OR NIndex = 7");
    EXPECT_EQ(cardQuery(std::array{12, 3, 7}),
              "SELECT * FROM Flashcards WHERE NIndex = 12 OR NIndex = 3 OR NIndex = 7");
}

TEST(Statements, MarkedCardsJoinAQueryAfterOneBlank)
{
    EXPECT_EQ(withMarkedCards(cardQuery(std::array{3, 7})),
              "SELECT * FROM Flashcards WHERE NIndex = 3 OR NIndex = 7 OR Marked = Yes");
}

TEST(Statements, TheThreeEndingsFinishAQuery)
{
    const std::string query = cardQuery(std::array{5});
    EXPECT_EQ(cardQueryCheck(query), query + ";");
    EXPECT_EQ(cardsInOrder(query), query + " ORDER BY Index ASC;");
    EXPECT_EQ(cardsShuffled(query), query + " ORDER BY Shuffle ASC;");
}

TEST(Statements, NumbersArePlainDecimals)
{
    EXPECT_EQ(topicByKey(2147483647), "SELECT * FROM Topics WHERE Index = 2147483647;");
    EXPECT_EQ(cardsOfTopic(-1), "SELECT * FROM FlashCards WHERE NIndex = -1;");
}

class RunningStatements : public StoreTest
{
protected:
    enum class Case { AsWritten, Upper, Lower };

    static std::string inCase(std::string text, Case letters)
    {
        for (char &c : text) {
            const auto letter = static_cast<unsigned char>(c);
            if (letters == Case::Upper) {
                c = static_cast<char>(std::toupper(letter));
            }
            if (letters == Case::Lower) {
                c = static_cast<char>(std::tolower(letter));
            }
        }
        return text;
    }

    // Topics 1, 2, 3 with 1, 2, 3 cards; of each topic the last card is marked.
    // The higher its key, the lower a card's shuffle value.
    void createSubject() const
    {
        SubjectStore::create(path);
        SQLite::Database raw = otherProgram();
        for (int topic = 1, key = 1; topic <= 3; ++topic) {
            raw.exec("INSERT INTO Topics (Name) VALUES ('Topic')");
            for (int card = 1; card <= topic; ++card, ++key) {
                raw.exec("INSERT INTO FlashCards (NIndex, Marked, Shuffle) VALUES (" + std::to_string(topic) + ", " +
                         std::to_string(card == topic) + ", 1.0 / " + std::to_string(key) + ")");
            }
        }
    }

    [[nodiscard]] std::vector<int> keysOf(const std::string &statement) const
    {
        SubjectStore store(path);
        RecordSet set = store.openRecordSet(statement);
        std::vector<int> keys;
        for (; !set.isEndOfSet(); set.moveNext()) {
            keys.push_back(set.number("Index"));
        }
        return keys;
    }
};

TEST_F(RunningStatements, EverySelectionRunsInAnyLetterCase)
{
    createSubject();
    const std::string two = cardQuery(std::array{3, 1});
    for (const Case letters : {Case::AsWritten, Case::Upper, Case::Lower}) {
        EXPECT_EQ(keysOf(inCase(allTopics(), letters)), (std::vector{1, 2, 3}));
        EXPECT_EQ(keysOf(inCase(topicByKey(2), letters)), (std::vector{2}));
        EXPECT_EQ(keysOf(inCase(cardsOfTopic(3), letters)), (std::vector{4, 5, 6}));
        EXPECT_EQ(keysOf(inCase(cardsOfTopic(4), letters)), std::vector<int>());
        EXPECT_EQ(keysOf(inCase(cardQueryCheck(two), letters)), (std::vector{1, 4, 5, 6}));
        EXPECT_EQ(keysOf(inCase(cardQueryCheck(markedCardQuery()), letters)), (std::vector{1, 3, 6}));
        EXPECT_EQ(keysOf(inCase(cardQueryCheck(withMarkedCards(cardQuery(std::array{2}))), letters)),
                  (std::vector{1, 2, 3, 6}));
        EXPECT_EQ(keysOf(inCase(cardsInOrder(two), letters)), (std::vector{1, 4, 5, 6}));
        EXPECT_EQ(keysOf(inCase(cardsShuffled(two), letters)), (std::vector{6, 5, 4, 1}));
    }
}

TEST_F(RunningStatements, BothDeletionsRunInAnyLetterCase)
{
    for (const Case letters : {Case::AsWritten, Case::Upper, Case::Lower}) {
        createSubject();
        SubjectStore store(path);
        EXPECT_EQ(store.execute(inCase(deleteTopicRow(2), letters)), 1);
        EXPECT_EQ(store.execute(inCase(deleteTopicCards(2), letters)), 2);
        EXPECT_EQ(store.execute(inCase(deleteTopicCards(2), letters)), 0);
        store.close();
        EXPECT_EQ(keysOf(allTopics()), (std::vector{1, 3}));
        EXPECT_EQ(askOther("SELECT group_concat(\"Index\") FROM FlashCards"), "1,4,5,6");
    }
}

TEST_F(RunningStatements, ACardQueryOfNoTopicDoesNotRun)
{
    createSubject();
    SubjectStore store(path);
    EXPECT_STORE_ERROR(Engine, store.openRecordSet(cardQueryCheck(cardQuery({}))));
    EXPECT_STORE_ERROR(Engine, store.openRecordSet(cardsInOrder(cardQuery({}))));
    EXPECT_STORE_ERROR(Engine, store.openRecordSet(cardQueryCheck(withMarkedCards(cardQuery({})))));
}

} // namespace
