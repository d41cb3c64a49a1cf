#pragma once

#include "store/Schema.h"
#include "store/Statements.h"
#include "store/SubjectStore.h"

#include <filesystem>
#include <functional>
#include <random>
#include <string>

/// The text of a card's front (or else its back); cards count from 0.
using SideText = std::function<std::string(int card, bool front)>;

/// Makes a subject with \p cards cards of topic 1.
inline void makeSubject(const std::filesystem::path &path, int cards, const SideText &text)
{
    SubjectStore::create(path);
    SubjectStore store(path);
    Transaction transaction(store);
    RecordSet set = store.openRecordSet(cardsOfTopic(1));
    std::mt19937 random(1);
    std::uniform_real_distribution<float> key(0.0F, 1.0F);
    for (int card = 0; card < cards; ++card) {
        set.addNew();
        set.setNumber(CardField::NIndex, 1);
        set.setText(CardField::Front, text(card, true));
        set.setText(CardField::Back, text(card, false));
        set.setSingle(CardField::Shuffle, key(random));
        set.update();
    }
    transaction.commit();
}

/// Length of every side of the cards of makeLargeSubject(), in bytes.
inline constexpr int bytesPerSide = 298;

/// The same with cards of the same length each.
inline void makeLargeSubject(const std::filesystem::path &path, int cards)
{
    makeSubject(path, cards, [](int, bool) { return std::string(bytesPerSide, 'x'); });
}
