#include "study/ViewingOrder.h"

#include "study/StudySettings.h"

Side startingSide(std::int16_t viewOrder, const RandomDraw &draw)
{
    switch (viewOrder) {
    case ViewOrder::front: return Side::Front;
    case ViewOrder::back: return Side::Back;
    default: return static_cast<int>(2 * draw() + 1) == 1 ? Side::Front : Side::Back;
    }
}
