#include "study/QuestionSearch.h"

std::optional<int> nextOpenQuestion(std::span<const QuestionState> questions, int current)
{
    const int last = static_cast<int>(questions.size()) - 1;
    const auto isOpen = [&](int question) { return questions[static_cast<std::size_t>(question)].isOpen(); };
    int question = current < last ? current + 1 : 0;
    for (int steps = 0; steps <= last + 1 && !isOpen(question); ++steps) {
        if (question == current) {
            ++question;
        }
        question = question < last ? question + 1 : 0;
    }
    return isOpen(question) ? std::optional(question) : std::nullopt;
}
