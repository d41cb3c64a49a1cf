#include "study/FlashCardSession.h"

#include "store/Schema.h"
#include "store/Statements.h"
#include "store/StoreError.h"
#include "study/CardSelection.h"
#include "study/Marking.h"
#include "study/Shuffling.h"

#include <utility>

FlashCardSession::FlashCardSession(const std::filesystem::path &subject, const StudySettings &settings, RandomDraw draw)
    : m_subject(subject)
    , m_settings(settings)
    , m_statement(cardsInOrder(settings.cardQuery))
    , m_store(m_subject)
    , m_cards(m_store.openRecordSet(m_statement))
    , m_draw(std::move(draw))
    , m_side(startingSide(settings.viewOrder, m_draw))
{
    m_cards.moveLast();
    m_cards.moveFirst();
    if (count() == 0) {
        throw CardsGone("none of the selected flash cards are left");
    }
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
    m_flipper = {};
    reach(0);
}

bool FlashCardSession::shuffle(const RandomDraw &draw)
{
    followFile();
    std::optional<CardSet> shuffled = ::shuffle(m_store, m_cards, m_settings.cardQuery, draw);
    if (!shuffled) {
        return false;
    }
    m_cards = std::move(*shuffled);
    m_statement = cardsShuffled(m_settings.cardQuery);
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

bool FlashCardSession::toggleMark()
{
    followFile();
    return ::toggleMark(m_cards);
}

void FlashCardSession::followFile()
{
    if (m_store.isInPlace()) {
        return;
    }
    SubjectStore store(m_subject);
    CardSet cards = store.openRecordSet(m_statement);
    cards.setBookmark(m_cards.bookmark());
    if (cards.text(CardField::Front) != text(Side::Front) || cards.text(CardField::Back) != text(Side::Back)) {
        throw StoreError(StoreError::Reason::RowGone, 0, m_subject.string(), "the file holds another card");
    }
    m_cards = std::move(cards);
    m_store = std::move(store);
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
