#pragma once

#include <QStringView>

#include <array>

// Symbol fonts have pictures and foreign letters in the places of the characters
// of a code page. Each of the fonts that are known here counts as a code page of
// its own; those of Windows have numbers of 16 bits.

/// Pseudo number of the code page of a symbol font that nothing is known of.
inline constexpr int symbolCodePage = 42;
/// The highest number that a text may give a code page.
inline constexpr int lastCodePage = 0xffff;

/// The byte b of a symbol font is also the private character symbolArea + b.
inline constexpr char32_t symbolArea = 0xf000;

/// The code page of the symbol font \p family; symbolCodePage if it is not known.
/// Blanks, hyphens and the size of letters do not count.
[[nodiscard]] int codePageOfSymbolFont(QStringView family);

/// Whether \p codePage is that of a symbol font, known or not.
[[nodiscard]] bool isSymbolCodePage(int codePage);

/// The characters of the bytes from 32 on; 0 where Unicode has none.
using RtfSymbols = std::array<char32_t, 224>;

/// The characters of \p codePage, nullptr if it is not that of a known symbol font.
[[nodiscard]] const RtfSymbols *symbolsOfCodePage(int codePage);
