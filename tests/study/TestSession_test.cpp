#include "NoDiskWaits.h"
#include "StoredTest.h"
#include "store/StoreError.h"
#include "study/TestSession.h"
#include "tests/support/TestSubject.h"

#include <SQLiteCpp/Database.h>
#include <SQLiteCpp/Statement.h>
#include <array>
#include <gtest/gtest.h>
#include <numeric>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

using Reason = StoreError::Reason;

/// A topic of 60 cards.
class TestSessionTest : public testing::Test
{
protected:
    TestSessionTest()
    {
        SubjectStore::create(subject);
        addCards(subject, addTopic(subject, "Topic"), 60);
        settings.cardQuery = cardQuery(std::array{1});
        settings.style = StudyStyle::Test;
    }

    [[nodiscard]] TestSession open(unsigned seed = 1) const { return {subject, settings, drawSeededBy(seed)}; }

    void keepCards(int count) const
    {
        otherProgram().exec("DELETE FROM FlashCards WHERE \"Index\" > " + std::to_string(count));
    }

    [[nodiscard]] SQLite::Database otherProgram() const { return {subject.string(), SQLite::OPEN_READWRITE}; }
    /// Gives \p field of the cards in the order of the test.
    [[nodiscard]] std::vector<std::string> inOrder(const std::string &field) const
    {
        const SQLite::Database other = otherProgram();
        SQLite::Statement select(other, "SELECT " + field + " FROM FlashCards ORDER BY Shuffle, \"Index\"");
        std::vector<std::string> values;
        while (select.executeStep()) {
            values.push_back(select.getColumn(0));
        }
        return values;
    }
    /// The positions of the marked cards in the order of the test.
    [[nodiscard]] std::vector<int> markedInOrder() const
    {
        std::vector<int> marked;
        int position = 0;
        for (const std::string &mark : inOrder("Marked")) {
            if (mark != "0") {
                marked.push_back(position);
            }
            ++position;
        }
        return marked;
    }

    void deleteCardAt(int position) const
    {
        otherProgram().exec("DELETE FROM FlashCards WHERE \"Index\" = " +
                            inOrder("\"Index\"").at(static_cast<std::size_t>(position)));
    }

    static void mark(TestSession &session, const std::vector<int> &questions) { session.markCards(questions); }
    static Reason failureOfMarking(TestSession &session, const std::vector<int> &questions)
    {
        try {
            session.markCards(questions);
            ADD_FAILURE() << "the cards were marked";
            return {};
        } catch (const StoreError &failure) {
            return failure.reason();
        }
    }

    TestFolder folder;
    std::filesystem::path subject = folder.file("subject.crl");
    StudySettings settings;
};

TEST_F(TestSessionTest, AsksAsManyQuestionsAsTheSettingsSayButNoMoreThanThereAreCards)
{
    struct Case
    {
        int cards;
        std::int16_t asked;
        int questions;
    };
    for (const Case &expected : {Case{60, 20, 20}, Case{60, 50, 50}, Case{60, 5, 5}, Case{50, 50, 50}, Case{49, 50, 49},
                                 Case{6, 5, 5}, Case{5, 5, 5}, Case{5, 20, 5}}) {
        keepCards(expected.cards);
        settings.questionCount = expected.asked;
        const TestSession session = open();
        EXPECT_EQ(session.questionCount(), expected.questions) << expected.asked << " of " << expected.cards;
        EXPECT_EQ(session.current(), 0);
    }
}

TEST_F(TestSessionTest, HasTheRightAnswersOfTheFirstCardsInTheNewOrder)
{
    settings.questionCount = 50;
    const TestSession session = open();
    const std::vector<std::string> answers = inOrder("Answer");
    for (int question = 0; question < 50; ++question) {
        EXPECT_EQ(std::to_string(session.correctAnswer(question)), answers.at(static_cast<std::size_t>(question)));
    }
    EXPECT_THROW((void)session.correctAnswer(50), std::out_of_range);
    EXPECT_THROW((void)session.correctAnswer(-1), std::out_of_range);
}

