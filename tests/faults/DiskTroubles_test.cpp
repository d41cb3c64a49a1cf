#include "ChildProcess.h"
#include "FaultyDisk.h"
#include "LockingProcess.h"
#include "OperationTest.h"
#include "store/StoreError.h"
#include "store/SubjectStore.h"
#include "tests/forms/SubjectTrouble.h"
#include "tests/study/NoDiskWaits.h"

#include <fcntl.h>
#include <fstream>
#include <gtest/gtest.h>
#include <iostream>
#include <sched.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <unistd.h>

namespace fs = std::filesystem;
using Reason = StoreError::Reason;

namespace {

/// Every operation while another process holds a lock. Nobody waits really: the engine's waiting is counted.
class EveryLock : public OperationTest
{
protected:
    EveryLock() { makeSubject(sample, {.cards = 6, .textLength = 40}); }

    void tryWith(LockingProcess::Lock lock)
    {
        for (const Operation &what : allOperations()) {
            ASSERT_NO_FATAL_FAILURE(learn(what));
            SCOPED_TRACE(std::string(what.name) + ", lock " + static_cast<char>(lock));
            restore();
            if (fs::exists(subject)) {
                tryShort(lock);
                restore();
                tryLong(lock);
            }
        }
    }

    void tryShort(LockingProcess::Lock lock)
    {
        Command command = operation->begin(subject);
        ASSERT_TRUE(other.hold(lock));
        disk.forgetWaits();
        disk.whenWaiting([&] {
            if (disk.waited() >= 250) {
                EXPECT_TRUE(other.hold(LockingProcess::None));
            }
        });
        const Came came = give(command);
        EXPECT_FALSE(came.failure) << came.failure->what();
        EXPECT_EQ(came.answer, answer);
        waits += disk.waited() > 0 ? 1 : 0;
        disk.whenWaiting({});
        EXPECT_TRUE(other.hold(LockingProcess::None));
        command = {};
        EXPECT_TRUE(contents() == after);
        expectOneFile();
    }

    void tryLong(LockingProcess::Lock lock)
    {
        Command command = operation->begin(subject);
        ASSERT_TRUE(other.hold(lock));
        disk.forgetWaits();
        const Came came = give(command);
        if (came.failure) {
            ++reports;
            EXPECT_EQ(came.failure->reason(), Reason::Locked) << came.failure->what();
            expectFileNamed(*came.failure);
            EXPECT_GE(disk.waited(), 500);
        }
        EXPECT_TRUE(other.hold(LockingProcess::None));
        if (came.failure) {
            const std::string found = contents();
            EXPECT_TRUE(found == before || found == halfDone) << found.substr(0, shownLength);
            const Came again = give(command);
            EXPECT_FALSE(again.failure) << again.failure->what();
            EXPECT_EQ(again.answer, answer);
        }
        command = {};
        EXPECT_TRUE(contents() == after);
        expectOneFile();
    }

    LockingProcess other{subject};
    FaultyDisk disk;
    int waits = 0;
    int reports = 0;
};

TEST_F(EveryLock, OfAReaderHoldsUpOnlyWriting)
{
    tryWith(LockingProcess::Shared);
    std::cout << "a reader: " << waits << " operations waited, " << reports << " gave up\n";
    EXPECT_GT(waits, 10);
    EXPECT_GE(reports, waits);
}

TEST_F(EveryLock, OfAWriterThatHasNotBegunToWriteHoldsUpOnlyWriting)
{
    tryWith(LockingProcess::Reserved);
    std::cout << "a writer: " << waits << " operations waited, " << reports << " gave up\n";
    EXPECT_GT(waits, 10);
    EXPECT_EQ(reports, waits);
}

TEST_F(EveryLock, OfAWriterIsWaitedForAndThenReported)
{
    tryWith(LockingProcess::Exclusive);
    std::cout << "a writer that writes: " << waits << " operations waited, " << reports << " gave up\n";
    EXPECT_GT(waits, 30);
    EXPECT_EQ(reports, waits);
}

/// Makes this process root of its own user and mount namespaces. Empty, or why the system refuses.
std::string enterOwnNamespace()
{
    const ::uid_t user = ::geteuid();
    const ::gid_t group = ::getegid();
    if (::unshare(CLONE_NEWUSER | CLONE_NEWNS) == 0) {
        std::ofstream("/proc/self/setgroups") << "deny";
        std::ofstream("/proc/self/uid_map") << "0 " << user << " 1";
        std::ofstream("/proc/self/gid_map") << "0 " << group << " 1";
    } else if (::unshare(CLONE_NEWNS) != 0) {
        return "no namespace: " + std::string(std::strerror(errno));
    }
    return ::mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0 ? "" : "no private mounts";
}

/// What a test says that runs in another process, where gtest does not see it.
class Findings
{
public:
    void expect(bool isTrue, const std::string &otherwise)
    {
        if (!isTrue && ++m_count < 10) {
            m_text += otherwise + "\n";
        }
    }
    [[nodiscard]] const std::string &text() const { return m_text; }

private:
    int m_count = 0;
    std::string m_text;
};

constexpr const char *refusal = "the system refuses: ";

/// Every operation on a small file system of its own, mounted over the subject's folder.
class SmallDisk : public OperationTest
{
protected:
    SmallDisk() { makeSubject(sample, {.cards = 6, .textLength = 40}); }

