#include "tests/forms/TestWindowTest.h"

#include <QDir>
#include <QFile>
#include <QSignalSpy>

#include <functional>
#include <ostream>
#include <tuple>

namespace {

class frmTestGrading : public TestWindowTest
{
protected:
    [[nodiscard]] QByteArray bytes() const
    {
        QFile subject(QString::fromStdString(file.string()));
        EXPECT_TRUE(subject.open(QFile::ReadOnly));
        return subject.readAll();
    }
    [[nodiscard]] QStringList filesBesideTheSubject() const
    {
        const QString own = QString::fromStdString(file.filename().string());
        QStringList files =
            QDir(QString::fromStdString(file.parent_path().string())).entryList(QDir::Files | QDir::Hidden);
        files.removeAll(own);
        return files;
    }
    /// Whether this process has the subject's file open.
    [[nodiscard]] bool isSubjectOpen() const
    {
        const std::filesystem::path opened("/proc/self/fd");
        return std::ranges::any_of(std::filesystem::directory_iterator(opened), [this](const auto &entry) {
            std::error_code gone; // the folder itself was open while it was read
            return std::filesystem::read_symlink(entry.path(), gone) == file;
        });
    }
    /// The marks of the cards that no study of this test asks.
    [[nodiscard]] int marksOfOtherTopics() const
    {
        SubjectStore other(file);
        CardSet set = other.openRecordSet(cardsInOrder(cardQuery(std::array{small})));
        int marks = 0;
        for (; !set.isEndOfSet(); set.moveNext()) {
            marks += set.flag(CardField::Marked) ? 1 : 0;
        }
        return marks;
    }

    /// The keys of the cards of these questions, in the order of the keys.
    [[nodiscard]] std::vector<int> cardsOf(const std::vector<int> &questions) const
    {
        const std::vector<StoredCard> test = cardsOfTest();
        std::vector<int> keys;
        for (const int question : questions) {
            keys.push_back(test.at(static_cast<std::size_t>(question)).key);
        }
        std::ranges::sort(keys);
        return keys;
    }

    std::vector<bool> flags()
    {
        std::vector<bool> all;
        for (int question = 0; question < questionCount(); ++question) {
            all.push_back(selector(question).isMarkedForReview());
        }
        return all;
    }
    /// How many selectors show the right answers.
    int gradedSelectors()
    {
        int graded = 0;
        for (int question = 0; question < questionCount(); ++question) {
            graded += selector(question).isGraded() ? 1 : 0;
        }
        return graded;
    }

    /// Opens tests of true or false until the answer to the first question is this one: 1 is true.
    void openUntilFirstAnswerIs(int answer)
    {
        open(5, 0, 2);
        for (int tries = 0; tries < 64 && correctAnswer(0) != answer; ++tries) {
            reopen(5, 0, 2);
        }
        ASSERT_EQ(correctAnswer(0), answer);
    }

    /// Makes the window active again, as a desktop does when a message is closed.
    void comeBack()
    {
        window->activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(window));
    }

    void expectGradeQuestion(const SeenMessage &question)
    {
        EXPECT_EQ(question.text, QStringLiteral("Would you like to grade your test?"));
        EXPECT_EQ(question.title, QStringLiteral("Grade Test"));
        EXPECT_EQ(question.icon, QMessageBox::Information);
        EXPECT_EQ(question.buttons, QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel);
    }
};

const QString markedLine =
    QStringLiteral("\n\nFlash cards for all incorrect questions have been automatically marked.");

// The question that closing asks.

struct Way
{
    const char *name;
    std::function<void(frmTest &)> close;
};

void PrintTo(const Way &row, std::ostream *out)
{
    *out << row.name;
}

class EveryWayToClose : public frmTestGrading, public testing::WithParamInterface<Way>
{
protected:
    void close() { GetParam().close(*window); }
};

TEST_P(EveryWayToClose, AsksWhetherToGrade)
{
    open();
    expectGradeQuestion(heard([this] { close(); }, QMessageBox::Cancel));
    EXPECT_TRUE(isOpen());
    EXPECT_FALSE(isGraded());
}

