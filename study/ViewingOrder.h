#pragma once

#include <cstdint>
#include <functional>

enum class Side : std::uint8_t { Front, Back };

[[nodiscard]] constexpr Side otherSide(Side side)
{
    return side == Side::Front ? Side::Back : Side::Front;
}

/// Draws a number in [0, 1). Whoever supplies it decides how it is seeded.
using RandomDraw = std::function<float()>;

/// The side that a card shows when it is reached. \p draw is called once, and
/// only for a random order.
[[nodiscard]] Side startingSide(std::int16_t viewOrder, const RandomDraw &draw);
