#pragma once

#include "bench/store/StorePairs.h"

#include <filesystem>

/// Gives the subject at \p path topics with notes, of which topic 1 is the first.
void addTopics(const std::filesystem::path &path);

/// Times the commands that open the subject, do one thing with a topic and close it again. The two
/// files hold the same subject, one for each side.
void benchTopics(StorePairs &pairs, const std::filesystem::path &path, const std::filesystem::path &barePath);
