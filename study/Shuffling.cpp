#include "study/Shuffling.h"

#include "store/Schema.h"
#include "store/Statements.h"
#include "store/StoreError.h"
#include "study/KeptPosition.h"

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

void drawSortKeys(CardSet &cards, const RandomDraw &draw)
{
    for (; !cards.isBeginOfSet(); cards.movePrevious()) {
        writeKey(cards, draw());
    }
}

std::optional<CardSet> shuffle(SubjectStore &store, CardSet &cards, std::string_view cardQuery, const RandomDraw &draw)
{
    Transaction pass(store);
    const KeptPosition kept(cards);
    cards.moveLast();
    writeKey(cards, draw());
    drawSortKeys(cards, draw);
    CardSet shuffled = store.openRecordSet(cardsShuffled(cardQuery)); // before the commit: after it nothing may fail
    if (shuffled.recordCount() == 0) {
        return std::nullopt;
    }
    shuffled.moveLast();
    shuffled.moveFirst();
    pass.commit();
    return shuffled;
}
