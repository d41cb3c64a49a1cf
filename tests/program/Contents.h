#pragma once

#include <array>
#include <filesystem>
#include <string>
#include <vector>

/// A row of Topics. The key 0 stands for that of a topic to come.
struct Topic
{
    int key;
    std::string name;
    std::string notes;
};

/// A row of FlashCards. The key 0 stands for that of a card to come.
struct Card
{
    static constexpr double notShuffled = -1; ///< and less: put there before a pass
    static constexpr int notAsked = -1;

    int key;
    int topic;
    std::string front;
    std::string back;
    bool isMarked = false;
    double shuffle = 0;
    std::array<int, 5> question{}; ///< of the last test: is statement, asks the front, answer, two wrong cards

    // What is known beforehand of that which chance brings.
    bool willBeShuffled = false; ///< `shuffle` will be a number from 0 to 1
    bool willBeAsked = false;    ///< `question` will be a question
    bool isNew = false;          ///< its sides are those of every new card
};

/// All that a subject holds, by its keys.
struct Contents
{
    std::vector<Topic> topics;
    std::vector<Card> cards;

    [[nodiscard]] bool hasTopic(int key) const;
    /// The positions in `cards` of a topic's cards.
    [[nodiscard]] std::vector<std::size_t> cardsOf(int topic) const;
    void removeTopic(int key); ///< its row
    void removeCardsOf(int topic);
    /// What belongs to the topics whose names begin with one of \p letters.
    [[nodiscard]] Contents ofTopics(const std::string &letters) const;
};

/// Reads the file by the engine itself, at one moment.
[[nodiscard]] Contents readContents(const std::filesystem::path &subject);

/// What studying writes beside what the learner writes.
enum class Studied { Compared, Ignored };

/// In words, the first thing in which \p actual is not as \p expected; "" if there is none. A key to come is greater
/// than all of \p before.
[[nodiscard]] std::string difference(const Contents &expected, const Contents &actual, const Contents &before,
                                     Studied studied = Studied::Compared);
