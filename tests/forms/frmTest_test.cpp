#include "platform/Twips.h"
#include "tests/forms/TestWindowTest.h"
#include "tests/support/HelpWindows.h"

#include <QGuiApplication>
#include <QRegularExpression>
#include <QScreen>

namespace {

using frmTestTest = TestWindowTest;

TEST_F(frmTestTest, OpensOnTheFirstQuestionWithTheKeysAtItsSelector)
{
    open();
    EXPECT_EQ(window->windowTitle(), QStringLiteral("Cramlet: World History"));
    EXPECT_EQ(current(), 0);
    EXPECT_TRUE(selector(0).hasFocus());
    EXPECT_EQ(scene(), storedScene(0));
    EXPECT_EQ(questionCount(), 12);
    EXPECT_FALSE(isGraded());
    EXPECT_EQ(answers(), std::vector<int>(12, 0));
    for (int question = 0; question < 12; ++question) {
        EXPECT_FALSE(selector(question).isMarkedForReview()) << question;
        EXPECT_EQ(selector(question).questionNumber(), QString::number(question + 1));
    }
}

TEST_F(frmTestTest, WithoutALimitTheClockShowsTheTimeOfDay)
{
    open();
    static const QRegularExpression hoursAndMinutes(QStringLiteral("\\d{1,2}\\D\\d{2}"));
    EXPECT_TRUE(hoursAndMinutes.match(clockText()).hasMatch()) << clockText().toStdString();
    reopen(12, 60, 10);
    EXPECT_EQ(clockText(), QStringLiteral("10:0"));
}

TEST_F(frmTestTest, EveryButtonHasItsHintAndAPictureOfItsOwn)
{
    open();
    const std::array<const char *, 5> hints{"Find the next Marked or Unanswered Question", "Help...",
                                            "Previous Question", "Exit (Esc)", "Next Question"};
    QStringList pictures;
    for (const Command command : {FindNextOpen, Help, Previous, Exit, Next}) {
        EXPECT_EQ(button(command).toolTip(), QString::fromLatin1(hints.at(command)));
        EXPECT_FALSE(pictures.contains(button(command).picture())) << command;
        EXPECT_TRUE(QFile::exists(QStringLiteral(":/icons/%1.svg").arg(button(command).picture()))) << command;
        pictures.append(button(command).picture());
    }
}

TEST_F(frmTestTest, TheLabelsHaveTheNotebooksHandAtTheirSizes)
{
    open();
    const std::array<int, 6> points{18, 18, 14, 14, 14, 8};
    for (int index = 0; index < 6; ++index) {
        EXPECT_EQ(label(index).font().pointSize(), points.at(static_cast<std::size_t>(index))) << index;
        EXPECT_EQ(label(index).font().families().value(0), QStringLiteral("Comic Sans MS")) << index;
    }
    EXPECT_EQ(label(2).text(), QStringLiteral("(a)"));
    EXPECT_EQ(label(3).text(), QStringLiteral("(b)"));
    EXPECT_EQ(label(4).text(), QStringLiteral("(c)"));
}

TEST_F(frmTestTest, AScreenReaderIsToldWhatEachBoxIs)
{
    open();
    EXPECT_EQ(box().accessibleName(), QStringLiteral("Question"));
    EXPECT_EQ(box(1).accessibleName(), QStringLiteral("(a)"));
    EXPECT_EQ(box(2).accessibleName(), QStringLiteral("(b)"));
    EXPECT_EQ(box(3).accessibleName(), QStringLiteral("(c)"));
}

TEST_F(frmTestTest, ThePageHasTheLearnersColour)
{
    module->settings.write(QStringLiteral("Settings"), {{QStringLiteral("Color"), QString::number(0xccffff)}}); // BGR
    open();
    EXPECT_EQ(window->paperColor(), QColor(0xff, 0xff, 0xcc));
}

// The questions.

TEST_F(frmTestTest, EveryQuestionIsComposedFromTheStoredFields)
{
    open();
    for (int question = 0; question < 12; ++question) {
        EXPECT_EQ(scene(), storedScene(question));
        EXPECT_EQ(focused(), question);
        if (question < 11) {
            key(Qt::Key_Right);
        }
    }
}

TEST_F(frmTestTest, ATestOf50QuestionsAsksTheFirst50Of60CardsInTheirNewOrder)
{
    studyNewTopic(60);
    open(50);
    EXPECT_EQ(questionCount(), 50);
    const std::vector<StoredCard> test = cardsOfTest();
    for (int question = 0; question < 50; ++question) {
        EXPECT_EQ(scene(), sceneOf(test, question));
        EXPECT_EQ(correctAnswer(question), test.at(static_cast<std::size_t>(question)).answer);
        if (question < 49) {
            key(Qt::Key_Right);
        }
    }
    EXPECT_EQ(heard([this] { key(Qt::Key_Right); }).title, QStringLiteral("Last Question")) << "10 cards are not asked";
}

TEST_F(frmTestTest, EveryQuestionIsThereAgainOnTheWayBack)
{
    open();
    std::vector<std::string> onTheWay{scene()};
    for (int question = 1; question < 12; ++question) {
        key(Qt::Key_Right);
        onTheWay.push_back(scene());
    }
    for (int question = 10; question >= 0; --question) {
        key(Qt::Key_Left);
        EXPECT_EQ(scene(), onTheWay.at(static_cast<std::size_t>(question)));
    }
}

TEST_F(frmTestTest, TheShareOfMultipleChoiceIsKeptAtBothEnds)
{
    for (const int percent : {0, 100}) {
        reopen(12, percent);
        for (int question = 0; question < 12; ++question) {
            goTo(question);
            EXPECT_EQ(label(5).text(), percent == 0 ? QStringLiteral("True or False (A=True, B=False)")
                                                    : QStringLiteral("Multiple Choice"));
            EXPECT_TRUE(box(1).isVisible());
            EXPECT_EQ(box(2).isVisible(), percent == 100);
            EXPECT_EQ(box(3).isVisible(), percent == 100);
            EXPECT_EQ(scene(), storedScene(question));
            EXPECT_LE(correctAnswer(question), percent == 100 ? 3 : 2);
        }
    }
}

TEST_F(frmTestTest, FiveCardsMakeFiveQuestionsAndTheLastCardIsNoWrongAnswer)
{
    studyNewTopic(5);
    open(5);
    const std::vector<StoredCard> test = cardsOfTest();
    for (int question = 0; question < 5; ++question) {
        goTo(question);
        EXPECT_EQ(scene(), sceneOf(test, question));
        const StoredCard &card = test.at(static_cast<std::size_t>(question));
        EXPECT_NE(card.wrong1, card.wrong2);
        for (const int wrong : {card.wrong1, card.wrong2}) {
            EXPECT_NE(wrong, question);
            EXPECT_GE(wrong, 0);
            EXPECT_LE(wrong, 3);
        }
    }
}

TEST_F(frmTestTest, GradedAFalseStatementShowsItsOwnAnswerTooAndNothingElseChanges)
{
    studyNewTopic(60);
    open(50, 30);
    const std::vector<StoredCard> test = cardsOfTest();
    grade();
    EXPECT_TRUE(isGraded());
    int falseStatements = 0;
    for (int question = 0; question < 50; ++question) {
        const StoredCard &card = test.at(static_cast<std::size_t>(question));
        EXPECT_EQ(scene(), sceneOf(test, question, true));
        EXPECT_TRUE(selector(question).isGraded());
        if (card.isTrueFalse && card.answer == 2) {
            ++falseStatements;
            EXPECT_EQ(box(2).toPlainText().trimmed().toStdString(), card.isFront ? card.back : card.front);
            EXPECT_FALSE(box(3).isVisible());
        }
        if (question < 49) {
            key(Qt::Key_Right);
        }
    }
    EXPECT_GT(falseStatements, 0) << "a chance of 1 in 10^9";
}

TEST_F(frmTestTest, TwoTestsOnTheSameCardsDiffer)
{
    const auto keysOf = [](const std::vector<StoredCard> &test) {
        std::vector<int> keys;
        for (const StoredCard &card : test) {
            keys.push_back(card.key);
        }
        return keys;
    };
    const auto questionsOf = [](const std::vector<StoredCard> &byKey) {
        std::vector<int> drawn;
        for (const StoredCard &card : byKey) {
            drawn.insert(drawn.end(), {card.isTrueFalse, card.isFront, card.answer, card.wrong1, card.wrong2});
        }
        return drawn;
    };
    studyNewTopic(60);
    open(50);
    const auto keys = keysOf(cardsOfTest());
    const auto questions = questionsOf(cards());
    const std::string first = scene();
    EXPECT_FALSE(std::ranges::is_sorted(keys)) << "the cards are shuffled";
    leave();
    EXPECT_EQ(keysOf(cardsOfTest()), keys) << "a test stays on its cards";
    open(50);
    EXPECT_NE(keysOf(cardsOfTest()), keys);
    EXPECT_NE(questionsOf(cards()), questions);
    EXPECT_EQ(scene(), storedScene(0));
}

TEST_F(frmTestTest, OnlyTheCardsOfTheStudyBecomeTheTest)
{
    const auto othersShuffle = [this] {
        study(small);
        std::vector<float> keys;
        for (const StoredCard &card : cards()) {
            keys.push_back(card.shuffle);
        }
        study(large);
        return keys;
    };
    const auto before = othersShuffle();
    open();
    EXPECT_EQ(othersShuffle(), before);
}

TEST_F(frmTestTest, TextsKeepTheirFormat)
{
    for (const StoredCard &card : cards()) {
        for (const auto side : {CardField::Front, CardField::Back}) {
            writeElsewhere(card.key, side, "{\\rtf1 {\\b heavy}\\par}");
        }
    }
    open(12, 100);
    for (RichTextBox *any : {&box(), &box(1), &box(2), &box(3)}) {
        EXPECT_EQ(any->toPlainText().trimmed(), QStringLiteral("heavy"));
        QTextCursor inside(any->document());
        inside.setPosition(2);
        EXPECT_GE(inside.charFormat().fontWeight(), QFont::Bold);
    }
}

TEST_F(frmTestTest, NoTextCanBeChanged)
{
    open(12, 100);
    const std::string before = scene();
    for (RichTextBox *any : {&box(), &box(1), &box(2), &box(3)}) {
        QTest::keyClick(any, Qt::Key_X);
        QTest::keyClick(any, Qt::Key_Delete);
        EXPECT_TRUE(any->isLocked());
    }
    EXPECT_EQ(scene(), before);
}

// The window.

TEST_F(frmTestTest, TheHelpIsThatOnTests)
{
    open();
    run(Help);
    expectHelp(HelpContext::Test);
    EXPECT_EQ(focused(), 0);
}

TEST_F(frmTestTest, TheFirstWindowHasHalfOfTheScreensWidthAndSevenTenthsOfItsHeight)
{
    open();
    const QSize screen = QGuiApplication::primaryScreen()->size();
    const QSize outer = window->frameGeometry().size();
    const QSize frame = outer - window->size();
    EXPECT_NEAR(outer.width(), qMax(screen.width() / 2, window->minimumWidth() + frame.width()), 2);
    EXPECT_NEAR(outer.height(), qMax(screen.height() * 7 / 10, window->minimumHeight() + frame.height()), 2);
}

TEST_F(frmTestTest, ThePlacementIsThatOfTheTestBefore)
{
    open();
    window->resize(window->minimumSize() + QSize(75, 45));
    const QSize left = window->size();
    const QSize outer = window->frameGeometry().size();
    leave();
    EXPECT_EQ(setting("Test", "Width").toInt(), qRound(toTwips(outer.width())));
    EXPECT_EQ(setting("Test", "Height").toInt(), qRound(toTwips(outer.height())));
    open();
    EXPECT_EQ(window->size(), left);
}

} // namespace
