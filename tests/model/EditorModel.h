#pragma once

#include "tests/model/SubjectModel.h"
#include "tests/study/CardEditingTest.h"

#include <algorithm>
#include <optional>
#include <string>
#include <vector>

/// The card editor on one topic: two boxes, and the card in them, if there is one.
///
/// A card is stored when it is left, or deleted if both boxes are blank. A command that
/// meets something that is gone ends there, and the cards are looked up again.
class EditorModel
{
public:
    /// Throws Gone if a first card is needed and the topic is gone.
    EditorModel(SubjectModel &subject, int topic)
        : m_subject(subject)
        , m_topic(topic)
        , m_cards(subject.cardsOf(topic))
    {
        m_cards.empty() ? addBlank() : show(0);
    }

    void type(const std::string &front, const std::string &back)
    {
        m_front = front;
        m_back = back;
    }

    std::optional<Outcome> give(Command command)
    {
        try {
            return carryOut(command);
        } catch (const Gone &) {
            lookAgain();
            throw;
        }
    }

    [[nodiscard]] int count() const { return static_cast<int>(m_cards.size()); }
    /// -1 without a card.
    [[nodiscard]] int position() const { return m_card ? m_place : -1; }
    [[nodiscard]] std::string shown() const { return m_front + "/" + m_back; }

private:
    using enum CardEditing::Outcome;

    std::optional<Outcome> carryOut(Command command)
    {
        switch (command) {
        case Command::First: return first();
        case Command::Previous: return previous();
        case Command::Next: return next();
        case Command::Last: return last();
        case Command::Add: return add();
        case Command::Remove: return remove();
        case Command::Save: leave(); break;
        }
        return std::nullopt;
    }

    Outcome first()
    {
        leave();
        if (isAt(0) || count() == 0) {
            return AtFirst;
        }
        show(0);
        return Moved;
    }

    Outcome previous()
    {
        if (m_place == 0) {
            return AtFirst;
        }
        leave();
        show(std::max(m_place - 1, 0));
        return Moved;
    }

    Outcome next()
    {
        leave();
        const int behind = m_card ? m_place + 1 : m_place;
        if (behind == count()) {
            addBlank();
            return Added;
        }
        show(behind);
        return Moved;
    }

    Outcome last()
    {
        if (position() == count() - 1) {
            return AtLast;
        }
        leave();
        if (!isAt(count() - 1) && count() > 0) {
            show(count() - 1);
        }
        return Moved;
    }

    Outcome add()
    {
        leave();
        addBlank();
        return Added;
    }

    Outcome remove()
    {
        if (m_card) {
            deleteCard();
        }
        if (count() == 0) {
            addBlank();
            return Added;
        }
        show(std::max(m_place - 1, 0));
        return Moved;
    }

    [[nodiscard]] bool isAt(int position) const { return m_card && m_place == position; }
    [[nodiscard]] bool isBlank() const { return (m_front + m_back).find_first_not_of(' ') == std::string::npos; }

    /// Stores what stands in the boxes. A card that is deleted because it is blank makes room for the one before it.
    void leave()
    {
        if (!isBlank()) {
            m_card ? write() : addTyped();
        } else if (m_card) {
            deleteCard();
            if (count() > 0) {
                show(std::max(m_place - 1, 0));
            }
        }
    }

    void write()
    {
        ModelCard &card = m_subject.card(*m_card);
        card.front = rtfOf(m_front);
        card.back = rtfOf(m_back);
    }

    void addTyped()
    {
        m_card = m_subject.addCard(m_topic, rtfOf(m_front), rtfOf(m_back));
        m_place = count();
        m_cards.push_back(*m_card);
    }

    void addBlank()
    {
        const int added = m_subject.addCard(m_topic, rtfOf(""), rtfOf(""));
        m_cards.push_back(added);
        show(count() - 1);
    }

    void deleteCard()
    {
        m_subject.deleteCard(*m_card);
        m_cards.erase(m_cards.begin() + m_place);
        m_card.reset();
        type("", "");
    }

    void show(int position)
    {
        const ModelCard &card = m_subject.card(m_cards.at(static_cast<std::size_t>(position)));
        m_card = card.key;
        m_place = position;
        type(textOf(card.front), textOf(card.back));
    }

    /// What was typed stays. If the card is gone, it belongs to none, at the place where the card was.
    void lookAgain()
    {
        m_cards = m_subject.cardsOf(m_topic);
        const auto found = m_card ? std::ranges::find(m_cards, *m_card) : m_cards.end();
        if (found != m_cards.end()) {
            m_place = static_cast<int>(found - m_cards.begin());
        } else {
            m_card.reset();
            m_place = std::min(m_place, count());
        }
    }

    SubjectModel &m_subject;
    int m_topic;
    std::vector<int> m_cards;  ///< keys
    std::optional<int> m_card; ///< the key of the one in the boxes
    int m_place = 0;           ///< how many cards are before the one in the boxes, or before the gap that it left
    std::string m_front;
    std::string m_back;
};
