#pragma once

#include "study/TestQuestion.h"

#include <SQLiteCpp/Database.h>
#include <SQLiteCpp/Statement.h>
#include <ostream>
#include <random>
#include <string>
#include <utility>
#include <vector>

/// Gives the numbers of a script, and fails the test when more are asked for.
class ScriptedDraw
{
public:
    explicit ScriptedDraw(std::vector<float> numbers)
        : m_numbers(std::move(numbers))
    {
    }

    RandomDraw draw()
    {
        return [this] { return m_numbers.at(static_cast<std::size_t>(m_draws++)); };
    }
    [[nodiscard]] int draws() const { return m_draws; }
    [[nodiscard]] bool isAtEnd() const { return m_draws == static_cast<int>(m_numbers.size()); }

private:
    std::vector<float> m_numbers;
    int m_draws = 0;
};

/// Numbers that look random and are the same in every run.
inline RandomDraw drawSeededBy(unsigned seed)
{
    return
        [generator = std::mt19937(seed)]() mutable { return std::uniform_real_distribution<float>(0, 1)(generator); };
}

inline void PrintTo(const TestQuestion &question, std::ostream *out)
{
    *out << (question.type == QuestionType::TrueOrFalse ? "true or false, " : "multiple choice, ")
         << (question.asked == Side::Front ? "front, " : "back, ") << question.answer << ", " << question.wrong1 << ", "
         << question.wrong2;
}

/// What a test leaves in a card, as the engine holds it.
struct StoredCard
{
    int card; ///< its key
    double shuffle;
    TestQuestion question;

    friend bool operator==(const StoredCard &, const StoredCard &) = default;
    friend void PrintTo(const StoredCard &stored, std::ostream *out)
    {
        *out << "card " << stored.card << ": " << stored.shuffle << ", ";
        PrintTo(stored.question, out);
    }
};

/// All cards in the order of entry.
inline std::vector<StoredCard> storedCards(const SQLite::Database &engine)
{
    std::vector<StoredCard> cards;
    SQLite::Statement select(
        engine, "SELECT \"Index\", Shuffle, isTrueFalse, isFront, Answer, Wrong1, Wrong2 FROM FlashCards ORDER BY 1");
    while (select.executeStep()) {
        cards.push_back({.card = select.getColumn(0),
                         .shuffle = select.getColumn(1),
                         .question = {.type = select.getColumn(2).getInt() != 0 ? QuestionType::TrueOrFalse
                                                                                : QuestionType::MultipleChoice,
                                      .asked = select.getColumn(3).getInt() != 0 ? Side::Front : Side::Back,
                                      .answer = select.getColumn(4),
                                      .wrong1 = select.getColumn(5),
                                      .wrong2 = select.getColumn(6)}});
    }
    return cards;
}
