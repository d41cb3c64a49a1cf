#include "StoredTest.h"
#include "store/StoreError.h"
#include "tests/support/TestSubject.h"

#include <SQLiteCpp/Database.h>
#include <array>
#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

using Type = QuestionType;

constexpr float belowOne = 0.99999994F;

/// The question that exactly these numbers make.
TestQuestion drawn(std::vector<float> numbers, int position = 4, int count = 5, int multipleChoicePercent = 60)
{
    ScriptedDraw script(std::move(numbers));
    const TestQuestion question = drawQuestion(position, count, multipleChoicePercent, script.draw());
    EXPECT_TRUE(script.isAtEnd()) << "only " << script.draws() << " numbers were drawn";
    return question;
}

TEST(DrawQuestion, DrawsTypeSideAnswerFirstAndSecondWrongChoiceInThisOrder)
{
    EXPECT_EQ(drawn({0.7F, 0.2F, 0.6F, 0.0F, 0.6F}), (TestQuestion{Type::TrueOrFalse, Side::Back, 2, 0, 2}));
    EXPECT_EQ(drawn({0.2F, 0.7F, 0.6F, 0.0F, 0.6F}), (TestQuestion{Type::MultipleChoice, Side::Front, 2, 0, 2}));
    EXPECT_EQ(drawn({0.2F, 0.2F, 0.7F, 0.6F, 0.0F}), (TestQuestion{Type::MultipleChoice, Side::Back, 3, 2, 0}));
    EXPECT_EQ(drawn({0.7F, 0.6F, 0.2F, 0.3F, 0.9F}), (TestQuestion{Type::TrueOrFalse, Side::Front, 1, 1, 3}));
}

TEST(DrawQuestion, DrawsAgainUntilTheFirstWrongChoiceIsNotTheCardItself)
{
    const TestQuestion question = drawn({0, 0, 0, 0.5F, 0.6F, 0.74F, 0.25F, 0.0F}, 2);
    EXPECT_EQ(question.wrong1, 1);
    EXPECT_EQ(question.wrong2, 0);
}

TEST(DrawQuestion, DrawsAgainUntilTheSecondWrongChoiceIsNeitherTheCardNorTheFirst)
{
    const TestQuestion question = drawn({0, 0, 0, 0.25F, 0.5F, 0.25F, 0.3F, 0.6F, 0.25F, 0.9F}, 2);
    EXPECT_EQ(question.wrong1, 1);
    EXPECT_EQ(question.wrong2, 3);
}

TEST(DrawQuestion, OfFiveCardsFindsTwoWrongChoicesForEveryPositionAndAllDraws)
{
    const auto drawOf = [](int position) { return (static_cast<float>(position) + 0.5F) / 4; };
    for (int own = 0; own < 5; ++own) {
        for (int four = 0; four < 256; ++four) {
            std::vector<int> positions{four % 4, four / 4 % 4, four / 16 % 4, four / 64, 0, 1, 2, 0, 1, 2};
            std::vector<float> numbers{0, 0, 0};
            std::vector<int> taken;
            for (const int position : positions) {
                if (taken.size() < 2) {
                    numbers.push_back(drawOf(position));
                    if (position != own && (taken.empty() || position != taken.front())) {
                        taken.push_back(position);
                    }
                }
            }
            ASSERT_EQ(taken.size(), 2U);
            const TestQuestion question = drawn(numbers, own);
            ASSERT_EQ(question.wrong1, taken[0]) << "position " << own << ", draws " << four;
            ASSERT_EQ(question.wrong2, taken[1]) << "position " << own << ", draws " << four;
        }
    }
}

TEST(DrawQuestion, IsMultipleChoiceIfTheTruncatedPercentageIsBelowTheShare)
{
    struct Case
    {
        float draw;
        int percent;
        Type type;
    };
    for (const Case &expected :
         {Case{0.0F, 0, Type::TrueOrFalse}, Case{belowOne, 0, Type::TrueOrFalse}, Case{0.0F, 1, Type::MultipleChoice},
          Case{0.0099999F, 1, Type::MultipleChoice}, Case{0.0100001F, 1, Type::TrueOrFalse},
          Case{0.36999F, 37, Type::MultipleChoice}, Case{0.37001F, 37, Type::TrueOrFalse},
          Case{0.5999999F, 60, Type::MultipleChoice}, Case{0.6F, 60, Type::TrueOrFalse},
          Case{0.595F, 60, Type::MultipleChoice}, Case{0.98999F, 99, Type::MultipleChoice},
          Case{0.99F, 99, Type::TrueOrFalse}, Case{0.0F, 100, Type::MultipleChoice},
          Case{0.9951F, 100, Type::MultipleChoice}, Case{belowOne, 100, Type::MultipleChoice}}) {
        EXPECT_EQ(drawn({expected.draw, 0, 0, 0, 0.5F}, 4, 5, expected.percent).type, expected.type)
            << expected.draw << " at " << expected.percent << " percent";
    }
}

