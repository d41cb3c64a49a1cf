#pragma once

#include "store/RecordSet.h"

/// Marks the current card for later study, or takes its mark away: the opposite of
/// what the file holds now. Stored at once; after a failure nothing is changed. Returns
/// whether it is marked now.
bool toggleMark(CardSet &cards);
