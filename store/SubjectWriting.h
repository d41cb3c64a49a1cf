#pragma once

#include <filesystem>
#include <string>
#include <string_view>

// Operations of one command that change topics: each opens the subject, does its
// work and closes it again. A failed one leaves the subject as it was, and a topic
// that was deleted meanwhile is StoreError::RowGone, but for deleteTopic().

/// The notes of a new topic: "<name> notes..." as RTF. The name goes in as it is,
/// braces and backslashes too.
[[nodiscard]] std::string newTopicNotes(std::string_view name);

/// Adds a topic with the notes of a new one, and returns its key. A name of more
/// than maxTopicNameLength characters is StoreError::Refused.
[[nodiscard]] int createTopic(const std::filesystem::path &subject, std::string_view name);

void renameTopic(const std::filesystem::path &subject, int topic, std::string_view name);

void saveNotes(const std::filesystem::path &subject, int topic, std::string_view rtf);

/// Deletes the topic and then its cards: two changes, the first of which stays if the second fails.
/// Doing it again finishes it.
void deleteTopic(const std::filesystem::path &subject, int topic);
