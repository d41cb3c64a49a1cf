#pragma once

#include "store/RecordSet.h"

#include <filesystem>
#include <memory>
#include <string_view>

class Connection;

/// An open subject file. Closes in the destructor.
///
/// No lock is held between the operations. After closing, the one file is the
/// whole subject. Not thread-safe: use it from the thread that opened it.
class SubjectStore
{
public:
    /// Makes a new, empty subject at \p path. A file that stands there is deleted first.
    static void create(const std::filesystem::path &path);

    /// Opens \p path for reading and writing; never creates a file, and leaves one that is
    /// no subject untouched. Any SQLite file with the two tables in their field order is one.
    explicit SubjectStore(const std::filesystem::path &path);
    SubjectStore(SubjectStore &&) noexcept;
    SubjectStore &operator=(SubjectStore &&) noexcept;
    ~SubjectStore();

    /// Opens the rows that a "SELECT * FROM ..." of the catalogue names; the first is current.
    [[nodiscard]] RecordSet openRecordSet(std::string_view statement);

    /// Runs a deleting statement of the catalogue. Returns the number of rows deleted.
    int execute(std::string_view statement);

    /// Whether the open file still stands where it was opened: false once it was moved,
    /// deleted or replaced. Writing to it is NotFound then.
    [[nodiscard]] bool isInPlace() const;

    /// Closes the file, and its sets with it. Closing twice is nothing.
    void close() noexcept;

private:
    friend class Transaction;
    std::shared_ptr<Connection> m_connection;
};

/// Makes a pass over many rows one change: whole after commit(), else undone.
///
/// Several sets of the store may take part. The sets' own positions are not undone.
class Transaction
{
public:
    explicit Transaction(SubjectStore &store);
    Transaction(const Transaction &) = delete;
    Transaction &operator=(const Transaction &) = delete;
    ~Transaction(); ///< undoes what was not committed

    void commit();

private:
    std::shared_ptr<Connection> m_connection; ///< null once committed
};
