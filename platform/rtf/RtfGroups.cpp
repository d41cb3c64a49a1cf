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
    current().begun.reset();
    current().isField = false;
    current().symbol.reset();
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
    const bool isText = destination == RtfDestination::Note || destination == RtfDestination::TextBox;
    if (isText && (m_excess > 0 || current().begun)) {
        return false; // it is text all the same
    }
    if (outer == RtfDestination::Alternatives && destination != RtfDestination::UnicodeAlternative) {
        return false;
    }
    using enum RtfDestination;
    const bool isAround = destination == NumberingTextBefore || destination == NumberingTextAfter;
    if ((isAround && outer != Numbering) || (destination == FieldInstruction && outer == FieldInstruction)) {
        skip();
        return false;
    }
    if (destination == Alternatives) {
        current().alternativeTo = outer;
        enter(destination);
    } else if (destination == UnicodeAlternative) {
        enter(outer == Alternatives ? current().alternativeTo : outer);
    } else if (destination != FieldResult) { // that is what the field stands in
        enter(destination);
    }
    if (!current().begun) {
        current().begun = destination;
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
