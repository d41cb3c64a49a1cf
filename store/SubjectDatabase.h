#pragma once

#include "store/TableDefinition.h"

#include <array>
#include <filesystem>
#include <memory>
#include <string>

namespace SQLite {
class Database;
class Statement;
} // namespace SQLite

// Private to store/: making and opening the engine's side of a subject file.

struct SubjectDatabase
{
    std::unique_ptr<SQLite::Database> engine;
    /// By table: false in files made by others, whose Index may be a plain column.
    std::array<bool, subjectTables.size()> keyIsRowId;
};

/// Makes an empty subject at \p path, where no file is. Leaves none behind when it fails.
void createSubject(const std::filesystem::path &path);

/// Opens \p path once it is found to be a subject; until then nothing is written.
[[nodiscard]] SubjectDatabase openSubject(const std::filesystem::path &path);

/// Call it from a catch block: throws what was caught, a failure of the engine as a StoreError about \p path.
/// \p engine, if it is there, knows what the system said.
[[noreturn]] void rethrowAsStoreError(const std::string &path, const std::unique_ptr<SQLite::Database> &engine);

template <typename Function>
auto withStoreErrors(const std::string &path, const std::unique_ptr<SQLite::Database> &engine, Function function)
{
    try {
        return function();
    } catch (...) {
        rethrowAsStoreError(path, engine);
    }
}
