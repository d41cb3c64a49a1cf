// Times what studying takes below the windows, each thing beside its floor, with 1,000
// to 100,000 cards, and how fast it grows. Both sides run in turn; the tables show medians.
// Exits with 1 if a bound is broken.

#include "bench/study/CardSessionBench.h"
#include "bench/study/GenerationBench.h"
#include "bench/study/SelectionBench.h"
#include "bench/study/ShuffleBench.h"
#include "bench/study/SizedSubject.h"
#include "bench/study/TestSessionBench.h"
#include "bench/support/BareEngine.h"
#include "bench/support/CopyToDisk.h"
#include "bench/support/FreshHome.h"
#include "bench/support/LargeSubject.h"

#include <span>
#include <vector>

namespace fs = std::filesystem;

namespace {

/// How often all sizes have their turn: a disk that gets slower slows all of them.
constexpr int laps = 3;

/// No two alike, all of the same length.
std::string textOf(int card, bool front)
{
    std::string text = std::to_string(card) + (front ? " front " : " back ");
    text.resize(bytesPerSide, 'x');
    return text;
}

std::vector<SizedSubject> makeSubjects(const fs::path &folder)
{
    std::vector<SizedSubject> subjects{
        {folder / "Small.crl", "1,000 cards", 1'000, 35, 5, false},
        {folder / "Medium.crl", "10,000 cards", 10'000, 13, 3, false},
        {folder / "Large.crl", "100,000 cards", 100'000, 3, 1, true},
    };
    for (const SizedSubject &subject : subjects) {
        makeSubject(subject.path, subject.cards, textOf);
        BareEngine(subject.path).run(R"(UPDATE FlashCards SET Marked = 1 WHERE "Index" % 10 = 0)");
    }
    return subjects;
}

using Bench = void (*)(SizedRows &rows, const SizedSubject &subject);

void run(std::span<const Bench> benches, SizedRows rows, const std::vector<SizedSubject> &subjects)
{
    for (const Bench bench : benches) {
        for (int lap = 0; lap < laps; ++lap) {
            for (const SizedSubject &subject : subjects) {
                bench(rows, subject);
            }
        }
        rows.tell();
    }
}

} // namespace

fs::path SizedSubject::copyOf(const char *fileName) const
{
    const fs::path copy = path.parent_path() / fileName;
    copyToDisk(path, copy);
    return copy;
}

int main()
{
    const FreshHome home;
    const std::vector<SizedSubject> subjects = makeSubjects(home.path());
    Growth growth;

    PairTable passes("Studying, all cards", "ms");
    run(std::array{benchSelections, benchOpeningSession, benchShuffle, benchGeneration, benchOpeningTest},
        {passes, growth}, subjects);
    PairTable steps("Studying, some cards", "us");
    run(std::array{benchNextCard, benchMark, benchQuestions}, {steps, growth}, subjects);
    PairTable exponents("Studying, 1,000 to 100,000 cards", "exponent");
    growth.addRows(exponents);
    return passes.everyBoundHolds() && steps.everyBoundHolds() && exponents.everyBoundHolds() ? 0 : 1;
}