    /// Returns what was found, or the refusal.
    std::string onSmallDisk(const std::function<void(Findings &)> &act)
    {
        return inOwnProcess([&] {
            std::string refused = enterOwnNamespace();
            const fs::path mountPoint = subject.parent_path();
            if (refused.empty() && ::mount("tmpfs", mountPoint.c_str(), "tmpfs", 0, "size=2m") != 0) {
                refused = "no mount: " + std::string(std::strerror(errno));
            }
            if (!refused.empty()) {
                return refusal + refused;
            }
            Findings findings;
            act(findings);
            return findings.text();
        });
    }

    [[nodiscard]] fs::path filler() const { return subject.parent_path() / "filler"; }

    /// Leaves room for so many pages.
    void fillUpTo(int freePages) const
    {
        const int file = ::open(filler().c_str(), O_CREAT | O_WRONLY | O_TRUNC, 0600);
        const std::string page(4096, 'x');
        int pages = 0;
        while (::write(file, page.data(), page.size()) == static_cast<::ssize_t>(page.size())) {
            ++pages;
        }
        (void)::ftruncate(file, static_cast<::off_t>(std::max(pages - freePages, 0)) * 4096);
        ::close(file);
    }

    /// Returns whether the room was enough.
    bool tryWithRoom(int freePages, Findings &findings)
    {
        const std::string where = std::string(operation->name) + ", room for " + std::to_string(freePages) + ": ";
        restore();
        Command command = operation->begin(subject);
        fillUpTo(freePages);
        const Came came = give(command);
        fs::remove(filler());
        if (came.failure) {
            findings.expect(came.failure->reason() == Reason::DiskFull, where + came.failure->what());
            const std::string found = contents();
            findings.expect(found == before || found == halfDone || found == "no file", where + "changed");
            const Came again = give(command);
            findings.expect(!again.failure && again.answer == answer, where + "not done the second time");
        } else {
            findings.expect(came.answer == answer, where + "answer");
        }
        command = {};
        findings.expect(contents() == after, where + "not as it should be");
        return !came.failure;
    }
};

TEST_F(SmallDisk, ThatIsFullIsReportedAndTheCommandSucceedsWhenThereIsRoom)
{
    const std::string found = onSmallDisk([&](Findings &findings) {
        int operations = 0;
        int reports = 0;
        for (const Operation &what : allOperations()) {
            learn(what);
            for (int pages = 0; !tryWithRoom(pages, findings); ++pages) {
                ++reports;
            }
            ++operations;
        }
        std::cout << "a full disk: " << operations << " operations, " << reports << " reports" << std::endl;
        findings.expect(reports > 40, "too few reports");
    });
    if (found.starts_with(refusal)) {
        GTEST_SKIP() << found;
    }
    EXPECT_EQ(found, "");
}

TEST_F(SmallDisk, ThatMayOnlyBeReadIsReportedAndLeftAsItIs)
{
    const std::string found = onSmallDisk([&](Findings &findings) {
        int reports = 0;
        for (const Operation &what : allOperations()) {
            learn(what);
            restore();
            const fs::path mountPoint = subject.parent_path();
            findings.expect(::mount(nullptr, mountPoint.c_str(), nullptr, MS_REMOUNT | MS_RDONLY, "size=2m") == 0,
                            "not mounted to be read only");
            const Came came = give([&] { return what.begin(subject)(); });
            findings.expect(came.failure && came.failure->reason() == Reason::ReadOnly,
                            std::string(what.name) + ": " + (came.failure ? came.failure->what() : "done"));
            ++reports;
            findings.expect(::mount(nullptr, mountPoint.c_str(), nullptr, MS_REMOUNT, "size=2m") == 0,
                            "not mounted to be written again");
            findings.expect(contents() == before, std::string(what.name) + ": changed");
        }
        std::cout << "a disk that may only be read: " << reports << " reports" << std::endl;
    });
    if (found.starts_with(refusal)) {
        GTEST_SKIP() << found;
    }
    EXPECT_EQ(found, "");
}

/// Every operation while no file may be written any more.
class ALimitOfFileSizes : public OperationTest
{
protected:
    ALimitOfFileSizes() { makeSubject(sample, {.cards = 6, .textLength = 40}); }

