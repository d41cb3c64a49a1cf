#include "study/FlashCardSession.h"

#include "store/Schema.h"
#include "store/Statements.h"

#include <utility>

FlashCardSession::FlashCardSession(const std::filesystem::path &subject, const StudySettings &settings, RandomDraw draw)
    : m_store(subject)
    , m_cards(m_store.openRecordSet(cardsInOrder(settings.cardQuery)))
    , m_viewOrder(settings.viewOrder)
    , m_draw(std::move(draw))
    , m_side(startingSide(m_viewOrder, m_draw))
{
    m_cards.moveLast();
    m_cards.moveFirst();
}

bool FlashCardSession::next()
{
    if (position() == count() - 1) {
        return false;
    }
    reach(position() + 1);
    return true;
}

bool FlashCardSession::previous()
{
    if (position() <= 0) {
        return false;
    }
    reach(position() - 1);
    return true;
}

void FlashCardSession::reach(int position)
{
    m_side = startingSide(m_viewOrder, m_draw);
    m_cards.setAbsolutePosition(position);
}

std::string FlashCardSession::text(Side side) const
{
    return m_cards.text(side == Side::Front ? CardField::Front : CardField::Back);
}

bool FlashCardSession::isMarked() const
{
    return m_cards.flag(CardField::Marked);
}
