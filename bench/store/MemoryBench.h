#pragma once

#include "bench/support/PairTable.h"

#include <filesystem>

/// Measures the memory of a set over all \p cards of the subject at \p path, all rows read.
void benchMemory(PairTable &table, const std::filesystem::path &path, int cards, const Bound &bound);
