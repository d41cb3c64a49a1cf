#include "bench/study/CardSessionBench.h"

#include "bench/study/SizedSubject.h"
#include "bench/support/BareEngine.h"
#include "study/FlashCardSession.h"

#include <algorithm>
#include <string>
#include <vector>

namespace fs = std::filesystem;

namespace {

constexpr double openingBesideScan = 1.3;
constexpr double cardBesideReading = 2;
constexpr double markBesideUpdate = 1.5;

// In a lap.
constexpr int walks = 13;
constexpr int cardsOfWalk = 500;
constexpr int marks = 11;

FlashCardSession openSession(const SizedSubject &subject, const fs::path &path)
{
    return FlashCardSession(path, subject.settings(), [] { return 0.0F; });
}

std::vector<int> keysOfCards(sqlite3 *engine)
{
    BareStatement select(engine, keysInOrder);
    return keysOf(select);
}

/// What a window shows of a card.
struct SeenCard
{
    std::string front;
    std::string back;
    bool isMarked;

    friend bool operator==(const SeenCard &, const SeenCard &) = default;
};

SeenCard nextOf(FlashCardSession &session, const StudySettings &settings)
{
    if (!session.next()) {
        session.restart(settings);
    }
    return {session.text(Side::Front), session.text(Side::Back), session.isMarked()};
}

/// The floor: the fields of one card after the other, by key.
class BareWalk
{
public:
    explicit BareWalk(const fs::path &path)
        : m_engine(path)
        , m_select(m_engine, "SELECT Front, Back, Marked FROM FlashCards WHERE rowid = ?")
        , m_keys(keysOfCards(m_engine))
    {
    }

    SeenCard next()
    {
        m_position = m_position + 1 < m_keys.size() ? m_position + 1 : 0;
        sqlite3_bind_int(m_select, 1, m_keys[m_position]);
        require(sqlite3_step(m_select) == SQLITE_ROW, "a card is missing");
        SeenCard card{text(0), text(1), sqlite3_column_int(m_select, 2) != 0};
        sqlite3_reset(m_select);
        return card;
    }

private:
    std::string text(int column)
    {
        const auto *bytes = static_cast<const char *>(sqlite3_column_blob(m_select, column));
        return {bytes, static_cast<std::size_t>(sqlite3_column_bytes(m_select, column))};
    }

    BareEngine m_engine;
    BareStatement m_select;
    std::vector<int> m_keys;
    std::size_t m_position = 0;
};

/// The floor: updates by themselves, of one card after the other.
class BareMarker
{
public:
    explicit BareMarker(const fs::path &path)
        : m_engine(path)
        , m_update(m_engine, "UPDATE FlashCards SET Marked = 1 - Marked WHERE rowid = ?")
        , m_keys(keysOfCards(m_engine))
    {
        m_engine.run("PRAGMA journal_mode = DELETE; PRAGMA synchronous = FULL");
    }

    void next()
    {
        sqlite3_bind_int(m_update, 1, m_keys.at(++m_position));
        require(sqlite3_step(m_update) == SQLITE_DONE, "a write failed");
        sqlite3_reset(m_update);
    }

private:
    BareEngine m_engine;
    BareStatement m_update;
    std::vector<int> m_keys;
    std::size_t m_position = 0;
};

std::vector<int> markedIn(const fs::path &path)
{
    BareEngine engine(path);
    BareStatement select(engine, "SELECT rowid FROM FlashCards WHERE Marked <> 0");
    return keysOf(select);
}

} // namespace

void benchOpeningSession(SizedRows &rows, const SizedSubject &subject)
{
    const Action open = [&] {
        require(openSession(subject, subject.path).count() == subject.cards, "cards are missing");
    };
    const PairOfTimes times = inTurn(
        subject.scans, [&] { return microseconds(open) / 1000; },
        [&] { return millisecondsToScan(subject.path, keysInOrder, static_cast<std::size_t>(subject.cards)); });
    rows.add(subject, {"open a session", "key scan in order"}, times, timesFloor(openingBesideScan));
}

void benchNextCard(SizedRows &rows, const SizedSubject &subject)
{
    FlashCardSession session = openSession(subject, subject.path);
    const StudySettings settings = subject.settings();
    BareWalk bare(subject.path);
    const auto timeWalk = [](std::vector<SeenCard> &seen, const auto &next) {
        return microseconds([&] { std::ranges::generate(seen, next); }) / cardsOfWalk;
    };
    std::vector<SeenCard> ours(cardsOfWalk);
    std::vector<SeenCard> floor(cardsOfWalk);
    const PairOfTimes times = inTurn(
        walks, [&] { return timeWalk(ours, [&] { return nextOf(session, settings); }); },
        [&] { return timeWalk(floor, [&] { return bare.next(); }); });
    require(ours == floor, "the two sides did not read the same");
    rows.add(subject, {"next card of a session", "its fields by key"}, times, timesFloor(cardBesideReading));
}

void benchMark(SizedRows &rows, const SizedSubject &subject)
{
    const fs::path path = subject.copyOf("Marked.crl");
    const fs::path barePath = subject.copyOf("MarkedBare.crl");
    FlashCardSession session = openSession(subject, path);
    BareMarker bare(barePath);
    const PairOfTimes times = inTurn(
        marks,
        [&] {
            require(session.next(), "cards are missing");
            return microseconds([&] { session.toggleMark(); });
        },
        [&] { return microseconds([&] { bare.next(); }); });
    require(markedIn(path) == markedIn(barePath), "the two sides did not mark the same");
    rows.add(subject, {"mark a card", "one update"}, times, timesFloor(markBesideUpdate));
}
