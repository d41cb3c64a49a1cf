#pragma once

#include <cstddef>

// Limits that keep a hostile or damaged text from taking the program with it. None
// of them loses text. The lengths that a text announces itself (of binary data, of
// the parts of an object) are cut to what is there. What limits pictures is in
// RtfObject.h.

/// Groups deeper in each other share the format of the last one within.
inline constexpr int maxRtfGroupDepth = 256;
/// Further paragraphs become lines of the last.
inline constexpr int maxRtfParagraphs = 1'000'000;
/// Different formats of characters, paragraphs and objects in a document: where
/// there are more, the last one goes on. An object more is a blank.
inline constexpr int maxRtfFormats = 100'000;

/// Entries of the font table; a font more is not defined.
inline constexpr std::size_t maxRtfFonts = 32'768;
/// Entries of the colour table; a colour more is the automatic one.
inline constexpr std::size_t maxRtfColors = 65'536;
/// Definitions of lists; a list more is told by its marks.
inline constexpr std::size_t maxRtfLists = 5'000;

/// Tab stops of a paragraph, as many as the old programs have.
inline constexpr std::size_t maxRtfTabs = 32;
/// Cells that a row is filled up to.
inline constexpr std::size_t maxRtfCells = 64;

/// Lengths in twips, larger than any page, and sizes of fonts in half points.
inline constexpr int maxRtfTwips = 1'000'000;
inline constexpr int maxRtfHalfPoints = 3276;