    int tryIt()
    {
        restore();
        Command command = operation->begin(subject);
        std::optional<FullDisk> trouble(subject);
        const Came came = give(command);
        trouble.reset();
        if (!came.failure) {
            EXPECT_TRUE(contents() == after);
            return 0;
        }
        EXPECT_EQ(came.failure->reason(), Reason::DiskFull) << came.failure->what();
        const Came again = give(command);
        EXPECT_FALSE(again.failure) << again.failure->what();
        EXPECT_EQ(again.answer, answer);
        EXPECT_TRUE(contents() == after);
        return 1;
    }
};

TEST_F(ALimitOfFileSizes, IsAFullDiskToTheLearner)
{
    int reports = 0;
    for (const Operation &what : allOperations()) {
        ASSERT_NO_FATAL_FAILURE(learn(what));
        SCOPED_TRACE(what.name);
        reports += tryIt();
    }
    EXPECT_GT(reports, 20);
}

/// Every operation on a file whose place changes between its opening and the command, or before a command that opens
/// it.
class EveryChangeOfPlace : public OperationTest
{
protected:
    EveryChangeOfPlace() { makeSubject(sample, {.cards = 6, .textLength = 40}); }

    [[nodiscard]] fs::path aside() const { return folder.file("aside"); }

    void moveAway() { fs::rename(subject, aside()); }
    void bringBack() { fs::rename(aside(), subject); }
    void moveFolderAway() { fs::rename(subject.parent_path(), aside()); }
    void bringFolderBack() { fs::rename(aside(), subject.parent_path()); }
    void deleteFile()
    {
        fs::copy_file(subject, aside());
        fs::remove(subject);
    }
    void putAnotherInItsPlace(const std::string &bytes)
    {
        moveAway();
        std::ofstream(subject) << bytes;
    }
    void replaceByNothing() { putAnotherInItsPlace(""); }
    void replaceByRubbish() { putAnotherInItsPlace(std::string(10000, '?')); }
    void replaceByFolder()
    {
        moveAway();
        fs::create_directory(subject);
    }
    void bringBackInItsPlace()
    {
        fs::remove_all(subject);
        bringBack();
    }

    struct Change
    {
        const char *name;
        void (EveryChangeOfPlace::*make)();
        void (EveryChangeOfPlace::*takeBack)();
        Reason reason; ///< for a command that opens the file
    };

    [[nodiscard]] bool isFitting() const
    {
        return halfDone != "no file" && fs::exists(subject) && !fs::exists(subject.string() + "-journal");
    }

    void tryWith(const Change &change)
    {
        Command command = operation->begin(subject);
        (this->*change.make)();
        const Came came = give(command);
        if (came.failure) {
            ++reports;
            expectFileNamed(*came.failure);
            EXPECT_TRUE(came.failure->reason() == change.reason || came.failure->reason() == Reason::NotFound)
                << came.failure->what();
        } else {
            EXPECT_EQ(came.answer, answer);
            EXPECT_TRUE(before == after) << "done without the file";
        }
        (this->*change.takeBack)();
        EXPECT_TRUE(contents() == before);
        expectOneFile();

        Came again = give(command);
        if (again.failure) { // a set knows only the file that it was opened on
            EXPECT_EQ(again.failure->reason(), Reason::NotFound) << again.failure->what();
            ++setsWithoutFile;
            command = operation->begin(subject);
            again = give(command);
        }
        EXPECT_FALSE(again.failure);
        EXPECT_EQ(again.answer, answer);
        command = {};
        EXPECT_TRUE(contents() == after);
        expectOneFile();
    }

