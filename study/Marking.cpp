#include "study/Marking.h"

#include "store/Schema.h"

void toggleMark(CardSet &cards)
{
    cards.edit();
    try {
        cards.setFlag(CardField::Marked, !cards.flag(CardField::Marked));
        cards.update();
    } catch (...) {
        cards.cancelUpdate(); // or the card would look marked although it is not
        throw;
    }
}
