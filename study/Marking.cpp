#include "study/Marking.h"

#include "store/Schema.h"

bool toggleMark(CardSet &cards)
{
    cards.edit();
    try {
        const bool isMarked = !cards.flag(CardField::Marked);
        cards.setFlag(CardField::Marked, isMarked);
        cards.update();
        return isMarked;
    } catch (...) {
        cards.cancelUpdate(); // or the card would look marked although it is not
        throw;
    }
}
