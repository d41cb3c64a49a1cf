#pragma once

#include "study/StudySettings.h"
#include "study/ViewingOrder.h"
#include "tests/model/Draws.h"
#include "tests/model/SubjectModel.h"

#include <cstddef>
#include <optional>
#include <vector>

/// Turns a card over when its seconds have passed.
struct FlipperModel
{
    bool isOn = false;
    bool isRunning = false;
    bool hasEnded = false; ///< nothing more until the next card
    int secondsLeft = 0;

    friend bool operator==(const FlipperModel &, const FlipperModel &) = default;
};

/// A flash-card session, and the window that arms its flipper when a card is in view.
class SessionModel
{
public:
    SessionModel(SubjectModel &subject, ModelSelection selection, const StudySettings &settings, Draws sides)
        : m_subject(subject)
        , m_selection(std::move(selection))
        , m_viewOrder(settings.viewOrder)
        , m_seconds(settings.timeSetting)
        , m_sides(sides)
        , m_cards(subject.selected(m_selection))
    {
        m_side = startingSide();
        arm(true);
    }

    // Moves: false at the end, where nothing happens.

    bool next()
    {
        if (m_position + 1 >= count()) {
            return false;
        }
        reach(m_position + 1);
        return true;
    }

    bool previous()
    {
        if (m_position == 0) {
            return false;
        }
        reach(m_position - 1);
        return true;
    }

    /// After the options: the flipper waits for the learner.
    void restart(const StudySettings &settings)
    {
        m_viewOrder = settings.viewOrder;
        m_seconds = settings.timeSetting;
        flipper = {};
        reach(0, false);
    }

    /// The last card gets a sort key twice, and every card before it once; one that is gone uses its number up. False
    /// if no card is selected any more: then nothing has happened.
    bool shuffle(Draws &draws)
    {
        m_seen.reset();
        const SubjectModel before = m_subject;
        giveSortKey(m_cards.back(), draws.next());
        for (auto card = m_cards.rbegin(); card != m_cards.rend(); ++card) {
            giveSortKey(*card, draws.next());
        }
        std::vector<int> inNewOrder = m_subject.shuffled(m_selection);
        if (inNewOrder.empty()) {
            m_subject = before;
            return false;
        }
        m_cards = std::move(inNewOrder);
        reach(0);
        return true;
    }

    void flip() { show(m_side == Side::Front ? Side::Back : Side::Front); }

    void toggleMark()
    {
        m_seen.reset();
        ModelCard &card = m_subject.card(current());
        card.marked = !card.marked;
    }

    void pauseOrResume()
    {
        if (flipper.isOn && !flipper.hasEnded) {
            flipper.isRunning = !flipper.isRunning;
        }
    }

    void secondPasses()
    {
        if (flipper.isRunning && --flipper.secondsLeft == 0) {
            flip();
        }
    }

    [[nodiscard]] int count() const { return static_cast<int>(m_cards.size()); }
    [[nodiscard]] int position() const { return m_position; }
    [[nodiscard]] Side side() const { return m_side; }
    [[nodiscard]] int sidesDrawn() const { return m_sides.drawn(); }

    /// The current card as it was when it was first looked at. Throws Gone if it was deleted before.
    const ModelCard &seen()
    {
        if (!m_seen) {
            m_seen = m_subject.card(current());
        }
        return *m_seen;
    }

    FlipperModel flipper;

private:
    [[nodiscard]] int current() const { return m_cards.at(static_cast<std::size_t>(m_position)); }

    Side startingSide()
    {
        if (m_viewOrder == ViewOrder::front || m_viewOrder == ViewOrder::back) {
            return m_viewOrder == ViewOrder::front ? Side::Front : Side::Back;
        }
        return static_cast<int>(2 * m_sides.next() + 1) == 1 ? Side::Front : Side::Back;
    }

    void reach(int position, bool runsAtOnce = true)
    {
        m_position = position;
        m_seen.reset();
        show(startingSide());
        if (m_subject.hasCard(current())) {
            arm(runsAtOnce);
        }
    }

    /// Whatever turns the card over ends the countdown where it is.
    void show(Side side)
    {
        m_side = side;
        flipper.hasEnded = flipper.isOn;
        flipper.isRunning = false;
    }

    void arm(bool runsAtOnce)
    {
        const bool isOn = m_seconds >= 1;
        flipper = {.isOn = isOn, .isRunning = isOn && runsAtOnce, .secondsLeft = isOn ? m_seconds : 0};
    }

    void giveSortKey(int card, float sortKey)
    {
        if (m_subject.hasCard(card)) {
            m_subject.card(card).shuffle = sortKey;
        }
    }

    SubjectModel &m_subject;
    ModelSelection m_selection;
    int m_viewOrder;
    int m_seconds;
    Draws m_sides;
    std::vector<int> m_cards; ///< keys
    int m_position = 0;
    Side m_side;
    std::optional<ModelCard> m_seen;
};