    static std::vector<Change> others()
    {
        using This = EveryChangeOfPlace;
        return {{"moved away", &This::moveAway, &This::bringBack, Reason::NotFound},
                {"moved away with its folder", &This::moveFolderAway, &This::bringFolderBack, Reason::NotFound},
                {"replaced by a folder", &This::replaceByFolder, &This::bringBackInItsPlace, Reason::NotAFile},
                {"replaced by an empty file", &This::replaceByNothing, &This::bringBackInItsPlace, Reason::EmptyFile},
                {"replaced by rubbish", &This::replaceByRubbish, &This::bringBackInItsPlace, Reason::NotASubject}};
    }
    static std::vector<Change> deletion()
    {
        return {{"deleted", &EveryChangeOfPlace::deleteFile, &EveryChangeOfPlace::bringBack, Reason::NotFound}};
    }

    void tryAll(const std::vector<Change> &changes)
    {
        for (const Operation &what : allOperations()) {
            ASSERT_NO_FATAL_FAILURE(learn(what));
            for (const Change &change : changes) {
                restore();
                if (isFitting()) {
                    SCOPED_TRACE(std::string(what.name) + ", " + change.name);
                    tryWith(change);
                }
            }
        }
        std::cout << "changes of place: " << reports << " reports\n";
    }

    int reports = 0;
    int setsWithoutFile = 0;
};

TEST_F(EveryChangeOfPlace, IsReportedAndTheCommandSucceedsWhenTheFileIsBack)
{
    tryAll(others());
    EXPECT_EQ(setsWithoutFile, 0);
    EXPECT_GT(reports, 100);
}

TEST_F(EveryChangeOfPlace, OfADeletedFileIsReportedAndTheCommandGoesOnWithTheCopyThatIsPutBack)
{
    tryAll(deletion());
    EXPECT_EQ(setsWithoutFile, 5) << "the commands on a set that write";
    EXPECT_GT(reports, 20);
}

/// Every operation in a folder of which the learner loses the rights when the session is open already.
class ALockedFolder : public OperationTest
{
protected:
    ALockedFolder() { makeSubject(sample, {.cards = 6, .textLength = 40}); }

    std::string withoutRights(const std::function<void(Findings &)> &act)
    {
        constexpr ::uid_t nobody = 65534;
        const bool isRoot = ::geteuid() == 0;
        EXPECT_TRUE(!isRoot || ::chown(subject.parent_path().c_str(), nobody, nobody) == 0);
        return inOwnProcess([&]() -> std::string {
            if (isRoot && (::setgid(nobody) != 0 || ::setuid(nobody) != 0)) {
                return "still root";
            }
            Findings findings;
            act(findings);
            return findings.text();
        });
    }

    int tryWith(::mode_t rights, Findings &findings)
    {
        const std::string where = std::string(operation->name) + ": ";
        restore();
        Command command = operation->begin(subject);
        ::chmod(subject.parent_path().c_str(), rights);
        const Came came = give(command);
        ::chmod(subject.parent_path().c_str(), 0700);
        if (!came.failure) {
            findings.expect(came.answer == answer && contents() == after, where + "not as it should be");
            return 0;
        }
        const Reason reason = came.failure->reason();
        findings.expect(reason == Reason::ReadOnly ||
                            (rights == 0 && (reason == Reason::NoPermission || reason == Reason::NotFound)),
                        where + came.failure->what());
        findings.expect(contents() == before, where + "changed");
        const Came again = give(command);
        findings.expect(!again.failure && again.answer == answer && contents() == after, where + "the second time");
        return 1;
    }

    void tryAll(::mode_t rights)
    {
        const std::string found = withoutRights([&](Findings &findings) {
            int reports = 0;
            for (const Operation &what : allOperations()) {
                learn(what);
                reports += tryWith(rights, findings);
            }
            std::cout << "a folder without rights: " << reports << " reports" << std::endl;
            findings.expect(reports > 20, "too few reports");
        });
        EXPECT_EQ(found, "");
    }
};

TEST_F(ALockedFolder, ThatMayNotBeWrittenIsReportedAndTheCommandSucceedsWhenItMay)
{
    tryAll(0500);
}

TEST_F(ALockedFolder, ThatMayNotBeEnteredIsReportedAndTheCommandSucceedsWhenItMay)
{
    tryAll(0);
}

} // namespace
