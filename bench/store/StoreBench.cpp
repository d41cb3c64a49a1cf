// Times the store's operations in pairs with the same statements through the
// engine's C API, prepared once. The sizes are the arguments, if there are any.
// Exits with 1 if a bound is broken.

#include "bench/store/MemoryBench.h"
#include "bench/store/SetBench.h"
#include "bench/store/StorePairs.h"
#include "bench/store/TopicBench.h"
#include "bench/support/BareEngine.h"
#include "bench/support/CopyToDisk.h"
#include "bench/support/LargeSubject.h"
#include "store/SubjectStore.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

namespace fs = std::filesystem;

namespace {

constexpr int fewestCards = 100;
constexpr double memoryOfSet = 4; // MiB, over largestBoundSize cards

/// With commas between the thousands.
std::string readable(int number)
{
    std::string digits = std::to_string(number);
    for (auto place = static_cast<int>(digits.size()) - 3; place > 0; place -= 3) {
        digits.insert(static_cast<std::size_t>(place), 1, ',');
    }
    return digits;
}

void createBare(const fs::path &path)
{
    fs::remove(path);
    BareEngine engine(path, SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOMUTEX | SQLITE_OPEN_CREATE);
    engine.run(
        "PRAGMA synchronous = FULL; BEGIN EXCLUSIVE; PRAGMA application_id = 1; PRAGMA user_version = 1;"
        "CREATE TABLE Topics (\"Index\" INTEGER PRIMARY KEY AUTOINCREMENT, Name TEXT NOT NULL DEFAULT '',"
        " Notes TEXT NOT NULL DEFAULT '');"
        "CREATE TABLE FlashCards (\"Index\" INTEGER PRIMARY KEY AUTOINCREMENT, NIndex INTEGER NOT NULL DEFAULT 0,"
        " Front TEXT NOT NULL DEFAULT '', Back TEXT NOT NULL DEFAULT '', Marked INTEGER NOT NULL DEFAULT 0,"
        " Shuffle REAL NOT NULL DEFAULT 0, isTrueFalse INTEGER NOT NULL DEFAULT 0,"
        " isFront INTEGER NOT NULL DEFAULT 0, Answer INTEGER NOT NULL DEFAULT 0,"
        " Wrong1 INTEGER NOT NULL DEFAULT 0, Wrong2 INTEGER NOT NULL DEFAULT 0);"
        "COMMIT");
}

bool benchCreation(const fs::path &folder)
{
    PairTable table("store, new files", "us");
    const auto timeOurs = [&] { return microseconds([&] { SubjectStore::create(folder / "Made.crl"); }); };
    const auto timeBare = [&] { return microseconds([&] { createBare(folder / "MadeBare.crl"); }); };
    table.row({"create a subject", "the same tables"}, inTurn(101, timeOurs, timeBare), timesFloor(storeBesideBare));
    openBare(folder / "Made.crl");
    openBare(folder / "MadeBare.crl");
    return table.everyBoundHolds();
}

/// Makes the same subject twice: neither side spoils the engine's page cache for the other. Both are copies,
/// because the system reads a file that was written in one go faster than one that grew page by page.
void makeTwins(const fs::path &path, const fs::path &barePath, int cards)
{
    const fs::path grown = path.parent_path() / "Grown.crl";
    makeLargeSubject(grown, cards);
    addTopics(grown);
    for (const fs::path &twin : {path, barePath}) {
        copyToDisk(grown, twin);
    }
    fs::remove(grown);
}

bool benchSize(StoreGrowth &growth, const fs::path &path, const fs::path &barePath, int cards)
{
    PairTable table("store, " + readable(cards) + " cards", "us");
    StorePairs pairs(table, growth, cards);
    benchSets(pairs, path, barePath);
    benchTopics(pairs, path, barePath);

    PairTable memory("store, " + readable(cards) + " cards, heap", "MiB");
    benchMemory(memory, path, cards, cards <= largestBoundSize ? atMost(memoryOfSet) : Bound{});
    return table.everyBoundHolds() && memory.everyBoundHolds();
}

bool tell(const StoreGrowth &growth)
{
    PairTable work("store, growth of work over all cards", "exponent");
    growth.work.addRows(work);
    PairTable steady("store, growth of what should not grow", "exponent");
    growth.steady.addRows(steady);
    PairTable waiting("store, growth of what waits for the disk", "exponent");
    growth.waiting.addRows(waiting);
    return work.everyBoundHolds() && steady.everyBoundHolds() && waiting.everyBoundHolds();
}

} // namespace

int main(int argc, char **argv)
{
    std::vector<int> sizes;
    for (int argument = 1; argument < argc; ++argument) {
        sizes.push_back(std::max(fewestCards, std::atoi(argv[argument])));
    }
    if (sizes.empty()) {
        sizes = {1'000, 10'000, 100'000, 1'000'000};
    }

    std::string folder = (fs::temp_directory_path() / "bench-store-XXXXXX").string();
    require(::mkdtemp(folder.data()) != nullptr, "cannot make a folder");
    bool everyBoundHolds = benchCreation(folder);
    StoreGrowth growth;
    for (const int cards : sizes) {
        const fs::path path = fs::path(folder) / "Subject.crl";
        const fs::path barePath = fs::path(folder) / "Bare.crl";
        makeTwins(path, barePath, cards);
        everyBoundHolds = benchSize(growth, path, barePath, cards) && everyBoundHolds;
    }
    everyBoundHolds = tell(growth) && everyBoundHolds;
    fs::remove_all(folder);
    return everyBoundHolds ? 0 : 1;
}
