#pragma once

#include <filesystem>

class PairTable;

/// Measures the test's window in milliseconds, with tests of 50 questions of the subject at \p path, whose
/// 10,000 cards have the front and back that sideText() gives. The bounds are in the source.
///
/// Opening it stands beside the bare writes of its test, on a copy in the same folder, and an empty page;
/// the next question beside bare text boxes with the same texts; grading beside the bare updates that mark
/// the cards, on another copy.
void benchWindow(PairTable &table, const std::filesystem::path &path);
