#pragma once

/// Draws a number in [0, 1) from a generator that is seeded from the clock for
/// this very draw. Two draws within one tick of the clock may be equal.
[[nodiscard]] float drawSeededFromClock();
