#pragma once

#include <functional>

class QPainter;

/// Calls \p draw once for each band of a few lines of the device, which has \p height lines, with
/// \p painter clipped to it.
///
/// Qt shares the filling of a shape between threads once it is cut into 96 pieces, of which each line of a
/// smooth stroke is several. To wake the threads, and at first to start them, takes longer than to draw a
/// small picture. In a band its shapes have fewer pieces. The result is the same.
void drawInBands(QPainter &painter, int height, const std::function<void()> &draw);
