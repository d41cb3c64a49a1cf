#pragma once

#include "bench/support/LargeSubject.h"
#include "bench/support/SampleCards.h"
#include "bench/support/TopicsSubject.h"
#include "store/SubjectReading.h"

#include <filesystem>
#include <string>

// The subjects to go to.

/// The RTF that the main window shows of \p subject at first.
inline std::string firstNotesOf(const std::filesystem::path &subject)
{
    return readTopic(subject, listTopics(subject).front().index).notes;
}

inline constexpr int manyTopics = 100;
inline constexpr int cardsOfEachTopic = 1'000;

/// Of many topics with the same \p notes each; 100,000 cards lie evenly in them.
inline std::filesystem::path makeManyTopics(const std::filesystem::path &folder, const std::string &notes)
{
    std::filesystem::path path = folder / "Many topics.crl";
    makeSubjectOfTopics(path, manyTopics, cardsOfEachTopic, [&](int) { return notes; });
    return path;
}

/// Of \p count cards of one topic.
inline std::filesystem::path makeCards(const std::filesystem::path &folder, int count)
{
    std::filesystem::path path = folder / (std::to_string(count) + " cards.crl");
    makeSubject(path, count, [](int card, bool front) { return sideText(Markup::Rtf, card, front); });
    SubjectStore store(path);
    RecordSet topics = store.openRecordSet(allTopics());
    topics.addNew();
    topics.setText(TopicField::Name, "Cards");
    topics.setText(TopicField::Notes, "{\\rtf1 Cards notes...}");
    topics.update();
    return path;
}
