#pragma once

#include <vector>

/// One of several boxes that stand below one another.
struct HeightWish
{
    int wanted; ///< what the box needs to show all of its text
    int weight; ///< its share of the height beside those of the others; at least 1
};

/// Shares \p height among the boxes, by their weights where all of them have enough in this way. Else a box that
/// wants less than its share gets what it wants, and the others share what it leaves.
[[nodiscard]] std::vector<int> shareHeight(int height, const std::vector<HeightWish> &boxes);
