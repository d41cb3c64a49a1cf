#include "tests/forms/TestWindowTest.h"

#include <QSignalSpy>
#include <QWheelEvent>

namespace {

/// Answering, and going from question to question.
class frmTestAnswers : public TestWindowTest
{
protected:
    /// Answers all questions but these.
    void answerAllBut(const std::vector<int> &open)
    {
        for (int question = 0; question < questionCount(); ++question) {
            selector(question).setSelectedAnswer(std::ranges::find(open, question) == open.end() ? 1 : 0);
        }
    }
    void expectNoOther(const SeenMessage &said)
    {
        EXPECT_EQ(said.text, QStringLiteral("There were no other marked or unanswered questions."));
        EXPECT_EQ(said.title, QStringLiteral("Marked/Unanswered Questions"));
        EXPECT_EQ(said.icon, QMessageBox::Information);
        EXPECT_EQ(said.buttons, QMessageBox::Ok);
    }
    struct AnswerKey
    {
        Qt::Key key;
        Qt::KeyboardModifiers modifiers;
        int answer;
    };
    static constexpr std::array<AnswerKey, 9> answerKeys{{
        {Qt::Key_A, Qt::NoModifier, 1},
        {Qt::Key_B, Qt::NoModifier, 2},
        {Qt::Key_C, Qt::NoModifier, 3},
        {Qt::Key_1, Qt::NoModifier, 1},
        {Qt::Key_2, Qt::NoModifier, 2},
        {Qt::Key_3, Qt::NoModifier, 3},
        {Qt::Key_1, Qt::KeypadModifier, 1},
        {Qt::Key_2, Qt::KeypadModifier, 2},
        {Qt::Key_3, Qt::KeypadModifier, 3},
    }};
};

// Moving.

TEST_F(frmTestAnswers, ArrowsAndButtonsMoveFromQuestionToQuestion)
{
    open();
    const auto at = [this](int question) {
        EXPECT_EQ(current(), question);
        EXPECT_EQ(focused(), question);
        EXPECT_EQ(scene(), storedScene(question));
    };
    key(Qt::Key_Right);
    at(1);
    key(Qt::Key_Down);
    at(2);
    run(Next);
    at(3);
    key(Qt::Key_Left);
    at(2);
    key(Qt::Key_Up);
    at(1);
    run(Previous);
    at(0);
}

TEST_F(frmTestAnswers, AKeyPressesItsButtonSoThatItClicks)
{
    struct Pressed
    {
        Qt::Key key;
        Command button;
    };
    open();
    for (const Pressed &row :
         {Pressed{Qt::Key_Right, Next}, Pressed{Qt::Key_Down, Next}, Pressed{Qt::Key_Left, Previous},
          Pressed{Qt::Key_Up, Previous}, Pressed{Qt::Key_J, FindNextOpen}}) {
        const QSignalSpy clicked(&button(row.button), &ImageButton::clicked);
        key(row.key);
        EXPECT_EQ(clicked.count(), 1) << row.key;
    }
    const QSignalSpy clicked(&button(Exit), &ImageButton::clicked);
    dialogs.press(QMessageBox::Cancel);
    key(Qt::Key_Escape);
    EXPECT_EQ(clicked.count(), 1);
    EXPECT_TRUE(isOpen());
}

TEST_F(frmTestAnswers, BeforeTheFirstQuestionThereIsNone)
{
    open();
    const std::array<std::function<void()>, 3> ways{[this] { key(Qt::Key_Left); }, [this] { key(Qt::Key_Up); },
                                                    [this] { run(Previous); }};
    for (const auto &back : ways) {
        const SeenMessage said = heard(back);
        EXPECT_EQ(said.text, QStringLiteral("This is the first question."));
        EXPECT_EQ(said.title, QStringLiteral("First Question"));
        EXPECT_EQ(said.icon, QMessageBox::Information);
        EXPECT_EQ(said.buttons, QMessageBox::Ok);
        EXPECT_EQ(focused(), 0);
        EXPECT_EQ(scene(), storedScene(0));
    }
}

TEST_F(frmTestAnswers, BehindTheLastQuestionThereIsNone)
{
    open(7);
    goTo(6);
    const std::array<std::function<void()>, 3> ways{[this] { key(Qt::Key_Right); }, [this] { key(Qt::Key_Down); },
                                                    [this] { run(Next); }};
    for (const auto &on : ways) {
        const SeenMessage said = heard(on);
        EXPECT_EQ(said.text, QStringLiteral("This is the last question."));
        EXPECT_EQ(said.title, QStringLiteral("Last Question"));
        EXPECT_EQ(said.icon, QMessageBox::Information);
        EXPECT_EQ(said.buttons, QMessageBox::Ok);
        EXPECT_EQ(focused(), 6);
        EXPECT_EQ(scene(), storedScene(6));
    }
}

TEST_F(frmTestAnswers, AnArrowThatIsHeldDownGoesOn)
{
    open();
    for (int repeat = 0; repeat < 3; ++repeat) {
        QKeyEvent event(QEvent::KeyPress, Qt::Key_Right, Qt::NoModifier, {}, true);
        QApplication::sendEvent(window->focusWidget(), &event);
    }
    EXPECT_EQ(current(), 3);
    EXPECT_EQ(focused(), 3);
}

TEST_F(frmTestAnswers, KeysWithCtrlOrAltAndOtherKeysDoNothing)
{
    open();
    goTo(2);
    const std::string before = scene();
    for (const Qt::KeyboardModifier modifier : {Qt::ControlModifier, Qt::AltModifier, Qt::MetaModifier}) {
        for (const Qt::Key other : {Qt::Key_Right, Qt::Key_Left, Qt::Key_J, Qt::Key_A, Qt::Key_2, Qt::Key_Q, Qt::Key_T,
                                    Qt::Key_F, Qt::Key_Escape}) {
            key(other, modifier);
        }
    }
    for (const Qt::Key other : {Qt::Key_D, Qt::Key_4, Qt::Key_0, Qt::Key_Return, Qt::Key_Space, Qt::Key_Home}) {
        key(other);
    }
    EXPECT_EQ(scene(), before);
    EXPECT_EQ(focused(), 2);
    EXPECT_EQ(answers(), std::vector<int>(12, 0));
    EXPECT_FALSE(selector(2).isMarkedForReview());
}

TEST_F(frmTestAnswers, TabAndShiftTabGoFromQuestionToQuestionAndAround)
{
    open();
    for (const int question : {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 0, 1}) {
        key(Qt::Key_Tab);
        EXPECT_EQ(focused(), question);
        EXPECT_EQ(scene(), storedScene(question));
    }
    for (const int question : {0, 11, 10, 9}) {
        key(Qt::Key_Backtab, Qt::ShiftModifier);
        EXPECT_EQ(focused(), question);
        EXPECT_EQ(scene(), storedScene(question));
    }
}

// Answering.

TEST_F(frmTestAnswers, LettersAndDigitsAnswerTheCurrentQuestionOnly)
{
    open();
    for (const int question : {0, 4}) {
        goTo(question);
        for (const AnswerKey &row : answerKeys) {
            selector(question).setSelectedAnswer(0);
            key(row.key, row.modifiers);
            EXPECT_EQ(selector(question).selectedAnswer(), row.answer) << row.key;
            EXPECT_EQ(current(), question);
            EXPECT_EQ(focused(), question);
        }
    }
    EXPECT_EQ(answers(), (std::vector<int>{3, 0, 0, 0, 3, 0, 0, 0, 0, 0, 0, 0}));
}

TEST_F(frmTestAnswers, QMarksTheCurrentQuestionAndTakesTheMarkBack)
{
    open();
    goTo(3);
    key(Qt::Key_Q);
    for (int question = 0; question < 12; ++question) {
        EXPECT_EQ(selector(question).isMarkedForReview(), question == 3) << question;
    }
    key(Qt::Key_Right);
    key(Qt::Key_Left);
    EXPECT_TRUE(selector(3).isMarkedForReview()) << "however often it is left";
    key(Qt::Key_Q);
    EXPECT_FALSE(selector(3).isMarkedForReview());
    EXPECT_EQ(answers(), std::vector<int>(12, 0));
    EXPECT_TRUE(storedMarks().empty()) << "it is a mark of the test, not of the card";
}

TEST_F(frmTestAnswers, TAndFFollowTheirRules)
{
    struct Rule
    {
        int before;
        int afterT;
        int afterF;
    };
    open();
    goTo(1);
    for (const Rule &rule : {Rule{0, 1, 2}, Rule{1, 0, 1}, Rule{2, 1, 0}, Rule{3, 2, 1}}) {
        selector(1).setSelectedAnswer(rule.before);
        key(Qt::Key_T);
        EXPECT_EQ(selector(1).selectedAnswer(), rule.afterT) << "T on " << rule.before;
        selector(1).setSelectedAnswer(rule.before);
        key(Qt::Key_F);
        EXPECT_EQ(selector(1).selectedAnswer(), rule.afterF) << "F on " << rule.before;
        EXPECT_EQ(current(), 1);
    }
    EXPECT_EQ(selector(0).selectedAnswer(), 0);
    EXPECT_EQ(selector(2).selectedAnswer(), 0);
}

TEST_F(frmTestAnswers, AClickOnACircleGoesToItsQuestionAndAnswersIt)
{
    open(5);
    window->resize(window->width(), 1000);
    for (const int question : {3, 1, 4}) {
        for (const int choice : {2, 3, 1}) {
            clickChoice(question, choice);
            EXPECT_EQ(selector(question).selectedAnswer(), choice);
            EXPECT_EQ(focused(), question);
            EXPECT_EQ(scene(), storedScene(question));
        }
    }
    EXPECT_EQ(answers(), (std::vector<int>{0, 1, 0, 1, 1}));
}

TEST_F(frmTestAnswers, AClickOnTheFlagGoesToItsQuestionAndMarksIt)
{
    open(5);
    window->resize(window->width(), 1000);
    clickFlag(2);
    EXPECT_TRUE(selector(2).isMarkedForReview());
    EXPECT_EQ(current(), 2);
    EXPECT_EQ(answers(), std::vector<int>(5, 0));
    clickFlag(2);
    EXPECT_FALSE(selector(2).isMarkedForReview());
}

TEST_F(frmTestAnswers, AClickOnTheNumberGoesToItsQuestionAndAnswersNothing)
{
    open(5);
    window->resize(window->width(), 1000);
    clickAt(selector(3), {3, selector(3).height() / 2});
    EXPECT_EQ(current(), 3);
    EXPECT_EQ(focused(), 3);
    EXPECT_EQ(answers(), std::vector<int>(5, 0));
}

TEST_F(frmTestAnswers, AClickOnASelectorThatIsHalfSeenShowsItWholeAndChoosesItsCircle)
{
    studyNewTopic(60);
    open(50);
    const int row = selector(1).y();
    const int half = selector(0).height() / 2;
    struct Clicked
    {
        int question;
        int scroll; ///< so that only the circles' upper or lower half is seen
        int choice;
    };
    const std::array<Clicked, 3> clicks{{{30, 30 * row - viewport().height() + half + 3, 2},
                                         {20, 20 * row + half - 3, 3},
                                         {41, 41 * row - viewport().height() + half + 3, 1}}};
    for (const auto &[question, scroll, choice] : clicks) {
        scrollBar().setValue(scroll);
        ASSERT_FALSE(isWhollySeen(question));
        clickChoice(question, choice);
        EXPECT_EQ(selector(question).selectedAnswer(), choice);
        EXPECT_EQ(current(), question);
        EXPECT_EQ(focused(), question);
        EXPECT_TRUE(isWhollySeen(question));
        EXPECT_EQ(scene(), storedScene(question));
    }
    EXPECT_EQ(std::ranges::count(answers(), 0), 47);
}

// The search.

TEST_F(frmTestAnswers, JAndItsButtonFindTheNextUnansweredQuestion)
{
    open();
    key(Qt::Key_J);
    EXPECT_EQ(focused(), 1);
    run(FindNextOpen);
    EXPECT_EQ(focused(), 2);
    EXPECT_EQ(scene(), storedScene(2));
    answerAllBut({5, 9});
    key(Qt::Key_J);
    EXPECT_EQ(focused(), 5);
    run(FindNextOpen);
    EXPECT_EQ(focused(), 9);
    EXPECT_EQ(scene(), storedScene(9));
}

TEST_F(frmTestAnswers, TheSearchGoesOnAtTheFirstQuestionBehindTheLast)
{
    open();
    answerAllBut({0, 4});
    goTo(11);
    key(Qt::Key_J);
    EXPECT_EQ(focused(), 0);
    goTo(7);
    selector(0).setSelectedAnswer(2);
    key(Qt::Key_J);
    EXPECT_EQ(focused(), 4);
    EXPECT_EQ(scene(), storedScene(4));
}

TEST_F(frmTestAnswers, ASearchThatFindsNothingSaysSoAndStays)
{
    open();
    answerAllBut({});
    for (const int question : {0, 5, 11}) {
        goTo(question);
        expectNoOther(heard([this] { key(Qt::Key_J); }));
        EXPECT_EQ(focused(), question);
        expectNoOther(heard([this] { run(FindNextOpen); }));
        EXPECT_EQ(focused(), question);
        EXPECT_EQ(scene(), storedScene(question));
    }
}

TEST_F(frmTestAnswers, ASearchComesBackToTheCurrentQuestionIfNoOtherIsOpen)
{
    open();
    for (const int question : {0, 6, 11}) {
        goTo(question);
        answerAllBut({question});
        key(Qt::Key_J); // no dialog opens
        EXPECT_EQ(focused(), question);
        EXPECT_EQ(scene(), storedScene(question));
    }
}

TEST_F(frmTestAnswers, TheSearchFindsMarkedQuestionsTooAnsweredOrNot)
{
    open();
    answerAllBut({});
    goTo(8);
    key(Qt::Key_Q);
    goTo(2);
    key(Qt::Key_Q);
    key(Qt::Key_J);
    EXPECT_EQ(focused(), 8);
    key(Qt::Key_J);
    EXPECT_EQ(focused(), 2);
    key(Qt::Key_Q);
    key(Qt::Key_J);
    EXPECT_EQ(focused(), 8);
    key(Qt::Key_Q);
    expectNoOther(heard([this] { key(Qt::Key_J); }));
}

TEST_F(frmTestAnswers, TheSearchShowsTheSelectorThatItFinds)
{
    studyNewTopic(60);
    open(50);
    answerAllBut({44});
    EXPECT_FALSE(isWhollySeen(44));
    key(Qt::Key_J);
    EXPECT_EQ(focused(), 44);
    EXPECT_TRUE(isWhollySeen(44));
}

// The focus.

TEST_F(frmTestAnswers, AClickAnywhereLeavesTheKeysWithTheCurrentSelector)
{
    open(12, 100);
    goTo(2);
    struct Place
    {
        const char *what;
        QWidget *widget;
        QPoint place;
    };
    for (const Place &row :
         {Place{"question", box().viewport(), box().viewport()->rect().center()},
          Place{"choice (a)", box(1).viewport(), box(1).viewport()->rect().center()},
          Place{"choice (c)", box(3).viewport(), box(3).viewport()->rect().center()},
          Place{"caption", &label(3), label(3).rect().center()}, Place{"number", &label(1), label(1).rect().center()},
          Place{"margin", window.data(), QPoint(2, window->height() - 2)},
          Place{"scroll bar", &scrollBar(), scrollBar().rect().center()}}) {
        clickAt(*row.widget, row.place);
        settle();
        EXPECT_EQ(focused(), 2) << row.what;
        EXPECT_EQ(current(), 2) << row.what;
    }
    run(Next);
    settle();
    EXPECT_EQ(focused(), 3);
    key(Qt::Key_B);
    EXPECT_EQ(selector(3).selectedAnswer(), 2);
}

TEST_F(frmTestAnswers, TheCurrentSelectorTakesTheFocusBackFromWhatHasNoUseForIt)
{
    open(12, 100);
    goTo(5);
    settle();
    for (QWidget *taker : std::initializer_list<QWidget *>{&box(), &box(2), &button(Next), &label(0), window.data()}) {
        taker->setFocus();
        settle();
        EXPECT_EQ(focused(), 5) << taker->objectName().toStdString();
        EXPECT_EQ(scene(), storedScene(5));
    }
    key(Qt::Key_Right);
    EXPECT_EQ(current(), 6);
}

TEST_F(frmTestAnswers, TheScrollBarMayKeepTheFocus)
{
    studyNewTopic(60);
    open(50);
    scrollBar().setFocus();
    settle();
    EXPECT_TRUE(scrollBar().hasFocus());
    EXPECT_EQ(current(), 0);
}

TEST_F(frmTestAnswers, ComingBackToTheWindowChangesNeitherTheQuestionNorTheColumn)
{
    studyNewTopic(60);
    for (const StoredCard &card : cards()) {
        std::string lines = "{\\rtf1 ";
        for (int line = 0; line < 100; ++line) {
            lines += "line\\par ";
        }
        writeElsewhere(card.key, CardField::Front, lines + "}");
        writeElsewhere(card.key, CardField::Back, lines + "}");
    }
    open(50);
    goTo(3);
    scrollBar().setValue(scrollBar().maximum());
    QScrollBar *text = box().verticalScrollBar();
    text->setValue(40);
    ASSERT_EQ(text->value(), 40);

    QWidget other;
    other.show();
    other.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&other));
    ASSERT_FALSE(selector(3).hasFocus());
    other.close();
    window->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(window));
    settle();

    EXPECT_EQ(focused(), 3);
    EXPECT_TRUE(selector(3).hasFocus());
    EXPECT_EQ(current(), 3);
    EXPECT_EQ(text->value(), 40) << "the question is not shown anew";
    EXPECT_EQ(scrollBar().value(), scrollBar().maximum());
}

TEST_F(frmTestAnswers, AMessageLeavesTheQuestionWhereItWasRead)
{
    open();
    goTo(11);
    const int scrolled = scrollBar().value();
    heard([this] { key(Qt::Key_Right); });
    window->activateWindow(); // as a desktop does
    ASSERT_TRUE(QTest::qWaitForWindowActive(window));
    EXPECT_TRUE(selector(11).hasFocus());
    EXPECT_EQ(scrollBar().value(), scrolled);
    EXPECT_EQ(scene(), storedScene(11));
    key(Qt::Key_C);
    EXPECT_EQ(selector(11).selectedAnswer(), 3);
}

} // namespace
