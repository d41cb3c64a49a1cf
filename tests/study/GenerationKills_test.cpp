#include "Kills.h"
#include "StoredTest.h"
#include "study/TestGeneration.h"

#include <algorithm>
#include <memory>
#include <vector>

namespace {

constexpr int cardCount = 5'000;
constexpr int percent = 60;

// A key tells the test that wrote it and the place that its card gets, and a single holds it exactly.
constexpr int testNumbers = 256; ///< after the last comes 0 again
constexpr int placesPerTest = 65'536;
static_assert(cardCount < placesPerTest);

constexpr float keyOf(int testNumber, int place)
{
    return static_cast<float>(testNumber * placesPerTest + place) / (testNumbers * placesPerTest);
}
static_assert(keyOf(255, 65'535) < 1 && keyOf(255, 65'535) > keyOf(255, 65'534));

int testNumberOf(double key)
{
    return static_cast<int>(key * testNumbers);
}

/// The place that the card with the \p draw -th key gets. All places are taken, in another order in every test.
constexpr int placeOf(int testNumber, int draw)
{
    constexpr int step = 2'999; // prime to the number of cards
    static_assert(cardCount % step != 0);
    return (draw * step + testNumber * 17) % cardCount;
}

/// The numbers of a test: keys that can be told apart first.
RandomDraw drawOfTest(int testNumber)
{
    return [testNumber, draws = 0, rest = drawSeededBy(static_cast<unsigned>(testNumber))]() mutable {
        const int draw = draws++;
        return draw < cardCount ? keyOf(testNumber, placeOf(testNumber, draw)) : rest();
    };
}

/// The fields of all cards in the order of entry after that test.
std::vector<StoredCard> cardsOfTest(int testNumber)
{
    const RandomDraw draw = drawOfTest(testNumber);
    std::vector<StoredCard> cards(cardCount);
    for (int card = cardCount; card >= 1; --card) {
        cards[static_cast<std::size_t>(card) - 1] = {card, static_cast<double>(draw()), {}};
    }
    std::ranges::sort(cards, {}, &StoredCard::shuffle);
    for (int position = cardCount - 1; position >= 0; --position) {
        cards[static_cast<std::size_t>(position)].question = drawQuestion(position, cardCount, percent, draw);
    }
    std::ranges::sort(cards, {}, &StoredCard::card);
    return cards;
}

/// -1 if the fields are not those of one whole test.
int testHeldBy(const SQLite::Database &engine)
{
    const std::vector<StoredCard> cards = storedCards(engine);
    const int testNumber = cards.empty() ? -1 : testNumberOf(cards.front().shuffle);
    return cards == cardsOfTest(testNumber) ? testNumber : -1;
}

/// Makes tests of all cards of \p subject, which stay in the order of entry, again and again.
class Generator
{
public:
    explicit Generator(const std::filesystem::path &subject)
        : m_store(subject)
        , m_cards(m_store.openRecordSet(cardsInOrder(m_query)))
    {
    }

    /// False if the order of the test is not that of the keys.
    bool generate(int testNumber)
    {
        const CardSet test = generateTest(m_store, m_cards, m_query, percent, drawOfTest(testNumber));
        return test.single(CardField::Shuffle) == keyOf(testNumber, 0);
    }

private:
    std::string m_query = cardQuery(std::array{1});
    SubjectStore m_store;
    CardSet m_cards;
};

class GenerationKills : public Kills
{
};

TEST_F(GenerationKills, LeaveTheFieldsOfOneWholeTestInTheOneFile)
{
    SubjectStore::create(subject);
    addLongCards(cardCount, 480);
    ASSERT_TRUE(Generator(subject).generate(0));
    ASSERT_EQ(testHeldBy(SQLite::Database(subject.string())), 0);
    killPasses(
        [this]() -> Pass {
            return [generator = std::make_shared<Generator>(subject)](int number) {
                return generator->generate(number % testNumbers);
            };
        },
        testNumbers, testHeldBy);
}

} // namespace
