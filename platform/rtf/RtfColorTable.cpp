#include "platform/rtf/RtfColorTable.h"

#include "platform/rtf/RtfFormats.h"
#include "platform/rtf/RtfLimits.h"

#include <algorithm>

void RtfColorTable::begin()
{
    m_colors.clear();
    m_entry = {};
}

void RtfColorTable::apply(RtfEffect effect, int value)
{
    const int component = std::clamp(value, 0, 255);
    if (effect == RtfEffect::Red) {
        m_entry.red = component;
    } else if (effect == RtfEffect::Green) {
        m_entry.green = component;
    } else if (effect == RtfEffect::Blue) {
        m_entry.blue = component;
    } else {
        return;
    }
    m_entry.isAutomatic = false;
}

void RtfColorTable::append(std::string_view bytes)
{
    for (auto count = std::ranges::count(bytes, ';'); count > 0; --count) {
        endEntry();
    }
}

void RtfColorTable::end()
{
    if (!m_entry.isAutomatic) {
        endEntry();
    }
}

int RtfColorTable::at(int number) const
{
    if (number <= 0 || static_cast<std::size_t>(number) >= m_colors.size()) {
        return automaticColor;
    }
    return m_colors[static_cast<std::size_t>(number)];
}

void RtfColorTable::endEntry()
{
    if (m_colors.size() < maxRtfColors) {
        m_colors.push_back(m_entry.isAutomatic ? automaticColor
                                               : m_entry.red << 16 | m_entry.green << 8 | m_entry.blue);
    }
    m_entry = {};
}
