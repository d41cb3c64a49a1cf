#include "store/SubjectStore.h"
#include "study/Shuffling.h"
#include "tests/support/TestSubject.h"

#include <SQLiteCpp/Database.h>
#include <SQLiteCpp/Exception.h>
#include <SQLiteCpp/Statement.h>
#include <algorithm>
#include <array>
#include <chrono>
#include <csignal>
#include <gtest/gtest.h>
#include <iostream>
#include <optional>
#include <poll.h>
#include <random>
#include <stdexcept>
#include <string>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace fs = std::filesystem;

// Stands in for the system's: a killed process loses nothing that it has given to the system,
// so waiting for the disk proves nothing here and would take most of the time.
extern "C" int fdatasync(int /*descriptor*/)
{
    return 0;
}

namespace {

using Keys = std::vector<double>;

constexpr int cardCount = 20'000;
constexpr int kills = 50;
constexpr unsigned seed = 73;

// A key tells the shuffle that wrote it and the draw that it came from, and a single holds it exactly.
constexpr int shuffleNumbers = 256; ///< after the last comes 0 again
constexpr int drawsPerShuffle = 65'536;
static_assert(cardCount < drawsPerShuffle);

constexpr float keyOf(int shuffleNumber, int draw)
{
    return static_cast<float>(shuffleNumber * drawsPerShuffle + draw) / (shuffleNumbers * drawsPerShuffle);
}
static_assert(keyOf(255, 65'535) < 1 && keyOf(255, 65'535) > keyOf(255, 65'534));

int shuffleNumberOf(double key)
{
    return static_cast<int>(key * shuffleNumbers);
}

/// The keys of all cards in the order of entry after that shuffle: the first draw is written over.
Keys keysOfShuffle(int shuffleNumber)
{
    Keys keys;
    for (int draw = cardCount; draw >= 1; --draw) {
        keys.push_back(static_cast<double>(keyOf(shuffleNumber, draw)));
    }
    return keys;
}

/// Shuffles all cards of \p subject, which stay in the order of entry, again and again.
class Shuffler
{
public:
    explicit Shuffler(const fs::path &subject)
        : m_store(subject)
        , m_cards(m_store.openRecordSet(cardsInOrder(m_query)))
    {
    }

    /// False if the new order is not that of the keys.
    bool shuffle(int shuffleNumber)
    {
        const std::optional<CardSet> shuffled =
            ::shuffle(m_store, m_cards, m_query, [=, draw = 0]() mutable { return keyOf(shuffleNumber, draw++); });
        return shuffled && shuffled->single(CardField::Shuffle) == keyOf(shuffleNumber, 1);
    }

private:
    std::string m_query = cardQuery(std::array{1});
    SubjectStore m_store;
    CardSet m_cards;
};

/// A process that shuffles a subject until it is killed. It tells of every shuffle that is done.
class ShufflingProcess
{
public:
    ShufflingProcess(const fs::path &subject, int firstShuffle)
    {
        std::array<int, 2> pipe{};
        if (::pipe(pipe.data()) != 0 || (m_process = ::fork()) < 0) {
            throw std::runtime_error("no process can be started");
        }
        if (m_process == 0) {
            ::close(pipe[0]);
            shuffleForever(subject, firstShuffle, pipe[1]);
        }
        ::close(pipe[1]);
        m_pipe = pipe[0];
        EXPECT_TRUE(isTold()) << "the process does not begin";
    }
    ShufflingProcess(const ShufflingProcess &) = delete;
    ShufflingProcess &operator=(const ShufflingProcess &) = delete;
    ~ShufflingProcess() { ::close(m_pipe); }

    /// Returns how long the next shuffle took.
    std::chrono::nanoseconds waitForShuffle()
    {
        const auto start = std::chrono::steady_clock::now();
        EXPECT_TRUE(isTold()) << "the process ended by itself";
        ++m_done;
        return std::chrono::steady_clock::now() - start;
    }

    /// Returns the number of shuffles that were done by then.
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
    [[noreturn]] static void shuffleForever(const fs::path &subject, int shuffleNumber, int pipe)
    {
        ::prctl(PR_SET_PDEATHSIG, SIGKILL); // never longer than the test
        try {
            Shuffler shuffler(subject);
            while (::write(pipe, "", 1) == 1 && shuffler.shuffle(shuffleNumber % shuffleNumbers)) {
                ++shuffleNumber;
            }
        } catch (const std::exception &) {
        }
        ::_exit(1);
    }

    /// Waits for the process to begin, or to finish a shuffle. False: it ended.
    bool isTold() const
    {
        char told = 0;
        return ::read(m_pipe, &told, 1) == 1;
    }

    ::pid_t m_process = -1;
    int m_pipe = -1;
    int m_done = 0;
};

/// A subject large enough for the engine to write pages into the file before the commit.
class ShufflingKills : public testing::Test
{
protected:
    ShufflingKills()
    {
        SubjectStore::create(subject);
        SQLite::Database engine = otherProgram();
        engine.exec(
            "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < " + std::to_string(cardCount) +
            ") INSERT INTO FlashCards (NIndex, Front, Back) SELECT 1, hex(zeroblob(80)), hex(zeroblob(80)) FROM n");
    }

    [[nodiscard]] SQLite::Database otherProgram() const { return {subject.string(), SQLite::OPEN_READWRITE}; }

    static Keys keysIn(const SQLite::Database &engine)
    {
        Keys keys;
        SQLite::Statement select(engine, "SELECT Shuffle FROM FlashCards ORDER BY \"Index\"");
        while (select.executeStep()) {
            keys.push_back(select.getColumn(0));
        }
        return keys;
    }

    /// Whether the file itself holds keys of more than one shuffle, so that only the journal makes it whole.
    [[nodiscard]] bool isHalfWritten() const
    {
        const SQLite::Database engine("file:" + subject.string() + "?immutable=1",
                                      SQLite::OPEN_READONLY | SQLite::OPEN_URI);
        try {
            const Keys keys = keysIn(engine);
            return std::ranges::any_of(
                keys, [&](double key) { return shuffleNumberOf(key) != shuffleNumberOf(keys.front()); });
        } catch (const SQLite::Exception &) {
            return true;
        }
    }

    TestFolder folder;
    fs::path subject = folder.file("subject.crl");
    fs::path alone = folder.file("alone.crl"); ///< a copy of the one file
};

TEST_F(ShufflingKills, LeaveTheKeysOfOneWholeShuffleInTheOneFile)
{
    ASSERT_TRUE(Shuffler(subject).shuffle(0));

    std::mt19937 random(seed);
    std::uniform_real_distribution<double> moments(0, 1);
    std::chrono::nanoseconds oneShuffle{};
    int shuffleNumber = 0;
    int journals = 0;
    int halfWritten = 0;
    for (int kill = 0; kill < kills; ++kill) {
        SCOPED_TRACE("kill " + std::to_string(kill) + " with the seed " + std::to_string(seed));
        ShufflingProcess process(subject, shuffleNumber + 1);
        if (kill % 2 == 0) {
            oneShuffle = process.waitForShuffle(); // and the kill falls into the one after it
        }
        const int done =
            process.killAfter(std::chrono::duration_cast<std::chrono::nanoseconds>(oneShuffle * moments(random)));

        std::error_code isMissing;
        if (fs::file_size(subject.string() + "-journal", isMissing) > 0 && !isMissing) {
            ++journals;
            halfWritten += isHalfWritten() ? 1 : 0;
        }

        SubjectStore(subject).close();
        ASSERT_FALSE(fs::exists(subject.string() + "-journal")) << "one file is the whole subject";
        fs::copy_file(subject, alone, fs::copy_options::overwrite_existing);
        SQLite::Database engine(alone.string());
        ASSERT_EQ(engine.execAndGet("PRAGMA integrity_check").getString(), "ok");
        const Keys keys = keysIn(engine);
        ASSERT_EQ(keys.size(), static_cast<std::size_t>(cardCount));
        const int held = shuffleNumberOf(keys.front());
        ASSERT_TRUE(keys == keysOfShuffle(held)) << "no whole shuffle";
        const int lastDone = (shuffleNumber + done) % shuffleNumbers;
        ASSERT_TRUE(held == lastDone || held == (lastDone + 1) % shuffleNumbers)
            << "shuffle " << held << " although " << lastDone << " was the last that was done";
        shuffleNumber = held;
    }
    std::cout << "seed " << seed << ": " << kills << " kills left " << journals << " journals, " << halfWritten
              << " beside a half-written file\n";
    EXPECT_GT(journals, 0) << "no kill fell into a shuffle";
    EXPECT_GT(halfWritten, 0) << "no kill fell between two pages of the file";
}

} // namespace
