#include "forms/frmTest/SharedHeight.h"

#include <algorithm>
#include <cstddef>
#include <numeric>

std::vector<int> shareHeight(int height, const std::vector<HeightWish> &boxes)
{
    std::vector<int> shares(boxes.size(), 0);
    std::vector<std::size_t> open(boxes.size());
    std::iota(open.begin(), open.end(), 0);
    int left = std::max(0, height);
    for (bool isFair = false; !isFair;) {
        int weights = 0;
        for (const std::size_t box : open) {
            weights += boxes[box].weight;
        }
        for (const std::size_t box : open) {
            shares[box] = left * boxes[box].weight / weights;
        }
        const auto isContent = [&](std::size_t box) { return boxes[box].wanted <= shares[box]; };
        isFair = std::ranges::all_of(open, isContent) || std::ranges::none_of(open, isContent);
        if (!isFair) {
            std::erase_if(open, [&](std::size_t box) {
                if (!isContent(box)) {
                    return false;
                }
                shares[box] = boxes[box].wanted;
                left -= shares[box];
                return true;
            });
        }
    }
    return shares;
}
