#pragma once

#include "platform/rtf/RtfFormats.h"

#include <optional>
#include <string_view>
#include <unordered_map>
#include <vector>

/// The lists that a word processor defines at the head of a text and that its
/// paragraphs name by \ls and \ilvl. Numbers of lists that nothing defines occur.
class RtfListTable
{
public:
    /// \p group is a group "{\*\listtable ...}", from its opening to its closing brace
    /// or to where the text ends. Later lists of a number replace earlier ones.
    void readLists(std::string_view group);
    /// Likewise "{\*\listoverridetable ...}".
    void readOverrides(std::string_view group);

    /// How paragraphs of the list \p number are marked on the level \p level (0 is
    /// the outermost; a level that the list lacks is the nearest that it has); nothing
    /// if the list is not known. The style None is a list without marks. Of a mark
    /// with the numbers of several levels, the last counts, with the text before the
    /// first of them. A mark without a number is a bullet.
    [[nodiscard]] std::optional<RtfList> find(int number, int level) const;

private:
    using Levels = std::vector<RtfList>; ///< at most nine

    struct Override
    {
        int list = 0;                             ///< its \listid
        std::vector<std::optional<int>> starts{}; ///< of its levels, where they are not the list's own
    };

    std::unordered_map<int, Levels> m_lists;       ///< by \listid
    std::unordered_map<int, Override> m_overrides; ///< by \ls
};
