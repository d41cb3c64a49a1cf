#include "platform/ImageButton.h"
#include "store/StoreError.h"
#include "tests/forms/EditCardsTest.h"

#include <QLabel>
#include <QPushButton>
#include <QSignalSpy>
#include <QWindow>

#include <array>

namespace {

using frmEditCardsTest = EditCardsTest;

// Opening and closing.

TEST_F(frmEditCardsTest, OpensOnTheFirstCardWithTheFocusInTheFront)
{
    open(small);
    EXPECT_EQ(caption(), "Edit Flash Cards: Small & tidy (Card 1 of 4)");
    EXPECT_EQ(shown(), "front 1|back 1");
    EXPECT_TRUE(hasFocus(Front));
    EXPECT_EQ(control<QLabel>(*window, "Label1(0)").text(), QStringLiteral("Front (Question)"));
    EXPECT_EQ(control<QLabel>(*window, "Label1(1)").text(), QStringLiteral("Back (Answer)"));
    EXPECT_TRUE(control<QWidget>(*window, "CoolBar1").isVisible());
}

TEST_F(frmEditCardsTest, EveryCommandHasItsHint)
{
    open(small);
    const std::array<const char *, 7> hints{"First Flash Card",  "Previous Flash Card", "New Flash Card", "Exit (Esc)",
                                            "Delete Flash Card", "Next Flash Card",     "Last Flash Card"};
    for (std::size_t i = 0; i < hints.size(); ++i) {
        const auto &button = control<ImageButton>(*window, nameOf(static_cast<Command>(i)).c_str());
        EXPECT_EQ(button.toolTip().toStdString(), hints.at(i));
        EXPECT_EQ(button.accessibleName().toStdString(), hints.at(i));
    }
}

TEST_F(frmEditCardsTest, OpeningATopicWithoutCardsCreatesOneCardAtOnce)
{
    open(empty, QStringLiteral("Empty"));
    EXPECT_EQ(caption(), "Edit Flash Cards: Empty (Card 1 of 1)");
    EXPECT_EQ(shown(), "|");
    EXPECT_EQ(stored(empty), Texts{"|"}) << "before anything is typed";
    EXPECT_TRUE(hasFocus(Front));
}

TEST_F(frmEditCardsTest, ClosingThatCardWithoutTypingDeletesItAgain)
{
    open(empty);
    run(Exit);
    EXPECT_FALSE(isOpen());
    EXPECT_EQ(stored(empty), Texts{});
}

TEST_F(frmEditCardsTest, ClosingStoresWhatWasTyped)
{
    open(empty);
    typeBoth("What is ice?", "Frozen water");
    run(Exit);
    EXPECT_EQ(stored(empty), Texts{"What is ice?|Frozen water"});
}

TEST_F(frmEditCardsTest, TheCloseBoxStoresAsTheExitButtonDoes)
{
    open(small);
    type(Back, "typed");
    EXPECT_TRUE(window->close());
    EXPECT_EQ(stored(small), with(untouched(4), 1, "front 1|typed"));
}

TEST_F(frmEditCardsTest, ClosingTellsSoOnceDeletesTheWindowAndFreesTheFile)
{
    open(small);
    const QSignalSpy closed(window, &frmEditCards::closed);
    key(Qt::Key_Escape);
    EXPECT_EQ(closed.count(), 1);
    settle();
    EXPECT_TRUE(window.isNull());
    EXPECT_FALSE(std::filesystem::exists(file.string() + "-journal"));
    std::filesystem::rename(file, folder.file("moved.crl"));
    EXPECT_NO_THROW(SubjectStore(folder.file("moved.crl")));
}

TEST_F(frmEditCardsTest, AModalEditorBlocksItsOwnerUntilItCloses)
{
    auto *behind = new QPushButton(&owner);
    behind->setGeometry(0, 0, 200, 100);
    behind->show();
    const QSignalSpy clicked(behind, &QPushButton::clicked);
    const auto clickOwner = [this] {
        QTest::mouseClick(owner.windowHandle(), Qt::LeftButton, {}, {50, 50});
        settle();
    };
    clickOwner();
    ASSERT_EQ(clicked.count(), 1);
    open(small);
    EXPECT_EQ(window->parentWidget(), &owner);
    EXPECT_TRUE(window->isWindow());
    clickOwner();
    EXPECT_EQ(clicked.count(), 1) << "while the editor is open";
    run(Exit);
    clickOwner();
    EXPECT_EQ(clicked.count(), 2);
}

TEST_F(frmEditCardsTest, CardsThatCannotBeOpenedThrowAndLeaveNothingBehind)
{
    std::filesystem::remove(file);
    const auto windows = QApplication::allWidgets().size();
    EXPECT_THROW(make(small, QStringLiteral("Small")), StoreError);
    EXPECT_EQ(QApplication::allWidgets().size(), windows);
    EXPECT_TRUE(owner.findChildren<QWidget *>().isEmpty());
    EXPECT_FALSE(std::filesystem::exists(file));
}

TEST_F(frmEditCardsTest, ItRunsTheCardQueryAsItStands)
{
    module->study.cardQuery = "SELECT * FROM FlashCards WHERE NIndex = " + std::to_string(large) + ";";
    window = new frmEditCards(*module, {small, QStringLiteral("Small")}, &owner);
    EXPECT_EQ(place(), "Card 1 of 12") << "what the query selects, whatever the topic";
}

TEST_F(frmEditCardsTest, TheCaptionShowsATopicsNameToTheLetter)
{
    open(small, QStringLiteral("100 %2 & [*] %1"));
    EXPECT_EQ(window->windowHandle()->title().toStdString(), "Edit Flash Cards: 100 %2 & [*] %1 (Card 1 of 4)");
}

// Walking from card to card.

TEST_F(frmEditCardsTest, EveryMoveShowsTheCardItsNumberAndTheFocusInTheFront)
{
    open(small);
    struct Step
    {
        Command command;
        int card;
    };
    for (const Step &step : {Step{Next, 2}, Step{Next, 3}, Step{Previous, 2}, Step{Last, 4}, Step{Previous, 3},
                             Step{First, 1}, Step{Last, 4}, Step{First, 1}, Step{Next, 2}}) {
        enter(Back);
        run(step.command);
        const std::string number = std::to_string(step.card);
        EXPECT_EQ(caption(), "Edit Flash Cards: Small & tidy (Card " + number + " of 4)");
        EXPECT_EQ(shown(), "front " + number + "|back " + number);
        EXPECT_TRUE(hasFocus(Front));
    }
}

TEST_F(frmEditCardsTest, WalkingThroughCardsThatNobodyChangesLeavesEveryByteAsItWas)
{
    {
        SubjectStore store(file);
        CardSet cards = store.openRecordSet(cardsOfTopic(small));
        cards.edit();
        cards.setText(CardField::Front, "{\\rtf1\\ansi\\ansicpg1252 {\\*\\unknown kept}odd  \\b spacing\\b0 }");
        cards.setText(CardField::Back, "{\\rtf1\\ansi caf\xe9 and caf\\'e9}\r\n");
        cards.update();
    }
    const std::vector<StoredCard> before = storedCards(small);
    open(small);
    goTo(4);
    run(Previous);
    run(First);
    run(Last);
    run(Exit);
    EXPECT_TRUE(storedCards(small) == before);
}

TEST_F(frmEditCardsTest, ASideThatIsNoRtfIsShownAsTextAndStoredAsRtf)
{
    {
        SubjectStore store(file);
        CardSet cards = store.openRecordSet(cardsOfTopic(small));
        cards.edit();
        cards.setText(CardField::Back, "no RTF at all");
        cards.update();
    }
    open(small);
    EXPECT_EQ(shown(), "front 1|no RTF at all");
    run(Next);
    EXPECT_TRUE(storedCards(small).front().back.starts_with("{\\rtf1"));
    EXPECT_EQ(stored(small), with(untouched(4), 1, "front 1|no RTF at all"));
}

TEST_F(frmEditCardsTest, EveryMoveAwayStoresWhatWasTyped)
{
    open(small);
    type(Front, "one");
    run(Next);
    EXPECT_EQ(stored(small).at(0), "one|back 1");
    type(Back, "two");
    run(Last);
    EXPECT_EQ(stored(small).at(1), "front 2|two");
    type(Back, "four");
    run(Previous);
    EXPECT_EQ(stored(small).at(3), "front 4|four");
    type(Front, "three");
    run(First);
    EXPECT_EQ(stored(small), (Texts{"one|back 1", "front 2|two", "three|back 3", "front 4|four"}));
    EXPECT_EQ(shown(), "one|back 1");
}

TEST_F(frmEditCardsTest, ACardIsWrittenAsItIsLeftEvenIfNothingWasTyped)
{
    open(small);
    {
        SubjectStore other(file);
        CardSet cards = other.openRecordSet(cardsOfTopic(small));
        cards.edit();
        cards.setText(CardField::Back, rtfOf("changed meanwhile"));
        cards.update();
    }
    run(Next);
    EXPECT_EQ(stored(small), untouched(4)) << "as the learner saw it";
}

TEST_F(frmEditCardsTest, OnTheFirstCardFirstStoresTheCardAndThenSaysThatItIsTheFirst)
{
    open(small);
    type(Back, "typed");
    dialogs.act([this](QWidget &dialog) {
        EXPECT_EQ(stored(small), with(untouched(4), 1, "front 1|typed")) << "while the message stands";
        QTest::keyClick(&dialog, Qt::Key_Return);
    });
    run(First);
    ASSERT_EQ(dialogs.seen().size(), 1U);
    expectFirstCardMessage(dialogs.last());
    EXPECT_EQ(place(), "Card 1 of 4");
    EXPECT_EQ(shown(), "front 1|typed");
    EXPECT_TRUE(hasFocus(Back)) << "nothing moved";
}

TEST_F(frmEditCardsTest, OnTheFirstCardPreviousSaysSoWithoutStoring)
{
    open(small);
    type(Back, "typed");
    expectFirstCardMessage(heard([this] { run(Previous); }));
    EXPECT_EQ(stored(small), untouched(4));
    EXPECT_EQ(shown(), "front 1|typed");
    EXPECT_EQ(place(), "Card 1 of 4");
    run(Next);
    EXPECT_EQ(stored(small), with(untouched(4), 1, "front 1|typed")) << "it was not lost";
}

TEST_F(frmEditCardsTest, OnTheLastCardLastSaysSoWithoutStoring)
{
    open(small);
    run(Last);
    type(Front, "typed");
    expectLastCardMessage(heard([this] { run(Last); }));
    EXPECT_EQ(stored(small), untouched(4));
    EXPECT_EQ(shown(), "typed|back 4");
    EXPECT_EQ(place(), "Card 4 of 4");
    run(Previous);
    EXPECT_EQ(stored(small), with(untouched(4), 4, "typed|back 4")) << "it was not lost";
}

TEST_F(frmEditCardsTest, OnTheLastCardNextStoresItAndCreatesANewCard)
{
    open(small);
    run(Last);
    type(Back, "typed");
    run(Next);
    EXPECT_EQ(caption(), "Edit Flash Cards: Small & tidy (Card 5 of 5)");
    EXPECT_EQ(shown(), "|");
    EXPECT_TRUE(hasFocus(Front));
    EXPECT_EQ(stored(small), with(with(untouched(4), 4, "front 4|typed"), "|"));
}

TEST_F(frmEditCardsTest, OnATopicsOnlyCardBothEndsAreReached)
{
    open(empty);
    typeBoth("front", "back");
    expectFirstCardMessage(heard([this] { run(Previous); }));
    expectLastCardMessage(heard([this] { run(Last); }));
    EXPECT_EQ(stored(empty), Texts{"|"}) << "neither stores";
    expectFirstCardMessage(heard([this] { run(First); }));
    EXPECT_EQ(stored(empty), Texts{"front|back"});
    EXPECT_EQ(place(), "Card 1 of 1");
}

// New cards.

TEST_F(frmEditCardsTest, NewStoresTheCardAndPutsABlankOneBehindTheLast)
{
    open(small);
    goTo(2);
    type(Back, "typed");
    run(New);
    EXPECT_EQ(place(), "Card 5 of 5");
    EXPECT_EQ(shown(), "|");
    EXPECT_TRUE(hasFocus(Front));
    EXPECT_EQ(stored(small), with(with(untouched(4), 2, "front 2|typed"), "|"));
    run(Previous);
    EXPECT_EQ(shown(), "front 3|back 3") << "the unused card went first";
    EXPECT_EQ(place(), "Card 3 of 4");
}

TEST_F(frmEditCardsTest, ANewCardBelongsToTheTopicAndHoldsNothingElse)
{
    open(small);
    run(New);
    typeBoth("question", "answer");
    run(Exit);
    const StoredCard card = storedCards(small).back();
    EXPECT_EQ(card.topic, small);
    EXPECT_TRUE(card == (StoredCard{.key = card.key,
                                    .topic = small,
                                    .front = card.front,
                                    .back = card.back,
                                    .marked = false,
                                    .shuffle = 0,
                                    .isTrueFalse = false,
                                    .isFront = false,
                                    .answer = 0,
                                    .wrong1 = 0,
                                    .wrong2 = 0}));
    EXPECT_EQ(stored(large), untouched(12));
}

TEST_F(frmEditCardsTest, SeveralNewCardsCanBeTypedInARow)
{
    open(empty);
    for (const char *text : {"a", "b", "c"}) {
        type(Front, text);
        run(text == std::string("b") ? New : Next);
    }
    EXPECT_EQ(place(), "Card 4 of 4");
    run(Exit);
    EXPECT_EQ(stored(empty), (Texts{"a|", "b|", "c|"}));
}

TEST_F(frmEditCardsTest, TheFieldsThatBelongToStudyingKeepTheirValues)
{
    {
        SubjectStore store(file);
        CardSet cards = store.openRecordSet(cardsOfTopic(small));
        cards.edit();
        cards.setFlag(CardField::Marked, true);
        cards.setSingle(CardField::Shuffle, 0.625F);
        cards.setFlag(CardField::isTrueFalse, true);
        cards.setFlag(CardField::isFront, true);
        cards.setNumber(CardField::Answer, 3);
        cards.setNumber(CardField::Wrong1, 7);
        cards.setNumber(CardField::Wrong2, 11);
        cards.update();
    }
    StoredCard expected = storedCards(small).front();
    open(small);
    type(Back, "typed");
    run(Next);
    const StoredCard card = storedCards(small).front();
    EXPECT_EQ(plainTextOf(card.back), "typed");
    expected.back = card.back;
    EXPECT_TRUE(card == expected);
}

// Deleting.

TEST_F(frmEditCardsTest, DeleteAsksAndDoesNothingAfterNo)
{
    open(small);
    goTo(2);
    type(Back, "typed");
    const SeenMessage question = heard([this] { run(Delete); }, QMessageBox::No);
    EXPECT_EQ(question.text, QStringLiteral("Are you sure you want to delete this flash card?"));
    EXPECT_EQ(question.title, QStringLiteral("Delete Flash Card"));
    EXPECT_EQ(question.icon, QMessageBox::Question);
    EXPECT_EQ(question.buttons, QMessageBox::Yes | QMessageBox::No);
    EXPECT_EQ(place(), "Card 2 of 4");
    EXPECT_EQ(shown(), "front 2|typed");
    EXPECT_TRUE(hasFocus(Back));
    EXPECT_EQ(stored(small), untouched(4)) << "asking stores nothing";
}

TEST_F(frmEditCardsTest, EscapeInTheDeleteQuestionMeansNo)
{
    open(small);
    dialogs.key(Qt::Key_Escape);
    run(Delete);
    EXPECT_EQ(dialogs.seen().size(), 1U);
    EXPECT_EQ(stored(small), untouched(4));
    EXPECT_TRUE(isOpen());
}

TEST_F(frmEditCardsTest, AfterDeletingTheCardBeforeIsShownAndAfterTheFirstTheNewFirst)
{
    open(small);
    goTo(3);
    enter(Back);
    deleteCard();
    EXPECT_EQ(place(), "Card 2 of 3");
    EXPECT_EQ(shown(), "front 2|back 2");
    EXPECT_TRUE(hasFocus(Front));
    EXPECT_EQ(stored(small), without(untouched(4), 3));

    run(Last);
    deleteCard();
    EXPECT_EQ(place(), "Card 2 of 2");
    EXPECT_EQ(shown(), "front 2|back 2");

    run(First);
    deleteCard();
    EXPECT_EQ(place(), "Card 1 of 1");
    EXPECT_EQ(shown(), "front 2|back 2");
    EXPECT_EQ(stored(small), Texts{"front 2|back 2"});
}

TEST_F(frmEditCardsTest, DeletingDoesNotStoreWhatWasTyped)
{
    open(small);
    goTo(2);
    type(Front, "typed");
    deleteCard();
    EXPECT_EQ(stored(small), without(untouched(4), 2));
}

TEST_F(frmEditCardsTest, DeletingTheOnlyCardOfATopicLeavesANewBlankOne)
{
    open(empty);
    typeBoth("front", "back");
    heard([this] { run(First); });
    const int deleted = storedCards(empty).front().key;
    deleteCard();
    EXPECT_EQ(place(), "Card 1 of 1");
    EXPECT_EQ(shown(), "|");
    EXPECT_TRUE(hasFocus(Front));
    ASSERT_EQ(stored(empty), Texts{"|"});
    EXPECT_NE(storedCards(empty).front().key, deleted);
    EXPECT_EQ(storedCards(empty).front().topic, empty);
    run(Exit);
    EXPECT_EQ(stored(empty), Texts{});
}

} // namespace
