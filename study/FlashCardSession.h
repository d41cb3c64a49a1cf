#pragma once

#include "store/SubjectStore.h"
#include "study/AutoFlipper.h"
#include "study/RandomDraw.h"
#include "study/StudySettings.h"
#include "study/ViewingOrder.h"

#include <filesystem>
#include <string>

/// A flash-card session: the open cards, the current one, the side it shows, and
/// the flipper that turns it.
///
/// Reaching a card and turning it end the flipper's countdown; whoever shows the
/// card arms the flipper when it is in view. Keeps the subject open, without a
/// lock, until it is destroyed. A card's texts are read when they are asked for; a
/// failure then leaves the session on that card, and it can be moved on.
///
/// If the file was moved, deleted or replaced, the cards can be read on. Marking and
/// shuffling go on with what stands at the path then, if it has the current card.
class FlashCardSession
{
public:
    /// Opens the cards of settings.cardQuery in the order in which they were
    /// made, on the first one. Throws if that fails, none being left included (CardsGone).
    /// \p draw decides random sides.
    FlashCardSession(const std::filesystem::path &subject, const StudySettings &settings, RandomDraw draw);

    // Each reaches a card, which shows its starting side.

    /// False on the last card: nothing changes.
    [[nodiscard]] bool next();
    /// False on the first card: nothing changes.
    [[nodiscard]] bool previous();
    /// Takes the viewing order and the flipper's seconds of \p settings, and goes to the first card.
    void restart(const StudySettings &settings);
    /// Shuffles the cards with the numbers that \p draw gives, and goes to the first card of
    /// the new order. False if none of them is selected any more: nothing changes then,
    /// nor after a failure.
    [[nodiscard]] bool shuffle(const RandomDraw &draw);

    void showSide(Side side);
    /// Marks the current card, or takes its mark away; stored at once. Returns whether it is marked now.
    bool toggleMark();

    void armFlipper() { m_flipper.arm(m_settings.timeSetting); }
    void armFlipperPaused() { m_flipper.armPaused(m_settings.timeSetting); }
    void toggleFlipperPause() { m_flipper.togglePause(); }
    /// A second has passed: counts down, and turns the card over at 0.
    void tick();

    [[nodiscard]] Side side() const { return m_side; }
    [[nodiscard]] int position() const { return m_cards.absolutePosition(); } ///< from 0
    [[nodiscard]] int count() const { return m_cards.recordCount(); }
    [[nodiscard]] std::string text(Side side) const; ///< RTF
    [[nodiscard]] bool isMarked() const;
    [[nodiscard]] const AutoFlipper &flipper() const { return m_flipper; }

    /// Closes the subject. Nothing else may be asked of the session then.
    void close() noexcept { m_store.close(); }

private:
    void reach(int position);
    void followFile();

    std::filesystem::path m_subject;
    StudySettings m_settings;
    std::string m_statement; ///< selects the cards in the order that they have now
    SubjectStore m_store;
    CardSet m_cards;
    RandomDraw m_draw; ///< for sides
    AutoFlipper m_flipper;
    Side m_side;
};