TEST_F(TestSessionTest, ShowsEveryQuestionWithTheTextsThatItsFieldsName)
{
    settings.questionCount = 50;
    TestSession session = open(3);
    const std::vector<std::string> fronts = inOrder("Front");
    const std::vector<std::string> backs = inOrder("Back");
    const std::vector<StoredCard> stored = storedCards(otherProgram());
    const std::vector<std::string> keys = inOrder("\"Index\"");
    int statements = 0;
    int asksFront = 0;
    for (int question = 0; question < 50; ++question) {
        SCOPED_TRACE(question);
        const auto at = static_cast<std::size_t>(question);
        const TestQuestion &fields = stored.at(std::stoul(keys.at(at)) - 1).question;
        const bool isStatement = fields.type == QuestionType::TrueOrFalse;
        const bool isFront = fields.asked == Side::Front;
        statements += isStatement ? 1 : 0;
        asksFront += isFront ? 1 : 0;

        session.goTo(question);
        const ShownQuestion shown = session.shown(false);
        EXPECT_EQ(session.current(), question);
        EXPECT_EQ(shown.type, fields.type);
        EXPECT_EQ(shown.text, (isFront ? fronts : backs).at(at));
        const std::vector<std::string> &answers = isFront ? backs : fronts;
        std::vector<std::string> choices{answers.at(static_cast<std::size_t>(fields.wrong1)),
                                         answers.at(static_cast<std::size_t>(fields.wrong2))};
        choices.insert(choices.begin() + fields.answer - 1, answers.at(at));
        EXPECT_EQ(std::vector(shown.choices.begin(), shown.choices.end()), choices);
        EXPECT_EQ(shown.choices.at(static_cast<std::size_t>(session.correctAnswer(question)) - 1), answers.at(at));
        EXPECT_EQ(shown.isShown, (std::array{true, !isStatement, !isStatement}));
        EXPECT_EQ(session.shown(true).isShown, (std::array{true, !isStatement || fields.answer == 2, !isStatement}));
    }
    EXPECT_TRUE(statements > 0 && statements < 50);
    EXPECT_TRUE(asksFront > 0 && asksFront < 50);
}

TEST_F(TestSessionTest, GeneratesTheCardsBeyondTheLastQuestionToo)
{
    otherProgram().exec("UPDATE FlashCards SET Answer = 9, Wrong1 = 99, Wrong2 = 99, Shuffle = 2");
    settings.questionCount = 5;
    const TestSession session = open();
    EXPECT_EQ(session.questionCount(), 5);
    EXPECT_EQ(otherProgram()
                  .execAndGet("SELECT count(*) FROM FlashCards WHERE Answer BETWEEN 1 AND 3 AND Wrong1 BETWEEN 0 AND "
                              "58 AND Wrong2 BETWEEN 0 AND 58 AND Shuffle < 1")
                  .getInt(),
              60);
    EXPECT_GT(otherProgram().execAndGet("SELECT max(Wrong1) FROM FlashCards").getInt(), 4) << "of all cards";
}

TEST_F(TestSessionTest, UsesTheShareOfMultipleChoiceThatTheSettingsSay)
{
    for (const std::int16_t percent : {std::int16_t{0}, std::int16_t{100}}) {
        settings.multipleChoicePercent = percent;
        TestSession session = open();
        for (int question = 0; question < session.questionCount(); ++question) {
            session.goTo(question);
            EXPECT_EQ(session.shown(false).type,
                      percent == 0 ? QuestionType::TrueOrFalse : QuestionType::MultipleChoice);
        }
    }
}

TEST_F(TestSessionTest, DiffersFromTheNextOneIfItsNumbersDo)
{
    std::vector<std::vector<std::string>> orders;
    std::vector<std::vector<std::string>> questions;
    for (const unsigned seed : {1U, 2U, 1U}) {
        (void)open(seed);
        orders.push_back(inOrder("\"Index\""));
        questions.push_back(inOrder("isTrueFalse || isFront || Answer || ' ' || Wrong1 || ' ' || Wrong2"));
    }
    EXPECT_NE(orders[0], orders[1]);
    EXPECT_NE(questions[0], questions[1]);
    EXPECT_EQ(orders[0], orders[2]) << "the numbers alone decide";
    EXPECT_EQ(questions[0], questions[2]);
}

