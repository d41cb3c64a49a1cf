#include "CardEditingTest.h"
#include "StoredTest.h"
#include "store/SubjectReading.h"
#include "store/SubjectWriting.h"
#include "study/FlashCardSession.h"
#include "study/TestSession.h"

#include <array>
#include <functional>
#include <sqlite3.h>
#include <utility>

namespace {

using enum Command;
using enum CardEditing::Outcome;

/// Lets something happen as statements begin in connections that are opened while this exists.
class Interloper
{
public:
    Interloper() { sqlite3_auto_extension(reinterpret_cast<void (*)()>(&watch)); }
    Interloper(const Interloper &) = delete;
    Interloper &operator=(const Interloper &) = delete;
    ~Interloper()
    {
        sqlite3_cancel_auto_extension(reinterpret_cast<void (*)()>(&watch));
        act = {};
    }

    /// 1 is the next statement.
    void actFrom(int statement, std::function<void()> nextAct)
    {
        statementsLeft = statement - 1;
        act = std::move(nextAct);
    }
    void stop() { act = {}; }

private:
    static int watch(sqlite3 *engine, char ** /*error*/, const struct sqlite3_api_routines * /*api*/)
    {
        return sqlite3_trace_v2(engine, SQLITE_TRACE_STMT, &beforeStatement, engine);
    }
    static int beforeStatement(unsigned /*event*/, void * /*engine*/, void * /*statement*/, void * /*sql*/)
    {
        if (act && statementsLeft-- <= 0) {
            act();
        }
        return 0;
    }

    static inline int statementsLeft = 0;
    static inline std::function<void()> act;
};

/// Two programs that have one subject open: here and there.
class TwoPrograms : public CardEditingTest
{
protected:
    TwoPrograms()
    {
        settings.cardQuery = cardQuery(std::array{topic});
        settings.questionCount = 5;
    }

    [[nodiscard]] FlashCardSession study() const
    {
        return {subject, settings, [] { return 0.F; }};
    }
    [[nodiscard]] TestSession test(unsigned seed) const { return {subject, settings, drawSeededBy(seed)}; }

    /// The fronts of a session's cards, from its current one on, without its letters' format.
    static std::string frontsOf(FlashCardSession &session)
    {
        std::string all;
        do {
            all += textOf(session.text(Side::Front));
        } while (session.next());
        return all;
    }

    static ShownQuestion shownAt(TestSession &test, int question)
    {
        test.goTo(question);
        return test.shown(false);
    }

    template <class Act>
    static void expectGone(Act act)
    {
        try {
            act();
            ADD_FAILURE() << "what is gone was found";
        } catch (const StoreError &failure) {
            EXPECT_EQ(failure.reason(), Reason::RowGone) << failure.what();
        }
    }

