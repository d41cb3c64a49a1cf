#include "StoreTest.h"

#include <cstdlib>
#include <iostream>
#include <limits>
#include <malloc.h>
#include <new>
#include <sqlite3.h>

namespace {

// What the program itself has allocated, and its highest value. The engine
// keeps count of its own memory.
std::size_t allocated = 0;
std::size_t highest = 0;

// Memory in pieces of at least this size is lacking.
std::size_t lackingFrom = std::numeric_limits<std::size_t>::max();

} // namespace

// Not inlined: the compiler would see malloc() meet operator delete and warn.
[[gnu::noinline]] void *operator new(std::size_t size)
{
    void *memory = size < lackingFrom ? std::malloc(size) : nullptr;
    if (memory == nullptr) {
        throw std::bad_alloc();
    }
    allocated += ::malloc_usable_size(memory);
    highest = std::max(highest, allocated);
    return memory;
}

[[gnu::noinline]] void operator delete(void *memory) noexcept
{
    if (memory != nullptr) {
        allocated -= ::malloc_usable_size(memory);
    }
    std::free(memory);
}

void operator delete(void *memory, std::size_t) noexcept
{
    operator delete(memory);
}

namespace {

// Bytes of the program's own memory and of the engine's with its page cache.
constexpr std::size_t ownLimit = 1 << 20;
constexpr std::size_t heldLimit = 4 << 20;
// The engine sorts in as much memory again as its page cache has, then in a file.
constexpr std::size_t peakLimit = 6 << 20;

class RecordSetMemory : public StoreTest
{
protected:
    static constexpr int cardCount = 100'000;

    void createManyCards() const
    {
        SubjectStore::create(path);
        otherProgram().exec("WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < " +
                            std::to_string(cardCount) +
                            ") INSERT INTO FlashCards (NIndex, Front, Back, Shuffle) "
                            "SELECT 1, hex(zeroblob(150)), hex(zeroblob(150)), (i * 7919 % 100003) / 100003.0 FROM n");
    }
};

TEST_F(RecordSetMemory, IsCountedAtAll)
{
    const std::size_t before = allocated;
    const std::string text(100'000, 'x');
    EXPECT_GE(allocated - before, text.size());
}

TEST_F(RecordSetMemory, ThatIsLackingForAnotherRowKeepsItOutOfTheFileToo)
{
    createCards(0);
    SubjectStore store(path);
    RecordSet set = store.openRecordSet(cardsOfTopic(1));
    Transaction transaction(store);
    bool isLacking = false;
    for (int row = 0; row < 5000 && !isLacking; ++row) {
        set.addNew();
        lackingFrom = 4096;
        try {
            set.update();
        } catch (const std::bad_alloc &) {
            isLacking = true;
        }
        lackingFrom = std::numeric_limits<std::size_t>::max();
    }
    EXPECT_TRUE(isLacking);
    transaction.commit();
    EXPECT_GT(set.recordCount(), 0);
    EXPECT_EQ(askOther("SELECT count(*) FROM FlashCards"), std::to_string(set.recordCount()));
}

TEST_F(RecordSetMemory, StaysUnder4MiBForASetOver100000Cards)
{
    createManyCards();
    for (const std::string &statement :
         {cardsInOrder(cardQuery(std::array{1})), cardsShuffled(cardQuery(std::array{1}))}) {
        SCOPED_TRACE(statement);
        const std::size_t ownBefore = highest = allocated;
        const auto engineBefore = sqlite3_memory_used();
        sqlite3_memory_highwater(1);

        SubjectStore store(path);
        RecordSet set = store.openRecordSet(statement);
        ASSERT_EQ(set.recordCount(), cardCount);
        std::size_t bytes = 0;
        for (; !set.isEndOfSet(); set.moveNext()) {
            bytes += set.text("Front").size();
        }
        EXPECT_EQ(bytes, cardCount * std::size_t{300});

        const std::size_t own = highest - ownBefore;
        const auto engineHeld = static_cast<std::size_t>(sqlite3_memory_used() - engineBefore);
        const auto enginePeak = static_cast<std::size_t>(sqlite3_memory_highwater(0) - engineBefore);
        std::cout << "own peak " << own << ", engine " << engineHeld << ", engine's peak " << enginePeak << " bytes\n";
        EXPECT_GT(own, cardCount * sizeof(int)) << "not measured";
        EXPECT_GT(engineHeld, std::size_t{1} << 16) << "not measured";
        EXPECT_LT(own, ownLimit);
        EXPECT_LT(own + engineHeld, heldLimit);
        EXPECT_LT(own + enginePeak, peakLimit);
    }
}

} // namespace
