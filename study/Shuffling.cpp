#include "study/Shuffling.h"

#include "store/Schema.h"
#include "store/Statements.h"
#include "store/StoreError.h"

namespace {

/// Puts a set back on the row on which it was, if there was one.
class KeptPosition
{
public:
    explicit KeptPosition(CardSet &cards)
        : m_cards(cards)
        , m_position(cards.absolutePosition())
    {
    }
    KeptPosition(const KeptPosition &) = delete;
    KeptPosition &operator=(const KeptPosition &) = delete;
    ~KeptPosition()
    {
        if (m_position >= 0) {
            m_cards.setAbsolutePosition(m_position);
        }
    }

private:
    CardSet &m_cards;
    int m_position;
};

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

std::optional<CardSet> shuffle(SubjectStore &store, CardSet &cards, std::string_view cardQuery, const RandomDraw &draw)
{
    Transaction pass(store);
    const KeptPosition kept(cards);
    cards.moveLast();
    writeKey(cards, draw());
    for (; !cards.isBeginOfSet(); cards.movePrevious()) {
        writeKey(cards, draw());
    }
    CardSet shuffled = store.openRecordSet(cardsShuffled(cardQuery)); // before the commit: after it nothing may fail
    if (shuffled.recordCount() == 0) {
        return std::nullopt;
    }
    shuffled.moveLast();
    shuffled.moveFirst();
    pass.commit();
    return shuffled;
}
