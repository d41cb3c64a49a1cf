#include "bench/session/ShuffleBench.h"

#include "bench/support/BareEngine.h"
#include "bench/support/LargeSubject.h"
#include "bench/support/Measure.h"
#include "bench/support/PairTable.h"
#include "bench/support/SeededDraw.h"
#include "study/FlashCardSession.h"

#include <algorithm>
#include <array>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace fs = std::filesystem;

namespace {

// Of a session's first shuffle.
constexpr double shuffleBesideUpdates = 2; // for the most cards
constexpr double largestExponent = 1.1;    // of the time over the number of cards

struct Size
{
    int cards;
    int rounds;
    const char *name;
};

constexpr std::array sizes{
    Size{1'000, 41, "1,000"},
    Size{10'000, 21, "10,000"},
    Size{100'000, 7, "100,000"},
};

/// Two shuffles of one session, in microseconds a card. The first walks the file from its
/// end to its start, the second goes to and fro in it, in the order that the first gave.
struct Shuffles
{
    double first = 0;
    double second = 0;
};

/// The floor's. It may or may not read the keys in the new order.
struct BareShuffles
{
    Shuffles updates;
    Shuffles updatesAndReading;
};

Shuffles timeSession(const fs::path &path, int cards)
{
    FlashCardSession session(path, StudySettings{.cardQuery = cardQuery(std::array{1})}, [] { return 0.0F; });
    require(session.count() == cards, "cards are missing");
    const auto shuffle = [&](unsigned seed) {
        const Action action = [&] { require(session.shuffle(seededDraw(seed)), "the session does not shuffle"); };
        return microseconds(action) / cards;
    };
    Shuffles times;
    times.first = shuffle(1);
    times.second = shuffle(2);
    return times;
}

/// The row updates of a shuffle, and nothing else.
class BareShuffler
{
public:
    explicit BareShuffler(const fs::path &path)
        : m_engine(path)
    {
        m_engine.run("PRAGMA journal_mode = DELETE; PRAGMA synchronous = FULL");
        BareStatement select(m_engine, "SELECT rowid FROM FlashCards WHERE NIndex = 1 ORDER BY \"Index\" ASC");
        m_keys = keysOf(select);
    }

    double timeUpdates(unsigned seed)
    {
        BareStatement update(m_engine, "UPDATE FlashCards SET Shuffle = ? WHERE rowid = ?");
        const std::vector<float> numbers = drawn(seed);
        return microseconds([&] {
            m_engine.run("BEGIN IMMEDIATE");
            auto number = numbers.begin();
            write(update, m_keys.back(), *number++);
            for (auto key = m_keys.rbegin(); key != m_keys.rend(); ++key) {
                write(update, *key, *number++);
            }
            m_engine.run("COMMIT");
        });
    }

    double timeReading()
    {
        return microseconds([&] {
            BareStatement select(m_engine, "SELECT rowid FROM FlashCards WHERE NIndex = 1 ORDER BY Shuffle ASC");
            m_keys = keysOf(select);
        });
    }

private:
    [[nodiscard]] std::vector<float> drawn(unsigned seed) const
    {
        const RandomDraw draw = seededDraw(seed);
        std::vector<float> drawn(m_keys.size() + 1);
        std::ranges::generate(drawn, draw);
        return drawn;
    }

    static void write(sqlite3_stmt *update, int key, float number)
    {
        sqlite3_bind_double(update, 1, static_cast<double>(number));
        sqlite3_bind_int(update, 2, key);
        require(sqlite3_step(update) == SQLITE_DONE, "a write failed");
        sqlite3_reset(update);
    }

    BareEngine m_engine;
    std::vector<int> m_keys;
};

BareShuffles timeBare(const fs::path &path, int cards)
{
    BareShuffler shuffler(path);
    BareShuffles times;
    times.updates.first = shuffler.timeUpdates(1) / cards;
    times.updatesAndReading.first = times.updates.first + shuffler.timeReading() / cards;
    times.updates.second = shuffler.timeUpdates(2) / cards;
    times.updatesAndReading.second = times.updates.second + shuffler.timeReading() / cards;
    return times;
}

/// What the shuffles wrote, card by card.
std::vector<int> writtenTo(const fs::path &path)
{
    BareEngine engine(path);
    BareStatement select(engine, "SELECT CAST(Shuffle * 16777216 AS INTEGER) FROM FlashCards ORDER BY rowid");
    return keysOf(select);
}

struct Rounds
{
    std::vector<Shuffles> ours;
    std::vector<Shuffles> updates;
    std::vector<Shuffles> updatesAndReading;
};

Rounds measure(const fs::path &folder, const Size &size)
{
    const fs::path path = folder / "Shuffled.crl";
    const fs::path barePath = folder / "ShuffledBare.crl"; // of its own: neither side warms the other's page cache
    makeLargeSubject(path, size.cards);
    fs::copy_file(path, barePath, fs::copy_options::overwrite_existing);

    Rounds rounds;
    const auto timeOurs = [&] { rounds.ours.push_back(timeSession(path, size.cards)); };
    const auto timeFloor = [&] {
        const BareShuffles times = timeBare(barePath, size.cards);
        rounds.updates.push_back(times.updates);
        rounds.updatesAndReading.push_back(times.updatesAndReading);
    };
    for (int round = 0; round < size.rounds; ++round) {
        if (round % 2 == 0) {
            timeOurs();
            timeFloor();
        } else {
            timeFloor();
            timeOurs();
        }
    }
    require(writtenTo(path) == writtenTo(barePath), "the two sides did not write the same");
    return rounds;
}

double medianOf(const std::vector<Shuffles> &rounds, double Shuffles::*which)
{
    std::vector<double> times(rounds.size());
    std::ranges::transform(rounds, times.begin(), which);
    return median(times);
}

} // namespace

void benchShuffle(PairTable &table, const fs::path &folder)
{
    std::vector<double> cards;
    std::vector<double> ours;
    std::vector<double> floor;
    for (const Size &size : sizes) {
        const Rounds rounds = measure(folder, size);
        const bool isLargest = size.cards == sizes.back().cards;
        for (const auto &[name, which] : {std::pair{"first", &Shuffles::first}, {"second", &Shuffles::second}}) {
            const std::string thing = std::string(name) + " shuffle of " + size.name + " cards | ";
            const double session = medianOf(rounds.ours, which);
            const double updates = medianOf(rounds.updates, which);
            const auto holds = isLargest ? std::optional(session <= shuffleBesideUpdates * updates) : std::nullopt;
            table.row(thing + "updates", session, updates, holds);
            table.row(thing + "and reading", session, medianOf(rounds.updatesAndReading, which));
        }
        cards.push_back(size.cards);
        ours.push_back(size.cards * medianOf(rounds.ours, &Shuffles::first));
        floor.push_back(size.cards * medianOf(rounds.updates, &Shuffles::first));
    }
    const double exponent = fittedExponent(cards, ours);
    table.row("first shuffle ~ cards^", exponent, fittedExponent(cards, floor), exponent <= largestExponent);
}