TEST_F(TestSessionTest, GoesToAnyQuestionAndNoFurtherThanTheCards)
{
    settings.questionCount = 20;
    TestSession session = open();
    for (const int question : {19, 0, 7, 7, 1}) {
        session.goTo(question);
        EXPECT_EQ(session.current(), question);
    }
    EXPECT_THROW(session.goTo(60), StoreError);
    EXPECT_THROW(session.goTo(-1), StoreError);
    EXPECT_EQ(session.current(), 1);
}

TEST_F(TestSessionTest, MarksExactlyTheCardsOfTheQuestionsNamed)
{
    TestSession session = open();
    session.goTo(4);
    mark(session, {0, 3, 4, 19});
    EXPECT_EQ(markedInOrder(), (std::vector{0, 3, 4, 19}));
    EXPECT_EQ(session.current(), 4);
}

TEST_F(TestSessionTest, MarksNothingIfNoQuestionIsNamed)
{
    TestSession session = open();
    mark(session, {});
    EXPECT_EQ(markedInOrder(), std::vector<int>());
}

TEST_F(TestSessionTest, MarksEveryQuestionAndNoCardThatWasNotAsked)
{
    TestSession session = open();
    std::vector<int> all(20);
    std::iota(all.begin(), all.end(), 0);
    mark(session, all);
    EXPECT_EQ(markedInOrder(), all);
}

TEST_F(TestSessionTest, NeverClearsAMark)
{
    TestSession session = open();
    otherProgram().exec("UPDATE FlashCards SET Marked = 1 WHERE \"Index\" IN (" + inOrder("\"Index\"").at(2) + ", " +
                        inOrder("\"Index\"").at(5) + ", " + inOrder("\"Index\"").at(40) + ")");
    mark(session, {1, 2});
    mark(session, {1});
    EXPECT_EQ(markedInOrder(), (std::vector{1, 2, 5, 40}));
}

TEST_F(TestSessionTest, MarkingChangesNothingButTheMarks)
{
    TestSession session = open();
    const std::string others = "NIndex || Front || Back || Shuffle || isTrueFalse || isFront || Answer || ' ' || "
                               "Wrong1 || ' ' || Wrong2";
    const std::vector<std::string> before = inOrder(others);
    mark(session, {0, 1, 2});
    EXPECT_EQ(inOrder(others), before);
}

TEST_F(TestSessionTest, MarkedCardsAreTheNextStudyOfTheMarkedOnes)
{
    {
        TestSession session = open();
        mark(session, {1, 2, 3, 4, 5, 6});
    }
    settings.cardQuery = markedCardQuery();
    EXPECT_EQ(open().questionCount(), 6);
}

TEST_F(TestSessionTest, MarksAllInOneChangeThatOthersSeeAtOnce)
{
    otherProgram().exec("CREATE TABLE Seen (card); CREATE TRIGGER Watch AFTER UPDATE OF Marked ON FlashCards BEGIN "
                        "INSERT INTO Seen VALUES (new.\"Index\"); END");
    TestSession session = open();
    SQLite::Database other = otherProgram();
    const int version = other.execAndGet("PRAGMA data_version").getInt();
    mark(session, {0, 1, 2, 3});
    EXPECT_EQ(other.execAndGet("SELECT count(*) FROM Seen").getInt(), 4);
    EXPECT_EQ(other.execAndGet("PRAGMA data_version").getInt(), version + 1);
}

TEST_F(TestSessionTest, InALockedFileMarksNoneAndMarksAllWhenTheLockIsGone)
{
    TestSession session = open();
    session.goTo(7);
    {
        SQLite::Database other = otherProgram();
        other.exec("BEGIN IMMEDIATE");
        EXPECT_EQ(failureOfMarking(session, {0, 5, 9}), Reason::Locked);
        EXPECT_EQ(session.current(), 7);
    }
    {
        SQLite::Database reader = otherProgram();
        reader.exec("BEGIN");
        static_cast<void>(reader.execAndGet("SELECT count(*) FROM Topics"));
        EXPECT_EQ(failureOfMarking(session, {0, 5, 9}), Reason::Locked);
        EXPECT_EQ(session.current(), 7);
    }
    EXPECT_EQ(markedInOrder(), std::vector<int>());
    mark(session, {0, 5, 9});
    EXPECT_EQ(markedInOrder(), (std::vector{0, 5, 9}));
    EXPECT_EQ(session.current(), 7);
}

