#pragma once

#include <filesystem>

class PairTable;

/// Measures making tests of growing size in \p folder, in microseconds a card, beside the same
/// updates in one transaction through the engine's C API, each side on a file of its own.
void benchGeneration(PairTable &table, const std::filesystem::path &folder);
