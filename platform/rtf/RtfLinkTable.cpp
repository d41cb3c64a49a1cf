#include "platform/rtf/RtfLinkTable.h"

int RtfLinkTable::place(const QString &address)
{
    if (address.isEmpty()) {
        return -1;
    }
    const auto known = m_places.constFind(address);
    if (known != m_places.constEnd()) {
        return *known;
    }
    m_addresses.push_back(address);
    return *m_places.insert(address, static_cast<int>(m_addresses.size()) - 1);
}
