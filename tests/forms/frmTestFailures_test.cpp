#include "forms/frmOptions/frmOptions.h"
#include "tests/forms/NotesTest.h"
#include "tests/forms/SubjectTrouble.h"
#include "tests/forms/TestWindowTest.h"

#include <QFile>
#include <QListWidget>
#include <QSignalSpy>

#include <functional>
#include <memory>
#include <ostream>

namespace {

class frmTestFailures : public TestWindowTest
{
protected:
    void expectReport(const SeenMessage &report, const char *cause = "")
    {
        EXPECT_EQ(report.icon, QMessageBox::Critical) << report.text.toStdString();
        EXPECT_EQ(report.title, QStringLiteral("Run-time error"));
        EXPECT_TRUE(report.text.contains(QString::fromStdString(file.string()))) << report.text.toStdString();
        EXPECT_TRUE(report.text.contains(QString::fromLatin1(cause))) << report.text.toStdString();
    }

    /// What opened since \p before, by the titles.
    QStringList titlesSince(std::size_t before)
    {
        QStringList titles;
        for (std::size_t message = before; message < dialogs.seen().size(); ++message) {
            titles << dialogs.seen().at(message).title;
        }
        return titles;
    }

    int gradedSelectors()
    {
        int graded = 0;
        for (int question = 0; question < questionCount(); ++question) {
            graded += selector(question).isGraded() ? 1 : 0;
        }
        return graded;
    }
    std::vector<int> flagged()
    {
        std::vector<int> questions;
        for (int question = 0; question < questionCount(); ++question) {
            if (selector(question).isMarkedForReview()) {
                questions.push_back(question);
            }
        }
        return questions;
    }
    /// The keys of the cards from question \p first on, in the order of the keys.
    [[nodiscard]] std::vector<int> cardsFrom(std::size_t first) const
    {
        std::vector<int> keys;
        const std::vector<StoredCard> test = cardsOfTest();
        for (std::size_t question = first; question < test.size(); ++question) {
            keys.push_back(test.at(question).key);
        }
        std::ranges::sort(keys);
        return keys;
    }

    const QStringList questionAndReport{QStringLiteral("Grade Test"), QStringLiteral("Run-time error")};
    const QStringList questionAndResults{QStringLiteral("Grade Test"), QStringLiteral("Test Results")};
};

// Grading while the file cannot be written.

class frmTestTroubles : public frmTestFailures, public testing::WithParamInterface<Cause>
{
protected:
    [[nodiscard]] std::unique_ptr<Trouble> trouble() const { return GetParam().begin(file); }

    /// A test of 12 in two minutes, half done: 5 right, 2 flagged, question 3 shown.
    void openHalfDone()
    {
        open(12, 60, 2);
        answerAll(5);
        for (const int question : {1, 3}) {
            goTo(question);
            key(Qt::Key_Q);
        }
        m_answers = answers();
        m_scene = scene();
    }

    /// Expects the test to be as openHalfDone() left it.
    void expectHalfDone()
    {
        ASSERT_TRUE(isOpen());
        EXPECT_EQ(gradedSelectors(), 0);
        EXPECT_EQ(answers(), m_answers);
        EXPECT_EQ(flagged(), (std::vector{1, 3}));
        EXPECT_EQ(scene(), m_scene);
        EXPECT_EQ(focused(), 3);
    }

    void gradeInVain()
    {
        const std::size_t before = dialogs.seen().size();
        dialogs.press(QMessageBox::Yes).press(QMessageBox::Ok);
        key(Qt::Key_Escape);
        EXPECT_EQ(titlesSince(before), questionAndReport);
        expectReport(dialogs.last(), GetParam().report);
    }

