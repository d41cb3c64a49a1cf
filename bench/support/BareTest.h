#pragma once

#include "bench/support/BareEngine.h"
#include "study/TestQuestion.h"

#include <filesystem>
#include <span>
#include <vector>

/// The share of multiple choice in all tests that are made here, in percent.
inline constexpr int multipleChoicePercent = 60;

/// What chance decides about a test.
struct DrawnTest
{
    std::vector<float> sortKeys;         ///< in the order of the cards' keys
    std::vector<TestQuestion> questions; ///< in the order of the sort keys
};

/// Draws in the order in which the program draws.
[[nodiscard]] DrawnTest drawTest(int cards, unsigned seed);

/// The writes of a test of all cards of topic 1 through the engine's C API, and nothing else.
class BareTest
{
public:
    explicit BareTest(const std::filesystem::path &path);

    /// In one transaction. The questions are written as the cards lie in the file: the quickest way.
    void generate(const DrawnTest &drawn);

    /// Reads the first \p count questions of the test that was made last, card by card.
    [[nodiscard]] std::vector<TestQuestion> questions(int count);

    /// Marks the cards of \p keys, in one transaction.
    void mark(std::span<const int> keys);

private:
    BareEngine m_engine;
    BareStatement m_updateKey;
    BareStatement m_selectShuffled;
    BareStatement m_updateQuestion;
    BareStatement m_selectQuestion;
    BareStatement m_updateMark;
    std::vector<int> m_keys;     ///< as the cards lie in the file
    std::vector<int> m_shuffled; ///< in the order of the test
};

/// A card as the file holds it.
struct StoredCard
{
    int key;
    bool isMarked;
    float sortKey;
    TestQuestion question;

    friend bool operator==(const StoredCard &, const StoredCard &) = default;
};

/// All cards of topic 1 in the order of their sort keys.
[[nodiscard]] std::vector<StoredCard> storedCards(const std::filesystem::path &path);
