#include "tests/forms/FlashCardTest.h"

#include <QFile>
#include <QScrollBar>

#include <algorithm>
#include <functional>
#include <ostream>
#include <set>

namespace {

// Marks.

class frmFlashCardMarks : public FlashCardTest
{
};

struct Way
{
    const char *name;
    std::function<void(frmFlashCard &)> toggle;
};

void PrintTo(const Way &row, std::ostream *out)
{
    *out << row.name;
}

class EveryWayToMark : public frmFlashCardMarks, public testing::WithParamInterface<Way>
{
protected:
    void toggle() { GetParam().toggle(*window); }
};

TEST_P(EveryWayToMark, TogglesTheMarkOfTheCardAndStoresItAtOnce)
{
    open();
    goTo(3);
    toggle();
    EXPECT_EQ(scene(), "3 of 12, front 3, marked");
    EXPECT_EQ(storedMarks(), std::vector{3});
    toggle();
    EXPECT_EQ(scene(), "3 of 12, front 3") << "twice is as before";
    EXPECT_EQ(storedMarks(), std::vector<int>{});
}

TEST_P(EveryWayToMark, LeavesSideAndCountdownAlone)
{
    open(8);
    passSecond();
    const int before = secondsBegun();
    toggle();
    EXPECT_EQ(scene(), "1 of 12, front 1, 7 running, marked");
    EXPECT_EQ(secondsBegun(), before);
    key(Qt::Key_P);
    toggle();
    EXPECT_EQ(scene(), "1 of 12, front 1, 7 paused");
    key(Qt::Key_Down);
    toggle();
    EXPECT_EQ(scene(), "1 of 12, back 1, 7 ended, marked");
}

INSTANTIATE_TEST_SUITE_P(
    frmFlashCard, EveryWayToMark,
    testing::Values(Way{"TheKey", [](frmFlashCard &window) { QTest::keyClick(window.focusWidget(), Qt::Key_M); }},
                    Way{"TheButtonOfTheBar", [](frmFlashCard &window) { click(window, "Image1(0)"); }},
                    Way{"TheButtonByTheMark", [](frmFlashCard &window) { click(window, "Image1(1)"); }}),
    [](const auto &row) { return std::string(row.param.name); });

TEST_F(frmFlashCardMarks, LeaveALongTextWhereItIsRead)
{
    writeElsewhere(1, CardField::Front, longText());
    open();
    key(Qt::Key_PageDown);
    const int read = front().verticalScrollBar()->value();
    ASSERT_GT(read, 0);
    run(Mark);
    EXPECT_EQ(front().verticalScrollBar()->value(), read);
}

TEST_F(frmFlashCardMarks, AreShownAgainWhenTheCardIsReachedAgain)
{
    open();
    goTo(2);
    run(Mark);
    key(Qt::Key_Right);
    EXPECT_EQ(scene(), "3 of 12, front 3");
    key(Qt::Key_Left);
    EXPECT_EQ(scene(), "2 of 12, front 2, marked");
    key(Qt::Key_Left);
    EXPECT_EQ(scene(), "1 of 12, front 1");
    key(Qt::Key_Right);
    EXPECT_EQ(scene(), "2 of 12, front 2, marked");
}

TEST_F(frmFlashCardMarks, StayWhileTheCardIsTurned)
{
    open();
    run(Mark);
    key(Qt::Key_Down);
    EXPECT_EQ(scene(), "1 of 12, back 1, marked");
}

TEST_F(frmFlashCardMarks, AreThereInTheNextSession)
{
    open();
    goTo(2);
    run(Mark);
    key(Qt::Key_Escape);
    settle();
    open();
    goTo(2);
    EXPECT_EQ(scene(), "2 of 12, front 2, marked");
}

TEST_F(frmFlashCardMarks, AKeyThatIsHeldDownMarksOnce)
{
    open();
    key(Qt::Key_M);
    repeatKey(Qt::Key_M, QStringLiteral("m"));
    EXPECT_EQ(scene(), "1 of 12, front 1, marked");
    EXPECT_EQ(storedMarks(), std::vector{1});
}

TEST_F(frmFlashCardMarks, ChangeNothingElseOfTheCards)
{
    const auto fronts = stored(&CardSet::text, CardField::Front);
    const auto keys = storedKeys();
    open();
    run(Mark);
    EXPECT_EQ(stored(&CardSet::text, CardField::Front), fronts);
    EXPECT_EQ(storedKeys(), keys);
}

TEST_F(frmFlashCardMarks, NegateWhatTheFileHoldsNow)
{
    open();
    markElsewhere(1);
    run(Mark);
    EXPECT_EQ(scene(), "1 of 12, front 1");
    EXPECT_EQ(storedMarks(), std::vector<int>{});
}

// The shuffle.

class frmFlashCardShuffle : public FlashCardTest
{
protected:
    SeenMessage shuffle(QMessageBox::StandardButton answer = QMessageBox::Yes)
    {
        return heard([this] { run(Shuffle); }, answer);
    }

