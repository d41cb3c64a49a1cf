#include "study/FileOrder.h"

#include <algorithm>
#include <numeric>

std::vector<int> positionsInFile(CardSet &cards)
{
    std::vector<CardSet::Bookmark> rows;
    rows.reserve(static_cast<std::size_t>(cards.recordCount()));
    for (cards.moveFirst(); !cards.isEndOfSet(); cards.moveNext()) {
        rows.push_back(cards.bookmark());
    }
    std::vector<int> positions(rows.size());
    std::iota(positions.begin(), positions.end(), 0);
    std::ranges::sort(positions, {}, [&](int position) { return rows[static_cast<std::size_t>(position)]; });
    return positions;
}
