#pragma once

#include <QHash>
#include <QString>

#include <vector>

/// The addresses that the links of a text lead to, each once.
class RtfLinkTable
{
public:
    /// The place of \p address; -1, no link, if it is empty.
    [[nodiscard]] int place(const QString &address);
    /// The address at \p place; empty for -1.
    [[nodiscard]] QString at(int place) const
    {
        return place >= 0 ? m_addresses[static_cast<std::size_t>(place)] : QString();
    }

private:
    std::vector<QString> m_addresses;
    QHash<QString, int> m_places;
};
