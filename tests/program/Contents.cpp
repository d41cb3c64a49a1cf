#include "tests/program/Contents.h"

#include <SQLiteCpp/Database.h>
#include <SQLiteCpp/Statement.h>
#include <SQLiteCpp/Transaction.h>
#include <algorithm>
#include <set>

namespace {

constexpr int patience = 20'000; // milliseconds for a lock

int lastKey(const auto &rows)
{
    return rows.empty() ? 0 : rows.back().key;
}

/// As long as one line, and told from others that begin alike.
std::string shortened(const std::string &text)
{
    constexpr std::size_t most = 160;
    return text.size() <= most ? text
                               : '(' + std::to_string(text.size()) + " bytes) ..." + text.substr(text.size() - most);
}

template <class Value>
std::string unlike(const char *what, const Value &expected, const Value &actual)
{
    if (expected == actual) {
        return {};
    }
    if constexpr (std::is_convertible_v<Value, std::string>) {
        return std::string(what) + "\n    is        " + shortened(actual) + "\n    should be " + shortened(expected);
    } else {
        return std::string(what) + " is " + std::to_string(actual) + ", should be " + std::to_string(expected);
    }
}

std::string unlikeKey(int expected, int actual, int lastBefore)
{
    if (expected == 0) {
        return actual > lastBefore ? std::string() : "the key " + std::to_string(actual) + " is not a new one";
    }
    return unlike("the key", expected, actual);
}

std::string firstOf(std::initializer_list<std::string> differences)
{
    const auto found = std::ranges::find_if(differences, [](const std::string &text) { return !text.empty(); });
    return found == differences.end() ? std::string() : *found;
}

std::string unlikeStudied(const Card &expected, const Card &actual)
{
    std::string found = unlike("the mark", int{expected.isMarked}, int{actual.isMarked});
    if (found.empty()) {
        const bool isShuffled = actual.shuffle >= 0 && actual.shuffle < 1;
        found = expected.willBeShuffled ? (isShuffled ? "" : "it was not shuffled")
                                        : unlike("the sort key", expected.shuffle, actual.shuffle);
    }
    if (found.empty() && expected.willBeAsked) {
        const auto [isStatement, asksFront, answer, wrong1, wrong2] = actual.question;
        const bool isQuestion = answer >= 1 && answer <= (isStatement != 0 ? 2 : 3) && wrong1 != wrong2;
        found = isQuestion ? "" : "it has no question";
    } else if (found.empty() && expected.question != actual.question) {
        found = "the question is another";
    }
    return found;
}

std::string unlikeCard(const Card &expected, const Card &actual, int lastBefore, Studied studied)
{
    return firstOf({unlikeKey(expected.key, actual.key, lastBefore), unlike("the topic", expected.topic, actual.topic),
                    unlike("the front", expected.front, actual.front), unlike("the back", expected.back, actual.back),
                    studied == Studied::Compared ? unlikeStudied(expected, actual) : std::string()});
}

std::string unlikeTopic(const Topic &expected, const Topic &actual, int lastBefore)
{
    return firstOf({unlikeKey(expected.key, actual.key, lastBefore), unlike("the name", expected.name, actual.name),
                    unlike("the notes", expected.notes, actual.notes)});
}

} // namespace

bool Contents::hasTopic(int key) const
{
    return std::ranges::find(topics, key, &Topic::key) != topics.end();
}

std::vector<std::size_t> Contents::cardsOf(int topic) const
{
    std::vector<std::size_t> found;
    for (std::size_t card = 0; card < cards.size(); ++card) {
        if (cards[card].topic == topic) {
            found.push_back(card);
        }
    }
    return found;
}

void Contents::removeTopic(int key)
{
    std::erase_if(topics, [key](const Topic &topic) { return topic.key == key; });
}

void Contents::removeCardsOf(int topic)
{
    std::erase_if(cards, [topic](const Card &card) { return card.topic == topic; });
}

Contents Contents::ofTopics(const std::string &letters) const
{
    Contents part;
    std::set<int> keys;
    for (const Topic &topic : topics) {
        if (letters.find(topic.name.substr(0, 1)) != std::string::npos) {
            part.topics.push_back(topic);
            keys.insert(topic.key);
        }
    }
    std::ranges::copy_if(cards, std::back_inserter(part.cards),
                         [&](const Card &card) { return keys.contains(card.topic); });
    return part;
}

Contents readContents(const std::filesystem::path &subject)
{
    SQLite::Database engine(subject.string(), SQLite::OPEN_READWRITE, patience);
    SQLite::Transaction oneMoment(engine);
    Contents contents;
    SQLite::Statement topics(engine, "SELECT \"Index\", Name, Notes FROM Topics ORDER BY 1");
    while (topics.executeStep()) {
        contents.topics.push_back({topics.getColumn(0), topics.getColumn(1), topics.getColumn(2)});
    }
    SQLite::Statement cards(engine, "SELECT \"Index\", NIndex, Front, Back, Marked, Shuffle, isTrueFalse, isFront, "
                                    "Answer, Wrong1, Wrong2 FROM FlashCards ORDER BY 1");
    while (cards.executeStep()) {
        Card card{cards.getColumn(0), cards.getColumn(1), cards.getColumn(2), cards.getColumn(3)};
        card.isMarked = cards.getColumn(4).getInt() != 0;
        card.shuffle = cards.getColumn(5);
        for (int field = 0; field < 5; ++field) {
            card.question.at(static_cast<std::size_t>(field)) = cards.getColumn(6 + field);
        }
        contents.cards.push_back(card);
    }
    return contents;
}

std::string difference(const Contents &expected, const Contents &actual, const Contents &before, Studied studied)
{
    for (std::size_t i = 0; i < std::min(expected.topics.size(), actual.topics.size()); ++i) {
        const std::string found = unlikeTopic(expected.topics[i], actual.topics[i], lastKey(before.topics));
        if (!found.empty()) {
            return "topic " + std::to_string(actual.topics[i].key) + ": " + found;
        }
    }
    for (std::size_t i = 0; i < std::min(expected.cards.size(), actual.cards.size()); ++i) {
        const std::string found = unlikeCard(expected.cards[i], actual.cards[i], lastKey(before.cards), studied);
        if (!found.empty()) {
            return "card " + std::to_string(actual.cards[i].key) + ": " + found;
        }
    }
    return firstOf({unlike("the number of topics", expected.topics.size(), actual.topics.size()),
                    unlike("the number of cards", expected.cards.size(), actual.cards.size())});
}
