#pragma once

#include <filesystem>

/// A table of what the program takes of the disk, stripped, beside the empty window's.
/// Makes its copies in \p folder.
void benchSizes(const std::filesystem::path &folder);
