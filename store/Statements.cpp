#include "store/Statements.h"

namespace {

constexpr std::string_view orTopic = " OR NIndex = ";

} // namespace

std::string allTopics()
{
    return "SELECT * FROM Topics;";
}

std::string topicByKey(int topic)
{
    return "SELECT * FROM Topics WHERE Index = " + std::to_string(topic) + ";";
}

std::string cardsOfTopic(int topic)
{
    return "SELECT * FROM FlashCards WHERE NIndex = " + std::to_string(topic) + ";";
}

std::string deleteTopicRow(int topic)
{
    return "DELETE * FROM Topics Where Index = " + std::to_string(topic) + ";";
}

std::string deleteTopicCards(int topic)
{
    return "DELETE * FROM FlashCards Where NIndex = " + std::to_string(topic) + ";";
}

std::string cardQuery(std::span<const int> topics)
{
    std::string query = "SELECT * FROM Flashcards WHERE NIndex = ";
    for (const int topic : topics) {
        query.append(std::to_string(topic)).append(orTopic);
    }
    query.resize(query.size() - orTopic.size());
    return query;
}

std::string markedCardQuery()
{
    return "Select * FROM Flashcards WHERE Marked = Yes";
}

std::string withMarkedCards(std::string_view query)
{
    return std::string(query) + " OR Marked = Yes";
}

std::string cardQueryCheck(std::string_view query)
{
    return std::string(query) + ";";
}

std::string cardsInOrder(std::string_view query)
{
    return std::string(query) + " ORDER BY Index ASC;";
}

std::string cardsShuffled(std::string_view query)
{
    return std::string(query) + " ORDER BY Shuffle ASC;";
}
