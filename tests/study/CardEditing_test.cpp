#include "CardEditingTest.h"

#include <random>

namespace {

struct SidesText
{
    const char *name;
    std::string front;
    std::string back;
    bool isBlank;
};

class AnEditedCard : public testing::TestWithParam<SidesText>
{
};

TEST_P(AnEditedCard, IsBlankIfItHoldsNothingButSpaces)
{
    const SidesText &row = GetParam();
    EXPECT_EQ((EditedCard{{"", row.front}, {"", row.back}}.isBlank()), row.isBlank);
    EXPECT_EQ((EditedCard{{"", row.back}, {"", row.front}}.isBlank()), row.isBlank);
}

INSTANTIATE_TEST_SUITE_P(Table, AnEditedCard,
                         testing::Values(SidesText{"Nothing", "", "", true}, SidesText{"OneSpace", " ", "", true},
                                         SidesText{"SpacesOnBothSides", "   ", "  ", true},
                                         SidesText{"Text", "a", "", false},
                                         SidesText{"TextBetweenSpaces", "  a  ", " ", false},
                                         SidesText{"Picture", "\xef\xbf\xbc", "", false},
                                         SidesText{"Tab", "\t", "", false}, SidesText{"LineBreak", "\n", "", false},
                                         SidesText{"NoBreakSpace", "\xc2\xa0", "", false},
                                         SidesText{"NulCharacter", std::string(1, '\0'), "", false}),
                         [](const auto &row) { return row.param.name; });

class CardEditingCommands : public CardEditingTest
{
};

TEST_F(CardEditingCommands, OpenOnTheFirstCard)
{
    addCardsNamed("abc");
    const Boxes boxes = open();
    EXPECT_EQ(boxes.editing.position(), 0);
    EXPECT_EQ(boxes.editing.count(), 3);
    EXPECT_EQ(boxes.editing.sides(), (CardSides{rtfOf("a"), rtfOf("A")}));
    EXPECT_EQ(cards(), (Cards{"a/A", "b/B", "c/C"}));
}

TEST_F(CardEditingCommands, OpenATopicWithoutCardsOnANewOneThatIsStoredAtOnce)
{
    const Boxes boxes = open();
    EXPECT_EQ(boxes.editing.position(), 0);
    EXPECT_EQ(boxes.editing.count(), 1);
    EXPECT_EQ(boxes.editing.sides(), (CardSides{rtfOf(""), rtfOf("")}));
    EXPECT_EQ(cards(), Cards{"/"});
    EXPECT_EQ(askOther("SELECT Marked || Shuffle || isTrueFalse || isFront || Answer || Wrong1 || Wrong2 "
                       "FROM FlashCards WHERE NIndex = " +
                       std::to_string(topic)),
              "00.000000");
}

TEST_F(CardEditingCommands, LeaveATopicWithoutCardsAsItWasIfNothingIsTyped)
{
    Boxes boxes = open();
    boxes.give(Command::Save);
    EXPECT_EQ(boxes.editing.position(), -1);
    EXPECT_EQ(boxes.editing.count(), 0);
    EXPECT_EQ(boxes.editing.sides(), CardSides());
    boxes.editing.close();
    EXPECT_EQ(cards(), Cards());
}

TEST_F(CardEditingCommands, RunTheStatementAsItStands)
{
    addCardsNamed("abc");
    const std::string query =
        "Select * FROM Flashcards WHERE NIndex = " + std::to_string(topic) + " ORDER BY Index DESC";
    const CardEditing editing(subject, query, topic, {});
    EXPECT_EQ(editing.count(), 3);
    EXPECT_EQ(editing.sides().front, rtfOf("c"));
}

TEST_F(CardEditingCommands, DeleteACardWithOnlySpacesAndKeepOneWithTextOnEitherSide)
{
    addCardsNamed("abc");
    Boxes boxes = open();
    boxes.type("x", "");
    boxes.give(Command::Next);
    boxes.type("", "y");
    boxes.give(Command::Next);
    boxes.type("   ", "");
    boxes.give(Command::First);
    EXPECT_EQ(cards(), (Cards{"x/", "/y"}));
}

TEST_F(CardEditingCommands, WriteACardThoughNothingChanged)
{
    addCardsNamed("ab");
    otherProgram().exec("CREATE TABLE Log (Line); CREATE TRIGGER logged AFTER UPDATE ON FlashCards BEGIN "
                        "INSERT INTO Log VALUES (old.Front); END");
    Boxes boxes = open();
    boxes.give(Command::Next);
    boxes.give(Command::Save);
    EXPECT_EQ(askOther("SELECT group_concat(Line, ' ') FROM Log"), rtfOf("a") + " " + rtfOf("b"));
}

TEST_F(CardEditingCommands, WriteNothingButTheTwoSides)
{
    addCardsNamed("ab");
    otherProgram().exec("UPDATE FlashCards SET Marked = 1, Shuffle = 0.5, isTrueFalse = 1, isFront = 1, Answer = 2, "
                        "Wrong1 = 3, Wrong2 = 4");
    Boxes boxes = open();
    boxes.type("x", "X");
    boxes.give(Command::Next);
    EXPECT_EQ(cards(), (Cards{"x/X", "b/B"}));
    EXPECT_EQ(askOther("SELECT count(*) FROM FlashCards WHERE Marked = 1 AND Shuffle = 0.5 AND isTrueFalse = 1 AND "
                       "isFront = 1 AND Answer = 2 AND Wrong1 = 3 AND Wrong2 = 4"),
              "3");
}

TEST_F(CardEditingCommands, StoreSidesOfAnyLengthAndAnyBytes)
{
    addCardsNamed("ab");
    Boxes boxes = open();
    std::string front(1'000'000, 'x');
    front[10] = '\0';
    front[20] = '\xff';
    boxes.editing.next({{front, "x"}, {"", ""}});
    boxes.editing.previous({{rtfOf("b"), "b"}, {rtfOf("B"), "B"}});
    EXPECT_TRUE(boxes.editing.sides() == (CardSides{front, ""}));
}

TEST_F(CardEditingCommands, AskToShowACardOnlyWhenAnotherOneIsCurrent)
{
    addCardsNamed("abc");
    Boxes boxes = open();
    int shown = boxes.editing.changes();
    for (const Command command : {Command::Save, Command::First, Command::Previous}) {
        boxes.give(command);
        EXPECT_EQ(boxes.editing.changes(), shown);
    }
    for (const Command command : {Command::Last, Command::Previous, Command::Next, Command::Next, Command::Add,
                                  Command::Remove, Command::First, Command::Remove}) {
        boxes.give(command);
        EXPECT_GT(boxes.editing.changes(), shown);
        shown = boxes.editing.changes();
    }
    boxes.clear();
    boxes.give(Command::Save);
    EXPECT_GT(boxes.editing.changes(), shown) << "the neighbour of a card that was deleted because it is blank";
}

TEST_F(CardEditingCommands, NeverWriteEmptyBoxesOverTheNeighbourOfADeletedCard)
{
    addCardsNamed("abc");
    Boxes boxes = open();
    boxes.goTo(2);
    for (const char *neighbour : {"b/B", "a/A"}) {
        boxes.type(" ", "");
        boxes.give(Command::Save);
        EXPECT_EQ(boxes.shown(), neighbour);
        boxes.give(Command::Save);
    }
    EXPECT_EQ(cards(), Cards{"a/A"});
}

TEST_F(CardEditingCommands, LeaveTheFileFreeForOthersAndAlone)
{
    addCardsNamed("abc");
    Boxes boxes = open();
    const auto otherMayWrite = [&] {
        otherProgram().exec("BEGIN EXCLUSIVE; COMMIT");
        EXPECT_FALSE(std::filesystem::exists(subject.string() + "-journal"));
    };
    otherMayWrite();
    for (const Command command : allCommands) {
        boxes.give(command);
        otherMayWrite();
    }
    SQLite::Database other = otherProgram();
    other.exec("BEGIN EXCLUSIVE");
    EXPECT_NE(boxes.editing.sides(), CardSides());
    EXPECT_GE(boxes.editing.position(), 0);
}

TEST_F(CardEditingCommands, AnswerWithAnErrorOnceClosed)
{
    addCardsNamed("ab");
    Boxes boxes = open();
    boxes.editing.close();
    EXPECT_EQ(boxes.failureOf(Command::Next), Reason::NotNow);
    EXPECT_EQ(boxes.failureOf(Command::Save), Reason::NotNow);
    EXPECT_EQ(cards(), (Cards{"a/A", "b/B"}));
}

TEST_F(CardEditingCommands, CannotBeGivenToASubjectThatIsNotThere)
{
    std::filesystem::remove(subject);
    EXPECT_THROW(static_cast<void>(open()), StoreError);
    EXPECT_FALSE(std::filesystem::exists(subject));
}

/// A command, given on one card of several, after something was typed.
struct Given
{
    const char *name;
    const char *cards; ///< a letter each; empty: the only card was blank and is gone
    int at;
    const char *typed; ///< the front: a letter, "" for a blank card, null for what is there
    Command command;

