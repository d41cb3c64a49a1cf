#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

/// What an action took that ran in a process of its own.
struct Cost
{
    double milliseconds = 0;
    double mebibytes = 0; ///< of memory at its peak, beyond what was there before
};

/// Runs \p action here and returns what it took.
[[nodiscard]] Cost costOf(const std::function<void()> &action);

/// Prints \p cost for costOfChild().
void report(const Cost &cost);

/// Runs this program again with \p arguments and returns what it report()s;
/// nothing if it fails, as it does if it runs longer than two minutes.
[[nodiscard]] std::optional<Cost> costOfChild(const std::vector<std::string> &arguments);
