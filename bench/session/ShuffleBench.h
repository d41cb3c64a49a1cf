#pragma once

#include <filesystem>

class PairTable;

/// Measures shuffles of sessions of growing size in \p folder, in microseconds a card, beside
/// the same row updates in one transaction through the engine's C API on a file of its own.
void benchShuffle(PairTable &table, const std::filesystem::path &folder);
