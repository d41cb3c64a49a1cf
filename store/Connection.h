#pragma once

#include "store/SubjectDatabase.h"
#include "store/TableDefinition.h"

#include <array>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

// Private to store/: the engine, with prepared statements for single rows.

/// What the engine stores in one field.
struct FieldValue
{
    enum class Kind : std::uint8_t { Null, Integer, Real, Text };

    Kind kind = Kind::Null;
    std::int64_t integer = 0;
    double real = 0;
    std::string text; ///< any bytes; keeps its memory when the kind changes
};

/// One row by field positions; which of them count is said by a FieldMask.
using Row = std::array<FieldValue, maxFieldCount>;

/// A set of field positions, one bit each.
using FieldMask = std::uint32_t;
static_assert(maxFieldCount <= 32);

/// A row's key: the engine's row id, which is the field Index too.
using Key = std::int32_t;

/// An open subject file, shared by the store, its sets and its transactions.
///
/// The store closes it; the others hold what is left and get NotNow. All
/// failures are StoreErrors. Between two calls no statement is running.
class Connection
{
public:
    /// Number of a table in subjectTables.
    using TableId = std::size_t;

    explicit Connection(const std::filesystem::path &path);
    ~Connection();
    Connection(const Connection &) = delete;
    Connection &operator=(const Connection &) = delete;

    /// An open transaction is undone.
    void close() noexcept;
    [[nodiscard]] bool isOpen() const noexcept { return m_database.engine != nullptr; }
    void requireOpen() const;
    /// False once the file was moved, deleted or replaced.
    [[nodiscard]] bool isInPlace() const;

    /// The path as the caller wrote it.
    [[nodiscard]] const std::string &path() const noexcept { return m_path; }

    [[nodiscard]] TableId tableNamed(std::string_view name) const;
    /// The first column of every row that \p sql selects.
    [[nodiscard]] std::vector<Key> keys(const std::string &sql);
    /// Returns the number of rows changed.
    int execute(const std::string &sql);

    // One row each. False: there is no such row.
    [[nodiscard]] bool readRow(TableId table, Key key, Row &row);
    /// Reads one field: of a damaged row, some may be readable where the whole is not.
    [[nodiscard]] bool readField(TableId table, Key key, std::size_t position, FieldValue &value);
    [[nodiscard]] bool updateRow(TableId table, Key key, const Row &row, FieldMask fields);
    [[nodiscard]] bool deleteRow(TableId table, Key key);
    /// Fields outside \p fields get the table's defaults.
    [[nodiscard]] Key insertRow(TableId table, const Row &row, FieldMask fields);

    // One transaction at a time.
    void begin();
    void commit();
    void rollback() noexcept;

    /// Grows whenever rows read before may have changed through this connection.
    [[nodiscard]] std::uint32_t generation() const noexcept { return m_generation; }

private:
    using StatementPtr = std::unique_ptr<SQLite::Statement>;

    struct PreparedWrite
    {
        FieldMask fields;
        StatementPtr statement;
    };

    struct TableStatements
    {
        StatementPtr select;
        StatementPtr remove;
        std::vector<PreparedWrite> updates;
        std::vector<PreparedWrite> inserts;
    };

    void requireWritable() const;
    [[nodiscard]] SQLite::Statement &preparedSelect(TableId table);
    [[nodiscard]] SQLite::Statement &preparedDelete(TableId table);
    [[nodiscard]] SQLite::Statement &preparedUpdate(TableId table, FieldMask fields);
    [[nodiscard]] SQLite::Statement &preparedInsert(TableId table, FieldMask fields);

    std::string m_path;
    SubjectDatabase m_database; ///< its engine is null once closed
    std::array<TableStatements, subjectTables.size()> m_statements;
    std::uint32_t m_generation = 0;
    bool m_inTransaction = false;
};