TEST(DrawQuestion, AsksTheFrontFromOneHalfOn)
{
    EXPECT_EQ(drawn({0, 0.0F, 0, 0, 0.5F}).asked, Side::Back);
    EXPECT_EQ(drawn({0, 0.495F, 0, 0, 0.5F}).asked, Side::Back);
    EXPECT_EQ(drawn({0, 0.4999999F, 0, 0, 0.5F}).asked, Side::Back);
    EXPECT_EQ(drawn({0, 0.5F, 0, 0, 0.5F}).asked, Side::Front);
    EXPECT_EQ(drawn({0, belowOne, 0, 0, 0.5F}).asked, Side::Front);
}

TEST(DrawQuestion, SharesTheAnswersOfATypeEvenly)
{
    struct Case
    {
        Type type;
        float draw;
        int answer;
    };
    for (const Case &expected : {Case{Type::TrueOrFalse, 0.0F, 1}, Case{Type::TrueOrFalse, 0.49999997F, 1},
                                 Case{Type::TrueOrFalse, 0.5F, 2}, Case{Type::TrueOrFalse, belowOne, 2},
                                 Case{Type::MultipleChoice, 0.0F, 1}, Case{Type::MultipleChoice, 0.3333333F, 1},
                                 Case{Type::MultipleChoice, 0.3333334F, 2}, Case{Type::MultipleChoice, 0.6666666F, 2},
                                 Case{Type::MultipleChoice, 0.6666667F, 3}, Case{Type::MultipleChoice, belowOne, 3}}) {
        const float type = expected.type == Type::TrueOrFalse ? 0.9F : 0.1F;
        EXPECT_EQ(drawn({type, 0, expected.draw, 0, 0.5F}).answer, expected.answer)
            << expected.draw << " of " << (expected.type == Type::TrueOrFalse ? 2 : 3);
    }
}

TEST(DrawQuestion, OfFewerThanFiveCardsIsRefusedBeforeANumberIsDrawn)
{
    for (const int count : {4, 3, 2, 1, 0, -1}) {
        EXPECT_THROW((void)drawn({}, 0, count), std::invalid_argument) << count;
    }
}

TEST(RandomPosition, CutsTheDrawIntoEqualPartsForAllPositionsButTheLast)
{
    struct Case
    {
        float draw;
        int position;
    };
    for (const Case &expected : {Case{0.0F, 0}, Case{0.24999999F, 0}, Case{0.25F, 1}, Case{0.49999997F, 1},
                                 Case{0.5F, 2}, Case{0.74999994F, 2}, Case{0.75F, 3}, Case{belowOne, 3}}) {
        EXPECT_EQ(randomPosition(5, [&] { return expected.draw; }), expected.position) << expected.draw;
    }
}

