#pragma once

#include "bench/support/LargeSubject.h"

#include <filesystem>
#include <functional>
#include <string>

/// Makes a subject with topics 1 to \p topics, each with \p notes (of its key) and with \p cardsOfEach
/// cards of bytesPerSide, which lie in the file topic after topic.
inline void makeSubjectOfTopics(const std::filesystem::path &path, int topics, int cardsOfEach,
                                const std::function<std::string(int topic)> &notes)
{
    SubjectStore::create(path);
    SubjectStore store(path);
    Transaction transaction(store);
    RecordSet topicSet = store.openRecordSet(allTopics());
    RecordSet cards = store.openRecordSet(cardsOfTopic(1));
    const std::string side(bytesPerSide, 'x');
    for (int topic = 1; topic <= topics; ++topic) {
        topicSet.addNew();
        topicSet.setText(TopicField::Name, "Topic " + std::to_string(topic));
        topicSet.setText(TopicField::Notes, notes(topic));
        topicSet.update();
        for (int card = 0; card < cardsOfEach; ++card) {
            cards.addNew();
            cards.setNumber(CardField::NIndex, topic);
            cards.setText(CardField::Front, side);
            cards.setText(CardField::Back, side);
            cards.update();
        }
    }
    transaction.commit();
}
