#pragma once

#include "store/SubjectStore.h"
#include "study/RandomDraw.h"

#include <string_view>

/// Makes a test of \p cards: puts them into a new random order, draws a question for every
/// one of them and stores it. Returns the cards that \p cardQuery selects in the new order,
/// on the first one. Both sets belong to \p store.
///
/// The sort keys are drawn from the last card to the first, and then, in the new order,
/// the questions (drawQuestion()). All in one transaction: after a failure the file is as
/// it was. Fewer than minStudyCards cards are a failure too (CardsGone). A card
/// that was deleted meanwhile is passed over.
[[nodiscard]] CardSet generateTest(SubjectStore &store, CardSet &cards, std::string_view cardQuery,
                                   int multipleChoicePercent, const RandomDraw &draw);