TEST_F(TestSessionTest, AFailureBetweenTwoCardsMarksNone)
{
    TestSession session = open();
    session.goTo(1);
    otherProgram().exec("CREATE TRIGGER Fail BEFORE UPDATE OF Marked ON FlashCards WHEN old.\"Index\" = " +
                        inOrder("\"Index\"").at(5) + " BEGIN SELECT raise(ABORT, 'no'); END");
    EXPECT_EQ(failureOfMarking(session, {0, 3, 5, 9}), Reason::Refused);
    EXPECT_EQ(markedInOrder(), std::vector<int>());
    EXPECT_EQ(session.current(), 1);
    EXPECT_THROW(mark(session, {0, 60}), StoreError);
    EXPECT_EQ(markedInOrder(), std::vector<int>());
    EXPECT_EQ(session.current(), 1);
    otherProgram().exec("DROP TRIGGER Fail");
    mark(session, {0, 3, 5, 9});
    EXPECT_EQ(markedInOrder(), (std::vector{0, 3, 5, 9}));
}

TEST_F(TestSessionTest, PassesOverACardDeletedMeanwhileWhenItMarks)
{
    TestSession session = open();
    session.goTo(3);
    deleteCardAt(3);
    mark(session, {2, 3, 4});
    EXPECT_EQ(markedInOrder(), (std::vector{2, 3})) << "the places of the two others without it";
    EXPECT_EQ(session.current(), 3);
    mark(session, {3});
    EXPECT_EQ(markedInOrder(), (std::vector{2, 3}));
}

TEST_F(TestSessionTest, OfADeletedCardShowsAnErrorAndGoesOnFromThere)
{
    TestSession session = open();
    const std::string next = inOrder("Front").at(4);
    const std::string nextBack = inOrder("Back").at(4);
    deleteCardAt(3);
    session.goTo(3);
    try {
        (void)session.shown(false);
        FAIL() << "a deleted card was shown";
    } catch (const StoreError &failure) {
        EXPECT_EQ(failure.reason(), Reason::RowGone);
    }
    EXPECT_EQ(session.current(), 3);
    EXPECT_EQ(session.questionCount(), 20);
    session.goTo(4);
    const std::string text = session.shown(false).text;
    EXPECT_TRUE(text == next || text == nextBack);
}

TEST_F(TestSessionTest, LeavesTheFileFreeForOthers)
{
    TestSession session = open();
    (void)session.shown(false);
    otherProgram().exec("UPDATE FlashCards SET NIndex = 1");
    mark(session, {0});
    otherProgram().exec("UPDATE FlashCards SET NIndex = 1");
    EXPECT_FALSE(std::filesystem::exists(subject.string() + "-journal"));
}

TEST_F(TestSessionTest, ClosedItAnswersWithAnErrorAndLeavesOneFile)
{
    TestSession session = open();
    session.close();
    EXPECT_THROW((void)session.shown(false), StoreError);
    EXPECT_FALSE(std::filesystem::exists(subject.string() + "-journal"));
    session.close();
}

TEST_F(TestSessionTest, OfFewerThanFiveCardsDoesNotBegin)
{
    keepCards(4);
    EXPECT_THROW((void)open(), std::runtime_error);
    EXPECT_EQ(inOrder("Shuffle || Answer"), std::vector<std::string>(4, "0.00"));
}

TEST_F(TestSessionTest, OfAFileThatIsGoneOrLockedDoesNotBegin)
{
    settings.cardQuery = cardQuery({});
    EXPECT_THROW((void)open(), StoreError) << "a selection that does not run";
    settings.cardQuery = cardQuery(std::array{1});
    {
        SQLite::Database other = otherProgram();
        other.exec("BEGIN IMMEDIATE");
        EXPECT_THROW((void)open(), StoreError);
    }
    EXPECT_EQ(open().questionCount(), 20);
    std::filesystem::remove(subject);
    EXPECT_THROW((void)open(), StoreError);
    EXPECT_FALSE(std::filesystem::exists(subject)) << "nothing is created";
}

