#include "tests/model/RandomLife.h"
#include "tests/support/LongRun.h"

#include <iostream>

namespace fs = std::filesystem;

namespace {

/// What a run must have met to be worth its time.
constexpr const char *mustHappen[] = {
    "something gone",
    "name refused",
    "selection refused 0",
    "selection refused 1",
    "selection refused 2",
    "selection accepted",
    "test generated",
    "test graded",
    "time is up",
    "no open question",
    "session at its end",
    "session at its begin",
    "shuffle",
    "test of too few cards",
    "session of no card",
    "shuffle of no card",
};

TEST(SubjectModel, MeansTheSameAsTheProgramInWhateverIsDone)
{
    const unsigned seed = seedOr(1);
    const int sequences = roundsOf(300, 3000);
    const TestFolder folder;
    const fs::path fresh = folder.file("fresh");
    SubjectStore::create(fresh);

    Tally tally;
    int steps = 0;
    for (int sequence = 0; sequence < sequences; ++sequence) {
        const fs::path place = folder.file("place");
        fs::create_directory(place);
        fs::copy_file(fresh, place / "subject.crl", fs::copy_options::overwrite_existing);
        RandomLife life(place / "subject.crl", seed * 1'000'003U + static_cast<unsigned>(sequence), tally);
        for (int left = 20 + sequence % 41; left > 0; --left, ++steps) {
            life.step();
            ASSERT_FALSE(HasFailure()) << "seed " << seed << ", sequence " << sequence << ": " << life.log();
        }
    }
    for (const char *event : mustHappen) {
        EXPECT_GT(tally[event], 0) << event;
    }
    std::cout << "model: " << sequences << " sequences, " << steps << " steps, seed " << seed << ":";
    for (const auto &[event, times] : tally) {
        std::cout << ' ' << event << ' ' << times << (event == tally.rbegin()->first ? "" : ",");
    }
    std::cout << '\n';
}

} // namespace
