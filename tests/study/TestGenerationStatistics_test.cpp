#include "NoDiskWaits.h"
#include "StoredTest.h"
#include "study/TestGeneration.h"
#include "tests/support/TestSubject.h"

#include <SQLiteCpp/Database.h>
#include <array>
#include <cmath>
#include <gtest/gtest.h>
#include <map>
#include <string>
#include <utility>
#include <vector>

namespace {

constexpr int cardCount = 20'000;

/// That \p found of \p trials is what a chance of \p chance gives: no more than 5 standard deviations of the
/// binomial distribution away, which a fair draw is in all but one of 1.7 million cases.
void expectShare(int found, int trials, double chance, const std::string &what)
{
    const double deviation = std::sqrt(trials * chance * (1 - chance));
    EXPECT_NEAR(found, trials * chance, 5 * deviation) << what;
}

/// A subject whose cards are generated at \p percent, once for every seed.
class GenerationStatistics : public testing::TestWithParam<int>
{
protected:
    GenerationStatistics()
    {
        SubjectStore::create(subject);
        SQLite::Database(subject.string(), SQLite::OPEN_READWRITE)
            .exec("WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < " +
                  std::to_string(cardCount) + ") INSERT INTO FlashCards (NIndex, Front, Back) SELECT 1, '', '' FROM n");
    }

    /// The questions in the order of the test.
    [[nodiscard]] std::vector<TestQuestion> generate(int percent, unsigned seed) const
    {
        SubjectStore store(subject);
        const std::string query = cardQuery(std::array{1});
        CardSet cards = store.openRecordSet(cardsInOrder(query));
        CardSet test = generateTest(store, cards, query, percent, drawSeededBy(seed));
        std::vector<TestQuestion> questions;
        for (; !test.isEndOfSet(); test.moveNext()) {
            questions.push_back(questionOf(test));
        }
        EXPECT_EQ(questions.size(), static_cast<std::size_t>(cardCount));
        return questions;
    }

    TestFolder folder;
    std::filesystem::path subject = folder.file("subject.crl");
};

TEST_P(GenerationStatistics, TypesSidesAnswersAndWrongChoicesHaveTheirShares)
{
    const int percent = GetParam();
    const std::vector<TestQuestion> questions = generate(percent, 1000U + static_cast<unsigned>(percent));

    std::map<QuestionType, int> types;
    std::map<std::pair<QuestionType, Side>, int> sides;
    std::map<std::tuple<QuestionType, Side, int>, int> answers;
    constexpr int parts = 40;
    std::array<int, parts> firstWrong{};
    std::array<int, parts> secondWrong{};
    for (int own = 0; own < cardCount; ++own) {
        const TestQuestion &question = questions[static_cast<std::size_t>(own)];
        ASSERT_NE(question.wrong1, own);
        ASSERT_NE(question.wrong2, own);
        ASSERT_NE(question.wrong1, question.wrong2);
        for (const int wrong : {question.wrong1, question.wrong2}) {
            ASSERT_GE(wrong, 0);
            ASSERT_LE(wrong, cardCount - 2) << "the last card is a wrong choice";
        }
        ++types[question.type];
        ++sides[{question.type, question.asked}];
        ++answers[{question.type, question.asked, question.answer}];
        ++firstWrong.at(static_cast<std::size_t>(question.wrong1 * parts / (cardCount - 1)));
        ++secondWrong.at(static_cast<std::size_t>(question.wrong2 * parts / (cardCount - 1)));
    }

    expectShare(types[QuestionType::MultipleChoice], cardCount, percent / 100.0, "multiple choice");
    for (const auto &[type, choices] : {std::pair{QuestionType::MultipleChoice, 3}, {QuestionType::TrueOrFalse, 2}}) {
        const std::string name = type == QuestionType::MultipleChoice ? "multiple choice" : "true or false";
        int counted = 0;
        for (const Side side : {Side::Front, Side::Back}) {
            expectShare(sides[{type, side}], types[type], 0.5, name + ", side");
            for (int answer = 1; answer <= choices; ++answer) {
                const int found = answers[{type, side, answer}];
                expectShare(found, types[type], 0.5 / choices, name + ", answer " + std::to_string(answer));
                counted += found;
            }
        }
        EXPECT_EQ(counted, types[type]) << name << " has other answers too";
    }
    for (std::size_t part = 0; part < parts; ++part) {
        expectShare(firstWrong.at(part), cardCount, 1.0 / parts, "first wrong choice, part " + std::to_string(part));
        expectShare(secondWrong.at(part), cardCount, 1.0 / parts, "second wrong choice, part " + std::to_string(part));
    }
}

INSTANTIATE_TEST_SUITE_P(Percent, GenerationStatistics, testing::Values(0, 37, 60, 100),
                         testing::PrintToStringParamName());

TEST(WrongChoices, OfFewCardsAreEveryPairOfOthersExceptTheLastEquallyOften)
{
    for (int count = 5; count <= 7; ++count) {
        for (int own = 0; own < count; ++own) {
            const RandomDraw draw = drawSeededBy(static_cast<unsigned>(100 * count + own));
            std::map<std::pair<int, int>, int> pairs;
            for (int card = 0; card < cardCount; ++card) {
                const TestQuestion question = drawQuestion(own, count, 60, draw);
                ++pairs[{question.wrong1, question.wrong2}];
            }
            const int others = own == count - 1 ? count - 1 : count - 2;
            ASSERT_EQ(pairs.size(), static_cast<std::size_t>(others * (others - 1)));
            for (const auto &[pair, found] : pairs) {
                const auto [wrong1, wrong2] = pair;
                EXPECT_TRUE(wrong1 >= 0 && wrong1 <= count - 2 && wrong1 != own);
                EXPECT_TRUE(wrong2 >= 0 && wrong2 <= count - 2 && wrong2 != own && wrong2 != wrong1);
                expectShare(found, cardCount, 1.0 / (others * (others - 1)),
                            std::to_string(wrong1) + " and " + std::to_string(wrong2) + " for " + std::to_string(own) +
                                " of " + std::to_string(count));
            }
        }
    }
}

} // namespace