    void expectGradingWorks()
    {
        const std::vector<int> wrong = cardsFrom(5);
        EXPECT_EQ(storedMarks(), std::vector<int>{});
        const std::size_t before = dialogs.seen().size();
        const SeenMessage results = grade();
        EXPECT_EQ(titlesSince(before), questionAndResults);
        EXPECT_TRUE(results.text.startsWith(QStringLiteral("Test results: 41% (5 out of 12)")))
            << results.text.toStdString();
        EXPECT_EQ(storedMarks(), wrong);
        EXPECT_EQ(gradedSelectors(), 12);
        EXPECT_EQ(current(), 0);
    }

private:
    std::vector<int> m_answers;
    std::string m_scene;
};

TEST_P(frmTestTroubles, GradingThatCannotBeStoredKeepsTheTestAndCanBeTriedAgain)
{
    openHalfDone();
    passSeconds(9);
    const QSignalSpy closed(window, &frmTest::closed);
    {
        const auto meanwhile = trouble();
        gradeInVain();
        expectHalfDone();
        gradeInVain();
        expectHalfDone();
        EXPECT_EQ(clockText(), QStringLiteral("1:51"));
        EXPECT_TRUE(clock().isActive());
        passSecond();
        EXPECT_EQ(clockText(), QStringLiteral("1:50"));
    }
    EXPECT_EQ(closed.count(), 0);
    EXPECT_EQ(storedMarks(), std::vector<int>{});
    key(Qt::Key_Q);
    key(Qt::Key_Q);
    expectHalfDone();
    expectGradingWorks();
    EXPECT_EQ(clockText(), QStringLiteral("1:50"));
    EXPECT_FALSE(clock().isActive());
}

TEST_P(frmTestTroubles, ATimeThatIsUpGradesNothingThenAndClosingOffersItAgain)
{
    openHalfDone();
    {
        const auto meanwhile = trouble();
        dialogs.press(QMessageBox::Ok).press(QMessageBox::Ok);
        passSeconds(120);
        ASSERT_EQ(titlesSince(0), (QStringList{QStringLiteral("Time's Up"), QStringLiteral("Run-time error")}));
        expectReport(dialogs.last(), GetParam().report);
        expectHalfDone();
        EXPECT_EQ(clockText(), QStringLiteral("0:00"));
        EXPECT_FALSE(clock().isActive());
        gradeInVain();
        expectHalfDone();
    }
    expectGradingWorks();
    EXPECT_EQ(clockText(), QStringLiteral("0:00"));
}

TEST_P(frmTestTroubles, ATimeThatIsUpAtTheGradeQuestionLeavesThatInForce)
{
    openHalfDone();
    auto meanwhile = trouble();
    dialogs
        .act([&](QWidget &question) {
            {
                DialogAnswers above; // one cannot look while it acts
                above.press(QMessageBox::Ok).press(QMessageBox::Ok);
                passSeconds(120);
                ASSERT_EQ(above.seen().size(), 2U);
                EXPECT_EQ(above.seen().front().title, QStringLiteral("Time's Up"));
                expectReport(above.last(), GetParam().report);
            }
            EXPECT_EQ(gradedSelectors(), 0);
            meanwhile.reset();
            auto *box = qobject_cast<QMessageBox *>(&question);
            ASSERT_NE(box, nullptr);
            QTest::mouseClick(box->button(QMessageBox::Yes), Qt::LeftButton);
        })
        .press(QMessageBox::Ok);
    key(Qt::Key_Escape);
    EXPECT_EQ(titlesSince(0), questionAndResults);
    EXPECT_EQ(gradedSelectors(), 12);
    EXPECT_EQ(storedMarks(), cardsFrom(5));
}

TEST_P(frmTestTroubles, ATestCanBeLeftWithoutGrading)
{
    openHalfDone();
    const QSignalSpy closed(window, &frmTest::closed);
    {
        const auto meanwhile = trouble();
        gradeInVain();
        dialogs.press(QMessageBox::No);
        const bool settingsFailToo = GetParam().begin == fullDisk.begin;
        if (settingsFailToo) {
            dialogs.press(QMessageBox::Ok);
        }
        key(Qt::Key_Escape);
        EXPECT_EQ(dialogs.seen().size(), settingsFailToo ? 4U : 3U);
        EXPECT_EQ(closed.count(), 1);
        settle();
        EXPECT_TRUE(window.isNull());
    }
    EXPECT_EQ(storedMarks(), std::vector<int>{});
}

INSTANTIATE_TEST_SUITE_P(frmTest, frmTestTroubles, testing::Values(locked, fullDisk, movedAway, deleted),
                         [](const auto &row) { return std::string(row.param.name); });

TEST_F(frmTestFailures, GradingThatFailsHalfWayMarksNoCardAtAll)
{
    open(12, 60, 2);
    const std::vector<StoredCard> test = cardsOfTest();
    OtherProgram other(file);
    other.run("CREATE TRIGGER kept BEFORE UPDATE ON FlashCards WHEN old.\"Index\" = " + std::to_string(test.at(7).key) +
              " BEGIN SELECT RAISE(ABORT, 'kept'); END");
    goTo(2);
    dialogs.press(QMessageBox::Yes).press(QMessageBox::Ok);
    run(Exit);
    expectReport(dialogs.last());
    EXPECT_EQ(storedMarks(), std::vector<int>{});
    EXPECT_EQ(gradedSelectors(), 0);
    EXPECT_EQ(current(), 2);
    EXPECT_EQ(scene(), storedScene(2));
    other.run("DROP TRIGGER kept");
    grade();
    EXPECT_EQ(storedMarks().size(), 12U);
}

// Questions that cannot be read.

TEST_F(frmTestFailures, AQuestionThatCannotBeReadIsEmptyUntilItCan)
{
    open(12, 100);
    {
        const Locked meanwhile(file);
        expectReport(heard([this] { run(Next); }), locked.report);
        EXPECT_EQ(current(), 1);
        EXPECT_EQ(focused(), 1);
        for (RichTextBox *shown : {&box(), &box(1), &box(2), &box(3)}) {
            EXPECT_EQ(shown->toPlainText(), QString()) << "of the question before";
        }
        key(Qt::Key_B);
        EXPECT_EQ(selector(1).selectedAnswer(), 2) << "an answer needs no file";
    }
    run(Next);
    EXPECT_EQ(scene(), storedScene(2));
    run(Previous);
    EXPECT_EQ(scene(), storedScene(1));
}

class frmTestGone : public frmTestTroubles
{
};

TEST_P(frmTestGone, EveryQuestionCanBeReadToTheEnd)
{
    open(12, 60);
    const std::vector<StoredCard> test = cardsOfTest();
    const auto meanwhile = trouble();
    for (int question = 0; question < 12; ++question) {
        goTo(question);
        EXPECT_EQ(scene(), sceneOf(test, question));
    }
}

INSTANTIATE_TEST_SUITE_P(frmTest, frmTestGone, testing::Values(movedAway, deleted),
                         [](const auto &row) { return std::string(row.param.name); });

// Cards that another program deletes.

TEST_F(frmTestFailures, AQuestionWhoseCardIsGoneIsReportedAndEmptyAndPassedOverByGrading)
{
    open(5, 100, 2);
    const std::vector<StoredCard> test = cardsOfTest();
    answerAll(1);
    deleteElsewhere(test.at(2).key);
    goTo(1);
    expectReport(heard([this] { key(Qt::Key_Right); }), "deleted meanwhile");
    EXPECT_EQ(current(), 2);
    EXPECT_EQ(focused(), 2);
    for (RichTextBox *shown : {&box(), &box(1), &box(2), &box(3)}) {
        EXPECT_EQ(shown->toPlainText(), QString()) << "of the question before";
    }
    passSecond();
    EXPECT_EQ(clockText(), QStringLiteral("1:59"));
    run(Next);
    EXPECT_EQ(current(), 3);
    EXPECT_FALSE(box().toPlainText().isEmpty());
    expectReport(heard([this] { run(Previous); }), "deleted meanwhile");
    run(Previous);
    EXPECT_EQ(current(), 1);

    EXPECT_TRUE(grade().text.startsWith(QStringLiteral("Test results: 20% (1 out of 5)")));
    std::vector<int> wrong{test.at(1).key, test.at(3).key, test.at(4).key};
    std::ranges::sort(wrong);
    EXPECT_EQ(storedMarks(), wrong);
    EXPECT_EQ(gradedSelectors(), 5);
    EXPECT_EQ(current(), 0);
    EXPECT_FALSE(box().toPlainText().isEmpty());
}

TEST_F(frmTestFailures, AFirstQuestionWhoseCardIsGoneIsReportedOnceAfterTheResults)
{
    for (const int last : {0, 3}) {
        open(5, 100);
        goTo(last);
        deleteElsewhere(cardsOfTest().front().key);
        const std::size_t before = dialogs.seen().size();
        dialogs.press(QMessageBox::Yes).press(QMessageBox::Ok).press(QMessageBox::Ok);
        key(Qt::Key_Escape);
        EXPECT_EQ(titlesSince(before), (questionAndResults + QStringList(QStringLiteral("Run-time error"))))
            << "from question " << last + 1;
        expectReport(dialogs.last(), "deleted meanwhile");
        EXPECT_EQ(gradedSelectors(), 5);
        EXPECT_EQ(current(), 0);
        EXPECT_EQ(focused(), 0);
        EXPECT_EQ(box().toPlainText(), QString());
        run(Next);
        EXPECT_EQ(current(), 1);
        EXPECT_FALSE(box().toPlainText().isEmpty());
        leave();
    }
}

TEST_F(frmTestFailures, AWrongChoiceWhoseCardIsGoneIsEmpty)
{
    open(5, 100);
    const StoredCard asked = cardsOfTest().at(1);
    const StoredCard gone = cardsOfTest().at(static_cast<std::size_t>(asked.wrong1));
    std::string expected = storedScene(1);
    const std::string text = " " + (asked.isFront ? gone.back : gone.front);
    // After the question, and as a whole: "front 1" begins "front 12", too.
    const std::size_t place = (expected + ' ').find(text + ' ', expected.find('?'));
    ASSERT_NE(place, std::string::npos);
    expected.erase(place + 1, text.size() - 1);
    deleteElsewhere(gone.key);
    const int end = asked.wrong1 == 0 ? 1 : 0; // whose own card is there
    if (end == 0) {
        key(Qt::Key_Right);
    } else {
        QTest::mouseClick(&selector(1), Qt::LeftButton);
    }
    EXPECT_EQ(current(), 1);
    EXPECT_EQ(scene(), expected);
    EXPECT_TRUE(dialogs.seen().empty());
}

// Closing.

TEST_F(frmTestFailures, APlacementThatCannotBeStoredIsReportedAndTheWindowCloses)
{
    for (const bool graded : {false, true}) {
        open(5, 60, 2);
        if (graded) {
            grade();
        }
        blockSettings();
        const QSignalSpy closed(window, &frmTest::closed);
        const std::size_t before = dialogs.seen().size();
        if (!graded) {
            dialogs.press(QMessageBox::No);
        }
        dialogs.press(QMessageBox::Ok);
        key(Qt::Key_Escape);
        EXPECT_EQ(dialogs.seen().size(), before + (graded ? 1 : 2));
        EXPECT_EQ(dialogs.last().icon, QMessageBox::Critical);
        EXPECT_EQ(dialogs.last().title, QStringLiteral("Run-time error"));
        EXPECT_EQ(closed.count(), 1);
        settle();
        EXPECT_TRUE(window.isNull());
    }
}

// Opening from the main window.

class frmTestFromNotes : public NotesTest
{
protected:
    /// Chooses a test of the first topic, and lets \p happen come to pass when the wizard has said yes.
    void testFirstTopic(const std::function<void()> &happen)
    {
        if (!isOpen()) {
            open();
        }
        run(Study);
        auto *wizard = visibleWindow<frmOptions>();
        ASSERT_NE(wizard, nullptr);
        auto &style = control<QAbstractButton>(*wizard, "Option1(1)");
        QTest::mouseClick(&style, Qt::LeftButton, {}, QPoint(8, style.height() / 2));
        auto &topics = control<QListWidget>(*wizard, "List1");
        QTest::mouseClick(topics.viewport(), Qt::LeftButton, {}, topics.visualItemRect(topics.item(0)).center());
        click(*wizard, "cmdOK(2)");
        QObject::connect(wizard, &QDialog::accepted, window, happen);
        click(*wizard, "cmdOK(2)");
    }