TEST_P(EveryWayToClose, GradesAndStaysOnYes)
{
    open();
    dialogs.press(QMessageBox::Yes).press(QMessageBox::Ok);
    close();
    EXPECT_EQ(dialogs.last().title, QStringLiteral("Test Results"));
    EXPECT_TRUE(isOpen());
    EXPECT_TRUE(isGraded());
}

TEST_P(EveryWayToClose, ClosesOnNo)
{
    open();
    const QSignalSpy closed(window, &frmTest::closed);
    heard([this] { close(); }, QMessageBox::No);
    EXPECT_EQ(closed.count(), 1);
    settle();
    EXPECT_TRUE(window.isNull());
    EXPECT_EQ(storedMarks(), std::vector<int>{});
}

TEST_P(EveryWayToClose, AsksNothingOnceTheTestIsGraded)
{
    open();
    grade();
    const QSignalSpy closed(window, &frmTest::closed);
    close();
    EXPECT_EQ(dialogs.seen().size(), 2U) << "the question and the results of grading";
    EXPECT_EQ(closed.count(), 1);
    settle();
    EXPECT_TRUE(window.isNull());
}

INSTANTIATE_TEST_SUITE_P(
    frmTest, EveryWayToClose,
    testing::Values(Way{"TheKey", [](frmTest &window) { QTest::keyClick(window.focusWidget(), Qt::Key_Escape); }},
                    Way{"TheButton", [](frmTest &window) { click(window, "Image1(3)"); }},
                    Way{"TheCloseBox", [](frmTest &window) { window.close(); }}),
    [](const auto &row) { return std::string(row.param.name); });

TEST_F(frmTestGrading, CancelAndEscapeKeepTheTestItsAnswersAndItsRunningClock)
{
    open(12, 60, 2);
    clickChoice(0, 2);
    key(Qt::Key_Q);
    goTo(3);
    key(Qt::Key_A);
    passSeconds(5);
    const std::string seen = scene();
    const std::vector<int> answered = answers();
    const std::vector<bool> flagged = flags();
    const QByteArray before = bytes();
    ASSERT_EQ(answered, (std::vector{2, 0, 0, 1, 0, 0, 0, 0, 0, 0, 0, 0}));
    ASSERT_TRUE(flagged.front());
    const QSignalSpy closed(window, &frmTest::closed);

    for (const bool byButton : {true, false}) {
        byButton ? dialogs.press(QMessageBox::Cancel) : dialogs.key(Qt::Key_Escape);
        key(Qt::Key_Escape);
        EXPECT_TRUE(isOpen());
        EXPECT_EQ(gradedSelectors(), 0);
        EXPECT_EQ(scene(), seen);
        EXPECT_EQ(focused(), 3);
        EXPECT_EQ(answers(), answered);
        EXPECT_EQ(flags(), flagged);
    }
    EXPECT_EQ(closed.count(), 0);
    EXPECT_EQ(bytes(), before);
    EXPECT_EQ(dialogs.seen().size(), 2U) << "a question each time";

    EXPECT_EQ(clockText(), QStringLiteral("1:55"));
    EXPECT_TRUE(clock().isActive());
    passSecond();
    EXPECT_EQ(clockText(), QStringLiteral("1:54"));
    key(Qt::Key_B);
    EXPECT_EQ(selector(3).selectedAnswer(), 2) << "answering goes on";
    EXPECT_EQ(grade().title, QStringLiteral("Test Results"));
}

TEST_F(frmTestGrading, NoMarksNothingStoresThePlacementAndLeavesOneFile)
{
    open(12, 60, 2);
    window->resize(window->minimumSize() + QSize(30, 40));
    answerAll(3);
    const QByteArray before = bytes();
    const QSignalSpy closed(window, &frmTest::closed);
    dialogs.press(QMessageBox::No);
    key(Qt::Key_Escape);
    EXPECT_EQ(closed.count(), 1);
    ASSERT_FALSE(window.isNull());
    EXPECT_FALSE(window->isVisible());
    EXPECT_FALSE(clock().isActive()) << "nobody sees the seconds";
    EXPECT_EQ(dialogs.seen().size(), 1U) << "no results";
    const QSize size = window->size();
    settle();
    EXPECT_TRUE(window.isNull()) << "a closed test deletes itself";

    EXPECT_EQ(bytes(), before);
    EXPECT_EQ(storedMarks(), std::vector<int>{});
    EXPECT_EQ(filesBesideTheSubject(), QStringList());
    EXPECT_EQ(setting("Test", "WindowState"), QStringLiteral("0"));
    EXPECT_GT(setting("Test", "Width").toInt(), 0);
    EXPECT_GT(setting("Test", "Height").toInt(), 0);
    open();
    EXPECT_EQ(window->size(), size);
}

