#include "bench/store/MemoryBench.h"

#include "bench/support/BareEngine.h"
#include "bench/support/LargeSubject.h"
#include "store/Schema.h"
#include "store/Statements.h"
#include "store/SubjectStore.h"

#include <array>
#include <cstddef>
#include <malloc.h>
#include <sqlite3.h>
#include <string>
#include <vector>

namespace fs = std::filesystem;

namespace {

constexpr double bytesPerMebibyte = 1 << 20;

/// Of the whole process, the engine with its page cache included.
double bytesInUse()
{
    const struct mallinfo2 heap = ::mallinfo2();
    return static_cast<double>(heap.uordblks + heap.hblkhd);
}

/// Bytes that the program holds, and of these the engine.
struct Held
{
    double all;
    double engine;

    static Held now() { return {bytesInUse(), static_cast<double>(sqlite3_memory_used())}; }

    [[nodiscard]] Held since(const Held &before) const { return {all - before.all, engine - before.engine}; }
};

Held heldByStore(const fs::path &path, int cards)
{
    const Held before = Held::now();
    SubjectStore store(path);
    RecordSet set = store.openRecordSet(cardsInOrder(cardQuery(std::array{1})));
    int read = 0;
    for (; !set.isEndOfSet(); set.moveNext()) {
        read += set.text(CardField::Front).empty() ? 0 : 1;
    }
    require(read == cards, "cards are missing");
    return Held::now().since(before);
}

Held heldByBare(const fs::path &path, int cards)
{
    const Held before = Held::now();
    BareEngine engine(path);
    const std::vector<int> keys =
        keysOf(BareStatement(engine, "SELECT rowid FROM FlashCards WHERE NIndex = 1 ORDER BY \"Index\" ASC"));
    BareStatement select(engine, "SELECT Front, Back FROM FlashCards WHERE rowid = ?");
    for (const int key : keys) {
        sqlite3_bind_int(select, 1, key);
        require(sqlite3_step(select) == SQLITE_ROW, "a row is missing");
        sqlite3_reset(select);
    }
    require(keys.size() == static_cast<std::size_t>(cards), "cards are missing");
    return Held::now().since(before);
}

} // namespace

void benchMemory(PairTable &table, const fs::path &path, int cards, const Bound &bound)
{
    heldByStore(path, cards); // what is allocated once and for all
    const Held ours = heldByStore(path, cards);
    const Held bare = heldByBare(path, cards);
    table.row({"a set, all rows read, page cache included", "keys and rows by key"}, ours.all / bytesPerMebibyte,
              bare.all / bytesPerMebibyte, bound);
    table.row({"the same without the engine's memory", "keys and rows by key"},
              (ours.all - ours.engine) / bytesPerMebibyte, (bare.all - bare.engine) / bytesPerMebibyte);
}
