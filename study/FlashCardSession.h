#pragma once

#include "store/SubjectStore.h"
#include "study/StudySettings.h"
#include "study/ViewingOrder.h"

#include <filesystem>
#include <string>

/// A flash-card session: the open cards, the current one, and the side it shows.
///
/// Keeps the subject open, without a lock, until it is destroyed. A card's
/// texts are read when they are asked for; a failure then leaves the session
/// on that card, and it can be moved on.
class FlashCardSession
{
public:
    /// Opens the cards of settings.cardQuery in the order in which they were
    /// made, on the first one. \p draw decides random sides.
    FlashCardSession(const std::filesystem::path &subject, const StudySettings &settings, RandomDraw draw);

    /// Goes on to the next card, on its starting side. False on the last card: nothing changes.
    [[nodiscard]] bool next();
    /// The same backwards. False on the first card.
    [[nodiscard]] bool previous();
    void showSide(Side side) { m_side = side; }

    [[nodiscard]] Side side() const { return m_side; }
    [[nodiscard]] int position() const { return m_cards.absolutePosition(); } ///< from 0
    [[nodiscard]] int count() const { return m_cards.recordCount(); }
    [[nodiscard]] std::string text(Side side) const; ///< RTF
    [[nodiscard]] bool isMarked() const;

    /// Closes the subject. Nothing else may be asked of the session then.
    void close() noexcept { m_store.close(); }

private:
    void reach(int position);

    SubjectStore m_store;
    CardSet m_cards;
    std::int16_t m_viewOrder;
    RandomDraw m_draw;
    Side m_side;
};
