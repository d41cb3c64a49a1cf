#pragma once

#include <algorithm>
#include <chrono>
#include <cmath>
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

/// The value of which \p share (0 to 1) of the \p values are smaller.
inline double quantile(std::vector<double> values, double share)
{
    const auto size = static_cast<double>(values.size());
    const auto place = values.begin() + static_cast<std::ptrdiff_t>(std::min(share * size, size - 1));
    std::ranges::nth_element(values, place);
    return *place;
}

inline double median(const std::vector<double> &values)
{
    return quantile(values, 0.5);
}

/// What both sides of a pair took.
struct PairOfTimes
{
    std::vector<double> ours;
    std::vector<double> floor;
};

/// Lets two sides measure themselves in turn, after \p warmUps rounds for nothing.
inline PairOfTimes inTurn(int rounds, const std::function<double()> &ours, const std::function<double()> &floor,
                          int warmUps = 1)
{
    PairOfTimes times;
    for (int round = -warmUps; round < rounds; ++round) {
        const bool oursFirst = round % 2 == 0;
        const double first = oursFirst ? ours() : floor();
        const double second = oursFirst ? floor() : ours();
        if (round >= 0) {
            times.ours.push_back(oursFirst ? first : second);
            times.floor.push_back(oursFirst ? second : first);
        }
    }
    return times;
}

/// The exponent of a power law through the points, by least squares of logarithms.
inline double fittedExponent(const std::vector<double> &sizes, const std::vector<double> &times)
{
    const auto count = static_cast<double>(sizes.size());
    double meanX = 0;
    double meanY = 0;
    for (std::size_t i = 0; i < sizes.size(); ++i) {
        meanX += std::log(sizes[i]) / count;
        meanY += std::log(times[i]) / count;
    }
    double covariance = 0;
    double variance = 0;
    for (std::size_t i = 0; i < sizes.size(); ++i) {
        const double x = std::log(sizes[i]) - meanX;
        covariance += x * (std::log(times[i]) - meanY);
        variance += x * x;
    }
    return covariance / variance;
}
