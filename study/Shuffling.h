#pragma once

#include "store/SubjectStore.h"
#include "study/RandomDraw.h"

#include <optional>
#include <string_view>

/// Gives every card of \p cards a new sort key, and returns the cards that \p cardQuery
/// selects in the new order, on the first one. Both sets belong to \p store.
///
/// From the last card to the first each one gets the next number that \p draw gives;
/// the last card gets one twice and keeps the second. A card deleted meanwhile is
/// passed over. All in one transaction: after a failure, and when the query selects no card
/// any more (nothing is returned), the file is as it was. \p cards keeps its current row.
[[nodiscard]] std::optional<CardSet> shuffle(SubjectStore &store, CardSet &cards, std::string_view cardQuery,
                                             const RandomDraw &draw);
