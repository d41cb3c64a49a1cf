#include "FaultyDisk.h"
#include "OperationTest.h"
#include "store/StoreError.h"
#include "store/SubjectStore.h"
#include "tests/study/NoDiskWaits.h"
#include "tests/support/LongRun.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <gtest/gtest.h>
#include <iostream>
#include <map>
#include <optional>

namespace fs = std::filesystem;
using Reason = StoreError::Reason;

namespace {

constexpr std::array faults = {
    DiskFault{"opening", DiskCall::Open, SQLITE_CANTOPEN},
    DiskFault{"looking for a file", DiskCall::Exists, SQLITE_IOERR_ACCESS},
    DiskFault{"asking for the size", DiskCall::Size, SQLITE_IOERR_FSTAT},
    DiskFault{"locking", DiskCall::Lock, SQLITE_IOERR_LOCK},
    DiskFault{"locking a locked file", DiskCall::Lock, SQLITE_BUSY},
    DiskFault{"asking for locks", DiskCall::LockCheck, SQLITE_IOERR_CHECKRESERVEDLOCK},
    DiskFault{"reading", DiskCall::Read, SQLITE_IOERR_READ},
    DiskFault{"writing", DiskCall::Write, SQLITE_IOERR_WRITE},
    DiskFault{"writing to a full disk", DiskCall::Write, SQLITE_FULL, ENOSPC},
    DiskFault{"writing more than the quota", DiskCall::Write, SQLITE_IOERR_WRITE, EDQUOT},
    DiskFault{"waiting for the disk", DiskCall::Sync, SQLITE_IOERR_FSYNC},
    DiskFault{"cutting off", DiskCall::Truncate, SQLITE_IOERR_TRUNCATE},
    DiskFault{"deleting", DiskCall::Delete, SQLITE_IOERR_DELETE},
};

/// What follows a failure.
enum class Sequel : std::uint8_t {
    AgainAtOnce,
    AgainAfterAnotherProgram, ///< which reads the file, and undoes what is half done in it
    CloseInTrouble,           ///< and open it again later
};
constexpr int sequelCount = 3;

/// Every command with every call to the disk failing.
class EveryDiskFault : public OperationTest
{
protected:
    void expectReport(const StoreError &failure, const DiskFault &fault)
    {
        expectFileNamed(failure);
        if (fault.engineCode == SQLITE_BUSY) {
            EXPECT_EQ(failure.reason(), Reason::Locked) << failure.what();
        } else if (fault.engineCode == SQLITE_FULL) {
            EXPECT_EQ(failure.reason(), Reason::DiskFull) << failure.what();
        } else if (failure.reason() != Reason::Engine) {
            EXPECT_EQ(fault.systemError, EDQUOT) << failure.what();
            EXPECT_EQ(failure.reason(), Reason::DiskFull) << failure.what();
        }
        ++reports[failure.reason()];
    }

    /// Returns false if the operation makes fewer such calls.
    bool failAt(const DiskFault &fault, int nth, bool forGood, Sequel sequel)
    {
        restore();
        Command command = operation->begin(subject);
        disk->failAt(fault, nth, forGood);
        Came came = give(command);
        if (disk->failures() == 0) {
            disk->clear();
            EXPECT_FALSE(came.failure) << came.failure->what();
            return false;
        }
        if (came.failure) {
            expectReport(*came.failure, fault);
            if (forGood && sequel != Sequel::CloseInTrouble) {
                came = give(command);
            }
        }
        if (sequel == Sequel::CloseInTrouble) {
            command = {};
        }
        disk->clear();
        std::string expected = after;
        if (came.failure) {
            expected = goOn(command, sequel);
        } else {
            EXPECT_EQ(came.answer, answer);
        }
        command = {};
        SubjectStore(subject).close();
        EXPECT_TRUE(contents() == expected) << contents().substr(0, shownLength);
        expectOneFile();
        return true;
    }

    /// Finishes a command that failed, now that nothing fails. Returns what the file is to hold then.
    std::string goOn(Command &command, Sequel sequel)
    {
        std::string found;
        if (sequel != Sequel::AgainAtOnce) {
            if (sequel == Sequel::CloseInTrouble) {
                if (fs::exists(subject)) {
                    SubjectStore(subject).close();
                }
                expectOneFile();
            }
            found = contents();
            EXPECT_TRUE(found == before || found == halfDone || found == after) << found.substr(0, shownLength);
            if (sequel == Sequel::CloseInTrouble && found == after) {
                return after; // and something that came after it failed
            }
        }
        if (!command) {
            command = operation->begin(subject);
        }
        const Came came = give(command);
        EXPECT_FALSE(came.failure) << "again: " << came.failure->engineCode() << " " << came.failure->what();
        EXPECT_EQ(came.answer, answer) << "again";
        return sequel == Sequel::CloseInTrouble && found == halfDone ? afterHalfDone : after;
    }

