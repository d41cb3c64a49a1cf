#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

// Operations of one command: each opens the subject, does its work and closes it again.

struct TopicEntry
{
    int index; ///< the topic's key
    std::string name;
};

/// All topics in the file's own order, which is that of creation.
[[nodiscard]] std::vector<TopicEntry> listTopics(const std::filesystem::path &subject);

struct TopicContents
{
    std::string name;
    std::string notes; ///< RTF
    int cardCount;
};

/// Throws StoreError::RowGone if the topic was deleted meanwhile.
[[nodiscard]] TopicContents readTopic(const std::filesystem::path &subject, int topic);

/// Counts the rows of a selection of cards.
[[nodiscard]] int countCards(const std::filesystem::path &subject, std::string_view statement);
