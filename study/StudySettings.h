#pragma once

#include <cstdint>
#include <string>

/// How the chosen cards are studied.
enum class StudyStyle : std::int16_t { FlashCards = 1, Test = 2 };

/// Which side of a card is seen first. Every value but the first two means a
/// random side, decided anew for each card.
namespace ViewOrder {
inline constexpr std::int16_t front = 1;
inline constexpr std::int16_t back = 2;
inline constexpr std::int16_t random = 3;         ///< as the study wizard writes it
inline constexpr std::int16_t randomInDialog = 0; ///< as the flash-card options dialog writes it
} // namespace ViewOrder

/// The learner's choices for one study. Nothing of it outlives the program.
struct StudySettings
{
    bool cancelled = true; ///< left without confirming: no study may start
    StudyStyle style = StudyStyle::FlashCards;
    /// Flash cards: seconds until a card turns over by itself, 1 to 20.
    /// Test: time limit in minutes, 2 to 50. Either: 0 is off.
    std::int16_t timeSetting = 0;
    std::int16_t viewOrder = ViewOrder::front;
    std::int16_t questionCount = 20;         ///< 5 to 50, and no more than there are cards
    std::int16_t multipleChoicePercent = 60; ///< 0 to 100; the rest is true or false
    std::string cardQuery{};                 ///< selects the cards; no closing ";"
};
