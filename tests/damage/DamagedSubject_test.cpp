#include "tests/damage/Damage.h"
#include "tests/damage/FileBytes.h"
#include "tests/damage/SampleSubjects.h"
#include "tests/damage/SubjectWalk.h"
#include "tests/damage/Watchdog.h"
#include "tests/study/NoDiskWaits.h"
#include "tests/support/LongRun.h"
#include "tests/support/TestSubject.h"

#include <cstdlib>
#include <gtest/gtest.h>
#include <iostream>
#include <sstream>

namespace fs = std::filesystem;

namespace {

constexpr unsigned secondsForAll = 20; // that one damage may cost; it takes some hundredths of one

/// Some thousand damages of the samples, each of them walked through.
class DamagedSubject : public testing::Test
{
protected:
    struct Place
    {
        const SampleSubject &sample;
        bool inSideFile;

        [[nodiscard]] const std::string &bytes() const { return inSideFile ? sample.sideBytes : sample.bytes; }
    };

    /// Files lie alone in their folder, so that a file left behind is found.
    void walkThrough(const Place &place, const Damage &damage, const std::string &number)
    {
        std::ostringstream name;
        name << number << ": " << place.sample.name << (place.inSideFile ? place.sample.sideSuffix : "") << ", "
             << damage;
        SCOPED_TRACE(name.str());
        const Watchdog watchdog(name.str(), secondsForAll);

        const std::string damaged = damage.appliedTo(place.bytes());
        const fs::path subject = folder.file("Subject.crl");
        const fs::path side = subject.string() + place.sample.sideSuffix;
        writeBytes(subject, place.inSideFile ? place.sample.bytes : damaged);
        if (place.sample.hasSideFile()) {
            writeBytes(side, place.inSideFile ? damaged : place.sample.sideBytes);
        }

        const int refusedBefore = tally.refused;
        SubjectWalk walk(subject, damage.seed, tally);
        walk.read();
        damages += 1;
        reported += tally.refused > refusedBefore ? 1 : 0;
        if (!place.sample.hasSideFile()) {
            EXPECT_TRUE(bytesOf(subject) == damaged) << "reading has changed the file";
            EXPECT_FALSE(hasNeighbours()) << "reading has left a file";
        }
        walk.write();
        fs::remove(subject);
        fs::remove(side);
    }

    [[nodiscard]] bool hasNeighbours() const
    {
        const fs::directory_iterator files(folder.file(""));
        return std::distance(begin(files), end(files)) > 1;
    }

    void TearDown() override
    {
        std::cout << "damages: " << damages << ", seed " << seed << ": " << reported << " reported, " << tally.commands
                  << " commands, " << tally.refused << " of them refused, " << tally.writes << " wrote; reasons:";
        for (const auto &[reason, count] : tally.reasons) {
            std::cout << " " << static_cast<int>(reason) << "x" << count;
        }
        std::cout << std::endl;
    }

    unsigned seed = seedOr(1);
    TestFolder folder;
    WalkTally tally;
    int damages = 0;
    int reported = 0; ///< damages that any command has met
};

TEST_F(DamagedSubject, OfAnyLengthIsReportedOrShown)
{
    const std::size_t step = static_cast<std::size_t>(roundsOf(8, 1));
    for (const SampleSubject &sample : sampleSubjects()) {
        for (const bool inSideFile : {false, true}) {
            const Place place{sample, inSideFile};
            const std::vector<Damage> cuts = cutsOf(place.bytes().size(), sample.pageSize);
            for (std::size_t number = 0; number < cuts.size(); number += step) {
                walkThrough(place, cuts[number], "cut");
            }
        }
    }
    EXPECT_GT(reported, damages / 2);
}

TEST_F(DamagedSubject, NeverCrashesAndNeverHangs)
{
    const char *only = std::getenv("CRAMLET_ROUND");
    const int first = only != nullptr ? std::atoi(only) : 0;
    const int last = only != nullptr ? first + 1 : roundsOf(250, 6000);
    for (int number = first; number < last; ++number) {
        const auto which = static_cast<std::size_t>(number);
        const SampleSubject &sample = sampleSubjects()[which % sampleSubjects().size()];
        const Place place{sample, sample.hasSideFile() && which / sampleSubjects().size() % 2 == 1};
        walkThrough(place, damageOf(seed, number, place.bytes().size(), sample.pageSize),
                    "damage " + std::to_string(number) + " of seed " + std::to_string(seed));
    }
    if (only == nullptr) {
        EXPECT_GT(reported, damages / 4) << "most damages were met by no command";
        EXPECT_GT(tally.writes, damages) << "most commands wrote nothing";
    }
}

} // namespace
