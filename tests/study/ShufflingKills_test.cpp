#include "Kills.h"
#include "study/Shuffling.h"

#include <SQLiteCpp/Statement.h>
#include <memory>
#include <optional>
#include <vector>

namespace {

using Keys = std::vector<double>;

constexpr int cardCount = 20'000;

// A key tells the shuffle that wrote it and the draw that it came from, and a single holds it exactly.
constexpr int shuffleNumbers = 256; ///< after the last comes 0 again
constexpr int drawsPerShuffle = 65'536;
static_assert(cardCount < drawsPerShuffle);

constexpr float keyOf(int shuffleNumber, int draw)
{
    return static_cast<float>(shuffleNumber * drawsPerShuffle + draw) / (shuffleNumbers * drawsPerShuffle);
}
static_assert(keyOf(255, 65'535) < 1 && keyOf(255, 65'535) > keyOf(255, 65'534));

int shuffleNumberOf(double key)
{
    return static_cast<int>(key * shuffleNumbers);
}

/// The keys of all cards in the order of entry after that shuffle: the first draw is written over.
Keys keysOfShuffle(int shuffleNumber)
{
    Keys keys;
    for (int draw = cardCount; draw >= 1; --draw) {
        keys.push_back(static_cast<double>(keyOf(shuffleNumber, draw)));
    }
    return keys;
}

Keys keysIn(const SQLite::Database &engine)
{
    Keys keys;
    SQLite::Statement select(engine, "SELECT Shuffle FROM FlashCards ORDER BY \"Index\"");
    while (select.executeStep()) {
        keys.push_back(select.getColumn(0));
    }
    return keys;
}

/// -1 if the keys are not those of one whole shuffle.
int shuffleHeldBy(const SQLite::Database &engine)
{
    const Keys keys = keysIn(engine);
    const int shuffleNumber = keys.empty() ? -1 : shuffleNumberOf(keys.front());
    return keys == keysOfShuffle(shuffleNumber) ? shuffleNumber : -1;
}

/// Shuffles all cards of \p subject, which stay in the order of entry, again and again.
class Shuffler
{
public:
    explicit Shuffler(const std::filesystem::path &subject)
        : m_store(subject)
        , m_cards(m_store.openRecordSet(cardsInOrder(m_query)))
    {
    }

    /// False if the new order is not that of the keys.
    bool shuffle(int shuffleNumber)
    {
        const std::optional<CardSet> shuffled =
            ::shuffle(m_store, m_cards, m_query, [=, draw = 0]() mutable { return keyOf(shuffleNumber, draw++); });
        return shuffled && shuffled->single(CardField::Shuffle) == keyOf(shuffleNumber, 1);
    }

private:
    std::string m_query = cardQuery(std::array{1});
    SubjectStore m_store;
    CardSet m_cards;
};

class ShufflingKills : public Kills
{
};

TEST_F(ShufflingKills, LeaveTheKeysOfOneWholeShuffleInTheOneFile)
{
    SubjectStore::create(subject);
    addLongCards(cardCount, 160);
    ASSERT_TRUE(Shuffler(subject).shuffle(0));
    killPasses(
        [this]() -> Pass {
            return [shuffler = std::make_shared<Shuffler>(subject)](int number) {
                return shuffler->shuffle(number % shuffleNumbers);
            };
        },
        shuffleNumbers, shuffleHeldBy);
}

} // namespace