TEST_F(frmTestGrading, ClosingAGradedTestStoresThePlacementToo)
{
    open();
    grade();
    EXPECT_EQ(setting("Test", "Width"), QString()) << "not yet";
    key(Qt::Key_Escape);
    settle();
    EXPECT_EQ(setting("Test", "WindowState"), QStringLiteral("0"));
    EXPECT_GT(setting("Test", "Width").toInt(), 0);
    EXPECT_EQ(filesBesideTheSubject(), QStringList());
}

TEST_F(frmTestGrading, ATestThatClosesHasTheSubjectOpenNoMore)
{
    open();
    EXPECT_TRUE(isSubjectOpen());
    heard([this] { key(Qt::Key_Escape); }, QMessageBox::Cancel);
    EXPECT_TRUE(isSubjectOpen());
    dialogs.press(QMessageBox::No);
    key(Qt::Key_Escape);
    ASSERT_FALSE(window.isNull()) << "closed, not yet deleted";
    EXPECT_FALSE(isSubjectOpen());
}

// The results.

struct Score
{
    int right;
    int questions;
    const char *line;
};

void PrintTo(const Score &row, std::ostream *out)
{
    *out << row.right << " of " << row.questions;
}

class frmTestResults : public frmTestGrading, public testing::WithParamInterface<Score>
{
};

TEST_P(frmTestResults, SayHowManyWereRight)
{
    const auto [right, questions, line] = GetParam();
    studyNewTopic(questions);
    open(questions);
    ASSERT_EQ(questionCount(), questions);
    answerAll(right);
    const SeenMessage results = grade();
    EXPECT_EQ(results.text, QString::fromLatin1(line) + markedLine);
    EXPECT_EQ(results.title, QStringLiteral("Test Results"));
    EXPECT_EQ(results.icon, QMessageBox::Information);
    EXPECT_EQ(results.buttons, QMessageBox::Ok);
    EXPECT_EQ(storedMarks().size(), static_cast<std::size_t>(questions - right));
}

INSTANTIATE_TEST_SUITE_P(
    frmTest, frmTestResults,
    testing::Values(Score{0, 5, "Test results: 0% (0 out of 5)"}, Score{5, 5, "Test results: 100% (5 out of 5)"},
                    Score{1, 6, "Test results: 16% (1 out of 6)"}, Score{8, 10, "Test results: 80% (8 out of 10)"},
                    Score{29, 50, "Test results: 57% (29 out of 50)"},
                    Score{50, 50, "Test results: 100% (50 out of 50)"}),
    [](const auto &row) { return std::to_string(row.param.right) + "RightOf" + std::to_string(row.param.questions); });

TEST_F(frmTestGrading, AnUnansweredTestHasNothingRightAndEveryQuestionMarked)
{
    open();
    EXPECT_EQ(grade().text, QStringLiteral("Test results: 0% (0 out of 12)") + markedLine);
    EXPECT_EQ(storedMarks().size(), 12U);
}

TEST_F(frmTestGrading, ATestThatIsAllRightChangesNoCard)
{
    open();
    answerAll(12);
    const QByteArray before = bytes();
    EXPECT_EQ(grade().text, QStringLiteral("Test results: 100% (12 out of 12)") + markedLine);
    EXPECT_EQ(storedMarks(), std::vector<int>{});
    EXPECT_EQ(bytes(), before);
}