    StudySettings settings;
};

// Two card editors.

TEST_F(TwoPrograms, InEditorsOnOneCardTheOneThatLeavesItLastDecides)
{
    addCardsNamed("abc");
    Boxes here = open();
    Boxes there = open();
    here.type("x", "X");
    there.type("y", "Y");
    EXPECT_EQ(here.give(Next), Moved);
    EXPECT_EQ(cards(), (Cards{"x/X", "b/B", "c/C"}));
    EXPECT_EQ(there.give(Next), Moved);
    EXPECT_EQ(cards(), (Cards{"y/Y", "b/B", "c/C"}));
    here.give(Previous);
    EXPECT_EQ(here.shown(), "y/Y");
}

TEST_F(TwoPrograms, InEditorsShowEachOthersChangesWhenACardIsReached)
{
    addCardsNamed("abc");
    Boxes here = open();
    Boxes there = open();
    there.goTo(1);
    there.type("y", "Y");
    there.give(Next);
    here.give(Next);
    EXPECT_EQ(here.shown(), "y/Y");
}

TEST_F(TwoPrograms, AddingCardsLoseNone)
{
    addCardsNamed("a");
    Boxes here = open();
    Boxes there = open();
    EXPECT_EQ(here.give(Next), Added);
    EXPECT_EQ(there.give(Next), Added);
    here.type("x", "X");
    there.type("y", "Y");
    here.give(Next);
    there.give(Next);
    EXPECT_EQ(here.editing.count(), 3) << "its own";
    EXPECT_EQ(there.editing.count(), 3);
    here.give(Save);
    there.give(Save);
    EXPECT_EQ(cards(), (Cards{"a/A", "x/X", "y/Y"})) << "and neither's blank card";
    EXPECT_EQ(open().editing.count(), 3);
}

TEST_F(TwoPrograms, OpeningAnEmptyTopicTakeBackOnlyTheirOwnBlankCard)
{
    Boxes here = open();
    Boxes there = open();
    EXPECT_EQ(there.shown(), "/") << "the blank card of here";
    there.type("y", "Y");
    expectGone([&] {
        here.give(Save); // there is nothing on it for here
        there.give(Save);
    });
    EXPECT_EQ(cards(), Cards());
    there.give(Save);
    EXPECT_EQ(cards(), Cards{"y/Y"});
}

TEST_F(TwoPrograms, DeletingTheSameCardDeleteNoOther)
{
    addCardsNamed("abcd");
    Boxes here = open();
    Boxes there = open();
    here.goTo(1);
    there.goTo(1);
    EXPECT_EQ(here.give(Remove), Moved);
    EXPECT_EQ(there.failureOf(Remove), Reason::RowGone);
    EXPECT_EQ(cards(), (Cards{"a/A", "c/C", "d/D"}));
    EXPECT_EQ(there.give(Remove), Moved);
    EXPECT_EQ(there.shown(), "a/A");
    EXPECT_EQ(cards(), (Cards{"a/A", "c/C", "d/D"}));
}

TEST_F(TwoPrograms, DeletingEachOthersLastCardsComeToANewOne)
{
    addCardsNamed("ab");
    Boxes here = open();
    Boxes there = open();
    there.goTo(1);
    EXPECT_EQ(here.give(Remove), Moved);
    EXPECT_EQ(here.shown(), "b/B");
    EXPECT_EQ(there.failureOf(Remove), Reason::RowGone) << "its neighbour is gone";
    EXPECT_EQ(there.give(Remove), Added);
    here.type("x", "X");
    EXPECT_EQ(here.failureOf(Save), Reason::RowGone);
    EXPECT_EQ(here.give(Save), std::nullopt);
    there.give(Save);
    EXPECT_EQ(cards(), Cards{"x/X"});
}

// A topic that is deleted while a card is added to it.

class ATopicDeletedThere : public TwoPrograms
{
protected:
    /// Adds "x/X" here while there the topic's deletion begins at that statement, or as soon as it may: both
    /// statements of it at once, or the second at the next opportunity. Returns whether the card was stored first.
    bool addWhileDeleted(int statement, bool atOnce)
    {
        otherProgram().exec("INSERT INTO Topics (Name) VALUES ('Next')");
        topic = std::stoi(askOther("SELECT max(\"Index\") FROM Topics"));
        SQLite::Database there = otherProgram();
        std::vector<std::string> deletion{"DELETE FROM Topics WHERE \"Index\" = " + std::to_string(topic),
                                          "DELETE FROM FlashCards WHERE NIndex = " + std::to_string(topic)};
        const auto goOn = [&] {
            for (bool goesOn = true; goesOn && !deletion.empty(); goesOn = goesOn && atOnce) {
                goesOn = there.tryExec(deletion.front()) == SQLITE_OK;
                if (goesOn) {
                    deletion.erase(deletion.begin());
                }
            }
        };
        Interloper interloper;
        Boxes here = open();
        here.give(Save); // takes its blank card back
        here.type("x", "X");
        interloper.actFrom(statement, goOn);
        const std::optional<Reason> failure = here.failureOf(Save);
        interloper.stop();
        EXPECT_TRUE(!failure || failure == Reason::RowGone) << static_cast<int>(*failure);
        EXPECT_EQ(isInFile("x/X"), !failure);
        EXPECT_EQ(here.shown(), "x/X");
        while (!deletion.empty()) {
            goOn();
        }
        EXPECT_EQ(cards(), Cards()) << "a card without its topic, from statement " << statement;
        return !failure;
    }
};

TEST_F(ATopicDeletedThere, AtWhicheverMomentNeverLeavesACardWithoutIt)
{
    int stored = 0;
    int refused = 0;
    for (const bool atOnce : {false, true}) {
        for (int statement = 1; statement <= 6; ++statement) {
            ++(addWhileDeleted(statement, atOnce) ? stored : refused);
        }
    }
    EXPECT_GT(stored, 0);
    EXPECT_GT(refused, 0);
}

TEST_F(ATopicDeletedThere, LeavesAStudyOfItOnItsCardsWithAReportForEach)
{
    addCardsNamed("abcdef");
    FlashCardSession session = study();
    TestSession running = test(1);
    EXPECT_EQ(textOf(session.text(Side::Front)), "a");
    deleteTopic(subject, topic);
    EXPECT_EQ(textOf(session.text(Side::Front)), "a") << "it has been read";
    EXPECT_TRUE(session.next());
    expectGone([&] { (void)session.text(Side::Front); });
    expectGone([&] { session.toggleMark(); });
    EXPECT_FALSE(session.shuffle(drawSeededBy(1)));
    EXPECT_EQ(session.count(), 6);
    EXPECT_TRUE(session.previous());

    running.goTo(3);
    expectGone([&] { (void)running.shown(false); });
    running.markCards(std::array{0, 1, 2});
    EXPECT_EQ(running.current(), 3);
    EXPECT_EQ(cards(), Cards());
}

TEST_F(ATopicDeletedThere, GivesNoStudyOfItAny)
{
    addCardsNamed("abcdef");
    deleteTopic(subject, topic);
    EXPECT_THROW((void)study(), std::runtime_error);
    EXPECT_THROW((void)test(1), std::runtime_error);
    EXPECT_EQ(countCards(subject, cardQueryCheck(settings.cardQuery)), 0);
}

// An editor and a study.

TEST_F(TwoPrograms, ASessionShowsWhatTheEditorStoresWhenACardIsReachedAgain)
{
    addCardsNamed("abc");
    FlashCardSession session = study();
    Boxes editor = open();
    EXPECT_EQ(textOf(session.text(Side::Front)), "a");
    editor.type("x", "X");
    editor.give(Next);
    editor.type("y", "Y");
    editor.give(Next);
    EXPECT_EQ(textOf(session.text(Side::Back)), "A") << "as it was when it was reached";
    EXPECT_EQ(frontsOf(session), "ayc");
    while (session.previous()) {
    }
    EXPECT_EQ(textOf(session.text(Side::Front)), "x");
}

TEST_F(TwoPrograms, ASessionTakesAddedCardsInAndDeletedOnesOutByShuffling)
{
    addCardsNamed("abc");
    FlashCardSession session = study();
    Boxes editor = open();
    editor.give(Remove);
    editor.give(Last);
    editor.give(Next);
    editor.type("x", "X");
    editor.give(Save);
    EXPECT_EQ(session.count(), 3);
    expectGone([&] { (void)session.text(Side::Front); });
    ASSERT_TRUE(session.shuffle(drawSeededBy(3)));
    std::string fronts = frontsOf(session);
    std::ranges::sort(fronts);
    EXPECT_EQ(fronts, "bcx");
}

TEST_F(TwoPrograms, AnEditorTakesNoMarkAndNoQuestionAway)
{
    addCardsNamed("abcdef");
    Boxes editor = open();
    TestSession running = test(5);
    running.markCards(std::array{0, 1, 2, 3, 4, 5});
    const std::vector<StoredCard> before = storedCards(otherProgram());
    editor.type("x", "X");
    EXPECT_EQ(editor.give(Next), Moved);
    EXPECT_EQ(storedCards(otherProgram()), before);
    EXPECT_EQ(askOther("SELECT sum(Marked) FROM FlashCards"), "6");
    EXPECT_TRUE(isInFile("x/X"));
}

// Two studies.

TEST_F(TwoPrograms, ShufflingKeepEachItsOwnOrder)
{
    addCardsNamed("abcdefgh");
    FlashCardSession here = study();
    FlashCardSession there = study();
    ASSERT_TRUE(here.shuffle(drawSeededBy(1)));
    ASSERT_TRUE(there.shuffle(drawSeededBy(2)));
    FlashCardSession again = study();
    ASSERT_TRUE(again.shuffle(drawSeededBy(1)));
    const std::string order = frontsOf(again);
    EXPECT_EQ(frontsOf(here), order) << "the same draws";
    EXPECT_NE(frontsOf(there), order);
}

TEST_F(TwoPrograms, MarkingOneCardTurnWhatTheFileHolds)
{
    addCardsNamed("abcde");
    FlashCardSession here = study();
    FlashCardSession there = study();
    EXPECT_FALSE(there.isMarked());
    here.toggleMark();
    EXPECT_TRUE(here.isMarked());
    there.toggleMark();
    EXPECT_FALSE(there.isMarked());
    EXPECT_EQ(askOther("SELECT sum(Marked) FROM FlashCards"), "0");
}

TEST_F(TwoPrograms, TestingOnTheSameCardsKeepEachItsOwnQuestions)
{
    addCardsNamed("abcdefgh");
    TestSession here = test(1);
    std::vector<ShownQuestion> asked;
    std::vector<int> right;
    for (int question = 0; question < here.questionCount(); ++question) {
        asked.push_back(shownAt(here, question));
        right.push_back(here.correctAnswer(question));
    }
    FlashCardSession session = study();
    const TestSession there = test(2);
    ASSERT_TRUE(session.shuffle(drawSeededBy(3)));
    for (int question = 0; question < here.questionCount(); ++question) {
        const auto at = static_cast<std::size_t>(question);
        const ShownQuestion shown = shownAt(here, question);
        EXPECT_EQ(here.correctAnswer(question), right.at(at));
        EXPECT_EQ(shown.type, asked.at(at).type) << "question " << question;
        EXPECT_EQ(shown.text, asked.at(at).text) << "question " << question;
        EXPECT_EQ(shown.choices, asked.at(at).choices) << "question " << question;
    }
}

// Topics.

TEST_F(TwoPrograms, RenamingATopicAndWritingItsNotesDoNotUndoEachOther)
{
    Boxes editor = open();
    renameTopic(subject, topic, "Renamed");
    saveNotes(subject, topic, rtfOf("written"));
    renameTopic(subject, topic, "Renamed again");
    editor.type("x", "X");
    editor.give(Save);
    const TopicContents found = readTopic(subject, topic);
    EXPECT_EQ(found.name, "Renamed again");
    EXPECT_EQ(found.notes, rtfOf("written"));
    EXPECT_EQ(found.cardCount, 1);
}

TEST_F(TwoPrograms, DeletingATopicTwiceDeleteNothingElse)
{
    addCardsNamed("ab");
    deleteTopic(subject, topic);
    const int next = createTopic(subject, "Next");
    EXPECT_NE(next, topic);
    deleteTopic(subject, topic);
    EXPECT_EQ(listTopics(subject).size(), 2U);
    expectGone([this] { renameTopic(subject, topic, "Back again"); });
    expectGone([this] { saveNotes(subject, topic, rtfOf("written")); });
}

} // namespace
