#pragma once

#include "platform/rtf/RtfControlWords.h"
#include "platform/rtf/RtfFormats.h"

#include <optional>
#include <vector>

/// What a group inherits from the group around it, and what ends with it.
struct RtfGroup
{
    RtfCharacter character;
    int fallbackLength = 1; ///< characters that stand for a \u behind it
    RtfDestination destination = RtfDestination::Body;
    RtfDestination alternativeTo = RtfDestination::Body; ///< what \ud returns to

    // Of the very group, not of those in it.
    std::optional<RtfDestination> begun; ///< what ends with it
    bool isField = false;
    std::optional<int> symbol;   ///< of a field that stands for a character
    std::size_t countBefore = 0; ///< of pieces of text, before the field's own
};

/// The open groups of a text, and the rules by which one destination may stand
/// in another.
///
/// Beyond a depth, groups are only counted: they share the state of the last
/// one within. A destination that begins among them lasts to the end of its
/// group all the same.
class RtfGroups
{
public:
    /// \p maxDepth is at least 1. No group is open yet.
    explicit RtfGroups(int maxDepth);

    [[nodiscard]] RtfGroup &current() { return m_groups.back(); }
    [[nodiscard]] RtfDestination destination() const { return m_groups.back().destination; }
    [[nodiscard]] bool isAnyOpen() const { return m_groups.size() > 1; }

    /// Returns whether the group is within the depth, so that it has a state.
    bool open();

    /// Closes the innermost group, which must be open. Returns whether it had a
    /// state; current() then is the state around it.
    bool close();

    /// Makes the rest of the group part of \p destination, as far as what it
    /// stands in allows: what is skipped stays so, of two alternatives only the
    /// one to read counts, and text around a number is skipped outside a numbering.
    /// Returns whether it was allowed.
    bool begin(RtfDestination destination);

    /// Skips the rest of the group, whatever it stands in.
    void skip() { enter(RtfDestination::Skipped); }

private:
    void enter(RtfDestination destination);

    const std::size_t m_maxDepth;
    std::vector<RtfGroup> m_groups; ///< the first is what lies around all groups

    int m_excess = 0;          ///< open groups beyond the depth
    int m_excessEnteredAt = 0; ///< the one of them that began a destination, 0 if none
    RtfDestination m_excessReturn = RtfDestination::Body;
};
