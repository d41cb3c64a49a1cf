#include "study/FlashCardSession.h"

#include "store/Schema.h"
#include "store/Statements.h"
#include "study/Marking.h"
#include "study/Shuffling.h"

#include <utility>

FlashCardSession::FlashCardSession(const std::filesystem::path &subject, const StudySettings &settings, RandomDraw draw)
    : m_settings(settings)
    , m_store(subject)
    , m_cards(m_store.openRecordSet(cardsInOrder(settings.cardQuery)))
    , m_draw(std::move(draw))
    , m_side(startingSide(settings.viewOrder, m_draw))
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

void FlashCardSession::restart(const StudySettings &settings)
{
    m_settings.viewOrder = settings.viewOrder;
    m_settings.timeSetting = settings.timeSetting;
    reach(0);
}

bool FlashCardSession::shuffle(const RandomDraw &draw)
{
    std::optional<CardSet> shuffled = ::shuffle(m_store, m_cards, m_settings.cardQuery, draw);
    if (!shuffled) {
        return false;
    }
    m_cards = std::move(*shuffled);
    reach(0);
    return true;
}

void FlashCardSession::reach(int position)
{
    showSide(startingSide(m_settings.viewOrder, m_draw));
    m_cards.setAbsolutePosition(position);
}

void FlashCardSession::showSide(Side side)
{
    m_side = side;
    m_flipper.end();
}

void FlashCardSession::toggleMark()
{
    ::toggleMark(m_cards);
}

void FlashCardSession::tick()
{
    if (m_flipper.tick()) {
        showSide(otherSide(m_side));
    }
}

std::string FlashCardSession::text(Side side) const
{
    return m_cards.text(side == Side::Front ? CardField::Front : CardField::Back);
}

bool FlashCardSession::isMarked() const
{
    return m_cards.flag(CardField::Marked);
}
