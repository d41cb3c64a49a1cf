#pragma once

#include <cstdint>

// The subject file: an SQLite database with these two tables. The enumerators
// are the positions of the fields; windows and statements rely on their order.

/// Fields of the table Topics, in order.
namespace TopicField {
enum Position : int {
    Index, ///< the topic's key: 32-bit, given by the engine, never used again
    Name,  ///< at most maxTopicNameLength characters
    Notes, ///< RTF
};
}

/// Fields of the table FlashCards, in order.
namespace CardField {
enum Position : int {
    Index,   ///< the card's key: 32-bit, given by the engine, never used again
    NIndex,  ///< the key of the topic that the card belongs to
    Front,   ///< the question side, RTF
    Back,    ///< the answer side, RTF
    Marked,  ///< flag: chosen for later study
    Shuffle, ///< single precision, in [0, 1): sort key of the shuffled order
    // NOLINTBEGIN(readability-identifier-naming): the field names of the file
    isTrueFalse, ///< flag, of the last test: true or false rather than multiple choice
    isFront,     ///< flag, of the last test: the front was asked
    // NOLINTEND(readability-identifier-naming)
    Answer, ///< of the last test: the number of the right choice, from 1
    Wrong1, ///< of the last test: position of the card that gave the first wrong choice, from 0
    Wrong2, ///< the same for the second wrong choice
};
}

/// Characters, not bytes. A longer name is refused by the engine.
inline constexpr int maxTopicNameLength = 255;

/// Written into the header of every subject file ("Crml"), so that file(1) and
/// our own opening tell subjects from other SQLite files.
inline constexpr std::int32_t subjectApplicationId = 0x43726d6c;

/// The version of the schema above. A file with a higher one is refused.
inline constexpr std::int32_t subjectSchemaVersion = 1;
