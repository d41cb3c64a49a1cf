#include "study/CardEditing.h"

#include "store/Schema.h"
#include "store/Statements.h"
#include "store/StoreError.h"

#include <algorithm>
#include <exception>
#include <utility>

using Reason = StoreError::Reason;

namespace {

bool isOnlySpaces(const std::string &text)
{
    return text.find_first_not_of(' ') == std::string::npos;
}

CardSides sidesOf(const CardSet &cards)
{
    return {cards.text(CardField::Front), cards.text(CardField::Back)};
}

void setSides(CardSet &cards, const CardSides &sides)
{
    cards.setText(CardField::Front, sides.front);
    cards.setText(CardField::Back, sides.back);
}

/// Makes the card with that key current. False: the set has none.
bool goToKey(CardSet &cards, int key)
{
    try {
        cards.setBookmark(key);
        return cards.number(CardField::Index) == key; // in a file made by others the two may differ
    } catch (const StoreError &failure) {
        if (failure.reason() != Reason::RowGone) {
            throw;
        }
        return false;
    }
}

} // namespace

bool EditedCard::isBlank() const
{
    return isOnlySpaces(front.plain) && isOnlySpaces(back.plain);
}

CardEditing::CardEditing(const std::filesystem::path &subject, std::string cardQuery, int topic, CardSides blank)
    : m_subject(subject)
    , m_query(std::move(cardQuery))
    , m_topic(topic)
    , m_blank(std::move(blank))
    , m_store(m_subject)
    , m_cards(m_store.openRecordSet(m_query))
{
    m_cards.moveLast();
    m_cards.moveFirst();
    if (count() == 0) {
        addBlank();
    } else {
        showFirst();
    }
}

int CardEditing::position() const
{
    return m_card ? m_place : -1;
}

int CardEditing::count() const
{
    return m_cards.recordCount();
}

const CardSides &CardEditing::sides() const
{
    return m_sides;
}

int CardEditing::changes() const
{
    return m_changes;
}

template <typename Command>
auto CardEditing::run(Command command)
{
    followFile();
    try {
        return command();
    } catch (const StoreError &failure) {
        m_cards.cancelUpdate();
        if (failure.reason() == Reason::RowGone) {
            readAnew();
        }
        throw;
    }
}

CardEditing::Outcome CardEditing::first(const EditedCard &edited)
{
    return run([&] {
        store(edited);
        if (m_card ? m_place == 0 : count() == 0) {
            return Outcome::AtFirst;
        }
        showFrom(0, 1);
        return Outcome::Moved;
    });
}

CardEditing::Outcome CardEditing::previous(const EditedCard &edited)
{
    if (m_place == 0) {
        return Outcome::AtFirst;
    }
    return run([&] {
        store(edited);
        if (m_place > 0) { // a blank card that is deleted goes back one card by itself
            showFrom(m_place - 1, -1);
        }
        return Outcome::Moved;
    });
}

CardEditing::Outcome CardEditing::next(const EditedCard &edited)
{
    return run([&] {
        store(edited);
        const int behind = m_card ? m_place + 1 : m_place;
        if (behind == count()) {
            addBlank();
            return Outcome::Added;
        }
        showFrom(behind, 1);
        return Outcome::Moved;
    });
}

CardEditing::Outcome CardEditing::last(const EditedCard &edited)
{
    if (position() == count() - 1) {
        return Outcome::AtLast;
    }
    return run([&] {
        store(edited);
        if (position() != count() - 1) {
            showFrom(count() - 1, -1);
        }
        return Outcome::Moved;
    });
}

CardEditing::Outcome CardEditing::add(const EditedCard &edited)
{
    return run([&] {
        store(edited);
        addBlank();
        return Outcome::Added;
    });
}

CardEditing::Outcome CardEditing::remove()
{
    return run([&] {
        if (m_card) {
            deleteCurrent();
        }
        if (count() == 0) {
            addBlank();
            return Outcome::Added;
        }
        show(std::max(m_place - 1, 0));
        return Outcome::Moved;
    });
}

void CardEditing::save(const EditedCard &edited)
{
    run([&] { store(edited); });
}

void CardEditing::close() noexcept
{
    m_store.close();
}

