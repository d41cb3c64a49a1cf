#include "bench/store/SetBench.h"

#include "bench/store/ChangingValues.h"
#include "bench/support/BareEngine.h"
#include "bench/support/LargeSubject.h"
#include "store/Schema.h"
#include "store/Statements.h"
#include "store/SubjectStore.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <functional>
#include <random>
#include <string>
#include <vector>

namespace fs = std::filesystem;

namespace {

// Of what is done to some cards only.
constexpr int places = 1'000;
constexpr int additions = 1'000;

/// Their file fits into the page cache.
constexpr int mostCardsInCache = 1'000;

void stepOnce(sqlite3_stmt *statement)
{
    require(sqlite3_step(statement) == SQLITE_DONE, "a write failed");
    sqlite3_reset(statement);
}

/// Does \p action with a store that was just opened, as the program's commands do.
Timed withStore(const fs::path &path, const std::function<void(SubjectStore &store)> &action)
{
    return [path, action] {
        SubjectStore store(path);
        return microseconds([&] { action(store); });
    };
}

/// The same without the store.
Timed withEngine(const fs::path &path, const std::function<void(BareEngine &engine)> &action)
{
    return [path, action] {
        BareEngine engine(path);
        askWhetherSubject(engine);
        return microseconds([&] { action(engine); });
    };
}

/// Reads rows by key and takes the front of each.
class BareReader
{
public:
    explicit BareReader(sqlite3 *engine)
        : m_select(engine,
                   "SELECT \"Index\", NIndex, Front, Back, Marked, Shuffle, isTrueFalse, isFront, Answer, Wrong1, "
                   "Wrong2 FROM FlashCards WHERE rowid = ?")
    {
    }

    std::string front(int key)
    {
        sqlite3_bind_int(m_select, 1, key);
        require(sqlite3_step(m_select) == SQLITE_ROW, "a row is missing");
        const char *text = static_cast<const char *>(sqlite3_column_blob(m_select, CardField::Front));
        std::string front(text, static_cast<std::size_t>(sqlite3_column_bytes(m_select, CardField::Front)));
        sqlite3_reset(m_select);
        return front;
    }

private:
    BareStatement m_select;
};

/// Writes fields of rows by key.
class BareWriter
{
public:
    explicit BareWriter(sqlite3 *engine)
        : m_engine(engine)
        , m_sortKey(engine, "UPDATE FlashCards SET Shuffle = ? WHERE rowid = ?")
        , m_sides(engine, "UPDATE FlashCards SET Front = ?, Back = ? WHERE rowid = ?")
    {
    }

    void writeSortKey(int key, float value)
    {
        sqlite3_bind_double(m_sortKey, 1, static_cast<double>(value));
        sqlite3_bind_int(m_sortKey, 2, key);
        write(m_sortKey);
    }

    void writeSides(int key, const std::string &side)
    {
        sqlite3_bind_text(m_sides, 1, side.data(), static_cast<int>(side.size()), SQLITE_STATIC);
        sqlite3_bind_text(m_sides, 2, side.data(), static_cast<int>(side.size()), SQLITE_STATIC);
        sqlite3_bind_int(m_sides, 3, key);
        write(m_sides);
    }

private:
    void write(sqlite3_stmt *update)
    {
        stepOnce(update);
        require(sqlite3_changes(m_engine) == 1, "a row is missing");
    }

