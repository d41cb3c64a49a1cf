#include "platform/rtf/RtfGroups.h"

RtfGroups::RtfGroups(int maxDepth)
    : m_maxDepth(static_cast<std::size_t>(maxDepth))
    , m_groups(1)
{
}

bool RtfGroups::open()
{
    if (m_groups.size() > m_maxDepth) {
        ++m_excess;
        return false;
    }
    m_groups.push_back(m_groups.back());
    return true;
}

bool RtfGroups::close()
{
    if (m_excess == 0) {
        m_groups.pop_back();
        return true;
    }
    if (m_excess == m_excessEnteredAt) {
        current().destination = m_excessReturn;
        m_excessEnteredAt = 0;
    }
    --m_excess;
    return false;
}

bool RtfGroups::begin(RtfDestination destination)
{
    const RtfDestination outer = current().destination;
    if (outer == RtfDestination::Skipped) {
        return false;
    }
    if (outer == RtfDestination::Alternatives && destination != RtfDestination::UnicodeAlternative) {
        return false;
    }
    switch (destination) {
    case RtfDestination::NumberingTextBefore:
    case RtfDestination::NumberingTextAfter:
        if (outer != RtfDestination::Numbering) {
            skip();
            return false;
        }
        enter(destination);
        break;
    case RtfDestination::Alternatives:
        current().alternativeTo = outer;
        enter(destination);
        break;
    case RtfDestination::UnicodeAlternative:
        enter(outer == RtfDestination::Alternatives ? current().alternativeTo : outer);
        break;
    case RtfDestination::Body:
    case RtfDestination::Skipped:
    case RtfDestination::FontTable:
    case RtfDestination::ColorTable:
    case RtfDestination::Numbering: enter(destination); break;
    }
    return true;
}

void RtfGroups::enter(RtfDestination destination)
{
    if (m_excess > 0 && m_excessEnteredAt == 0) {
        m_excessEnteredAt = m_excess;
        m_excessReturn = current().destination;
    }
    current().destination = destination;
}