TEST_F(TestSessionTest, InAFileThatWasMovedMarksNone)
{
    TestSession session = open();
    session.goTo(2);
    std::filesystem::rename(subject, folder.file("elsewhere"));
    EXPECT_EQ(failureOfMarking(session, {0, 1}), Reason::NotFound);
    EXPECT_EQ(session.current(), 2);
    std::filesystem::rename(folder.file("elsewhere"), subject);
    EXPECT_EQ(markedInOrder(), std::vector<int>());
    mark(session, {0, 1});
    EXPECT_EQ(markedInOrder(), (std::vector{0, 1}));
}

// The file is replaced by another one while the session is open.

class AReplacedFileOfATest : public TestSessionTest
{
protected:
    /// A copy of the subject takes its place, after another program has run \p statements on it.
    void replaceBy(const std::string &statements) const
    {
        std::filesystem::rename(subject, old);
        std::filesystem::copy_file(old, subject);
        otherProgram().exec(statements);
    }
    [[nodiscard]] int marksInOldFile() const
    {
        return SQLite::Database(old.string()).execAndGet("SELECT sum(Marked) FROM FlashCards").getInt();
    }

    std::filesystem::path old = folder.file("old.crl");
};

TEST_F(AReplacedFileOfATest, GetsTheMarksOfTheSameCardsWhateverItsOrder)
{
    TestSession session = open();
    session.goTo(6);
    const std::vector<std::string> keys = inOrder("\"Index\"");
    const std::string wrong = keys.at(0) + ", " + keys.at(5) + ", " + keys.at(19);
    replaceBy("UPDATE FlashCards SET Shuffle = 1 - Shuffle, Answer = 9");
    for (int attempt = 0; attempt < 2; ++attempt) {
        mark(session, {0, 5, 19});
        EXPECT_EQ(otherProgram()
                      .execAndGet("SELECT count(*) FROM FlashCards WHERE Marked = (\"Index\" IN (" + wrong + "))")
                      .getInt(),
                  60);
        EXPECT_EQ(session.current(), 6);
    }
    EXPECT_EQ(marksInOldFile(), 0);
    EXPECT_FALSE(std::filesystem::exists(subject.string() + "-journal"));
}

TEST_F(AReplacedFileOfATest, GetsNoMarkForACardThatIsGoneOrAnotherOneThere)
{
    TestSession session = open();
    const std::vector<std::string> keys = inOrder("\"Index\"");
    deleteCardAt(4);
    replaceBy("DELETE FROM FlashCards WHERE \"Index\" = " + keys.at(1) +
              "; UPDATE FlashCards SET Front = 'other' WHERE \"Index\" = " + keys.at(2) +
              "; UPDATE FlashCards SET Back = 'other' WHERE \"Index\" = " + keys.at(3));
    mark(session, {0, 1, 2, 3, 4, 5});
    EXPECT_EQ(markedInOrder(), (std::vector{0, 3})) << "the cards 0 and 5 of the test";
    EXPECT_EQ(session.current(), 0);
}

TEST_F(AReplacedFileOfATest, GetsAllMarksOrNone)
{
    TestSession session = open();
    session.goTo(8);
    replaceBy("CREATE TRIGGER Fail BEFORE UPDATE OF Marked ON FlashCards WHEN old.\"Index\" = " +
              inOrder("\"Index\"").at(5) + " BEGIN SELECT raise(ABORT, 'no'); END");
    EXPECT_EQ(failureOfMarking(session, {0, 3, 5, 9}), Reason::Refused);
    EXPECT_EQ(markedInOrder(), std::vector<int>());
    EXPECT_EQ(session.current(), 8);
    {
        SQLite::Database other = otherProgram();
        other.exec("BEGIN IMMEDIATE");
        EXPECT_EQ(failureOfMarking(session, {0}), Reason::Locked);
    }
    otherProgram().exec("DROP TRIGGER Fail");
    mark(session, {0, 3, 5, 9});
    EXPECT_EQ(markedInOrder(), (std::vector{0, 3, 5, 9}));
    EXPECT_EQ(session.current(), 8);
}

} // namespace