    std::optional<Outcome> outcome;
    int position;
    const char *cardsAfter; ///< '_' is a blank one
    const char *shown;
};

class OneCommand : public CardEditingTest, public testing::WithParamInterface<Given>
{
protected:
    static std::string cardOf(char letter)
    {
        const char capital = static_cast<char>(letter - 'a' + 'A');
        return letter == '_' ? "/" : std::string(1, letter) + "/" + capital;
    }
    static std::string cardOf(const std::string &letter) { return letter.empty() ? "/" : cardOf(letter[0]); }
};

TEST_P(OneCommand, DoesWhatItShould)
{
    const Given &row = GetParam();
    addCardsNamed(row.cards);
    Boxes boxes = open();
    if (std::string(row.cards).empty()) {
        boxes.give(Command::Save);
    }
    boxes.goTo(row.at);
    if (row.typed != nullptr) {
        const std::string card = cardOf(std::string(row.typed));
        boxes.type(card.substr(0, card.find('/')), card.substr(card.find('/') + 1));
    }
    ASSERT_EQ(boxes.editing.position(), row.at);

    EXPECT_EQ(boxes.give(row.command), row.outcome);
    EXPECT_EQ(boxes.editing.position(), row.position);
    Cards expected;
    for (const char letter : std::string(row.cardsAfter)) {
        expected.push_back(cardOf(letter));
    }
    EXPECT_EQ(cards(), expected);
    EXPECT_EQ(boxes.editing.count(), static_cast<int>(expected.size()));
    EXPECT_EQ(boxes.shown(), cardOf(std::string(row.shown)));
}

using enum Command;
using enum CardEditing::Outcome;

// clang-format off
constexpr Given givenCommands[] = {
    // name                          cards  at  typed    command   outcome  position after   shown
    {"FirstOnTheFirstStoresAndStays", "abc", 0, "x",     First,    AtFirst,  0, "xbc",  "x"},
    {"FirstOnTheMiddle",              "abc", 1, "x",     First,    Moved,    0, "axc",  "a"},
    {"FirstOnTheLast",                "abc", 2, "x",     First,    Moved,    0, "abx",  "a"},
    {"FirstOnABlankFirst",            "abc", 0, "",      First,    AtFirst,  0, "bc",   "b"},
    {"FirstOnABlankSecondIsThere",    "abc", 1, "",      First,    AtFirst,  0, "ac",   "a"},
    {"FirstOnABlankLast",             "abc", 2, "",      First,    Moved,    0, "ab",   "a"},
    {"FirstOnTheOnly",                "a",   0, "x",     First,    AtFirst,  0, "x",    "x"},
    {"FirstOnTheOnlyBlank",           "a",   0, "",      First,    AtFirst, -1, "",     ""},
    {"FirstOnNone",                   "",   -1, nullptr, First,    AtFirst, -1, "",     ""},
    {"FirstOnNoneAddsWhatWasTyped",   "",   -1, "x",     First,    AtFirst,  0, "x",    "x"},

    {"PreviousOnTheFirstStoresNot",   "abc", 0, "x",     Previous, AtFirst,  0, "abc",  "x"},
    {"PreviousOnABlankFirst",         "abc", 0, "",      Previous, AtFirst,  0, "abc",  ""},
    {"PreviousOnTheMiddle",           "abc", 1, "x",     Previous, Moved,    0, "axc",  "a"},
    {"PreviousOnTheLast",             "abc", 2, "x",     Previous, Moved,    1, "abx",  "b"},
    {"PreviousOnABlankSecondStays",   "abc", 1, "",      Previous, Moved,    0, "ac",   "a"},
    {"PreviousOnABlankLastGoesTwo",   "abc", 2, "",      Previous, Moved,    0, "ab",   "a"},
    {"PreviousOnTheOnly",             "a",   0, "x",     Previous, AtFirst,  0, "a",    "x"},
    {"PreviousOnNone",                "",   -1, nullptr, Previous, AtFirst, -1, "",     ""},
    {"PreviousOnNoneStoresNot",       "",   -1, "x",     Previous, AtFirst, -1, "",     "x"},

    {"NextOnTheFirst",                "abc", 0, "x",     Next,     Moved,    1, "xbc",  "b"},
    {"NextOnTheMiddle",               "abc", 1, nullptr, Next,     Moved,    2, "abc",  "c"},
    {"NextOnTheLastAdds",             "abc", 2, "x",     Next,     Added,    3, "abx_", ""},
    {"NextOnABlankFirstSkipsOne",     "abc", 0, "",      Next,     Moved,    1, "bc",   "c"},
    {"NextOnABlankMiddle",            "abc", 1, "",      Next,     Moved,    1, "ac",   "c"},
    {"NextOnABlankLastAdds",          "abc", 2, "",      Next,     Added,    2, "ab_",  ""},
    {"NextOnABlankFirstOfTwoAdds",    "ab",  0, "",      Next,     Added,    1, "b_",   ""},
    {"NextOnTheOnlyAdds",             "a",   0, "x",     Next,     Added,    1, "x_",   ""},
    {"NextOnTheOnlyBlankAdds",        "a",   0, "",      Next,     Added,    0, "_",    ""},
    {"NextOnNoneAdds",                "",   -1, nullptr, Next,     Added,    0, "_",    ""},
    {"NextOnNoneAddsWhatWasTypedToo", "",   -1, "x",     Next,     Added,    1, "x_",   ""},

    {"LastOnTheFirst",                "abc", 0, "x",     Last,     Moved,    2, "xbc",  "c"},
    {"LastOnTheMiddle",               "abc", 1, "x",     Last,     Moved,    2, "axc",  "c"},
    {"LastOnTheLastStoresNot",        "abc", 2, "x",     Last,     AtLast,   2, "abc",  "x"},
    {"LastOnABlankFirst",             "abc", 0, "",      Last,     Moved,    1, "bc",   "c"},
    {"LastOnABlankMiddle",            "abc", 1, "",      Last,     Moved,    1, "ac",   "c"},
    {"LastOnABlankLast",              "abc", 2, "",      Last,     AtLast,   2, "abc",  ""},
    {"LastOnABlankFirstOfTwo",        "ab",  0, "",      Last,     Moved,    0, "b",    "b"},
    {"LastOnTheOnly",                 "a",   0, "x",     Last,     AtLast,   0, "a",    "x"},
    {"LastOnNone",                    "",   -1, nullptr, Last,     AtLast,  -1, "",     ""},
    {"LastOnNoneStoresNot",           "",   -1, "x",     Last,     AtLast,  -1, "",     "x"},

    {"AddOnTheFirst",                 "abc", 0, "x",     Add,      Added,    3, "xbc_", ""},
    {"AddOnTheLast",                  "abc", 2, "x",     Add,      Added,    3, "abx_", ""},
    {"AddOnABlankFirst",              "abc", 0, "",      Add,      Added,    2, "bc_",  ""},
    {"AddOnTheOnlyBlank",             "a",   0, "",      Add,      Added,    0, "_",    ""},
    {"AddOnNone",                     "",   -1, nullptr, Add,      Added,    0, "_",    ""},
    {"AddOnNoneAddsWhatWasTypedToo",  "",   -1, "x",     Add,      Added,    1, "x_",   ""},

    {"RemoveTheFirst",                "abc", 0, nullptr, Remove,   Moved,    0, "bc",   "b"},
    {"RemoveTheMiddle",               "abc", 1, "x",     Remove,   Moved,    0, "ac",   "a"},
    {"RemoveTheLast",                 "abc", 2, "x",     Remove,   Moved,    1, "ab",   "b"},
    {"RemoveABlankOne",               "abc", 1, "",      Remove,   Moved,    0, "ac",   "a"},
    {"RemoveTheOnlyAdds",             "a",   0, "x",     Remove,   Added,    0, "_",    ""},
    {"RemoveNoneAdds",                "",   -1, "x",     Remove,   Added,    0, "_",    ""},

    {"SaveTheFirst",                  "abc", 0, "x",     Save,     {},       0, "xbc",  "x"},
    {"SaveABlankFirst",               "abc", 0, "",      Save,     {},       0, "bc",   "b"},
    {"SaveABlankMiddle",              "abc", 1, "",      Save,     {},       0, "ac",   "a"},
    {"SaveABlankLast",                "abc", 2, "",      Save,     {},       1, "ab",   "b"},
    {"SaveTheOnlyBlank",              "a",   0, "",      Save,     {},      -1, "",     ""},
    {"SaveNone",                      "",   -1, nullptr, Save,     {},      -1, "",     ""},
    {"SaveNoneAddsWhatWasTyped",      "",   -1, "x",     Save,     {},       0, "x",    "x"},
};
// clang-format on

INSTANTIATE_TEST_SUITE_P(Table, OneCommand, testing::ValuesIn(givenCommands),
                         [](const auto &row) { return row.param.name; });

/// What the commands should do, with plain cards in memory.
class Model
{
public:
    explicit Model(Cards cards)
        : m_cards(std::move(cards))
        , m_shown(m_cards[0])
    {
    }

