#pragma once

#include "bench/store/StorePairs.h"

#include <filesystem>

/// Times record sets over the cards of topic 1: opening, walking, changing. The two files hold the same
/// cards, one for each side.
void benchSets(StorePairs &pairs, const std::filesystem::path &path, const std::filesystem::path &barePath);