    /// Lets every call that the operation makes fail, or beyond the first \p dense only each \p stride-th.
    void failEverywhere(const Operation &what, int sequels, int dense, int stride)
    {
        ASSERT_NO_FATAL_FAILURE(learn(what)) << what.name;
        for (const DiskFault &fault : faults) {
            for (const bool forGood : {false, true}) {
                bool cameToPass = true;
                for (int nth = 1; cameToPass; nth += nth < dense ? 1 : stride) {
                    const int first = static_cast<int>(seedOr(0)) + cases++;
                    for (int turn = 0; turn < sequels; ++turn) {
                        const auto sequel = static_cast<Sequel>((first + turn) % sequelCount);
                        SCOPED_TRACE(std::string(what.name) + ": " + fault.name + ", call " + std::to_string(nth) +
                                     (forGood ? " and all after it" : "") + ", sequel " +
                                     std::to_string(static_cast<int>(sequel)));
                        cameToPass = failAt(fault, nth, forGood, sequel);
                        cameTimes[fault.name] += cameToPass ? 1 : 0;
                        ASSERT_FALSE(HasFailure());
                    }
                }
            }
        }
        ++operations;
    }

    /// Prints what was reached; fails if it was nothing.
    void sumUp(const char *subjectName) const
    {
        int all = 0;
        for (const auto &[name, times] : cameTimes) {
            all += times;
        }
        int reported = 0;
        for (const auto &[reason, times] : reports) {
            reported += times;
        }
        std::cout << "faults of the disk, " << subjectName << ": " << operations << " operations, " << all
                  << " faults came to pass, " << reported << " were reported, " << all - reported
                  << " survived without a word\n";
        EXPECT_GT(reports.at(Reason::Locked), 0);
        EXPECT_GT(reports.at(Reason::DiskFull), 0);
        EXPECT_GT(reports.at(Reason::Engine), 0);
    }

    std::unique_ptr<FaultyDisk> disk;
    int cases = 0;
    int operations = 0;
    std::map<std::string, int> cameTimes;
    std::map<Reason, int> reports;
};

TEST_F(EveryDiskFault, IsSurvivedOrReportedAndTheCommandSucceedsAfterwards)
{
    makeSubject(sample, {.cards = 6, .textLength = 40});
    disk = std::make_unique<FaultyDisk>();
    for (const Operation &what : allOperations()) {
        ASSERT_NO_FATAL_FAILURE(failEverywhere(what, roundsOf(1, sequelCount), roundsOf(6, 100000), 9));
    }
    sumUp("6 cards");
    for (const DiskFault &fault : faults) {
        EXPECT_GT(cameTimes[fault.name], 0) << fault.name;
    }
}

TEST_F(EveryDiskFault, IsSurvivedOrReportedWhenTheFileIsWrittenBeforeTheChangeIsComplete)
{
    const bool isLong = roundsOf(0, 1) == 1;
    makeSubject(sample, {.cards = isLong ? 60 : 10, .textLength = 3000});
    disk = std::make_unique<FaultyDisk>(5);
    for (const Operation &what : allOperations()) {
        if (what.isPass || isLong || what.prepare) {
            ASSERT_NO_FATAL_FAILURE(failEverywhere(what, 1, roundsOf(6, 60), 31));
        }
    }
    sumUp(isLong ? "60 long cards and little memory" : "10 long cards and little memory");
    EXPECT_GT(disk->spills(), 100);
}

TEST_F(EveryDiskFault, OfACreationDoesNoHarmToTheFileThatIsPutInItsPlace)
{
    makeSubject(sample, {.cards = 6, .textLength = 40});
    disk = std::make_unique<FaultyDisk>();
    const std::string whole = contentsOf(sample, systemDisk);
    int failures = 0;
    for (const DiskFault &fault : faults) {
        bool cameToPass = true;
        for (int nth = 1; cameToPass; ++nth) {
            fs::remove(subject);
            disk->failAt(fault, nth, true);
            failures += give([&] { return SubjectStore::create(subject), ""; }).failure ? 1 : 0;
            cameToPass = disk->failures() > 0;
            disk->clear();
            fs::copy_file(sample, subject, fs::copy_options::overwrite_existing);
            SubjectStore(subject).close();
            ASSERT_TRUE(contents() == whole) << fault.name << ", call " << nth;
        }
    }
    EXPECT_GT(failures, 30);
}

} // namespace
