#pragma once

#include "platform/rtf/RtfFormats.h"

/// How the paragraphs that follow are marked, while it is read: a \pn group with
/// the groups in it.
class RtfListReader
{
public:
    /// Begins anew: whatever the group leaves open is as in an RtfList{}.
    void begin() { m_list = {}; }

    void apply(RtfEffect effect, int value);

    /// A character of the text before or after the number, as \p destination says.
    void append(RtfDestination destination, char16_t character);

    /// What was read. Bullets all look the same: they have neither number nor text.
    [[nodiscard]] RtfList list() const;

private:
    RtfList m_list;
};
