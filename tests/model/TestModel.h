#pragma once

#include "study/TestQuestion.h"
#include "tests/model/Draws.h"
#include "tests/model/SubjectModel.h"

#include <array>
#include <cstdlib>
#include <optional>
#include <string>
#include <vector>

/// What the learner has done with the questions.
struct AnswerSheetModel
{
    struct Answer
    {
        int selected = 0; ///< 0 is none
        bool isMarkedForReview = false;
    };

    explicit AnswerSheetModel(int questions)
        : answers(static_cast<std::size_t>(questions))
    {
    }

    /// T, F, A, B, C, 1, 2, 3 or Q, at a question. T and F are not quite symmetrical.
    void press(int question, char key)
    {
        Answer &answer = at(question);
        switch (key) {
        case 'T': answer.selected = std::abs(answer.selected - 1); break;
        case 'F': answer.selected = std::abs(answer.selected - 2); break;
        case 'Q': answer.isMarkedForReview = !answer.isMarkedForReview; break;
        default: answer.selected = key >= 'A' ? key - 'A' + 1 : key - '0'; break;
        }
    }

    [[nodiscard]] bool isOpen(int question) const
    {
        const Answer &answer = answers.at(static_cast<std::size_t>(question));
        return answer.selected == 0 || answer.isMarkedForReview;
    }

    /// Once round, the current question last.
    [[nodiscard]] std::optional<int> nextOpen(int current) const
    {
        const int count = static_cast<int>(answers.size());
        for (int step = 1; step <= count; ++step) {
            if (isOpen((current + step) % count)) {
                return (current + step) % count;
            }
        }
        return std::nullopt;
    }

    [[nodiscard]] Answer &at(int question) { return answers.at(static_cast<std::size_t>(question)); }

    std::vector<Answer> answers;
};

struct TooFewCards
{
};

/// A test: its cards in their order, the first of which are the questions.
class TestModel
{
public:
    /// Throws TooFewCards, and nothing has happened.
    TestModel(SubjectModel &subject, const ModelSelection &selection, int questionCount, int choicePercent,
              Draws &draws)
        : sheet(0)
        , m_subject(subject)
    {
        const SubjectModel before = subject;
        const std::vector<int> chosen = subject.selected(selection);
        for (auto card = chosen.rbegin(); card != chosen.rend(); ++card) {
            subject.card(*card).shuffle = draws.next();
        }
        m_cards = subject.shuffled(selection);
        if (count() < 5) {
            subject = before;
            throw TooFewCards();
        }
        for (int position = count() - 1; position >= 0; --position) {
            cardAt(position).question = drawQuestion(position, choicePercent, draws);
        }
        sheet = AnswerSheetModel(std::min(questionCount, count()));
        for (int question = 0; question < questions(); ++question) {
            drawn.push_back(cardAt(question).question);
        }
    }

    [[nodiscard]] int questions() const { return static_cast<int>(sheet.answers.size()); }

    [[nodiscard]] int rightAnswer(int question) const { return drawn.at(static_cast<std::size_t>(question)).answer; }

    /// The current question as it was drawn, whatever tests others make of the same cards; throws Gone.
    ShownQuestion shown()
    {
        const ModelCard &card = cardAt(current);
        const ModelQuestion &question = drawn.at(static_cast<std::size_t>(current));
        const bool isFront = question.isFront;
        std::vector<std::string> choices{answerOf(question.wrong1, isFront), answerOf(question.wrong2, isFront)};
        choices.insert(choices.begin() + question.answer - 1, isFront ? card.back : card.front);
        const bool isCorrected = isGraded && question.answer == 2;
        return {.type = question.isTrueFalse ? QuestionType::TrueOrFalse : QuestionType::MultipleChoice,
                .text = isFront ? card.front : card.back,
                .choices = {choices.at(0), choices.at(1), choices.at(2)},
                .isShown = {true, !question.isTrueFalse || isCorrected, !question.isTrueFalse}};
    }

    /// The questions that are not answered right. Their cards are marked, those that are still there.
    std::vector<int> grade()
    {
        std::vector<int> wrong;
        for (int question = 0; question < questions(); ++question) {
            if (sheet.at(question).selected != rightAnswer(question)) {
                wrong.push_back(question);
                mark(question);
            }
        }
        isGraded = true;
        return wrong;
    }

    /// In whole percent, of 5 to 50 questions. 29 of 50 are less by one, because half a bit is lost.
    static int percent(int right, int total) { return right * 100 / total - (right == 29 && total == 50 ? 1 : 0); }

    AnswerSheetModel sheet;
    std::vector<ModelQuestion> drawn;
    int current = 0;
    bool isGraded = false;

private:
    [[nodiscard]] int count() const { return static_cast<int>(m_cards.size()); }
    [[nodiscard]] ModelCard &cardAt(int position)
    {
        return m_subject.card(m_cards.at(static_cast<std::size_t>(position)));
    }

    /// Type, side, answer and the two wrong choices, in this order. Neither the card itself nor the last one is a
    /// wrong choice.
    [[nodiscard]] ModelQuestion drawQuestion(int position, int choicePercent, Draws &draws) const
    {
        ModelQuestion question;
        question.isTrueFalse = static_cast<int>(draws.next() * 100) >= choicePercent;
        question.isFront = static_cast<int>(draws.next() * 100) >= 50;
        const int answers = question.isTrueFalse ? 2 : 3;
        question.answer = static_cast<int>(static_cast<float>(answers) * draws.next()) + 1;
        const auto otherThan = [&](int own, int taken) {
            int found = own;
            while (found == own || found == taken) {
                found = static_cast<int>(static_cast<double>(draws.next()) * (count() - 1));
            }
            return found;
        };
        question.wrong1 = otherThan(position, position);
        question.wrong2 = otherThan(position, question.wrong1);
        return question;
    }

    /// The answer side of the card at \p position; nothing of one that is not there.
    std::string answerOf(int position, bool isFrontAsked)
    {
        if (position < 0 || position >= count() || !m_subject.hasCard(m_cards.at(static_cast<std::size_t>(position)))) {
            return {};
        }
        return isFrontAsked ? cardAt(position).back : cardAt(position).front;
    }

    void mark(int question)
    {
        const int key = m_cards.at(static_cast<std::size_t>(question));
        if (m_subject.hasCard(key)) {
            m_subject.card(key).marked = true;
        }
    }

    SubjectModel &m_subject;
    std::vector<int> m_cards; ///< keys, in the order of the test
};

/// The time that is left of a test.
struct TestClockModel
{
    int secondsLeft;

    /// True when the time is up.
    bool secondPasses() { return secondsLeft > 0 && --secondsLeft == 0; }

    [[nodiscard]] std::string display() const { return text(secondsLeft % 60 < 10 ? ":0" : ":"); }
    /// Before the first second has passed: a minute more or less looks odd here, and is meant to.
    [[nodiscard]] std::string firstDisplay() const { return text(secondsLeft % 7 == 0 ? ":0" : ":"); }

private:
    [[nodiscard]] std::string text(const char *separator) const
    {
        return std::to_string(secondsLeft / 60) + separator + std::to_string(secondsLeft % 60);
    }
};