    [[nodiscard]] QByteArray bytes() const
    {
        QFile subject(QString::fromStdString(file.string()));
        EXPECT_TRUE(subject.open(QFile::ReadOnly));
        return subject.readAll();
    }

    void expectUnchangedBy(const std::function<void()> &action)
    {
        const std::string seen = scene();
        const QByteArray before = bytes();
        const int begun = secondsBegun();
        action();
        EXPECT_EQ(scene(), seen);
        EXPECT_EQ(bytes(), before);
        EXPECT_EQ(secondsBegun(), begun);
    }

    /// The cards of the large topic from the current one to the last, by their numbers.
    std::vector<int> walk()
    {
        std::vector<int> cards;
        for (int left = count() - cardNumber(); left >= 0; --left) {
            cards.push_back(pane().toPlainText().section(u' ', 1, 1).toInt());
            if (left > 0) {
                run(Next);
            }
        }
        return cards;
    }
    int count() { return place().section(u' ', 2, 2).toInt(); }

    /// Whether the cards, by their numbers, come in the order of their stored keys.
    [[nodiscard]] bool isByKey(const std::vector<int> &cards) const
    {
        const std::vector<float> keys = storedKeys();
        return std::ranges::is_sorted(cards, {}, [&](int card) { return keys.at(static_cast<std::size_t>(card) - 1); });
    }

