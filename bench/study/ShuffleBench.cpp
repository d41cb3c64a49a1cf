#include "bench/study/ShuffleBench.h"

#include "bench/study/BareShuffler.h"
#include "bench/study/SizedSubject.h"
#include "study/FlashCardSession.h"

#include <vector>

namespace fs = std::filesystem;

namespace {

constexpr double shuffleBesideUpdates = 2;

/// What the shuffles of a session took each time, in milliseconds. The first finds the cards in the order
/// of the file, the second in the one that the first gave.
struct TwoShuffles
{
    std::vector<double> first;
    std::vector<double> second;
};

void timeSession(TwoShuffles &times, const SizedSubject &subject, const fs::path &path)
{
    FlashCardSession session(path, subject.settings(), [] { return 0.0F; });
    require(session.count() == subject.cards, "cards are missing");
    const auto shuffle = [&](unsigned seed) {
        return microseconds([&] { require(session.shuffle(seededDraw(seed)), "the session does not shuffle"); }) / 1000;
    };
    times.first.push_back(shuffle(1));
    times.second.push_back(shuffle(2));
}

void timeBare(TwoShuffles &times, const fs::path &path)
{
    BareShuffler shuffler(path);
    times.first.push_back(shuffler.timeUpdates(1));
    shuffler.readOrder();
    times.second.push_back(shuffler.timeUpdates(2));
}

/// What the shuffles wrote, card by card.
std::vector<int> writtenTo(const fs::path &path)
{
    BareEngine engine(path);
    BareStatement select(engine, "SELECT CAST(Shuffle * 16777216 AS INTEGER) FROM FlashCards ORDER BY rowid");
    return keysOf(select);
}

} // namespace

void benchShuffle(SizedRows &rows, const SizedSubject &subject)
{
    const fs::path path = subject.copyOf("Shuffled.crl");
    const fs::path barePath = subject.copyOf("ShuffledBare.crl");
    TwoShuffles ours;
    TwoShuffles floor;
    for (int round = 0; round < subject.passes; ++round) {
        if (round % 2 == 0) {
            timeSession(ours, subject, path);
            timeBare(floor, barePath);
        } else {
            timeBare(floor, barePath);
            timeSession(ours, subject, path);
        }
    }
    require(writtenTo(path) == writtenTo(barePath), "the two sides did not write the same");
    rows.add(subject, {"first shuffle", "updates"}, {ours.first, floor.first}, timesFloor(shuffleBesideUpdates));
    rows.add(subject, {"second shuffle", "updates"}, {ours.second, floor.second}, timesFloor(shuffleBesideUpdates));
}
