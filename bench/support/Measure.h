#pragma once

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <vector>

// What every measuring program starts with.

/// Ends the program with \p what unless \p holds.
inline void require(bool holds, const char *what)
{
    if (holds) {
        return;
    }
    std::fprintf(stderr, "%s\n", what);
    std::exit(EXIT_FAILURE);
}

using Action = std::function<void()>;

inline double microseconds(const Action &action)
{
    const auto start = std::chrono::steady_clock::now();
    action();
    return std::chrono::duration<double, std::micro>(std::chrono::steady_clock::now() - start).count();
}

inline double median(std::vector<double> values)
{
    std::ranges::nth_element(values, values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2));
    return values[values.size() / 2];
}
