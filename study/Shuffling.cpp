#include "study/Shuffling.h"

#include "store/Schema.h"
#include "store/Statements.h"
#include "store/StoreError.h"
#include "store/WorkSignal.h"
#include "study/FileOrder.h"
#include "study/KeptPosition.h"

#include <algorithm>
#include <functional>
#include <vector>

namespace {

void writeKey(CardSet &cards, float key)
{
    cards.edit();
    cards.setSingle(CardField::Shuffle, key);
    try {
        cards.update();
    } catch (const StoreError &failure) {
        if (failure.reason() != StoreError::Reason::RowGone) {
            throw;
        }
    }
}

} // namespace

void drawSortKeys(CardSet &cards, const RandomDraw &draw, WorkPass &work)
{
    std::vector<float> keys(static_cast<std::size_t>(cards.recordCount()));
    std::ranges::generate(keys.rbegin(), keys.rend(), std::cref(draw));
    std::vector<int> positions = positionsInFile(cards);
    if (std::ranges::is_sorted(positions)) {
        std::ranges::reverse(positions); // as they are drawn: that is an order of the file too
    }
    for (const int position : positions) {
        cards.setAbsolutePosition(position);
        writeKey(cards, keys[static_cast<std::size_t>(position)]);
        work.step();
    }
}

std::optional<CardSet> shuffle(SubjectStore &store, CardSet &cards, std::string_view cardQuery, const RandomDraw &draw)
{
    Transaction pass(store);
    WorkPass work("Shuffling the flash cards...", cards.recordCount());
    const KeptPosition kept(cards);
    cards.moveLast();
    writeKey(cards, draw());
    drawSortKeys(cards, draw, work);
    CardSet shuffled = store.openRecordSet(cardsShuffled(cardQuery)); // before the commit: after it nothing may fail
    if (shuffled.recordCount() == 0) {
        return std::nullopt;
    }
    shuffled.moveLast();
    shuffled.moveFirst();
    pass.commit();
    return shuffled;
}