TEST_F(frmTestGrading, WrongAndUnansweredQuestionsAreMarkedAndMarkedCardsStayMarked)
{
    open(8);
    const std::vector<StoredCard> test = cardsOfTest();
    const auto letter = [](int choice) { return static_cast<Qt::Key>(Qt::Key_A + choice - 1); };
    for (const int wrong : {1, 4, 7}) {
        goTo(wrong);
        key(letter(wrongAnswer(wrong)));
    }
    for (const int right : {0, 2, 5, 6}) {
        goTo(right);
        key(letter(wrongAnswer(right)));
        key(letter(correctAnswer(right))); // thought better of it
    }
    markElsewhere(test.at(2).key); // right
    markElsewhere(test.at(4).key); // wrong
    markElsewhere(test.at(9).key); // not asked
    EXPECT_EQ(grade().text, QStringLiteral("Test results: 50% (4 out of 8)") + markedLine);
    EXPECT_EQ(storedMarks(), cardsOf({1, 2, 3, 4, 7, 9}));
    EXPECT_EQ(marksOfOtherTopics(), 0);
}

TEST_F(frmTestGrading, ChangesNothingOfTheCardsButTheirMarks)
{
    open();
    answerAll(4);
    const std::vector<StoredCard> before = cardsOfTest();
    grade();
    const std::vector<StoredCard> after = cardsOfTest();
    ASSERT_EQ(after.size(), before.size());
    for (std::size_t card = 0; card < before.size(); ++card) {
        StoredCard expected = before.at(card);
        expected.marked = card >= 4;
        const auto all = [](const StoredCard &stored) {
            return std::tuple(stored.key, stored.front, stored.back, stored.marked, stored.shuffle, stored.isTrueFalse,
                              stored.isFront, stored.answer, stored.wrong1, stored.wrong2);
        };
        EXPECT_EQ(all(after.at(card)), all(expected));
    }
}

TEST_F(frmTestGrading, TheCardsAreMarkedAndTheAnswersFixedWhenTheResultsAreRead)
{
    open();
    answerAll(7);
    std::vector<int> marked;
    int graded = 0;
    bool runs = true;
    dialogs.press(QMessageBox::Yes).act([&](QWidget &results) {
        marked = storedMarks();
        graded = gradedSelectors();
        runs = clock().isActive();
        QTest::keyClick(&results, Qt::Key_Escape);
    });
    key(Qt::Key_Escape);
    EXPECT_EQ(dialogs.last().title, QStringLiteral("Test Results"));
    EXPECT_EQ(marked, cardsOf({7, 8, 9, 10, 11}));
    EXPECT_EQ(graded, 12);
    EXPECT_FALSE(runs);
    EXPECT_TRUE(isOpen()) << "the Escape was for the results";
    EXPECT_EQ(filesBesideTheSubject(), QStringList()) << "and nothing is left of the writing";
}

// The review.

TEST_F(frmTestGrading, TheWindowStaysOnTheFirstQuestionWithTheAnswersKept)
{
    const int topic = studyNewTopic(50);
    ASSERT_NE(topic, 0);
    open(50, 60, 3);
    answerAll(20);
    goTo(40);
    key(Qt::Key_Q);
    const std::vector<int> answered = answers();
    ASSERT_FALSE(isWhollySeen(0));
    passSeconds(7);
    EXPECT_EQ(gradedSelectors(), 0);
    grade();
    comeBack();
    EXPECT_TRUE(isOpen());
    EXPECT_EQ(gradedSelectors(), 50);
    EXPECT_EQ(current(), 0);
    EXPECT_EQ(focused(), 0);
    EXPECT_TRUE(isWhollySeen(0));
    EXPECT_EQ(scene(), storedScene(0, true));
    EXPECT_EQ(answers(), answered);
    EXPECT_TRUE(selector(40).isMarkedForReview());
    EXPECT_EQ(clockText(), QStringLiteral("2:53"));
    EXPECT_FALSE(clock().isActive());
    passSeconds(3);
    EXPECT_EQ(clockText(), QStringLiteral("2:53"));
}

TEST_F(frmTestGrading, AFalseFirstStatementShowsItsAnswerAtOnceWhereverTheLearnerWas)
{
    for (const int last : {0, 3}) {
        openUntilFirstAnswerIs(2);
        EXPECT_FALSE(box(2).isVisible());
        goTo(last);
        grade();
        EXPECT_EQ(current(), 0);
        EXPECT_EQ(scene(), storedScene(0, true)) << "at once";
        comeBack();
        EXPECT_TRUE(box(2).isVisible());
        EXPECT_FALSE(box(3).isVisible());
        EXPECT_EQ(scene(), storedScene(0, true));
        leave();
    }
}