    /// Expects that \p happen leads to a report over the main window, and to nothing else.
    void expectNoTest(const std::function<void()> &happen, const char *cause)
    {
        {
            DialogAnswers answers;
            const QWidget *over = nullptr;
            answers.act([&](QWidget &dialog) {
                over = dialog.parentWidget();
                QTest::keyClick(&dialog, Qt::Key_Escape);
            });
            testFirstTopic(happen);
            EXPECT_EQ(over, window);
            const SeenMessage report = answers.last();
            EXPECT_EQ(report.icon, QMessageBox::Critical);
            EXPECT_EQ(report.title, QStringLiteral("Run-time error"));
            EXPECT_TRUE(report.text.contains(QString::fromLatin1(cause))) << report.text.toStdString();
        }
        settle();
        EXPECT_TRUE(isOpen());
        for (const QWidget *top : QApplication::topLevelWidgets()) {
            EXPECT_EQ(qobject_cast<const frmTest *>(top), nullptr);
        }
        EXPECT_EQ(title(), QStringLiteral("Large"));
    }

    void deleteCardsAfter(int key) const
    {
        OtherProgram(file).run("DELETE FROM FlashCards WHERE \"Index\" > " + std::to_string(key));
    }
};

TEST_F(frmTestFromNotes, ALockedSubjectGivesNoTestAndLeavesTheMainWindow)
{
    std::unique_ptr<Locked> meanwhile;
    expectNoTest([&] { meanwhile = std::make_unique<Locked>(file); }, "Another program is busy");
    meanwhile.reset();
    EXPECT_EQ(readTopic(file, large).cardCount, 12);
}

TEST_F(frmTestFromNotes, ADamagedSubjectGivesNoTestAndLeavesTheMainWindow)
{
    expectNoTest(
        [&] {
            QFile subject(QString::fromStdString(file.string()));
            ASSERT_TRUE(subject.open(QFile::ReadWrite));
            subject.write(QByteArray(4096, 'x'));
        },
        "not a Cramlet subject");
}

TEST_F(frmTestFromNotes, ASubjectThatIsGoneGivesNoTestAndLeavesTheMainWindow)
{
    std::unique_ptr<MovedAway> meanwhile;
    expectNoTest([&] { meanwhile = std::make_unique<MovedAway>(file); }, "cannot be found");
}

TEST_F(frmTestFromNotes, FewerThanFiveCardsGiveNoTestAndChangeNothing)
{
    expectNoTest([&] { deleteCardsAfter(4); }, "fewer than 5");
    EXPECT_EQ(readTopic(file, large).cardCount, 4);
    SubjectStore store(file);
    CardSet cards = store.openRecordSet(cardsInOrder(cardQuery(std::array{large})));
    for (; !cards.isEndOfSet(); cards.moveNext()) {
        EXPECT_EQ(cards.single(CardField::Shuffle), 0);
        EXPECT_EQ(cards.number(CardField::Answer), 0);
    }
}

TEST_F(frmTestFromNotes, FiveCardsThatAreLeftGiveATestOfFive)
{
    testFirstTopic([&] { deleteCardsAfter(5); });
    auto *test = visibleWindow<frmTest>();
    ASSERT_NE(test, nullptr);
    EXPECT_FALSE(isOpen());
    EXPECT_EQ(test->findChildren<SelectAnswer *>().size(), 5);
    DialogAnswers answers;
    answers.press(QMessageBox::No);
    test->close();
    EXPECT_TRUE(isOpen());
}

TEST_F(frmTestFromNotes, ATestCanBeBegunWhenTheTroubleIsOver)
{
    std::unique_ptr<Locked> meanwhile;
    expectNoTest([&] { meanwhile = std::make_unique<Locked>(file); }, "Another program is busy");
    meanwhile.reset();
    testFirstTopic([] {});
    auto *test = visibleWindow<frmTest>();
    ASSERT_NE(test, nullptr);
    EXPECT_FALSE(isOpen());
    DialogAnswers answers;
    answers.press(QMessageBox::No);
    test->close();
    EXPECT_TRUE(isOpen());
}

TEST_F(frmTestFromNotes, TheMainWindowComesBackEvenIfThePlacementCannotBeStored)
{
    testFirstTopic([] {});
    auto *test = visibleWindow<frmTest>();
    ASSERT_NE(test, nullptr);
    blockSettings();
    DialogAnswers answers;
    answers.press(QMessageBox::No).press(QMessageBox::Ok);
    test->close();
    EXPECT_EQ(answers.last().icon, QMessageBox::Critical);
    EXPECT_TRUE(isOpen());
    EXPECT_EQ(visibleWindow<frmTest>(), nullptr);
}

} // namespace
