#pragma once

#include "store/RecordSet.h"

/// Puts a set back on the row on which it was, if there was one.
class KeptPosition
{
public:
    explicit KeptPosition(CardSet &cards)
        : m_cards(cards)
        , m_position(cards.absolutePosition())
    {
    }
    KeptPosition(const KeptPosition &) = delete;
    KeptPosition &operator=(const KeptPosition &) = delete;
    ~KeptPosition()
    {
        if (m_position >= 0) {
            m_cards.setAbsolutePosition(m_position);
        }
    }

private:
    CardSet &m_cards;
    int m_position;
};
