#pragma once

#include "StoreTest.h"
#include "store/RecordSet.h"
#include "store/Schema.h"

#include <optional>
#include <string>

/// Most tests look at a subject whose topic 1 has the cards A, B, C with the keys 1, 2, 3.
class RecordSetTest : public StoreTest
{
protected:
    SubjectStore &openCards(int count)
    {
        createCards(count);
        return store.emplace(path);
    }

    [[nodiscard]] RecordSet cardsABC() { return openCards(3).openRecordSet(cardsOfTopic(1)); }
    [[nodiscard]] RecordSet noCards() { return openCards(0).openRecordSet(cardsOfTopic(1)); }

    static std::string fronts(RecordSet &set)
    {
        std::string all;
        for (set.moveFirst(); !set.isEndOfSet(); set.moveNext()) {
            all += set.text(CardField::Front);
        }
        return all;
    }

    void deleteElsewhere(int key) const
    {
        otherProgram().exec("DELETE FROM FlashCards WHERE \"Index\" = " + std::to_string(key));
    }

    std::optional<SubjectStore> store;
};