TEST_F(frmTestGrading, ATrueFirstStatementShowsNoOtherAnswer)
{
    openUntilFirstAnswerIs(1);
    grade();
    EXPECT_FALSE(box(2).isVisible());
    EXPECT_EQ(scene(), storedScene(0, true));
}

TEST_F(frmTestGrading, EveryQuestionCanBeReviewed)
{
    open(12, 40);
    answerAll(5);
    const std::vector<StoredCard> test = cardsOfTest();
    for (int question = 0; question < 12; ++question) {
        goTo(question);
        EXPECT_EQ(scene(), sceneOf(test, question, false));
    }
    grade();
    for (int question = 0; question < 12; ++question) {
        goTo(question);
        EXPECT_EQ(scene(), sceneOf(test, question, true));
        EXPECT_EQ(focused(), question);
    }
    EXPECT_EQ(heard([this] { key(Qt::Key_Right); }).title, QStringLiteral("Last Question"));
    run(Previous);
    EXPECT_EQ(current(), 10);
    run(Next);
    EXPECT_EQ(current(), 11);
    comeBack();
    clickChoice(9, 1);
    EXPECT_EQ(current(), 9) << "a click goes to its question";
    goTo(0);
    EXPECT_EQ(heard([this] { run(Previous); }).title, QStringLiteral("First Question"));
}

TEST_F(frmTestGrading, NoAnswerAndNoFlagCanBeChangedAnyMore)
{
    open(5, 50);
    clickChoice(1, 1);
    clickChoice(2, 2);
    clickFlag(2);
    grade();
    const std::vector<int> answered = answers();
    const std::vector<bool> flagged = flags();
    for (int question = 0; question < 5; ++question) {
        goTo(question);
        for (const Qt::Key pressed :
             {Qt::Key_T, Qt::Key_F, Qt::Key_Q, Qt::Key_A, Qt::Key_B, Qt::Key_C, Qt::Key_1, Qt::Key_2, Qt::Key_3}) {
            key(pressed);
            EXPECT_EQ(answers(), answered) << "key " << pressed << " at question " << question;
        }
        for (int choice = 1; choice <= 3; ++choice) {
            clickChoice(question, choice);
        }
        clickFlag(question);
        EXPECT_EQ(current(), question);
    }
    EXPECT_EQ(answers(), answered);
    EXPECT_EQ(flags(), flagged);
}

TEST_F(frmTestGrading, TheSearchForOpenQuestionsGoesOn)
{
    open(6);
    answerAll(6);
    goTo(4);
    key(Qt::Key_Q);
    grade();
    key(Qt::Key_J);
    EXPECT_EQ(current(), 4);
    EXPECT_EQ(focused(), 4);
    run(FindNextOpen);
    EXPECT_EQ(current(), 4) << "there is no other";
    leave();
    open(6);
    answerAll(6);
    grade();
    EXPECT_EQ(heard([this] { key(Qt::Key_J); }).title, QStringLiteral("Marked/Unanswered Questions"));
}

TEST_F(frmTestGrading, AClickThatMakesTheWindowActiveGoesToItsQuestionToo)
{
    open();
    QWidget other;
    other.show();
    other.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&other));
    clickChoice(3, 2); // the press may come before the window is active
    comeBack();
    EXPECT_EQ(focused(), 3);
    EXPECT_EQ(current(), 3) << "the keys answer the question that is seen";
    EXPECT_EQ(scene(), storedScene(3));
}

TEST_F(frmTestGrading, CardsMarkedByATestAreTheNextOne)
{
    open();
    answerAll(6);
    const std::vector<int> wrong = cardsOf({6, 7, 8, 9, 10, 11});
    grade();
    leave();
    module->study.cardQuery = markedCardQuery();
    open();
    EXPECT_EQ(questionCount(), 6);
    EXPECT_EQ(storedMarks(), wrong);
    answerAll(6);
    grade();
    EXPECT_EQ(storedMarks(), wrong) << "a right answer takes no mark away";
}

} // namespace
