#pragma once

#include <functional>

/// Draws a number in [0, 1). Whoever supplies it decides how it is seeded.
using RandomDraw = std::function<float()>;
