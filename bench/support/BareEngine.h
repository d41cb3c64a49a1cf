#pragma once

#include "bench/support/Measure.h"

#include <cstddef>
#include <filesystem>
#include <sqlite3.h>
#include <string>
#include <vector>

// The engine without the store: the floor that the store stands on.

class BareStatement
{
public:
    BareStatement(sqlite3 *engine, const std::string &sql)
    {
        require(sqlite3_prepare_v2(engine, sql.c_str(), -1, &m_statement, nullptr) == SQLITE_OK,
                sqlite3_errmsg(engine));
    }
    BareStatement(const BareStatement &) = delete;
    BareStatement &operator=(const BareStatement &) = delete;
    ~BareStatement() { sqlite3_finalize(m_statement); }
    operator sqlite3_stmt *() const { return m_statement; }

private:
    sqlite3_stmt *m_statement = nullptr;
};

class BareEngine
{
public:
    explicit BareEngine(const std::filesystem::path &path, int flags = SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOMUTEX)
    {
        require(sqlite3_open_v2(path.c_str(), &m_engine, flags, nullptr) == SQLITE_OK, "cannot open");
        sqlite3_busy_timeout(m_engine, 500);
    }
    BareEngine(const BareEngine &) = delete;
    BareEngine &operator=(const BareEngine &) = delete;
    ~BareEngine() { sqlite3_close(m_engine); }
    operator sqlite3 *() const { return m_engine; }

    void run(const std::string &sql)
    {
        require(sqlite3_exec(m_engine, sql.c_str(), nullptr, nullptr, nullptr) == SQLITE_OK, sqlite3_errmsg(m_engine));
    }

private:
    sqlite3 *m_engine = nullptr;
};

/// Asks what the store asks before it takes a file for a subject.
inline void askWhetherSubject(BareEngine &engine)
{
    engine.run("BEGIN; PRAGMA application_id; PRAGMA user_version; PRAGMA page_count; PRAGMA page_size;");
    BareStatement columns(engine, "SELECT c.name, c.type, c.pk FROM sqlite_schema AS t, pragma_table_info(t.name) AS c "
                                  "WHERE t.type = 'table' AND t.name = ? COLLATE NOCASE ORDER BY c.cid");
    for (const char *table : {"Topics", "FlashCards"}) {
        sqlite3_bind_text(columns, 1, table, -1, SQLITE_STATIC);
        while (sqlite3_step(columns) == SQLITE_ROW) {
            ;
        }
        sqlite3_reset(columns);
    }
    engine.run("PRAGMA journal_mode; COMMIT; PRAGMA synchronous = FULL");
}

/// Opens the file at \p path, asks that and closes it.
inline void openBare(const std::filesystem::path &path)
{
    BareEngine engine(path);
    askWhetherSubject(engine);
}

/// The first column of every row.
inline std::vector<int> keysOf(sqlite3_stmt *select)
{
    std::vector<int> keys;
    while (sqlite3_step(select) == SQLITE_ROW) {
        keys.push_back(sqlite3_column_int(select, 0));
    }
    sqlite3_reset(select);
    return keys;
}

/// Steps through all rows, and nothing else.
inline int countRows(sqlite3_stmt *select)
{
    int rows = 0;
    while (sqlite3_step(select) == SQLITE_ROW) {
        ++rows;
    }
    sqlite3_reset(select);
    return rows;
}

/// Milliseconds to open the file at \p path and to read the \p count keys that \p select names.
inline double millisecondsToScan(const std::filesystem::path &path, const std::string &select, std::size_t count)
{
    return microseconds([&] {
               BareEngine engine(path);
               BareStatement statement(engine, select);
               require(keysOf(statement).size() == count, "cards are missing");
           }) /
           1000;
}