    void type(const std::string &card) { m_shown = card; }

    std::optional<Outcome> give(Command command)
    {
        switch (command) {
        case First: save(); return m_position <= 0 ? AtFirst : moveTo(0);
        case Previous:
            if (m_position <= 0) {
                return AtFirst;
            }
            save();
            return moveTo(std::max(m_position - 1, 0));
        case Next: save(); return m_position == lastPosition() ? add() : moveTo(m_position + 1);
        case Last:
            if (m_position == lastPosition()) {
                return AtLast;
            }
            save();
            return moveTo(lastPosition());
        case Add: save(); return add();
        case Remove: erase(); return m_cards.empty() ? add() : Moved;
        case Save: save(); break;
        }
        return std::nullopt;
    }

    [[nodiscard]] const Cards &cards() const { return m_cards; }
    [[nodiscard]] int position() const { return m_position; }
    [[nodiscard]] const std::string &shown() const { return m_shown; }

private:
    [[nodiscard]] int lastPosition() const { return static_cast<int>(m_cards.size()) - 1; }

    void save()
    {
        if (m_shown.find_first_not_of(" /") == std::string::npos) {
            if (m_position >= 0) {
                erase();
            }
        } else if (m_position >= 0) {
            m_cards[static_cast<std::size_t>(m_position)] = m_shown;
        } else {
            m_cards.push_back(m_shown);
            m_position = lastPosition();
        }
    }

