#include "tests/forms/TestWindowTest.h"
#include "tests/support/Heard.h"

namespace {

class TestAnnouncements : public TestWindowTest
{
protected:
    static QString accessOf(SelectAnswer &selector, QAccessible::Text text)
    {
        return QAccessible::queryAccessibleInterface(&selector)->text(text);
    }
};

TEST_F(TestAnnouncements, TheSelectorThatIsReachedTellsTheQuestionWithItsChoices)
{
    open(12, 100);
    for (const int question : {0, 1, 2}) {
        goTo(question);
        const QString told = accessOf(selector(question), QAccessible::Description);
        QString seen = label(5).text() + QStringLiteral("\n") + box().toPlainText().trimmed();
        for (int choice = 1; choice <= 3; ++choice) {
            seen += QStringLiteral("\n") + label(choice + 1).text() + u' ' + box(choice).toPlainText().trimmed();
        }
        EXPECT_EQ(told, seen);
        EXPECT_TRUE(seen.contains(QStringLiteral("\n(c) "))) << seen.toStdString();
    }
}

TEST_F(TestAnnouncements, AStatementIsToldWithoutChoicesThatAreNotSeen)
{
    open(12, 0);
    const QString told = accessOf(selector(0), QAccessible::Description);
    EXPECT_TRUE(told.startsWith(QStringLiteral("True or False (A=True, B=False)\n"))) << told.toStdString();
    EXPECT_TRUE(told.contains(QStringLiteral("(a) ")));
    EXPECT_FALSE(told.contains(QStringLiteral("(b) ")));
}

TEST_F(TestAnnouncements, TheQuestionIsKnownBeforeTheFocusIsTold)
{
    open();
    const Heard heard;
    key(Qt::Key_Right);
    const auto &events = Heard::events();
    const auto indexOf = [&](QAccessible::Event type) {
        const auto found = std::ranges::find_if(
            events, [&](const Heard::Event &event) { return event.object == &selector(1) && event.type == type; });
        return found - events.begin();
    };
    ASSERT_EQ(Heard::count(selector(1), QAccessible::Focus), 1);
    ASSERT_EQ(Heard::count(selector(1), QAccessible::DescriptionChanged), 1);
    EXPECT_LT(indexOf(QAccessible::DescriptionChanged), indexOf(QAccessible::Focus));
}

TEST_F(TestAnnouncements, AnAnswerAndAFlagAreTold)
{
    open();
    const Heard heard;
    key(Qt::Key_B);
    key(Qt::Key_Q);
    key(Qt::Key_A);
    EXPECT_EQ(Heard::namesOf(selector(0)), (QStringList{QStringLiteral("Question 1, answered B"),
                                                        QStringLiteral("Question 1, answered B, marked for review"),
                                                        QStringLiteral("Question 1, answered A, marked for review")}));
}

TEST_F(TestAnnouncements, TheResultIsToldAtEverySelector)
{
    open();
    answerAll(7);
    const Heard heard;
    grade();
    for (int question = 0; question < questionCount(); ++question) {
        const QStringList told = Heard::namesOf(selector(question));
        ASSERT_EQ(told.size(), 1) << question;
        EXPECT_EQ(told.front().contains(QStringLiteral(", right")), question < 7) << told.front().toStdString();
        EXPECT_EQ(told.front().contains(QStringLiteral(", wrong, the right answer is ")), question >= 7);
        EXPECT_EQ(Heard::count(selector(question), QAccessible::StateChanged), 1);
        EXPECT_TRUE(QAccessible::queryAccessibleInterface(&selector(question))->state().readOnly);
    }
}

TEST_F(TestAnnouncements, AReviewedStatementTellsTheCardsOwnAnswer)
{
    studyNewTopic(50);
    open(50, 0);
    int question = 0;
    while (correctAnswer(question) != 2) { // that none is false has a chance of 1 in 10^15
        ASSERT_LT(++question, questionCount());
    }
    grade();
    goTo(question);
    EXPECT_TRUE(accessOf(selector(question), QAccessible::Description).contains(QStringLiteral("(b) ")));
}

} // namespace