void CardEditing::store(const EditedCard &edited)
{
    const bool isBlank = edited.isBlank();
    if (isBlank && m_card) {
        deleteCurrent();
        if (count() > 0) { // else the next save would take the empty boxes for a neighbour's text
            show(std::max(m_place - 1, 0));
        }
    } else if (!isBlank) {
        CardSides sides{edited.front.rtf, edited.back.rtf};
        if (!m_card) {
            addCard(std::move(sides));
            return;
        }
        m_cards.setAbsolutePosition(m_place);
        m_cards.edit();
        setSides(m_cards, sides);
        m_cards.update();
        m_sides = std::move(sides);
    }
}

// Leaves no current card: what stood in the editor belongs to none of the others.
void CardEditing::deleteCurrent()
{
    m_cards.setAbsolutePosition(m_place);
    m_cards.remove();
    m_card.reset();
    m_sides = {};
    ++m_changes;
}

void CardEditing::addBlank()
{
    addCard(m_blank);
    ++m_changes;
}

// All or nothing, and never for a topic that another program has deleted.
void CardEditing::addCard(CardSides sides)
{
    Transaction whole(m_store);
    requireTopic();
    m_cards.addNew();
    m_cards.setNumber(CardField::NIndex, m_topic);
    setSides(m_cards, sides);
    m_cards.update();
    try {
        whole.commit();
    } catch (...) {
        m_cards.forgetAdded();
        throw;
    }
    m_cards.setBookmark(m_cards.lastModified());
    m_card = static_cast<int>(m_cards.lastModified());
    m_place = m_cards.absolutePosition();
    m_sides = std::move(sides);
}

void CardEditing::requireTopic()
{
    if (m_store.openRecordSet(topicByKey(m_topic)).recordCount() == 0) {
        throw StoreError(Reason::RowGone, 0, m_subject.string(), "the topic was deleted");
    }
}

/// Shows the card at \p position or, if it is damaged, the nearest one that is not, in steps of
/// \p step. A damaged one is a failure all the same, but it does not bar the way to the others.
void CardEditing::showFrom(int position, int step)
{
    std::optional<StoreError> damaged;
    for (int at = position; at >= 0 && at < count(); at += step) {
        try {
            show(at);
            break;
        } catch (const StoreError &failure) {
            if (failure.reason() != Reason::Damaged) {
                throw;
            }
            damaged = damaged ? damaged : failure;
        }
    }
    if (damaged) {
        throw StoreError(*damaged);
    }
}

// The learner is told of damaged cards before it on the way back to them.
void CardEditing::showFirst()
{
    try {
        showFrom(0, 1);
    } catch (const StoreError &) {
        if (!m_card) {
            throw;
        }
    }
}

void CardEditing::show(int position)
{
    m_cards.setAbsolutePosition(position);
    CardSides sides = sidesOf(m_cards);
    m_card = m_cards.number(CardField::Index);
    m_place = position;
    m_sides = std::move(sides);
    ++m_changes;
}

// While the subject was open, its file may have been moved away, deleted or
// replaced. What stands at its path now is the subject.
void CardEditing::followFile()
{
    if (m_store.isInPlace()) {
        return;
    }
    SubjectStore reopened(m_subject);
    CardSet cards = reopened.openRecordSet(m_query);
    // The same key may be another card's in another file.
    const bool holdsCurrent = m_card && goToKey(cards, *m_card) && sidesOf(cards) == m_sides;
    m_store = std::move(reopened);
    adopt(std::move(cards), holdsCurrent);
}

// Vanished rows no longer count then. Without success all stays as it was.
void CardEditing::readAnew() noexcept
{
    try {
        CardSet cards = m_store.openRecordSet(m_query);
        const bool holdsCurrent = m_card && goToKey(cards, *m_card);
        adopt(std::move(cards), holdsCurrent);
    } catch (const std::exception &) {
    }
}

void CardEditing::adopt(CardSet cards, bool holdsCurrent) noexcept
{
    m_cards = std::move(cards);
    if (holdsCurrent) {
        m_place = m_cards.absolutePosition();
        return;
    }
    m_card.reset();
    m_sides = {};
    m_place = std::min(m_place, count());
}
