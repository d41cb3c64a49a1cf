#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <span>
#include <stdexcept>
#include <string>

/// Why a selection of cards cannot be studied.
enum class SelectionRefusal : std::uint8_t {
    NothingChosen, ///< no topic, and no marked cards
    NoCards,
    UnderFiveCards,
};

/// The least number of cards that can be studied, whatever the style: a
/// multiple choice question needs two wrong answers beside its own.
inline constexpr int minStudyCards = 5;

/// The card query of \p topics (keys, in list order), with the marked cards of
/// every topic if \p withMarked. Topics and marked cards are joined, not intersected.
[[nodiscard]] std::string selectionQuery(std::span<const int> topics, bool withMarked);

/// What stands in the way of studying \p count cards.
[[nodiscard]] std::optional<SelectionRefusal> checkCardCount(int count);

/// The cards that were chosen are no longer there, or too few of them, when the study is to begin.
class CardsGone : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};
