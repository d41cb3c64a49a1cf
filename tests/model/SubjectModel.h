#pragma once

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

// What the program means, with plain vectors in memory: slow, without a file, and short enough to be seen to be right.
// The program's own code is compared with it, step by step.

/// A card or topic that was asked for has been deleted meanwhile.
struct Gone
{
};

/// A value that a subject does not take.
struct Refused
{
};

struct ModelTopic
{
    int key;
    std::string name;
    std::string notes; ///< RTF

    friend bool operator==(const ModelTopic &, const ModelTopic &) = default;
};

/// The question that the last test made of a card.
struct ModelQuestion
{
    bool isTrueFalse = false;
    bool isFront = false;
    int answer = 0;
    int wrong1 = 0;
    int wrong2 = 0;

    friend bool operator==(const ModelQuestion &, const ModelQuestion &) = default;
};

struct ModelCard
{
    int key;
    int topic;
    std::string front; ///< RTF
    std::string back;  ///< RTF
    bool marked = false;
    float shuffle = 0;
    ModelQuestion question{};

    friend bool operator==(const ModelCard &, const ModelCard &) = default;
};

/// What the learner chose to study.
struct ModelSelection
{
    std::vector<int> topics;
    bool withMarked = false;
};

struct SubjectModel
{
    std::vector<ModelTopic> topics; ///< in the order in which they were made
    std::vector<ModelCard> cards;   ///< in the order in which they were made
    int lastTopicKey = 0;           ///< no key is given twice
    int lastCardKey = 0;

    // Topics.

    [[nodiscard]] ModelTopic &topic(int key) { return withKey(topics, key); }

    int createTopic(const std::string &name)
    {
        requireShort(name);
        const std::string notes = R"({\rtf1\ansi\deff0\deflang1033{\fonttbl{\f0\fscript\fprq2\fcharset0 )"
                                  R"(Comic Sans MS;}}\pard\f0\fs20 )" +
                                  name + R"( notes...\f1\par})";
        topics.push_back({++lastTopicKey, name, notes});
        return lastTopicKey;
    }

    void renameTopic(int key, const std::string &name)
    {
        ModelTopic &renamed = topic(key);
        requireShort(name);
        renamed.name = name;
    }

    /// Its cards go with it.
    void deleteTopic(int key)
    {
        std::erase_if(topics, [key](const ModelTopic &topic) { return topic.key == key; });
        std::erase_if(cards, [key](const ModelCard &card) { return card.topic == key; });
    }

    // Cards.

    [[nodiscard]] ModelCard &card(int key) { return withKey(cards, key); }
    [[nodiscard]] bool hasCard(int key) const
    {
        return std::ranges::any_of(cards, [key](const ModelCard &card) { return card.key == key; });
    }

    int addCard(int topicKey, const std::string &front, const std::string &back)
    {
        (void)topic(topicKey); // no card without its topic
        cards.push_back({++lastCardKey, topicKey, front, back});
        return lastCardKey;
    }

    void deleteCard(int key)
    {
        (void)card(key);
        std::erase_if(cards, [key](const ModelCard &card) { return card.key == key; });
    }

    // Selections: keys of cards.

    [[nodiscard]] std::vector<int> cardsOf(int topicKey) const { return selected({{topicKey}, false}); }

    /// The cards of the topics and the marked ones, in the order in which they were made.
    [[nodiscard]] std::vector<int> selected(const ModelSelection &selection) const
    {
        std::vector<int> keys;
        for (const ModelCard &card : cards) {
            if (isSelected(card, selection)) {
                keys.push_back(card.key);
            }
        }
        return keys;
    }

    /// The same cards in the order of their sort keys. Equal ones keep the order in which they were made.
    [[nodiscard]] std::vector<int> shuffled(const ModelSelection &selection)
    {
        std::vector<int> keys = selected(selection);
        std::ranges::stable_sort(keys, {}, [this](int key) { return card(key).shuffle; });
        return keys;
    }

private:
    template <class Row>
    static Row &withKey(std::vector<Row> &rows, int key)
    {
        const auto found = std::ranges::find(rows, key, &Row::key);
        if (found == rows.end()) {
            throw Gone();
        }
        return *found;
    }

    static bool isSelected(const ModelCard &card, const ModelSelection &selection)
    {
        const bool isOfTopics = std::ranges::find(selection.topics, card.topic) != selection.topics.end();
        return isOfTopics || (selection.withMarked && card.marked);
    }

    static void requireShort(const std::string &name)
    {
        constexpr int mostCharacters = 255;
        const auto isFirstByte = [](char byte) { return (byte & 0xc0) != 0x80; };
        if (std::ranges::count_if(name, isFirstByte) > mostCharacters) {
            throw Refused();
        }
    }
};
