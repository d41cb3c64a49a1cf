#pragma once

#include "bench/support/BareEngine.h"
#include "bench/support/SeededDraw.h"

#include <algorithm>
#include <filesystem>
#include <utility>
#include <vector>

/// The row updates of a shuffle of the cards of topic 1, and nothing else.
class BareShuffler
{
public:
    explicit BareShuffler(const std::filesystem::path &path)
        : m_engine(path)
    {
        m_engine.run("PRAGMA journal_mode = DELETE; PRAGMA synchronous = FULL");
        BareStatement select(m_engine, R"(SELECT rowid FROM FlashCards WHERE NIndex = 1 ORDER BY "Index" ASC)");
        m_keys = keysOf(select);
    }

    /// Milliseconds of a shuffle in one transaction: numbers are drawn from the last card to the first, and
    /// written as the rows lie in the file, which is the quickest order.
    double timeUpdates(unsigned seed)
    {
        BareStatement update(m_engine, "UPDATE FlashCards SET Shuffle = ? WHERE rowid = ?");
        return microseconds([&] {
                   const RandomDraw draw = seededDraw(seed);
                   std::vector<std::pair<int, float>> drawn{{m_keys.back(), draw()}};
                   for (auto key = m_keys.rbegin(); key != m_keys.rend(); ++key) {
                       drawn.emplace_back(*key, draw());
                   }
                   std::ranges::stable_sort(drawn, {}, &std::pair<int, float>::first);
                   m_engine.run("BEGIN IMMEDIATE");
                   for (const auto &[key, number] : drawn) {
                       write(update, key, number);
                   }
                   m_engine.run("COMMIT");
               }) /
               1000;
    }

    /// Lets the next shuffle start from the order that the last one gave.
    void readOrder()
    {
        BareStatement select(m_engine, "SELECT rowid FROM FlashCards WHERE NIndex = 1 ORDER BY Shuffle ASC");
        m_keys = keysOf(select);
    }

private:
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
