#pragma once

#include <span>
#include <string>
#include <string_view>

// The catalogue: every statement that the program runs against a subject file.
// The texts are exact, capitals and blanks included; SqlDialect makes them fit
// the engine. Keys are written as plain decimals.

[[nodiscard]] std::string allTopics();
[[nodiscard]] std::string topicByKey(int topic);
[[nodiscard]] std::string cardsOfTopic(int topic);

/// Deletes the topic's row. Run before deleteTopicCards().
[[nodiscard]] std::string deleteTopicRow(int topic);
[[nodiscard]] std::string deleteTopicCards(int topic);

// A card query selects the cards of a study. It has no closing ";": one of the
// three functions at the end finishes it.

/// The cards of the topics, in an OR chain in the order given. An empty list
/// gives a stub that selects nothing and does not run.
[[nodiscard]] std::string cardQuery(std::span<const int> topics);
[[nodiscard]] std::string markedCardQuery();
/// \p query joined by the marked cards of every topic.
[[nodiscard]] std::string withMarkedCards(std::string_view query);

[[nodiscard]] std::string cardQueryCheck(std::string_view query);
[[nodiscard]] std::string cardsInOrder(std::string_view query);
[[nodiscard]] std::string cardsShuffled(std::string_view query);
