#pragma once

#include "platform/rtf/RtfFormats.h"

#include <QStringView>

#include <optional>

/// The mark of one paragraph as it is written beside the text (\listtext), e.g.
/// "3.", "iv)", "b", or a bullet of any kind.
struct RtfListMark
{
    RtfList list;   ///< as the mark by itself looks; start is number
    int number = 1; ///< what it counts
};

/// \p text may end in a tab or blanks. Nothing if it is empty. What is neither a
/// number nor a letter in some style is a bullet.
///
/// Letters that may be a roman number too are what \p hint is. Where it is neither
/// letter nor roman, "i" is a roman one, as a list's first mark is; any other single
/// letter is a letter, several are a roman number. An "o" by itself is a bullet
/// unless \p hint is of letters. Of several numbers ("2.1.") the last counts.
[[nodiscard]] std::optional<RtfListMark> readListMark(QStringView text, RtfListStyle hint);
