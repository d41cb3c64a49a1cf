#pragma once

#include "store/RecordSet.h"
#include "study/RandomDraw.h"
#include "study/ViewingOrder.h"

#include <array>
#include <cstdint>
#include <string>

/// How a question is answered.
enum class QuestionType : std::uint8_t { MultipleChoice, TrueOrFalse };

inline constexpr int choiceCount = 3; ///< (a), (b), (c)

/// What makes a card into a question of a test, as its test fields hold it.
struct TestQuestion
{
    QuestionType type;
    Side asked; ///< the choices are the other sides
    /// The number of the right choice: 1 to 3. For true or false 1 is true, and choice (a) is
    /// the card's own answer; 2 is false, and (a) is another card's.
    int answer;
    int wrong1; ///< position of the card that supplies the first wrong choice; never the card's own
    int wrong2; ///< of the second; neither the card's own nor wrong1

    friend bool operator==(const TestQuestion &, const TestQuestion &) = default;
};

/// Draws a position that may supply a wrong choice: 0 to \p count - 2. The last one never does.
[[nodiscard]] int randomPosition(int count, const RandomDraw &draw);

/// Draws the question of the card at \p position of \p count, at least minStudyCards. It is multiple choice
/// with a chance of \p multipleChoicePercent. The numbers are drawn in the order type, side, answer, wrong choices.
[[nodiscard]] TestQuestion drawQuestion(int position, int count, int multipleChoicePercent, const RandomDraw &draw);

/// The question that the current card holds.
[[nodiscard]] TestQuestion questionOf(const CardSet &cards);

/// Writes \p question into the current card, which is in edit mode.
void setQuestion(CardSet &cards, const TestQuestion &question);

/// A question as the learner sees it. All texts are RTF.
struct ShownQuestion
{
    QuestionType type;
    std::string text;
    std::array<std::string, choiceCount> choices; ///< (a), (b), (c), also those that are not shown
    std::array<bool, choiceCount> isShown;
};

/// Composes \p question of the current card from it and the cards that supply the wrong choices.
/// Once it is \p graded, a false statement shows the right answer too. The set stays on
/// the card, also after a failure. A card that is gone supplies no text.
[[nodiscard]] ShownQuestion composeQuestion(CardSet &cards, const TestQuestion &question, bool graded);
