#pragma once

#include "platform/rtf/RtfFormats.h"
#include "platform/rtf/RtfStream.h"

/// How paragraphs of lists are marked: once in a way that a reader which knows
/// lists understands, and at each paragraph as what any other reader shows.
/// Lists are either of bullets in the symbol font or of numbers in font 0.

/// Writes what a reader shows that does not know lists: the mark of the paragraph
/// with the number \p number. \p symbolFont is used for bullets only, \p page is
/// that of font 0.
void writeRtfListMark(RtfStream &out, const RtfList &list, int number, int symbolFont, const RtfCodePage &page);

/// Writes how the paragraphs from here on are marked; the arguments are as above.
void writeRtfListFormat(RtfStream &out, const RtfList &list, int symbolFont, const RtfCodePage &page);

/// \p number as it stands in a list of the style \p style: without the text around
/// it. A letter has no zero, and a roman number beyond 3999 is written in digits.
[[nodiscard]] std::string rtfListNumber(RtfListStyle style, int number);
