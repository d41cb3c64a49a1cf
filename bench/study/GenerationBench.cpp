#include "bench/study/GenerationBench.h"

#include "bench/study/SizedSubject.h"
#include "bench/support/BareTest.h"
#include "bench/support/SeededDraw.h"
#include "study/TestGeneration.h"

#include <functional>
#include <memory>
#include <vector>

namespace fs = std::filesystem;

namespace {

constexpr double generationBesideUpdates = 2;

/// What two tests of a file that had none before took each time. The first makes the rows
/// longer, the second finds room for what it writes.
struct TwoTests
{
    std::vector<double> first;
    std::vector<double> second;
};

/// Makes one test after the other of the same cards, each of the seed given. Returns milliseconds.
using Maker = std::function<double(unsigned seed)>;

Maker openOurs(const fs::path &path, int cards)
{
    return [store = std::make_shared<SubjectStore>(path), cards](unsigned seed) {
        const std::string query = cardQuery(std::array{1});
        CardSet set = store->openRecordSet(cardQueryCheck(query));
        return microseconds([&] {
                   const CardSet test = generateTest(*store, set, query, multipleChoicePercent, seededDraw(seed));
                   require(test.recordCount() == cards, "cards are missing");
               }) /
               1000;
    };
}

Maker openBare(const fs::path &path, int cards)
{
    return [bare = std::make_shared<BareTest>(path), cards](unsigned seed) {
        return microseconds([&] { bare->generate(drawTest(cards, seed)); }) / 1000;
    };
}

void timeTwoTests(TwoTests &times, const Maker &make)
{
    times.first.push_back(make(1));
    times.second.push_back(make(2));
}

} // namespace

void benchGeneration(SizedRows &rows, const SizedSubject &subject)
{
    TwoTests ours;
    TwoTests floor;
    for (int round = 0; round < subject.passes; ++round) {
        const fs::path path = subject.copyOf("Generated.crl");
        const fs::path barePath = subject.copyOf("GeneratedBare.crl");
        if (round % 2 == 0) {
            timeTwoTests(ours, openOurs(path, subject.cards));
            timeTwoTests(floor, openBare(barePath, subject.cards));
        } else {
            timeTwoTests(floor, openBare(barePath, subject.cards));
            timeTwoTests(ours, openOurs(path, subject.cards));
        }
        if (round == 0) {
            require(storedCards(path) == storedCards(barePath), "the two sides did not store the same");
        }
    }
    rows.add(subject, {"first test", "updates"}, {ours.first, floor.first}, timesFloor(generationBesideUpdates));
    rows.add(subject, {"second test", "updates"}, {ours.second, floor.second}, timesFloor(generationBesideUpdates));
}
