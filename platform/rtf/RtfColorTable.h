#pragma once

#include "platform/rtf/RtfControlWords.h"

#include <string_view>
#include <vector>

/// The colours of a document while it is read.
class RtfColorTable
{
public:
    /// Begins the table anew: the one before is forgotten.
    void begin();

    /// A word of the table. A component outside 0 to 255 is the nearest of them.
    void apply(RtfEffect effect, int value);

    /// Text of the table: each ';' ends an entry. One without a component is the
    /// automatic colour.
    void append(std::string_view bytes);

    /// The end of the table: an entry that lacks its ';' counts if it says something.
    void end();

    /// The colour \p number as 0xRRGGBB, or automaticColor: for number 0, whatever
    /// its entry says, and for every number that the table does not have.
    [[nodiscard]] int at(int number) const;

private:
    struct Entry
    {
        bool isAutomatic = true;
        int red = 0;
        int green = 0;
        int blue = 0;
    };

    void endEntry();

    std::vector<int> m_colors;
    Entry m_entry;
};
