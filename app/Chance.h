#pragma once

#include "study/RandomDraw.h"

/// A generator of random numbers that is seeded from the clock now. Two of them
/// that are made within one tick of the clock may give the same numbers.
[[nodiscard]] RandomDraw generatorSeededFromClock();
