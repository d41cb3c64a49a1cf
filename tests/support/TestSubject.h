#pragma once

#include "store/Schema.h"
#include "store/Statements.h"
#include "store/SubjectStore.h"

#include <atomic>
#include <filesystem>
#include <string>
#include <unistd.h>

/// A folder of its own for one test, removed with everything in it.
class TestFolder
{
public:
    TestFolder()
        : m_path(std::filesystem::temp_directory_path() /
                 ("cramlet-test-" + std::to_string(getpid()) + "-" + std::to_string(s_next++)))
    {
        std::filesystem::create_directories(m_path);
    }
    TestFolder(const TestFolder &) = delete;
    TestFolder &operator=(const TestFolder &) = delete;
    ~TestFolder()
    {
        std::error_code ignored;
        std::filesystem::remove_all(m_path, ignored);
    }

    [[nodiscard]] std::filesystem::path file(const std::string &name) const { return m_path / name; }

private:
    static inline std::atomic<int> s_next = 0;
    std::filesystem::path m_path;
};

/// The plainest RTF that holds \p text.
inline std::string rtfOf(const std::string &text)
{
    return "{\\rtf1\\ansi " + text + "\\par}";
}

/// Adds a topic and returns its key.
inline int addTopic(const std::filesystem::path &subject, const std::string &name, const std::string &notes = "")
{
    SubjectStore store(subject);
    TopicSet topics = store.openRecordSet(allTopics());
    topics.addNew();
    topics.setText(TopicField::Name, name);
    topics.setText(TopicField::Notes, notes.empty() ? rtfOf(name + " notes...") : notes);
    topics.update();
    topics.setBookmark(topics.lastModified());
    return topics.number(TopicField::Index);
}

/// Adds \p count cards "front k" / "back k", k from 1, to a topic.
inline void addCards(const std::filesystem::path &subject, int topic, int count, bool marked = false)
{
    SubjectStore store(subject);
    CardSet cards = store.openRecordSet(cardsOfTopic(topic));
    Transaction pass(store);
    for (int k = 1; k <= count; ++k) {
        cards.addNew();
        cards.setNumber(CardField::NIndex, topic);
        cards.setText(CardField::Front, rtfOf("front " + std::to_string(k)));
        cards.setText(CardField::Back, rtfOf("back " + std::to_string(k)));
        cards.setFlag(CardField::Marked, marked);
        cards.update();
    }
    pass.commit();
}
