#pragma once

#include <optional>
#include <span>

/// What the learner has done with a question.
struct QuestionState
{
    int selectedAnswer = 0; ///< 1 to 3; 0 is none
    bool markedForReview = false;

    [[nodiscard]] bool isOpen() const { return selectedAnswer < 1 || markedForReview; }
};

/// The next open question after \p current, going on at the first one behind the last. It
/// may be \p current itself if no other is open. Nothing if none is open.
[[nodiscard]] std::optional<int> nextOpenQuestion(std::span<const QuestionState> questions, int current);
