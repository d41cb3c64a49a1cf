#pragma once

#include "study/RandomDraw.h"

#include <cstdint>

enum class Side : std::uint8_t { Front, Back };

[[nodiscard]] constexpr Side otherSide(Side side)
{
    return side == Side::Front ? Side::Back : Side::Front;
}

/// The side that a card shows when it is reached. \p draw is called once, and
/// only for a random order.
[[nodiscard]] Side startingSide(std::int16_t viewOrder, const RandomDraw &draw);
