#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <vector>

// RTF texts to measure with. The same arguments give the same bytes.

/// Long notes of \p bytes bytes or a little more: short runs of text, each with
/// another format than the one before, in paragraphs of about 17 runs.
[[nodiscard]] std::string longNotes(std::size_t bytes);

/// One side of each of \p count cards: about 300 bytes, head included, no two alike.
[[nodiscard]] std::vector<std::string> cardSides(int count);

/// The paragraphs of \p count such cards in one text, below one head.
[[nodiscard]] std::string cardsInOneText(int count);

/// A way to make a reader keep or repeat more than the text is worth.
struct HostileKind
{
    const char *name;
    std::string (*text)(std::size_t bytes); ///< of about \p bytes
};

[[nodiscard]] std::span<const HostileKind> hostileKinds();
