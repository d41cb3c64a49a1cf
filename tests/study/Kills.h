#pragma once

#include "NoDiskWaits.h"
#include "store/SubjectStore.h"
#include "tests/support/TestSubject.h"

#include <SQLiteCpp/Database.h>
#include <SQLiteCpp/Exception.h>
#include <array>
#include <chrono>
#include <csignal>
#include <functional>
#include <gtest/gtest.h>
#include <iostream>
#include <poll.h>
#include <random>
#include <stdexcept>
#include <string>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

/// Makes one pass over a subject; \p number tells it from the others. False if the pass went wrong.
using Pass = std::function<bool(int number)>;

/// A process that makes one pass after the other until it is killed. It tells of every pass that is done.
class PassingProcess
{
public:
    /// \p begin is called in the process, before its first pass.
    PassingProcess(const std::function<Pass()> &begin, int firstPass)
    {
        std::array<int, 2> pipe{};
        if (::pipe(pipe.data()) != 0 || (m_process = ::fork()) < 0) {
            throw std::runtime_error("no process can be started");
        }
        if (m_process == 0) {
            ::close(pipe[0]);
            passForever(begin, firstPass, pipe[1]);
        }
        ::close(pipe[1]);
        m_pipe = pipe[0];
        EXPECT_TRUE(isTold()) << "the process does not begin";
    }
    PassingProcess(const PassingProcess &) = delete;
    PassingProcess &operator=(const PassingProcess &) = delete;
    ~PassingProcess() { ::close(m_pipe); }

    /// Returns how long the next pass took.
    std::chrono::nanoseconds waitForPass()
    {
        const auto start = std::chrono::steady_clock::now();
        EXPECT_TRUE(isTold()) << "the process ended by itself";
        ++m_done;
        return std::chrono::steady_clock::now() - start;
    }

    /// Returns the number of passes that were done by then.
    int killAfter(std::chrono::nanoseconds moment)
    {
        const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(moment);
        const timespec limit{seconds.count(), (moment - seconds).count()};
        pollfd onlyTheEnd{m_pipe, 0, 0};
        EXPECT_EQ(::ppoll(&onlyTheEnd, 1, &limit, nullptr), 0) << "the process ended by itself";
        ::kill(m_process, SIGKILL);
        int status = 0;
        EXPECT_EQ(::waitpid(m_process, &status, 0), m_process);
        EXPECT_TRUE(WIFSIGNALED(status));
        while (isTold()) {
            ++m_done;
        }
        return m_done;
    }

private:
    [[noreturn]] static void passForever(const std::function<Pass()> &begin, int number, int pipe)
    {
        ::prctl(PR_SET_PDEATHSIG, SIGKILL); // never longer than the test
        try {
            const Pass pass = begin();
            while (::write(pipe, "", 1) == 1 && pass(number)) {
                ++number;
            }
        } catch (const std::exception &) {
        }
        ::_exit(1);
    }

    /// Waits for the process to begin, or to finish a pass. False: it ended.
    bool isTold() const
    {
        char told = 0;
        return ::read(m_pipe, &told, 1) == 1;
    }

    ::pid_t m_process = -1;
    int m_pipe = -1;
    int m_done = 0;
};

/// Kills passes over one subject at random moments and looks at what they leave.
class Kills : public testing::Test
{
protected:
    static constexpr int kills = 50;
    static constexpr unsigned seed = 73;

    /// Adds the cards 1 to \p cardCount, whose two sides are zeros: so many that the engine writes pages into the
    /// file before the commit.
    void addLongCards(int cardCount, int sideLength) const
    {
        const std::string side = "hex(zeroblob(" + std::to_string(sideLength / 2) + "))";
        SQLite::Database(subject.string(), SQLite::OPEN_READWRITE)
            .exec("WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < " +
                  std::to_string(cardCount) + ") INSERT INTO FlashCards (NIndex, Front, Back) SELECT 1, " + side +
                  ", " + side + " FROM n");
    }

    /// Kills processes of \p begin, with one whole pass of which \p subject is made. \p heldPass returns the number of
    /// the pass, below \p passNumbers, that a file holds wholly, -1 if it holds parts of several.
    void killPasses(const std::function<Pass()> &begin, int passNumbers,
                    const std::function<int(const SQLite::Database &)> &heldPass) const
    {
        std::mt19937 random(seed);
        std::uniform_real_distribution<double> moments(0, 1);
        std::chrono::nanoseconds onePass{};
        int number = 0;
        int journals = 0;
        int halfWritten = 0;
        for (int kill = 0; kill < kills; ++kill) {
            SCOPED_TRACE("kill " + std::to_string(kill) + " with the seed " + std::to_string(seed));
            PassingProcess process(begin, number + 1);
            if (kill % 2 == 0) {
                onePass = process.waitForPass(); // and the kill falls into the one after it
            }
            const int done =
                process.killAfter(std::chrono::duration_cast<std::chrono::nanoseconds>(onePass * moments(random)));

            std::error_code isMissing;
            if (std::filesystem::file_size(journal, isMissing) > 0 && !isMissing) {
                ++journals;
                halfWritten += isHalfWritten(heldPass) ? 1 : 0;
            }

            SubjectStore(subject).close();
            ASSERT_FALSE(std::filesystem::exists(journal)) << "one file is the whole subject";
            std::filesystem::copy_file(subject, alone, std::filesystem::copy_options::overwrite_existing);
            const SQLite::Database engine(alone.string());
            ASSERT_EQ(SQLite::Database(alone.string()).execAndGet("PRAGMA integrity_check").getString(), "ok");
            const int held = heldPass(engine);
            ASSERT_GE(held, 0) << "no whole pass";
            const int lastDone = (number + done) % passNumbers;
            ASSERT_TRUE(held == lastDone || held == (lastDone + 1) % passNumbers)
                << "pass " << held << " although " << lastDone << " was the last that was done";
            number = held;
        }
        std::cout << "seed " << seed << ": " << kills << " kills left " << journals << " journals, " << halfWritten
                  << " beside a half-written file\n";
        EXPECT_GT(journals, 0) << "no kill fell into a pass";
        EXPECT_GT(halfWritten, 0) << "no kill fell between two pages of the file";
    }

    TestFolder folder;
    std::filesystem::path subject = folder.file("subject.crl");

private:
    /// Whether only the journal makes the file whole.
    [[nodiscard]] bool isHalfWritten(const std::function<int(const SQLite::Database &)> &heldPass) const
    {
        const SQLite::Database engine("file:" + subject.string() + "?immutable=1",
                                      SQLite::OPEN_READONLY | SQLite::OPEN_URI);
        try {
            return heldPass(engine) < 0;
        } catch (const SQLite::Exception &) {
            return true;
        }
    }

    std::filesystem::path journal = subject.string() + "-journal";
    std::filesystem::path alone = folder.file("alone.crl"); ///< a copy of the one file
};
