#include "bench/test/GenerationBench.h"

#include "bench/support/LargeSubject.h"
#include "bench/support/Measure.h"
#include "bench/support/PairTable.h"
#include "bench/support/SeededDraw.h"
#include "bench/test/BareTest.h"
#include "study/TestGeneration.h"

#include <algorithm>
#include <array>
#include <fcntl.h>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <unistd.h>
#include <utility>
#include <vector>

namespace fs = std::filesystem;

namespace {

constexpr double generationBesideUpdates = 2; // for the most cards
constexpr double largestExponent = 1.1;       // of the first test's time over the number of cards

struct Size
{
    int cards;
    int rounds;
    const char *name;
};

constexpr std::array sizes{
    Size{1'000, 41, "1,000"},
    Size{10'000, 21, "10,000"},
    Size{100'000, 5, "100,000"},
};

/// Makes one test after the other of the same cards, each of the seed given. Returns microseconds.
using Maker = std::function<double(unsigned seed)>;

Maker openOurs(const fs::path &path, int cards)
{
    return [store = std::make_shared<SubjectStore>(path), cards](unsigned seed) {
        const std::string query = cardQuery(std::array{1});
        CardSet set = store->openRecordSet(cardQueryCheck(query));
        const RandomDraw draw = seededDraw(seed);
        return microseconds([&] {
            const CardSet test = generateTest(*store, set, query, multipleChoicePercent, draw);
            require(test.recordCount() == cards, "cards are missing");
        });
    };
}

Maker openBare(const fs::path &path, int cards, WritingOrder order)
{
    return [bare = std::make_shared<BareTest>(path), cards, order](unsigned seed) {
        const DrawnTest drawn = drawTest(cards, seed);
        return microseconds([&] { bare->generate(drawn, order); });
    };
}

/// Two tests of a file that had none before, in microseconds a card. The first makes the rows
/// longer, the second finds room for what it writes.
struct Tests
{
    double first = 0;
    double second = 0;
};

struct Writer
{
    const char *fileName;
    Maker (*open)(const fs::path &path, int cards);
    std::vector<Tests> rounds;
};

struct Writers
{
    Writer ours{"Ours.crl", openOurs, {}};
    Writer lastToFirst{"LastToFirst.crl",
                       [](const fs::path &path, int cards) { return openBare(path, cards, WritingOrder::LastToFirst); },
                       {}};
    Writer byKey{
        "ByKey.crl", [](const fs::path &path, int cards) { return openBare(path, cards, WritingOrder::ByKey); }, {}};

    [[nodiscard]] std::array<Writer *, 3> all() { return {&ours, &lastToFirst, &byKey}; }
};

/// What of the copy is still on its way to the disk would delay the first commit.
void copyToDisk(const fs::path &from, const fs::path &to)
{
    fs::copy_file(from, to, fs::copy_options::overwrite_existing);
    const int file = ::open(to.c_str(), O_RDONLY);
    require(file >= 0 && ::fsync(file) == 0, "cannot write a copy");
    ::close(file);
}

/// Also a round for nothing, after which the files stay as they are.
void requireTheSame(Writers &writers, const fs::path &fresh, const Size &size)
{
    for (const unsigned seed : {1U, 2U}) {
        std::vector<std::vector<StoredCard>> stored;
        for (const Writer *writer : writers.all()) {
            const fs::path path = fresh.parent_path() / writer->fileName;
            if (seed == 1) {
                copyToDisk(fresh, path);
            }
            writer->open(path, size.cards)(seed);
            stored.push_back(storedCards(path));
        }
        require(static_cast<int>(stored[0].size()) == size.cards && stored[0] == stored[1] && stored[0] == stored[2],
                "the three ways did not store the same");
    }
}

Writers measure(const fs::path &folder, const Size &size)
{
    const fs::path fresh = folder / "Fresh.crl";
    makeLargeSubject(fresh, size.cards);
    Writers writers;
    requireTheSame(writers, fresh, size);
    std::array<Writer *, 3> turns = writers.all();
    for (int round = 0; round < size.rounds; ++round) {
        std::rotate(turns.begin(), turns.begin() + 1, turns.end());
        for (Writer *writer : turns) {
            const fs::path path = folder / writer->fileName;
            copyToDisk(fresh, path);
            const Maker make = writer->open(path, size.cards);
            const double first = make(1) / size.cards;
            writer->rounds.push_back({first, make(2) / size.cards});
        }
    }
    return writers;
}

double medianOf(const Writer &writer, double Tests::*which)
{
    std::vector<double> times(writer.rounds.size());
    std::ranges::transform(writer.rounds, times.begin(), which);
    return median(times);
}

} // namespace

void benchGeneration(PairTable &table, const fs::path &folder)
{
    std::vector<double> cards;
    std::vector<double> ours;
    std::vector<double> floor;
    for (const Size &size : sizes) {
        const Writers writers = measure(folder, size);
        const bool isLargest = size.cards == sizes.back().cards;
        for (const auto &[name, which] : {std::pair{"first", &Tests::first}, {"second", &Tests::second}}) {
            const std::string thing = std::string(name) + " test of " + size.name + " cards | ";
            const double test = medianOf(writers.ours, which);
            const double updates = medianOf(writers.lastToFirst, which);
            const auto holds = isLargest ? std::optional(test <= generationBesideUpdates * updates) : std::nullopt;
            table.row(thing + "updates", test, updates, holds);
            table.row(thing + "updates by key", test, medianOf(writers.byKey, which));
        }
        cards.push_back(size.cards);
        ours.push_back(size.cards * medianOf(writers.ours, &Tests::first));
        floor.push_back(size.cards * medianOf(writers.lastToFirst, &Tests::first));
    }
    const double exponent = fittedExponent(cards, ours);
    table.row("first test ~ cards^", exponent, fittedExponent(cards, floor), exponent <= largestExponent);
}
