#pragma once

#include "store/Schema.h"
#include "store/Statements.h"
#include "store/SubjectStore.h"

#include <filesystem>
#include <random>
#include <string>

/// Length of every side of the cards of makeLargeSubject(), in bytes.
inline constexpr int bytesPerSide = 298;

/// Makes a subject with \p cards cards of topic 1.
inline void makeLargeSubject(const std::filesystem::path &path, int cards)
{
    SubjectStore::create(path);
    SubjectStore store(path);
    Transaction transaction(store);
    RecordSet set = store.openRecordSet(cardsOfTopic(1));
    std::mt19937 random(1);
    std::uniform_real_distribution<float> key(0.0F, 1.0F);
    const std::string side(bytesPerSide, 'x');
    for (int card = 0; card < cards; ++card) {
        set.addNew();
        set.setNumber(CardField::NIndex, 1);
        set.setText(CardField::Front, side);
        set.setText(CardField::Back, side);
        set.setSingle(CardField::Shuffle, key(random));
        set.update();
    }
    transaction.commit();
}
