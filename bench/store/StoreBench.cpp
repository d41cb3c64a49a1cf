// Times the store's operations in pairs with the same statements through the
// engine's C API, prepared once. Both sides of a pair run in turn, so that a
// busy machine slows both; the table shows medians.

#include "bench/support/BareEngine.h"
#include "bench/support/LargeSubject.h"
#include "bench/support/Measure.h"
#include "store/Schema.h"
#include "store/Statements.h"
#include "store/SubjectStore.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <random>
#include <sqlite3.h>
#include <string>
#include <vector>

namespace fs = std::filesystem;

namespace {

constexpr int rounds = 11;
constexpr double shortestSample = 20'000; // us
constexpr int autoCommits = 50;

/// \p operations is how many of the thing one call does.
void comparePair(const char *thing, int operations, const Action &store, const Action &bare)
{
    store();
    const int repeats = std::clamp(static_cast<int>(shortestSample / microseconds(bare)), 1, 1000);
    const auto sample = [&](const Action &action) {
        return microseconds([&] {
            for (int i = 0; i < repeats; ++i) {
                action();
            }
        });
    };
    std::vector<double> ofStore;
    std::vector<double> ofBare;
    for (int round = 0; round < rounds; ++round) {
        const bool storeFirst = round % 2 == 0;
        const double first = sample(storeFirst ? store : bare);
        const double second = sample(storeFirst ? bare : store);
        ofStore.push_back(storeFirst ? first : second);
        ofBare.push_back(storeFirst ? second : first);
    }
    const double storeTime = median(ofStore) / repeats / operations;
    const double bareTime = median(ofBare) / repeats / operations;
    std::printf("| %-42s | %11.2f | %11.2f | %5.2f |\n", thing, storeTime, bareTime, storeTime / bareTime);
    std::fflush(stdout);
}

void createBare(const fs::path &path)
{
    fs::remove(path);
    BareEngine engine(path, SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOMUTEX | SQLITE_OPEN_CREATE);
    engine.run(
        "PRAGMA synchronous = FULL; BEGIN EXCLUSIVE; PRAGMA application_id = 1; PRAGMA user_version = 1;"
        "CREATE TABLE Topics (\"Index\" INTEGER PRIMARY KEY AUTOINCREMENT, Name TEXT NOT NULL DEFAULT '',"
        " Notes TEXT NOT NULL DEFAULT '');"
        "CREATE TABLE FlashCards (\"Index\" INTEGER PRIMARY KEY AUTOINCREMENT, NIndex INTEGER NOT NULL DEFAULT 0,"
        " Front TEXT NOT NULL DEFAULT '', Back TEXT NOT NULL DEFAULT '', Marked INTEGER NOT NULL DEFAULT 0,"
        " Shuffle REAL NOT NULL DEFAULT 0, isTrueFalse INTEGER NOT NULL DEFAULT 0,"
        " isFront INTEGER NOT NULL DEFAULT 0, Answer INTEGER NOT NULL DEFAULT 0,"
        " Wrong1 INTEGER NOT NULL DEFAULT 0, Wrong2 INTEGER NOT NULL DEFAULT 0);"
        "COMMIT");
}

void stepOnce(sqlite3_stmt *statement)
{
    require(sqlite3_step(statement) == SQLITE_DONE, "a write failed");
    sqlite3_reset(statement);
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

void benchFiles(const fs::path &path)
{
    const fs::path made = path.parent_path() / "Made.crl";
    comparePair(
        "create (us)", 1, [&] { SubjectStore::create(made); }, [&] { createBare(made); });
    comparePair(
        "open and close (us)", 1, [&] { SubjectStore store(path); }, [&] { openBare(path); });
}

void benchSelections(SubjectStore &store, sqlite3 *engine, int cards)
{
    const std::string query = cardQuery(std::array{1});
    BareStatement count(engine, "SELECT count(*) FROM FlashCards WHERE NIndex = 1");
    BareStatement natural(engine, "SELECT rowid FROM FlashCards WHERE NIndex = 1");
    BareStatement inOrder(engine, "SELECT rowid FROM FlashCards WHERE NIndex = 1 ORDER BY \"Index\" ASC");
    BareStatement shuffled(engine, "SELECT rowid FROM FlashCards WHERE NIndex = 1 ORDER BY Shuffle ASC");
    const auto openSet = [&](const std::string &statement) {
        require(store.openRecordSet(statement).recordCount() == cards, "cards are missing");
    };
    const auto scan = [&](sqlite3_stmt *select) {
        require(keysOf(select).size() == static_cast<std::size_t>(cards), "cards are missing");
    };
    comparePair(
        "count a topic's cards (us)", 1, [&] { openSet(cardsOfTopic(1)); },
        [&] {
            int rows = 0;
            while (sqlite3_step(natural) == SQLITE_ROW) {
                ++rows;
            }
            sqlite3_reset(natural);
            require(rows == cards, "cards are missing");
        });
    comparePair(
        "the same beside the engine's count(*) (us)", 1, [&] { openSet(cardsOfTopic(1)); },
        [&] {
            require(sqlite3_step(count) == SQLITE_ROW && sqlite3_column_int(count, 0) == cards, "cards are missing");
            sqlite3_reset(count);
        });
    comparePair(
        "open a set in order (us)", 1, [&] { openSet(cardsInOrder(query)); }, [&] { scan(inOrder); });
    comparePair(
        "open a set in shuffled order (us)", 1, [&] { openSet(cardsShuffled(query)); }, [&] { scan(shuffled); });
}

void benchReading(RecordSet &set, sqlite3 *engine, const std::vector<int> &keys, int cards)
{
    BareReader reader(engine);
    comparePair(
        "walk: next row and its front (us/row)", cards,
        [&] {
            for (set.moveFirst(); !set.isEndOfSet(); set.moveNext()) {
                require(set.text(CardField::Front).size() == bytesPerSide, "a text is missing");
            }
        },
        [&] {
            for (const int key : keys) {
                require(reader.front(key).size() == bytesPerSide, "a text is missing");
            }
        });

    std::vector<int> positions(1000);
    std::mt19937 random(2);
    std::ranges::generate(positions, [&] { return std::uniform_int_distribution(0, cards - 1)(random); });
    comparePair(
        "one row by position and its front (us)", 1000,
        [&] {
            for (const int position : positions) {
                set.setAbsolutePosition(position);
                require(set.text(CardField::Front).size() == bytesPerSide, "a text is missing");
            }
        },
        [&] {
            for (const int position : positions) {
                require(reader.front(keys[static_cast<std::size_t>(position)]).size() == bytesPerSide,
                        "a text is missing");
            }
        });
}

void benchWriting(SubjectStore &store, RecordSet &set, BareEngine &engine, const std::vector<int> &keys, int cards)
{
    BareStatement update(engine, "UPDATE FlashCards SET Shuffle = ? WHERE rowid = ?");
    float value = 0;
    const auto next = [&] { return value = value < 1 ? value + 0.001F : 0; };
    const auto writeStore = [&](int rows) {
        set.moveFirst();
        for (int row = 0; row < rows; ++row, set.moveNext()) {
            set.edit();
            set.setSingle(CardField::Shuffle, next());
            set.update();
        }
    };
    const auto writeBare = [&](int rows) {
        for (int row = 0; row < rows; ++row) {
            sqlite3_bind_double(update, 1, static_cast<double>(next()));
            sqlite3_bind_int(update, 2, keys[static_cast<std::size_t>(row)]);
            stepOnce(update);
            require(sqlite3_changes(engine) == 1, "a row is missing");
        }
    };
    comparePair(
        "edit and update, one transaction (us/row)", cards,
        [&] {
            Transaction transaction(store);
            writeStore(cards);
            transaction.commit();
        },
        [&] {
            engine.run("BEGIN IMMEDIATE");
            writeBare(cards);
            engine.run("COMMIT");
        });
    comparePair(
        "edit and update, each by itself (us/row)", autoCommits, [&] { writeStore(autoCommits); },
        [&] { writeBare(autoCommits); });
}

void benchAdding(SubjectStore &store, RecordSet &set, BareEngine &engine)
{
    constexpr int rows = 1000;
    const std::string side(bytesPerSide, 'x');
    BareStatement insert(engine, "INSERT INTO FlashCards (NIndex, Front, Back) VALUES (?, ?, ?)");
    BareStatement remove(engine, "DELETE FROM FlashCards WHERE rowid = ?");
    comparePair(
        "add and remove a row, one transaction (us)", rows,
        [&] {
            Transaction transaction(store);
            for (int row = 0; row < rows; ++row) {
                set.addNew();
                set.setNumber(CardField::NIndex, 2);
                set.setText(CardField::Front, side);
                set.setText(CardField::Back, side);
                set.update();
                set.setBookmark(set.lastModified());
                set.remove();
            }
            transaction.commit();
        },
        [&] {
            engine.run("BEGIN IMMEDIATE");
            for (int row = 0; row < rows; ++row) {
                sqlite3_bind_int(insert, 1, 2);
                sqlite3_bind_text(insert, 2, side.data(), bytesPerSide, SQLITE_STATIC);
                sqlite3_bind_text(insert, 3, side.data(), bytesPerSide, SQLITE_STATIC);
                stepOnce(insert);
                sqlite3_bind_int64(remove, 1, sqlite3_last_insert_rowid(engine));
                stepOnce(remove);
            }
            engine.run("COMMIT");
        });
}

void bench(const fs::path &folder, int cards)
{
    const fs::path path = folder / "Subject.crl";
    const fs::path barePath = folder / "Bare.crl"; // of its own, so that neither side spoils the other's page cache
    makeLargeSubject(path, cards);
    fs::copy_file(path, barePath, fs::copy_options::overwrite_existing);

    std::printf("| %-42s | %11s | %11s | %5s |\n", (std::to_string(cards) + " cards").c_str(), "store", "bare",
                "ratio");
    std::printf("|%s|%s:|%s:|%s:|\n", std::string(44, '-').c_str(), std::string(12, '-').c_str(),
                std::string(12, '-').c_str(), std::string(6, '-').c_str());
    benchFiles(path);

    SubjectStore store(path);
    BareEngine engine(barePath);
    benchSelections(store, engine, cards);
    RecordSet set = store.openRecordSet(cardsInOrder(cardQuery(std::array{1})));
    const std::vector<int> keys =
        keysOf(BareStatement(engine, "SELECT rowid FROM FlashCards WHERE NIndex = 1 ORDER BY \"Index\" ASC"));
    benchReading(set, engine, keys, cards);
    benchWriting(store, set, engine, keys, cards);
    benchAdding(store, set, engine);
    std::printf("\n");
}

} // namespace

int main(int argc, char **argv)
{
    std::vector<int> sizes;
    for (int argument = 1; argument < argc; ++argument) {
        sizes.push_back(std::max(autoCommits, std::atoi(argv[argument])));
    }
    if (sizes.empty()) {
        sizes = {1'000, 10'000, 100'000};
    }

    std::string folder = (fs::temp_directory_path() / "bench-store-XXXXXX").string();
    require(::mkdtemp(folder.data()) != nullptr, "cannot make a folder");
    for (const int cards : sizes) {
        bench(folder, cards);
    }
    fs::remove_all(folder);
}
