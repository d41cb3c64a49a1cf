#include "study/TestQuestion.h"

#include "store/Schema.h"
#include "store/StoreError.h"
#include "study/CardSelection.h"
#include "study/KeptPosition.h"

#include <stdexcept>

namespace {

/// The text of the card at \p position, or of none if it was deleted meanwhile.
std::string textAt(CardSet &cards, int position, CardField::Position side)
{
    if (position < 0 || position >= cards.recordCount()) {
        return {};
    }
    try {
        cards.setAbsolutePosition(position);
        return cards.text(side);
    } catch (const StoreError &failure) {
        if (failure.reason() != StoreError::Reason::RowGone) {
            throw;
        }
        return {};
    }
}

} // namespace

int randomPosition(int count, const RandomDraw &draw)
{
    return static_cast<int>(static_cast<double>(draw()) * (count - 1));
}

TestQuestion drawQuestion(int position, int count, int multipleChoicePercent, const RandomDraw &draw)
{
    if (count < minStudyCards) {
        throw std::invalid_argument("a test needs at least 5 cards");
    }
    TestQuestion question{};
    question.type = static_cast<int>(draw() * 100) >= multipleChoicePercent ? QuestionType::TrueOrFalse
                                                                            : QuestionType::MultipleChoice;
    question.asked = static_cast<int>(draw() * 100) >= 50 ? Side::Front : Side::Back;
    const float answers = question.type == QuestionType::TrueOrFalse ? 2 : choiceCount;
    question.answer = static_cast<int>(answers * draw()) + 1;
    do {
        question.wrong1 = randomPosition(count, draw);
    } while (question.wrong1 == position);
    do {
        question.wrong2 = randomPosition(count, draw);
    } while (question.wrong2 == position || question.wrong2 == question.wrong1);
    return question;
}

TestQuestion questionOf(const CardSet &cards)
{
    return {.type = cards.flag(CardField::isTrueFalse) ? QuestionType::TrueOrFalse : QuestionType::MultipleChoice,
            .asked = cards.flag(CardField::isFront) ? Side::Front : Side::Back,
            .answer = cards.number(CardField::Answer),
            .wrong1 = cards.number(CardField::Wrong1),
            .wrong2 = cards.number(CardField::Wrong2)};
}

void setQuestion(CardSet &cards, const TestQuestion &question)
{
    cards.setFlag(CardField::isTrueFalse, question.type == QuestionType::TrueOrFalse);
    cards.setFlag(CardField::isFront, question.asked == Side::Front);
    cards.setNumber(CardField::Answer, question.answer);
    cards.setNumber(CardField::Wrong1, question.wrong1);
    cards.setNumber(CardField::Wrong2, question.wrong2);
}

ShownQuestion composeQuestion(CardSet &cards, const TestQuestion &question, bool graded)
{
    const bool asksFront = question.asked == Side::Front;
    const auto answerSide = asksFront ? CardField::Back : CardField::Front;
    const int own = cards.absolutePosition();

    ShownQuestion shown{};
    shown.type = question.type;
    shown.text = cards.text(asksFront ? CardField::Front : CardField::Back);
    const KeptPosition kept(cards);
    std::array<int, 2> wrong{question.wrong1, question.wrong2};
    for (std::size_t choice = 0, next = 0; choice < shown.choices.size(); ++choice) {
        const bool isRight = static_cast<int>(choice) + 1 == question.answer;
        const int position = isRight ? own : next < wrong.size() ? wrong.at(next++) : -1;
        shown.choices.at(choice) = textAt(cards, position, answerSide);
    }
    const bool isStatement = question.type == QuestionType::TrueOrFalse;
    shown.isShown = {true, !isStatement || (graded && question.answer == 2), !isStatement};
    return shown;
}