    sqlite3 *m_engine;
    BareStatement m_sortKey;
    BareStatement m_sides;
};

constexpr const char *inOrder = "SELECT rowid FROM FlashCards WHERE NIndex = 1 ORDER BY \"Index\" ASC";
constexpr const char *shuffled = "SELECT rowid FROM FlashCards WHERE NIndex = 1 ORDER BY Shuffle ASC";

std::string allInOrder()
{
    return cardsInOrder(cardQuery(std::array{1}));
}

std::string allShuffled()
{
    return cardsShuffled(cardQuery(std::array{1}));
}

RecordSet openAll(SubjectStore &store, const std::string &statement, int cards)
{
    RecordSet set = store.openRecordSet(statement);
    require(set.recordCount() == cards, "cards are missing");
    return set;
}

std::vector<int> allKeys(const BareEngine &engine, const char *select, int cards)
{
    std::vector<int> keys = keysOf(BareStatement(engine, select));
    require(keys.size() == static_cast<std::size_t>(cards), "cards are missing");
    return keys;
}

void readFront(const RecordSet &set)
{
    require(set.text(CardField::Front).size() == bytesPerSide, "a text is missing");
}

void readFront(BareReader &reader, int key)
{
    require(reader.front(key).size() == bytesPerSide, "a text is missing");
}

void walk(RecordSet &set)
{
    for (set.moveFirst(); !set.isEndOfSet(); set.moveNext()) {
        readFront(set);
    }
}

void walk(BareReader &reader, const std::vector<int> &keys)
{
    for (const int key : keys) {
        readFront(reader, key);
    }
}

void writeSortKeys(RecordSet &set, int rows, ChangingNumber &number)
{
    set.moveFirst();
    for (int row = 0; row < rows; ++row, set.moveNext()) {
        set.edit();
        set.setSingle(CardField::Shuffle, number.next());
        set.update();
    }
}

void writeSortKeys(BareWriter &writer, const std::vector<int> &keys, int rows, ChangingNumber &number)
{
    for (int row = 0; row < rows; ++row) {
        writer.writeSortKey(keys[static_cast<std::size_t>(row)], number.next());
    }
}

void benchOpening(StorePairs &pairs, const fs::path &path, const fs::path &barePath)
{
    const int cards = pairs.cards();
    const auto ours = [&](const std::string &statement) {
        return withStore(path, [=](SubjectStore &store) { openAll(store, statement, cards); });
    };
    const auto bare = [&](const char *select) {
        return withEngine(barePath, [=](const BareEngine &engine) { allKeys(engine, select, cards); });
    };
    pairs.work({"count a topic's cards", "stepping through the rows"}, 1, ours(cardsOfTopic(1)),
               withEngine(barePath, [=](const BareEngine &engine) {
                   BareStatement select(engine, "SELECT rowid FROM FlashCards WHERE NIndex = 1");
                   require(countRows(select) == cards, "cards are missing");
               }));
    pairs.row({"count a topic's cards", "count(*)"}, 1, ours(cardsOfTopic(1)),
              withEngine(barePath,
                         [=](const BareEngine &engine) {
                             BareStatement count(engine, "SELECT count(*) FROM FlashCards WHERE NIndex = 1");
                             require(keysOf(count).at(0) == cards, "cards are missing");
                         }),
              {});
    pairs.work({"open a set in order", "reading the keys"}, 1, ours(allInOrder()), bare(inOrder));
    pairs.work({"open a set in shuffled order", "reading the keys"}, 1, ours(allShuffled()), bare(shuffled));
}

/// The store's own share, where the file's pages are at hand.
void benchPageCache(StorePairs &pairs, const fs::path &path, const fs::path &barePath)
{
    const int cards = pairs.cards();
    SubjectStore store(path);
    BareEngine engine(barePath);
    pairs.row({"open a set in order, pages cached", "reading the keys"}, 1,
              timed([&] { openAll(store, allInOrder(), cards); }), timed([&] { allKeys(engine, inOrder, cards); }));
    RecordSet set = openAll(store, allInOrder(), cards);
    const std::vector<int> keys = allKeys(engine, inOrder, cards);
    BareReader reader(engine);
    pairs.row({"walk: the next row and its front, pages cached", "a row by key"}, cards, timed([&] { walk(set); }),
              timed([&] { walk(reader, keys); }));
}

void benchPasses(StorePairs &pairs, const fs::path &path, const fs::path &barePath)
{
    const int cards = pairs.cards();
    pairs.work({"open a set and walk: a row and its front", "the keys, a row by key"}, cards,
               withStore(path,
                         [=](SubjectStore &store) {
                             RecordSet set = openAll(store, allInOrder(), cards);
                             walk(set);
                         }),
               withEngine(barePath, [=](const BareEngine &engine) {
                   const std::vector<int> keys = allKeys(engine, inOrder, cards);
                   BareReader reader(engine);
                   walk(reader, keys);
               }));

    ChangingNumber ours;
    ChangingNumber bare;
    pairs.work({"edit and update a row, one transaction", "the keys, an update by key"}, cards,
               withStore(path,
                         [&](SubjectStore &store) {
                             RecordSet set = openAll(store, allInOrder(), cards);
                             Transaction transaction(store);
                             writeSortKeys(set, cards, ours);
                             transaction.commit();
                         }),
               withEngine(barePath, [&](BareEngine &engine) {
                   const std::vector<int> keys = allKeys(engine, inOrder, cards);
                   BareWriter writer(engine);
                   engine.run("BEGIN IMMEDIATE");
                   writeSortKeys(writer, keys, cards, bare);
                   engine.run("COMMIT");
               }));
}

void benchSingleRows(StorePairs &pairs, RecordSet &set, const BareEngine &engine)
{
    const std::vector<int> keys = allKeys(engine, inOrder, pairs.cards());
    std::vector<int> positions(places);
    std::mt19937 random(2);
    std::ranges::generate(positions, [&] { return std::uniform_int_distribution(0, pairs.cards() - 1)(random); });
    BareReader reader(engine);
    pairs.steady({"one row by position and its front", "a row by key"}, places, timed([&] {
                     for (const int position : positions) {
                         set.setAbsolutePosition(position);
                         readFront(set);
                     }
                 }),
                 timed([&] {
                     for (const int position : positions) {
                         readFront(reader, keys[static_cast<std::size_t>(position)]);
                     }
                 }));
}

/// Each change by itself, of the first row.
void benchSaving(StorePairs &pairs, RecordSet &set, const BareEngine &engine)
{
    const std::vector<int> keys = allKeys(engine, inOrder, pairs.cards());
    BareWriter writer(engine);
    ChangingNumber ourNumber;
    ChangingNumber bareNumber;
    pairs.waiting({"edit and update a row by itself", "an update by key"}, 1,
                  timed([&] { writeSortKeys(set, 1, ourNumber); }),
                  timed([&] { writeSortKeys(writer, keys, 1, bareNumber); }));

    ChangingText ourSide(bytesPerSide);
    ChangingText bareSide(bytesPerSide);
    pairs.waiting({"save a card's two sides", "an update by key"}, 1, timed([&] {
                      set.moveFirst();
                      set.edit();
                      set.setText(CardField::Front, ourSide.next());
                      set.setText(CardField::Back, ourSide.latest());
                      set.update();
                  }),
                  timed([&] { writer.writeSides(keys.front(), bareSide.next()); }));
    set.moveFirst();
    BareReader reader(engine);
    require(set.text(CardField::Back) == ourSide.latest() && reader.front(keys.front()) == bareSide.latest(),
            "a card is not saved");
}

void benchAdding(StorePairs &pairs, SubjectStore &store, RecordSet &set, BareEngine &engine)
{
    constexpr int otherTopic = 2;
    const std::string side(bytesPerSide, 'x');
    BareStatement insert(engine, "INSERT INTO FlashCards (NIndex, Front, Back) VALUES (?, ?, ?)");
    BareStatement remove(engine, "DELETE FROM FlashCards WHERE rowid = ?");
    pairs.waiting({"add and remove a row, one transaction", "an insert, and a delete by key"}, additions, timed([&] {
                      Transaction transaction(store);
                      for (int row = 0; row < additions; ++row) {
                          set.addNew();
                          set.setNumber(CardField::NIndex, otherTopic);
                          set.setText(CardField::Front, side);
                          set.setText(CardField::Back, side);
                          set.update();
                          set.setBookmark(set.lastModified());
                          set.remove();
                      }
                      transaction.commit();
                  }),
                  timed([&] {
                      engine.run("BEGIN IMMEDIATE");
                      for (int row = 0; row < additions; ++row) {
                          sqlite3_bind_int(insert, 1, otherTopic);
                          sqlite3_bind_text(insert, 2, side.data(), bytesPerSide, SQLITE_STATIC);
                          sqlite3_bind_text(insert, 3, side.data(), bytesPerSide, SQLITE_STATIC);
                          stepOnce(insert);
                          sqlite3_bind_int64(remove, 1, sqlite3_last_insert_rowid(engine));
                          stepOnce(remove);
                      }
                      engine.run("COMMIT");
                  }));
    require(set.recordCount() == pairs.cards(), "a row was left behind");
}

} // namespace

void benchSets(StorePairs &pairs, const fs::path &path, const fs::path &barePath)
{
    benchOpening(pairs, path, barePath);
    benchPasses(pairs, path, barePath);
    if (pairs.cards() <= mostCardsInCache) {
        benchPageCache(pairs, path, barePath);
    }
    SubjectStore store(path);
    BareEngine engine(barePath);
    askWhetherSubject(engine);
    RecordSet set = openAll(store, allInOrder(), pairs.cards());
    benchSingleRows(pairs, set, engine);
    benchSaving(pairs, set, engine);
    benchAdding(pairs, store, set, engine);
}
