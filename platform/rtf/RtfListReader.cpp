#include "platform/rtf/RtfListReader.h"

#include <algorithm>

void RtfListReader::apply(RtfEffect effect, int value)
{
    if (effect == RtfEffect::NumberingStyle) {
        m_list.style = static_cast<RtfListStyle>(value);
    } else if (effect == RtfEffect::NumberingStart) {
        m_list.start = std::max(0, value);
    }
}

void RtfListReader::append(RtfDestination destination, char16_t character)
{
    if (destination == RtfDestination::NumberingTextBefore) {
        m_list.before += QChar(character);
    } else if (destination == RtfDestination::NumberingTextAfter) {
        m_list.after += QChar(character);
    }
}

RtfList RtfListReader::list() const
{
    if (m_list.style == RtfListStyle::None || m_list.style == RtfListStyle::Bullet) {
        return {.style = m_list.style, .start = 1, .before = {}, .after = {}};
    }
    return m_list;
}
