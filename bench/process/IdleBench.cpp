// Measures the program while nobody touches it: its memory, and how often it
// wakes up. And what it takes of the disk. Exits with 1 if a bound is broken.

#include "bench/process/Screen.h"
#include "bench/process/SizeRows.h"
#include "bench/process/Subjects.h"
#include "bench/process/Visit.h"
#include "bench/process/WakeUps.h"
#include "bench/support/PairTable.h"

#include <QTemporaryDir>

#include <algorithm>
#include <chrono>
#include <memory>
#include <ratio>
#include <string>
#include <thread>
#include <vector>

namespace fs = std::filesystem;

namespace {

constexpr int rounds = 3;
constexpr int fewCards = 10;
constexpr int manyCards = 100'000;

constexpr std::chrono::seconds watch{60};
constexpr std::chrono::milliseconds betweenLooks{250};

// Mebibytes.
constexpr double idleMemory = 15;
constexpr double memoryOfManyCards = 8;

struct Homes
{
    Home empty;
    Home sample;
    Home manyTopics;
    Home fewCards;
    Home manyCards;
};

Homes makeHomes(const fs::path &folder)
{
    const fs::path sample = copyOfSample(folder);
    return {.empty = Home(folder / "empty"),
            .sample = Home(folder / "sample", sample),
            .manyTopics = Home(folder / "many topics", makeManyTopics(folder, firstNotesOf(sample))),
            .fewCards = Home(folder / "few", makeCards(folder, fewCards)),
            .manyCards = Home(folder / "many", makeCards(folder, manyCards))};
}

// Memory.

/// Nothing else of ours runs meanwhile, with which memory could be shared.
double mebibytesAtRest(const Journey &journey)
{
    Visit visit(journey);
    visit.settle();
    return visit.mebibytes();
}

struct MemoryRow
{
    Pair pair;
    Journey ours;
    Journey floor;
    Bound bound;
};

bool benchMemory(const Homes &homes)
{
    const Journey empty = toEmptyWindow(homes.empty);
    const std::string emptyName = "empty window";
    const std::vector<MemoryRow> rows{
        {{"chooser", emptyName}, through(homes.sample, "frmOpen"), empty, moreThanFloor(idleMemory)},
        {{"main window, sample", emptyName}, through(homes.sample, "frmNotes"), empty, moreThanFloor(idleMemory)},
        {{"main window, 100 topics and 100,000 cards", emptyName},
         through(homes.manyTopics, "frmNotes"),
         empty,
         moreThanFloor(idleMemory)},
        {{"session of 100,000 cards", "session of 10"},
         through(homes.manyCards, "frmFlashCard"),
         through(homes.fewCards, "frmFlashCard"),
         moreThanFloor(memoryOfManyCards)},
        {{"editor on 100,000 cards", "editor on 10"},
         through(homes.manyCards, "frmEditCards"),
         through(homes.fewCards, "frmEditCards"),
         moreThanFloor(memoryOfManyCards)},
    };
    PairTable table("memory at rest", "MiB");
    for (const MemoryRow &row : rows) {
        const PairOfTimes sizes = inTurn(
            rounds, [&] { return mebibytesAtRest(row.ours); }, [&] { return mebibytesAtRest(row.floor); });
        table.row(row.pair, sizes, row.bound);
    }
    return table.everyBoundHolds();
}

// Waking up.

struct WakingRow
{
    std::string name;
    Journey journey;
    Bound bound = {};
};

/// At all that is watched, at one moment.
struct Look
{
    std::vector<Sleeps> programs;
    long sleeper = 0;
};

Look lookAt(const std::vector<std::unique_ptr<Visit>> &visits, const Sleeper &sleeper)
{
    Look look;
    for (const auto &visit : visits) {
        look.programs.push_back(sleepsOf(visit->process()));
    }
    look.sleeper = sleeper.sleeps();
    return look;
}

/// While all of them are watched at the same time. The last has the focus, and so a caret.
std::vector<double> wakeUpsPerMinute(const std::vector<WakingRow> &rows)
{
    const auto isPainting = [](const auto &visit) { return hasPaintingThreads(visit->process()); };
    const Sleeper sleeper;
    std::vector<std::unique_ptr<Visit>> visits;
    for (const WakingRow &row : rows) {
        visits.push_back(std::make_unique<Visit>(row.journey));
        visits.back()->settle();
    }
    while (std::ranges::any_of(visits, isPainting)) {
        std::this_thread::sleep_for(betweenLooks);
    }
    const Look before = lookAt(visits, sleeper);
    std::this_thread::sleep_for(watch);
    const Look after = lookAt(visits, sleeper);

    constexpr double minutes = std::chrono::duration<double, std::ratio<60>>(watch).count();
    std::vector<double> perMinute;
    for (std::size_t row = 0; row < rows.size(); ++row) {
        const long wakeUps = wakeUpsBetween(before.programs[row], after.programs[row], after.sleeper - before.sleeper);
        perMinute.push_back(static_cast<double>(wakeUps) / minutes);
    }
    return perMinute;
}

bool benchWaking(const Homes &homes)
{
    const std::vector<WakingRow> rows{
        {"empty window", toEmptyWindow(homes.empty)},
        {"chooser", through(homes.sample, "frmOpen"), atMost(0)},
        {"main window", through(homes.sample, "frmNotes"), atMost(0)},
        {"session without the flipper", through(homes.sample, "frmFlashCard"), atMost(0)},
        {"test without a limit, showing the time of day", through(homes.sample, "frmTest")},
        {"editor with its blinking caret", through(homes.sample, "frmEditCards")},
    };
    const std::vector<double> perMinute = wakeUpsPerMinute(rows);
    PairTable table("waking up", "times a minute");
    for (std::size_t row = 1; row < rows.size(); ++row) {
        table.row({rows[row].name, rows[0].name}, perMinute[row], perMinute[0], rows[row].bound);
    }
    return table.everyBoundHolds();
}

} // namespace

int main()
{
    const QTemporaryDir folder;
    require(folder.isValid(), "cannot make a folder");
    const fs::path path = folder.path().toStdString();
    const Screen screen;

    const Homes homes = makeHomes(path);
    const bool memoryHolds = benchMemory(homes);
    const bool wakingHolds = benchWaking(homes);
    benchSizes(path / "sizes");
    return memoryHolds && wakingHolds ? 0 : 1;
}
