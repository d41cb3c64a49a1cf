#pragma once

#include "study/RandomDraw.h"

// Chance that is seeded from the clock.

/// A generator that is seeded now.
[[nodiscard]] RandomDraw generatorSeededFromClock();

/// Draws a number in [0, 1) from a generator that is seeded for this very draw.
/// Two draws within one tick of the clock may be equal.
[[nodiscard]] float drawSeededFromClock();
