#include "study/QuestionSearch.h"

#include <array>
#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace {

using Questions = std::vector<QuestionState>;

/// A test from one character for each question: 'o' unanswered, 'a' answered, and the capital
/// if it is marked too.
Questions test(const std::string &states)
{
    Questions questions;
    for (std::size_t at = 0; at < states.size(); ++at) {
        const bool isMarked = states[at] == 'O' || states[at] == 'A';
        const bool isAnswered = states[at] == 'a' || states[at] == 'A';
        questions.push_back({isAnswered ? 1 + static_cast<int>(at % 3) : 0, isMarked});
    }
    return questions;
}

/// The search as steps that go through all questions and over the current one.
std::optional<int> searchBySteps(const Questions &questions, int cur)
{
    const int n = static_cast<int>(questions.size());
    const auto state = [&](int k) { return questions.at(static_cast<std::size_t>(k)); };
    int k = cur + 1;
    if (k > n - 1) {
        k = 0;
    }
    int steps = 0;
    while (steps < n + 1 && state(k).selectedAnswer >= 1 && !state(k).markedForReview) {
        if (k == cur) {
            k = k + 1;
        }
        if (k < n - 1) {
            k = k + 1;
        } else {
            k = 0;
        }
        steps = steps + 1;
    }
    if (state(k).selectedAnswer >= 1 && !state(k).markedForReview) {
        return std::nullopt;
    }
    return k;
}

/// The first open question of those after \p current, round to \p current itself.
std::optional<int> searchByLooking(const Questions &questions, int current)
{
    const std::size_t count = questions.size();
    for (std::size_t step = 1; step <= count; ++step) {
        const std::size_t question = (static_cast<std::size_t>(current) + step) % count;
        if (questions[question].selectedAnswer == 0 || questions[question].markedForReview) {
            return static_cast<int>(question);
        }
    }
    return std::nullopt;
}

TEST(QuestionSearch, FindsWhatTheStepsAndWhatALookFindInAllStatesOfFiveToSevenQuestions)
{
    for (int count = 5; count <= 7; ++count) {
        for (int states = 0; states < 1 << (2 * count); ++states) {
            Questions questions;
            for (int question = 0; question < count; ++question) {
                const int state = states >> (2 * question);
                questions.push_back({(state & 1) != 0 ? 1 + question % 3 : 0, (state & 2) != 0});
            }
            for (int current = 0; current < count; ++current) {
                const std::optional<int> found = nextOpenQuestion(questions, current);
                ASSERT_EQ(found, searchBySteps(questions, current))
                    << "from " << current << " of " << count << " in state " << states;
                ASSERT_EQ(found, searchByLooking(questions, current))
                    << "from " << current << " of " << count << " in state " << states;
            }
        }
    }
}

TEST(QuestionSearch, FindsTheOneOpenQuestionOfFiftyFromEverywhere)
{
    for (int open = 0; open < 50; ++open) {
        Questions questions(50, {.selectedAnswer = 3});
        questions[static_cast<std::size_t>(open)] =
            open % 2 == 0 ? QuestionState{} : QuestionState{.selectedAnswer = 2, .markedForReview = true};
        for (int current = 0; current < 50; ++current) {
            ASSERT_EQ(nextOpenQuestion(questions, current), open) << "from " << current;
        }
    }
}

TEST(QuestionSearch, StartsAfterTheCurrentQuestion)
{
    EXPECT_EQ(nextOpenQuestion(test("ooooo"), 0), 1);
    EXPECT_EQ(nextOpenQuestion(test("ooooo"), 3), 4);
    EXPECT_EQ(nextOpenQuestion(test("oaaoo"), 0), 3);
}

TEST(QuestionSearch, GoesOnAtTheFirstQuestionBehindTheLast)
{
    EXPECT_EQ(nextOpenQuestion(test("ooooo"), 4), 0);
    EXPECT_EQ(nextOpenQuestion(test("aoaao"), 4), 1);
    EXPECT_EQ(nextOpenQuestion(test("oaaaa"), 2), 0);
    EXPECT_EQ(nextOpenQuestion(test("aaoaa"), 3), 2);
}

TEST(QuestionSearch, ComesBackToTheCurrentQuestionIfNoOtherIsOpen)
{
    EXPECT_EQ(nextOpenQuestion(test("oaaaa"), 0), 0);
    EXPECT_EQ(nextOpenQuestion(test("aaoaa"), 2), 2);
    EXPECT_EQ(nextOpenQuestion(test("aaaaA"), 4), 4);
}

TEST(QuestionSearch, FindsNothingIfAllAreAnsweredAndNoneIsMarked)
{
    for (int current = 0; current < 5; ++current) {
        EXPECT_EQ(nextOpenQuestion(test("aaaaa"), current), std::nullopt);
    }
}

TEST(QuestionSearch, StopsAtMarkedQuestionsWhetherAnsweredOrNot)
{
    EXPECT_EQ(nextOpenQuestion(test("aaAaO"), 0), 2);
    EXPECT_EQ(nextOpenQuestion(test("aaAaO"), 2), 4);
    EXPECT_EQ(nextOpenQuestion(test("aaAaO"), 4), 2);
}

TEST(QuestionSearch, AnyOfTheThreeAnswersIsAnAnswer)
{
    for (int answer = 1; answer <= 3; ++answer) {
        EXPECT_FALSE((QuestionState{answer, false}.isOpen()));
        EXPECT_TRUE((QuestionState{answer, true}.isOpen()));
    }
    EXPECT_TRUE(QuestionState{}.isOpen());
    EXPECT_TRUE((QuestionState{0, true}.isOpen()));
}

} // namespace
