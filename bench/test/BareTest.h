#pragma once

#include "bench/support/BareEngine.h"
#include "study/TestQuestion.h"

#include <cstdint>
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

/// The order in which the questions are written.
enum class WritingOrder : std::uint8_t {
    LastToFirst, ///< as they are drawn
    ByKey,       ///< as the cards lie in the file
};

/// The writes of a test of all cards of topic 1 through the engine's C API, and nothing else.
class BareTest
{
public:
    explicit BareTest(const std::filesystem::path &path);

    /// In one transaction.
    void generate(const DrawnTest &drawn, WritingOrder order);

    /// Marks the cards of \p keys, in one transaction.
    void mark(std::span<const int> keys);

private:
    BareEngine m_engine;
    BareStatement m_updateKey;
    BareStatement m_selectShuffled;
    BareStatement m_updateQuestion;
    BareStatement m_updateMark;
    std::vector<int> m_keys;
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