    static std::vector<int> allCards(int count = 12)
    {
        std::vector<int> cards;
        for (int card = 1; card <= count; ++card) {
            cards.push_back(card);
        }
        return cards;
    }
};

TEST_F(frmFlashCardShuffle, IsAskedFor)
{
    open();
    const SeenMessage question = shuffle(QMessageBox::No);
    EXPECT_EQ(question.text, QStringLiteral("Are you sure you want to shuffle these flash cards?"));
    EXPECT_EQ(question.title, QStringLiteral("Shuffle Flash Cards"));
    EXPECT_EQ(question.icon, QMessageBox::Question);
    EXPECT_EQ(question.buttons, QMessageBox::Yes | QMessageBox::No);
}

TEST_F(frmFlashCardShuffle, NoAndEscapeChangeNothing)
{
    open(9);
    goTo(4);
    run(Mark);
    passSecond();
    expectUnchangedBy([this] { shuffle(QMessageBox::No); });
    const auto escape = [this] {
        dialogs.key(Qt::Key_Escape);
        key(Qt::Key_S);
    };
    expectUnchangedBy(escape);
    EXPECT_TRUE(isOpen());
    key(Qt::Key_Down);
    expectUnchangedBy(escape);
    EXPECT_EQ(scene(), "4 of 12, back 4, 8 ended, marked");
}

TEST_F(frmFlashCardShuffle, AKeyThatIsHeldDownAsksOnce)
{
    open();
    heard([this] { key(Qt::Key_S); }, QMessageBox::No);
    repeatKey(Qt::Key_S, QStringLiteral("s"));
    EXPECT_EQ(dialogs.seen().size(), 1U);
}

TEST_F(frmFlashCardShuffle, BeginsAtTheCardWithTheSmallestKey)
{
    open();
    goTo(5);
    key(Qt::Key_Down);
    shuffle();
    EXPECT_EQ(place(), QStringLiteral("1 of 12"));
    std::vector<float> keys = storedKeys();
    keys.resize(12);
    const auto smallest = std::ranges::min_element(keys) - keys.begin() + 1;
    EXPECT_EQ(shown(), QStringLiteral("front %1").arg(smallest));
    const SeenMessage message = heard([this] { key(Qt::Key_Left); });
    EXPECT_EQ(message.text, QStringLiteral("This is the first flash card."));
}

TEST_F(frmFlashCardShuffle, ShowsEveryCardOnceInTheNewOrder)
{
    open();
    heard([this] { key(Qt::Key_S); }, QMessageBox::Yes);
    std::vector<int> cards = walk();
    EXPECT_EQ(place(), QStringLiteral("12 of 12"));
    EXPECT_TRUE(isByKey(cards));
    EXPECT_EQ(heard([this] { run(Next); }).title, QStringLiteral("Last Flash Card"));
    std::ranges::sort(cards);
    EXPECT_EQ(cards, allCards());
}

TEST_F(frmFlashCardShuffle, GivesNewKeysToTheCardsOfTheSessionOnly)
{
    open();
    shuffle();
    const std::vector<float> keys = storedKeys();
    ASSERT_EQ(keys.size(), 16U);
    const auto others = keys.begin() + 12;
    EXPECT_TRUE(std::all_of(keys.begin(), others, [](float key) { return key >= 0 && key < 1; }));
    EXPECT_LE(std::count(keys.begin(), others, 0.0F), 3) << "hardly a card draws what it had";
    EXPECT_EQ(std::count(others, keys.end(), 0.0F), 4) << "cards of another topic";
}

TEST_F(frmFlashCardShuffle, TwiceGivesTwoOrders)
{
    study(cardQuery(std::array{large, small})); // 16 cards: two equal orders have a chance of 1 in 10^11
    open();
    const auto orderOf = [](const std::vector<float> &keys) {
        std::vector<int> order = allCards(16);
        std::ranges::stable_sort(order, {}, [&](int card) { return keys.at(static_cast<std::size_t>(card) - 1); });
        return order;
    };
    EXPECT_EQ(orderOf(storedKeys()), allCards(16));
    shuffle();
    const std::vector<int> first = orderOf(storedKeys());
    EXPECT_NE(first, allCards(16));
    shuffle();
    const std::vector<int> second = orderOf(storedKeys());
    EXPECT_NE(second, first);
    EXPECT_EQ(place(), QStringLiteral("1 of 16"));
}

TEST_F(frmFlashCardShuffle, DrawsOtherNumbersInEverySession)
{
    std::set<std::vector<float>> drawn;
    for (int session = 0; session < 2; ++session) {
        open();
        shuffle();
        drawn.insert(storedKeys());
        key(Qt::Key_Escape);
        settle();
    }
    EXPECT_EQ(drawn.size(), 2U);
}

TEST_F(frmFlashCardShuffle, KeepsTheMarks)
{
    markElsewhere(4);
    markElsewhere(9);
    open();
    shuffle();
    EXPECT_EQ(storedMarks(), (std::vector{4, 9}));
    for (int place = 1; place <= 12; ++place) {
        goTo(place);
        const bool isOne = shown() == QStringLiteral("front 4") || shown() == QStringLiteral("front 9");
        EXPECT_EQ(scene().ends_with(", marked"), isOne) << scene();
    }
}

TEST_F(frmFlashCardShuffle, BeginsTheCountdownAnewWhateverItWas)
{
    open(6);
    const auto expectBegun = [this](int before) {
        EXPECT_TRUE(scene().starts_with("1 of 12, front ")) << scene();
        EXPECT_TRUE(scene().ends_with(", 6 running")) << scene();
        EXPECT_GT(secondsBegun(), before) << "a whole second";
    };
    passSeconds(2);
    int before = secondsBegun();
    shuffle();
    expectBegun(before);
    key(Qt::Key_P);
    before = secondsBegun();
    shuffle();
    expectBegun(before);
    passSeconds(6);
    before = secondsBegun();
    shuffle();
    expectBegun(before);
    passSeconds(6);
    EXPECT_TRUE(scene().ends_with(", 0 ended"));
}

TEST_F(frmFlashCardShuffle, BeginsOnTheBackWhenTheBackComesFirst)
{
    module->study.viewOrder = ViewOrder::back;
    open();
    key(Qt::Key_Up);
    shuffle();
    EXPECT_TRUE(scene().starts_with("1 of 12, back ")) << scene();
}

TEST_F(frmFlashCardShuffle, DrawsTheSideInARandomOrder)
{
    module->study.viewOrder = ViewOrder::random;
    open();
    std::set<QString> sides;
    for (int draw = 0; draw < manyDraws && sides.size() < 2; ++draw) {
        shuffle();
        sides.insert(sideShown());
    }
    EXPECT_EQ(sides.size(), 2U);
}

TEST_F(frmFlashCardShuffle, LastsUntilTheWindowCloses)
{
    open();
    shuffle();
    const std::vector<float> keys = storedKeys();
    key(Qt::Key_Escape);
    settle();
    open();
    EXPECT_EQ(walk(), allCards());
    EXPECT_EQ(storedKeys(), keys) << "the keys stay stored";
}

TEST_F(frmFlashCardShuffle, MarkingWorksOnTheCardsInTheirNewOrder)
{
    open();
    shuffle();
    goTo(7);
    run(Mark);
    EXPECT_TRUE(scene().ends_with(", marked"));
    EXPECT_EQ(storedMarks(), std::vector{shown().section(u' ', 1, 1).toInt()});
}

// A study of the marked cards.

class AStudyOfMarkedCards : public frmFlashCardShuffle
{
protected:
    void SetUp() override
    {
        frmFlashCardShuffle::SetUp();
        for (int card = 1; card <= 5; ++card) {
            markElsewhere(card);
        }
        study(markedCardQuery());
    }
};

TEST_F(AStudyOfMarkedCards, KeepsACardThatIsUnmarkedUntilAShuffle)
{
    open();
    goTo(2);
    run(Mark);
    EXPECT_EQ(scene(), "2 of 5, front 2");
    key(Qt::Key_Right);
    run(Mark);
    shuffle();
    EXPECT_EQ(place(), QStringLiteral("1 of 3"));
    std::vector<int> cards = walk();
    EXPECT_TRUE(isByKey(cards));
    std::ranges::sort(cards);
    EXPECT_EQ(cards, (std::vector{1, 4, 5}));
}

TEST_F(AStudyOfMarkedCards, SaysThatNoneWouldBeLeftAndChangesNothing)
{
    open(7);
    for (int card = 1; card <= 5; ++card) {
        goTo(card);
        run(Mark);
    }
    passSeconds(3);
    expectUnchangedBy([this] {
        dialogs.press(QMessageBox::Yes).press(QMessageBox::Ok);
        run(Shuffle);
        ASSERT_EQ(dialogs.seen().size(), 2U);
        EXPECT_EQ(dialogs.last().title, QStringLiteral("Shuffle Flash Cards"));
        EXPECT_EQ(dialogs.last().icon, QMessageBox::Information);
        EXPECT_EQ(dialogs.last().buttons, QMessageBox::Ok);
        EXPECT_TRUE(dialogs.last().text.contains(QStringLiteral("not marked"))) << dialogs.last().text.toStdString();
    });
    EXPECT_EQ(scene(), "5 of 5, front 5, 4 running");
    key(Qt::Key_Left);
    EXPECT_EQ(scene(), "4 of 5, front 4, 7 running");
    run(Mark);
    shuffle();
    EXPECT_EQ(scene(), "1 of 1, front 4, 7 running, marked");
}

} // namespace