TEST(RandomPosition, IsNeverTheLastWhateverTheNumberOfCards)
{
    ASSERT_EQ(std::nextafter(belowOne, 2.0F), 1.0F);
    const RandomDraw highest = [] { return belowOne; };
    for (int count = 2; count <= 100'000; ++count) {
        ASSERT_EQ(randomPosition(count, highest), count - 2);
    }
    for (const int count :
         {1'000'000, 16'777'216, 16'777'217, 16'777'218, 16'777'219, 2'147'483'583, std::numeric_limits<int>::max()}) {
        EXPECT_LT(randomPosition(count, highest), count - 1);
        EXPECT_GT(randomPosition(count, highest), count - 200);
    }
}

TEST(RandomPosition, DrawsOneNumber)
{
    ScriptedDraw script({0.5F});
    EXPECT_EQ(randomPosition(101, script.draw()), 50);
    EXPECT_TRUE(script.isAtEnd());
}

/// Seven cards, the current one at position 3; the wrong choices come from 5 and 1.
class ComposeQuestion : public testing::Test
{
protected:
    ComposeQuestion()
    {
        SubjectStore::create(subject);
        addCards(subject, addTopic(subject, "Topic"), 7);
    }

    /// Gives card \p own the question and opens the cards on it.
    CardSet &onQuestion(const TestQuestion &question)
    {
        store.emplace(subject);
        cards.emplace(store->openRecordSet(cardsOfTopic(1)));
        cards->setAbsolutePosition(own);
        cards->edit();
        setQuestion(*cards, question);
        cards->update();
        return *cards;
    }

    void deleteCardAt(int position)
    {
        SQLite::Database(subject.string(), SQLite::OPEN_READWRITE)
            .exec("DELETE FROM FlashCards WHERE \"Index\" = " + std::to_string(position + 1));
    }

    static std::string front(int position) { return rtfOf("front " + std::to_string(position + 1)); }
    static std::string back(int position) { return rtfOf("back " + std::to_string(position + 1)); }

    using Choices = std::array<std::string, 3>;

    /// The question that the current card holds.
    static ShownQuestion compose(CardSet &set, bool graded) { return composeQuestion(set, questionOf(set), graded); }

    static constexpr int own = 3;
    static constexpr int wrong1 = 5;
    static constexpr int wrong2 = 1;

    TestFolder folder;
    std::filesystem::path subject = folder.file("subject.crl");
    std::optional<SubjectStore> store;
    std::optional<CardSet> cards;
};

TEST_F(ComposeQuestion, PutsTheOwnAnswerInItsPlaceAndTheWrongOnesIntoTheOthersInOrder)
{
    struct Case
    {
        int answer;
        std::array<int, 3> sources;
    };
    for (const Case &place :
         {Case{1, {own, wrong1, wrong2}}, Case{2, {wrong1, own, wrong2}}, Case{3, {wrong1, wrong2, own}}}) {
        for (const Type type : {Type::MultipleChoice, Type::TrueOrFalse}) {
            for (const bool graded : {false, true}) {
                SCOPED_TRACE(testing::PrintToString(TestQuestion{type, Side::Front, place.answer, wrong1, wrong2}) +
                             (graded ? ", graded" : ""));
                const auto [a, b, c] = place.sources;

                CardSet &set = onQuestion({type, Side::Front, place.answer, wrong1, wrong2});
                ShownQuestion shown = compose(set, graded);
                EXPECT_EQ(shown.type, type);
                EXPECT_EQ(shown.text, front(own));
                EXPECT_EQ(shown.choices, (Choices{back(a), back(b), back(c)}));
                EXPECT_EQ(set.absolutePosition(), own);

                CardSet &turned = onQuestion({type, Side::Back, place.answer, wrong1, wrong2});
                shown = compose(turned, graded);
                EXPECT_EQ(shown.type, type);
                EXPECT_EQ(shown.text, back(own));
                EXPECT_EQ(shown.choices, (Choices{front(a), front(b), front(c)}));
                EXPECT_EQ(turned.absolutePosition(), own);
            }
        }
    }
}

TEST_F(ComposeQuestion, ShowsAllChoicesOfMultipleChoiceAndOfAStatementTheRightAnswerOnceAFalseOneIsGraded)
{
    using Shown = std::array<bool, 3>;
    struct Case
    {
        Type type;
        int answer;
        Shown ungraded;
        Shown graded;
    };
    constexpr Shown all{true, true, true};
    constexpr Shown statement{true, false, false};
    for (const Case &row : {Case{Type::MultipleChoice, 1, all, all}, Case{Type::MultipleChoice, 2, all, all},
                            Case{Type::MultipleChoice, 3, all, all}, Case{Type::TrueOrFalse, 1, statement, statement},
                            Case{Type::TrueOrFalse, 2, statement, {true, true, false}},
                            Case{Type::TrueOrFalse, 3, statement, statement}}) {
        for (const Side side : {Side::Front, Side::Back}) {
            const TestQuestion question{row.type, side, row.answer, wrong1, wrong2};
            CardSet &set = onQuestion(question);
            EXPECT_EQ(compose(set, false).isShown, row.ungraded) << testing::PrintToString(question);
            EXPECT_EQ(compose(set, true).isShown, row.graded) << testing::PrintToString(question);
        }
    }
}

TEST_F(ComposeQuestion, OfAFalseStatementPutsAnotherAnswerFirstAndTheRightOneSecond)
{
    const ShownQuestion shown = compose(onQuestion({Type::TrueOrFalse, Side::Front, 2, 0, 6}), true);
    EXPECT_EQ(shown.choices.at(0), back(0));
    EXPECT_EQ(shown.choices.at(1), back(own));
}

TEST_F(ComposeQuestion, TakesChoicesFromTheFirstAndTheLastCardToo)
{
    EXPECT_EQ(compose(onQuestion({Type::MultipleChoice, Side::Front, 1, 0, 6}), false).choices,
              (Choices{back(own), back(0), back(6)}));
}

TEST_F(ComposeQuestion, ShowsNoTextForAChoiceWhoseCardWasDeleted)
{
    CardSet &set = onQuestion({Type::MultipleChoice, Side::Front, 2, wrong1, wrong2});
    deleteCardAt(wrong1);
    const ShownQuestion shown = compose(set, false);
    EXPECT_EQ(shown.choices, (Choices{"", back(own), back(wrong2)}));
    EXPECT_EQ(shown.isShown, (std::array{true, true, true}));
    EXPECT_EQ(set.absolutePosition(), own);
    deleteCardAt(wrong2);
    EXPECT_EQ(compose(set, false).choices, (Choices{"", back(own), ""}));
    EXPECT_EQ(set.absolutePosition(), own);
}

TEST_F(ComposeQuestion, ShowsNoTextForAChoiceFromOutsideTheSet)
{
    EXPECT_EQ(compose(onQuestion({Type::MultipleChoice, Side::Back, 1, -1, 7}), false).choices,
              (Choices{front(own), "", ""}));
    EXPECT_EQ(compose(onQuestion({Type::MultipleChoice, Side::Back, 3, 1'000'000, wrong2}), false).choices,
              (Choices{"", front(wrong2), front(own)}));
}

TEST_F(ComposeQuestion, OfADeletedCardIsAnErrorAndTheSetStaysOnIt)
{
    CardSet &set = onQuestion({Type::MultipleChoice, Side::Front, 2, wrong1, wrong2});
    deleteCardAt(own);
    for (int attempt = 0; attempt < 2; ++attempt) {
        try {
            (void)compose(set, false);
            ADD_FAILURE() << "a deleted card was shown";
        } catch (const StoreError &failure) {
            EXPECT_EQ(failure.reason(), StoreError::Reason::RowGone);
        }
        EXPECT_EQ(set.absolutePosition(), own);
    }
}

TEST_F(ComposeQuestion, OfAClosedSubjectIsAnError)
{
    CardSet &set = onQuestion({Type::MultipleChoice, Side::Front, 2, wrong1, wrong2});
    store->close();
    EXPECT_THROW((void)compose(set, false), StoreError);
}

TEST_F(ComposeQuestion, WritesNothing)
{
    CardSet &set = onQuestion({Type::TrueOrFalse, Side::Back, 2, wrong1, wrong2});
    SQLite::Database other(subject.string(), SQLite::OPEN_READWRITE);
    const int version = other.execAndGet("PRAGMA data_version").getInt();
    (void)compose(set, false);
    (void)compose(set, true);
    EXPECT_EQ(other.execAndGet("PRAGMA data_version").getInt(), version);
    EXPECT_THROW(set.update(), StoreError) << "no edit is left behind";
}

TEST_F(ComposeQuestion, StoredQuestionsAreReadAsTheyWereWritten)
{
    for (const Type type : {Type::MultipleChoice, Type::TrueOrFalse}) {
        for (const Side side : {Side::Front, Side::Back}) {
            for (int answer = 1; answer <= 3; ++answer) {
                const TestQuestion question{type, side, answer, answer + 1, 6 - answer};
                EXPECT_EQ(questionOf(onQuestion(question)), question);
                store->close();
                const auto stored = storedCards(SQLite::Database(subject.string()));
                EXPECT_EQ(stored.at(own).question, question);
                EXPECT_EQ(stored.at(own - 1).question, (TestQuestion{Type::MultipleChoice, Side::Back, 0, 0, 0}));
            }
        }
    }
}

} // namespace
