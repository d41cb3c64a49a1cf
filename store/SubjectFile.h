#pragma once

#include "store/StoreError.h"

#include <cstdint>
#include <filesystem>
#include <string>

// Private to store/: what can be said of a subject file without reading it.
//
// Nothing here opens the file. Closing any descriptor of it would drop the
// locks that the engine holds on it in this process.

/// What the error number \p error of a system call means for the learner.
[[nodiscard]] StoreError::Reason reasonOfSystemError(int error) noexcept;

/// The path as messages name it: UTF-8, as the caller wrote it.
[[nodiscard]] std::string shownPath(const std::filesystem::path &path);

/// Returns where \p path leads, free of symbolic links: the engine puts its side files there.
/// Throws StoreError unless it is a file that may be read and written, in a
/// folder in which a journal can be made.
[[nodiscard]] std::filesystem::path requireSubjectPath(const std::filesystem::path &path);

/// Throws StoreError unless a file may be made at \p path, or replaced.
void requirePlaceForSubject(const std::filesystem::path &path);

/// Deletes the file at \p path and the engine's side files beside it.
void removeSubject(const std::filesystem::path &path);

/// \p suffix is "-journal", "-wal" or "-shm".
[[nodiscard]] std::filesystem::path sideFile(const std::filesystem::path &path, const char *suffix);

/// Bytes of the file; 0 if there is none.
[[nodiscard]] std::uint64_t fileSize(const std::filesystem::path &path) noexcept;
