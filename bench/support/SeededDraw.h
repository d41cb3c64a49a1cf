#pragma once

#include "study/RandomDraw.h"

#include <random>

/// The same numbers for the same \p seed, every time.
inline RandomDraw seededDraw(unsigned seed)
{
    return
        [generator = std::mt19937(seed)]() mutable { return std::uniform_real_distribution<float>(0, 1)(generator); };
}
