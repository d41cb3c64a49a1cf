#pragma once

#include "store/SubjectStore.h"
#include "store/WorkSignal.h"
#include "study/RandomDraw.h"

#include <optional>
#include <string_view>

/// Gives every card of \p cards a number that \p draw gives as its sort key, drawn from the last card to
/// the first. A card that was deleted meanwhile is passed over. Each card is a step of \p work.
void drawSortKeys(CardSet &cards, const RandomDraw &draw, WorkPass &work);

/// Gives every card of \p cards a new sort key, and returns the cards that \p cardQuery
/// selects in the new order, on the first one. Both sets belong to \p store.
///
/// The keys are drawn from the last card to the first; the last card gets one twice and
/// keeps the second. All in one transaction: after a failure, and when the query selects no
/// card any more (nothing is returned), the file is as it was. \p cards keeps its current row.
[[nodiscard]] std::optional<CardSet> shuffle(SubjectStore &store, CardSet &cards, std::string_view cardQuery,
                                             const RandomDraw &draw);
