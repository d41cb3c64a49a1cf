#pragma once

#include <array>
#include <cstdint>
#include <filesystem>

// Private to store/: a look at a journal before the engine plays it back.

/// The bytes that a database file begins with.
using DatabaseHeader = std::array<unsigned char, 100>;

/// False if playing \p journal back would cut off pages that its database had before the change, or
/// put some behind its end.
///
/// The engine checks the journal's pages, but not its header, and cuts or lengthens the file to
/// what stands there. \p header is what the database begins with now, read before this is called;
/// \p size is that of its file in bytes. True as well where the true length cannot be known, or
/// nothing is to be played back.
[[nodiscard]] bool restoresTrueLength(const std::filesystem::path &journal, const DatabaseHeader &header,
                                      std::uint64_t size);