    void erase()
    {
        if (m_position >= 0) {
            m_cards.erase(m_cards.begin() + m_position);
        }
        if (m_cards.empty()) {
            m_position = -1;
            m_shown = "/";
        } else {
            moveTo(std::max(m_position - 1, 0));
        }
    }

    Outcome add()
    {
        m_cards.emplace_back("/");
        moveTo(lastPosition());
        return Added;
    }

    Outcome moveTo(int position)
    {
        m_position = position;
        m_shown = m_cards[static_cast<std::size_t>(position)];
        return Moved;
    }

    Cards m_cards;
    int m_position = 0;
    std::string m_shown;
};

TEST_F(CardEditingCommands, DoTheSameAsAModelInMemoryOverThousandsOfSteps)
{
    addCardsNamed("abc");
    Boxes boxes = open();
    Model model(cards());
    std::mt19937 random(7); // always the same walk
    for (int step = 0; step < 3000; ++step) {
        const auto typed = random() % 4;
        if (typed == 0) {
            const std::string text = std::to_string(step);
            boxes.type(text, "");
            model.type(text + "/");
        } else if (typed == 1) {
            boxes.type(" ", "");
            model.type(" /");
        }
        // More removing than adding: the walk comes to the only card and to none again and again.
        const Command command = random() % 8 == 0 ? Remove : allCommands[random() % allCommands.size()];
        ASSERT_EQ(boxes.give(command), model.give(command)) << "step " << step;
        ASSERT_EQ(boxes.editing.position(), model.position()) << "step " << step;
        ASSERT_EQ(boxes.editing.count(), static_cast<int>(model.cards().size())) << "step " << step;
        ASSERT_EQ(boxes.shown(), model.shown()) << "step " << step;
        ASSERT_EQ(cards(), model.cards()) << "step " << step;
    }
}

} // namespace
